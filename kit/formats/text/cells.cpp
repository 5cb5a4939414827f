#include "formats/text/cells.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string_view>

#include "names/nomenclature.h"
#include "util/text.h"

namespace zorvela {

namespace {

// --- Labels --------------------------------------------------------------------------------------

// Characters between the name and the number of a residue, besides a dash; and after the number.
constexpr std::string_view kBetween = " _.:(";
constexpr std::string_view kAfterNumber = " _.:-";

bool isKnownName(std::string_view name) {
  return residueType(name).letter != kUnknownResidue;
}

/// Tells whether a name has one letter, or is a known one of several letters.
bool isResidueName(std::string_view name) {
  return name.size() == 1 ? isLetter(name.front()) : isKnownName(name);
}

std::string_view without(std::string_view text, std::string_view between) {
  const std::size_t start = text.find_first_not_of(between);
  return start == std::string_view::npos ? std::string_view() : text.substr(start);
}

bool isCodeOrNone(std::string_view afterNumber) {
  return afterNumber.empty() || (afterNumber.size() == 1 && isLetter(afterNumber.front()));
}

/// Returns a whole number in one form: "007" is 7.
std::string plainNumber(std::string_view digits) {
  const auto number = toInteger(digits);
  return number ? std::to_string(*number) : std::string();
}

// "12", "12.0" as a spreadsheet writes it, "12A", "82 PRO", "82-Pro"; "12GlyCa" with its atom.
std::optional<ResidueLabel> numberFirst(std::string_view text, bool holdsAtom) {
  const std::size_t sign = text.front() == '-' || text.front() == '+' ? 1 : 0;
  const std::size_t digits = leading(text.substr(sign), isDigit).size();
  ResidueLabel label;
  label.number = plainNumber(text.substr(0, sign + digits));
  if (digits == 0 || label.number.empty()) return std::nullopt;
  const std::string_view rest = text.substr(sign + digits);
  if (isCodeOrNone(rest)) {
    label.code = rest;
    return label;
  }
  if (rest.front() == '.' && rest.find_first_not_of('0', 1) == rest.npos) return label;
  label.name = without(rest, kAfterNumber);
  constexpr std::size_t kNameSize = 3;
  if (holdsAtom && label.name.size() > kNameSize && isKnownName(label.name.substr(0, kNameSize))) {
    label.atom = label.name.substr(kNameSize);
    label.name.resize(kNameSize);
  }
  return isResidueName(label.name) ? std::optional<ResidueLabel>(label) : std::nullopt;
}

// "Gly", "G12", "Gly-12", "Gly(12)", "G-2".
std::optional<ResidueLabel> nameFirst(std::string_view text, bool holdsAtom) {
  ResidueLabel label;
  label.name = text;
  if (text.size() == 1 || isKnownName(text)) return label;
  label.name = leading(text, isLetter);
  if (!isResidueName(label.name)) return std::nullopt;
  const std::string_view afterName = text.substr(label.name.size());
  std::string_view rest = without(afterName, kBetween);
  const bool isTight = rest.size() == afterName.size();
  const bool hasSign = !rest.empty() && rest.front() == '-';
  label.hasDash = hasSign && (isTight || rest.substr(0, 2) == "- ");
  if (hasSign) rest = without(rest, "- ");
  const std::string_view digits = leading(rest, isDigit);
  label.number = plainNumber(digits);
  if (label.number.empty()) return std::nullopt;
  if (hasSign && !label.hasDash && label.number != "0") label.number.insert(0, 1, '-');
  rest.remove_prefix(digits.size());
  if (!rest.empty() && rest.front() == ')') rest.remove_prefix(1);
  if (!holdsAtom) label.code = rest;
  if (holdsAtom) label.atom = without(rest, kAfterNumber);
  const bool fits = holdsAtom ? label.atom.find_first_of(" _.:-(),;") == label.atom.npos : isCodeOrNone(rest);
  return fits ? std::optional<ResidueLabel>(label) : std::nullopt;
}

// "A:SER81", but not "A:S81", where either letter may be the residue. "1G7", as a digit is not a residue.
std::optional<ResidueLabel> chainFirst(std::string_view text, bool holdsAtom) {
  if (text.size() < 3) return std::nullopt;
  const bool isDigitChain = isDigit(text[0]) && isLetter(text[1]) && isDigit(text[2]);
  const bool hasChain = (isLetter(text[0]) || isDigit(text[0])) && text[1] == ':' && isLetter(text[2]);
  if (!isDigitChain && !hasChain) return std::nullopt;
  auto label = nameFirst(text.substr(isDigitChain ? 1 : 2), holdsAtom);
  if (!label || label->number.empty() || (hasChain && label->name.size() < 2)) return std::nullopt;
  label->chain = text[0];
  return label;
}

std::optional<ResidueLabel> ownLabel(std::string_view text, bool holdsAtom) {
  if (auto label = chainFirst(text, holdsAtom)) return label;
  return isLetter(text.front()) ? nameFirst(text, holdsAtom) : numberFirst(text, holdsAtom);
}

/// Reads "G12-1". A second number, as in a range, is not a step to a neighbour.
std::optional<ResidueLabel> neighbourLabel(std::string_view text) {
  const auto code = readNeighbourCode(text);
  if (!code || code->offset < -1 || code->offset > 1) return std::nullopt;
  auto label = ownLabel(code->number, false);
  if (!label || label->number.empty()) return std::nullopt;
  label->offset = code->offset;
  return label;
}

/// Reads "NA:A.81.SER.CA", the identifier of an atom in one assignment program: chain, number, name, atom.
std::optional<ResidueLabel> atomIdentifier(std::string_view text) {
  constexpr std::string_view kMark = "NA:";
  if (text.substr(0, kMark.size()) != kMark) return std::nullopt;
  text.remove_prefix(kMark.size());
  const auto next = [&] {
    const std::string_view part = text.substr(0, text.find('.'));
    text.remove_prefix(std::min(part.size() + 1, text.size()));
    return part;
  };
  const std::string_view chain = next();
  const std::string_view number = next();
  const std::string_view name = next();
  auto label = neighbourLabel(number);
  if (!label && !number.empty() && !isLetter(number.front())) label = numberFirst(number, false);
  if (!label || text.empty()) return std::nullopt;
  label->chain = chain;
  label->name = name;
  label->atom = text;
  return label;
}

// --- Values --------------------------------------------------------------------------------------

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

std::optional<ResidueLabel> readLabel(const std::string& cell, bool holdsAtom) {
  const std::string latin = withLatinLetters(cell);
  const std::string_view text = trimmed(latin);
  if (text.empty()) return std::nullopt;
  if (holdsAtom) {
    if (auto label = atomIdentifier(text)) return label;
  } else if (auto label = neighbourLabel(text)) {
    return label;
  }
  return ownLabel(text, holdsAtom);
}

bool isUnassignedLabel(const std::string& cell) {
  std::string_view text = trimmed(cell);
  if (startsIgnoringCase(text, "NA:")) text.remove_prefix(std::min(text.find('.'), text.size() - 1) + 1);
  if (text.empty()) return false;
  const bool isNumberedX = text.size() > 1 && upper(text.substr(0, 1)) == "X" && isDigit(text[1]);
  return isNumberedX || contains("?@{", text.substr(0, 1));
}

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

bool canBeShiftOf(std::string_view atom, double ppm) {
  for (const Bounds& bounds : kBounds)
    if (bounds.atom == atom) return ppm >= bounds.low && ppm <= bounds.high;
  return true;
}

bool canBeShift(const std::string& residue, const std::string& atom, double ppm) {
  const AtomReading reading = readAtom(polypeptideResidue(residue).letter, atom);
  return !reading.isInTable() || canBeShiftOf(nameOf(reading.atom), ppm);
}

std::string quotedCell(const std::string& cell) {
  constexpr std::size_t kLongest = 40;
  return "\"" + printable(cell, kLongest) + "\"";
}

}  // namespace zorvela
