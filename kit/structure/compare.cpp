// Chains of structures are matched with the proteins of the shifts, then each proline with its bonds.
#include "zorvela/compare.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <utility>

#include "names/nomenclature.h"
#include "protein/proline_shifts.h"
#include "structure/chain_alignment.h"
#include "util/number.h"
#include "util/text.h"

namespace zorvela {

namespace {

// Chains that are this much (percent points) less alike than the best one of their file are a relative, not
// the protein.
constexpr double kRelativeBelowBest = 10;

// --- Matching -------------------------------------------------------------------------------------

/// A chain of a structure that fits a protein.
struct Fit {
  std::size_t protein = 0;
  const ProteinStructure* structure = nullptr;
  const StructureChain* chain = nullptr;
  ChainAlignment alignment;
};

std::size_t knownResidues(const std::string& letters) {
  return letters.size() -
         static_cast<std::size_t>(std::count(letters.begin(), letters.end(), kUnknownResidue));
}

bool isSameProtein(const ChainAlignment& alignment, const std::string& sequence,
                   const StructureChain& chain) {
  const std::size_t shorter = std::min(knownResidues(sequence), knownResidues(chain.letters()));
  const std::size_t needed = std::max<std::size_t>(1, std::min(kFewestAligned, (shorter + 1) / 2));
  return alignment.aligned >= needed && alignment.identity() >= kSameProteinFrom;
}

/// The proteins that a chain is most alike.
std::vector<Fit> fitsOf(const std::vector<Protein>& proteins, const ProteinStructure& structure,
                        const StructureChain& chain, StructureAligner& aligner) {
  std::vector<Fit> best;
  for (std::size_t p = 0; p < proteins.size(); ++p) {
    ChainAlignment alignment = aligner.align(proteins[p].sequence, chain);
    if (!isSameProtein(alignment, proteins[p].sequence, chain)) continue;
    if (!best.empty() && alignment.identical < best.front().alignment.identical) continue;
    if (!best.empty() && alignment.identical > best.front().alignment.identical) best.clear();
    best.push_back({p, &structure, &chain, std::move(alignment)});
  }
  return best;
}

/// Among equally alike proteins with different names, of which each has a chain of its name in the structure,
/// the one of the chain's own name.
void keepNamesakes(const std::vector<Protein>& proteins, std::vector<Fit>& fits) {
  if (fits.size() < 2) return;
  const ProteinStructure& structure = *fits.front().structure;
  const auto hasNamesake = [&](const Fit& fit) {
    return std::any_of(structure.chains.begin(), structure.chains.end(), [&](const StructureChain& chain) {
      return chain.name == proteins[fit.protein].chain;
    });
  };
  if (!std::all_of(fits.begin(), fits.end(), hasNamesake)) return;
  const std::string& name = fits.front().chain->name;
  const auto isOther = [&](const Fit& fit) { return proteins[fit.protein].chain != name; };
  if (std::all_of(fits.begin(), fits.end(), isOther)) return;
  fits.erase(std::remove_if(fits.begin(), fits.end(), isOther), fits.end());
}

/// All fits of one structure file, without the relatives of the protein.
std::vector<Fit> fitsOf(const std::vector<Protein>& proteins, const ProteinStructure& structure) {
  std::vector<Fit> all;
  StructureAligner aligner(structure);
  for (const StructureChain& chain : structure.chains) {
    std::vector<Fit> fits = fitsOf(proteins, structure, chain, aligner);
    keepNamesakes(proteins, fits);
    for (Fit& fit : fits) all.push_back(std::move(fit));
  }
  std::map<std::size_t, double> best;
  for (const Fit& fit : all) best[fit.protein] = std::max(best[fit.protein], fit.alignment.identity());
  all.erase(std::remove_if(all.begin(), all.end(),
                           [&](const Fit& fit) {
                             return fit.alignment.identity() < best[fit.protein] - kRelativeBelowBest;
                           }),
            all.end());
  return all;
}

// --- Texts ----------------------------------------------------------------------------------------

std::string nameOf(const std::string& file, const std::string& chain) {
  return file + ", chain " + (chain.empty() ? "without a name" : printable(chain, 60));
}

/// "1-5, 9" for the residues of a protein at these places (from 0).
std::vector<std::string> ranges(const Protein& protein, const std::vector<std::size_t>& places) {
  std::vector<std::string> result;
  for (std::size_t first = 0; first < places.size();) {
    std::size_t last = first;
    while (last + 1 < places.size() && places[last + 1] == places[last] + 1) ++last;
    const std::string& from = protein.numbers[places[first]];
    result.push_back(first == last ? from : from + "-" + protein.numbers[places[last]]);
    first = last + 1;
  }
  return result;
}

ChainMatch matchOf(const Protein& protein, const Fit& fit) {
  ChainMatch match;
  match.file = fit.structure->file;
  match.chain = fit.chain->name;
  match.aligned = fit.alignment.aligned;
  match.identical = fit.alignment.identical;
  std::vector<std::size_t> missing;
  for (std::size_t i = 0; i < protein.sequence.size(); ++i) {
    const char ours = withoutThiolState(protein.sequence[i]);
    if (ours == kUnknownResidue) continue;
    const std::size_t place = fit.alignment.inStructure[i];
    if (place == kNoResidue) {
      missing.push_back(i);
      continue;
    }
    const StructureResidue& residue = fit.chain->residues[place];
    if (residue.letter != ours && residue.letter != kUnknownResidue)
      match.mismatches.push_back(printable(std::string(1, ours) + protein.numbers[i] + " is " + residue.name +
                                           " " + residue.number));
  }
  match.missing = ranges(protein, missing);
  return match;
}

void addNotes(const ChainMatch& match, std::vector<std::string>& notes) {
  const std::string name = nameOf(match.file, match.chain);
  if (!match.mismatches.empty())
    notes.push_back(name + ": other residues than in the shifts: " + enumerated(match.mismatches));
  if (!match.missing.empty())
    notes.push_back(name + ": residues of the shifts without coordinates: " + enumerated(match.missing));
}

// --- One proline ----------------------------------------------------------------------------------

std::optional<BondSite> siteOf(const Fit& fit, int position) {
  const std::size_t place = fit.alignment.inStructure[static_cast<std::size_t>(position) - 1];
  if (place == kNoResidue) return std::nullopt;
  const StructureResidue& residue = fit.chain->residues[place];
  BondSite site;
  site.file = fit.structure->file;
  site.chain = fit.chain->name;
  site.number = residue.number;
  site.residue = residue.name;
  site.models = fit.structure->modelCount;
  site.bonds = residue.bonds;
  site.others = residue.others;
  site.reason = residue.letter == kProlineCode
                    ? residue.whyNoBond
                    : printable("is " + residue.name + " " + residue.number + " in the structure");
  return site;
}

StructureCall callOf(const ComparedProline& proline) {
  const std::size_t cis = proline.count(BondState::cis);
  const std::size_t trans = proline.count(BondState::trans);
  if (cis > 0 && trans > 0) return StructureCall::mixed;
  if (cis > 0) return StructureCall::cis;
  if (trans > 0) return StructureCall::trans;
  return proline.bonds().empty() ? StructureCall::none : StructureCall::twisted;
}

bool isSame(Call shifts, StructureCall structure) {
  return (shifts == Call::cis && structure == StructureCall::cis) ||
         (shifts == Call::trans && structure == StructureCall::trans);
}

Verdict verdictOf(Call shifts, StructureCall structure) {
  if (shifts == Call::none) return Verdict::noPrediction;
  if (structure == StructureCall::none) return Verdict::notInStructure;
  if (shifts == Call::undecided) return Verdict::undecided;
  if (structure == StructureCall::mixed) return Verdict::mixed;
  return isSame(shifts, structure) ? Verdict::agree : Verdict::disagree;
}

/// "trans in 9, twisted in 1 of 10 models".
std::string countsText(const ComparedProline& proline) {
  std::string text;
  for (const BondState state : {BondState::cis, BondState::trans, BondState::twisted})
    if (const std::size_t count = proline.count(state); count > 0)
      text += (text.empty() ? "" : ", ") + toText(state) + " in " + std::to_string(count);
  return text + " of " + counted(proline.bonds().size(), "model", "models");
}

std::string geometryText(const ComparedProline& proline) {
  const std::vector<ModelBond> bonds = proline.bonds();
  if (const auto omega = meanOmega(bonds))
    return (bonds.size() > 1 ? "mean |omega| " : "|omega| ") + fixedText(*omega, 0) + " degrees";
  const auto step = meanCaToCa(bonds);
  return step ? "CA - CA " + fixedText(*step, 1) + " A" : "";
}

std::string carbonText(const Protein& protein, const ProlineResult& proline) {
  const auto difference = cbMinusCg(protein, proline.position);
  if (!difference) return ", CB - CG not known";
  std::string text = ", CB - CG " + fixedText(*difference, 1) + " ppm";
  if (*difference >= kCisCbMinusCgFrom) return text + " as in cis";
  if (*difference <= kTransCbMinusCgUpTo) return text + " as in trans";
  return text + ", between cis and trans";
}

/// Where the residue of a site stands: "A 117".
std::string placeText(const BondSite& site) {
  return printable((site.chain.empty() ? "" : site.chain + " ") + site.number);
}

std::string disagreement(const Protein& protein, const ComparedProline& proline) {
  const float p = proline.shifts.pCisNorm.value_or(0);
  return "The shifts say " + toText(proline.shifts.call) + " (P_CIS_NORM " +
         fixedText(static_cast<double>(p), 3) + carbonText(protein, proline.shifts) + "), the structure is " +
         countsText(proline) + " (" + geometryText(proline) + ").";
}

std::string whyNotThere(const ComparedProline& proline) {
  std::vector<std::string> reasons;
  for (const BondSite& site : proline.sites)
    if (!site.reason.empty()) reasons.push_back(placeText(site) + ": " + site.reason);
  if (reasons.empty()) return "No coordinates.";
  return "No bond: " + enumerated(reasons, 3) + ".";
}

std::string alternativesText(const ComparedProline& proline) {
  std::vector<std::string> texts;
  for (const BondSite& site : proline.sites)
    for (const ModelBond& bond : site.others)
      texts.push_back("conformation " + bond.conformation + " of " + placeText(site) + " is " +
                      toText(bond.state));
  return texts.empty() ? "" : " Less occupied " + enumerated(texts, 3) + ".";
}

std::string evidenceOf(const Protein& protein, const ComparedProline& proline) {
  if (proline.structure == StructureCall::none) return whyNotThere(proline);
  std::string text;
  if (proline.verdict == Verdict::disagree)
    text = disagreement(protein, proline);
  else if (proline.structure == StructureCall::mixed || proline.structure == StructureCall::twisted)
    text = "The structure is " + countsText(proline) + ".";
  text += alternativesText(proline);
  return std::string(trimmed(text));
}

StructureFinding findingOf(const ComparedProline& proline) {
  const std::vector<ModelBond> bonds = proline.bonds();
  const std::string seen =
      bonds.empty() ? "" : "The structure is " + countsText(proline) + " (" + geometryText(proline) + ").";
  return {proline.structure, proline.verdict, meanOmega(bonds), meanCaToCa(bonds),
          proline.evidence.empty() ? seen : proline.evidence};
}

ComparedProline compared(const Protein& protein, const ProlineResult& result,
                         const std::vector<const Fit*>& fits) {
  ComparedProline proline;
  proline.shifts = result;
  for (const Fit* fit : fits)
    if (auto site = siteOf(*fit, result.position)) proline.sites.push_back(std::move(*site));
  proline.structure = callOf(proline);
  proline.verdict = verdictOf(result.call, proline.structure);
  proline.evidence = evidenceOf(protein, proline);
  proline.shifts.structure = findingOf(proline);
  return proline;
}

/// "model.pdb, chain A (135 of 136 aligned residues are the same)".
std::string matchText(const ChainMatch& match) {
  return nameOf(match.file, match.chain) + " (" + std::to_string(match.identical) + " of " +
         counted(match.aligned, "aligned residue is", "aligned residues are") + " the same)";
}

std::optional<double> meanSize(const std::vector<ModelBond>& bonds,
                               const std::optional<double> ModelBond::*value) {
  double sum = 0;
  std::size_t count = 0;
  for (const ModelBond& bond : bonds) {
    if (!(bond.*value)) continue;
    sum += std::fabs(*(bond.*value));
    ++count;
  }
  if (count == 0) return std::nullopt;
  return sum / static_cast<double>(count);
}

}  // namespace

// --- The comparison -------------------------------------------------------------------------------

std::size_t BondSite::count(BondState state) const {
  return static_cast<std::size_t>(std::count_if(
      bonds.begin(), bonds.end(), [state](const ModelBond& bond) { return bond.state == state; }));
}

std::size_t ComparedProline::count(BondState state) const {
  std::size_t count = 0;
  for (const BondSite& site : sites) count += site.count(state);
  return count;
}

std::vector<ModelBond> ComparedProline::bonds() const {
  std::vector<ModelBond> bonds;
  for (const BondSite& site : sites) bonds.insert(bonds.end(), site.bonds.begin(), site.bonds.end());
  return bonds;
}

std::optional<double> meanOmega(const std::vector<ModelBond>& bonds) {
  return meanSize(bonds, &ModelBond::omega);
}

std::optional<double> meanCaToCa(const std::vector<ModelBond>& bonds) {
  return meanSize(bonds, &ModelBond::caToCa);
}

std::vector<ComparedProtein> compareWithStructures(const std::vector<Protein>& proteins,
                                                   const std::vector<ProteinResult>& results,
                                                   const std::vector<ProteinStructure>& structures) {
  std::vector<Fit> fits;
  for (const ProteinStructure& structure : structures)
    for (Fit& fit : fitsOf(proteins, structure)) fits.push_back(std::move(fit));
  std::vector<ComparedProtein> all;
  for (std::size_t p = 0; p < proteins.size(); ++p) {
    std::vector<const Fit*> own;
    for (const Fit& fit : fits)
      if (fit.protein == p) own.push_back(&fit);
    ComparedProtein protein;
    protein.result = results[p];
    for (const Fit* fit : own) {
      protein.matches.push_back(matchOf(proteins[p], *fit));
      addNotes(protein.matches.back(), protein.notes);
    }
    if (own.empty()) protein.notes.emplace_back("no chain of the structures is this protein");
    for (ProlineResult& proline : protein.result.prolines) {
      protein.prolines.push_back(compared(proteins[p], proline, own));
      proline.structure = protein.prolines.back().shifts.structure;
    }
    for (const ChainMatch& match : protein.matches)
      protein.result.structureChains.push_back(matchText(match));
    protein.result.structureNotes = protein.notes;
    all.push_back(std::move(protein));
  }
  return all;
}

std::vector<std::string> chainsWithoutShifts(const std::vector<ChainMatch>& matches,
                                             const std::vector<ProteinStructure>& structures) {
  std::set<std::pair<std::string, std::string>> matched;
  for (const ChainMatch& match : matches) matched.emplace(match.file, match.chain);
  std::vector<std::string> lines;
  for (const ProteinStructure& structure : structures)
    for (const StructureChain& chain : structure.chains)
      if (matched.count({structure.file, chain.name}) == 0)
        lines.push_back(nameOf(structure.file, chain.name) + " (" +
                        counted(chain.residues.size(), "residue", "residues") + ") has no shifts");
  return lines;
}

}  // namespace zorvela
