// Votes of structures for prolines.
#include "train/structure_labels.h"

#include <algorithm>
#include <filesystem>
#include <ostream>
#include <tuple>

#include "names/nomenclature.h"
#include "predict/cb_minus_cg.h"
#include "structure/chain_alignment.h"
#include "train/sequence_clusters.h"
#include "util/number.h"
#include "util/text.h"

namespace zorvela {

namespace {

constexpr std::size_t kFragmentLength = 4;
// By chance a chain of 300 residues shares one fragment with a protein of 100 in one case of six.
constexpr std::size_t kSharedFragments = 2;

/// By identity, then by length.
bool fitsBetter(const StructureFit& one, const StructureFit& than) {
  return std::tie(one.identity, one.aligned) > std::tie(than.identity, than.aligned);
}

bool isIdentical(const StructureFit& fit) {
  return fit.identity >= LabelVotes::kSameSequence;
}

/// Finds the residue of a proline in the chain, if both its neighbours are beside it.
const StructureResidue* prolineIn(const StructureChain& chain, const ChainAlignment& alignment,
                                  int position) {
  const auto& place = alignment.inStructure;
  const auto i = static_cast<std::size_t>(position) - 1;
  if (i == 0 || i + 1 >= place.size()) return nullptr;
  const std::size_t j = place[i];
  if (j == kNoResidue || place[i - 1] == kNoResidue || place[i - 1] + 1 != j) return nullptr;
  const StructureResidue& residue = chain.residues[j];
  return residue.letter == kProlineCode ? &residue : nullptr;
}

void add(const StructureResidue& residue, const StructureFit& fit, BondVotes& bonds) {
  for (const ModelBond& bond : residue.bonds) {
    if (bond.state == BondState::cis)
      ++bonds.cis;
    else
      ++(bond.state == BondState::trans ? bonds.trans : bonds.neither);
  }
  if (fitsBetter(fit, bonds.best)) bonds.best = fit;
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
    : all(std::move(proteins)), leastIdentity(identity) {
  for (std::size_t p = 0; p < all.size(); ++p) {
    const std::string& sequence = all[p].sequence;
    for (std::size_t i = 0; i < sequence.size(); ++i)
      if (sequence[i] == kProlineCode) votes[{p, static_cast<int>(i) + 1}] = {};
    if (!contains(sequence, std::string(1, kProlineCode))) continue;
    for (const std::string& fragment : fragmentsOf(sequence, kFragmentLength))
      proteinsWith[fragment].push_back(p);
  }
}

std::vector<std::size_t> LabelVotes::candidates(const StructureChain& chain) const {
  std::unordered_map<std::size_t, std::size_t> shared;
  for (const std::string& fragment : fragmentsOf(chain.letters(), kFragmentLength)) {
    const auto known = proteinsWith.find(fragment);
    if (known == proteinsWith.end()) continue;
    for (const std::size_t protein : known->second) ++shared[protein];
  }
  std::vector<std::size_t> result;
  for (const auto& [protein, count] : shared)
    if (count >= kSharedFragments) result.push_back(protein);
  std::sort(result.begin(), result.end());
  return result;
}

std::optional<ProlineVotes> LabelVotes::bondsOf(const ProteinStructure& structure) const {
  std::optional<ProlineVotes> bonds;
  StructureAligner aligner(structure);
  for (const StructureChain& chain : structure.chains)
    for (const std::size_t protein : candidates(chain)) {
      const std::string& sequence = all[protein].sequence;
      for (ChainRest rest(chain); !rest.isEmpty();) {
        const ChainAlignment alignment = aligner.align(sequence, rest);
        if (alignment.aligned < std::min(kFewestAligned, sequence.size())) break;
        if (alignment.identity() < leastIdentity) break;
        if (!bonds) bonds.emplace();
        const StructureFit fit = {entryName(structure.file) + chain.name, alignment.identity(),
                                  alignment.aligned};
        for (auto one = votes.lower_bound({protein, 0}); one != votes.end() && one->first.first == protein;
             ++one)
          if (const StructureResidue* residue = prolineIn(chain, alignment, one->first.second))
            add(*residue, fit, (*bonds)[one->first]);
        rest.take(alignment);
      }
    }
  return bonds;
}

void LabelVotes::count(const ProlineVotes& bonds) {
  for (const auto& [place, structure] : bonds) {
    BondVotes& proline = votes.at(place);
    if (structure.cis == structure.trans) {
      if (structure.cis + structure.neither > 0) ++proline.neither;
      continue;
    }
    const StructureFit& fit = structure.best;
    const StructureFit& best = proline.best;
    if (isIdentical(best) && !isIdentical(fit)) continue;
    if (isIdentical(fit) && !isIdentical(best)) proline.cis = proline.trans = 0;
    ++(structure.cis > structure.trans ? proline.cis : proline.trans);
    // Of equals the first by name.
    if (!fitsBetter(best, fit) && (fitsBetter(fit, best) || best.chain.empty() || fit.chain < best.chain))
      proline.best = fit;
  }
}

std::string LabelVotes::summary() const {
  const auto labelled = std::count_if(votes.begin(), votes.end(), [](const auto& proline) {
    return proline.second.cis != proline.second.trans;
  });
  return std::to_string(labelled) + " of " + counted(votes.size(), "proline", "prolines") + " in " +
         counted(all.size(), "protein", "proteins") + " labelled";
}

void LabelVotes::write(std::ostream& out) const {
  std::vector<std::string> sequences;
  for (const Protein& protein : all) sequences.push_back(protein.sequence);
  const std::vector<std::size_t> clusters = sequenceClusters(sequences);
  out << "entry,resid,resid_file,prev,next,label_structure,votes_cis,votes_trans,tier,structure,label_shift,"
         "cb_minus_cg,cluster\n";
  for (const auto& [place, proline] : votes) {
    const auto& [p, position] = place;
    const Protein& protein = all[p];
    const auto i = static_cast<std::size_t>(position) - 1;
    const char* label = proline.cis > proline.trans ? "cis" : "trans";
    out << csvCell(entryName(protein.file)) << ',' << position << ',' << csvCell(protein.numbers[i]) << ','
        << (i > 0 ? protein.sequence.substr(i - 1, 1) : "") << ',' << protein.sequence.substr(i + 1, 1) << ','
        << (proline.cis == proline.trans ? "" : label) << ',';
    if (proline.best.chain.empty())
      out << (proline.neither > 0 ? "0,0,,," : ",,,,");
    else
      out << proline.cis << ',' << proline.trans << ',' << (isIdentical(proline.best) ? "ident" : "homol")
          << ',' << csvCell(proline.best.chain) << ',';
    if (const auto difference = cbMinusCg(protein, position)) {
      const Call call = callOfCbMinusCg(*difference);
      out << (call == Call::undecided ? "unclear" : toText(call)) << ',' << fixedText(*difference, 2);
    } else {
      out << ',';
    }
    out << ',' << clusters[p] << '\n';
  }
}

}  // namespace zorvela
