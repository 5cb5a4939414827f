// The library as functions for JavaScript: bytes and choices in, the text of reports out. Nothing is decided
// here; module/zorvela.js is the other half.
//
// Texts cross as `Text` objects: the host asks for one of the length it needs and fills it, and deletes what
// it gets back. A null pointer says that memory ran out.
#include <cstddef>
#include <exception>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "GDB.h"
#include "embedded_tables.h"
#include "formats/input_bytes.h"
#include "zorvela/error.h"
#include "zorvela/predict.h"
#include "zorvela/read.h"
#include "zorvela/report.h"
#include "zorvela/run_file.h"
#include "zorvela/version.h"

#define ZORVELA_EXPORT(name) __attribute__((export_name(name)))

namespace {

using Text = std::string;

const zorvela::Tables& embedded() {
  static const zorvela::Tables tables = zorvela::tablesFromTexts(zorvela::embeddedTables());
  return tables;
}

/// Files predicted one after the other, with the same choices.
struct Run {
  explicit Run(const zorvela::PredictorOptions& options) : predictor(embedded(), options) {}

  zorvela::ImportOptions import;
  zorvela::Predictor predictor;
  zorvela::RunReport report{zorvela::kEmbeddedTablesFolder, zorvela::statisticsOf(embedded()), {}};
};

/// What an operation gives, or null where memory runs out: no exception may leave the module.
template <class Operation>
auto orNull(Operation operation) -> decltype(operation()) {
  try {
    return operation();
  } catch (const std::exception&) {
    return nullptr;
  }
}

}  // namespace

extern "C" {

// --- Texts --------------------------------------------------------------------------------------

ZORVELA_EXPORT("text_new") Text* text_new(std::size_t size) {
  return orNull([&] { return new Text(size, '\0'); });
}

ZORVELA_EXPORT("text_data") char* text_data(Text* text) {
  return text->data();
}

ZORVELA_EXPORT("text_size") std::size_t text_size(const Text* text) {
  return text->size();
}

ZORVELA_EXPORT("text_delete") void text_delete(Text* text) {
  delete text;
}

// --- Runs ---------------------------------------------------------------------------------------

/// With shifts as they are in the file, or corrected. The sample is deuterated, protonated, or what the file
/// says.
ZORVELA_EXPORT("run_new") Run* run_new(bool asReferenced, bool deuterated, bool protonated) {
  return orNull([=] { return new Run({asReferenced, deuterated, protonated}); });
}

ZORVELA_EXPORT("run_delete") void run_delete(Run* run) {
  delete run;
}

/// Only the chain of this name, and of those named before.
ZORVELA_EXPORT("run_choose_chain") void run_choose_chain(Run* run, const Text* name) {
  run->import.chains.push_back(*name);
}

/// Only the shift list of this name, and of those named before; "all" means all of them.
ZORVELA_EXPORT("run_choose_list") void run_choose_list(Run* run, const Text* name) {
  run->import.lists.push_back(*name);
}

/// Predicts the bytes of a file; they are used up.
ZORVELA_EXPORT("run_add") void run_add(Run* run, const Text* name, Text* bytes) {
  const auto read = [&] { return zorvela::readShiftBytes(std::move(*bytes), *name, run->import); };
  run->report.files.push_back(zorvela::reportOn(*name, read, run->predictor));
}

/// Notes a file that the host could not hand over, with the reason: a member of `InputFault`.
ZORVELA_EXPORT("run_add_fault") void run_add_fault(Run* run, const Text* name, int fault) {
  const zorvela::Error error = zorvela::inputError(static_cast<zorvela::InputFault>(fault), *name);
  run->report.files.push_back({*name, {}, error.what()});
}

/// The report of all files so far in a format, by its name as after --format. Null for a name that there
/// is not.
ZORVELA_EXPORT("run_report") Text* run_report(const Run* run, const Text* format) {
  return orNull([&] {
    std::ostringstream out;
    zorvela::writeReport(*format, run->report, {}, out);
    return new Text(std::move(out).str());
  });
}

/// The shift table of one of the chains in the bytes of a file, counted from 0, with the shifts that are
/// used; the bytes are used up.
ZORVELA_EXPORT("run_shift_table")
Text* run_shift_table(const Run* run, const Text* name, Text* bytes, std::size_t index) {
  return orNull([&] {
    std::ostringstream out;
    const auto proteins = zorvela::readShiftBytes(std::move(*bytes), *name, run->import);
    zorvela::writeShiftTable(run->predictor.corrected(proteins.at(index)), out);
    return new Text(std::move(out).str());
  });
}

// --- What there is ------------------------------------------------------------------------------

/// JSON: the version, that of the reference tables, and the names of the report formats.
ZORVELA_EXPORT("about") Text* about() {
  return orNull([] {
    nlohmann::ordered_json formats = nlohmann::ordered_json::array();
    for (const zorvela::ReportFormat& format : zorvela::reportFormats()) formats.push_back(format.name);
    return new Text(nlohmann::ordered_json{
        {"version", zorvela::version()},
        {"tables", zorvela::statisticsOf(embedded()).fingerprint},
        {"formats",
         formats}}.dump());
  });
}

/// JSON: the chains and shift lists in the bytes of a file; none where it cannot be read. The bytes are
/// used up.
ZORVELA_EXPORT("contents") Text* contents(const Text* name, Text* bytes) {
  return orNull([&] {
    nlohmann::ordered_json found = nlohmann::ordered_json::array();
    try {
      for (const zorvela::Protein& protein : zorvela::readShiftBytes(std::move(*bytes), *name, {{}, {"all"}}))
        found.push_back({{"chain", protein.chain}, {"list", protein.list}});
    } catch (const zorvela::Error&) {
      // The run says what is wrong with it.
    }
    return new Text(found.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
  });
}

}  // extern "C"
