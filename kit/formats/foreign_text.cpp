#include "formats/foreign_text.h"

#include <algorithm>
#include <vector>

#include "formats/text/delimited_text.h"
#include "names/nomenclature.h"
#include "util/text.h"

namespace zorvela {

namespace {

// Titles and comments may stand above; a restraint list shows what it is well within these lines.
constexpr std::size_t kLinesLookedAt = 5000;
constexpr std::size_t kLongestLine = 1000;

// "assign (resid 19 and name HN) (resid 20 and name HN) 1.8 0.0 1.7"
bool isAssignStatement(std::string_view line) {
  if (!startsIgnoringCase(line, "assi")) return false;
  const std::size_t end = line.find_first_of(" \t(");
  if (end == std::string_view::npos) return false;
  const std::string_view rest = trimmed(line.substr(end));
  return !rest.empty() && rest.front() == '(';
}

bool isResidueName(const std::string& word) {
  return word.size() > 2 && residueType(word).letter != kUnknownResidue;
}

// "19 GLU HN 20 ALA HN 3.5": distances; "20 ALA PHI -80 -40": angles.
bool isPlainRestraint(const std::vector<std::string>& words) {
  const auto isResidueAt = [&](std::size_t i) {
    return words.size() > i + 1 && toInteger(words[i]) && isResidueName(words[i + 1]);
  };
  if (!isResidueAt(0)) return false;
  if (words.size() >= 7 && isResidueAt(3)) return true;
  const std::string angle = words.size() >= 5 ? upper(words[2]) : std::string();
  return (angle == "PHI" || angle == "PSI" || angle == "OMEGA" || angle == "CHI1" || angle == "CHI2") &&
         toDecimal(words[3]) && toDecimal(words[4]);
}

// "ATOM      1  N   MET A   1      27.340  24.430   2.614"
bool isAtomRecord(std::string_view line) {
  return (startsIgnoringCase(line, "ATOM  ") || startsIgnoringCase(line, "HETATM")) && line.size() >= 54 &&
         line[34] == '.' && line[42] == '.' && line[50] == '.';
}

std::string kindOf(std::string_view line) {
  if (line.size() > kLongestLine) return {};
  if (isAtomRecord(line)) return "a list of atom coordinates";
  const std::string_view core = trimmed(line);
  if (isAssignStatement(core) || startsIgnoringCase(core, "&rst")) return "a restraint list";
  if (startsIgnoringCase(core, "# Number of dimensions")) return "a peak list";
  constexpr std::size_t kMostWords = 8;
  const auto words = splitCells(core, Separator::blank, kMostWords);
  return words && isPlainRestraint(*words) ? "a restraint list" : "";
}

}  // namespace

std::optional<ForeignText> foreignText(std::string_view text) {
  std::size_t number = 0;
  for (std::size_t pos = 0; number < kLinesLookedAt;) {
    const auto line = nextLine(text, pos);
    if (!line) break;
    ++number;
    if (std::string kind = kindOf(*line); !kind.empty()) return ForeignText{kind, number};
  }
  return std::nullopt;
}

}  // namespace zorvela
