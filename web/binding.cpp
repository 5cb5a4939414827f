// The library as functions for JavaScript: bytes and choices in, the text of reports out. module/zorvela.js
// is the other half.
//
// Texts pass as `Text` objects. The host makes one of the length that it needs and fills it; it deletes those
// that it gets. A null pointer means that memory ran out.
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
#include "formats/sequence_file.h"
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

/// Several files, predicted with the same choices.
struct Run {
  explicit Run(const zorvela::PredictorOptions& options) : predictor(embedded(), options) {}

  zorvela::ImportOptions import;
  zorvela::Predictor predictor;
  zorvela::RunReport report{zorvela::kEmbeddedTablesFolder, zorvela::statisticsOf(embedded()), {}};
  std::vector<zorvela::Protein> proteins;      ///< of the report, in the same order
  std::vector<zorvela::NamedText> structures;  ///< the files of the report's structures
  nlohmann::ordered_json outcome;              ///< notes or error of the last flags or restraints
};

/// Returns the proteins of a run with their results, of all files or of one.
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

/// Returns JSON in UTF-8, with replacements for other bytes in names and messages.
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

/// Returns the text from `write`, empty after an error. The outcome of the run has the notes or the error.
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

/// Returns the result of an operation, or null if memory runs out: no exception may leave the module.
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

/// Starts a run, with shifts as in the file or corrected. If the sample is neither deuterated nor protonated,
/// the file decides.
ZORVELA_EXPORT("run_new") Run* run_new(bool asReferenced, bool deuterated, bool protonated) {
  return orNull([=] { return new Run({asReferenced, deuterated, protonated}); });
}

ZORVELA_EXPORT("run_delete") void run_delete(Run* run) {
  delete run;
}

/// Adds a chain to those that are predicted; without one, all are.
ZORVELA_EXPORT("run_choose_chain") void run_choose_chain(Run* run, const Text* name) {
  run->import.chains.push_back(*name);
}

/// Adds a shift list to those that are used; "all" means all of them.
ZORVELA_EXPORT("run_choose_list") void run_choose_list(Run* run, const Text* name) {
  run->import.lists.push_back(*name);
}

/// Sets the sequence of the shift files after it from the bytes of a file; no bytes mean no sequence.
ZORVELA_EXPORT("run_sequence") void run_sequence(Run* run, const Text* name, Text* bytes) {
  run->import.sequence = nullptr;
  if (bytes->empty()) return;
  try {
    run->import.sequence = zorvela::readSequenceBytes(std::move(*bytes), *name);
  } catch (const zorvela::Error& error) {
    run->report.files.push_back({*name, {}, error.what(), true});
  }
}

/// Sets the number of the first residue of all sequences.
ZORVELA_EXPORT("run_first_residue") void run_first_residue(Run* run, int number) {
  run->import.firstResidue = number;
}

/// Adds a structure, which is compared with the files after it.
ZORVELA_EXPORT("run_add_structure") void run_add_structure(Run* run, const Text* name, const Text* bytes) {
  try {
    run->report.structures.push_back(zorvela::readStructureBytes(*bytes, *name));
    run->structures.push_back({*name, *bytes});
  } catch (const zorvela::Error& error) {
    run->report.files.push_back({*name, {}, error.what()});
  }
}

/// Predicts the bytes of a file, and moves them away.
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

/// Adds an error for a file that the host could not read; `fault` is a member of `InputFault`.
ZORVELA_EXPORT("run_add_fault") void run_add_fault(Run* run, const Text* name, int fault) {
  const zorvela::Error error = zorvela::inputError(static_cast<zorvela::InputFault>(fault), *name);
  run->report.files.push_back({*name, {}, error.what()});
}

/// Returns the report of all files so far, in a format that `about` names. Null for another name.
ZORVELA_EXPORT("run_report") Text* run_report(Run* run, const Text* format) {
  return orNull([&] {
    zorvela::noteChainsWithoutShifts(run->report);
    std::ostringstream out;
    zorvela::writeReport(*format, run->report, {}, out);
    return new Text(std::move(out).str());
  });
}

/// Returns JSON with all that the page shows around the report, much less than all results.
ZORVELA_EXPORT("run_summary") Text* run_summary(const Run* run) {
  return orNull([&] {
    using Lines = std::vector<std::string>;
    nlohmann::ordered_json proteins = nlohmann::ordered_json::array();
    Lines errors;
    bool needsSequence = false;
    Lines warnings;
    Lines notes;
    const auto add = [](const std::string& name, const Lines& from, Lines& to) {
      for (const std::string& line : from) to.push_back(name + ": " + line);
    };
    for (const zorvela::FileReport& file : run->report.files) {
      if (!file.error.empty()) errors.push_back(file.error);
      needsSequence = needsSequence || file.needsSequence;
      for (const zorvela::ProteinResult& protein : file.proteins) {
        proteins.push_back({{"file", protein.file}, {"chain", protein.chain}, {"list", protein.list}});
        const std::string name = protein.file + (protein.chain.empty() ? "" : ", chain " + protein.chain);
        add(name, zorvela::warningsOf(protein), warnings);
        add(name, protein.notes, notes);
        add(name, protein.structureNotes, notes);
      }
    }
    for (const zorvela::ProteinStructure& structure : run->report.structures)
      add(structure.file, structure.notes, notes);
    for (const std::string& line : run->report.chainsWithoutShifts) notes.push_back(line);
    return new Text(dumped({{"proteins", proteins},
                            {"errors", errors},
                            {"needsSequence", needsSequence},
                            {"warnings", warnings},
                            {"notes", notes},
                            {"structures", run->report.structures.size()}}));
  });
}

/// Returns the shift table of a protein of the report, counted from 0, with the corrected shifts.
ZORVELA_EXPORT("run_shift_table") Text* run_shift_table(const Run* run, std::size_t index) {
  return orNull([&] {
    std::ostringstream out;
    zorvela::writeShiftTable(run->predictor.corrected(run->proteins.at(index)), out);
    return new Text(std::move(out).str());
  });
}

/// Returns a NEF file of the run with the calls as flags; empty with an error in the outcome.
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

/// Returns the cis prolines of all files in a restraint format that `about` names. A single structure is the
/// model for formats that use one. `chainsAs` has a line "OLD=NEW" or "NEW" for each new chain name. Empty
/// with an error in the outcome.
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
      request.chains = predicted.results;
      zorvela::renameChains(linesOf(*chainsAs), request.chains);
      zorvela::RestraintText restraints = zorvela::writeRestraints(format, request);
      notes = std::move(restraints.notes);
      return std::move(restraints.text);
    });
  });
}

/// Returns JSON: notes and error of the last flags or restraints.
ZORVELA_EXPORT("run_outcome") Text* run_outcome(const Run* run) {
  return orNull([&] { return new Text(dumped(run->outcome)); });
}

// --- Without a run ------------------------------------------------------------------------------

/// Returns JSON: the versions of the library and of the reference tables, the names of the report formats,
/// and the restraint formats.
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

/// Returns the kind of a file: 1 NEF, 2 structure, 3 sequence in letters or names, 0 anything else.
ZORVELA_EXPORT("kind_of") int kind_of(const Text* bytes) {
  if (zorvela::looksLikeSequence(*bytes)) return 3;
  if (zorvela::holdsStructure(*bytes)) return 2;
  return zorvela::contains(*bytes, "_nef_sequence.") ? 1 : 0;
}

/// Returns JSON: the chains and shift lists in the bytes of a file; none if it cannot be read. Moves the
/// bytes away.
ZORVELA_EXPORT("contents") Text* contents(const Text* name, Text* bytes) {
  return orNull([&] {
    nlohmann::ordered_json found = nlohmann::ordered_json::array();
    try {
      for (const zorvela::Protein& protein : zorvela::readShiftBytes(std::move(*bytes), *name, {{}, {"all"}}))
        found.push_back({{"chain", protein.chain}, {"list", protein.list}});
    } catch (const zorvela::Error&) {
      // The run has the error.
    }
    return new Text(dumped(found));
  });
}

}  // extern "C"
