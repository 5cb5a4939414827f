#include "cli/joined_inputs.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "cli/input.h"
#include "cli/messages.h"
#include "formats/input_bytes.h"
#include "formats/sequence_file.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr const char* kOfAll = "";
// Lists of one protein come in few files, and each is compared with each.
constexpr std::size_t kFewInputs = 10;

}  // namespace

void addJoining(Command& command, JoinArguments& given) {
  command
      .add("--sequence", given.file, "FILE",
           "Sequence for shift files without one: FASTA, one-letter text, .seq, NMR-STAR or NEF")
      .showsDefault("a sequence among the files, for the shift file of the same stem or the only one");
  command.add("--first-residue", given.firstNumber, "N", "Number of the first residue of the sequence")
      .showsDefault("as in the sequence file, else 1");
  command.addFlag("--merge", given.merge,
                  "Make one protein of all shift files: the first that has an atom gives its shift");
}

JoinedInputs::JoinedInputs(const FileArguments& named, const JoinArguments& joining)
    : shiftFiles(namedFiles(named)), all(shiftFiles) {
  for (const std::string& path : {named.list, joining.file})
    if (!path.empty()) all.push_back(path);
  const auto others = std::stable_partition(shiftFiles.begin(), shiftFiles.end(),
                                            [](const std::string& path) { return !isSequenceFile(path); });
  const std::vector<std::string> sequences(others, shiftFiles.end());
  shiftFiles.erase(others, shiftFiles.end());
  if (!joining.file.empty() && !sequences.empty())
    throw Error(sequences.front(), 0, "is a second sequence beside that of --sequence",
                "give one of the two");
  if (shiftFiles.empty())
    throw Error(sequences.front(), 0, "is a sequence without shifts",
                "give the file with the chemical shifts too");
  if (!joining.file.empty()) byStem[kOfAll] = readSequenceBytes(fileBytes(joining.file), joining.file);
  if (joining.merge) {
    merged = shiftFiles;
    shiftFiles.resize(1);
  }
  areFew = shiftFiles.size() > 1 && shiftFiles.size() <= kFewInputs;
  for (const std::string& path : sequences) addSequence(path);
  if (joining.firstNumber.empty()) return;
  first = toInteger(joining.firstNumber);
  if (!first)
    throw Error("--first-residue: \"" + printable(joining.firstNumber, 20) + "\" is not a whole number");
  if (byStem.empty()) throw Error("--first-residue needs a sequence; give one with --sequence");
}

void JoinedInputs::addSequence(const std::string& path) {
  const std::string stem = shiftFiles.size() == 1 ? kOfAll : inputStem(path);
  const auto isOfStem = [&](const std::string& file) { return inputStem(file) == stem; };
  if (stem != kOfAll && std::none_of(shiftFiles.begin(), shiftFiles.end(), isOfStem))
    throw Error(path, 0, "is a sequence, but no shift file has its name",
                "name it like its shift file, or give it with --sequence");
  GivenSequence sequence = readSequenceBytes(fileBytes(path), path);
  const auto [known, isNew] = byStem.emplace(stem, sequence);
  if (isNew) return;
  if (const std::string difference = differenceOf(*known->second, *sequence); !difference.empty())
    throw Error(path, 0, "differs from " + known->second->file + ": " + difference, "give one of the two");
}

std::vector<Protein> JoinedInputs::read(const std::string& input, const ImportOptions& options) const {
  if (merged.empty()) {
    std::vector<Protein> proteins = readInput(input, optionsFor(input, options));
    if (areFew && proteins.size() == 1) {
      const std::lock_guard<std::mutex> guard(lock);
      kept[input] = proteins.front();
    }
    return proteins;
  }
  std::vector<Protein> parts;
  for (const std::string& file : merged) {
    std::vector<Protein> proteins = readInput(file, optionsFor(file, options));
    if (proteins.size() > 1)
      throw Error(inputName(file), 0, "has " + std::to_string(proteins.size()) + " chains or lists",
                  "choose one with --chain or --list to merge it");
    parts.push_back(std::move(proteins.front()));
  }
  return {mergedProtein(parts)};
}

void JoinedInputs::sayLookAlikes() const {
  for (auto one = kept.begin(); one != kept.end(); ++one)
    for (auto other = std::next(one); other != kept.end(); ++other)
      if (lookLikeOne(one->second, other->second))
        say("note: " + inputName(one->first) + " and " + inputName(other->first) +
            " look like two shift lists of one protein; --merge combines them");
}

ImportOptions JoinedInputs::optionsFor(const std::string& file, ImportOptions options) const {
  auto found = byStem.find(kOfAll);
  if (found == byStem.end()) found = byStem.find(inputStem(file));
  if (found == byStem.end()) return options;
  options.sequence = found->second;
  options.firstResidue = first;
  return options;
}

}  // namespace zorvela
