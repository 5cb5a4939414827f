// Reads NMR-STAR 2.1: molecules, their copies in the molecular system, crosslinks, shift sets.
#include <map>
#include <utility>

#include "formats/format.h"
#include "formats/star_chains.h"
#include "formats/star_document.h"
#include "util/text.h"

namespace zorvela {

using gemmi::cif::Block;

namespace {

std::string frameName(const std::string& name) {
  return "$" + name;
}

using Molecules = std::map<std::string, FileChain>;  ///< by save frame

void addResidues(const StarTable& table, FileChain& molecule) {
  const std::size_t key = table.column("_Residue_seq_code");
  const std::size_t number = table.column("_Residue_author_seq_code");
  const std::size_t name = table.column("_Residue_label");
  for (std::size_t row = 0; row < table.rows(); ++row) {
    FileResidue residue;
    residue.key = table.text(row, key);
    residue.number = table.text(row, number);
    residue.name = table.text(row, name);
    if (!residue.key.empty()) molecule.residues.push_back(std::move(residue));
  }
}

void useKeysAsNumbers(FileChain& molecule) {
  for (const FileResidue& residue : molecule.residues)
    if (!residue.number.empty()) return;
  for (FileResidue& residue : molecule.residues) residue.number = residue.key;
}

void readMolecule(const Block& frame, Molecules& molecules) {
  const std::string category = lower(frameValue(frame, "_Saveframe_category"));
  const StarTable pairs(frame);
  if (category != "monomeric_polymer" && category != "ligand" && !pairs.has("_Mol_residue_sequence") &&
      !pairs.has("_Mol_polymer_class"))
    return;
  FileChain molecule;
  molecule.molecule = frameValue(frame, "_Name_common");
  molecule.kind = frameValue(frame, "_Mol_polymer_class");
  if (molecule.kind.empty() && category == "ligand") molecule.kind = "non-polymer";
  molecule.polymer = polymerOfWords(molecule.kind);
  molecule.thiol = thiolOfWords(frameValue(frame, "_Mol_thiol_state"));
  for (const StarTable& table : tablesWith(frame, "_Residue_seq_code")) addResidues(table, molecule);
  if (molecule.residues.empty())
    molecule.residues = residuesOfLetters(frameValue(frame, "_Mol_residue_sequence"));
  useKeysAsNumbers(molecule);
  molecules.emplace(frame.name, std::move(molecule));
}

void addCopy(FileChain chain, const std::string& component, const std::string& label, ChainFinder& finder) {
  chain.name = component;
  chain.aliases = {label, chain.molecule, std::to_string(finder.count() + 1)};
  const std::size_t index = finder.add(component, std::move(chain));
  finder.alias(frameName(label), index);
}

void readSystem(const Block& frame, const Molecules& molecules, ShiftFile& file, ChainFinder& finder) {
  const Thiol ofAll = thiolOfWords(frameValue(frame, "_System_thiol_state"));
  noteCautions(frameValue(frame, "_Mol_system_name"), frameValue(frame, "_System_physical_state"),
               frameValue(frame, "_System_paramagnetic"), file.notes);
  for (const StarTable& table : tablesWith(frame, "_Mol_label")) {
    const std::size_t component = table.column("_Mol_system_component_name");
    const std::size_t label = table.column("_Mol_label");
    if (component == StarTable::kAbsent) continue;
    for (std::size_t row = 0; row < table.rows(); ++row) {
      const std::string name = withoutDollar(table.text(row, label));
      const auto molecule = molecules.find(name);
      FileChain chain = molecule != molecules.end() ? molecule->second : FileChain();
      if (chain.thiol == Thiol::unknown) chain.thiol = ofAll;
      addCopy(std::move(chain), table.text(row, component), name, finder);
    }
  }
}

/// The chain of a component name, which some entries replace by the molecule's label.
std::size_t chainOf(const std::string& component, const ChainFinder& finder) {
  const std::size_t byName = finder.find(component);
  return byName != kNoChain ? byName : finder.find(frameName(withoutDollar(component)));
}

/// A chain for a shift list that was cut out of its entry.
std::size_t addUndescribed(const std::string& component, ChainFinder& finder) {
  addCopy(FileChain(), component, component, finder);
  return finder.count() - 1;
}

void readShifts(const StarTable& table, const std::string& component, std::vector<FileShift>& shifts,
                ChainFinder& finder) {
  const std::size_t ownComponent = table.column("_Mol_system_component_name");
  const std::size_t key = table.column("_Residue_seq_code");
  const std::size_t number = table.column("_Residue_author_seq_code");
  const std::size_t name = table.column("_Residue_label");
  const std::size_t atom = table.column("_Atom_name");
  const std::size_t value = table.column("_Chem_shift_value");
  const std::size_t ambiguity = table.column("_Chem_shift_ambiguity_code");
  for (std::size_t row = 0; row < table.rows(); ++row) {
    FileShift shift;
    const std::string rowComponent = table.text(row, ownComponent);
    const std::string chain = rowComponent.empty() ? component : rowComponent;
    shift.chain = chain.empty() ? kNoChain : chainOf(chain, finder);
    if (finder.count() == 0) shift.chain = addUndescribed(chain, finder);
    shift.key = table.text(row, key);
    shift.number = table.text(row, number);
    shift.residueName = table.text(row, name);
    shift.atom = table.text(row, atom);
    shift.value = table.text(row, value);
    shift.ambiguity = table.text(row, ambiguity);
    shifts.push_back(std::move(shift));
  }
}

void readList(const Block& frame, ShiftFile& file, ChainFinder& finder) {
  FileShiftList list;
  list.name = listName(frame);
  const std::string component = frameValue(frame, "_Mol_system_component_name");
  // The loop of the reference compounds has the tag as well, but no atom names.
  for (const StarTable& table : tablesWith(frame, "_Chem_shift_value"))
    if (table.has("_Atom_name")) readShifts(table, component, list.shifts, finder);
  if (list.shifts.empty()) return;
  list.aliases = {std::to_string(file.lists.size() + 1)};
  file.lists.push_back(std::move(list));
}

void addBondEnd(const std::string& component, const std::string& key, ShiftFile& file,
                const ChainFinder& finder) {
  const std::size_t named = component.empty() ? kNoChain : chainOf(component, finder);
  if (named != kNoChain)
    file.chains[named].disulfides.push_back(key);
  else if (file.chains.size() == 1)
    file.chains.front().disulfides.push_back(key);
}

void readCrosslinks(const Block& frame, ShiftFile& file, const ChainFinder& finder) {
  for (const StarTable& table : tablesWith(frame, "_Atom_one_residue_seq_code")) {
    const auto cell = [&](std::size_t row, const std::string& tag) {
      return table.text(row, table.column(tag));
    };
    for (std::size_t row = 0; row < table.rows(); ++row) {
      if (!isDisulfideBond(cell(row, "_Bond_type"), cell(row, "_Atom_one_atom_name"),
                           cell(row, "_Atom_two_atom_name")))
        continue;
      for (const std::string end : {"_Atom_one_", "_Atom_two_"})
        addBondEnd(cell(row, end + "mol_system_component_name"), cell(row, end + "residue_seq_code"), file,
                   finder);
    }
  }
}

}  // namespace

bool isNmrStar2(const Source& source) {
  if (!source.star) return false;
  for (const Block* frame : framesOf(*source.star))
    if (!tablesWith(*frame, "_Saveframe_category").empty() ||
        !tablesWith(*frame, "_Chem_shift_value").empty())
      return true;
  return false;
}

ShiftFile readNmrStar2(const Source& source) {
  const std::vector<const Block*> frames = framesOf(*source.star);
  ShiftFile file;
  ChainFinder finder(file.chains, source.file);
  Molecules molecules;
  for (const Block* frame : frames) readMolecule(*frame, molecules);
  for (const Block* frame : frames) readSystem(*frame, molecules, file, finder);
  // A molecule that the system does not list is still one copy of itself.
  for (const auto& [name, molecule] : molecules)
    if (finder.find(frameName(name)) == kNoChain) addCopy(molecule, name, name, finder);
  for (const Block* frame : frames) readList(*frame, file, finder);
  for (const Block* frame : frames) readCrosslinks(*frame, file, finder);
  for (FileShiftList& list : file.lists) placeByNames(list.shifts, file.chains, file.notes);
  makeNamesDiffer(file.chains);
  file.contents = starContents(*source.star);
  return file;
}

}  // namespace zorvela
