// Medians around points, then counts over all chains.
#include "train/study/studies.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <ostream>

#include "ZORVELA.h"
#include "predict/isotopes.h"
#include "train/metrics.h"
#include "train/table_cells.h"
#include "util/robust.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

void add(float& shift, double ppm, float missingAbove) {
  if (shift <= missingAbove) shift = static_cast<float>(shift + ppm);
}

/// Adds ppm, by residue type, to the secondary shifts of an atom other than CG. Adds it to the observed
/// shifts of CB and CG. CB - CG and CG itself are made of these alone.
void addTo(EntryShifts& chain, Atom atom, const std::function<double(char type)>& ppm) {
  for (std::size_t i = 0; i < chain.residues.size(); ++i) {
    Residue& residue = chain.residues[i];
    const double added = ppm(residue.type);
    if (atom != Atom::CG) add(chain.secondary[i][indexOf(atom)], added, kMissingSecondaryShift);
    if (atom == Atom::CB || atom == Atom::CG) add(residue.shift(atom), added, kMissingBound);
  }
}

}  // namespace

void addOffsets(EntryShifts& chain, double carbon, double proton) {
  for (const Atom atom : {Atom::C, Atom::CA, Atom::CB, Atom::CG})
    addTo(chain, atom, [=](char) { return carbon; });
  addTo(chain, Atom::HA, [=](char) { return proton; });
}

void addIsotopeShifts(EntryShifts& chain, double share) {
  for (const Atom atom : {Atom::CA, Atom::CB, Atom::CG})
    addTo(chain, atom, [=](char type) { return share * isotopeShift(type, atom); });
}

void removeAlphaProtons(EntryShifts& chain) {
  for (std::size_t i = 0; i < chain.residues.size(); ++i) {
    chain.secondary[i][indexOf(Atom::HA)] = kMissingShift;
    for (const Atom atom : {Atom::HA, Atom::HA2, Atom::HA3}) chain.residues[i].shift(atom) = kNotMeasured;
  }
}

bool rereference(EntryShifts& chain) {
  const Offsets offsets = correctionsOf(estimateOffsets(chain.secondary));
  for (const auto& offset : offsets)
    addTo(chain, atomNamed(offset.first).value(), [&offset](char) { return -offset.second; });
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

ShiftRelation fitted(ShiftRelation relation, const std::vector<const EntryShifts*>& chains) {
  relation.points = mediansAround(relation, chains);
  std::vector<double> offsets;  // of the chains with enough residues
  std::vector<double> scatters;
  std::vector<double> shares;  // of the variance within a chain that its median has
  for (const EntryShifts* chain : chains) {
    const std::vector<double> values = deviations(chain->secondary, relation);
    if (values.size() < kResiduesOfChain) continue;
    offsets.push_back(median(values));
    scatters.push_back(robustDeviation(values, offsets.back()));
    shares.push_back(kMedianOverMean * kMedianOverMean / static_cast<double>(values.size()));
  }
  if (offsets.empty())
    throw Error("no chain has the shifts of " + std::to_string(kResiduesOfChain) +
                " residues that the fit of " + relation.atom + " needs");
  const double bias = median(offsets);
  for (double& point : relation.points) point = rounded(point + bias);
  relation.scatter = rounded(median(scatters));
  // What the scatter within the chains does not explain.
  const double spread = robustDeviation(offsets, bias);
  const double between = spread * spread - relation.scatter * relation.scatter * median(shares);
  relation.betweenChains = rounded(std::sqrt(std::max(between, 0.0)));
  return relation;
}

}  // namespace

std::vector<ShiftRelation> fitRelations(const std::vector<const EntryShifts*>& chains) {
  std::vector<ShiftRelation> relations;
  for (const ShiftRelation& relation : knownRelations()) relations.push_back(fitted(relation, chains));
  return relations;
}

void writeRelations(std::ostream& out, const std::vector<ShiftRelation>& relations) {
  for (const ShiftRelation& relation : relations) {
    const char* other = relation.measure == Measure::alphaProton ? "alphaProton" : "amideProtons";
    out << "{\"" << relation.atom
        << "\", Measure::" << (relation.measure == Measure::caMinusCb ? "caMinusCb" : other) << ", "
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

/// The straight line of the check report, the relations as `run` uses them, and relations of another fit.
/// This fit is to the clusters of the other half.
const std::array<const char*, 3> kMethods = {"zorvela -check", "zorvela-kit", "other half"};

/// An offset that a method finds in a chain.
struct FoundOffset {
  double offset = 0;  ///< ppm; not a number if there is none
  double error = 0;
  bool isCalled = false;  ///< it calls for a correction
};
/// CA, CB, HA, C.
using FoundOffsets = std::vector<FoundOffset>;
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
  FoundOffsets found;
  for (const FittedOffset& one : run.referencingOffsets())
    found.push_back({one.offset, one.error, one.recommended && std::isfinite(one.offset)});
  return found;
}

FoundOffsets byRelations(const EntryShifts& chain, const std::vector<ShiftRelation>& relations) {
  FoundOffsets found;
  for (const OffsetEstimate& one : estimateOffsets(chain.secondary, relations))
    found.push_back({one.offset, one.error, callsForCorrection(one)});
  return found;
}

/// For each cluster, the relations that are fitted to the clusters of the other half.
std::vector<std::vector<ShiftRelation>> relationsOfOtherHalf(const LabelledProlines& data) {
  std::vector<std::size_t> half;
  Draw draw{kHalfSeed};
  for (std::size_t i = 0; i < data.clusters.size(); ++i) half.push_back(draw.below(2));
  std::array<std::vector<const EntryShifts*>, 2> others;
  for (const EntryShifts& entry : data.entries) others[1 - half[entry.cluster]].push_back(&entry);
  const std::array<std::vector<ShiftRelation>, 2> relations = {fitRelations(others[0]),
                                                               fitRelations(others[1])};
  std::vector<std::vector<ShiftRelation>> ofCluster;
  for (const std::size_t one : half) ofCluster.push_back(relations[one]);
  return ofCluster;
}

/// Finds the offsets of all chains by each method, after offsets were added.
std::vector<Found> findOffsets(const LabelledProlines& data,
                               const std::vector<std::vector<ShiftRelation>>& relations, double carbon,
                               double proton) {
  std::vector<Found> found;
  for (EntryShifts chain : data.entries) {
    addOffsets(chain, carbon, proton);
    found.push_back(
        {byLine(chain), byRelations(chain, knownRelations()), byRelations(chain, relations[chain.cluster])});
  }
  return found;
}

std::string share(std::size_t part, std::size_t whole) {
  if (whole == 0) return "-";
  return formatted("%zu (%.1f %%)", part, 100.0 * static_cast<double>(part) / static_cast<double>(whole));
}

/// A row of how often each method calls for a correction of these atoms in the chains that count. `places`
/// are those of the atoms in FoundOffsets.
std::string calledRow(const std::string& name, const LabelledProlines& data, const std::vector<Found>& found,
                      const std::vector<std::size_t>& places,
                      const std::function<bool(const EntryShifts&)>& isCounted) {
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

/// A row of what a method estimates for an atom. Empty if no chain has a finite offset with a finite error.
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
  if (offsets.empty()) return "";
  const double middle = median(offsets);
  return formatted("%-27s %-15s %7zu  %8.3f  %8.3f  %.1f %%\n", atoms.c_str(), kMethods[method],
                   offsets.size(), rounded(middle), robustDeviation(offsets, middle),
                   100 * (static_cast<double>(beyond) / static_cast<double>(offsets.size())));
}

}  // namespace

void writeReferencing(std::ostream& out, const LabelledProlines& data) {
  const auto any = [](const EntryShifts&) { return true; };
  const auto isLong = [](const EntryShifts& chain) { return chain.residues.size() >= kLongChain; };
  const auto longWith = [&](std::size_t residues, bool (*holds)(const BackboneValues&)) {
    return [=](const EntryShifts& chain) {
      const auto count = std::count_if(chain.secondary.begin(), chain.secondary.end(), holds);
      return isLong(chain) && static_cast<std::size_t>(count) >= residues;
    };
  };
  const auto withCarbon = longWith(1, [](const BackboneValues& residue) {
    return shiftAt(residue, Atom::CA) || shiftAt(residue, Atom::CB) || shiftAt(residue, Atom::C);
  });
  const auto withProton =
      longWith(1, [](const BackboneValues& residue) { return shiftAt(residue, Atom::HA).has_value(); });
  const auto withCarbons = longWith(20, [](const BackboneValues& residue) {
    return shiftAt(residue, Atom::CA) && shiftAt(residue, Atom::CB);
  });
  const auto withBoth = [&](const EntryShifts& chain) { return withProton(chain) && withCarbons(chain); };
  const auto relations = relationsOfOtherHalf(data);
  const std::vector<Found> asTheyAre = findOffsets(data, relations, 0, 0);
  const std::vector<Found> carbon = findOffsets(data, relations, kCarbonAdded, 0);
  const std::vector<Found> proton = findOffsets(data, relations, 0, kProtonAdded);
  out << data.entries.size() << " chains, " << std::count_if(data.entries.begin(), data.entries.end(), isLong)
      << " of 40 residues or more\n"
      << "other half: as zorvela-kit, by constants from the clusters of the other half\n\n"
      << formatted("%-42s %7s  %-15s  %-15s  %s\n", "a correction is called for", "chains", kMethods[0],
                   kMethods[1], kMethods[2])
      << calledRow("as they are", data, asTheyAre, {0, 1, 2, 3}, any)
      << calledRow("  CA and CB", data, asTheyAre, {0, 1}, any)
      << calledRow("  HA", data, asTheyAre, {2}, any) << calledRow("  C'", data, asTheyAre, {3}, any)
      << calledRow("1.5 ppm added to all 13C, chains with 13C", data, carbon, {0, 1, 3}, withCarbon)
      << calledRow("  with CA and CB of 20 residues", data, carbon, {0, 1, 3}, withCarbons)
      << calledRow("0.5 ppm added to HA, chains with HA", data, proton, {2}, withProton)
      << calledRow("  with CA and CB of 20 residues", data, proton, {2}, withBoth) << '\n'
      << formatted("%-27s %-15s %7s  %8s  %8s  %s\n", "offsets as they are (ppm)", "by", "chains", "median",
                   "spread", "beyond two errors");
  for (std::size_t method = 0; method < kMethods.size(); ++method)
    out << spreadRow("CA and CB", asTheyAre, method, 0) << spreadRow("HA", asTheyAre, method, 2)
        << spreadRow("C'", asTheyAre, method, 3);
}

}  // namespace zorvela
