// Medians around points, then counts over all chains.
#include "train/study/referencing_study.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>

#include "ZORVELA.h"
#include "train/metrics.h"
#include "util/robust.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

void add(float& shift, double ppm, float missingAbove) {
  if (shift <= missingAbove) shift = static_cast<float>(shift + ppm);
}

void addTo(EntryShifts& chain, Atom atom, double ppm) {
  for (BackboneValues& residue : chain.secondary) add(residue[indexOf(atom)], ppm, kMissingSecondaryShift);
}

/// Observed shifts, which only CB - CG and CG itself are made of.
void addToObserved(EntryShifts& chain, Atom atom, double ppm) {
  for (Residue& residue : chain.residues) add(residue.shift(atom), ppm, kMissingBound);
}

}  // namespace

void addOffsets(EntryShifts& chain, double carbon, double proton) {
  for (const Atom atom : {Atom::C, Atom::CA, Atom::CB}) addTo(chain, atom, carbon);
  for (const Atom atom : {Atom::CB, Atom::CG}) addToObserved(chain, atom, carbon);
  addTo(chain, Atom::HA, proton);
}

void rereference(EntryShifts& chain) {
  for (const auto& [name, ppm] : correctionsOf(estimateOffsets(chain.secondary))) {
    const Atom atom = atomNamed(name).value();
    if (atom != Atom::CG) addTo(chain, atom, -ppm);
    if (atom == Atom::CG || atom == Atom::CB) addToObserved(chain, atom, -ppm);
  }
}

// --- Fitting --------------------------------------------------------------------------------------

namespace {

// Residues that a chain must have to count in a fit, and shifts that a point must have.
constexpr std::size_t kResiduesOfChain = 20;

double rounded(double ppm) {
  return std::round(ppm * 1000) / 1000 + 0.0;
}

std::vector<double> mediansAround(const ShiftRelation& relation,
                                  const std::vector<const EntryShifts*>& chains) {
  std::vector<std::vector<double>> shifts(relation.points.size());
  for (const EntryShifts* chain : chains) {
    for (const MeasuredShift& residue : measuredShifts(chain->secondary, relation.atom, relation.measure)) {
      const double place = std::round((residue.measure - relation.first) / relation.step);
      if (place < 0 || place >= static_cast<double>(shifts.size())) continue;
      shifts[static_cast<std::size_t>(place)].push_back(residue.shift);
    }
  }
  std::vector<double> medians;
  for (std::vector<double>& values : shifts) {
    if (values.empty())
      throw Error("the entries have too few " + relation.atom + " shifts to fit their relation");
    medians.push_back(median(std::move(values)));
  }
  return medians;
}

/// Median and deviation of a relation in the chains with enough residues.
struct ChainFits {
  std::vector<double> offsets;
  std::vector<double> deviations;
  std::vector<std::size_t> counts;
};

ChainFits chainFits(const ShiftRelation& relation, const std::vector<const EntryShifts*>& chains) {
  ChainFits fits;
  for (const EntryShifts* chain : chains) {
    const std::vector<double> values = deviations(chain->secondary, relation);
    if (values.size() < kResiduesOfChain) continue;
    fits.offsets.push_back(median(values));
    fits.deviations.push_back(robustDeviation(values, fits.offsets.back()));
    fits.counts.push_back(values.size());
  }
  if (fits.offsets.empty())
    throw Error("no chain has the shifts of " + std::to_string(kResiduesOfChain) +
                " residues that the fit of " + relation.atom + " needs");
  return fits;
}

/// The variance of the chains' medians that the scatter within the chains does not explain.
double varianceBetween(const ChainFits& fits, double scatter) {
  std::vector<double> explained;
  for (const std::size_t count : fits.counts)
    explained.push_back(scatter * scatter * kMedianOverMean * kMedianOverMean / static_cast<double>(count));
  const double spread = robustDeviation(fits.offsets, median(fits.offsets));
  return std::max(spread * spread - median(explained), 0.0);
}

ShiftRelation fitted(ShiftRelation relation, const std::vector<const EntryShifts*>& chains) {
  relation.points = mediansAround(relation, chains);
  const ChainFits fits = chainFits(relation, chains);
  const double bias = median(fits.offsets);
  for (double& point : relation.points) point = rounded(point + bias);
  relation.scatter = rounded(median(fits.deviations));
  relation.betweenChains = rounded(std::sqrt(varianceBetween(fits, relation.scatter)));
  return relation;
}

}  // namespace

std::vector<ShiftRelation> fitRelations(const std::vector<const EntryShifts*>& chains) {
  std::vector<ShiftRelation> relations;
  for (const ShiftRelation& relation : knownRelations()) relations.push_back(fitted(relation, chains));
  return relations;
}

// --- Counting -------------------------------------------------------------------------------------

namespace {

constexpr std::size_t kLongChain = 40;
constexpr double kCarbonAdded = 1.5;
constexpr double kProtonAdded = 0.5;
// Seed of the halves; any number does, but always the same one.
constexpr std::uint64_t kHalfSeed = 11;

/// The straight line of the check report, which is an operation on the program's table of secondary shifts.
FoundOffsets byLine(const EntryShifts& chain) {
  ZORVELA run;
  int row = 0;
  for (std::size_t i = 0; i < chain.residues.size(); ++i) {
    const int resid = static_cast<int>(i) + 1;
    run.resNames[resid] = chain.residues[i].type;
    for (const Atom atom : kBackbone) {
      ++row;
      run.resTable.setEntry(row, "RESID", std::to_string(resid));
      run.resTable.setEntry(row, "ATOMNAME", std::string(nameOf(atom)));
      run.resTable.setEntry(row, "SHIFT", run.ftoa(chain.secondary[i][indexOf(atom)], run.numBuffer, 'g', 6));
    }
  }
  run.seqLength = static_cast<int>(chain.residues.size());
  const auto offsets = run.referencingOffsets();
  FoundOffsets found;
  for (std::size_t i = 0; i < found.size(); ++i)
    found[i] = {offsets[i].offset, offsets[i].error,
                offsets[i].recommended && std::isfinite(offsets[i].offset)};
  return found;
}

FoundOffsets byRelations(const EntryShifts& chain, const std::vector<ShiftRelation>& relations) {
  FoundOffsets found;
  const std::vector<OffsetEstimate> offsets = estimateOffsets(chain.secondary, relations);
  for (std::size_t i = 0; i < found.size(); ++i)
    found[i] = {offsets[i].offset, offsets[i].error, callsForCorrection(offsets[i])};
  return found;
}

std::size_t residuesWith(const EntryShifts& chain, const std::function<bool(const BackboneValues&)>& holds) {
  return static_cast<std::size_t>(std::count_if(chain.secondary.begin(), chain.secondary.end(), holds));
}

bool hasCarbon(const BackboneValues& residue) {
  return shiftAt(residue, Atom::CA) || shiftAt(residue, Atom::CB) || shiftAt(residue, Atom::C);
}

bool hasAlphaProton(const BackboneValues& residue) {
  return shiftAt(residue, Atom::HA).has_value();
}

bool hasCAandCB(const BackboneValues& residue) {
  return shiftAt(residue, Atom::CA) && shiftAt(residue, Atom::CB);
}

/// Each cluster's half, 0 or 1.
std::vector<std::size_t> halves(const LabelledProlines& data) {
  std::map<std::string, std::size_t> halfOfCluster;
  std::vector<std::size_t> ofEntry(data.entries.size());
  Draw draw(kHalfSeed);
  for (std::size_t i = 0; i < data.labels.prolines.size(); ++i) {
    const auto [half, isNew] = halfOfCluster.emplace(data.labels.prolines[i].cluster, 0);
    if (isNew) half->second = draw.below(2);
    ofEntry[data.entryOf[i]] = half->second;
  }
  return ofEntry;
}

std::vector<const EntryShifts*> chosen(const LabelledProlines& data,
                                       const std::function<bool(std::size_t)>& isIn) {
  std::vector<const EntryShifts*> chains;
  for (std::size_t i = 0; i < data.entries.size(); ++i)
    if (isIn(i)) chains.push_back(&data.entries[i]);
  return chains;
}

/// What the methods find in all chains after offsets were added.
class Trial {
 public:
  using Found = std::array<FoundOffsets, kOffsetMethods>;

  explicit Trial(const LabelledProlines& labelled) : data(labelled), half(halves(labelled)) {
    for (std::size_t i = 0; i < forHalf.size(); ++i)
      forHalf[i] = fitRelations(chosen(data, [&](std::size_t entry) { return half[entry] != i; }));
  }

  std::vector<Found> add(double carbon, double proton) {
    std::vector<Found> found;
    for (std::size_t i = 0; i < data.entries.size(); ++i) {
      EntryShifts chain = data.entries[i];
      addOffsets(chain, carbon, proton);
      found.push_back(
          {byLine(chain), byRelations(chain, knownRelations()), byRelations(chain, forHalf[half[i]])});
    }
    return found;
  }

 private:
  const LabelledProlines& data;
  std::vector<std::size_t> half;
  std::array<std::vector<ShiftRelation>, 2> forHalf;
};

// Places in FoundOffsets.
using Places = std::vector<std::size_t>;
const Places kAnyAtom = {0, 1, 2, 3};
const Places kCarbons = {0, 1, 3};
const Places kAlphaCarbon = {0, 1};
const Places kAlphaProton = {2};
const Places kCarbonyl = {3};

CalledCount count(const std::string& name, const LabelledProlines& data,
                  const std::vector<Trial::Found>& found, const Places& places,
                  const std::function<bool(const EntryShifts&)>& isCounted) {
  CalledCount result;
  result.chains = name;
  for (std::size_t i = 0; i < found.size(); ++i) {
    if (!isCounted(data.entries[i])) continue;
    ++result.count;
    for (std::size_t method = 0; method < kOffsetMethods; ++method)
      if (std::any_of(places.begin(), places.end(),
                      [&](std::size_t place) { return found[i][method][place].isCalled; }))
        ++result.called[method];
  }
  return result;
}

EstimateSpread spreadOf(const std::string& atoms, const std::vector<Trial::Found>& found, std::size_t method,
                        std::size_t place) {
  EstimateSpread spread;
  spread.atoms = atoms;
  spread.method = method;
  std::vector<double> offsets;
  std::size_t beyond = 0;
  for (const Trial::Found& chain : found) {
    const FoundOffset& offset = chain[method][place];
    if (!std::isfinite(offset.offset) || !std::isfinite(offset.error)) continue;
    offsets.push_back(offset.offset);
    if (std::fabs(offset.offset) > 2 * offset.error) ++beyond;
  }
  if (offsets.empty()) return spread;
  spread.count = offsets.size();
  spread.median = median(offsets);
  spread.deviation = robustDeviation(offsets, spread.median);
  spread.beyondTwoErrors = static_cast<double>(beyond) / static_cast<double>(offsets.size());
  return spread;
}

}  // namespace

ReferencingStudy studyReferencing(const LabelledProlines& data) {
  const auto isLong = [](const EntryShifts& chain) { return chain.residues.size() >= kLongChain; };
  const auto any = [](const EntryShifts&) { return true; };
  const auto longWith = [&](bool (*holds)(const BackboneValues&), std::size_t least) {
    return [=](const EntryShifts& chain) { return isLong(chain) && residuesWith(chain, holds) >= least; };
  };
  Trial trial(data);
  ReferencingStudy study;
  study.chains = data.entries.size();
  study.longChains =
      static_cast<std::size_t>(std::count_if(data.entries.begin(), data.entries.end(), isLong));
  study.fitted = fitRelations(chosen(data, [](std::size_t) { return true; }));

  const std::vector<Trial::Found> asTheyAre = trial.add(0, 0);
  study.called.push_back(count("as they are", data, asTheyAre, kAnyAtom, any));
  study.called.push_back(count("  CA and CB", data, asTheyAre, kAlphaCarbon, any));
  study.called.push_back(count("  HA", data, asTheyAre, kAlphaProton, any));
  study.called.push_back(count("  C'", data, asTheyAre, kCarbonyl, any));
  const std::vector<Trial::Found> carbon = trial.add(kCarbonAdded, 0);
  study.called.push_back(
      count("1.5 ppm added to all 13C, chains with 13C", data, carbon, kCarbons, longWith(hasCarbon, 1)));
  study.called.push_back(
      count("  with CA and CB of 20 residues", data, carbon, kCarbons, longWith(hasCAandCB, 20)));
  const std::vector<Trial::Found> proton = trial.add(0, kProtonAdded);
  study.called.push_back(
      count("0.5 ppm added to HA, chains with HA", data, proton, kAlphaProton, longWith(hasAlphaProton, 1)));
  study.called.push_back(
      count("  with CA and CB of 20 residues", data, proton, kAlphaProton, [&](const EntryShifts& chain) {
        return longWith(hasAlphaProton, 1)(chain) && longWith(hasCAandCB, 20)(chain);
      }));
  for (std::size_t method = 0; method < kOffsetMethods; ++method) {
    study.spreads.push_back(spreadOf("CA and CB", asTheyAre, method, 0));
    study.spreads.push_back(spreadOf("HA", asTheyAre, method, 2));
    study.spreads.push_back(spreadOf("C'", asTheyAre, method, 3));
  }
  return study;
}

}  // namespace zorvela
