#include "restrain/nef_flags.h"

#include <algorithm>
#include <map>
#include <optional>
#include <tuple>
#include <utility>

#include "names/nomenclature.h"
#include "structure/chain_alignment.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr double kSameSequenceFrom = 95;
constexpr std::size_t kLongestName = 60;

/// A chain of the NEF file. The name of the entry comes first if the file has several entries.
struct NefChain {
  std::string block;
  std::string name;
  StructureChain residues;

  bool isNamed(const std::string& other) const {
    return other == name || other == block + (name.empty() ? "" : "_" + name);
  }
};

/// By data block, chain and residue number.
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

/// By numbers for a chain of the same file, else by sequence; nothing aligned for another protein.
ChainAlignment alignmentOf(const Protein& protein, const NefChain& chain, bool byNumber,
                           StructureAligner& aligner) {
  if (!byNumber) {
    ChainAlignment alignment = aligner.align(protein.sequence, ChainRest(chain.residues));
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

/// Those of the chain's own name, else those that are most alike.
std::vector<Source> sourcesOf(const NefChain& chain, const PredictedProteins& predicted,
                              StructureAligner& aligner) {
  std::vector<Source> best;
  bool isNamesake = false;
  for (std::size_t p = 0; p < predicted.proteins.size(); ++p) {
    const ProteinResult& result = predicted.results[p];
    const bool isOfName = chain.isNamed(result.chain);
    ChainAlignment alignment =
        alignmentOf(predicted.proteins[p], chain, predicted.areOfFile && isOfName, aligner);
    if (alignment.identical == 0 || (isNamesake && !isOfName)) continue;
    if (!best.empty() && isOfName == isNamesake) {
      if (alignment.identical < best.front().alignment.identical) continue;
      if (alignment.identical > best.front().alignment.identical) best.clear();
    } else {
      best.clear();
    }
    isNamesake = isOfName;
    best.push_back({&result, std::move(alignment)});
  }
  return best;
}

/// Where copies contradict each other, the first one counts.
void addFlags(const Source& source, const NefChain& chain, Flags& flags) {
  for (const ProlineResult& proline : source.result->prolines) {
    if (proline.call != Call::cis && proline.call != Call::trans) continue;
    const std::size_t place = source.alignment.inStructure[static_cast<std::size_t>(proline.position) - 1];
    if (place == kNoResidue) continue;
    const StructureResidue& residue = chain.residues.residues[place];
    if (residue.letter == kProlineCode)
      flags.emplace(std::make_tuple(chain.block, chain.name, residue.number), proline.call == Call::cis);
  }
}

Flags flagsOf(const std::vector<NefChain>& chains, const std::string& name,
              const PredictedProteins& predicted, std::vector<std::string>& notes) {
  Flags flags;
  bool isAnyFound = false;
  std::size_t residues = 0;
  for (const NefChain& chain : chains) residues += chain.residues.residues.size();
  StructureAligner aligner(name, residues);
  for (const NefChain& chain : chains) {
    const std::vector<Source> sources = sourcesOf(chain, predicted, aligner);
    for (const Source& source : sources) addFlags(source, chain, flags);
    if (sources.empty()) continue;
    isAnyFound = true;
    const ProteinResult& result = *sources.front().result;
    if (!predicted.areOfFile || !chain.isNamed(result.chain))
      notes.push_back(chainOfFile(name, chain.name) + ": flags by the sequence, from " +
                      chainOfFile(result.file, result.chain));
  }
  if (!isAnyFound)
    throw FileError(name, 0, "has no chain with the sequence of the shifts",
                    "give the shifts of this protein");
  return flags;
}

std::string noteOn(const FlagChange& flag, const std::string& name, bool isReplaced) {
  return name + ", chain " + printable(flag.row.chain, kLongestName) + ": cis_peptide of " +
         printable(flag.row.residue + " " + flag.row.number, kLongestName) + " was " + flag.before +
         ", the shifts predict " + (flag.isCis ? "cis" : "trans") +
         (isReplaced ? "; replaced" : "; left as it was");
}

}  // namespace

FlaggedNef flaggedNef(const std::string& text, const std::string& name, const PredictedProteins& predicted,
                      const FlagRules& rules) {
  FlaggedNef flagged;
  const Flags flags = flagsOf(chainsOf(text, name), name, predicted, flagged.notes);
  flagged.annotation =
      annotateNef(text, name, rules, [&flags](const NefSequenceRow& row) -> std::optional<bool> {
        const auto flag = flags.find(std::make_tuple(row.block, row.chain, row.number));
        if (flag == flags.end() || polypeptideResidue(row.residue).letter != kProlineCode)
          return std::nullopt;
        return flag->second;
      });
  for (const FlagChange& flag : flagged.annotation.differing)
    flagged.notes.push_back(noteOn(flag, name, rules.replace));
  if (flagged.annotation.columnAdded)
    flagged.notes.push_back(name + ": the sequence had no column cis_peptide; it was added");
  return flagged;
}

}  // namespace zorvela
