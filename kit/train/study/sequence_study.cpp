// Conflicts of shifts with residue types.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <ostream>
#include <utility>

#include "names/nomenclature.h"
#include "protein/place_on_sequence.h"
#include "train/study/studies.h"
#include "train/table_cells.h"
#include "zorvela/read.h"

namespace zorvela {

namespace {

constexpr std::int64_t kFarthest = 30;
constexpr std::int64_t kFarthestOfOther = 10;

/// The types that the shifts of some atoms exclude, without their residue names, by position.
std::map<std::int64_t, Types> evidenceOf(const Protein& protein, const std::vector<Atom>& atoms) {
  std::map<std::int64_t, Types> evidence;
  for (const Shift& shift : protein.shifts) {
    if (std::find(atoms.begin(), atoms.end(), shift.atom) == atoms.end()) continue;
    FileShift row;
    row.atom = nameOf(shift.atom);
    row.value = shiftText(shift);
    evidence[shift.position] |= excludedByShift(row);
  }
  return evidence;
}

/// Residues in conflict where the sequence is moved by so many places.
std::size_t conflicts(const std::string& letters, const std::map<std::int64_t, Types>& evidence,
                      std::int64_t moved) {
  const auto size = static_cast<std::int64_t>(letters.size());
  std::size_t count = 0;
  for (const auto& [position, excluded] : evidence) {
    const std::int64_t place = position - 1 - moved;
    const bool isInside = place >= 0 && place < size;
    const char letter = isInside ? withoutThiolState(letters[static_cast<std::size_t>(place)]) : ' ';
    if (isInConflict(excluded, letter)) ++count;
  }
  return count;
}

/// Fewest residues in conflict where the sequence is moved by up to `farthest` places. `isTrueLeftOut` leaves
/// out the move by 0.
std::size_t fewestConflicts(const std::string& letters, const std::map<std::int64_t, Types>& evidence,
                            std::int64_t farthest, bool isTrueLeftOut) {
  std::size_t fewest = evidence.size();
  for (std::int64_t moved = -farthest; moved <= farthest; ++moved)
    if (moved != 0 || !isTrueLeftOut) fewest = std::min(fewest, conflicts(letters, evidence, moved));
  return fewest;
}

double quantile(std::vector<double> values, double share) {
  std::sort(values.begin(), values.end());
  return values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))];
}

/// Writes the row of a list that has these atoms alone.
void writeFits(std::ostream& out, const std::vector<Protein>& proteins, const char* name,
               const std::vector<Atom>& atoms) {
  int best = 0;
  int ties = 0;
  std::vector<double> ofTrue;
  std::vector<double> ofWrong;
  std::vector<double> ofOther;
  for (std::size_t i = 0; i < proteins.size(); ++i) {
    const auto evidence = evidenceOf(proteins[i], atoms);
    if (evidence.empty()) continue;
    const auto share = [&](std::size_t count) {
      return static_cast<double>(count) / static_cast<double>(evidence.size());
    };
    const std::size_t here = conflicts(proteins[i].sequence, evidence, 0);
    const std::size_t elsewhere = fewestConflicts(proteins[i].sequence, evidence, kFarthest, true);
    best += here < elsewhere ? 1 : 0;
    ties += here == elsewhere ? 1 : 0;
    ofTrue.push_back(share(here));
    ofWrong.push_back(share(elsewhere));
    const std::string& other = proteins[(i + proteins.size() / 2) % proteins.size()].sequence;
    ofOther.push_back(share(fewestConflicts(other, evidence, kFarthestOfOther, false)));
  }
  const auto isAbove = [](double one) { return one > kMostInConflict; };
  const auto above = std::count_if(ofTrue.begin(), ofTrue.end(), isAbove);
  const auto below = std::count_if(ofOther.begin(), ofOther.end(), std::not_fn(isAbove));
  const int size = static_cast<int>(ofTrue.size());
  out << formatted("| %s | %d | %d | %d | %d | %.3f | %.3f | %.3f | %.3f | %.3f | %d | %d |\n", name, size,
                   best, ties, size - best - ties, quantile(ofTrue, 0.99), quantile(ofWrong, 0.5),
                   quantile(ofWrong, 0.01), quantile(ofOther, 0.5), quantile(ofOther, 0.05),
                   static_cast<int>(above), static_cast<int>(below));
}

}  // namespace

void writeSequenceFits(std::ostream& out, const std::string& folder) {
  std::vector<std::string> tables;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    tables.push_back(entry.path().string());
  std::sort(tables.begin(), tables.end());
  std::vector<Protein> proteins;
  for (const std::string& table : tables) proteins.push_back(std::move(readShiftFile(table, {}).front()));
  out << "| atoms | tables | own numbers best | tie | others better | own, 99 % | wrong number, median | 1 % "
         "| other "
         "sequence, median | 5 % | own above the bound | other below it "
         "|\n|---|---|---|---|---|---|---|---|---|---|---|---|\n";
  writeFits(out, proteins, "N HN HA C CA CB",
            {Atom::N, Atom::HN, Atom::HA, Atom::HA2, Atom::HA3, Atom::C, Atom::CA, Atom::CB});
  writeFits(out, proteins, "N HN CA CB", {Atom::N, Atom::HN, Atom::CA, Atom::CB});
  writeFits(out, proteins, "N HN", {Atom::N, Atom::HN});
}

}  // namespace zorvela
