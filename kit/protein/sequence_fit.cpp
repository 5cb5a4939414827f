#include "protein/sequence_fit.h"

#include <algorithm>

#include "names/plausible_shifts.h"
#include "protein/shifts.h"

namespace zorvela {

namespace {

constexpr std::uint32_t kAllTypes = (std::uint32_t{1} << kAminoAcids.size()) - 1;

/// No bit for a letter that is open.
std::uint32_t bitOf(char letter) {
  const std::size_t index = kAminoAcids.find(withoutThiolState(letter));
  return index == std::string_view::npos ? 0 : std::uint32_t{1} << index;
}

/// Tells whether a residue type can have a shift. A shift that no type has is folded or wrong, and excludes
/// none.
bool isPossible(char letter, const AtomReading& atom, double ppm) {
  if (!atom.isInTable()) return atom.kind != AtomReading::Kind::foreign;
  return isPlausible(letter, atom.atom, ppm) || !isPlausible(kUnknownResidue, atom.atom, ppm);
}

}  // namespace

bool isInConflict(const ResidueEvidence& residue, char letter) {
  return letter == ' ' || (residue.excluded & bitOf(letter)) != 0;
}

const std::vector<AtomReading>& Exclusion::readings(const std::string& atom) {
  std::vector<AtomReading>& readings = known[atom];
  if (readings.empty())
    for (const char letter : kAminoAcids) readings.push_back(readAtom(letter, atom));
  return readings;
}

std::uint32_t Exclusion::of(const FileShift& row) {
  const std::uint32_t named = bitOf(polypeptideResidue(row.residueName).letter);
  std::uint32_t excluded = named == 0 ? 0 : kAllTypes & ~named;
  const auto shift = readShift(row.value);
  if (!shift || shift->ppm == 0 || isMissingMark(*shift)) return excluded;
  const std::vector<AtomReading>& atoms = readings(row.atom);
  for (std::size_t i = 0; i < kAminoAcids.size(); ++i)
    if (!isPossible(kAminoAcids[i], atoms[i], shift->ppm)) excluded |= std::uint32_t{1} << i;
  return excluded;
}

std::size_t countConflicts(const NumberedLetters& sequence, std::int64_t first,
                           const std::vector<ResidueEvidence>& residues, std::size_t most) {
  const std::int64_t moved = sequence.first - first;
  std::size_t conflicts = 0;
  for (const ResidueEvidence& residue : residues)
    if (isInConflict(residue, sequence.at(residue.number + moved)) && ++conflicts > most) break;
  return conflicts;
}

std::optional<std::int64_t> fittingFirst(const NumberedLetters& sequence,
                                         const std::vector<ResidueEvidence>& residues) {
  constexpr double kMostPairs = 1e8;
  if (residues.empty()) return std::nullopt;
  const auto byNumber = [](const ResidueEvidence& a, const ResidueEvidence& b) {
    return a.number < b.number;
  };
  const auto [lowest, highest] = std::minmax_element(residues.begin(), residues.end(), byNumber);
  const std::int64_t from = lowest->number - static_cast<std::int64_t>(sequence.letters.size()) + 1;
  if (static_cast<double>(highest->number - from) * static_cast<double>(residues.size()) > kMostPairs)
    return std::nullopt;
  auto fewest = static_cast<std::size_t>(kMostInConflict * static_cast<double>(residues.size()));
  std::optional<std::int64_t> fitting;
  bool isFound = false;
  for (std::int64_t first = from; first <= highest->number; ++first) {
    const std::size_t conflicts = countConflicts(sequence, first, residues, fewest);
    if (conflicts > fewest) continue;
    const bool isTie = isFound && conflicts == fewest;
    fitting = isTie ? std::nullopt : std::optional(first);
    isFound = true;
    fewest = conflicts;
  }
  return fitting;
}

}  // namespace zorvela
