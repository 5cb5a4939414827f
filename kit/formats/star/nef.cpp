// Reads NEF: the sequence by chain, covalent links, chemical shift lists.
#include <cstdint>
#include <map>
#include <utility>

#include "formats/format.h"
#include "formats/found_rows.h"
#include "formats/star/star_chains.h"
#include "formats/star/star_document.h"
#include "names/nomenclature.h"
#include "util/text.h"

namespace zorvela {

namespace {

using Notes = std::vector<std::string>;

/// Tells whether a chain or residue is not assigned yet: its name has a mark.
bool isUnassigned(const std::string& code) {
  return !code.empty() && code.front() == '@';
}

/// Tells whether the sequence table has a peptide bond between two residues that follow one another.
bool areLinked(const std::string& first, const std::string& second) {
  const auto isInside = [](const std::string& linking) {
    return equalIgnoringCase(linking, "middle") || equalIgnoringCase(linking, "cyclic");
  };
  return (isInside(first) || equalIgnoringCase(first, "start")) &&
         (isInside(second) || equalIgnoringCase(second, "end"));
}

/// Tells whether a row is a ligand, an ion or a marker of coordinate axes, listed among the residues.
bool isOtherThanResidue(const std::string& linking, const std::string& name) {
  if (isIonOrWater(name)) return true;
  for (const char* word : {"single", "nonlinear", "dummy"})
    if (equalIgnoringCase(linking, word))
      return residueType(name).letter == kUnknownResidue && !isNucleotide(name);
  return false;
}

/// Tells whether residues are missing between two numbers; not where one has an insertion code.
bool isJump(const std::string& before, const std::string& after) {
  const auto first = readResidueNumber(before);
  const auto second = readResidueNumber(after);
  if (!first || !second) return false;
  const std::int64_t steps = static_cast<std::int64_t>(second->number) - first->number;
  return steps != 0 && steps != 1;
}

/// The bonds of a chain whose residue numbers jump.
struct ChainBonds {
  std::string keyBefore;                 ///< of the last residue so far
  std::string linkingBefore;             ///< of the last residue so far
  std::vector<std::string> acrossJumps;  ///< "2 to 8"
};

std::size_t addChain(const std::string& code, ChainFinder& finder) {
  FileChain chain;
  chain.name = code;
  return finder.add(code, std::move(chain));
}

using BondsByChain = std::map<std::size_t, ChainBonds>;

/// Bonds a residue to the one before in its chain, if the file does. Where a row could not be read, its
/// residue may lie between the two.
void join(ChainBonds& bonds, const std::string& linking, bool isComplete, FileResidue& residue) {
  residue.bondedToPrevious = isComplete && areLinked(bonds.linkingBefore, linking);
  if (residue.bondedToPrevious && isJump(bonds.keyBefore, residue.key))
    bonds.acrossJumps.push_back(bonds.keyBefore + " to " + residue.key);
  bonds.keyBefore = residue.key;
  bonds.linkingBefore = linking;
}

void readSequence(const StarTable& table, ChainFinder& finder, BondsByChain& bonds, Notes& notes) {
  const StarColumn chainCode = table.column("_nef_sequence.chain_code");
  const StarColumn number = table.column("_nef_sequence.sequence_code");
  // Early files call it residue_type.
  const StarColumn name = table.column("_nef_sequence.residue_name", "_nef_sequence.residue_type");
  const StarColumn linking = table.column("_nef_sequence.linking");
  const StarColumn cis = table.column("_nef_sequence.cis_peptide");
  for (std::size_t row = 0; row < table.rows(); ++row) {
    const std::string code = nameOf(chainCode.text(row), notes);
    const std::size_t known = finder.find(code);
    const std::size_t chain = known != kNoChain ? known : addChain(code, finder);
    FileResidue residue{number.word(row), number.word(row), name.word(row)};
    const std::string own = linking.word(row);
    if (isOtherThanResidue(own, residue.name)) continue;
    finder.countResidues(1);
    if (const auto isCis = readFlag(cis.word(row)))
      finder.chains[chain].cisFlags.push_back({residue.key, *isCis});
    join(bonds[chain], own, !table.lacksRows(), residue);
    finder.chains[chain].residues.push_back(std::move(residue));
  }
}

/// Notes the bonds across jumps in the chains that have shifts.
void noteBonds(const BondsByChain& bonds, ShiftFile& file) {
  std::vector<bool> hasShifts(file.chains.size(), false);
  for (const FileShiftList& list : file.lists)
    for (const FileShift& row : list.shifts)
      if (row.chain < hasShifts.size()) hasShifts[row.chain] = true;
  for (const auto& [chain, own] : bonds)
    if (hasShifts[chain] && !own.acrossJumps.empty())
      file.notes.push_back("the numbers of chain " + file.chains[chain].name +
                           " jump between residues that the file calls bonded; read as neighbours: " +
                           enumerated(own.acrossJumps));
}

std::size_t chainOf(const std::string& code, ChainFinder& finder) {
  const std::size_t known = finder.find(code);
  if (known != kNoChain) return known;
  return code.empty() && !finder.chains.empty() ? kNoChain : addChain(code, finder);
}

void readShifts(const StarTable& table, FileShiftList& list, ShiftFile& file, ChainFinder& finder) {
  const StarColumn chain = table.column("_nef_chemical_shift.chain_code");
  const StarColumn number = table.column("_nef_chemical_shift.sequence_code");
  const StarColumn name =
      table.column("_nef_chemical_shift.residue_name", "_nef_chemical_shift.residue_type");
  const StarColumn atom = table.column("_nef_chemical_shift.atom_name");
  const StarColumn value = table.column("_nef_chemical_shift.value");
  Unassigned unassigned;
  const std::size_t rows = table.rows();
  finder.reserveRows(list, rows);
  for (std::size_t row = 0; row < rows; ++row) {
    FileShift shift;
    const std::string code = nameOf(chain.text(row), file.notes);
    shift.number = number.word(row);
    if (const auto neighbour = readNeighbourCode(shift.number)) {
      shift.number = neighbour->number;
      shift.offset = neighbour->offset;
    }
    shift.key = shift.number;
    if (isUnassigned(code) || isUnassigned(shift.key)) {
      unassigned.add(isUnassigned(code) ? code + " " + shift.key : shift.key);
      continue;
    }
    shift.chain = chainOf(code, finder);
    shift.residueName = name.word(row);
    shift.atom = atom.word(row);
    shift.value = value.word(row);
    list.shifts.push_back(std::move(shift));
  }
  unassigned.appendTo(file.notes);
}

void readList(const StarFrame& frame, ShiftFile& file, ChainFinder& finder) {
  FileShiftList list;
  list.name = nameOf(frame.name(), file.notes);
  constexpr std::string_view kFramePrefix = "nef_chemical_shift_list_";
  if (startsIgnoringCase(list.name, kFramePrefix))
    list.aliases.push_back(list.name.substr(kFramePrefix.size()));
  for (const StarTable& table : tablesOf(frame, "_nef_chemical_shift."))
    readShifts(table, list, file, finder);
  if (!list.shifts.empty()) addList(std::move(list), file, finder.file());
}

void readLinks(const StarTable& table, ChainFinder& finder) {
  for (std::size_t row = 0; row < table.rows(); ++row) {
    const auto cell = [&](const std::string& tag) {
      return table.column("_nef_covalent_links." + tag).word(row);
    };
    if (!isDisulfideBond("", cell("atom_name_1"), cell("atom_name_2"))) continue;
    for (const std::string end : {"_1", "_2"}) {
      const std::size_t chain = finder.find(cell("chain_code" + end));
      if (chain != kNoChain) finder.addBondEnd(chain, cell("sequence_code" + end));
    }
  }
}

}  // namespace

bool isNef(const Source& source) {
  return source.star && haveTable(framesOf(*source.star), "_nef_");
}

ShiftFile readNef(const Source& source) {
  const std::vector<StarFrame> frames = framesOf(*source.star);
  ShiftFile file;
  ChainFinder finder(source.file, *source.work);
  BondsByChain bonds;
  for (const StarFrame& frame : frames)
    for (const StarTable& table : tablesOf(frame, "_nef_sequence."))
      readSequence(table, finder, bonds, file.notes);
  for (const StarFrame& frame : frames) readList(frame, file, finder);
  for (const StarFrame& frame : frames)
    for (const StarTable& table : tablesOf(frame, "_nef_covalent_links.")) readLinks(table, finder);
  settleChains(finder, file);
  noteBonds(bonds, file);
  file.contents = starContents(*source.star);
  return file;
}

}  // namespace zorvela
