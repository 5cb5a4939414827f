#include "formats/csv_columns.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

#include "protein/nomenclature.h"
#include "util/text.h"

namespace zorvela {

namespace {

using Aliases = std::initializer_list<const char*>;

// In order of trust: where a file has several, the first wins.
const Aliases kNumberNames = {"resid",        "residueid",   "resnum", "residuenumber", "residuenum",
                              "resno",        "residueno",   "resnr",  "residuenr",     "resseq",
                              "resi",         "compindexid", "seqid",  "seqcode",       "residueseqcode",
                              "sequencecode", "seqnum",      "seqno",  "seqnr",         "sequencenumber",
                              "authseqid",    "seq",         "number", "num",           "nr",
                              "position",     "pos",         "no"};
const Aliases kNameNames = {"resname", "residuename",  "restype",       "residuetype", "resn",
                            "compid",  "residuelabel", "residuelabel3", "aminoacid",   "aatype",
                            "aa",      "3letter",      "1letter"};
const Aliases kResidueNames = {"residue", "res", "group"};
const Aliases kWeakNameNames = {"type", "name"};
const Aliases kAtomNames = {"atom", "atomname", "atomid", "atomtypename", "name"};
const Aliases kShiftNames = {
    "shift",        "chemicalshift", "chemshift",      "shiftppm",           "chemicalshiftppm",
    "chemshiftppm", "chemshiftval",  "chemshiftvalue", "chemicalshiftvalue", "cs",
    "csppm",        "val",           "value",          "valueppm",           "ppm",
    "deltappm",     "delta"};
const Aliases kChainNames = {"chain",
                             "chainid",
                             "chaincode",
                             "chainname",
                             "segid",
                             "segment",
                             "asymid",
                             "authasymid",
                             "entityassemblyasymid",
                             "entityassemblyid",
                             "entity",
                             "entityid",
                             "molecule",
                             "mol"};
// Atoms of the table under another name.
const Aliases kOtherAtomNames = {"H", "HA1", "CO", "C'"};

// "Atom_chem_shift.Comp_index_ID" and "comp index ID" are the same.
std::string simplified(const std::string& name) {
  std::string result;
  const std::size_t dot = name.find_last_of('.');
  const bool hasCategory =
      dot != std::string::npos && dot > 0 && dot + 1 < name.size() && name[dot + 1] != ' ';
  for (const char c : lower(hasCategory ? name.substr(dot + 1) : name))
    if (isLetter(c) || isDigit(c) || c == '\'') result.push_back(c);
  return result;
}

/// Takes columns away, so that none serves twice.
class ColumnTaker {
 public:
  explicit ColumnTaker(const std::vector<std::string>& names) {
    for (const std::string& name : names) free.push_back(simplified(name));
  }

  std::size_t take(Aliases aliases) {
    for (const char* alias : aliases)
      for (std::size_t i = 0; i < free.size(); ++i)
        if (free[i] == alias) {
          free[i].clear();
          return i;
        }
    return kNoColumn;
  }

  const std::string& nameAt(std::size_t i) const { return free[i]; }

 private:
  std::vector<std::string> free;
};

bool isAtomColumn(const std::string& name) {
  return isTableAtom(name) ||
         std::find(kOtherAtomNames.begin(), kOtherAtomNames.end(), name) != kOtherAtomNames.end();
}

}  // namespace

bool CsvColumns::areEnough() const {
  const bool hasShifts = (atom != kNoColumn && shift != kNoColumn) || atoms.size() > 1;
  return hasShifts && (number != kNoColumn || !residues.empty());
}

std::string CsvColumns::missing() const {
  std::vector<std::string> parts;
  if (number == kNoColumn && residues.empty()) parts.push_back("residue number (resid)");
  if (name == kNoColumn && residues.empty()) parts.push_back("residue name (resname)");
  if (atom == kNoColumn) parts.push_back("atom name (atom)");
  if (shift == kNoColumn) parts.push_back("chemical shift (shift)");
  return enumerated(parts);
}

CsvColumns readColumns(const std::vector<std::string>& names) {
  ColumnTaker taker(names);
  CsvColumns columns;
  columns.shift = taker.take(kShiftNames);
  columns.chain = taker.take(kChainNames);
  columns.number = taker.take(kNumberNames);
  columns.name = taker.take(kNameNames);
  columns.atom = taker.take(kAtomNames);
  while (columns.number == kNoColumn || columns.name == kNoColumn) {
    const std::size_t residue = taker.take(kResidueNames);
    if (residue == kNoColumn || columns.residues.size() == 2) break;
    columns.residues.push_back(residue);
  }
  if (columns.name == kNoColumn && columns.residues.empty()) columns.name = taker.take(kWeakNameNames);
  // Beside a column that may hold both, "type" counts only where that one gives no name.
  if (columns.name == kNoColumn)
    if (const std::size_t weak = taker.take(kWeakNameNames); weak != kNoColumn)
      columns.residues.push_back(weak);
  if (columns.atom == kNoColumn || columns.shift == kNoColumn)
    for (std::size_t i = 0; i < names.size(); ++i)
      if (const std::string atom = upper(taker.nameAt(i)); isAtomColumn(atom))
        columns.atoms.emplace_back(i, atom);
  return columns;
}

}  // namespace zorvela
