// The deuteration of a sample, from a shift file and from a table's remark.
#include "protein/remarks.h"

#include <gtest/gtest.h>

#include <sstream>

#include "zorvela/read.h"

namespace zorvela {
namespace {

const std::string kEntity3 =
    "data_x\nsave_protein\n_Entity.ID 1\n_Entity.Name Thing\n_Entity.Polymer_type polypeptide(L)\n"
    "_Entity.Polymer_seq_one_letter_code MKPV\nsave_\n";
const std::string kShifts3 =
    "save_shifts\nloop_\n_Atom_chem_shift.Entity_ID\n_Atom_chem_shift.Comp_index_ID\n_Atom_chem_shift.Comp_"
    "ID\n"
    "_Atom_chem_shift.Atom_ID\n_Atom_chem_shift.Val\n1 3 PRO CA 62.31\nstop_\n";

/// A sample of the number and labelling; the molecule is named by its number, its frame, or its common name.
std::string sample3(const std::string& id, const std::string& molecule, const std::string& words) {
  return "save_sample_" + id + "\n_Sample.ID " + id +
         "\nloop_\n_Sample_component.Mol_common_name\n_Sample_component.Entity_ID\n"
         "_Sample_component.Entity_label\n_Sample_component.Isotopic_labeling\n" +
         molecule + " '" + words + "'\nD2O . . '[U-100% 2H]'\nstop_\nsave_\n";
}

std::string experiments3(const std::string& columns, const std::string& values) {
  return "loop_\n_Chem_shift_experiment." + columns + "\n" + values + "\nstop_\n";
}

Protein read(const std::string& text) {
  return readShiftBytes(text, "x.str", {}).at(0);
}

Protein proteinOf(const std::string& samples, const std::string& experiments = "") {
  return read(kEntity3 + samples + kShifts3 + experiments + "save_\n");
}

TEST(Deuteration, IsThatOfTheMoleculeInTheSample) {
  for (const char* molecule : {". 1 .", ". . $protein", "thing . ."})
    EXPECT_DOUBLE_EQ(proteinOf(sample3("1", molecule, "[U-13C; U-80% 2H]")).deuteration, 0.8) << molecule;
  EXPECT_EQ(proteinOf(sample3("1", "other 2 .", "[U-2H]")).deuteration, 0);
  EXPECT_EQ(proteinOf(sample3("1", ". 1 .", "[U-13C]")).deuteration, 0) << "water alone is deuterated";
}

TEST(Deuteration, IsThatOfTheSamplesOfTheList) {
  const std::string two = sample3("1", ". 1 .", "[U-13C]") + sample3("2", ". 1 .", "[U-13C; U-2H]");
  EXPECT_EQ(proteinOf(two, experiments3("Sample_ID", "1")).deuteration, 0);
  EXPECT_EQ(proteinOf(two, experiments3("Sample_ID", "2")).deuteration, 1);
  EXPECT_EQ(proteinOf(two, experiments3("Sample_label", "$sample_2")).deuteration, 1);
  const Protein both = proteinOf(two, experiments3("Sample_ID", "1\n2"));
  EXPECT_EQ(both.deuteration, 0);
  EXPECT_NE(both.notes.at(0).find("differ in deuterium"), std::string::npos) << both.notes[0];
}

TEST(Deuteration, IsReadFromTheOlderFormat) {
  const std::string text =
      "data_x\nsave_thing\n_Saveframe_category monomeric_polymer\n_Mol_polymer_class protein\n"
      "_Mol_residue_sequence MKPV\nsave_\n"
      "save_system\n_Saveframe_category molecular_system\nloop_\n_Mol_system_component_name\n_Mol_label\n"
      "chain $thing\nstop_\nsave_\n"
      "save_dry\n_Saveframe_category sample\nloop_\n_Mol_label\n_Isotopic_labeling\n$thing "
      "[U-13C]\nstop_\nsave_\n"
      "save_wet\n_Saveframe_category sample\nloop_\n_Mol_label\n_Isotopic_labeling\n$thing '[U-13C; U-70% "
      "2H]'\n"
      "D2O .\nstop_\nsave_\n"
      "save_shifts\n_Saveframe_category assigned_chemical_shifts\n_Mol_system_component_name chain\n"
      "loop_\n_Sample_label\n$wet\nstop_\n"
      "loop_\n_Residue_seq_code\n_Residue_label\n_Atom_name\n_Chem_shift_value\n3 PRO CA "
      "62.3\nstop_\nsave_\n";
  EXPECT_DOUBLE_EQ(read(text).deuteration, 0.7);
}

TEST(Deuteration, StaysInTheTable) {
  const Protein protein = proteinOf(sample3("1", ". 1 .", "[U-13C; U-85% 2H]"));
  std::ostringstream table;
  writeShiftTable(protein, table);
  EXPECT_NE(table.str().find("REMARK Deuterated: 85 % of the hydrogens on carbon\n"), std::string::npos)
      << table.str();
  EXPECT_DOUBLE_EQ(readShiftBytes(table.str(), "x.tab", {}).at(0).deuteration, 0.85);
}

TEST(Deuteration, OfRemarksIsAShare) {
  EXPECT_EQ(deuterationFromRemarks({"x", " Deuterated: 70 % of the hydrogens on carbon "}), 0.7);
  EXPECT_EQ(deuterationFromRemarks({"Deuterated: 170 % of the hydrogens on carbon"}), 1);
  for (const char* remark :
       {"Deuterated: -5 % of the hydrogens on carbon", "Deuterated: a % of the hydrogens on carbon",
        "Deuterated", "Deuterated:  % of the hydrogens on carbon"})
    EXPECT_EQ(deuterationFromRemarks({remark}), 0) << remark;
}

TEST(Deuteration, ThatIsNoLongerThereHasNoRemark) {
  Protein protein;
  protein.remarks = {"a"};
  setDeuteration(0.5, protein);
  EXPECT_EQ(protein.remarks, (std::vector<std::string>{"a", "Deuterated: 50 % of the hydrogens on carbon"}));
  setDeuteration(0, protein);
  EXPECT_EQ(protein.remarks, std::vector<std::string>{"a"});
}

}  // namespace
}  // namespace zorvela
