// Medians around points, then counts over all chains.
#include "train/study/referencing_study.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <map>
#include <ostream>

#include "ZORVELA.h"
#include "predict/isotopes.h"
#include "train/formatted.h"
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

void addIsotopeShifts(EntryShifts& chain, double share) {
  for (std::size_t i = 0; i < chain.residues.size(); ++i) {
    Residue& residue = chain.residues[i];
    for (const Atom atom : {Atom::CA, Atom::CB})
      add(chain.secondary[i][indexOf(atom)], share * isotopeShift(residue.type, atom),
          kMissingSecondaryShift);
    for (const Atom atom : {Atom::CB, Atom::CG})
      add(residue.shift(atom), share * isotopeShift(residue.type, atom), kMissingBound);
  }
}

void removeAlphaProtons(EntryShifts& chain) {
  for (std::size_t i = 0; i < chain.residues.size(); ++i) {
    chain.secondary[i][indexOf(Atom::HA)] = kMissingShift;
    for (const Atom atom : {Atom::HA, Atom::HA2, Atom::HA3}) chain.residues[i].shift(atom) = kNotMeasured;
  }
}

bool rereference(EntryShifts& chain) {
  const Offsets offsets = correctionsOf(estimateOffsets(chain.secondary));
  for (const auto& [name, ppm] : offsets) {
    const Atom atom = atomNamed(name).value();
    if (atom != Atom::CG) addTo(chain, atom, -ppm);
    if (atom == Atom::CG || atom == Atom::CB) addToObserved(chain, atom, -ppm);
  }
  return !offsets.empty();
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

// --- Fitted relations as text ---------------------------------------------------------------------

namespace {

std::string measureText(Measure measure) {
  if (measure == Measure::caMinusCb) return "caMinusCb";
  return measure == Measure::alphaProton ? "alphaProton" : "amideProtons";
}

}  // namespace

void writeRelations(std::ostream& out, const std::vector<ShiftRelation>& relations) {
  for (const ShiftRelation& relation : relations) {
    out << "{\"" << relation.atom << "\", Measure::" << measureText(relation.measure) << ", "
        << formatted("%g, %g", relation.first, relation.step) << ", {";
    for (std::size_t i = 0; i < relation.points.size(); ++i)
      out << (i > 0 ? ", " : "") << formatted("%.3f", relation.points[i]);
    out << "}, " << formatted("%.3f, %.3f", relation.scatter, relation.betweenChains) << "},\n";
  }
}

// --- Counting -------------------------------------------------------------------------------------

namespace {

constexpr std::size_t kLongChain = 40;
constexpr double kCarbonAdded = 1.5;
constexpr double kProtonAdded = 0.5;
// Seed of the halves; any number does, but always the same one.
constexpr std::uint64_t kHalfSeed = 11;

/// The straight line of the check report, the relations as `run` uses them, and relations that are fitted to
/// the clusters of the other half.
const std::array<const char*, 3> kMethods = {"zorvela -check", "zorvela-kit", "other half"};

/// An offset that a method finds in a chain.
struct FoundOffset {
  double offset = 0;  ///< ppm; not a number if there is none
  double error = 0;
  bool isCalled = false;  ///< it calls for a correction
};
/// CA, CB, HA, C.
using FoundOffsets = std::array<FoundOffset, 4>;
/// By method.
using Found = std::array<FoundOffsets, kMethods.size()>;

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

/// Offsets that the methods find in all chains after offsets were added.
class Trial {
 public:
  explicit Trial(const LabelledProlines& labelled) : data(labelled), half(halves(labelled)) {
    for (std::size_t i = 0; i < forHalf.size(); ++i)
      forHalf[i] = fitRelations(chosen(data, [&](std::size_t entry) { return half[entry] != i; }));
  }

  std::vector<Found> add(double carbon, double proton) const {
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

std::string share(std::size_t part, std::size_t whole) {
  if (whole == 0) return "-";
  return formatted("%zu (%.1f %%)", part, 100.0 * static_cast<double>(part) / static_cast<double>(whole));
}

/// A row of how often each method calls for a correction in the chains that count.
std::string calledRow(const std::string& name, const LabelledProlines& data, const std::vector<Found>& found,
                      const Places& places, const std::function<bool(const EntryShifts&)>& isCounted) {
  std::size_t count = 0;
  std::array<std::size_t, kMethods.size()> called{};
  for (std::size_t i = 0; i < found.size(); ++i) {
    if (!isCounted(data.entries[i])) continue;
    ++count;
    for (std::size_t method = 0; method < called.size(); ++method)
      if (std::any_of(places.begin(), places.end(),
                      [&](std::size_t place) { return found[i][method][place].isCalled; }))
        ++called[method];
  }
  return formatted("%-42s %7zu  %-15s  %-15s  %s\n", name.c_str(), count, share(called[0], count).c_str(),
                   share(called[1], count).c_str(), share(called[2], count).c_str());
}

/// A row of what a method estimates for an atom.
std::string spreadRow(const std::string& atoms, const std::vector<Found>& found, std::size_t method,
                      std::size_t place) {
  std::vector<double> offsets;
  std::size_t beyond = 0;
  for (const Found& chain : found) {
    const FoundOffset& offset = chain[method][place];
    if (!std::isfinite(offset.offset) || !std::isfinite(offset.error)) continue;
    offsets.push_back(offset.offset);
    if (std::fabs(offset.offset) > 2 * offset.error) ++beyond;
  }
  const bool isEmpty = offsets.empty();
  const double middle = isEmpty ? 0 : median(offsets);
  return formatted("%-27s %-15s %7zu  %8.3f  %8.3f  %.1f %%\n", atoms.c_str(), kMethods[method],
                   offsets.size(), rounded(middle), isEmpty ? 0 : robustDeviation(offsets, middle),
                   isEmpty ? 0 : 100 * (static_cast<double>(beyond) / static_cast<double>(offsets.size())));
}

}  // namespace

void writeReferencing(std::ostream& out, const LabelledProlines& data) {
  const auto isLong = [](const EntryShifts& chain) { return chain.residues.size() >= kLongChain; };
  const auto any = [](const EntryShifts&) { return true; };
  const auto longWith = [&](bool (*holds)(const BackboneValues&), std::size_t least) {
    return [=](const EntryShifts& chain) { return isLong(chain) && residuesWith(chain, holds) >= least; };
  };
  const auto longWithProtonAndCarbons = [&](const EntryShifts& chain) {
    return longWith(hasAlphaProton, 1)(chain) && longWith(hasCAandCB, 20)(chain);
  };
  const Trial trial(data);
  const std::vector<Found> asTheyAre = trial.add(0, 0);
  const std::vector<Found> carbon = trial.add(kCarbonAdded, 0);
  const std::vector<Found> proton = trial.add(0, kProtonAdded);
  out << data.entries.size() << " chains, " << std::count_if(data.entries.begin(), data.entries.end(), isLong)
      << " of 40 residues or more\n"
      << "other half: as zorvela-kit, by constants from the clusters of the other half\n\n"
      << formatted("%-42s %7s  %-15s  %-15s  %s\n", "a correction is called for", "chains", kMethods[0],
                   kMethods[1], kMethods[2])
      << calledRow("as they are", data, asTheyAre, kAnyAtom, any)
      << calledRow("  CA and CB", data, asTheyAre, kAlphaCarbon, any)
      << calledRow("  HA", data, asTheyAre, kAlphaProton, any)
      << calledRow("  C'", data, asTheyAre, kCarbonyl, any)
      << calledRow("1.5 ppm added to all 13C, chains with 13C", data, carbon, kCarbons,
                   longWith(hasCarbon, 1))
      << calledRow("  with CA and CB of 20 residues", data, carbon, kCarbons, longWith(hasCAandCB, 20))
      << calledRow("0.5 ppm added to HA, chains with HA", data, proton, kAlphaProton,
                   longWith(hasAlphaProton, 1))
      << calledRow("  with CA and CB of 20 residues", data, proton, kAlphaProton, longWithProtonAndCarbons)
      << '\n'
      << formatted("%-27s %-15s %7s  %8s  %8s  %s\n", "offsets as they are (ppm)", "by", "chains", "median",
                   "spread", "beyond two errors");
  for (std::size_t method = 0; method < kMethods.size(); ++method)
    out << spreadRow("CA and CB", asTheyAre, method, 0) << spreadRow("HA", asTheyAre, method, 2)
        << spreadRow("C'", asTheyAre, method, 3);
}

}  // namespace zorvela
