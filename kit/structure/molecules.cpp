// The parts of a chain are put together, or kept apart, by bonds and numbers.
#include "structure/molecules.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "names/nomenclature.h"
#include "structure/peptide_bond.h"

namespace zorvela {

namespace {

/// More residues of one number are not looked at: no real chain has so many copies.
constexpr std::size_t kMostCopies = 64;

bool isAminoAcid(const BackboneResidue& residue) {
  if (residue.find("CA") == nullptr) return false;
  return residueType(residue.name).letter != kUnknownResidue ||
         (residue.find("N") != nullptr && residue.find("C") != nullptr);
}

std::optional<int> numberOf(const BackboneResidue& residue) {
  const auto number = readResidueNumber(residue.number);
  if (!number) return std::nullopt;
  return number->number;
}

/// Tells whether the number of a residue is below that of the one before it.
bool falls(const BackboneResidue& before, const BackboneResidue& after) {
  const auto first = numberOf(before);
  const auto second = numberOf(after);
  return first && second && *second < *first;
}

/// The amino acids of a part of a chain, parted where the numbers fall without a bond.
std::vector<Residues> runsOf(const BackboneChain& chain) {
  std::vector<Residues> runs;
  for (const BackboneResidue& residue : chain.residues) {
    if (!isAminoAcid(residue)) continue;
    const BackboneResidue* before = runs.empty() ? nullptr : runs.back().back();
    if (before == nullptr || (falls(*before, residue) && !areBonded(*before, residue))) runs.emplace_back();
    runs.back().push_back(&residue);
  }
  return runs;
}

bool goesOn(const BackboneResidue& last, const BackboneResidue& next) {
  if (areBonded(last, next)) return true;
  const auto before = numberOf(last);
  const auto after = numberOf(next);
  return before && after && *before < *after - 1;
}

/// The molecules of one chain name and segment.
class Group {
 public:
  void add(const Residues& run, const BackboneChain& chain, std::size_t number) {
    if (!molecules.empty() && goesOn(*molecules.back().residues.back(), *run.front())) {
      append(run);
      return;
    }
    Residues others;
    for (const BackboneResidue* residue : run)
      if (molecules.empty() || !putBetween(*residue)) others.push_back(residue);
    if (others.empty()) return;
    molecules.push_back({chain.name, chain.key + std::to_string(number), {}});
    inserted.emplace_back();
    numbers.emplace_back();
    append(others);
  }

  std::vector<Molecule> finished() {
    for (std::size_t m = 0; m < molecules.size(); ++m) insertAll(molecules[m].residues, inserted[m]);
    return std::move(molecules);
  }

 private:
  /// A residue of a molecule; an inserted one comes behind so many of the others.
  struct Place {
    std::size_t molecule;
    std::size_t behind;
    const BackboneResidue* residue;
  };
  using Insertion = std::pair<std::size_t, const BackboneResidue*>;

  void append(const Residues& run) {
    const std::size_t m = molecules.size() - 1;
    for (const BackboneResidue* residue : run) {
      molecules[m].residues.push_back(residue);
      know(*residue, {m, molecules[m].residues.size(), residue});
    }
  }

  void know(const BackboneResidue& residue, const Place& place) {
    numbers[place.molecule].insert(residue.number);
    if (const auto number = numberOf(residue)) byNumber[*number].push_back(place);
  }

  bool putBetween(const BackboneResidue& residue) {
    const auto number = numberOf(residue);
    if (!number) return false;
    for (const int neighbour : {*number - 1, *number, *number + 1}) {
      const auto places = byNumber.find(neighbour);
      if (places == byNumber.end()) continue;
      for (std::size_t i = 0; i < std::min(kMostCopies, places->second.size()); ++i)
        if (putBeside(residue, Place(places->second[i]))) return true;
    }
    return false;
  }

  bool putBeside(const BackboneResidue& residue, Place place) {
    if (numbers[place.molecule].count(residue.number) > 0) return false;
    if (areBonded(residue, *place.residue))
      place.behind -= std::min<std::size_t>(place.behind, 1);
    else if (!areBonded(*place.residue, residue))
      return false;
    inserted[place.molecule].emplace_back(place.behind, &residue);
    know(residue, {place.molecule, place.behind, &residue});
    return true;
  }

  static void insertAll(Residues& residues, std::vector<Insertion>& insertions) {
    std::stable_sort(insertions.begin(), insertions.end(),
                     [](const Insertion& a, const Insertion& b) { return a.first < b.first; });
    Residues all;
    auto next = insertions.begin();
    for (std::size_t i = 0; i <= residues.size(); ++i) {
      for (; next != insertions.end() && next->first == i; ++next) all.push_back(next->second);
      if (i < residues.size()) all.push_back(residues[i]);
    }
    residues = std::move(all);
  }

  std::vector<Molecule> molecules;
  std::vector<std::vector<Insertion>> inserted;
  std::vector<std::set<std::string>> numbers;
  std::map<int, std::vector<Place>> byNumber;
};

}  // namespace

std::vector<Molecule> moleculesOf(const BackboneModel& model) {
  std::map<std::pair<std::string, std::string>, std::size_t> places;
  std::vector<Group> groups;  // in the order of the file
  for (const BackboneChain& chain : model.chains) {
    const auto at = places.emplace(std::make_pair(chain.name, chain.segment), groups.size());
    if (at.second) groups.emplace_back();
    std::size_t number = 0;
    for (const Residues& run : runsOf(chain)) groups[at.first->second].add(run, chain, number++);
  }
  std::vector<Molecule> all;
  for (Group& group : groups)
    for (Molecule& molecule : group.finished()) all.push_back(std::move(molecule));
  return all;
}

}  // namespace zorvela
