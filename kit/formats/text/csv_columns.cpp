#include "formats/text/csv_columns.h"

#include <algorithm>
#include <map>
#include <string_view>

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

/// Returns the first column with one of these names, and clears its name: each column is given out once.
std::size_t take(std::string_view names, std::vector<std::string>& open) {
  const auto inOrder = splitCells(names, Separator::blank);
  for (const std::string& name : inOrder.value())
    if (const auto found = std::find(open.begin(), open.end(), name); found != open.end()) {
      found->clear();
      return static_cast<std::size_t>(found - open.begin());
    }
  return kNoColumn;
}

/// Returns the atom of a simplified name with nothing around it; empty if there is none.
std::string plainAtom(std::string_view name) {
  for (const AtomAlias& alias : kAtomAliases)
    if (alias.name == name) return std::string(alias.atom);
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
  const std::string plain = plainAtom(simplified(name));
  return !plain.empty() && plain == atom;
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
  std::size_t label = kNoColumn;
  if (!columns.haveResidue()) {
    label = take(kAssignmentNames, open);
    if (label == kNoColumn && columns.name == kNoColumn) label = nameColumn;
  }
  if (label != kNoColumn)
    columns.residues.push_back(label);
  else if (columns.name == kNoColumn)
    columns.name = nameColumn;
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
  while (columns.residues.size() < kMostResidueColumns) {
    const std::size_t residue = take(kResidueNames, open);
    if (residue == kNoColumn) break;
    columns.residues.push_back(residue);
  }
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

}  // namespace zorvela
