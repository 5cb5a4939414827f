#include "predict/table_ranges.h"

#include <string_view>

#include "names/plausible_shifts.h"
#include "util/number.h"
#include "util/text.h"
#include "zorvela/core.h"

namespace zorvela {

namespace {

/// In randcoil.tab, of an atom that the residue does not have.
constexpr float kNoAtom = 9999;
/// The furthest that random-coil shifts of one atom are corrected for the residue or its neighbours, in ppm.
constexpr float kLargestCorrection = 10;
/// Class means of CG of proline lie near 24 and 27 ppm.
constexpr float kLowestCG = 15;
constexpr float kHighestCG = 40;
/// The largest secondary shift of an atom, in ppm.
float largestSecondaryShift(Atom atom) {
  switch (atom) {
    case Atom::N:
      return 40;
    case Atom::HA:
    case Atom::HN:
      return 10;
    default:
      return 25;
  }
}

float value(const GDB::Row& row, const std::string& column) {
  return GDB::toFloat(GDB::cell(row, column));
}

struct Check {
  const GDB& table;
  const TableFault& report;

  void range(int number, const std::string& column, float low, float high) const {
    const std::string& cell = GDB::cell(table.entries.at(number), column);
    const float at = GDB::toFloat(cell);
    if (!(at >= low && at <= high))
      report(number, column + " is " + printable(cell, 40) + ", not " +
                         fixedText(static_cast<double>(low), 1) + " to " +
                         fixedText(static_cast<double>(high), 1) + " ppm");
  }

  /// A value of the row of one residue type.
  float of(std::string_view residue, const std::string& column) const {
    for (const auto& [number, row] : table.entries)
      if (GDB::cell(row, "RESNAME") == residue) return value(row, column);
    return 0;
  }
};

void checkRandomCoil(const Check& check) {
  for (const auto& [number, row] : check.table.entries)
    for (const Atom atom : kBackbone) {
      const std::string column(nameOf(atom));
      const PlausibleRange range = plausibleRange('?', atom);
      if (value(row, column) != kNoAtom)
        check.range(number, column, static_cast<float>(range.low), static_cast<float>(range.high));
    }
  if (check.of("A", "CB") > check.of("A", "CA")) check.report(0, "has CB of alanine above its CA");
}

void checkCorrections(const Check& check) {
  for (const auto& [number, row] : check.table.entries)
    for (const Atom atom : kBackbone)
      check.range(number, std::string(nameOf(atom)), -kLargestCorrection, kLargestCorrection);
}

void checkLimitRanges(const Check& check) {
  for (const auto& [number, row] : check.table.entries)
    for (const Atom atom : kBackbone) {
      const float largest = largestSecondaryShift(atom);
      check.range(number, std::string(nameOf(atom)) + "_MIN", -largest, 0);
      check.range(number, std::string(nameOf(atom)) + "_MAX", 0, largest);
    }
}

void checkStatistics(const Check& check) {
  for (const auto& [number, row] : check.table.entries) {
    const int index = GDB::toInt(GDB::cell(row, "index"));
    const bool isCG = index == static_cast<int>(kShifts) - 1;
    const float largest =
        isCG ? kHighestCG
             : largestSecondaryShift(kBackbone[static_cast<std::size_t>(index) % kBackbone.size()]);
    for (const char* column : {"avg_cis", "avg_trans"})
      check.range(number, column, isCG ? kLowestCG : -largest, largest);
    for (const char* column : {"std_cis", "std_trans"}) check.range(number, column, 0, largest);
    if (isCG && value(row, "avg_cis") > value(row, "avg_trans"))
      check.report(number, "CG of cis prolines is above that of trans ones");
  }
}

}  // namespace

void checkRanges(const std::string& name, const GDB& table, const TableFault& report) {
  const Check check{table, report};
  if (name == "randcoil.tab")
    checkRandomCoil(check);
  else if (name == "sslimit.tab")
    checkLimitRanges(check);
  else if (name == "Pro.cs.tab")
    checkStatistics(check);
  else if (name != "Pro.seq.tab")
    checkCorrections(check);
}

}  // namespace zorvela
