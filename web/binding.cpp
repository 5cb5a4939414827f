// The library as functions for JavaScript: bytes and choices in, the text of reports out. Nothing is decided
// here; module/zorvela.js is the other half.
//
// Texts cross as `Text` objects: the host asks for one of the length it needs and fills it, and deletes what
// it gets back. A null pointer says that memory ran out.
#include <algorithm>
#include <cstddef>
#include <exception>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "GDB.h"
#include "embedded_tables.h"
#include "formats/input_bytes.h"
#include "restrain/nef_flags.h"
#include "restrain/restraints.h"
#include "util/text.h"
#include "zorvela/error.h"
#include "zorvela/predict.h"
#include "zorvela/read.h"
#include "zorvela/report.h"
#include "zorvela/run_file.h"
#include "zorvela/structure.h"
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
  std::vector<zorvela::Protein> proteins;      ///< those of the report, in its order
  std::vector<zorvela::NamedText> structures;  ///< the files of the report's structures
  nlohmann::ordered_json outcome;              ///< of what was written last
};

/// The proteins of a run with their results, of all files or of one.
zorvela::PredictedProteins predictedIn(const Run& run, const std::string& file = {}) {
  zorvela::PredictedProteins predicted;
  auto protein = run.proteins.begin();
  for (const zorvela::FileReport& report : run.report.files)
    for (const zorvela::ProteinResult& result : report.proteins) {
      if (file.empty() || result.file == file) {
        predicted.proteins.push_back(*protein);
        predicted.results.push_back(result);
      }
      ++protein;
    }
  return predicted;
}

/// A name or a message need not be UTF-8, JSON must be.
std::string dumped(const nlohmann::ordered_json& json) {
  return json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

std::vector<std::string> linesOf(const Text& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

const zorvela::RestraintFormat& restraintFormat(const std::string& name) {
  for (const zorvela::RestraintFormat& format : zorvela::restraintFormats())
    if (format.name == name) return format;
  throw zorvela::Error("there are no restraints for \"" + name + "\"");
}

/// What `write` gives; empty where that is an error. The run holds its notes or the error.
template <class Write>
Text* written(Run& run, Write write) {
  std::vector<std::string> notes;
  std::string error;
  Text text;
  try {
    text = write(notes);
  } catch (const zorvela::Error& failure) {
    error = failure.what();
  }
  run.outcome = {{"notes", notes}, {"error", error}};
  return new Text(std::move(text));
}

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

/// Takes the bytes of a structure, with which the files after it are compared.
ZORVELA_EXPORT("run_add_structure") void run_add_structure(Run* run, const Text* name, const Text* bytes) {
  try {
    run->report.structures.push_back(zorvela::readStructureBytes(*bytes, *name));
    run->structures.push_back({*name, *bytes});
  } catch (const zorvela::Error& error) {
    run->report.files.push_back({*name, {}, error.what()});
  }
}

/// Predicts the bytes of a file; they are used up.
ZORVELA_EXPORT("run_add") void run_add(Run* run, const Text* name, Text* bytes) {
  std::vector<zorvela::Protein> proteins;
  const auto read = [&] {
    proteins = zorvela::readShiftBytes(std::move(*bytes), *name, run->import);
    return proteins;
  };
  run->report.files.push_back(zorvela::reportOn(*name, read, run->predictor, run->report.structures));
  if (run->report.files.back().error.empty())
    std::move(proteins.begin(), proteins.end(), std::back_inserter(run->proteins));
}

/// Notes a file that the host could not hand over, with the reason: a member of `InputFault`.
ZORVELA_EXPORT("run_add_fault") void run_add_fault(Run* run, const Text* name, int fault) {
  const zorvela::Error error = zorvela::inputError(static_cast<zorvela::InputFault>(fault), *name);
  run->report.files.push_back({*name, {}, error.what()});
}

/// The report of all files so far in a format, by its name as after --format. Null for a name that there
/// is not.
ZORVELA_EXPORT("run_report") Text* run_report(Run* run, const Text* format) {
  return orNull([&] {
    zorvela::noteChainsWithoutShifts(run->report);
    std::ostringstream out;
    zorvela::writeReport(*format, run->report, {}, out);
    return new Text(std::move(out).str());
  });
}

/// The shift table of one of the proteins of the report, counted from 0, with the shifts that are used.
ZORVELA_EXPORT("run_shift_table") Text* run_shift_table(const Run* run, std::size_t index) {
  return orNull([&] {
    std::ostringstream out;
    zorvela::writeShiftTable(run->predictor.corrected(run->proteins.at(index)), out);
    return new Text(std::move(out).str());
  });
}

/// The bytes of a NEF file of the run with the calls as flags; empty with an error in the outcome.
ZORVELA_EXPORT("run_flagged_nef")
Text* run_flagged_nef(Run* run, const Text* name, const Text* bytes, bool trans, bool replace) {
  return orNull([&] {
    return written(*run, [&](std::vector<std::string>& notes) {
      zorvela::FlaggedNef flagged =
          zorvela::flaggedNef(*bytes, *name, predictedIn(*run, *name), {replace, trans});
      notes = std::move(flagged.notes);
      return std::move(flagged.annotation.text);
    });
  });
}

/// The cis prolines of all files for a structure calculation program, by its name as after --for. A structure
/// is the model that some programs take. `chainsAs` renames chains, with a line "OLD=NEW" or "NEW" for each.
/// Empty with an error in the outcome.
ZORVELA_EXPORT("run_restraints")
Text* run_restraints(Run* run, const Text* program, const Text* chainsAs) {
  return orNull([&] {
    return written(*run, [&](std::vector<std::string>& notes) {
      const zorvela::RestraintFormat& format = restraintFormat(*program);
      zorvela::RestraintRequest request;
      if (format.model != zorvela::RestraintFormat::ModelUse::none && run->structures.size() == 1) {
        request.modelText = run->structures.front();
        request.structure = run->report.structures.front();
      }
      zorvela::mustFit(format, request);
      const zorvela::PredictedProteins predicted = predictedIn(*run);
      request.chains = zorvela::restrainedChains(predicted.proteins, predicted.results);
      zorvela::renameChains(linesOf(*chainsAs), request.chains);
      zorvela::RestraintText restraints = zorvela::writeRestraints(format, request);
      notes = std::move(restraints.notes);
      return std::move(restraints.text);
    });
  });
}

/// JSON: the notes on the flags or restraints that were asked for last, and the error where there are none.
ZORVELA_EXPORT("run_outcome") Text* run_outcome(const Run* run) {
  return orNull([&] { return new Text(dumped(run->outcome)); });
}

// --- What there is ------------------------------------------------------------------------------

/// JSON: the version, that of the reference tables, the names of the report formats, and for which programs
/// there are restraints.
ZORVELA_EXPORT("about") Text* about() {
  return orNull([] {
    using ModelUse = zorvela::RestraintFormat::ModelUse;
    nlohmann::ordered_json about = {{"version", zorvela::version()},
                                    {"tables", zorvela::statisticsOf(embedded()).fingerprint}};
    for (const zorvela::ReportFormat& format : zorvela::reportFormats())
      about["formats"].push_back(format.name);
    for (const zorvela::RestraintFormat& format : zorvela::restraintFormats())
      about["restraints"].push_back({{"name", format.name},
                                     {"writes", format.writes},
                                     {"ending", format.ending},
                                     {"needsModel", format.model == ModelUse::needed}});
    return new Text(dumped(about));
  });
}

/// What the bytes of a file hold: 0 shifts, or nothing that is known; 1 a NEF file; 2 a structure.
ZORVELA_EXPORT("kind_of") int kind_of(const Text* bytes) {
  if (zorvela::holdsStructure(*bytes)) return 2;
  return zorvela::contains(*bytes, "_nef_sequence.") ? 1 : 0;
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
    return new Text(dumped(found));
  });
}

}  // extern "C"
