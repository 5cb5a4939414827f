// A protein as the program's own shift table.
#include "zorvela/protein.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ostream>
#include <string_view>

#include "util/number.h"
#include "util/text.h"

namespace zorvela {

namespace {

/// A sequence that fills its last line is followed by a line without letters; readers expect it.
void writeSequence(std::string_view sequence, std::ostream& out) {
  constexpr std::size_t kLettersPerLine = 55;
  if (sequence.empty()) return;
  for (std::size_t at = 0; at <= sequence.size(); at += kLettersPerLine)
    out << "DATA SEQUENCE " << sequence.substr(at, kLettersPerLine) << '\n';
}

}  // namespace

const Shift* shiftOf(const Protein& protein, int position, Atom atom) {
  const auto isBefore = [](const Shift& shift, int place) { return shift.position < place; };
  auto shift = std::lower_bound(protein.shifts.begin(), protein.shifts.end(), position, isBefore);
  for (; shift != protein.shifts.end() && shift->position == position; ++shift)
    if (shift->atom == atom) return &*shift;
  return nullptr;
}

std::string shiftText(const Shift& shift) {
  return fixedText(shift.ppm, shift.decimals);
}

void writeShiftTable(const Protein& protein, std::ostream& out) {
  for (const std::string& remark : protein.remarks) out << "REMARK " << shown(remark, ' ') << '\n';
  out << '\n';
  writeSequence(protein.sequence, out);
  out << "\nVARS   RESID RESNAME ATOMNAME SHIFT \nFORMAT %4d %1s %4s  %8.3f\n\n";
  for (const Shift& shift : protein.shifts) {
    std::array<char, 400> row{};  // the largest number has 309 digits before the point
    const char letter = protein.sequence.at(static_cast<std::size_t>(shift.position) - 1);
    std::snprintf(row.data(), row.size(), "%4d %c %4s  %8.3f\n", shift.position, letter,
                  nameOf(shift.atom).data(), shift.ppm);
    out << row.data();
  }
}

}  // namespace zorvela
