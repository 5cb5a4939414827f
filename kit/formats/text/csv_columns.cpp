#include "formats/text/csv_columns.h"

#include <algorithm>
#include <functional>
#include <map>
#include <utility>

#include "formats/text/cells.h"
#include "names/nomenclature.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr const char* kColumnsRemedy =
    "give NMR-STAR, NEF, the program's shift table, or text with a header line such as "
    "resid,resname,atom,shift";
// There may be a page of titles and comments above the column names.
constexpr std::size_t kMostLinesAbove = 50;

// --- Columns by their names ----------------------------------------------------------------------

constexpr std::size_t kMostResidueColumns = 3;

/// Words of one meaning in column names; the second is the one that the lists below have.
constexpr std::pair<std::string_view, std::string_view> kSynonyms[] = {
    {"residues", "res"}, {"residue", "res"},   {"aminoacid", "aa"}, {"sequence", "seq"},
    {"number", "num"},   {"chemical", "chem"}, {"shifts", "shift"},
};

// Names of columns, in order of trust: where a file has several, the first wins.
struct Heading {
  std::size_t CsvColumns::*column;
  std::string_view names;
};
constexpr Heading kHeadings[] = {
    {&CsvColumns::shift, "shift chemshift chemshiftval chemshiftvalue cs val value ppm delta csvalue d"},
    {&CsvColumns::chain,
     "chain chainid chaincode chainname segid segment asymid authasymid entityassemblyasymid "
     "entityassemblyid entity entityid molecule mol"},
    {&CsvColumns::number,
     "resid resnum resno resnr resseq resi compindexid seqid seqcode resseqcode seqnum seqno seqnr authseqid "
     "resindex aano aanum"},
    {&CsvColumns::name,
     "resname restype resn compid reslabel reslabel3 aatype 3letter 1letter oneletter threeletter "
     "3lettercode 1lettercode onelettercode threelettercode"},
    {&CsvColumns::atom, "atom atomname atomid atomtypename name"},
    {&CsvColumns::counter, "num nr position pos no index idx"},
};
constexpr std::string_view kResidueNames = "res group aa code seq";
constexpr std::string_view kAssignmentNames =
    "assignment assignments assign assigned resonance nmratom label";
constexpr std::string_view kWeakNameNames = "type name";
// Atoms of the table under another name.
constexpr std::pair<std::string_view, std::string_view> kAtomAliases[] = {
    {"h", "HN"},      {"n15", "N"},    {"ha1", "HA1"},   {"co", "C"},      {"c'", "C"},     {"cprime", "C"},
    {"calpha", "CA"}, {"cbeta", "CB"}, {"cgamma", "CG"}, {"halpha", "HA"}, {"cgpro", "CG"}, {"procg", "CG"},
};
// Parts of a column name around the atom that only mark it as a shift.
constexpr std::string_view kBefore[] = {"chemshift", "shift", "delta", "cs", "d", "13", "15", "1"};
constexpr std::string_view kAfter[] = {"chemshift", "shift", "obs", "exp"};

// Characters that are ignored in a column name.
constexpr std::string_view kFillers = " \t\v_-.:/()[]{}*,";

/// Makes "Atom_chem_shift.Comp_index_ID" and "comp index ID" the same, and removes a unit. Unknown signs
/// remain, so that a name with one is not mistaken for a known name.
std::string simplified(const std::string& name) {
  const std::size_t dot = name.find_last_of('.');
  const bool isTag = dot != std::string::npos && dot > 1 && dot + 2 < name.size() &&
                     isLetter(name[dot - 1]) && isLetter(name[dot + 1]) &&
                     name.find('_') != std::string::npos;
  std::string result;
  for (const char c : lower(withLatinLetters(isTag ? name.substr(dot + 1) : name))) {
    if (c == '#')
      result += "no";
    else if (!contains(kFillers, {&c, 1}))
      result.push_back(c);
  }
  for (const auto& [word, usual] : kSynonyms)
    if (const std::size_t at = result.find(word); at != std::string::npos)
      result.replace(at, word.size(), usual);
  constexpr std::size_t kUnitSize = 3;
  if (result.size() > kUnitSize && result.compare(result.size() - kUnitSize, kUnitSize, "ppm") == 0)
    result.resize(result.size() - kUnitSize);
  return result;
}

/// Returns the first column with one of these names, and clears its name: each column is given out once.
std::size_t take(std::string_view names, std::vector<std::string>& open) {
  for (const std::string& name : wordsOf(names))
    if (const auto found = std::find(open.begin(), open.end(), name); found != open.end()) {
      found->clear();
      return static_cast<std::size_t>(found - open.begin());
    }
  return kNoColumn;
}

/// Returns the atom of a simplified name with nothing around it; empty if there is none.
std::string plainAtom(std::string_view name) {
  for (const auto& [alias, atom] : kAtomAliases)
    if (alias == name) return std::string(atom);
  const std::string atom = upper(name);
  return atomNamed(atom) ? atom : std::string();
}

/// Returns the atom of a simplified name with marks around it.
std::string atomOfSimplified(std::string_view name) {
  for (const std::string_view end : kAfter)
    if (name.size() > end.size() && name.substr(name.size() - end.size()) == end)
      return atomOfSimplified(name.substr(0, name.size() - end.size()));
  std::string atom = plainAtom(name);
  for (const std::string_view start : kBefore)
    // "13C" alone may be any carbon.
    if (atom.empty() && name.substr(0, start.size()) == start && name != "13c")
      atom = atomOfSimplified(name.substr(start.size()));
  return atom;
}

/// Tells whether a column name is the atom's own, which wins over "CA shift" and the like.
bool isOwnName(std::string name, const std::string& atom) {
  takeOffset(name);
  return plainAtom(simplified(name)) == atom;
}

/// Adds the column of each atom: the one under its own name, or the only one.
void addAtomColumns(const std::vector<std::string>& names, const std::vector<std::string>& open,
                    CsvColumns& columns) {
  const auto has = [&](const char* name) { return std::find(open.begin(), open.end(), name) != open.end(); };
  // "1H" may be any proton, "1HA" one of two, unless another column shows which.
  const auto isUnclear = [&](const std::string& name) {
    return (name == "1h" && !has("15n") && !has("n")) || (name == "1ha" && has("2ha"));
  };
  // Beside "HA-2", "HA-1" is the other proton.
  const auto isSecond = [](const std::string& name) { return lower(name) == "ha-2"; };
  const bool areProtons = std::any_of(names.begin(), names.end(), isSecond);
  std::map<std::pair<std::string, std::optional<int>>, std::vector<std::size_t>> claims;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (open[i].empty() || isUnclear(open[i])) continue;
    const AtomColumn read = atomOfColumn(areProtons && lower(names[i]) == "ha-1" ? "HA1" : names[i]);
    if (!read.atom.empty()) claims[{read.atom, read.offset}].push_back(i);
  }
  for (auto& [named, claimed] : claims) {
    const std::string atom = named.first;
    const auto isOwn = [&](std::size_t i) { return isOwnName(names[i], atom); };
    if (std::count_if(claimed.begin(), claimed.end(), isOwn) == 1)
      claimed = {*std::find_if(claimed.begin(), claimed.end(), isOwn)};
    if (claimed.size() == 1)
      columns.atoms.push_back({claimed.front(), atom, named.second});
    else
      columns.doubled.push_back(atom);
  }
  std::sort(columns.atoms.begin(), columns.atoms.end(),
            [](const AtomColumn& a, const AtomColumn& b) { return a.column < b.column; });
}

/// Settles a table with one row per residue: "name" is the residue's, and a column such as "delta" is not a
/// shift. Where no other column has the residues, "label" or "name" has them whole (S81).
void becomeWide(std::size_t nameColumn, std::vector<std::string>& open, CsvColumns& columns) {
  columns.shift = kNoColumn;
  columns.atom = kNoColumn;
  std::size_t label = columns.haveResidue() ? kNoColumn : take(kAssignmentNames, open);
  if (label == kNoColumn && columns.name == kNoColumn)
    (columns.haveResidue() ? columns.name : label) = nameColumn;
  if (label != kNoColumn) columns.residues.push_back(label);
}

/// Settles a table with one row per shift: residue and atom may be in one cell, under another name.
void becomeLong(std::vector<std::string>& open, CsvColumns& columns) {
  columns.atoms.clear();
  columns.doubled.clear();
  if (columns.shift == kNoColumn) return;
  const bool hasResidue =
      columns.number != kNoColumn || columns.counter != kNoColumn || columns.name != kNoColumn;
  if (columns.atom != kNoColumn) {
    if (!hasResidue && columns.residues.empty()) std::swap(columns.assignment, columns.atom);
    return;
  }
  columns.assignment = take(kAssignmentNames, open);
  if (columns.assignment != kNoColumn || hasResidue || columns.residues.size() != 1) return;
  columns.assignment = columns.residues.front();
  columns.residues.clear();
}

// --- Columns by their cells ----------------------------------------------------------------------

/// The fit of a cell to a kind of column. All cells of a column fit, and at least one is certain.
enum class Fit { none, possible, certain };

Fit certainIf(bool fits) {
  return fits ? Fit::certain : Fit::none;
}

/// A name such as HB2, CG1, QQD or CD1/2: a nucleus, then where it is. Those of the table are certain.
Fit fitOfAtom(const std::string& cell) {
  const std::string text = upper(withLatinLetters(cell));
  constexpr std::size_t kLongest = 8;
  const bool isAtom = !text.empty() && text.size() <= kLongest && contains("HCNQMOS", text.substr(0, 1)) &&
                      std::all_of(text.begin(), text.end(), [](char c) {
                        return isLetter(c) || isDigit(c) || contains("%*#'\"/|+", {&c, 1});
                      });
  if (!isAtom) return Fit::none;
  for (const char type : {'A', 'G', kProlineCode})
    if (readAtom(type, cell).isInTable()) return Fit::certain;
  return Fit::possible;
}

struct ColumnKind {
  const char* title;
  std::size_t CsvColumns::*place;  ///< nullptr: one of `CsvColumns::residues`
  Fit (*fit)(const std::string& cell);
};

constexpr ColumnKind kNumber = {"residue number", &CsvColumns::counter, [](const std::string& cell) {
                                  return certainIf(toInteger(cell).has_value());
                                }};
constexpr ColumnKind kName = {
    "residue name", &CsvColumns::name, [](const std::string& cell) {
      return certainIf(!toInteger(cell) && polypeptideResidue(cell).letter != kUnknownResidue);
    }};
constexpr ColumnKind kAtom = {"atom", &CsvColumns::atom, fitOfAtom};
constexpr ColumnKind kResidue = {"residue", nullptr, [](const std::string& cell) {
                                   const auto label = readLabel(cell);
                                   return certainIf(label && !label->number.empty() && !label->name.empty());
                                 }};
constexpr ColumnKind kAssignment = {
    "residue with atom", &CsvColumns::assignment, [](const std::string& cell) {
      const auto label = readLabel(cell, true);
      return label && !label->number.empty() ? fitOfAtom(label->atom) : Fit::none;
    }};
constexpr ColumnKind kShift = {"shift", &CsvColumns::shift, [](const std::string& cell) {
                                 if (!numberIn(cell)) return Fit::none;
                                 return cell.find_first_of(".,") == cell.npos ? Fit::possible : Fit::certain;
                               }};

/// The kinds of the columns from left to right, and which of these are certain.
struct Order {
  std::vector<const ColumnKind*> kinds;
  std::vector<bool> isCertain;

  /// False where a cell does not fit.
  bool add(const std::vector<std::string>& cells) {
    for (std::size_t i = 0; i < kinds.size(); ++i) {
      const Fit fit = kinds[i]->fit(cells[i]);
      if (fit == Fit::none) return false;
      isCertain[i] = isCertain[i] || fit == Fit::certain;
    }
    return true;
  }
};

/// Returns all orders of a table with so many columns.
std::vector<Order> ordersOf(std::size_t width) {
  std::vector<const ColumnKind*> kinds = {&kAssignment, &kShift};
  if (width == 3) kinds = {&kResidue, &kAtom, &kShift};
  if (width == 4) kinds = {&kNumber, &kName, &kAtom, &kShift};
  std::sort(kinds.begin(), kinds.end(), std::less<>());
  std::vector<Order> orders;
  do orders.push_back({kinds, std::vector<bool>(kinds.size(), false)});
  while (std::next_permutation(kinds.begin(), kinds.end(), std::less<>()));
  return orders;
}

/// Returns the one order of which all columns are certain; nullptr where there are two or none.
const Order* onlyOrder(const std::vector<Order>& orders) {
  const auto isClear = [](const Order& order) {
    return std::find(order.isCertain.begin(), order.isCertain.end(), false) == order.isCertain.end();
  };
  const auto only = std::find_if(orders.begin(), orders.end(), isClear);
  return std::count_if(orders.begin(), orders.end(), isClear) == 1 ? &*only : nullptr;
}

/// Returns the table in a text without column names. Nothing where a row has other cells, or where there are
/// two ways to read them. FileError for a row unlike those of the table above it.
std::optional<CsvTable> tableWithoutNames(std::string_view text, const std::string& file) {
  std::size_t pos = 0;
  std::size_t line = 0;
  std::optional<std::string_view> first;
  do first = nextFilledLine(text, pos, line);
  while (first && trimmed(*first).front() == '#');
  auto layout = first ? layoutOf(*first, text, 0) : std::nullopt;
  if (!layout || layout->names.size() < 2 || layout->names.size() > 4) return std::nullopt;
  std::vector<Order> orders = ordersOf(layout->names.size());
  std::size_t rows = 0;
  // Text of another kind fails within its first rows, and the rest is skipped.
  forEachRow(*layout, [&](const CsvRow& row) {
    if (orders.empty()) return;
    ++rows;
    const bool wasTable = onlyOrder(orders) != nullptr;
    const auto isUnlike = [&](Order& order) { return !row.fault.empty() || !order.add(row.cells); };
    orders.erase(std::remove_if(orders.begin(), orders.end(), isUnlike), orders.end());
    if (orders.empty() && wasTable)
      throw FileError(file, row.line, "is not like the rows above it, and the table has no column names",
                      "correct or remove this row, or add a line of column names");
  });
  constexpr std::size_t kFewestRows = 2;
  const Order* order = onlyOrder(orders);
  if (order == nullptr || rows < kFewestRows) return std::nullopt;
  CsvTable table{std::move(*layout), {}};
  for (std::size_t i = 0; i < order->kinds.size(); ++i) {
    const ColumnKind& kind = *order->kinds[i];
    table.layout.names[i] = kind.title;
    if (kind.place != nullptr)
      table.columns.*kind.place = i;
    else
      table.columns.residues = {i};
  }
  return table;
}

}  // namespace

bool CsvColumns::haveResidue() const {
  return number != kNoColumn || counter != kNoColumn || assignment != kNoColumn || !residues.empty();
}

bool CsvColumns::areUsing(std::size_t column) const {
  for (const std::size_t used : {number, name, assignment, atom, shift, chain})
    if (used == column) return true;
  if (std::find(residues.begin(), residues.end(), column) != residues.end()) return true;
  return std::any_of(atoms.begin(), atoms.end(), [column](const auto& one) { return one.column == column; });
}

std::string CsvColumns::missing() const {
  std::vector<std::string> parts;
  const bool hasLabel = !residues.empty() || assignment != kNoColumn;
  if (!haveResidue()) parts.push_back("residue number (resid)");
  if (name == kNoColumn && !hasLabel) parts.push_back("residue name (resname)");
  if (atom == kNoColumn && assignment == kNoColumn) parts.push_back("atom name (atom)");
  if (shift == kNoColumn) parts.push_back("chemical shift (shift)");
  return enumerated(parts);
}

std::optional<int> takeOffset(std::string& name) {
  name = withLatinLetters(name);
  for (std::size_t at = 1; at + 1 < name.size(); ++at) {
    const bool isStep = (name[at] == '-' || name[at] == '+') && (name[at + 1] == '0' || name[at + 1] == '1');
    if (!isStep || (at + 2 < name.size() && (isDigit(name[at + 2]) || isLetter(name[at + 2])))) continue;
    const int offset = name[at + 1] == '0' ? 0 : name[at] == '-' ? -1 : 1;
    const bool hasIndex = contains("iI", name.substr(at - 1, 1));
    name.erase(at - (hasIndex ? 1 : 0), hasIndex ? 3 : 2);
    return offset;
  }
  return std::nullopt;
}

AtomColumn atomOfColumn(const std::string& name) {
  // "CA(i)" is the residue's own.
  std::string own = name;
  for (const char* index : {"(i)", "[i]"})
    if (const std::size_t at = lower(own).find(index); at != std::string::npos) own.erase(at, 3);
  const std::optional<int> offset = takeOffset(own);
  const std::string simple = simplified(own);
  return {kNoColumn, simple == "1ha" ? "HA" : atomOfSimplified(simple), offset};
}

CsvColumns readColumns(const std::vector<std::string>& names) {
  CsvColumns columns;
  std::vector<std::string> open;
  for (const std::string& name : names) open.push_back(simplified(name));
  for (const Heading& heading : kHeadings) columns.*heading.column = take(heading.names, open);
  for (std::size_t i = 0; i < kMostResidueColumns; ++i)
    if (const std::size_t residue = take(kResidueNames, open); residue != kNoColumn)
      columns.residues.push_back(residue);
  // A spreadsheet may count its rows to the left of all named columns.
  if (columns.counter == kNoColumn && !names.empty() && names.front().empty()) columns.counter = 0;
  addAtomColumns(names, open, columns);
  const bool isName = columns.atom != kNoColumn && simplified(names[columns.atom]) == "name";
  // A column "atom" is certain, "name" may be the residue's.
  const bool isLongForCertain = columns.shift != kNoColumn && columns.atom != kNoColumn && !isName;
  if (columns.atoms.size() > 1 && !isLongForCertain)
    becomeWide(isName ? columns.atom : kNoColumn, open, columns);
  else
    becomeLong(open, columns);
  // "type" and "name" are the residue's where no better column is found.
  const std::size_t weak = columns.name == kNoColumn ? take(kWeakNameNames, open) : kNoColumn;
  if (weak != kNoColumn && columns.residues.empty())
    columns.name = weak;
  else if (weak != kNoColumn)
    columns.residues.push_back(weak);
  return columns;
}

CsvTable findTable(std::string_view text, const std::string& file, std::vector<std::string>& notes) {
  std::size_t pos = 0;
  std::size_t line = 0;
  std::size_t firstLine = 0;
  std::string fault;
  for (std::size_t above = 0; above < kMostLinesAbove; ++above) {
    const auto header = nextFilledLine(text, pos, line);
    if (!header) break;
    const auto layout = layoutOf(*header, text.substr(std::min(pos, text.size())), line);
    const CsvColumns columns = layout ? readColumns(layout->names) : CsvColumns();
    if (columns.areEnough()) {
      if (above > 0) notes.push_back(lineRange(firstLine, line - 1) + " above the column names ignored");
      return {*layout, columns};
    }
    if (above > 0) continue;
    firstLine = line;
    const std::size_t start = header->find_first_not_of("# \t");
    const std::string begin = printable(trimmed(start == header->npos ? *header : header->substr(start)), 60);
    const bool isPartly = columns.shift != kNoColumn || columns.atom != kNoColumn;
    fault = isPartly ? "the columns lack " + columns.missing()
                     : "is not a known kind of shift file; it begins with \"" + begin + "\"";
  }
  auto table = tableWithoutNames(text, file);
  if (!table) throw FileError(file, firstLine, fault, kColumnsRemedy);
  notes.push_back("no column names; by their contents, the columns are " + enumerated(table->layout.names));
  return *std::move(table);
}

}  // namespace zorvela
