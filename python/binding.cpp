// The library as a Python module: texts and numbers in, results out. zorvela/__init__.py checks the
// arguments. The interpreter's lock is released while a function reads or computes.
#include "binding.h"

#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "zorvela/compare.h"
#include "zorvela/error.h"
#include "zorvela/predict.h"
#include "zorvela/read.h"
#include "zorvela/run_file.h"
#include "zorvela/version.h"

namespace py = pybind11;

namespace zorvela {

namespace {

using Structures = std::vector<std::shared_ptr<const ProteinStructure>>;
using ShiftTuple = std::tuple<int, std::string, double>;

/// Choices for a shift file.
struct Request {
  ImportOptions import;
  Structures structures;
  PredictorOptions predict;
};

/// Reference tables, read once. Any number of threads may share it.
class Engine {
 public:
  explicit Engine(const std::string& tablesFolder)
      : folder(tablesFolder),
        tables(tablesFromFolder(tablesFolder)),
        classes(statisticsOf(tables)),
        predictor(tables) {}

  Results predict(const std::vector<Protein>& proteins, const std::string& file,
                  const Request& request) const {
    RunReport report{folder, classes, {{file, {}, ""}}};
    for (const auto& structure : request.structures) report.structures.push_back(*structure);
    std::vector<ProteinResult>& results = report.files.front().proteins;
    const Predictor chosen = predictor.with(request.predict);
    for (const Protein& protein : proteins) results.push_back(chosen.predict(protein));
    if (!report.structures.empty()) compareWithStructures(proteins, report.structures, results);
    noteChainsWithoutShifts(report);
    return {std::move(report)};
  }

 private:
  std::string folder;
  Tables tables;
  ClassStatistics classes;
  Predictor predictor;
};

Results predictFile(const Engine& engine, const std::string& path, const Request& request) {
  return engine.predict(readShiftFile(path, request.import), path, request);
}

Results predictBytes(const Engine& engine, std::string bytes, const std::string& name,
                     const Request& request) {
  return engine.predict(readShiftBytes(std::move(bytes), name, request.import), name, request);
}

Results predictShifts(const Engine& engine, const std::string& sequence, const std::vector<ShiftTuple>& named,
                      int first, const std::string& name, const Request& request) {
  std::vector<NamedShift> shifts;
  shifts.reserve(named.size());
  for (const auto& [number, atom, ppm] : named) shifts.push_back({number, atom, ppm});
  std::vector<Protein> proteins = {proteinOfShifts(sequence, shifts, first)};
  proteins.front().file = name;
  return engine.predict(proteins, name, request);
}

std::shared_ptr<const ProteinStructure> structureOfFile(const std::string& path) {
  return std::make_shared<ProteinStructure>(readStructureFile(path));
}

std::shared_ptr<const ProteinStructure> structureOfBytes(std::string bytes, const std::string& name) {
  return std::make_shared<ProteinStructure>(readStructureBytes(std::move(bytes), name));
}

/// Returns the name of the Python class of an error.
const char* className(const Error& error) {
  if (dynamic_cast<const FileError*>(&error) != nullptr) return "FileError";
  if (dynamic_cast<const ChoiceError*>(&error) != nullptr) return "ChoiceError";
  if (dynamic_cast<const TableError*>(&error) != nullptr) return "TableError";
  return "Error";
}

void raiseInPython(std::exception_ptr thrown) {
  try {
    if (thrown) std::rethrow_exception(thrown);
  } catch (const Error& error) {
    const py::object type = py::module_::import("zorvela.errors").attr(className(error));
    const py::object raised = type(pythonText(error.what()));
    if (!error.file().empty()) raised.attr("file") = pythonText(error.file());
    if (error.line() > 0) raised.attr("line") = error.line();
    PyErr_SetObject(type.ptr(), raised.ptr());
  }
}

}  // namespace

PYBIND11_MODULE(_zorvela, module) {
  py::register_exception_translator(raiseInPython);
  py::options options;
  options.disable_function_signatures();
  addResults(module);

  const py::call_guard<py::gil_scoped_release> unlocked;
  py::class_<Request>(module, "Request")
      .def(py::init([](std::vector<std::string> chains, std::vector<std::string> lists,
                       const std::optional<std::pair<py::bytes, std::string>>& sequence,
                       std::optional<int> firstResidue, Structures structures, bool asReferenced,
                       std::optional<bool> deuterated) {
        GivenSequence given = sequence ? readSequenceBytes(sequence->first, sequence->second) : nullptr;
        return Request{{std::move(chains), std::move(lists), std::move(given), firstResidue},
                       std::move(structures),
                       {asReferenced, deuterated.value_or(false), !deuterated.value_or(true)}};
      }));
  py::class_<Engine>(module, "Engine")
      .def(py::init<const std::string&>(), unlocked)
      .def("predict_file", predictFile, unlocked)
      .def("predict_bytes", predictBytes, unlocked)
      .def("predict_shifts", predictShifts, unlocked);
  module.def("structure_of_file", structureOfFile, unlocked);
  module.def("structure_of_bytes", structureOfBytes, unlocked);
  module.def("csv_columns", csvColumns);
  module.attr("version") = version();
}

}  // namespace zorvela
