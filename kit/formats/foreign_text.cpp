#include "formats/foreign_text.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "formats/text/delimited_text.h"
#include "names/nomenclature.h"
#include "util/text.h"

namespace zorvela {

namespace {

constexpr const char* kUnpack = "unpack it first";
constexpr const char* kSaveAsUtf8 = "save it as UTF-8";
constexpr const char* kExport = "export NMR-STAR or a table with column names";

/// A kind of file by its beginning, or that of a line. Without a remedy, the right file must be given.
struct Foreign {
  std::string_view start;
  std::string_view what;
  const char* remedy = nullptr;
};

constexpr std::string_view kCoordinates = "a PDB coordinate file";
constexpr Foreign kFileStarts[] = {
    {"PK\x03\x04", "a zip archive or spreadsheet (xlsx, ods)", "unpack it, or save the sheet as CSV"},
    {"\xD0\xCF\x11\xE0", "a spreadsheet (xls)", "save the sheet as CSV"},
    {"%PDF", "a PDF file"},
    {"\xFF\xFE", "text in UTF-16", kSaveAsUtf8},
    {"\xFE\xFF", "text in UTF-16", kSaveAsUtf8},
    {"BZh", "a file packed with bzip2", kUnpack},
    {"\xFD\x37zXZ", "a file packed with xz", kUnpack},
    {"\x1F\x9D", "a file packed with compress", kUnpack},
    {"MMTF", "an MMTF file"},
    {"{", "a JSON file"},
    {"<", "an HTML or XML file (an error page of a web server?)"},
    {">", "a FASTA sequence"},
    {"@<TRIPOS>", "a MOL2 file"},
    {"HEADER ", kCoordinates},
    {"ATOM  ", kCoordinates},
};

// Files that programs keep beside their shift lists, by the first words of a line.
constexpr Foreign kRestraints = {"&rst", "a restraint list"};
constexpr Foreign kPeaks = {"Assignment w1", "a peak list"};
constexpr Foreign kLineStarts[] = {
    kRestraints,
    kPeaks,
    {"label dataset", kPeaks.what},
    {"VARS INDEX", kPeaks.what},
    {"TYPEDEF SEQUENCE", "an OLIVIA table", kExport},
    {"TYPEDEF ASS_TBL_H2O", "an OLIVIA table", kExport},
    {"Spin system", "a PRONTO table", kExport},
};

/// UTF-16 without a byte order mark: every other byte of ASCII is zero.
bool isWide(std::string_view bytes) {
  if (bytes.size() < 4) return false;
  const auto isZero = [&](std::size_t i) { return bytes[i] == '\0'; };
  return isZero(0) != isZero(1) && isZero(0) == isZero(2) && isZero(1) == isZero(3);
}

// A restraint list shows its kind well within these lines, below any titles and comments.
constexpr std::size_t kLinesLookedAt = 5000;
constexpr std::size_t kLongestLine = 1000;

// "assign (resid 19 and name HN) (resid 20 and name HN) 1.8 0.0 1.7"
bool isAssignStatement(std::string_view line) {
  const std::string_view rest = trimmed(line.substr(std::min(line.find_first_of(" \t("), line.size())));
  return startsIgnoringCase(line, "assi") && startsIgnoringCase(rest, "(");
}

// "19 GLU HN 20 ALA HN 3.5": distances; "20 ALA PHI -80 -40": angles.
bool isPlainRestraint(const std::vector<std::string>& words) {
  const auto isResidueAt = [&](std::size_t i) {
    return words.size() > i + 1 && toInteger(words[i]) && words[i + 1].size() > 2 &&
           residueType(words[i + 1]).letter != kUnknownResidue;
  };
  if (!isResidueAt(0)) return false;
  if (words.size() >= 7 && isResidueAt(3)) return true;
  return words.size() >= 5 && contains(" PHI PSI OMEGA CHI1 CHI2 ", " " + upper(words[2]) + " ") &&
         toDecimal(words[3]) && toDecimal(words[4]);
}

// "ATOM      1  N   MET A   1      27.340  24.430   2.614"
bool isAtomRecord(std::string_view line) {
  return (startsIgnoringCase(line, "ATOM  ") || startsIgnoringCase(line, "HETATM")) && line.size() >= 54 &&
         line[34] == '.' && line[42] == '.' && line[50] == '.';
}

/// "PR_2  8.900 123.220": a spin system of MARS; "Res_12 PR_7 (H)": its assignment.
bool isOfMars(const std::vector<std::string>& words) {
  const auto isNumbered = [&](std::size_t i, std::string_view start) {
    return words.size() > i && startsIgnoringCase(words[i], start) &&
           toInteger(std::string_view(words[i]).substr(start.size()));
  };
  return words.size() > 1 && (isNumbered(0, "PR_") || (isNumbered(0, "Res_") && isNumbered(1, "PR_")));
}

/// "#Seq MQIFVK...", above the rows of a list of targeted acquisition; a table may call a column "#Seq".
bool isOfTargetedAcquisition(const std::vector<std::string>& words) {
  constexpr std::size_t kFewestLetters = 10;
  return words.size() == 2 && words[0] == "#Seq" && words[1].size() >= kFewestLetters &&
         words[1].find_first_not_of(kAminoAcids) == std::string::npos;
}

std::optional<Foreign> kindOfLine(std::string_view line) {
  if (line.size() > kLongestLine) return std::nullopt;
  if (isAtomRecord(line)) return Foreign{{}, "a list of atom coordinates"};
  const std::string_view core = trimmed(line);
  if (isAssignStatement(core)) return kRestraints;
  const bool hasPosition = contains(core, "Pos F1") || contains(core, "Position F1");
  if (hasPosition && contains(core, "Assign F1")) return kPeaks;
  constexpr std::size_t kMostWords = 8;
  const auto words = wordsOf(core, kMostWords);
  std::string plain;
  for (const std::string& word : words) plain += word + " ";
  if (startsIgnoringCase(plain, "# Number of dimensions")) return kPeaks;
  for (const Foreign& kind : kLineStarts)
    if (startsIgnoringCase(plain, std::string(kind.start) + " ")) return kind;
  if (isOfMars(words)) return Foreign{{}, "a MARS file (spin systems without residues)"};
  if (isOfTargetedAcquisition(words)) return Foreign{{}, "a list of targeted acquisition", kExport};
  if (isPlainRestraint(words)) return kRestraints;
  return std::nullopt;
}

std::optional<Foreign> kindOfBytes(std::string_view bytes, Wanted wanted) {
  const auto startsWith = [bytes](std::string_view start) { return bytes.substr(0, start.size()) == start; };
  constexpr std::size_t kProlog = 1000;
  if (startsWith("<") && contains(bytes.substr(0, kProlog), "<chemical_shift_list"))
    return Foreign{{}, "an XML shift list of ARIA", kExport};
  for (const Foreign& kind : kFileStarts)
    if (startsWith(kind.start) && (wanted != Wanted::structure || kind.what != kCoordinates)) return kind;
  if (isWide(bytes)) return Foreign{{}, "text in UTF-16", kSaveAsUtf8};
  return std::nullopt;
}

}  // namespace

FileError foreignError(const std::string& file, std::size_t line, std::string_view what, const char* remedy,
                       Wanted wanted) {
  const char* kind = wanted == Wanted::shifts ? "shift" : "structure";
  return {file, line, "is " + std::string(what) + ", not a " + kind + " file", remedy};
}

void refuseForeign(std::string_view bytes, const std::string& file, Wanted wanted, const char* remedy) {
  if (const auto kind = kindOfBytes(bytes, wanted))
    throw foreignError(file, 0, kind->what, kind->remedy != nullptr ? kind->remedy : remedy, wanted);
  if (contains(bytes, std::string_view("\0", 1))) throw FileError(file, 0, "is not a text file", remedy);
}

void refuseForeignText(std::string_view text, const std::string& file) {
  std::size_t pos = 0;
  for (std::size_t number = 1; number <= kLinesLookedAt; ++number) {
    const auto line = nextLine(text, pos);
    if (!line) return;
    if (const auto kind = kindOfLine(*line))
      throw foreignError(file, number, kind->what, kind->remedy != nullptr ? kind->remedy : kGiveShifts);
  }
}

}  // namespace zorvela
