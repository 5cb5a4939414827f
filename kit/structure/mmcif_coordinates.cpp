// mmCIF text: its atom table, of which the backbone rows are kept.
//
// Words are taken one by one and not stored: a file may hold millions that nobody asks for.
#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include <gemmi/numb.hpp>  // for as_number

#include "formats/star/loop_lines.h"
#include "formats/star/star_tokens.h"
#include "structure/coordinates.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

using Kind = StarToken::Kind;

constexpr std::string_view kCategory = "_atom_site.";
constexpr const char* kRemedy = "give the mmCIF file of the entry as the archive has it";

struct WantedColumn {
  std::string_view name;
  std::string_view other;  // the column to use if it is absent
  bool isRequired;         // one of the two must be there
};

enum Column : std::size_t {
  kGroup,
  kAtom,
  kAlternate,
  kResidue,
  kAsym,
  kSeq,
  kCode,
  kX,
  kY,
  kZ,
  kOccupancy,
  kAuthSeq,
  kAuthAsym,
  kModel
};
constexpr std::array<WantedColumn, 14> kColumns = {{{"group_PDB", {}, false},
                                                    {"label_atom_id", "auth_atom_id", true},
                                                    {"label_alt_id", {}, false},
                                                    {"label_comp_id", "auth_comp_id", true},
                                                    {"label_asym_id", "auth_asym_id", true},
                                                    {"label_seq_id", {}, false},
                                                    {"pdbx_PDB_ins_code", {}, false},
                                                    {"Cartn_x", {}, true},
                                                    {"Cartn_y", {}, true},
                                                    {"Cartn_z", {}, true},
                                                    {"occupancy", {}, false},
                                                    {"auth_seq_id", {}, false},
                                                    {"auth_asym_id", {}, false},
                                                    {"pdbx_PDB_model_num", {}, false}}};
using ColumnPlaces = std::array<std::size_t, kColumns.size()>;

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

std::size_t placeOf(std::string_view column, const std::vector<std::string_view>& tags) {
  const auto at = std::find_if(tags.begin(), tags.end(), [column](std::string_view tag) {
    return startsIgnoringCase(tag, kCategory) && equalIgnoringCase(tag.substr(kCategory.size()), column);
  });
  return at == tags.end() ? kNone : static_cast<std::size_t>(at - tags.begin());
}

ColumnPlaces placesOf(const std::vector<std::string_view>& tags, const std::string& file) {
  ColumnPlaces places{};
  for (std::size_t c = 0; c < kColumns.size(); ++c) {
    const WantedColumn& wanted = kColumns[c];
    places[c] = placeOf(wanted.name, tags);
    if (places[c] == kNone && !wanted.other.empty()) places[c] = placeOf(wanted.other, tags);
    if (places[c] == kNone && wanted.isRequired)
      throw FileError(file, 0, "its table of atoms has no column " + std::string(wanted.name), kRemedy);
  }
  return places;
}

/// A row of the atom table.
struct AtomRow {
  const std::vector<StarToken>& values;
  const ColumnPlaces& places;

  /// Without quotes; empty for ? and the like, and for a column that is not there.
  std::string_view text(Column column) const {
    if (places[column] == kNone) return {};
    const StarToken& value = values[places[column]];
    const bool isNull = value.isPlain && (value.value == "." || value.value == "?");
    return isNull ? std::string_view() : value.value;
  }

  std::string_view text(Column column, Column other) const {
    const std::string_view own = text(column);
    return own.empty() ? text(other) : own;
  }

  double number(Column column, double none = NAN) const {
    const std::string_view own = text(column);
    return own.empty() ? none : gemmi::cif::as_number(std::string(own), none);
  }

  /// Nothing for a text of several characters.
  std::optional<char> letter(Column column) const {
    const std::string_view own = text(column);
    if (own.size() > 1) return std::nullopt;
    return own.empty() ? ' ' : own.front();
  }
};

/// A residue number with its insertion code, which old files write with the number: 15A.
std::string numberOf(std::string_view number, char code) {
  if (!number.empty() && isLetter(number.back())) {
    if (code == ' ') code = number.back();
    number.remove_suffix(1);
  }
  const auto whole = toInteger(number);
  std::string result = whole ? std::to_string(*whole) : "?";
  if (code != ' ') result += code;
  return result;
}

/// The atom of a row; nothing where a letter is none, which `fault` then names.
std::optional<BackboneAtom> atomOf(const AtomRow& row, std::string& fault, std::vector<std::string>& notes) {
  const auto alternate = row.letter(kAlternate);
  const auto code = row.letter(kCode);
  if (!alternate || !code) {
    fault = "Not a single character: " + printable(row.text(alternate ? kCode : kAlternate));
    return std::nullopt;
  }
  BackboneAtom atom;
  const std::string_view model = row.text(kModel);
  atom.model = model.empty() ? "1" : nameOf(model, notes);
  atom.chain = nameOf(row.text(kAuthAsym, kAsym), notes);
  atom.part = nameOf(row.text(kAsym), notes);
  atom.residue = nameOf(row.text(kResidue), notes);
  atom.number = numberOf(row.text(kAuthSeq, kSeq), *code);
  if (const std::string_view seq = row.text(kSeq); !seq.empty())
    atom.label = std::string(row.text(kAsym)) + ' ' + std::string(seq);
  atom.isHetero = startsIgnoringCase(row.text(kGroup), "H");
  atom.atom.name = row.text(kAtom);
  atom.atom.alternate = *alternate;
  atom.atom.occupancy = static_cast<float>(row.number(kOccupancy, 1));
  atom.atom.position = {row.number(kX), row.number(kY), row.number(kZ)};
  return atom;
}

/// Reads the loops of a file one after the other.
class MmcifReader {
 public:
  MmcifReader(std::string_view source, const std::string& name)
      : file(name), tokens(source), backbone(name, source.size()) {}

  Coordinates read() {
    for (advance(); token.kind != Kind::end;) {
      if (token.kind == Kind::loop)
        readLoop();
      else if (token.kind == Kind::tag)
        readPair();
      else if (token.kind == Kind::value)
        fail("a value without a tag");
      else
        advance();
    }
    if (!hasAtoms) throw FileError(file, 0, "has no atoms (_atom_site)", kRemedy);
    Coordinates coordinates = backbone.finished();
    coordinates.notes.insert(coordinates.notes.end(), notes.begin(), notes.end());
    return coordinates;
  }

 private:
  [[noreturn]] void fail(const std::string& what) const {
    throw FileError(file, token.line, "not valid CIF: " + what, kStarRemedy);
  }

  void advance() {
    token = tokens.next();
    if (token.isOpen) fail("a quoted text begins here and has no end");
  }

  void readPair() {
    const StarToken tag = token;
    advance();
    if (token.kind != Kind::value) fail(printable(tag.value) + " has no value");
    advance();
  }

  void readLoop() {
    const std::size_t line = token.line;
    std::vector<std::string_view> tags;
    for (advance(); token.kind == Kind::tag; advance()) tags.push_back(token.value);
    if (tags.empty()) fail("a loop without tags");
    LoopLines lines;
    std::optional<FileError> fault;
    if (startsIgnoringCase(tags.front(), kCategory) && token.kind == Kind::value)
      fault = readAtoms(tags, lines);
    for (; token.kind == Kind::value; advance()) lines.add(token.line);
    // A value that is lost shifts all after it into other columns. That says more than what the first of
    // those columns has against it.
    if (lines.values % tags.size() != 0) throw badLoop(lines, tags.size(), line);
    if (fault) throw FileError(*fault);
  }

  /// Adds the atoms of all rows; the first that cannot be read is an error.
  std::optional<FileError> readAtoms(const std::vector<std::string_view>& tags, LoopLines& lines) {
    if (hasAtoms) throw FileError(file, 0, "has several tables of atoms", "give one structure in each file");
    hasAtoms = true;
    const ColumnPlaces places = placesOf(tags, file);
    std::vector<StarToken> values;
    for (; token.kind == Kind::value; advance()) {
      lines.add(token.line);
      values.push_back(token);
      if (values.size() < tags.size()) continue;
      const AtomRow row{values, places};
      if (isBackbone(row.text(kAtom))) {
        std::string fault;
        const auto atom = atomOf(row, fault, notes);
        if (!atom) {
          const std::size_t line = token.line;
          advance();
          return FileError(file, line, "this atom cannot be read: " + fault, kStarRemedy);
        }
        backbone.add(*atom);
      }
      values.clear();
    }
    return std::nullopt;
  }

  FileError badLoop(const LoopLines& lines, std::size_t columns, std::size_t line) const {
    const auto odd = firstOddLine(lines, columns);
    if (!odd)
      return FileError(file, line, "the values of the table that begins here do not fill its rows",
                       kStarRemedy);
    const bool isCut = token.kind == Kind::end && lines.list.back().number == odd->number;
    return FileError(file, odd->number,
                     "this row has " + counted(odd->values, "value", "values") + " for " +
                         counted(columns, "column", "columns") +
                         (isCut ? ", and the file ends in its table" : ""),
                     kStarRemedy);
  }

  const std::string& file;
  StarTokens tokens;
  StarToken token;
  BackboneBuilder backbone;
  std::vector<std::string> notes;
  bool hasAtoms = false;
};

}  // namespace

Coordinates readMmcifCoordinates(std::string_view text, const std::string& name) {
  return MmcifReader(text, name).read();
}

}  // namespace zorvela
