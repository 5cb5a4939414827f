#include "cli/given_sequences.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "formats/input_bytes.h"
#include "formats/sequence_file.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

namespace fs = std::filesystem;

constexpr const char* kOfAll = "";

/// "data/p" of "data/p.prot" and "data/p.seq.gz".
std::string stemOf(const std::string& path) {
  fs::path stem = path;
  if (equalIgnoringCase(stem.extension().string(), ".gz")) stem.replace_extension();
  return stem.replace_extension().string();
}

}  // namespace

void addSequence(Command& command, SequenceArguments& given) {
  command.add(
      "--sequence", given.file, ValueKind("SEQ").notEmpty(),
      "The sequence for shift files without one: FASTA, one-letter text, .seq, NMR-STAR or NEF. Without it, "
      "a sequence among the files belongs to the shift file of the same stem, or to the only one");
  command.add("--first-residue", given.firstNumber, ValueKind("N").notEmpty(),
              "Number of the first residue of the sequence; default: as there, 1 where it has no numbers");
}

GivenSequences::GivenSequences(const SequenceArguments& given, std::vector<std::string>& inputs) {
  const auto others = std::stable_partition(inputs.begin(), inputs.end(),
                                            [](const std::string& path) { return !isSequenceFile(path); });
  const std::vector<std::string> sequences(others, inputs.end());
  inputs.erase(others, inputs.end());
  if (!given.file.empty() && !sequences.empty())
    throw Error(sequences.front(), 0, "is a sequence beside that of --sequence", "give one of the two");
  if (inputs.empty() && !sequences.empty())
    throw Error(sequences.front(), 0, "is a sequence without shifts",
                "give the file with the chemical shifts too");
  if (!given.file.empty()) {
    paths.push_back(given.file);
    byStem[kOfAll] = readSequenceBytes(fileBytes(given.file), given.file);
  }
  for (const std::string& path : sequences) add(path, inputs);
  if (given.firstNumber.empty()) return;
  first = toInteger(given.firstNumber);
  if (!first)
    throw Error("--first-residue: \"" + printable(given.firstNumber, 20) + "\" is not a whole number");
  if (byStem.empty()) throw Error("--first-residue goes with a sequence: give one by --sequence");
}

void GivenSequences::add(const std::string& path, const std::vector<std::string>& shiftFiles) {
  const std::string stem = shiftFiles.size() == 1 ? kOfAll : stemOf(path);
  const auto isOfStem = [&](const std::string& file) { return stemOf(file) == stem; };
  if (stem != kOfAll && std::none_of(shiftFiles.begin(), shiftFiles.end(), isOfStem))
    throw Error(path, 0, "is a sequence, but no shift file is named as it is",
                "name it as its shift file, or give it by --sequence");
  paths.push_back(path);
  GivenSequence sequence = readSequenceBytes(fileBytes(path), path);
  const auto [known, isNew] = byStem.emplace(stem, sequence);
  if (isNew) return;
  if (const std::string difference = differenceOf(*known->second, *sequence); !difference.empty())
    throw Error(path, 0, "differs from " + known->second->file + ": " + difference, "give one of the two");
}

ImportOptions GivenSequences::optionsFor(const std::string& file, ImportOptions options) const {
  auto found = byStem.find(kOfAll);
  if (found == byStem.end()) found = byStem.find(stemOf(file));
  if (found == byStem.end()) return options;
  options.sequence = found->second;
  options.firstResidue = first;
  return options;
}

bool isSequenceFile(const std::string& path) {
  constexpr std::size_t kHead = 4096;
  std::error_code unknown;
  if (!fs::is_regular_file(path, unknown)) return false;  // a pipe can be read once
  try {
    return looksLikeSequence(fileBytes(path, kHead));
  } catch (const Error&) {
    return false;
  }
}

}  // namespace zorvela
