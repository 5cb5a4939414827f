// The sub-command `annotate`: the calls written into a NEF file.
#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/input.h"
#include "cli/input_files.h"
#include "cli/messages.h"
#include "cli/prediction_options.h"
#include "cli/reference_tables.h"
#include "cli/whole_file.h"
#include "formats/input_bytes.h"
#include "formats/star/nef_annotation.h"
#include "names/nomenclature.h"
#include "restrain/restraints.h"
#include "structure/chain_alignment.h"
#include "util/text.h"
#include "zorvela/error.h"
#include "zorvela/predict.h"
#include "zorvela/read.h"

namespace zorvela {

namespace {

constexpr double kSameSequenceFrom = 95;
constexpr std::size_t kNotesShown = 5;
constexpr const char* kAllNotes = "zorvela-kit run --format json has them all";

struct AnnotateSettings {
  std::string file;
  std::vector<std::string> shifts;
  std::string output;
  std::string tables;
  ImportOptions import;
  PredictorOptions predict;
  FlagRules rules;
};

/// A chain of the NEF file. The entry's name stands in front where several entries are in one file.
struct NefChain {
  std::string block;
  std::string name;
  StructureChain residues;

  bool isNamed(const std::string& other) const {
    return other == name || other == block + (name.empty() ? "" : "_" + name);
  }
};

using Flags = std::map<std::tuple<std::string, std::string, std::string>, bool>;

std::vector<NefChain> chainsOf(const std::string& text, const std::string& name) {
  std::vector<NefChain> chains;
  std::map<std::pair<std::string, std::string>, std::size_t> places;
  annotateNef(text, name, {}, [&](const NefSequenceRow& row) -> std::optional<bool> {
    const auto [at, isNew] = places.emplace(std::make_pair(row.block, row.chain), chains.size());
    if (isNew) chains.push_back({row.block, row.chain, {}});
    StructureResidue residue;
    residue.letter = polypeptideResidue(row.residue).letter;
    residue.number = row.number;
    chains[at->second].residues.residues.push_back(std::move(residue));
    return std::nullopt;
  });
  return chains;
}

/// A protein with calls that has the sequence of a chain.
struct Source {
  const ProteinResult* result = nullptr;
  ChainAlignment alignment;
};

/// The proteins of the shifts by which the chains of a NEF file get their flags.
class Calls {
 public:
  Calls(const AnnotateSettings& settings, const std::string& text) : name(inputName(settings.file)) {
    const Predictor predictor(loadTables(findTables(settings.tables)), settings.predict);
    isOwn = settings.shifts.empty();
    if (isOwn) read(readShiftBytes(text, name, settings.import), predictor);
    for (const std::string& file : settings.shifts) read(readInput(file, settings.import), predictor);
  }

  Flags flagsOf(const std::vector<NefChain>& chains) {
    Flags flags;
    bool isAnyFound = false;
    for (const NefChain& chain : chains) {
      const std::vector<Source> sources = sourcesOf(chain);
      for (const Source& source : sources) addFlags(source, chain, flags);
      if (sources.empty()) continue;
      isAnyFound = true;
      const ProteinResult& result = *sources.front().result;
      if (!isOwn || !chain.isNamed(result.chain))
        say("note: " + messageName(name, chain.name) + ": flags by the sequence, from " +
            messageName(result.file, result.chain));
    }
    if (!isAnyFound)
      throw FileError(name, 0, "has no chain with the sequence of the shifts",
                      "give the shifts of this protein");
    return flags;
  }

  std::string summary() const { return summaryOf(restrainedChains(proteins, results)); }

 private:
  void read(std::vector<Protein> all, const Predictor& predictor) {
    for (Protein& protein : all) {
      results.push_back(predictor.predict(protein));
      const std::string& correction = results.back().correction;
      if (!isOwn)
        sayFileNotes(protein.file, {{protein.chain, results.back().notes}}, kNotesShown, kAllNotes);
      else if (!correction.empty())
        say("note: " + messageName(name, protein.chain) + ": " + correction);
      proteins.push_back(std::move(protein));
    }
  }

  /// Those of the chain's own name, else those that are most alike.
  std::vector<Source> sourcesOf(const NefChain& chain) const {
    std::vector<Source> best;
    bool isNamesake = false;
    for (std::size_t p = 0; p < proteins.size(); ++p) {
      const bool isOfName = chain.isNamed(results[p].chain);
      ChainAlignment alignment = alignmentWith(proteins[p], chain, isOfName);
      if (alignment.identical == 0 || (isNamesake && !isOfName)) continue;
      if (!best.empty() && isOfName == isNamesake) {
        if (alignment.identical < best.front().alignment.identical) continue;
        if (alignment.identical > best.front().alignment.identical) best.clear();
      } else {
        best.clear();
      }
      isNamesake = isOfName;
      best.push_back({&results[p], std::move(alignment)});
    }
    return best;
  }

  /// By numbers for a chain of the same file, else by sequence; nothing aligned for another protein.
  ChainAlignment alignmentWith(const Protein& protein, const NefChain& chain, bool isOfName) const {
    if (!isOwn || !isOfName) {
      ChainAlignment alignment = align(protein.sequence, chain.residues);
      const std::size_t shorter = std::min(protein.sequence.size(), chain.residues.residues.size());
      const bool isSame = alignment.identity() >= kSameSequenceFrom && 2 * alignment.aligned >= shorter;
      return isSame ? alignment : ChainAlignment();
    }
    std::map<std::string, std::size_t> places;
    for (std::size_t i = 0; i < chain.residues.residues.size(); ++i)
      places.emplace(chain.residues.residues[i].number, i);
    ChainAlignment alignment;
    for (const std::string& number : protein.numbers) {
      const auto at = places.find(number);
      alignment.inStructure.push_back(at == places.end() ? kNoResidue : at->second);
      if (at != places.end()) ++alignment.identical;
    }
    return alignment;
  }

  /// Where copies contradict each other, the first one counts.
  static void addFlags(const Source& source, const NefChain& chain, Flags& flags) {
    for (const ProlineResult& proline : source.result->prolines) {
      if (proline.call != Call::cis && proline.call != Call::trans) continue;
      const std::size_t place = source.alignment.inStructure[static_cast<std::size_t>(proline.position) - 1];
      if (place == kNoResidue) continue;
      const StructureResidue& residue = chain.residues.residues[place];
      if (residue.letter == kProlineCode)
        flags.emplace(std::make_tuple(chain.block, chain.name, residue.number), proline.call == Call::cis);
    }
  }

  std::string name;
  bool isOwn = true;
  std::vector<Protein> proteins;
  std::vector<ProteinResult> results;
};

void sayDone(const AnnotateSettings& settings, const NefAnnotation& annotation) {
  const std::string name = messageName(settings.file, "");
  for (const FlagChange& flag : annotation.differing)
    say("note: " + name + ", chain " + printable(flag.row.chain, 60) + ": cis_peptide of " +
        printable(flag.row.residue + " " + flag.row.number, 60) + " was " + flag.before +
        ", the shifts say " + (flag.isCis ? "cis" : "trans") +
        (settings.rules.replace ? "; replaced" : "; left as it was (--replace)"));
  if (annotation.columnAdded) say("note: " + name + ": the sequence had no column cis_peptide; it was added");
}

void annotate(const AnnotateSettings& settings) {
  std::vector<std::string> files = settings.shifts;
  files.push_back(settings.file);
  InputFiles inputs(files);
  inputs.addFolder(findTables(settings.tables));
  inputs.mustNotHold(settings.output);
  const std::string name = inputName(settings.file);
  const std::string bytes = settings.file == "-" ? streamBytes(stdin, name) : fileBytes(settings.file);
  const std::string text = unpacked(bytes, name);
  Calls calls(settings, text);
  const Flags flags = calls.flagsOf(chainsOf(text, name));
  const NefAnnotation annotation =
      annotateNef(text, name, settings.rules, [&flags](const NefSequenceRow& row) -> std::optional<bool> {
        const auto flag = flags.find(std::make_tuple(row.block, row.chain, row.number));
        if (flag == flags.end() || polypeptideResidue(row.residue).letter != kProlineCode)
          return std::nullopt;
        return flag->second;
      });
  const std::string result = isGzipped(bytes) ? packed(annotation.text) : annotation.text;
  writeWhole(settings.output, [&](std::ostream& out) {
    out.write(result.data(), static_cast<std::streamsize>(result.size()));
  });
  sayDone(settings, annotation);
  say(calls.summary());
  say(counted(annotation.written, "flag", "flags") + " written, " + std::to_string(annotation.confirmed) +
      " said so before");
}

}  // namespace

void addAnnotate(CommandLine& line) {
  const auto settings = std::make_shared<AnnotateSettings>();
  Command command = line.addCommand("annotate", "Write the calls into a NEF file (cis_peptide)");
  command.add("FILE", settings->file, "", "NEF file, also gzipped; - is standard input").required();
  command
      .add("--output", settings->output, "FILE",
           "The annotated file, gzipped if the input is; - is standard output")
      .required();
  command
      .add("--shifts", settings->shifts, "FILE",
           "Predict from the shifts in this file, of any format; may be repeated. Default: those of the NEF "
           "file")
      .repeated();
  command.addFlag("--trans", settings->rules.trans, "Write false for trans prolines; default: nothing");
  command.addFlag("--replace", settings->rules.replace,
                  "Replace flags that are there and say something else; default: leave them, with a note");
  command.add("--tables", settings->tables, "DIR", "Folder of the seven reference tables");
  addPredictionOptions(command, settings->predict);
  command
      .add("--list", settings->import.lists, ValueKind("NAME").notEmpty(),
           "Predict from the shift list of this name; default: the one with most shifts")
      .repeated();
  command.footer(
      "true: a cis bond before the residue. Programs differ in how they read the flag: check the model with\n"
      "run --structure. Flags of undecided prolines and of all other residues stay as they are, and so does\n"
      "every other byte.");
  command.runs([settings] { annotate(*settings); });
}

}  // namespace zorvela
