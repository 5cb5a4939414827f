// mmCIF text: the backbone rows of its atom table, read by gemmi.
#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_map>
#include <unordered_set>

#include <gemmi/cif.hpp>
#include <gemmi/mmcif.hpp>  // for make_structure_from_block

#include "formats/limits.h"
#include "formats/loop_lines.h"
#include "formats/star_tokens.h"
#include "structure/coordinates.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

namespace cif = gemmi::cif;

// A residue costs a search among those of its chain, a chain one among those of its model.
constexpr std::size_t kMostChainParts = 20000;
constexpr std::size_t kMostResiduesInChain = 20000;
constexpr const char* kRemedy = "give the mmCIF file of the entry as the archive has it";

struct WantedColumn {
  const char* name;
  const char* substitute;  // value where the column is absent; nullptr: it must be there
};

// What gemmi needs of an atom, with what stands for it in files of programs that write less.
constexpr std::array<WantedColumn, 17> kColumns = {{{"group_PDB", "ATOM"},
                                                    {"id", "1"},
                                                    {"type_symbol", "C"},
                                                    {"label_atom_id", nullptr},
                                                    {"label_alt_id", "."},
                                                    {"label_comp_id", nullptr},
                                                    {"label_asym_id", nullptr},
                                                    {"label_seq_id", "."},
                                                    {"pdbx_PDB_ins_code", "?"},
                                                    {"Cartn_x", nullptr},
                                                    {"Cartn_y", nullptr},
                                                    {"Cartn_z", nullptr},
                                                    {"occupancy", "1"},
                                                    {"B_iso_or_equiv", "20"},
                                                    {"auth_seq_id", "."},
                                                    {"auth_asym_id", "."},
                                                    {"pdbx_PDB_model_num", "1"}}};
enum Column : std::size_t {
  kGroup,
  kId,
  kSymbol,
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
  kB,
  kAuthSeq,
  kAuthAsym,
  kModel
};
// The author's names, used where the others are absent.
constexpr const char* kOtherAtom = "auth_atom_id";
constexpr const char* kOtherResidue = "auth_comp_id";

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

/// What is wrong with the loop at a place of the text.
FileError badLoop(const std::string& text, const std::string& name, std::size_t line, std::size_t place) {
  const std::size_t lineStart = place == 0 ? 0 : text.rfind('\n', place - 1) + 1;  // npos + 1 is 0
  StarTokens tokens(text);
  StarToken token = tokens.next();
  while (token.kind != StarToken::Kind::end &&
         (token.kind != StarToken::Kind::loop || token.begin < lineStart))
    token = tokens.next();
  std::size_t columns = 0;
  for (token = tokens.next(); token.kind == StarToken::Kind::tag; token = tokens.next()) ++columns;
  std::vector<std::size_t> begins;
  for (; token.kind == StarToken::Kind::value; token = tokens.next()) begins.push_back(token.begin);
  const char* remedy = "mend the file there, or fetch it again";
  const auto odd = firstOddLine(text, begins, std::max<std::size_t>(columns, 1));
  const bool isCut = odd && token.kind == StarToken::Kind::end && tokens.lineOf(begins.back()) == odd->number;
  if (odd)
    return FileError(name, odd->number,
                     "this row has " + counted(odd->values, "value", "values") + " for " +
                         counted(columns, "column", "columns") +
                         (isCut ? ", and the file ends in its table" : ""),
                     remedy);
  return FileError(name, line, "the values of the table that begins here do not fill its rows", remedy);
}

/// The text parsed as CIF, which mmCIF files are. FileError with the line where it is not.
cif::Document parsed(const std::string& text, const std::string& name) {
  StarTokens tokens(text);
  std::size_t words = 0;
  while (tokens.next().kind != StarToken::Kind::end)
    if (++words > kMostWords)
      throw FileError(name, 0, "has more than " + std::to_string(kMostWords) + " words", kRemedy);
  cif::Document document;
  document.source = name;
  // Repeated tags and frames are let pass: one in a part that is of no interest must not stop the reading.
  tao::pegtl::memory_input<> input(text, name);
  try {
    cif::parse_input(document, input);
  } catch (const tao::pegtl::parse_error& error) {
    const auto& place = error.positions().front();
    if (contains(error.message(), "Wrong number of values"))
      throw badLoop(text, name, place.line, place.byte);
    throw FileError(name, place.line,
                    "not valid CIF: " + printable(error.message()) +
                        (place.byte >= text.size() ? " (the file ends too early)" : ""),
                    "mend the file there, or fetch it again");
  }
  return document;
}

const cif::Loop* atomLoop(const cif::Document& document, const std::string& name) {
  const cif::Loop* found = nullptr;
  for (const cif::Block& block : document.blocks)
    for (const cif::Item& item : block.items) {
      if (item.type != cif::ItemType::Loop || item.loop.tags.empty()) continue;
      if (lower(item.loop.tags.front()).rfind("_atom_site.", 0) != 0) continue;
      if (found != nullptr)
        throw FileError(name, 0, "has several tables of atoms", "give one structure in each file");
      found = &item.loop;
    }
  return found;
}

/// The rows of the atom table that are backbone atoms, in columns that gemmi knows.
class AtomRows {
 public:
  AtomRows(const cif::Loop& loop, const std::string& file) : source(loop), name(file) {
    for (std::size_t c = 0; c < kColumns.size(); ++c) columns[c] = columnOf(kColumns[c].name);
    if (columns[kAtom] == kNone) columns[kAtom] = columnOf(kOtherAtom);
    if (columns[kResidue] == kNone) columns[kResidue] = columnOf(kOtherResidue);
    if (columns[kAsym] == kNone) columns[kAsym] = columns[kAuthAsym];
    for (std::size_t c = 0; c < kColumns.size(); ++c)
      if (columns[c] == kNone && kColumns[c].substitute == nullptr)
        throw FileError(name, 0, std::string("its table of atoms has no column ") + kColumns[c].name,
                        kRemedy);
  }

  cif::Block backbone() {
    cif::Block block("backbone");
    cif::Loop& loop = block.init_loop("_atom_site.", {});
    for (const WantedColumn& column : kColumns) loop.tags.push_back(std::string("_atom_site.") + column.name);
    for (std::size_t row = 0; row < source.length(); ++row) addRow(row, loop);
    return block;
  }

  std::vector<std::string> notes() const {
    if (unusable.empty()) return {};
    return {"coordinates that are no numbers, atoms not used: " + enumerated(unusable)};
  }

 private:
  std::size_t columnOf(const std::string& column) const {
    for (std::size_t i = 0; i < source.tags.size(); ++i)
      if (equalIgnoringCase(source.tags[i], "_atom_site." + column)) return i;
    return kNone;
  }

  std::string text(std::size_t row, std::size_t column) const {
    if (columns[column] == kNone) return kColumns[column].substitute;
    const std::string& value = source.values[row * source.tags.size() + columns[column]];
    return value.empty() ? "." : value;
  }

  void addRow(std::size_t row, cif::Loop& loop) {
    const std::string atom = cif::as_string(text(row, kAtom));
    if (atom != "N" && atom != "CA" && atom != "C") return;
    std::array<std::string, kColumns.size()> cells;
    for (std::size_t c = 0; c < cells.size(); ++c) cells[c] = text(row, c);
    cells[kId] = "1";
    cells[kSymbol] = atom.substr(0, 1);
    if (cif::is_null(cells[kAuthAsym])) cells[kAuthAsym] = cells[kAsym];
    if (cif::is_null(cells[kAuthSeq])) cells[kAuthSeq] = cells[kSeq];
    if (cif::is_null(cells[kModel])) cells[kModel] = "1";
    if (!toInteger(cif::as_string(cells[kAuthSeq]))) cells[kAuthSeq] = ".";
    // Not read, but gemmi would read a number that does not fit an int.
    cells[kSeq] = ".";
    if (!hasCoordinates(cells)) {
      noteUnusable(cells);
      return;
    }
    countParts(cells);
    for (std::string& cell : cells) loop.values.push_back(std::move(cell));
  }

  template <class Cells>
  static bool hasCoordinates(const Cells& cells) {
    for (const Column c : {kX, kY, kZ})
      if (!std::isfinite(cif::as_number(cells[c]))) return false;
    return true;
  }

  template <class Cells>
  void noteUnusable(const Cells& cells) {
    const std::string residue =
        printable("residue " + cif::as_string(cells[kResidue]) + " " + cif::as_string(cells[kAuthSeq]) +
                  " of chain " + cif::as_string(cells[kAuthAsym]));
    if (unusable.empty() || unusable.back() != residue) unusable.push_back(residue);
  }

  template <class Cells>
  void countParts(const Cells& cells) {
    if (cells[kModel] != lastModel) {
      lastModel = cells[kModel];
      models.insert(lastModel);
      if (models.size() > kMostModels)
        throw FileError(name, 0, "has more than " + std::to_string(kMostModels) + " models",
                        "give a part of them");
      lastChain.clear();
      chainParts = 0;
    }
    if (cells[kAuthAsym] != lastChain) {
      lastChain = cells[kAuthAsym];
      lastResidue.clear();
      residues = 0;
      if (++chainParts > kMostChainParts)
        throw FileError(name, 0, "a model has more than " + std::to_string(kMostChainParts) + " chains",
                        "give the chains that have shifts");
    }
    const std::string residue = cells[kAuthSeq] + cells[kCode] + cells[kResidue];
    if (residue == lastResidue) return;
    lastResidue = residue;
    if (++residues > kMostResiduesInChain)
      throw FileError(name, 0, "a chain has more than " + std::to_string(kMostResiduesInChain) + " residues",
                      "give the part that has shifts");
  }

  const cif::Loop& source;
  const std::string& name;
  std::array<std::size_t, kColumns.size()> columns{};
  std::vector<std::string> unusable;
  std::unordered_set<std::string> models;
  std::string lastModel;
  std::string lastChain;
  std::string lastResidue;
  std::size_t chainParts = 0;
  std::size_t residues = 0;
};

}  // namespace

Coordinates readMmcifCoordinates(const std::string& text, const std::string& name) {
  cif::Document document = parsed(text, name);
  const cif::Loop* loop = atomLoop(document, name);
  if (loop == nullptr || loop->values.empty()) throw FileError(name, 0, "has no atoms (_atom_site)", kRemedy);
  AtomRows rows(*loop, name);
  const cif::Block backbone = rows.backbone();
  document.clear();
  Coordinates coordinates;
  try {
    coordinates.structure = gemmi::make_structure_from_block(backbone);
  } catch (const std::exception& error) {
    throw FileError(name, 0, "cannot be read as an mmCIF file: " + printable(error.what()), kRemedy);
  }
  coordinates.notes = rows.notes();
  return coordinates;
}

}  // namespace zorvela
