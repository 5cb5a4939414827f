// Chains of structures are matched with the proteins of the shifts, then each proline with its bonds.
#include "zorvela/compare.h"

#include <algorithm>
#include <deque>
#include <map>
#include <set>
#include <tuple>
#include <unordered_set>
#include <utility>

#include "formats/limits.h"
#include "names/nomenclature.h"
#include "predict/cb_minus_cg.h"
#include "structure/chain_alignment.h"
#include "util/number.h"
#include "util/text.h"
#include "zorvela/run_file.h"

namespace zorvela {

namespace {

// Chains that are this much (percent points) less alike than the best one of their file are a relative, not
// the protein.
constexpr double kRelativeBelowBest = 10;

// --- Matching -------------------------------------------------------------------------------------

/// A chain of a structure that fits a protein.
struct Fit {
  std::size_t protein = 0;
  ChainAlignment alignment;
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
std::vector<Fit> fitsOf(const std::vector<Protein>& proteins, const ChainRest& rest,
                        StructureAligner& aligner) {
  std::vector<Fit> best;
  for (std::size_t p = 0; p < proteins.size(); ++p) {
    ChainAlignment alignment = aligner.align(proteins[p].sequence, rest);
    if (!isSameProtein(alignment, proteins[p].sequence, rest)) continue;
    if (!best.empty() && alignment.identical < best.front().alignment.identical) continue;
    if (!best.empty() && alignment.identical > best.front().alignment.identical) best.clear();
    best.push_back({p, std::move(alignment)});
  }
  return best;
}

/// Among equally alike proteins with different names, of which each has a chain of its name in the structure,
/// the one of the chain's own name.
void keepNamesakes(const std::vector<Protein>& proteins, const std::string& name,
                   const std::unordered_set<std::string>& names, std::vector<Fit>& fits) {
  if (fits.size() < 2) return;
  const auto hasNamesake = [&](const Fit& fit) { return names.count(proteins[fit.protein].chain) > 0; };
  if (!std::all_of(fits.begin(), fits.end(), hasNamesake)) return;
  const auto isOther = [&](const Fit& fit) { return proteins[fit.protein].chain != name; };
  if (std::all_of(fits.begin(), fits.end(), isOther)) return;
  fits.erase(std::remove_if(fits.begin(), fits.end(), isOther), fits.end());
}

// --- Chains --------------------------------------------------------------------------------------

/// First and last of the places that follow on each other.
using Ranges = std::vector<std::pair<std::size_t, std::size_t>>;

/// Splits places before those that start anew.
template <class Starts>
Ranges rangesOf(const std::vector<std::size_t>& places, Starts startsAnew) {
  Ranges ranges;
  for (const std::size_t place : places) {
    if (ranges.empty() || startsAnew(ranges.back().second, place)) ranges.emplace_back(place, place);
    ranges.back().second = place;
  }
  return ranges;
}

/// "1-5"
std::string rangeText(const std::string& first, const std::string& last) {
  return first == last ? first : first + "-" + last;
}

std::string rangeText(const StructureChain& chain, std::size_t first, std::size_t last) {
  return printable(rangeText(chain.residues[first].number, chain.residues[last].number));
}

/// The first and the last residue of the chain that fit.
std::string residuesOf(const StructureChain& chain, std::vector<std::size_t> places) {
  places.erase(std::remove(places.begin(), places.end(), kNoResidue), places.end());
  const auto [first, last] = std::minmax_element(places.begin(), places.end());
  return rangeText(chain, *first, *last);
}

/// `isPart`: the chain holds other molecules too.
ChainMatch matchOf(const Protein& protein, const std::string& file, const StructureChain& chain,
                   const ChainAlignment& alignment, bool isPart) {
  ChainMatch match;
  match.file = file;
  match.chain = chain.name;
  match.molecule = chain.molecule;
  if (isPart || match.molecule > 0) match.residues = residuesOf(chain, alignment.inStructure);
  match.aligned = alignment.aligned;
  match.identical = alignment.identical;
  std::vector<std::size_t> missing;
  for (std::size_t i = 0; i < protein.sequence.size(); ++i) {
    const char ours = withoutThiolState(protein.sequence[i]);
    if (ours == kUnknownResidue) continue;
    const std::size_t place = alignment.inStructure[i];
    if (place == kNoResidue) {
      missing.push_back(i);
      continue;
    }
    const StructureResidue& residue = chain.residues[place];
    if (residue.letter != ours && residue.letter != kUnknownResidue)
      match.mismatches.push_back(printable(std::string(1, ours) + protein.numbers[i] + " is " + residue.name +
                                           " " + residue.number));
  }
  for (const auto& [first, last] :
       rangesOf(missing, [](auto before, auto place) { return place > before + 1; }))
    match.missing.push_back(rangeText(protein.numbers[first], protein.numbers[last]));
  return match;
}

/// Notes the residues of a chain that do not fit.
void addNotes(const ChainMatch& match, std::vector<std::string>& notes) {
  const std::string name = structureChainName(match.file, match.chain, match.residues);
  addNote(name + ": residues that differ from those of the shift file: ", match.mismatches, notes);
  addNote(name + ": residues of the shift file without coordinates: ", match.missing, notes);
  addNote(structureChainName(match.file, match.chain) + ": residues that match no shift file: ",
          match.leftOver, notes);
}

// --- One proline ----------------------------------------------------------------------------------

BondSite siteOf(const ProteinStructure& structure, const StructureChain& chain,
                const StructureResidue& residue) {
  const ProlineBonds& bonds = residue;
  BondSite site{bonds, structure.file, chain.name, residue.number, residue.name, structure.modelCount};
  if (residue.letter != kProlineCode)
    site.reason = printable("is " + residue.name + " " + residue.number + " in the structure");
  return site;
}

Verdict verdictOf(Call shifts, BondState structure) {
  if (shifts == Call::none) return Verdict::noPrediction;
  if (structure == BondState::none) return Verdict::notInStructure;
  if (shifts == Call::undecided) return Verdict::undecided;
  if (structure == BondState::mixed) return Verdict::mixed;
  return toText(shifts) == toText(structure) ? Verdict::agree : Verdict::disagree;
}

std::string carbonText(const Protein& protein, const ProlineResult& proline) {
  const auto difference = cbMinusCg(protein, proline.position);
  if (!difference) return ", CB - CG not known";
  const Call call = callOfCbMinusCg(*difference);
  return ", CB - CG " + fixedText(*difference, 1) + " ppm" +
         (call == Call::undecided ? ", between cis and trans" : " as in " + toText(call));
}

/// Returns the chain and number of a site: "A 117".
std::string placeText(const BondSite& site) {
  return printable((site.chain.empty() ? "" : site.chain + " ") + site.number);
}

std::string disagreement(const Protein& protein, const ProlineResult& proline,
                         const StructureFinding& finding) {
  return "The shifts predict " + toText(proline.call) + " (P_CIS_NORM " +
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
  if (finding.call == BondState::none) return whyNotThere(finding);
  const std::string seen = finding.verdict == Verdict::disagree
                               ? disagreement(protein, proline, finding)
                               : "The structure is " + seenText(finding) + ".";
  return seen + alternativesText(finding);
}

void finish(const Protein& protein, ProteinResult& result) {
  for (const ChainMatch& match : result.matches) addNotes(match, result.structureNotes);
  if (result.matches.empty())
    result.structureNotes.emplace_back("no chain of the structures matches this protein");
  for (ProlineResult& proline : result.prolines) {
    StructureFinding& finding = *proline.structure;
    finding.call = seenIn(finding);
    finding.verdict = verdictOf(proline.call, finding.call);
    finding.sentence = sentenceOn(protein, proline, finding);
  }
}

// --- One structure ----------------------------------------------------------------------------------

/// Keeps of a fitting chain only what the report shows.
struct Found {
  std::size_t protein = 0;
  double identity = 0;  ///< percent
  ChainMatch match;
  std::vector<std::pair<std::size_t, BondSite>> sites;  ///< by the index of the proline
};

/// As `structureFits` counts.
std::size_t sizeOf(const ProlineBonds& proline) {
  return 1 + proline.bonds.size() + proline.others.size();
}

std::size_t sizeOf(const ProteinStructure& structure) {
  std::size_t size = 0;
  for (const StructureChain& chain : structure.chains)
    for (const StructureResidue& residue : chain.residues) size += sizeOf(residue);
  return size;
}

/// Compares the chains of one structure with the proteins of a file.
class Comparison {
 public:
  Comparison(const std::vector<Protein>& all, std::vector<ProteinResult>& toFill, const ProteinStructure& of)
      : proteins(all),
        results(toFill),
        structure(of),
        aligner(of),
        mostFits(limits::structureFits(sizeOf(of))) {
    for (const StructureChain& chain : structure.chains) names.insert(chain.name);
  }

  /// Adds to the results the chains that fit a protein and are not relatives of it.
  void run() {
    for (const StructureChain& chain : structure.chains) addMolecules(chain);
    std::map<std::size_t, double> best;
    for (const Found& one : found) best[one.protein] = std::max(best[one.protein], one.identity);
    for (Found& one : found) {
      if (one.identity < best[one.protein] - kRelativeBelowBest) continue;
      ProteinResult& result = results[one.protein];
      result.matches.push_back(std::move(one.match));
      for (auto& [proline, site] : one.sites)
        result.prolines[proline].structure->sites.push_back(std::move(site));
    }
  }

 private:
  /// All molecules of a chain that fit.
  void addMolecules(const StructureChain& chain) {
    std::vector<Fit> all;
    ChainRest rest(chain);
    std::size_t rounds = 0;
    while (!rest.isEmpty()) {
      std::vector<Fit> fits = fitsOf(proteins, rest, aligner);
      if (fits.empty()) break;
      ++rounds;
      keepNamesakes(proteins, chain.name, names, fits);
      for (Fit& fit : fits) {
        rest.take(fit.alignment);
        all.push_back(std::move(fit));
      }
    }
    for (const Fit& fit : all) add(chain, fit, rounds > 1 || !rest.isEmpty());
    if (all.empty()) return;
    const auto isStart = [&rest](auto, auto place) { return rest.isStart(place); };
    for (const auto& [first, last] : rangesOf(rest.residues(), isStart))
      found.back().match.leftOver.push_back(rangeText(chain, first, last));
  }

  void add(const StructureChain& chain, const Fit& fit, bool isPart) {
    Found one{fit.protein,
              fit.alignment.identity(),
              matchOf(proteins[fit.protein], structure.file, chain, fit.alignment, isPart),
              {}};
    ++size;
    const std::vector<ProlineResult>& prolines = results[fit.protein].prolines;
    for (std::size_t i = 0; i < prolines.size(); ++i) {
      const auto position = static_cast<std::size_t>(prolines[i].position);
      const std::size_t place = fit.alignment.inStructure[position - 1];
      if (place == kNoResidue) continue;
      one.sites.emplace_back(i, siteOf(structure, chain, chain.residues[place]));
      size += sizeOf(one.sites.back().second);
    }
    checkLimit(size, mostFits, structure.file);
    found.push_back(std::move(one));
  }

  const std::vector<Protein>& proteins;
  std::vector<ProteinResult>& results;
  const ProteinStructure& structure;
  StructureAligner aligner;
  std::unordered_set<std::string> names;  ///< of all chains
  std::deque<Found> found;
  Limit mostFits;
  std::size_t size = 0;
};

}  // namespace

void compareWithStructures(const std::vector<Protein>& proteins,
                           const std::vector<ProteinStructure>& structures,
                           std::vector<ProteinResult>& results) {
  for (ProteinResult& result : results)
    for (ProlineResult& proline : result.prolines) proline.structure.emplace();
  for (const ProteinStructure& structure : structures) Comparison(proteins, results, structure).run();
  for (std::size_t p = 0; p < proteins.size(); ++p) finish(proteins[p], results[p]);
}

void noteChainsWithoutShifts(RunReport& report) {
  std::set<std::tuple<std::string, std::string, std::size_t>> matched;
  for (const FileReport& file : report.files)
    for (const ProteinResult& protein : file.proteins)
      for (const ChainMatch& match : protein.matches)
        matched.emplace(match.file, match.chain, match.molecule);
  report.chainsWithoutShifts.clear();
  for (const ProteinStructure& structure : report.structures)
    for (const StructureChain& chain : structure.chains)
      if (matched.count({structure.file, chain.name, chain.molecule}) == 0)
        report.chainsWithoutShifts.push_back(
            structureChainName(structure.file, chain.name,
                               chain.molecule == 0 ? "" : rangeText(chain, 0, chain.residues.size() - 1)) +
            " (" + counted(chain.residues.size(), "residue", "residues") + ") has no shifts");
}

}  // namespace zorvela
