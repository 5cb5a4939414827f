// Reads the shift lists of assignment programs that have no column names: words in a fixed order, by line.
#include <algorithm>
#include <string_view>
#include <utility>

#include "formats/format.h"
#include "formats/found_rows.h"
#include "formats/text/cells.h"
#include "formats/text/csv_columns.h"
#include "formats/text/delimited_text.h"
#include "names/nomenclature.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

using Words = std::vector<std::string>;

/// The position in a list: the residue of the next shifts, and the atoms of its titles.
struct Place {
  FileShift residue;
  std::string chain;
  Words titles;
};

/// Adds the shifts of a line to the rows; false for a line that the list cannot have.
using TakeLine = bool (*)(const Words& words, Place& place, FoundRows& rows);

struct ListKind {
  const char* name;
  TakeLine take;
};

/// Tells whether words are of these kinds, a character for each:
/// "i": a whole number.
/// "d": a number.
/// "p": a number with a point, as programs write a shift, not the number of an atom or a peak.
/// "a": a text that begins with a letter.
/// "l": one letter.
/// "c": one character.
/// "n": a nucleus, such as 13C.
/// "-": anything.
bool areOf(std::string_view kinds, const Words& words) {
  const auto isOf = [](char kind, const std::string& word) {
    const bool isNamed = !word.empty() && isLetter(word.front());
    if (kind == 'i') return toInteger(word).has_value();
    if (kind == 'd') return toDecimal(word).has_value();
    if (kind == 'p') return toDecimal(word) && contains(word, ".");
    if (kind == 'l') return word.size() == 1 && isNamed;
    if (kind == 'c') return word.size() == 1;
    if (kind == 'n')
      return word.size() > 1 && word.size() <= 3 && isDigit(word.front()) && isLetter(word.back());
    return kind == '-' || isNamed;
  };
  return std::equal(kinds.begin(), kinds.end(), words.begin(), words.end(), isOf);
}

/// "12" and "GLY".
bool setResidue(const std::string& number, const std::string& name, Place& place) {
  if (!toInteger(number) || name.size() < 3 || residueType(name).letter == kUnknownResidue) return false;
  place.residue.number = number;
  place.residue.residueName = name;
  return true;
}

/// "171", or "A12" of chain A.
bool setResidue(const std::string& word, Place& place) {
  place.chain = leading(word, isLetter);
  place.residue.number = word.substr(place.chain.size());
  return toInteger(place.residue.number).has_value();
}

void add(const std::string& atom, const std::string& value, const Place& place, FoundRows& rows) {
  FileShift shift = place.residue;
  shift.atom = atom;
  shift.value = value;
  if (const auto offset = takeOffset(shift.atom)) {
    shift.offset = offset;
    shift.residueName.clear();
  }
  rows.add(place.chain, std::move(shift));
}

// "  17   0.850 0.005 QQG   171"; some programs add the residue name and its letter.
bool takeXeasy(const Words& words, Place& place, FoundRows& rows) {
  const bool fits = (areOf("ippa-", words) || areOf("ippa--", words) || areOf("ippa---", words)) &&
                    setResidue(words[4], place);
  if (!fits) return false;
  place.residue.residueName = words.size() > 5 ? words[5] : "";
  add(words[3], words[1], place, rows);
  return true;
}

// "  1.HB2  2.630 2", "B:1.HB2  2.630 2".
bool takeNmrView(const Words& words, Place& place, FoundRows& rows) {
  if (!areOf("-p", words) && !areOf("-pi", words)) return false;
  const std::size_t colon = words[0].rfind(':');
  const std::size_t start = colon == std::string::npos ? 0 : colon + 1;
  const std::size_t dot = words[0].find('.', start);
  if (dot == std::string::npos) return false;
  place.chain = words[0].substr(0, start == 0 ? 0 : colon);
  place.residue.number = words[0].substr(start, dot - start);
  const std::string atom = words[0].substr(dot + 1);
  if (!areOf("ia", {place.residue.number, atom})) return false;
  add(atom, words[1], place, rows);
  return true;
}

// "     R2     CB  13C   30.808  0.009      3", below "Group Atom Nuc Shift SDev Assignments" or without.
bool takeSparky(const Words& words, Place& place, FoundRows& rows) {
  if (words.size() == 6 && words[0] == "Group" && words[1] == "Atom") return true;
  if (!areOf("--nddi", words)) return false;
  const auto label = readLabel(words[0]);
  // A group is free text; an assigned one has a capital letter or a name, and a number.
  const bool isSmall = label && label->name.size() == 1 && label->name == lower(label->name);
  if (!label || label->number.empty() || isSmall || isUnassignedLabel(words[0])) {
    rows.unassigned.add(words[0]);
    return true;
  }
  place.chain = label->chain;
  place.residue.number = label->number;
  place.residue.offset = label->offset;
  place.residue.residueName = label->offset ? "" : label->name;
  add(words[1], words[3], place, rows);
  return true;
}

// "1 1 GLY C C 172.621 1.000 0": serial, number, name, atom, element, shift, error, ambiguity.
bool takeEightWords(const Words& words, Place& place, FoundRows& rows) {
  if (!areOf("ii-acdd-", words) || !setResidue(words[1], words[2], place)) return false;
  add(words[3], words[5], place, rows);
  return true;
}

// "do ( store1 = 53.13218 ) ( resid 78 and name CA )"
bool takeCns(const Words& words, Place& place, FoundRows& rows) {
  Words plain;
  for (const std::string& word : words)
    if (word != "(" && word != ")" && word != "=") plain.push_back(word);
  const bool fits = areOf("aadaiaa-", plain) && equalIgnoringCase(plain[0], "do") &&
                    startsIgnoringCase(plain[1], "store") && equalIgnoringCase(plain[3], "resid") &&
                    equalIgnoringCase(plain[6], "name");
  if (!fits) return false;
  place.residue.number = plain[4];
  add(plain[7], plain[2], place, rows);
  return true;
}

// "12 GLY", then "HN 8.31" and so on, then ";".
bool takeGarret(const Words& words, Place& place, FoundRows& rows) {
  if (words.size() == 2 && setResidue(words[0], words[1], place)) return true;
  if (place.residue.number.empty() || !areOf("ad", words)) return false;
  add(words[0], words[1], place, rows);
  return true;
}

// "RES_ID 12", "RES_TYPE GLY", other keywords, then "CA 55.9920", "HA2|HA3 4.05".
bool takePipp(const Words& words, Place& place, FoundRows& rows) {
  const std::string& first = words.front();
  if (contains(first, "_") || first == "HETEROGENEITY") {
    if (words.size() > 1 && first == "RES_ID") place.residue.number = words[1];
    if (words.size() > 1 && first == "RES_TYPE") place.residue.residueName = words[1];
    return isLetter(first.front());
  }
  if (place.residue.residueName.empty() || !areOf("ad", words)) return false;
  const auto atoms = splitCells(first, Separator::bar);
  for (const std::string& atom : atoms.value_or(Words())) add(atom, words[1], place, rows);
  return true;
}

// "11 T 4 174.109 106" with C', then pairs such as "8.114 HN 113.206 N"; "Q" at the end.
bool takeAbacus(const Words& words, Place& place, FoundRows& rows) {
  if (words.size() == 1) return words[0] == "Q";
  if (areOf("icidi", words)) {
    place.residue.number = words[0];
    place.residue.residueName = words[1];
    add("C", words[3], place, rows);
    return true;
  }
  if (place.residue.number.empty() || words.size() % 2 != 0) return false;
  for (std::size_t i = 0; i + 1 < words.size(); i += 2) {
    if (!areOf("da", {words[i], words[i + 1]})) return false;
    add(words[i + 1], words[i], place, rows);
  }
  return true;
}

// Letter and number, then C, CA, CB, HA and N; 9999.00 where there is none.
bool takeRosetta(const Words& words, Place& place, FoundRows& rows) {
  constexpr const char* kAtoms[] = {"C", "CA", "CB", "HA", "N"};
  if (!areOf("liddddd", words)) return false;
  place.residue.residueName = words[0];
  place.residue.number = words[1];
  for (std::size_t i = 0; i < std::size(kAtoms); ++i)
    if (const auto ppm = numberIn(words[i + 2]); ppm && (isMissing(*ppm) || canBeShiftOf(kAtoms[i], *ppm)))
      add(kAtoms[i], words[i + 2], place, rows);
    else
      return false;
  return true;
}

// "! H N HA CA", then "12 Gly 8.31 109.2 3.81,3.57 45.1": a cell for each title, "-" for none, two protons in
// one cell; further atoms as "value:Name".
bool takeCcpNmr2(const Words& words, Place& place, FoundRows& rows) {
  if (words[0] == "!") {
    place.titles.assign(words.begin() + 1, words.end());
    return true;
  }
  constexpr std::size_t kBefore = 2;
  if (place.titles.empty() || words.size() < kBefore + place.titles.size()) return false;
  if (!setResidue(words[0], words[1], place)) return false;
  for (std::size_t i = kBefore; i < words.size(); ++i) {
    const std::string& cell = words[i];
    const std::size_t colon = cell.find(':');
    const std::size_t title = i - kBefore;
    if ((title < place.titles.size()) != (colon == std::string::npos)) return false;
    const std::string atom = colon == std::string::npos ? place.titles[title] : cell.substr(colon + 1);
    const std::string value = cell.substr(0, colon);
    if (value == "-") continue;
    const std::size_t comma = value.find(',');
    if (!toDecimal(value.substr(0, comma))) return false;
    const bool areTwo = comma != std::string::npos;
    add(atom + (areTwo ? "2" : ""), value.substr(0, comma), place, rows);
    if (areTwo) add(atom + "3", value.substr(comma + 1), place, rows);
  }
  return true;
}

constexpr ListKind kKinds[] = {{"XEASY", takeXeasy},     {"NMRView", takeNmrView},
                               {"Sparky", takeSparky},   {"list of eight words", takeEightWords},
                               {"CNS", takeCns},         {"GARRET", takeGarret},
                               {"PIPP", takePipp},       {"ABACUS", takeAbacus},
                               {"Rosetta", takeRosetta}, {"CcpNmr 2", takeCcpNmr2}};

/// Returns the words of a line; none for a comment. A "#" after a blank ends a line, one in a name (HB#) does
/// not.
Words wordsIn(std::string_view line, const ListKind& kind) {
  constexpr std::size_t kLongestLine = 2000;
  if (line.size() > kLongestLine) return {std::string(firstBytes(line, kLongestLine))};
  std::size_t end = 0;
  while (end < line.size() && (line[end] != '#' || (end > 0 && !isBlank(line[end - 1])))) ++end;
  const std::string_view core = trimmed(line.substr(0, end));
  const char* marks = kind.take == takeCcpNmr2 ? ";" : ";!";
  return core.empty() || contains(marks, core.substr(0, 1)) ? Words() : wordsOf(core);
}

/// Reads up to so many lines of a list, and counts those that cannot belong to it.
Tally readLines(std::string_view text, const ListKind& kind, std::size_t most, FoundRows& rows,
                LimitedNotes& ignored) {
  Tally misfits;
  Place place;
  for (std::size_t pos = 0; misfits.all < most;) {
    const auto line = nextLine(text, pos);
    if (!line) break;
    const std::size_t number = ++place.residue.line;
    const Words words = wordsIn(*line, kind);
    if (words.empty()) continue;
    const std::size_t before = rows.shifts.size();
    const bool fits = kind.take(words, place, rows);
    const std::string fault = fits ? "" : "\"" + printable(trimmed(*line), 60) + "\"";
    misfits.add(number, fault);
    if (fits) continue;
    rows.shifts.resize(before);
    ignored.add("line " + std::to_string(number) + " is not a row of the list, ignored: " + fault);
  }
  return misfits;
}

/// Returns the kind of list to which most of the first lines belong; nullptr if there is none.
const ListKind* kindOf(const Source& source) {
  constexpr std::size_t kSample = 40;
  for (const ListKind& kind : kKinds) {
    FoundRows rows(source.text, source.file);
    LimitedNotes unused("");
    const Tally misfits = readLines(source.text, kind, kSample, rows, unused);
    if (misfits.count * 2 < misfits.all && !(rows.shifts.empty() && rows.unassigned.count == 0)) return &kind;
  }
  return nullptr;
}

/// Removes spin systems with -1 for the number of their residue. A chain that begins before residue 1 has
/// other numbers below 1 too.
void removeMinusOne(FoundRows& rows) {
  std::vector<FileShift>& shifts = rows.shifts;
  const auto isAmong = [&](const char* number) {
    return std::any_of(shifts.begin(), shifts.end(),
                       [&](const FileShift& one) { return one.number == number; });
  };
  if (isAmong("0") || isAmong("-2")) return;
  const auto kept = std::remove_if(shifts.begin(), shifts.end(),
                                   [](const FileShift& shift) { return shift.number == "-1"; });
  for (auto gone = kept; gone != shifts.end(); ++gone) rows.unassigned.add("-1");
  shifts.erase(kept, shifts.end());
}

}  // namespace

bool isWordList(const Source& source) {
  return !source.star && kindOf(source) != nullptr;
}

ShiftFile readWordList(const Source& source) {
  const ListKind& kind = *kindOf(source);
  FoundRows rows(source.text, source.file);
  LimitedNotes ignored("lines ignored");
  const Tally misfits = readLines(source.text, kind, source.text.size(), rows, ignored);
  constexpr std::size_t kMostMisfits = 10;  // of a hundred
  if (misfits.count * 100 > misfits.all * kMostMisfits)
    throw FileError(source.file, misfits.line,
                    std::string("is not a row of the ") + kind.name + " list: " + misfits.first,
                    "give the list alone, with all its columns");
  if (kind.take == takeXeasy) removeMinusOne(rows);
  std::vector<std::string> notes;
  ignored.appendTo(notes);
  rows.unassigned.appendTo(notes);
  ShiftFile file = std::move(rows).file(std::move(notes));
  file.format = kind.name;
  return file;
}

}  // namespace zorvela
