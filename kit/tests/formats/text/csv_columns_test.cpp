// Which column of a CSV file holds what.
#include "formats/text/csv_columns.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

/// Tells whether a column gives the number or the name of the residue, or either.
bool saysResidue(const zorvela::CsvColumns& columns, std::size_t column) {
  return columns.number == column || columns.counter == column || columns.name == column ||
         std::find(columns.residues.begin(), columns.residues.end(), column) != columns.residues.end();
}

TEST(CsvColumns, UsualNames) {
  const char* headers[][4] = {{"resid", "resname", "atom", "shift"},
                              {"Res. ID", "Residue Name", "Atom Name", "Chemical Shift (ppm)"},
                              {"seq", "aa", "name", "cs"},
                              {"number", "res_type", "atom_name", "value"},
                              {"Comp_index_ID", "Comp_ID", "Atom_ID", "Val"},
                              {"_Atom_chem_shift.Seq_ID", "_Atom_chem_shift.Comp_ID",
                               "_Atom_chem_shift.Atom_ID", "_Atom_chem_shift.Val"},
                              {"resnum", "type", "atom", "ppm"}};
  for (const auto& header : headers) {
    const auto columns = zorvela::readColumns({header[0], header[1], header[2], header[3]});
    EXPECT_TRUE(columns.areEnough()) << header[0];
    EXPECT_TRUE(saysResidue(columns, 0)) << header[0];
    EXPECT_TRUE(saysResidue(columns, 1)) << header[0];
    EXPECT_EQ(columns.atom, 2U) << header[0];
    EXPECT_EQ(columns.shift, 3U) << header[0];
  }
}

TEST(CsvColumns, OneColumnForNameAndNumber) {
  const auto columns = zorvela::readColumns({"residue", "atom", "shift"});
  EXPECT_TRUE(columns.areEnough());
  EXPECT_EQ(columns.residues, std::vector<std::size_t>{0});
  const auto weak = zorvela::readColumns({"residue", "type", "atom", "shift"});
  EXPECT_EQ(weak.residues, (std::vector<std::size_t>{0, 1}));
  const auto two = zorvela::readColumns({"res", "residue", "atom", "shift"});
  EXPECT_EQ(two.residues, (std::vector<std::size_t>{0, 1}));
}

TEST(CsvColumns, OneColumnPerAtom) {
  const auto columns = zorvela::readColumns({"resid", "aa", "N", "HN", "CA", "comment"});
  EXPECT_TRUE(columns.areEnough());
  ASSERT_EQ(columns.atoms.size(), 3U);
  EXPECT_EQ(columns.atoms[0].column, 2U);
  EXPECT_EQ(columns.atoms[0].atom, "N");
  EXPECT_EQ(columns.atoms[2].column, 4U);
  EXPECT_EQ(columns.atoms[2].atom, "CA");
  // "delta" beside them is not a column of shifts, and "name" is the residue's.
  const auto wide = zorvela::readColumns({"resid", "name", "N", "CA", "delta"});
  EXPECT_FALSE(wide.areLong());
  EXPECT_EQ(wide.name, 1U);
}

/// The atom of a column with the shifts of its own residue.
std::string atomOfColumn(const char* name) {
  const zorvela::AtomColumn atom = zorvela::atomOfColumn(name);
  return atom.offset && !atom.atom.empty() ? "another residue" : atom.atom;
}

TEST(CsvColumns, AtomsOfNeighbours) {
  for (const char* name : {"CA-1", "CA(i-1)", "CA (i-1)", "CA[i-1]", "CAi-1", "CA(-1)", "CA_i-1",
                           "CA-1 (ppm)", "C\u03b1(i\u22121)", "13CA(i-1)"}) {
    EXPECT_EQ(zorvela::atomOfColumn(name).atom, "CA") << name;
    EXPECT_EQ(zorvela::atomOfColumn(name).offset, -1) << name;
  }
  EXPECT_EQ(zorvela::atomOfColumn("HA-1").atom, "HA");
  EXPECT_EQ(zorvela::atomOfColumn("HN-1").atom, "HN");
  EXPECT_EQ(zorvela::atomOfColumn("N-1").atom, "N");
  EXPECT_EQ(zorvela::atomOfColumn("CO+1").offset, 1);
  EXPECT_EQ(zorvela::atomOfColumn("CB+0").offset, 0);
  const auto protons = zorvela::readColumns({"resid", "aa", "HA-1", "HA-2", "CA-1"});
  ASSERT_EQ(protons.atoms.size(), 3U);
  EXPECT_EQ(protons.atoms[0].atom, "HA1");
  EXPECT_FALSE(protons.atoms[0].offset);
}

TEST(CsvColumns, AtomsUnderOtherNames) {
  for (const char* name : {"CA",       "ca",
                           "C\u03b1",  "CA (ppm)",
                           "CA [ppm]", "CA_ppm",
                           "13CA",     "\u00b9\u00b3C\u03b1",
                           "dCA",      "\u03b4CA",
                           "d(CA)",    "CA shift",
                           "shift CA", "delta 13CA (ppm)",
                           "Calpha",   "C-alpha",
                           "CA(i)",    "CA(I)",
                           "CA [i]",   "CA(i) (ppm)"})
    EXPECT_EQ(atomOfColumn(name), "CA") << name;
  for (const char* name : {"C", "C'", "C\u2032", "CO", "13CO", "13C'", "CO (ppm)"})
    EXPECT_EQ(atomOfColumn(name), "C") << name;
  for (const char* name : {"CG", "CG(Pro)", "Pro CG", "C\u03b3", "Cgamma"})
    EXPECT_EQ(atomOfColumn(name), "CG") << name;
  for (const char* name : {"H", "HN", "1HN", "H (ppm)"}) EXPECT_EQ(atomOfColumn(name), "HN") << name;
  for (const char* name : {"15N", "N15", "N"}) EXPECT_EQ(atomOfColumn(name), "N") << name;
  EXPECT_EQ(atomOfColumn("HA2"), "HA2");
  // Any carbon, a difference, a letter that was lost, a side chain, or more than the atom.
  for (const char* name : {"13C", "\u0394CA", "\u2206CA", "C?", "C\ufffd", "CD", "CA error", "CA-CB", "NH",
                           "CB(Cys)", "(i)", "-1", "13C-1", "1H-15N", ""})
    EXPECT_EQ(atomOfColumn(name), "") << name;
}

TEST(CsvColumns, ACounterMayBeTheNumber) {
  for (const char* name : {"#", "Index", "no.", ""}) {
    const auto columns = zorvela::readColumns({name, "aa", "N", "CA"});
    EXPECT_TRUE(columns.areEnough()) << name;
    EXPECT_EQ(columns.counter, 0U) << name;
  }
  EXPECT_EQ(zorvela::readColumns({"res #", "aa", "N", "CA"}).number, 0U);
}

}  // namespace
