// Chains of structures are matched with the proteins of the shifts, then each proline with its bonds.
#include "zorvela/compare.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>
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
  bool isPart = false;                ///< the chain holds other molecules as well
  std::vector<std::size_t> leftOver;  ///< residues of the chain that are of none, with its last fit
};

std::size_t knownResidues(const std::string& letters) {
  return letters.size() -
         static_cast<std::size_t>(std::count(letters.begin(), letters.end(), kUnknownResidue));
}

/// Half of the shorter one is enough for a chain; what shares its name with others must be half of the
/// protein.
bool isSameProtein(const ChainAlignment& alignment, const std::string& sequence, const ChainRest& rest) {
  const bool isAlone = rest.isWhole() && rest.chain().molecule < 2;
  const std::size_t length = knownResidues(sequence);
  const std::size_t shorter = isAlone ? std::min(length, knownResidues(rest.letters())) : length;
  const std::size_t needed = std::max<std::size_t>(1, std::min(kFewestAligned, (shorter + 1) / 2));
  return alignment.aligned >= needed && alignment.identity() >= kSameProteinFrom;
}

/// The proteins that a chain is most alike.
std::vector<Fit> fitsOf(const std::vector<Protein>& proteins, const ProteinStructure& structure,
                        const ChainRest& rest, StructureAligner& aligner) {
  std::vector<Fit> best;
  for (std::size_t p = 0; p < proteins.size(); ++p) {
    ChainAlignment alignment = aligner.align(proteins[p].sequence, rest);
    if (!isSameProtein(alignment, proteins[p].sequence, rest)) continue;
    if (!best.empty() && alignment.identical < best.front().alignment.identical) continue;
    if (!best.empty() && alignment.identical > best.front().alignment.identical) best.clear();
    best.push_back({p, &structure, &rest.chain(), std::move(alignment), false, {}});
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

/// The fits of all molecules of a chain.
std::vector<Fit> fitsOfMolecules(const std::vector<Protein>& proteins, const ProteinStructure& structure,
                                 const StructureChain& chain, StructureAligner& aligner) {
  std::vector<Fit> all;
  ChainRest rest(chain);
  std::size_t rounds = 0;
  while (!rest.isEmpty()) {
    std::vector<Fit> fits = fitsOf(proteins, structure, rest, aligner);
    if (fits.empty()) break;
    ++rounds;
    keepNamesakes(proteins, fits);
    for (Fit& fit : fits) {
      rest.take(fit.alignment);
      all.push_back(std::move(fit));
    }
  }
  for (Fit& fit : all) fit.isPart = rounds > 1 || !rest.isEmpty();
  if (!all.empty()) all.back().leftOver = rest.residues();
  return all;
}

/// All fits of one structure file, without the relatives of the protein.
std::vector<Fit> fitsOf(const std::vector<Protein>& proteins, const ProteinStructure& structure) {
  std::vector<Fit> all;
  StructureAligner aligner(structure);
  for (const StructureChain& chain : structure.chains) {
    for (Fit& fit : fitsOfMolecules(proteins, structure, chain, aligner)) all.push_back(std::move(fit));
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

// --- Chains --------------------------------------------------------------------------------------

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

std::string rangeText(const StructureChain& chain, std::size_t first, std::size_t last) {
  const std::string& from = chain.residues[first].number;
  return printable(first == last ? from : from + "-" + chain.residues[last].number);
}

/// The first and the last residue of the chain that fit.
std::string residuesOf(const Fit& fit) {
  std::size_t first = kNoResidue;
  std::size_t last = 0;
  for (const std::size_t place : fit.alignment.inStructure) {
    if (place == kNoResidue) continue;
    first = std::min(first, place);
    last = std::max(last, place);
  }
  return rangeText(*fit.chain, first, last);
}

/// The pieces of the chain that are left over.
std::vector<std::string> leftOverOf(const Fit& fit) {
  const std::vector<std::size_t>& places = fit.leftOver;
  std::vector<std::string> pieces;
  for (std::size_t first = 0; first < places.size();) {
    std::size_t last = first;
    while (last + 1 < places.size() && !fit.chain->residues[places[last + 1]].isAfterBreak) ++last;
    pieces.push_back(rangeText(*fit.chain, places[first], places[last]));
    first = last + 1;
  }
  return pieces;
}

ChainMatch matchOf(const Protein& protein, const Fit& fit) {
  ChainMatch match;
  match.file = fit.structure->file;
  match.chain = fit.chain->name;
  match.molecule = fit.chain->molecule;
  if (fit.isPart || match.molecule > 0) match.residues = residuesOf(fit);
  match.leftOver = leftOverOf(fit);
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

/// What of a chain does not fit.
std::vector<std::string> notesOn(const ChainMatch& match) {
  const std::string name = structureChainName(match.file, match.chain, match.residues);
  std::vector<std::string> notes;
  if (!match.mismatches.empty())
    notes.push_back(name + ": other residues than in the shifts: " + enumerated(match.mismatches));
  if (!match.missing.empty())
    notes.push_back(name + ": residues of the shifts without coordinates: " + enumerated(match.missing));
  if (!match.leftOver.empty())
    notes.push_back(structureChainName(match.file, match.chain) +
                    ": residues that fit no shifts: " + enumerated(match.leftOver));
  return notes;
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
  site.modelsWithout = residue.modelsWithout;
  site.bonds = residue.bonds;
  site.others = residue.others;
  site.reason = residue.letter == kProlineCode
                    ? residue.whyNoBond
                    : printable("is " + residue.name + " " + residue.number + " in the structure");
  return site;
}

Verdict verdictOf(Call shifts, StructureCall structure) {
  if (shifts == Call::none) return Verdict::noPrediction;
  if (structure == StructureCall::none) return Verdict::notInStructure;
  if (shifts == Call::undecided) return Verdict::undecided;
  if (structure == StructureCall::mixed) return Verdict::mixed;
  return toText(shifts) == toText(structure) ? Verdict::agree : Verdict::disagree;
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

std::string disagreement(const Protein& protein, const ProlineResult& proline,
                         const StructureFinding& finding) {
  return "The shifts say " + toText(proline.call) + " (P_CIS_NORM " +
         fixedText(static_cast<double>(proline.pCisNorm.value_or(0)), 3) + carbonText(protein, proline) +
         "), the structure is " + seenText(finding) + ".";
}

std::string whyNotThere(const StructureFinding& finding) {
  std::vector<std::string> reasons;
  for (const BondSite& site : finding.sites)
    if (!site.reason.empty()) reasons.push_back(placeText(site) + ": " + site.reason);
  return reasons.empty() ? "No coordinates." : "No bond: " + enumerated(reasons, 3) + ".";
}

std::string alternativesText(const StructureFinding& finding) {
  std::vector<std::string> texts;
  for (const BondSite& site : finding.sites)
    for (const ModelBond& bond : site.others)
      texts.push_back("conformation " + bond.conformation + " of " + placeText(site) + " is " +
                      toText(bond.state));
  return texts.empty() ? "" : " Less occupied " + enumerated(texts, 3) + ".";
}

std::string sentenceOn(const Protein& protein, const ProlineResult& proline,
                       const StructureFinding& finding) {
  if (finding.call == StructureCall::none) return whyNotThere(finding);
  const std::string seen = finding.verdict == Verdict::disagree
                               ? disagreement(protein, proline, finding)
                               : "The structure is " + seenText(finding) + ".";
  return seen + alternativesText(finding);
}

StructureFinding findingOf(const Protein& protein, const ProlineResult& proline,
                           const std::vector<const Fit*>& fits) {
  StructureFinding finding;
  for (const Fit* fit : fits)
    if (auto site = siteOf(*fit, proline.position)) finding.sites.push_back(std::move(*site));
  finding.call = seenIn(finding);
  finding.verdict = verdictOf(proline.call, finding.call);
  finding.sentence = sentenceOn(protein, proline, finding);
  return finding;
}

void addFindings(const Protein& protein, const std::vector<const Fit*>& fits, ProteinResult& result) {
  for (const Fit* fit : fits) {
    result.matches.push_back(matchOf(protein, *fit));
    for (std::string& note : notesOn(result.matches.back())) result.structureNotes.push_back(std::move(note));
  }
  if (fits.empty()) result.structureNotes.emplace_back("no chain of the structures is this protein");
  for (ProlineResult& proline : result.prolines) proline.structure = findingOf(protein, proline, fits);
}

}  // namespace

// --- The comparison -------------------------------------------------------------------------------

void compareWithStructures(const std::vector<Protein>& proteins,
                           const std::vector<ProteinStructure>& structures,
                           std::vector<ProteinResult>& results) {
  std::vector<Fit> fits;
  for (const ProteinStructure& structure : structures)
    for (Fit& fit : fitsOf(proteins, structure)) fits.push_back(std::move(fit));
  for (std::size_t p = 0; p < proteins.size(); ++p) {
    std::vector<const Fit*> own;
    for (const Fit& fit : fits)
      if (fit.protein == p) own.push_back(&fit);
    addFindings(proteins[p], own, results[p]);
  }
}

std::vector<std::string> chainsWithoutShifts(const std::vector<ChainMatch>& matches,
                                             const std::vector<ProteinStructure>& structures) {
  std::set<std::tuple<std::string, std::string, std::size_t>> matched;
  for (const ChainMatch& match : matches) matched.emplace(match.file, match.chain, match.molecule);
  std::vector<std::string> lines;
  for (const ProteinStructure& structure : structures)
    for (const StructureChain& chain : structure.chains)
      if (matched.count({structure.file, chain.name, chain.molecule}) == 0)
        lines.push_back(
            structureChainName(structure.file, chain.name,
                               chain.molecule == 0 ? "" : rangeText(chain, 0, chain.residues.size() - 1)) +
            " (" + counted(chain.residues.size(), "residue", "residues") + ") has no shifts");
  return lines;
}

}  // namespace zorvela
