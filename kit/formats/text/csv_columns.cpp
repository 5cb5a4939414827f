#include "formats/text/csv_columns.h"

#include <algorithm>
#include <map>
#include <string_view>

#include "formats/text/csv_cells.h"
#include "formats/text/delimited_text.h"
#include "names/nomenclature.h"
#include "util/text.h"

namespace zorvela {

namespace {

constexpr std::size_t kMostResidueColumns = 3;

/// Words of one meaning in column names; the second is the one that the lists below have.
constexpr std::pair<std::string_view, std::string_view> kSynonyms[] = {
    {"residues", "res"}, {"residue", "res"},   {"aminoacid", "aa"}, {"sequence", "seq"},
    {"number", "num"},   {"chemical", "chem"}, {"shifts", "shift"},
};

// Names of columns, in order of trust: where a file has several, the first wins.
constexpr std::string_view kNumberNames =
    "resid resnum resno resnr resseq resi compindexid seqid seqcode resseqcode seqnum seqno seqnr authseqid "
    "resindex aano aanum";
constexpr std::string_view kNameNames =
    "resname restype resn compid reslabel reslabel3 aatype 3letter 1letter oneletter threeletter 3lettercode "
    "1lettercode onelettercode threelettercode";
constexpr std::string_view kResidueNames = "res group aa code seq";
// Numbers of residues, or of rows.
constexpr std::string_view kCounterNames = "num nr position pos no index idx";
constexpr std::string_view kAssignmentNames =
    "assignment assignments assign assigned resonance nmratom label";
constexpr std::string_view kWeakNameNames = "type name";
constexpr std::string_view kAtomNames = "atom atomname atomid atomtypename name";
constexpr std::string_view kShiftNames =
    "shift chemshift chemshiftval chemshiftvalue cs val value ppm delta csvalue d";
constexpr std::string_view kChainNames =
    "chain chainid chaincode chainname segid segment asymid authasymid entityassemblyasymid entityassemblyid "
    "entity entityid molecule mol";
// Atoms of the table under another name.
struct AtomAlias {
  std::string_view name;
  std::string_view atom;
};
constexpr AtomAlias kAtomAliases[] = {
    {"h", "HN"},      {"n15", "N"},    {"ha1", "HA1"},   {"co", "C"},      {"c'", "C"},     {"cprime", "C"},
    {"calpha", "CA"}, {"cbeta", "CB"}, {"cgamma", "CG"}, {"halpha", "HA"}, {"cgpro", "CG"}, {"procg", "CG"},
};
// Parts of a column name around the atom that only mark it as a shift.
constexpr std::string_view kBefore[] = {"chemshift", "shift", "delta", "cs", "d", "13", "15", "1"};
constexpr std::string_view kAfter[] = {"chemshift", "shift", "obs", "exp"};

/// Tells whether a character is ignored in a column name.
bool isFiller(char c) {
  return std::string_view(" \t\v_-.:/()[]{}*,").find(c) != std::string_view::npos;
}

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
    else if (!isFiller(c))
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

/// Gives each column out once.
class ColumnTaker {
 public:
  explicit ColumnTaker(const std::vector<std::string>& names) {
    for (const std::string& name : names) free.push_back(name.empty() ? name : simplified(name));
  }

  std::size_t take(std::string_view names) {
    const auto inOrder = splitCells(names, Separator::blank);
    for (const std::string& name : inOrder.value())
      if (const auto found = std::find(free.begin(), free.end(), name); found != free.end()) {
        found->clear();
        return static_cast<std::size_t>(found - free.begin());
      }
    return kNoColumn;
  }

  bool isFree(std::size_t i) const { return !free[i].empty(); }
  bool has(std::string_view name) const { return std::find(free.begin(), free.end(), name) != free.end(); }

 private:
  std::vector<std::string> free;
};

/// Returns the atom of a simplified name with nothing around it; empty if there is none.
std::string plainAtom(std::string_view name) {
  for (const AtomAlias& alias : kAtomAliases)
    if (alias.name == name) return std::string(alias.atom);
  const std::string atom = upper(name);
  return atomNamed(atom) ? atom : std::string();
}

std::string atomWithoutEnding(std::string_view name) {
  if (std::string atom = plainAtom(name); !atom.empty()) return atom;
  for (const std::string_view start : kBefore) {
    // "13C" alone may be any carbon.
    if (name.substr(0, start.size()) != start || name == "13c") continue;
    if (std::string atom = atomWithoutEnding(name.substr(start.size())); !atom.empty()) return atom;
  }
  return {};
}

std::string atomOfSimplified(std::string_view name) {
  if (std::string atom = atomWithoutEnding(name); !atom.empty()) return atom;
  for (const std::string_view end : kAfter) {
    if (name.size() <= end.size() || name.substr(name.size() - end.size()) != end) continue;
    if (std::string atom = atomOfSimplified(name.substr(0, name.size() - end.size())); !atom.empty())
      return atom;
  }
  return {};
}

/// Returns "CA" for "CA(i)": the shift is the residue's own.
std::string withoutOwnIndex(const std::string& name) {
  for (const char* index : {"(i)", "[i]"})
    if (const std::size_t at = lower(name).find(index); at != std::string::npos)
      return std::string(name).erase(at, std::string_view(index).size());
  return name;
}

/// Tells whether a column name is the atom's own, which wins over "CA shift" and the like.
bool isOwnName(std::string name, const std::string& atom) {
  takeOffset(name);
  const std::string plain = plainAtom(simplified(name));
  return !plain.empty() && plain == atom;
}

/// Tells whether a name is open: "1H" may be any proton, "1HA" one of two, unless another column shows which.
bool isOpenProton(const std::string& name, const ColumnTaker& taker) {
  return (name == "1h" && !taker.has("15n") && !taker.has("n")) || (name == "1ha" && taker.has("2ha"));
}

/// Adds the column of each atom: the one under its own name, or the only one.
void addAtomColumns(const std::vector<std::string>& names, const ColumnTaker& taker, CsvColumns& columns) {
  // Beside "HA-2", "HA-1" is the other proton.
  const auto isSecond = [](const std::string& name) { return lower(name) == "ha-2"; };
  const bool areProtons = std::any_of(names.begin(), names.end(), isSecond);
  std::map<std::pair<std::string, std::optional<int>>, std::vector<std::size_t>> claims;
  for (std::size_t i = 0; i < names.size(); ++i)
    if (taker.isFree(i) && !isOpenProton(simplified(names[i]), taker))
      if (const ColumnAtom read = atomOfColumn(areProtons && lower(names[i]) == "ha-1" ? "HA1" : names[i]);
          !read.atom.empty())
        claims[{read.atom, read.offset}].push_back(i);
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

/// Reads "type" and "name" as the residue's where no better column is found.
void takeWeakName(ColumnTaker& taker, CsvColumns& columns) {
  if (columns.name != kNoColumn) return;
  const std::size_t weak = taker.take(kWeakNameNames);
  if (columns.residues.empty())
    columns.name = weak;
  else if (weak != kNoColumn)
    columns.residues.push_back(weak);
}

/// Tells whether there is one row per shift: a column "atom" is certain, "name" may be the residue's.
bool isLongForCertain(const std::vector<std::string>& names, const CsvColumns& columns) {
  return columns.shift != kNoColumn && columns.atom != kNoColumn && simplified(names[columns.atom]) != "name";
}

bool haveResidue(const CsvColumns& columns) {
  return columns.number != kNoColumn || columns.counter != kNoColumn || !columns.residues.empty();
}

/// Settles a table with one row per residue: "name" is the residue's, and a column such as "delta" is not a
/// shift. Where no other column has the residues, "label" or "name" has them whole (S81).
void becomeWide(const std::vector<std::string>& names, ColumnTaker& taker, CsvColumns& columns) {
  const bool isName = columns.atom != kNoColumn && simplified(names[columns.atom]) == "name";
  const std::size_t name = isName ? columns.atom : kNoColumn;
  columns.shift = kNoColumn;
  columns.atom = kNoColumn;
  std::size_t label = kNoColumn;
  if (!haveResidue(columns)) {
    label = taker.take(kAssignmentNames);
    if (label == kNoColumn && columns.name == kNoColumn) label = name;
  }
  if (label != kNoColumn)
    columns.residues.push_back(label);
  else if (columns.name == kNoColumn)
    columns.name = name;
}

/// Finds the column with residue and atom in one cell, which may have another name.
void findAssignment(ColumnTaker& taker, CsvColumns& columns) {
  if (columns.shift == kNoColumn) return;
  const bool hasResidue =
      columns.number != kNoColumn || columns.counter != kNoColumn || columns.name != kNoColumn;
  if (columns.atom != kNoColumn) {
    if (!hasResidue && columns.residues.empty()) std::swap(columns.assignment, columns.atom);
    return;
  }
  columns.assignment = taker.take(kAssignmentNames);
  if (columns.assignment != kNoColumn || hasResidue || columns.residues.size() != 1) return;
  columns.assignment = columns.residues.front();
  columns.residues.clear();
}

// --- The residue of a row -----------------------------------------------------------------------

const std::string& cellAt(const std::vector<std::string>& cells, std::size_t column) {
  static const std::string kNone;
  return column < cells.size() ? cells[column] : kNone;
}

/// Returns the columns that may give the number of a residue, in order of trust.
std::vector<std::size_t> numberSources(const CsvColumns& columns) {
  std::vector<std::size_t> sources = {columns.number, columns.assignment};
  sources.insert(sources.end(), columns.residues.begin(), columns.residues.end());
  sources.insert(sources.end(), {columns.name, columns.counter});
  return sources;
}

void findNumber(const std::vector<std::string>& cells, const CsvColumns& columns, RowResidue& residue) {
  for (const std::size_t column : numberSources(columns)) {
    if (isUnassignedLabel(cellAt(cells, column))) {
      residue.unassigned = cellAt(cells, column);
      return;
    }
    auto label = readLabel(cellAt(cells, column), column == columns.assignment);
    if (!label || label->number.empty()) continue;
    residue.label = std::move(*label);
    residue.isByCounter = column == columns.counter;
    return;
  }
}

/// Tells whether a cell has no name; an unknown residue has one: "X", "?".
bool isNoName(const std::string& cell) {
  return isNoValue(cell) && cell != "?" && !equalIgnoringCase(cell, "X");
}

void findName(const std::vector<std::string>& cells, const CsvColumns& columns, RowResidue& residue) {
  std::vector<std::size_t> sources = {columns.name};
  sources.insert(sources.end(), columns.residues.begin(), columns.residues.end());
  const std::size_t ownColumns = sources.size();
  sources.insert(sources.end(), {columns.assignment, columns.number, columns.counter});
  for (std::size_t i = 0; i < sources.size(); ++i) {
    const std::string& cell = cellAt(cells, sources[i]);
    if (isNoName(cell)) continue;
    const auto label = readLabel(cell, sources[i] == columns.assignment);
    const bool isOfRow = label && (label->number.empty() || label->number == residue.label.number);
    if (isOfRow && !label->name.empty() && !isNoName(label->name)) {
      residue.name = label->name;
      if (residue.chain.empty()) residue.chain = label->chain;
      return;
    }
    // An unknown name is kept where another column gives the number.
    if (i < ownColumns && (!label || label->number != residue.label.number)) {
      residue.name = cell;
      return;
    }
  }
}

}  // namespace

RowResidue residueOf(const std::vector<std::string>& cells, const CsvColumns& columns) {
  RowResidue residue;
  residue.chain = cellAt(cells, columns.chain);
  findNumber(cells, columns, residue);
  if (residue.chain.empty()) residue.chain = residue.label.chain;
  if (!residue.unassigned.empty()) return residue;
  findName(cells, columns, residue);
  return residue;
}

std::string whyNotPlaced(const RowResidue& residue, const std::vector<std::string>& cells,
                         const CsvColumns& columns) {
  const bool hasNumber = !residue.label.number.empty();
  if (hasNumber && (!columns.lackAtoms() || !residue.label.atom.empty())) return {};
  const char* what = hasNumber ? " names no atom" : " is not a residue number";
  for (const std::size_t column : numberSources(columns))
    if (!cellAt(cells, column).empty()) return quotedCell(cellAt(cells, column)) + what;
  return quotedCell("") + what;
}

bool CsvColumns::areEnough() const {
  const bool hasShifts = areLong() || atoms.size() > 1;
  const bool hasResidue =
      number != kNoColumn || counter != kNoColumn || assignment != kNoColumn || !residues.empty();
  return hasShifts && hasResidue;
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
  if (number == kNoColumn && counter == kNoColumn && !hasLabel) parts.push_back("residue number (resid)");
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

ColumnAtom atomOfColumn(const std::string& name) {
  std::string own = withoutOwnIndex(name);
  const std::optional<int> offset = takeOffset(own);
  const std::string simple = simplified(own);
  if (simple == "1ha") return {"HA", offset};
  return {simple.empty() ? std::string() : atomOfSimplified(simple), offset};
}

CsvColumns readColumns(const std::vector<std::string>& names) {
  CsvColumns columns;
  ColumnTaker taker(names);
  columns.shift = taker.take(kShiftNames);
  columns.chain = taker.take(kChainNames);
  columns.number = taker.take(kNumberNames);
  columns.name = taker.take(kNameNames);
  columns.atom = taker.take(kAtomNames);
  while (columns.residues.size() < kMostResidueColumns) {
    const std::size_t residue = taker.take(kResidueNames);
    if (residue == kNoColumn) break;
    columns.residues.push_back(residue);
  }
  columns.counter = taker.take(kCounterNames);
  // A spreadsheet may count its rows to the left of all named columns.
  if (columns.counter == kNoColumn && !names.empty() && names.front().empty()) columns.counter = 0;
  addAtomColumns(names, taker, columns);
  if (columns.atoms.size() > 1 && !isLongForCertain(names, columns)) {
    becomeWide(names, taker, columns);
  } else {
    columns.atoms.clear();
    columns.doubled.clear();
    findAssignment(taker, columns);
  }
  takeWeakName(taker, columns);
  return columns;
}

}  // namespace zorvela
