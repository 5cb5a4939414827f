// Reads NMR-STAR 2.1: molecules, their copies in the molecular system, crosslinks, shift sets.
#include <map>
#include <set>
#include <utility>

#include "formats/format.h"
#include "formats/star/samples.h"
#include "formats/star/star_chains.h"
#include "formats/star/star_document.h"
#include "util/text.h"

namespace zorvela {

namespace {

std::string frameName(const std::string& name) {
  return "$" + name;
}

/// Returns the author's number of a residue; empty for "@".
std::string authorNumber(const StarColumn& column, std::size_t row) {
  std::string number = column.word(row);
  return number == "@" ? std::string() : number;
}

using Molecules = std::map<std::string, FileChain>;  ///< by save frame

void addResidues(const StarTable& table, FileChain& molecule, const ChainFinder& finder) {
  const StarColumn key = table.column("_Residue_seq_code");
  const StarColumn number = table.column("_Residue_author_seq_code");
  const StarColumn name = table.column("_Residue_label");
  for (std::size_t row = 0; row < table.rows(); ++row) {
    FileResidue residue{key.word(row), authorNumber(number, row), name.word(row)};
    if (residue.key.empty()) continue;
    checkLimit(molecule.residues.size() + 1, limits::kResidues, finder.file());
    molecule.residues.push_back(std::move(residue));
  }
}

void readMolecule(const StarFrame& frame, Molecules& molecules, ShiftFile& file, const ChainFinder& finder) {
  const std::string category = lower(frameValue(frame, "_Saveframe_category"));
  const StarTable pairs(frame);
  if (category != "monomeric_polymer" && category != "ligand" && !pairs.has("_Mol_residue_sequence") &&
      !pairs.has("_Mol_polymer_class"))
    return;
  FileChain molecule;
  molecule.molecule = nameOf(frameValue(frame, "_Name_common"), file.notes);
  molecule.kind = nameOf(frameValue(frame, "_Mol_polymer_class"), file.notes);
  if (molecule.kind.empty() && category == "ligand") molecule.kind = "non-polymer";
  molecule.polymer = polymerOfWords(molecule.kind);
  molecule.thiol = thiolOfWords(frameValue(frame, "_Mol_thiol_state"));
  for (const StarTable& table : tablesOf(frame, "_Residue_seq_code")) addResidues(table, molecule, finder);
  if (molecule.residues.empty())
    molecule.residues = residuesOfLetters(frameValue(frame, "_Mol_residue_sequence"));
  std::size_t residues = molecule.residues.size();
  for (const auto& [name, other] : molecules) residues += other.residues.size();
  checkLimit(residues, limits::kResidues, finder.file());
  checkLimit(molecules.size() + 1, limits::kMolecules, finder.file());
  molecules.emplace(nameOf(frame.name(), file.notes), std::move(molecule));
}

void addCopy(FileChain chain, const std::string& component, const std::string& label, ChainFinder& finder) {
  chain.name = component;
  chain.aliases = {label, chain.molecule, std::to_string(finder.chains.size() + 1)};
  const std::size_t index = finder.add(component, std::move(chain));
  finder.alias(frameName(label), index);
}

void readSystem(const StarFrame& frame, const Molecules& molecules, ShiftFile& file, ChainFinder& finder) {
  const Thiol ofAll = thiolOfWords(frameValue(frame, "_System_thiol_state"));
  noteCautions(frameValue(frame, "_Mol_system_name"), frameValue(frame, "_System_physical_state"),
               frameValue(frame, "_System_paramagnetic"), file.notes);
  for (const StarTable& table : tablesOf(frame, "_Mol_label")) {
    if (!table.has("_Mol_system_component_name")) continue;
    const StarColumn component = table.column("_Mol_system_component_name");
    const StarColumn label = table.column("_Mol_label");
    for (std::size_t row = 0; row < table.rows(); ++row) {
      const std::string name = withoutDollar(nameOf(label.text(row), file.notes));
      const auto molecule = molecules.find(name);
      FileChain chain = molecule != molecules.end() ? molecule->second : FileChain();
      if (chain.thiol == Thiol::unknown) chain.thiol = ofAll;
      addCopy(std::move(chain), nameOf(component.text(row), file.notes), name, finder);
    }
  }
}

/// Returns the chain of a component name, which some entries replace by the molecule's label.
std::size_t chainOf(const std::string& component, const ChainFinder& finder) {
  const std::size_t byName = finder.find(component);
  return byName != kNoChain ? byName : finder.find(frameName(withoutDollar(component)));
}

void readShifts(const StarTable& table, const std::string& component, FileShiftList& list, ShiftFile& file,
                ChainFinder& finder) {
  const StarColumn ownComponent = table.column("_Mol_system_component_name");
  const StarColumn key = table.column("_Residue_seq_code");
  const StarColumn number = table.column("_Residue_author_seq_code");
  const StarColumn name = table.column("_Residue_label");
  const StarColumn atom = table.column("_Atom_name");
  const StarColumn value = table.column("_Chem_shift_value");
  const StarColumn ambiguity = table.column("_Chem_shift_ambiguity_code");
  const std::size_t rows = table.rows();
  finder.reserveRows(list, rows);
  for (std::size_t row = 0; row < rows; ++row) {
    FileShift shift;
    const std::string rowComponent = nameOf(ownComponent.text(row), file.notes);
    const std::string chain = rowComponent.empty() ? component : rowComponent;
    shift.chain = chain.empty() ? kNoChain : chainOf(chain, finder);
    if (finder.chains.empty()) {  // the list was cut out of its entry
      addCopy(FileChain(), chain, chain, finder);
      shift.chain = 0;
    }
    shift.key = key.word(row);
    shift.number = authorNumber(number, row);
    shift.residueName = name.word(row);
    shift.atom = atom.word(row);
    shift.value = value.word(row);
    shift.ambiguity = ambiguity.word(row);
    list.shifts.push_back(std::move(shift));
  }
}

std::vector<LabelledMolecule> readSamples(const std::vector<StarFrame>& frames, const ChainFinder& finder) {
  std::vector<LabelledMolecule> molecules;
  for (const StarFrame& frame : frames)
    for (const StarTable& table : tablesOf(frame, "_Isotopic_labeling"))
      for (std::size_t row = 0; row < table.rows(); ++row) {
        const std::string label = withoutDollar(table.column("_Mol_label").word(row));
        if (finder.find(frameName(label)) == kNoChain) continue;  // water, buffer
        const std::string words = table.column("_Isotopic_labeling").text(row);
        molecules.push_back({label, {frame.name()}, printable(words), labellingOf(words)});
        checkLimit(molecules.size(), limits::kMolecules, finder.file());
      }
  return molecules;
}

/// Returns the share of deuterons of each chain in the samples that a list names.
std::map<std::size_t, double> deuterationByChain(const StarFrame& list, const std::string& name,
                                                 const std::vector<LabelledMolecule>& molecules,
                                                 const ChainFinder& finder, std::vector<std::string>& notes) {
  std::set<std::string> samples;
  for (const StarTable& table : tablesOf(list, "_Sample_label"))
    for (std::size_t row = 0; row < table.rows(); ++row)
      samples.insert(withoutDollar(table.column("_Sample_label").word(row)));
  const auto ofMolecule = deuterationOf(molecules, samples, name, notes);
  std::map<std::size_t, double> shares;
  for (std::size_t chain = 0; chain < finder.chains.size(); ++chain)
    if (const auto share = ofMolecule.find(finder.chains[chain].aliases.front()); share != ofMolecule.end())
      shares.emplace(chain, share->second);
  return shares;
}

void readList(const StarFrame& frame, const std::vector<LabelledMolecule>& molecules, ShiftFile& file,
              ChainFinder& finder) {
  FileShiftList list;
  list.name = nameOf(frame.name(), file.notes);
  const std::string component = nameOf(frameValue(frame, "_Mol_system_component_name"), file.notes);
  // The loop of the reference compounds has the tag too, but no atom names.
  for (const StarTable& table : tablesOf(frame, "_Chem_shift_value"))
    if (table.has("_Atom_name")) readShifts(table, component, list, file, finder);
  if (list.shifts.empty()) return;
  list.aliases = {std::to_string(file.lists.size() + 1)};
  list.deuteration = deuterationByChain(frame, list.name, molecules, finder, file.notes);
  addList(std::move(list), file, finder.file());
}

void readCrosslinks(const StarFrame& frame, ChainFinder& finder) {
  for (const StarTable& table : tablesOf(frame, "_Atom_one_residue_seq_code"))
    for (std::size_t row = 0; row < table.rows(); ++row) {
      const auto cell = [&](const std::string& tag) { return table.column(tag).word(row); };
      if (!isDisulfideBond(cell("_Bond_type"), cell("_Atom_one_atom_name"), cell("_Atom_two_atom_name")))
        continue;
      for (const std::string end : {"_Atom_one_", "_Atom_two_"}) {
        const std::string component = cell(end + "mol_system_component_name");
        std::size_t chain = component.empty() ? kNoChain : chainOf(component, finder);
        if (chain == kNoChain && finder.chains.size() == 1) chain = 0;
        if (chain != kNoChain) finder.addBondEnd(chain, cell(end + "residue_seq_code"));
      }
    }
}

}  // namespace

bool isNmrStar2(const Source& source) {
  if (!source.star) return false;
  const std::vector<StarFrame> frames = framesOf(*source.star);
  return haveTable(frames, "_Saveframe_category") || haveTable(frames, "_Chem_shift_value");
}

ShiftFile readNmrStar2(const Source& source) {
  const std::vector<StarFrame> frames = framesOf(*source.star);
  ShiftFile file;
  ChainFinder finder(source.file, *source.work);
  Molecules molecules;
  for (const StarFrame& frame : frames) readMolecule(frame, molecules, file, finder);
  for (const StarFrame& frame : frames) readSystem(frame, molecules, file, finder);
  // A molecule that the system does not list has one copy.
  for (const auto& [name, molecule] : molecules)
    if (finder.find(frameName(name)) == kNoChain) addCopy(molecule, name, name, finder);
  const std::vector<LabelledMolecule> samples = readSamples(frames, finder);
  for (const StarFrame& frame : frames) readList(frame, samples, file, finder);
  for (const StarFrame& frame : frames) readCrosslinks(frame, finder);
  settleChains(finder, file);
  numberByRows(file.chains, file.lists, file.notes);
  makeNamesDiffer(file.chains);
  file.contents = starContents(*source.star);
  return file;
}

}  // namespace zorvela
