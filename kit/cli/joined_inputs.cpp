#include "cli/joined_inputs.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>
#include <utility>

#include "cli/input.h"
#include "cli/messages.h"
#include "formats/input_bytes.h"
#include "formats/sequence_file.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

namespace fs = std::filesystem;

constexpr const char* kOfAll = "";
// Lists of one protein come in few files, and each is compared with each.
constexpr std::size_t kFewInputs = 10;

}  // namespace

void addJoining(Command& command, JoinArguments& given) {
  command
      .add("--sequence", given.file, ValueKind("FILE").notEmpty(),
           "Sequence for shift files without one: FASTA, one-letter text, .seq, NMR-STAR or NEF")
      .showsDefault("a sequence among the files, for the shift file of the same stem or the only one");
  command
      .add("--first-residue", given.firstNumber, ValueKind("N").notEmpty(),
           "Number of the first residue of the sequence")
      .showsDefault("as in the sequence file, else 1");
  command.addFlag("--merge", given.merge,
                  "Make one protein of all shift files: the first that has an atom gives its shift");
}

JoinedInputs::JoinedInputs(const JoinArguments& given, std::vector<std::string>& inputs) {
  const auto others = std::stable_partition(inputs.begin(), inputs.end(),
                                            [](const std::string& path) { return !isSequenceFile(path); });
  const std::vector<std::string> sequences(others, inputs.end());
  inputs.erase(others, inputs.end());
  if (!given.file.empty() && !sequences.empty())
    throw Error(sequences.front(), 0, "is a second sequence beside that of --sequence",
                "give one of the two");
  if (inputs.empty() && !sequences.empty())
    throw Error(sequences.front(), 0, "is a sequence without shifts",
                "give the file with the chemical shifts too");
  if (!given.file.empty()) {
    paths.push_back(given.file);
    byStem[kOfAll] = readSequenceBytes(fileBytes(given.file), given.file);
  }
  if (given.merge) {
    merged = inputs;
    paths.insert(paths.end(), inputs.begin() + (inputs.empty() ? 0 : 1), inputs.end());
    inputs.resize(std::min<std::size_t>(inputs.size(), 1));
  }
  areFew = inputs.size() > 1 && inputs.size() <= kFewInputs;
  for (const std::string& path : sequences) add(path, inputs);
  if (given.firstNumber.empty()) return;
  first = toInteger(given.firstNumber);
  if (!first)
    throw Error("--first-residue: \"" + printable(given.firstNumber, 20) + "\" is not a whole number");
  if (byStem.empty()) throw Error("--first-residue needs a sequence; give one with --sequence");
}

void JoinedInputs::add(const std::string& path, const std::vector<std::string>& shiftFiles) {
  const std::string stem = shiftFiles.size() == 1 ? kOfAll : inputStem(path);
  const auto isOfStem = [&](const std::string& file) { return inputStem(file) == stem; };
  if (stem != kOfAll && std::none_of(shiftFiles.begin(), shiftFiles.end(), isOfStem))
    throw Error(path, 0, "is a sequence, but no shift file has its name",
                "name it like its shift file, or give it with --sequence");
  paths.push_back(path);
  GivenSequence sequence = readSequenceBytes(fileBytes(path), path);
  const auto [known, isNew] = byStem.emplace(stem, sequence);
  if (isNew) return;
  if (const std::string difference = differenceOf(*known->second, *sequence); !difference.empty())
    throw Error(path, 0, "differs from " + known->second->file + ": " + difference, "give one of the two");
}

std::vector<Protein> JoinedInputs::read(const std::string& input, const ImportOptions& options) const {
  if (merged.empty()) {
    std::vector<Protein> proteins = readInput(input, optionsFor(input, options));
    if (areFew && proteins.size() == 1) keep(proteins.front());
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

void JoinedInputs::keep(const Protein& protein) const {
  const std::lock_guard<std::mutex> guard(lock);
  kept[protein.file] = protein;
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

bool isSequenceFile(const std::string& path) {
  constexpr std::size_t kHead = std::size_t{1} << 16;
  std::error_code unknown;
  if (!fs::is_regular_file(path, unknown)) return false;  // a pipe can be read once
  try {
    const std::string head = unpacked(fileBytes(path, kHead), path);
    return looksLikeSequence(std::string_view(head).substr(0, kHead));  // 64 KiB unpack to many MB
  } catch (const Error&) {
    return false;
  }
}

}  // namespace zorvela
