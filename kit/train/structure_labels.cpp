// Votes of structures for prolines.
#include "train/structure_labels.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <ostream>
#include <tuple>
#include <utility>

#include "names/nomenclature.h"
#include "protein/states_by_shift.h"
#include "structure/chain_alignment.h"
#include "train/sequence_clusters.h"
#include "util/number.h"
#include "util/text.h"

namespace zorvela {

namespace {

constexpr std::size_t kWordLength = 4;
// By chance a chain of 300 residues shares one word with a protein of 100 in one case of six.
constexpr std::size_t kSharedWords = 2;

/// States of one proline in the chains and models of a structure, before they become one vote.
struct Tally {
  std::size_t cis = 0;
  std::size_t trans = 0;
  std::size_t bonds = 0;
  StructureFit best;
};

/// By identity, then by length.
bool fitsBetter(const StructureFit& one, const StructureFit& than) {
  return std::tie(one.identity, one.aligned) > std::tie(than.identity, than.aligned);
}

bool isIdentical(const StructureFit& fit) {
  return fit.identity >= LabelVotes::kSameSequence;
}

bool fits(const ChainAlignment& alignment, std::size_t sequenceLength, double leastIdentity) {
  const std::size_t needed = std::min(kFewestAligned, sequenceLength);
  return alignment.aligned >= needed && alignment.identity() >= leastIdentity;
}

/// Finds the residue of a proline in the chain, if both its neighbours are beside it.
const StructureResidue* prolineIn(const StructureChain& chain, const ChainAlignment& alignment,
                                  std::size_t position) {
  const auto& place = alignment.inStructure;
  const std::size_t i = position - 1;
  if (i == 0 || i + 1 >= place.size()) return nullptr;
  const std::size_t j = place[i];
  if (j == kNoResidue || place[i - 1] == kNoResidue || place[i - 1] + 1 != j) return nullptr;
  const StructureResidue& residue = chain.residues[j];
  return residue.letter == kProlineCode ? &residue : nullptr;
}

void add(const StructureResidue& residue, const StructureFit& fit, Tally& tally) {
  for (const ModelBond& bond : residue.bonds) {
    if (bond.state == BondState::cis) ++tally.cis;
    if (bond.state == BondState::trans) ++tally.trans;
    ++tally.bonds;
  }
  if (fitsBetter(fit, tally.best)) tally.best = fit;
}

const char* labelOf(const ProlineVotes& votes) {
  if (votes.cis > votes.trans) return "cis";
  return votes.trans > votes.cis ? "trans" : "";
}

std::string shiftLabel(double difference) {
  const Call call = callOfCbMinusCg(difference);
  return call == Call::undecided ? "unclear" : toText(call);
}

}  // namespace

std::string entryName(const std::string& path) {
  std::filesystem::path name = std::filesystem::path(path).filename();
  if (equalIgnoringCase(name.extension().string(), ".gz")) name = name.stem();
  const bool isEnt = equalIgnoringCase(name.extension().string(), ".ent");
  std::string stem = name.stem().string();
  if (isEnt && stem.size() > 3 && equalIgnoringCase(stem.substr(0, 3), "pdb")) stem.erase(0, 3);
  return stem;
}

LabelVotes::LabelVotes(std::vector<Protein> proteins, double identity)
    : all(std::move(proteins)), votes(all.size()), leastIdentity(identity) {
  for (std::size_t p = 0; p < all.size(); ++p) {
    const std::string& sequence = all[p].sequence;
    for (std::size_t i = 0; i < sequence.size(); ++i)
      if (sequence[i] == kProlineCode) {
        votes[p].emplace_back();
        votes[p].back().position = static_cast<int>(i) + 1;
      }
    if (votes[p].empty()) continue;
    for (const std::string& word : wordsOf(sequence, kWordLength)) proteinsWith[word].push_back(p);
  }
}

std::vector<std::size_t> LabelVotes::candidates(const StructureChain& chain) const {
  std::unordered_map<std::size_t, std::size_t> shared;
  for (const std::string& word : wordsOf(chain.letters(), kWordLength)) {
    const auto known = proteinsWith.find(word);
    if (known == proteinsWith.end()) continue;
    for (const std::size_t protein : known->second) ++shared[protein];
  }
  std::vector<std::size_t> result;
  for (const auto& [protein, count] : shared)
    if (count >= kSharedWords) result.push_back(protein);
  std::sort(result.begin(), result.end());
  return result;
}

Ballots LabelVotes::ballots(const ProteinStructure& structure) const {
  std::map<std::pair<std::size_t, std::size_t>, Tally> tallies;
  Ballots result;
  StructureAligner aligner(structure);
  for (const StructureChain& chain : structure.chains)
    for (const std::size_t protein : candidates(chain)) {
      const std::string& sequence = all[protein].sequence;
      for (ChainRest rest(chain); !rest.isEmpty();) {
        const ChainAlignment alignment = aligner.align(sequence, rest);
        if (!fits(alignment, sequence.size(), leastIdentity)) break;
        result.fits = true;
        const StructureFit fit = {entryName(structure.file) + chain.name, alignment.identity(),
                                  alignment.aligned};
        for (std::size_t i = 0; i < votes[protein].size(); ++i)
          if (const StructureResidue* residue =
                  prolineIn(chain, alignment, static_cast<std::size_t>(votes[protein][i].position)))
            add(*residue, fit, tallies[{protein, i}]);
        rest.take(alignment);
      }
    }
  for (const auto& [proline, tally] : tallies) {
    if (tally.bonds == 0) continue;
    Ballot ballot = {proline.first, proline.second, std::nullopt, tally.best};
    if (tally.cis != tally.trans) ballot.isCis = tally.cis > tally.trans;
    result.list.push_back(std::move(ballot));
  }
  return result;
}

void LabelVotes::count(const std::vector<Ballot>& ballots) {
  for (const Ballot& ballot : ballots) {
    ProlineVotes& proline = votes[ballot.protein][ballot.proline];
    if (!ballot.isCis) {
      proline.isAnySplit = true;
      continue;
    }
    const StructureFit& best = proline.best;
    if (isIdentical(best) && !isIdentical(ballot.fit)) continue;
    if (isIdentical(ballot.fit) && !isIdentical(best)) proline.cis = proline.trans = 0;
    ++(*ballot.isCis ? proline.cis : proline.trans);
    // Of equals the first by name.
    if (!fitsBetter(best, ballot.fit) &&
        (fitsBetter(ballot.fit, best) || best.chain.empty() || ballot.fit.chain < best.chain))
      proline.best = ballot.fit;
  }
}

std::size_t LabelVotes::prolines() const {
  std::size_t count = 0;
  for (const auto& ofProtein : votes) count += ofProtein.size();
  return count;
}

std::size_t LabelVotes::labelled() const {
  const auto isLabelled = [](const ProlineVotes& proline) { return proline.cis != proline.trans; };
  std::size_t count = 0;
  for (const auto& ofProtein : votes)
    count += static_cast<std::size_t>(std::count_if(ofProtein.begin(), ofProtein.end(), isLabelled));
  return count;
}

void LabelVotes::write(std::ostream& out) const {
  std::vector<std::string> sequences;
  for (const Protein& protein : all) sequences.push_back(protein.sequence);
  const std::vector<std::size_t> clusters = sequenceClusters(sequences);
  out << "entry,resid,resid_file,prev,next,label_structure,votes_cis,votes_trans,tier,structure,label_shift,"
         "cb_minus_cg,cluster\n";
  for (std::size_t p = 0; p < all.size(); ++p)
    for (const ProlineVotes& proline : votes[p]) {
      const Protein& protein = all[p];
      const auto i = static_cast<std::size_t>(proline.position) - 1;
      out << csvCell(entryName(protein.file)) << ',' << proline.position << ',' << csvCell(protein.numbers[i])
          << ',' << (i > 0 ? protein.sequence.substr(i - 1, 1) : "") << ','
          << protein.sequence.substr(i + 1, 1) << ',' << labelOf(proline) << ',';
      if (proline.best.chain.empty())
        out << (proline.isAnySplit ? "0,0,,," : ",,,,");
      else
        out << proline.cis << ',' << proline.trans << ',' << (isIdentical(proline.best) ? "ident" : "homol")
            << ',' << csvCell(proline.best.chain) << ',';
      if (const auto difference = cbMinusCg(protein, proline.position))
        out << shiftLabel(*difference) << ',' << fixedText(*difference, 2);
      else
        out << ',';
      out << ',' << clusters[p] << '\n';
    }
}

}  // namespace zorvela
