// The sub-command `annotate`: the calls written into a NEF file.
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/input.h"
#include "cli/input_files.h"
#include "cli/messages.h"
#include "cli/reference_tables.h"
#include "cli/whole_file.h"
#include "formats/input_bytes.h"
#include "formats/star/nef_annotation.h"
#include "util/text.h"
#include "zorvela/error.h"
#include "zorvela/predict.h"
#include "zorvela/read.h"

namespace zorvela {

namespace {

struct AnnotateSettings {
  std::string file;
  std::string output;
  std::string tables;
  ImportOptions import;
  PredictorOptions predict;
  bool keep = false;
};

/// The decided calls by chain and residue number.
class Calls {
 public:
  explicit Calls(const std::vector<ProteinResult>& results) {
    for (const ProteinResult& protein : results)
      for (const ProlineResult& proline : protein.prolines) add(protein.chain, proline);
  }

  /// Entries that stand one after the other in a file have their name in front of their chains.
  std::optional<bool> of(const NefSequenceRow& row) const {
    for (const std::string& chain : {row.chain, row.block + (row.chain.empty() ? "" : "_" + row.chain)})
      if (const auto known = isCis.find(key(chain, row.number)); known != isCis.end()) return known->second;
    return std::nullopt;
  }

  std::size_t decided() const { return isCis.size(); }
  std::size_t undecided() const { return open; }

 private:
  static std::string key(const std::string& chain, const std::string& number) {
    return chain + '\n' + number;
  }

  void add(const std::string& chain, const ProlineResult& proline) {
    if (proline.call == Call::cis || proline.call == Call::trans)
      isCis.emplace(key(chain, proline.number), proline.call == Call::cis);
    else
      ++open;
  }

  std::unordered_map<std::string, bool> isCis;
  std::size_t open = 0;
};

std::vector<ProteinResult> predict(const AnnotateSettings& settings, const std::string& name,
                                   const std::string& text) {
  Predictor predictor(loadTables(findTables(settings.tables)), settings.predict);
  std::vector<ProteinResult> results;
  for (const Protein& protein : readShiftBytes(text, name, settings.import))
    results.push_back(predictor.predict(protein));
  for (const ProteinResult& result : results)
    if (!result.correction.empty())
      say("note: " + messageName(name, result.chain) + ": " + result.correction);
  return results;
}

void sayDone(const AnnotateSettings& settings, const Calls& calls, const NefAnnotation& annotation) {
  const std::string name = messageName(settings.file, "");
  for (const FlagChange& flag : annotation.differing)
    say("note: " + name + ", chain " + printable(flag.row.chain, 60) + ": cis_peptide of " +
        printable(flag.row.residue + " " + flag.row.number, 60) + " was " + flag.before +
        ", the shifts say " + (flag.isCis ? "true" : "false") +
        (settings.keep ? "; left as it was" : "; replaced"));
  if (annotation.columnAdded) say("note: " + name + ": the sequence had no column cis_peptide; it was added");
  say(counted(calls.decided(), "proline", "prolines") + " decided, " + std::to_string(calls.undecided()) +
      " not; " + counted(annotation.written, "flag", "flags") + " written, " +
      std::to_string(annotation.confirmed) + " said so before");
}

void annotate(const AnnotateSettings& settings) {
  InputFiles inputs({settings.file});
  inputs.addFolder(findTables(settings.tables));
  inputs.mustNotHold(settings.output);
  const std::string name = inputName(settings.file);
  const std::string bytes = settings.file == "-" ? streamBytes(stdin, name) : fileBytes(settings.file);
  const std::string text = unpacked(bytes, name);
  const Calls calls(predict(settings, name, text));
  const NefAnnotation annotation =
      annotateNef(text, name, settings.keep, [&](const NefSequenceRow& row) { return calls.of(row); });
  const std::string result = isGzipped(bytes) ? packed(annotation.text) : annotation.text;
  writeWhole(settings.output, [&](std::ostream& out) {
    out.write(result.data(), static_cast<std::streamsize>(result.size()));
  });
  sayDone(settings, calls, annotation);
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
  command.addFlag("--keep", settings->keep, "Leave flags that are there already");
  command.add("--tables", settings->tables, "DIR", "Folder of the seven reference tables");
  command.addFlag("--as-referenced", settings->predict.asReferenced,
                  "Keep referencing offsets, which are else taken away where they are certain");
  command
      .add("--list", settings->import.lists, "NAME",
           "Predict from the shift list of this name; default: the one with most shifts")
      .repeated();
  command.footer(
      "true: cis, false: trans, before the residue. Flags of undecided prolines and of all other residues\n"
      "stay as they are, and so does every other byte.");
  command.runs([settings] { annotate(*settings); });
}

}  // namespace zorvela
