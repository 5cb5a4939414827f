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
  std::string_view atom;
  double low;
  double high;
};
constexpr Bounds kBounds[] = {
    {"N", 80, 155},  {"HN", 2, 16},   {"HA", -2, 10}, {"HA1", -2, 10}, {"HA2", -2, 10},
    {"HA3", -2, 10}, {"C", 155, 195}, {"CA", 30, 85}, {"CB", 5, 90},   {"CG", 10, 80},
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

bool isNumber(const std::string& cell) {
  return toDecimal(valueText(cell)).has_value();
}

bool canBeShiftOf(const std::string& atom, const std::string& value) {
  const auto number = toDecimal(valueText(value));
  if (!number) return false;
  const double ppm = std::strtod(number->c_str(), nullptr);
  for (const Bounds& bounds : kBounds)
    if (bounds.atom == atom) return ppm >= bounds.low && ppm <= bounds.high;
  return true;
}

bool canBeShiftIn(const std::string& residue, const std::string& atom, const std::string& value) {
  if (!isNumber(value)) return false;
  const AtomReading reading = readAtom(polypeptideResidue(residue).letter, atom);
  return !reading.isInTable() || canBeShiftOf(std::string(nameOf(reading.atom)), value);
}

bool isMissingNumber(const std::string& cell) {
  const auto number = toDecimal(valueText(cell));
  const double ppm = number ? std::strtod(number->c_str(), nullptr) : 1;
  return ppm == 0 || std::abs(ppm) >= kMissingBound;
}

std::string quotedCell(const std::string& cell) {
  constexpr std::size_t kLongest = 40;
  return "\"" + printable(cell, kLongest) + "\"";
}

}  // namespace zorvela
