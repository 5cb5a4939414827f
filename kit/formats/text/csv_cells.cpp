#include "formats/text/csv_cells.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "ZORVELA.h"
#include "names/nomenclature.h"
#include "util/text.h"

namespace zorvela {

namespace {

constexpr std::string_view kNoValues[] = {"",     "-",   "--",   "---",  ".",          "?",      "na",
                                          "n/a",  "nan", "none", "null", "nd",         "n.d.",   "n.a.",
                                          "n.o.", "*",   "#n/a", "x",    "unassigned", "missing"};

struct Bounds {
  Atom atom;
  double low;
  double high;
};
constexpr Bounds kBounds[] = {
    {Atom::N, 80, 155},  {Atom::HN, 2, 16},  {Atom::HA, -2, 10}, {Atom::HA2, -2, 10}, {Atom::HA3, -2, 10},
    {Atom::C, 155, 195}, {Atom::CA, 30, 85}, {Atom::CB, 5, 90},  {Atom::CG, 10, 80},
};

}  // namespace

bool isNoValue(const std::string& cell) {
  if (!cell.empty() && isDigit(cell.front())) return false;
  const std::string text = lower(withLatinLetters(cell));
  return std::find(std::begin(kNoValues), std::end(kNoValues), text) != std::end(kNoValues);
}

std::string valueText(const std::string& cell) {
  std::string text = withLatinLetters(cell);
  const std::size_t comma = text.find(',');
  if (comma != std::string::npos && text.find('.') == std::string::npos) text[comma] = '.';
  return text;
}

std::optional<double> numberIn(const std::string& cell) {
  const auto number = toDecimal(valueText(cell));
  if (!number) return std::nullopt;
  return std::strtod(number->c_str(), nullptr);
}

bool isMissing(double ppm) {
  return ppm == 0 || std::abs(ppm) >= kMissingBound;
}

bool canBeShift(const std::string& residue, const std::string& atom, double ppm) {
  const AtomReading reading = readAtom(polypeptideResidue(residue).letter, atom);
  for (const Bounds& bounds : kBounds)
    if (reading.isInTable() && bounds.atom == reading.atom) return ppm >= bounds.low && ppm <= bounds.high;
  return true;
}

std::string quotedCell(const std::string& cell) {
  constexpr std::size_t kLongest = 40;
  return "\"" + printable(cell, kLongest) + "\"";
}

}  // namespace zorvela
