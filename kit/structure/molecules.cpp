// The parts of a chain are put together, or kept apart, by bonds and numbers.
#include "structure/molecules.h"

#include <algorithm>
#include <cstdint>
#include <deque>
#include <list>
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
    if (!all.empty() && goesOn(*all.back().last, *run.front())) {
      append(run);
      return;
    }
    Residues others;
    for (const BackboneResidue* residue : run)
      if (!putBetween(*residue)) others.push_back(residue);
    if (others.empty()) return;
    all.push_back({chain.key + std::to_string(number), {}, {}, nullptr});
    append(others);
  }

  void moveTo(std::vector<Molecule>& molecules, const std::string& name) const {
    for (const Growing& one : all)
      molecules.push_back({name, one.key, {one.residues.begin(), one.residues.end()}});
  }

 private:
  /// A molecule to which residues are added.
  struct Growing {
    std::string key;
    std::list<const BackboneResidue*> residues;
    std::set<std::string> numbers;
    const BackboneResidue* last;  ///< of those that were not put between others
  };
  struct Place {
    std::size_t molecule;
    std::list<const BackboneResidue*>::iterator residue;
  };

  void append(const Residues& run) {
    for (const BackboneResidue* residue : run) put(*residue, all.size() - 1, all.back().residues.end());
    all.back().last = run.back();
  }

  void put(const BackboneResidue& residue, std::size_t molecule,
           std::list<const BackboneResidue*>::iterator before) {
    const Place place = {molecule, all[molecule].residues.insert(before, &residue)};
    all[molecule].numbers.insert(residue.number);
    if (const auto number = numberOf(residue)) byNumber[*number].push_back(place);
  }

  bool putBetween(const BackboneResidue& residue) {
    const auto number = numberOf(residue);
    if (!number) return false;
    const std::int64_t own = *number;
    for (const std::int64_t neighbour : {own - 1, own, own + 1}) {
      const auto places = byNumber.find(neighbour);
      if (places == byNumber.end()) continue;
      for (std::size_t i = 0; i < std::min(kMostCopies, places->second.size()); ++i)
        if (putBeside(residue, Place(places->second[i]))) return true;
    }
    return false;
  }

  bool putBeside(const BackboneResidue& residue, const Place& place) {
    if (all[place.molecule].numbers.count(residue.number) > 0) return false;
    const bool isBefore = areBonded(residue, **place.residue);
    if (!isBefore && !areBonded(**place.residue, residue)) return false;
    put(residue, place.molecule, isBefore ? place.residue : std::next(place.residue));
    return true;
  }

  std::deque<Growing> all;  // which stay where they are
  std::map<std::int64_t, std::vector<Place>> byNumber;
};

}  // namespace

std::vector<Molecule> moleculesOf(const BackboneModel& model) {
  std::map<std::pair<std::string, std::string>, std::size_t> places;
  std::deque<std::pair<std::string, Group>> groups;  // in the order of the file
  for (const BackboneChain& chain : model.chains) {
    const auto at = places.emplace(std::make_pair(chain.name, chain.segment), groups.size());
    if (at.second) groups.emplace_back(chain.name, Group());
    std::size_t number = 0;
    for (const Residues& run : runsOf(chain)) groups[at.first->second].second.add(run, chain, number++);
  }
  std::vector<Molecule> all;
  for (const auto& [name, group] : groups) group.moveTo(all, name);
  return all;
}

}  // namespace zorvela
