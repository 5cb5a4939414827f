#include "formats/foreign_text.h"

#include <algorithm>
#include <vector>

#include "formats/text/delimited_text.h"
#include "names/nomenclature.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

struct Signature {
  std::string_view start;
  const char* what;
  bool isStructure = false;
};

constexpr Signature kSignatures[] = {
    {"PK\x03\x04", "a zip archive or spreadsheet (xlsx, ods); unpack it, or save the sheet as CSV"},
    {"\xD0\xCF\x11\xE0", "a spreadsheet (xls); save the sheet as CSV"},
    {"%PDF", "a PDF file"},
    {"\xFF\xFE", "text in UTF-16; save it as UTF-8"},
    {"\xFE\xFF", "text in UTF-16; save it as UTF-8"},
    {"BZh", "packed with bzip2; unpack it first"},
    {"\xFD"
     "7zXZ",
     "packed with xz; unpack it first"},
    {"\x1F\x9D", "packed with compress; unpack it first"},
    {"MMTF", "an MMTF file"},
    {"{", "a JSON file"},
    {"<", "an HTML or XML file, perhaps the error page of a web server"},
    {"HEADER ", "a PDB coordinate file", true},
    {"ATOM  ", "a PDB coordinate file", true},
    {">", "a FASTA sequence"},
    {"@<TRIPOS>", "a MOL2 file"},
};

/// UTF-16 without a byte order mark: every other byte of ASCII is zero.
bool isWide(std::string_view bytes) {
  if (bytes.size() < 4) return false;
  const auto isZero = [&](std::size_t i) { return bytes[i] == '\0'; };
  return isZero(0) != isZero(1) && isZero(0) == isZero(2) && isZero(1) == isZero(3);
}

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

/// Files that programs keep beside their shift lists, by the first words of a line.
struct FirstWords {
  std::string_view first;
  std::string_view second;  ///< any where it is empty
  const char* what;
};

constexpr FirstWords kFirstWords[] = {
    {"&rst", "", "a restraint list"},
    {"Assignment", "w1", "a peak list"},
    {"label", "dataset", "a peak list"},
    {"VARS", "INDEX", "a peak list"},
    {"TYPEDEF", "SEQUENCE", "an OLIVIA table; export NMR-STAR or a table with column names"},
    {"TYPEDEF", "ASS_TBL_H2O", "an OLIVIA table; export NMR-STAR or a table with column names"},
    {"Spin", "system", "a PRONTO table; export NMR-STAR or a table with column names"},
};

/// "PR_2  8.900 123.220": a spin system of MARS; "Res_12 PR_7 (H)": what it assigns.
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

/// The column names of a peak list: "Assign F1", "Pos F1", "Position F1".
bool arePeakColumns(std::string_view line) {
  return contains(line, "Assign F1") && (contains(line, "Pos F1") || contains(line, "Position F1"));
}

std::string kindOf(std::string_view line) {
  if (line.size() > kLongestLine) return {};
  if (isAtomRecord(line)) return "a list of atom coordinates";
  const std::string_view core = trimmed(line);
  if (isAssignStatement(core)) return "a restraint list";
  if (startsIgnoringCase(core, "# Number of dimensions") || arePeakColumns(core)) return "a peak list";
  constexpr std::size_t kMostWords = 8;
  const auto words = splitCells(core, Separator::blank, kMostWords);
  if (!words || words->empty()) return "";
  for (const FirstWords& start : kFirstWords)
    if (equalIgnoringCase(words->front(), start.first) &&
        (start.second.empty() || (words->size() > 1 && equalIgnoringCase((*words)[1], start.second))))
      return start.what;
  if (isOfMars(*words)) return "a file of MARS, whose spin systems are not assigned to residues";
  if (isOfTargetedAcquisition(*words))
    return "a list of targeted acquisition; export NMR-STAR or a table with column names";
  return isPlainRestraint(*words) ? "a restraint list" : "";
}

}  // namespace

void refuseForeign(std::string_view bytes, const std::string& file, Wanted wanted, const char* remedy) {
  const auto refuse = [&](const char* what) {
    const char* kind = wanted == Wanted::shifts ? "shift" : "structure";
    throw FileError(file, 0, std::string("is no ") + kind + " file but " + what, remedy);
  };
  constexpr std::size_t kProlog = 1000;
  if (bytes.substr(0, 1) == "<" && contains(bytes.substr(0, kProlog), "<chemical_shift_list"))
    refuse("an XML shift list of ARIA; export NMR-STAR or a table with column names");
  for (const Signature& signature : kSignatures)
    if (bytes.substr(0, signature.start.size()) == signature.start &&
        !(signature.isStructure && wanted == Wanted::structure))
      refuse(signature.what);
  if (isWide(bytes)) refuse("text in UTF-16; save it as UTF-8");
  if (contains(bytes, std::string_view("\0", 1))) throw FileError(file, 0, "is no text file", remedy);
}

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
