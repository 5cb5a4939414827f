#include "formats/text/residue_label.h"

#include <string_view>

#include "names/nomenclature.h"
#include "util/text.h"

namespace zorvela {

namespace {

// What may stand between the name and the number of a residue, beside a dash.
constexpr std::string_view kBetween = " _.:(";

bool isKnownName(std::string_view name) {
  return residueType(name).letter != kUnknownResidue;
}

/// A one-letter name, or one of several letters that is known.
bool isResidueName(std::string_view name) {
  return name.size() == 1 ? isLetter(name.front()) : isKnownName(name);
}

std::string_view leading(std::string_view text, bool (*isPart)(char)) {
  std::size_t end = 0;
  while (end < text.size() && isPart(text[end])) ++end;
  return text.substr(0, end);
}

std::string_view without(std::string_view text, std::string_view between) {
  const std::size_t start = text.find_first_not_of(between);
  return start == std::string_view::npos ? std::string_view() : text.substr(start);
}

/// A whole number in one form: "007" is 7.
std::string plainNumber(std::string_view digits) {
  const auto number = toInteger(digits);
  return number ? std::to_string(*number) : std::string();
}

// "12", "12.0" as a spreadsheet writes it, "12A", "82 PRO", "82-Pro".
std::optional<ResidueLabel> numberFirst(std::string_view text) {
  const std::size_t sign = text.front() == '-' || text.front() == '+' ? 1 : 0;
  const std::size_t digits = leading(text.substr(sign), isDigit).size();
  ResidueLabel label;
  label.number = plainNumber(text.substr(0, sign + digits));
  if (digits == 0 || label.number.empty()) return std::nullopt;
  const std::string_view rest = text.substr(sign + digits);
  if (rest.empty()) return label;
  const bool isWhole = rest.front() == '.' && rest.find_first_not_of('0', 1) == std::string_view::npos;
  if (isWhole) return label;
  if (rest.size() == 1 && isLetter(rest.front())) {
    label.code = rest;
    return label;
  }
  label.name = without(rest, " _.:-");
  return isResidueName(label.name) ? std::optional<ResidueLabel>(label) : std::nullopt;
}

/// Takes what stands after the number: an insertion code, or the atom of an assignment.
bool takeRest(std::string_view rest, bool holdsAtom, ResidueLabel& label) {
  if (!rest.empty() && rest.front() == ')') rest.remove_prefix(1);
  if (holdsAtom) {
    label.atom = without(rest, " _.:-");
    return label.atom.find_first_of(" _.:-(),;") == std::string::npos;
  }
  const bool isCode = rest.size() == 1 && isLetter(rest.front());
  if (isCode) label.code = rest;
  return isCode || rest.empty();
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
  if (!takeRest(rest.substr(digits.size()), holdsAtom, label)) return std::nullopt;
  return label;
}

// "A:SER81". With "A:S81" it is open which letter names the residue.
std::optional<ResidueLabel> chainFirst(std::string_view text, bool holdsAtom) {
  const bool hasChain = text.size() > 2 && (isLetter(text[0]) || isDigit(text[0])) && text[1] == ':';
  if (!hasChain || !isLetter(text[2])) return std::nullopt;
  auto label = nameFirst(text.substr(2), holdsAtom);
  if (!label || label->name.size() < 2 || label->number.empty()) return std::nullopt;
  label->chain = text[0];
  return label;
}

}  // namespace

std::optional<ResidueLabel> readLabel(const std::string& cell, bool holdsAtom) {
  const std::string latin = withLatinLetters(cell);
  const std::string_view text = trimmed(latin);
  if (text.empty()) return std::nullopt;
  if (auto label = chainFirst(text, holdsAtom)) return label;
  return isLetter(text.front()) ? nameFirst(text, holdsAtom) : numberFirst(text);
}

}  // namespace zorvela
