// Which column of a CSV file holds what.
#include "formats/text/csv_columns.h"

#include <gtest/gtest.h>

namespace {

using zorvela::atomOfColumn;
using zorvela::splitCells;

/// "CA", or "CA-1" of the residue before.
std::string shownAtom(const zorvela::AtomColumn& one) {
  if (!one.offset || one.atom.empty()) return one.atom;
  return one.atom + (*one.offset < 0 ? "" : "+") + std::to_string(*one.offset);
}

/// Returns the use of each column of a header with bars: "number name CA - ", with "-" for no use.
std::string uses(const char* header) {
  const auto names = splitCells(header, zorvela::Separator::bar).value();
  const zorvela::CsvColumns columns = zorvela::readColumns(names);
  std::vector<std::string> uses(names.size(), "-");
  const std::pair<std::size_t, const char*> places[] = {
      {columns.number, "number"}, {columns.counter, "counter"}, {columns.name, "name"},
      {columns.atom, "atom"},     {columns.shift, "shift"},     {columns.assignment, "assignment"}};
  for (const auto& [column, use] : places)
    if (column != zorvela::kNoColumn) uses[column] = use;
  for (const std::size_t column : columns.residues) uses[column] = "residue";
  for (const zorvela::AtomColumn& one : columns.atoms) uses[one.column] = shownAtom(one);
  std::string text = columns.areEnough() ? "" : "lacks " + columns.missing() + ": ";
  for (const std::string& use : uses) text += (&use == &uses.front() ? "" : " ") + use;
  return text;
}

TEST(CsvColumns, HaveManyNames) {
  const char* const cases[][2] = {
      {"resid|resname|atom|shift", "number name atom shift"},
      {"Res. ID|Residue Name|Atom Name|Chemical Shift (ppm)", "number name atom shift"},
      {"seq|aa|name|cs", "residue residue atom shift"},
      {"number|res_type|atom_name|value", "counter name atom shift"},
      {"Comp_index_ID|Comp_ID|Atom_ID|Val", "number name atom shift"},
      {"_Atom_chem_shift.Seq_ID|_Atom_chem_shift.Comp_ID|_Atom_chem_shift.Atom_ID|_Atom_chem_shift.Val",
       "number name atom shift"},
      {"resnum|type|atom|ppm", "number name atom shift"},
      // One column for name and number.
      {"residue|atom|shift", "residue atom shift"},
      {"residue|type|atom|shift", "residue residue atom shift"},
      {"res|residue|atom|shift", "residue residue atom shift"},
      // One column per atom. "delta" beside them is not a column of shifts, and "name" is the residue's.
      {"resid|aa|N|HN|CA|comment", "number residue N HN CA -"},
      {"resid|name|N|CA|delta", "number name N CA -"},
      {"resid|aa|HA-1|HA-2|CA-1", "number residue HA1 HA2 CA-1"},
      // A counter may be the number.
      {"#|aa|N|CA", "counter residue N CA"},
      {"Index|aa|N|CA", "counter residue N CA"},
      {"no.|aa|N|CA", "counter residue N CA"},
      {"||aa|N|CA", "counter residue N CA"},
      {"res #|aa|N|CA", "number residue N CA"}};
  for (const auto& [header, expected] : cases) EXPECT_EQ(uses(header), expected) << header;
}

TEST(CsvColumns, AtomsHaveManyNames) {
  const char* const cases[][2] = {
      {"CA",
       "CA|ca|C\u03b1|CA (ppm)|CA [ppm]|CA_ppm|13CA|\u00b9\u00b3C\u03b1|dCA|\u03b4CA|d(CA)|CA shift|shift CA|"
       "delta 13CA (ppm)|Calpha|C-alpha|CA(i)|CA(I)|CA [i]|CA(i) (ppm)"},
      {"C", "C|C'|C\u2032|CO|13CO|13C'|CO (ppm)"},
      {"CG", "CG|CG(Pro)|Pro CG|C\u03b3|Cgamma"},
      {"HN", "H|HN|1HN|H (ppm)"},
      {"N", "15N|N15|N"},
      {"HA2", "HA2"},
      {"CA-1", "CA-1|CA(i-1)|CA (i-1)|CA[i-1]|CAi-1|CA(-1)|CA_i-1|CA-1 (ppm)|C\u03b1(i\u22121)|13CA(i-1)"},
      {"HA-1", "HA-1"},
      {"HN-1", "HN-1"},
      {"N-1", "N-1"},
      {"C+1", "CO+1"},
      {"CB+0", "CB+0"},
      // Any carbon, a difference, a letter that was lost, a side chain, or more than the atom.
      {"", "13C|\u0394CA|\u2206CA|C?|C\ufffd|CD|CA error|CA-CB|NH|CB(Cys)|(i)|-1|13C-1|1H-15N| "}};
  for (const auto& [atom, names] : cases) {
    const auto split = splitCells(names, zorvela::Separator::bar).value();
    for (const std::string& name : split) EXPECT_EQ(shownAtom(atomOfColumn(name)), atom) << name;
  }
}

}  // namespace
