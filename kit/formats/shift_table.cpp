// Reads the program's own shift table, through the program's own reader.
#include <algorithm>
#include <array>
#include <limits>
#include <map>
#include <set>
#include <sstream>

#include "GDB.h"
#include "formats/format.h"
#include "formats/input_bytes.h"
#include "protein/disulfides.h"
#include "protein/nomenclature.h"
#include "protein/numbering.h"
#include "protein/shifts.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr const char* kTableRemedy =
    "write VARS RESID RESNAME ATOMNAME SHIFT and FORMAT %4d %1s %4s  %8.3f above the rows";
constexpr std::size_t kMostNotes = 50;
constexpr std::array<const char*, 4> kColumns = {"RESID", "RESNAME", "ATOMNAME", "SHIFT"};

std::string_view firstWord(std::string_view line) {
  std::size_t start = 0;
  while (start < line.size() && GDB::isSpace(line[start])) ++start;
  std::size_t end = start;
  while (end < line.size() && !GDB::isSpace(line[end])) ++end;
  return line.substr(start, end - start);
}

std::size_t countWords(std::string_view line, std::size_t most) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < line.size() && count <= most; ++i)
    if (!GDB::isSpace(line[i]) && (i == 0 || GDB::isSpace(line[i - 1]))) ++count;
  return count;
}

/// Checks a table line by line for what the program's reader passes over or stops at, and prepares the
/// text for it: a bare REMARK or DATA line gets the blank that the reader needs.
class TableChecker {
 public:
  TableChecker(std::string_view wholeText, const std::string& name) : text(wholeText), fileName(name) {}

  std::string prepared() {
    std::string result;
    result.reserve(text.size() + 1);
    for (std::size_t pos = 0; const auto line = nextLine(text, pos);) {
      ++lineNumber;
      checkLine(*line);
      result.append(*line);
      if (*line == "REMARK" || *line == "DATA") result += ' ';
      result += '\n';
    }
    return result;
  }

  std::vector<std::string> notes() const {
    std::vector<std::string> all = skipped;
    if (skippedCount > kMostNotes)
      all.push_back("and " + std::to_string(skippedCount - kMostNotes) +
                    " more lines that are no table lines left out");
    return all;
  }

 private:
  void checkLine(std::string_view line) {
    const std::string_view word = firstWord(line);
    if (word.empty()) return;
    if (word == "VARS") {
      columnCount = countWords(line, line.size()) - 1;
    } else if (word == "FORMAT") {
      checkFormat(line);
      formatSeen = true;
    } else if (word != "REMARK" && word != "DATA") {
      checkRow(line);
    }
  }

  void checkFormat(std::string_view line) const {
    const std::string items(line.substr(line.find("FORMAT") + 6));
    // The reader looks at the items only if there is one for each column.
    if (static_cast<std::size_t>(std::count(items.begin(), items.end(), '%')) != columnCount) return;
    for (std::size_t at = items.find('%'); at != std::string::npos;) {
      const std::size_t next = items.find('%', at + 1);
      const std::string item = items.substr(at, next == std::string::npos ? next : next - at);
      if (!GDB::checkFormat(item))
        throw Error(fileName, lineNumber, "bad FORMAT item \"" + printable(trimmed(item), 40) + "\"",
                    kTableRemedy);
      at = next;
    }
  }

  void checkRow(std::string_view line) {
    if (++rowCount > kMostShiftRows)
      throw Error(fileName, lineNumber, "is beyond the first " + std::to_string(kMostShiftRows) + " rows",
                  "split it into one table per protein");
    if (formatSeen && countWords(line, columnCount) == columnCount) return;
    if (skippedCount++ < kMostNotes)
      skipped.push_back("line " + std::to_string(lineNumber) + " is no row of the table, left out: \"" +
                        printable(trimmed(line), 40) + "\"");
  }

  std::string_view text;
  std::string fileName;
  std::size_t lineNumber = 0;
  std::size_t columnCount = 0;
  std::size_t rowCount = 0;
  bool formatSeen = false;
  std::vector<std::string> skipped;
  std::size_t skippedCount = 0;
};

class TableReader {
 public:
  TableReader(std::string_view text, const std::string& filePath)
      : path(filePath), fileName(inputName(filePath)) {
    TableChecker checker(text, fileName);
    std::istringstream prepared(checker.prepared());
    table.readTable(prepared);
    protein.file = path;
    protein.notes = checker.notes();
  }

  Protein read() {
    checkColumns();
    readSequence();
    for (const auto& [number, row] : table.entries) readRow(row);
    if (protein.shifts.empty())
      throw Error(fileName, 0, "holds no backbone shifts of a protein",
                  "this table holds: " + counted(table.entries.size(), "row", "rows") + ", " +
                      counted(protein.sequence.size(), "residue", "residues"));
    std::stable_sort(protein.shifts.begin(), protein.shifts.end(), isBefore);
    readRemarks();
    addNotes();
    return std::move(protein);
  }

 private:
  void checkColumns() const {
    for (const char* column : kColumns) {
      bool isThere = false;
      for (const auto& [i, name] : table.columnNames) isThere = isThere || name == column;
      if (!isThere) throw Error(fileName, 0, "the table has no column " + std::string(column), kTableRemedy);
    }
  }

  // --- Sequence -------------------------------------------------------------------------------

  void readSequence() {
    if (table.residNames.empty()) {
      deriveSequence();
    } else {
      first = table.firstSeqResid;
      if (table.residNames.size() > kLongestSequence) throwTooLong();
      if (first > std::numeric_limits<int>::max() - static_cast<int>(table.residNames.size()))
        throw Error(fileName, 0, "FIRST_RESID " + std::to_string(first) + " is too large",
                    "give the number of the first residue");
      for (const auto& [resid, name] : table.residNames) protein.sequence += name;
    }
  }

  [[noreturn]] void throwTooLong() const {
    throw Error(fileName, 0, "has a sequence of more than " + std::to_string(kLongestSequence) + " residues",
                "no protein is that long: check the file");
  }

  /// A table without a sequence: its rows tell the residues, "?" stands for those between.
  void deriveSequence() {
    std::map<int, char> letters;
    for (const auto& [number, row] : table.entries) {
      const std::string& name = GDB::cell(row, "RESNAME");
      const auto resid = toInteger(GDB::cell(row, "RESID"));
      if (resid)
        letters.emplace(*resid, name.size() == 1 && isSequenceLetter(name[0]) ? name[0] : kUnknownResidue);
    }
    if (letters.empty()) throw Error(fileName, 0, "the table has neither a sequence nor rows", kTableRemedy);
    first = letters.begin()->first;
    const long length = static_cast<long>(letters.rbegin()->first) - first + 1;
    if (length > static_cast<long>(kLongestSequence)) throwTooLong();
    protein.sequence.assign(static_cast<std::size_t>(length), kUnknownResidue);
    for (const auto& [resid, letter] : letters)
      protein.sequence[static_cast<std::size_t>(static_cast<long>(resid) - first)] = letter;
    protein.notes.push_back(
        "the table has no DATA SEQUENCE line: the sequence is put together from its rows");
  }

  // The letters that the program's reader takes into a sequence.
  static bool isSequenceLetter(char c) { return (c >= 'A' && c <= 'Y') || c == 'c' || c == 'p' || c == '?'; }

  // --- Rows -----------------------------------------------------------------------------------

  void readRow(const GDB::Row& row) {
    const std::string& residText = GDB::cell(row, "RESID");
    const auto resid = toInteger(residText);
    const long position = resid ? static_cast<long>(*resid) - first + 1 : 0;
    if (position < 1 || position > static_cast<long>(protein.sequence.size())) {
      outside.push_back(printable(residText, 20));
      return;
    }
    const char letter = protein.sequence[static_cast<std::size_t>(position) - 1];
    if (GDB::cell(row, "RESNAME") != std::string(1, letter))
      misnamed.insert(residText + " (" + printable(GDB::cell(row, "RESNAME"), 10) + ", sequence " + letter +
                      ")");
    readShift(row, static_cast<int>(position), letter);
  }

  void readShift(const GDB::Row& row, int position, char letter) {
    const std::string atom = printable(GDB::cell(row, "ATOMNAME"), 20);
    const std::string label = printable(GDB::cell(row, "RESID"), 20) + " " + atom;
    const auto shift = toDecimal(GDB::cell(row, "SHIFT"));
    const std::vector<std::string> names = tableNames(letter, atom);
    if (names.empty())
      ++otherAtoms;
    else if (!shift)
      unusable.push_back(label + " (" + printable(GDB::cell(row, "SHIFT"), 20) + ")");
    else
      for (const std::string& name : names) addShift({position, name, *shift}, label);
    if (shift && isMissingMark(*shift)) marks.push_back(label);
  }

  /// Names in the table's own words stay, whatever the residue; others are read as in any file.
  static std::vector<std::string> tableNames(char letter, const std::string& atom) {
    const bool isOfGlycine = letter == 'G' && (atom == "HA" || atom == "HA1");
    const bool isSideChain = atom == "CG" && letter != 'P' && letter != 'p';
    const bool isOwn = atomRank(atom) < atomRank("") && !isOfGlycine && !isSideChain;
    if (isOwn) return {atom};
    std::vector<std::string> names;
    for (const char* name : readAtom(letter, atom).names)
      if (name != nullptr) names.emplace_back(name);
    return names;
  }

  void addShift(const Shift& shift, const std::string& label) {
    if (shift.atom != "HA1" && taken.emplace(shift.resid, shift.atom).second)
      protein.shifts.push_back(shift);
    else
      repeated.push_back(label);
  }

  // --- Remarks and numbers --------------------------------------------------------------------

  void readRemarks() {
    protein.remarks = table.remarks;
    const auto count = static_cast<int>(protein.sequence.size());
    protein.numbers = numbersFromRemarks(protein.remarks, count, first);
    if (first == 1) return;
    bool isTold = false;
    for (std::string& remark : protein.remarks) {
      if (!hasNumbering(remark)) continue;
      remark = shiftedNumbering(remark, static_cast<long>(first) - 1);
      isTold = true;
    }
    if (isTold) return;
    for (const std::string& remark : numberingRemarks(protein.numbers)) protein.remarks.push_back(remark);
  }

  void addNotes() {
    std::vector<std::string>& notes = protein.notes;
    if (first != 1) notes.push_back("residue " + std::to_string(first) + " of the table is residue 1 now");
    if (!outside.empty())
      notes.push_back(counted(outside.size(), "row", "rows") +
                      " left out, the sequence has no such residue: " + enumerated(outside));
    if (!misnamed.empty())
      notes.push_back("residue names differ from the sequence, which is used: " +
                      enumerated({misnamed.begin(), misnamed.end()}));
    if (!unusable.empty()) notes.push_back("values that are no shift left out: " + enumerated(unusable));
    // A missing mark counts as a shift where the program counts them; so it stays, and both agree.
    if (!marks.empty())
      notes.push_back("values of 999 and above, for missing shifts, kept: " + enumerated(marks));
    if (!repeated.empty()) notes.push_back("given before, the first is used: " + enumerated(repeated));
    if (otherAtoms > 0)
      notes.push_back(counted(otherAtoms, "shift", "shifts") +
                      " of other atoms (side chain and the like) not needed");
    noteOtherParts(notes);
    noteOxidised(notes);
  }

  void noteOtherParts(std::vector<std::string>& notes) const {
    if (table.columnNames.size() > kColumns.size())
      notes.push_back("further columns of the table are not kept");
    for (const std::string& line : table.dataLines)
      if (line.rfind("SEQUENCE", 0) != 0 && line.rfind("FIRST_RESID", 0) != 0) {
        notes.push_back("further DATA lines of the table are not kept");
        return;
      }
  }

  void noteOxidised(std::vector<std::string>& notes) const {
    std::vector<std::string> oxidised;
    for (const Shift& shift : protein.shifts)
      if (shift.atom == "CB" && protein.sequence[static_cast<std::size_t>(shift.resid) - 1] == 'C' &&
          std::strtod(shift.shift.c_str(), nullptr) > kOxidisedFrom)
        oxidised.push_back(protein.numbers[static_cast<std::size_t>(shift.resid) - 1]);
    if (!oxidised.empty())
      notes.push_back(
          "cysteines with CB above 33 ppm stand as reduced (C) in the table, write c for those in a "
          "disulfide bond: " +
          enumerated(oxidised));
  }

  const std::string& path;
  std::string fileName;
  GDB table;
  Protein protein;
  int first = 1;  ///< the table's number of the first residue
  std::set<std::pair<int, std::string>> taken;
  std::set<std::string> misnamed;
  std::vector<std::string> outside;
  std::vector<std::string> unusable;
  std::vector<std::string> marks;
  std::vector<std::string> repeated;
  std::size_t otherAtoms = 0;
};

}  // namespace

bool isTable(std::string_view text) {
  bool varsSeen = false;
  for (std::size_t pos = 0; const auto line = nextLine(text, pos);) {
    const std::string_view word = firstWord(*line);
    varsSeen = varsSeen || word == "VARS";
    if (varsSeen && word == "FORMAT") return true;
  }
  return false;
}

Protein readTable(std::string_view text, const std::string& file) {
  return TableReader(text, file).read();
}

}  // namespace zorvela
