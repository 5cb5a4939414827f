// Reads NEF: the sequence by chain, covalent links, chemical shift lists.
#include <utility>

#include "formats/format.h"
#include "formats/star_chains.h"
#include "formats/star_document.h"
#include "protein/nomenclature.h"
#include "util/text.h"

namespace zorvela {

using gemmi::cif::Block;

namespace {

/// Chains and residues that are not assigned yet have names with this mark.
constexpr char kUnassignedMark = '@';

bool isUnassigned(const std::string& code) {
  return !code.empty() && code.front() == kUnassignedMark;
}

/// "12-1": seen from residue 12, its neighbour, whichever that is.
bool isOffset(const std::string& code) {
  const auto number = readResidueNumber(code);
  return number && !number->code.empty() && (number->code.front() == '-' || number->code.front() == '+');
}

/// Whether a residue has a peptide bond towards its neighbour, by the words of the sequence table.
bool isInside(const std::string& linking) {
  return equalIgnoringCase(linking, "middle") || equalIgnoringCase(linking, "cyclic");
}
bool bondsForward(const std::string& linking) {
  return isInside(linking) || equalIgnoringCase(linking, "start");
}
bool bondsBackward(const std::string& linking) {
  return isInside(linking) || equalIgnoringCase(linking, "end");
}

/// Whether the words for two neighbours say that no bond is between them.
bool isBreak(const std::string& before, const std::string& after) {
  const bool isEnd = equalIgnoringCase(before, "end") || equalIgnoringCase(before, "single");
  const bool isStart = equalIgnoringCase(after, "start") || equalIgnoringCase(after, "single");
  return isEnd || isStart || (equalIgnoringCase(before, "break") && equalIgnoringCase(after, "break"));
}

bool isYes(const std::string& flag) {
  return equalIgnoringCase(flag, "true") || equalIgnoringCase(flag, "yes");
}

std::size_t addChain(const std::string& code, ChainFinder& finder) {
  FileChain chain;
  chain.name = code;
  return finder.add(code, std::move(chain));
}

FileChain& chainNamed(const std::string& code, ShiftFile& file, ChainFinder& finder) {
  const std::size_t known = finder.find(code);
  return file.chains[known != kNoChain ? known : addChain(code, finder)];
}

void readSequence(const StarTable& table, ShiftFile& file, ChainFinder& finder) {
  const std::size_t chainColumn = table.column("_nef_sequence.chain_code");
  const std::size_t number = table.column("_nef_sequence.sequence_code");
  // Early files call it residue_type.
  const std::size_t name = table.columnOfAny({"_nef_sequence.residue_name", "_nef_sequence.residue_type"});
  const std::size_t linking = table.column("_nef_sequence.linking");
  const std::size_t cis = table.column("_nef_sequence.cis_peptide");
  FileResidue before;
  std::string chainBefore;
  std::string linkingBefore;
  for (std::size_t row = 0; row < table.rows(); ++row) {
    FileChain& chain = chainNamed(table.text(row, chainColumn), file, finder);
    FileResidue residue;
    residue.key = residue.number = table.text(row, number);
    residue.name = table.text(row, name);
    const std::string own = table.text(row, linking);
    residue.bondedToPrevious = bondsForward(linkingBefore) && bondsBackward(own);
    if (chain.name == chainBefore && isBreak(linkingBefore, own) && nextNumber(before.key) == residue.key)
      file.notes.push_back("the file tells of a chain break between " + before.key + " and " + residue.key +
                           " of chain " + chain.name +
                           "; no residue is missing there, so they stay neighbours");
    linkingBefore = own;
    chainBefore = chain.name;
    before = residue;
    if (isYes(table.text(row, cis))) chain.cisBonds.push_back(residue.key);
    chain.residues.push_back(std::move(residue));
  }
}

std::size_t chainOf(const std::string& code, const ShiftFile& file, ChainFinder& finder) {
  const std::size_t known = finder.find(code);
  if (known != kNoChain) return known;
  return code.empty() && !file.chains.empty() ? kNoChain : addChain(code, finder);
}

void readShifts(const StarTable& table, FileShiftList& list, ShiftFile& file, ChainFinder& finder) {
  const std::size_t chain = table.column("_nef_chemical_shift.chain_code");
  const std::size_t number = table.column("_nef_chemical_shift.sequence_code");
  const std::size_t name =
      table.columnOfAny({"_nef_chemical_shift.residue_name", "_nef_chemical_shift.residue_type"});
  const std::size_t atom = table.column("_nef_chemical_shift.atom_name");
  const std::size_t value = table.column("_nef_chemical_shift.value");
  std::size_t unassigned = 0;
  for (std::size_t row = 0; row < table.rows(); ++row) {
    FileShift shift;
    const std::string code = table.text(row, chain);
    shift.key = shift.number = table.text(row, number);
    if (isUnassigned(code) || isUnassigned(shift.key) || isOffset(shift.key)) {
      ++unassigned;
      continue;
    }
    shift.chain = chainOf(code, file, finder);
    shift.residueName = table.text(row, name);
    shift.atom = table.text(row, atom);
    shift.value = table.text(row, value);
    list.shifts.push_back(std::move(shift));
  }
  if (unassigned > 0)
    file.notes.push_back(counted(unassigned, "shift", "shifts") +
                         " not assigned to a residue (@2, 12-1) left out");
}

void readList(const Block& frame, ShiftFile& file, ChainFinder& finder) {
  FileShiftList list;
  list.name = listName(frame);
  constexpr std::string_view kFramePrefix = "nef_chemical_shift_list_";
  if (lower(frame.name).rfind(kFramePrefix, 0) == 0)
    list.aliases.push_back(frame.name.substr(kFramePrefix.size()));
  for (const StarTable& table : tablesOf(frame, "_nef_chemical_shift."))
    readShifts(table, list, file, finder);
  if (!list.shifts.empty()) file.lists.push_back(std::move(list));
}

void readLinks(const StarTable& table, ShiftFile& file, const ChainFinder& finder) {
  const auto column = [&](const std::string& tag) { return table.column("_nef_covalent_links." + tag); };
  for (std::size_t row = 0; row < table.rows(); ++row) {
    const auto cell = [&](const std::string& tag) { return table.text(row, column(tag)); };
    if (!isDisulfideBond("", cell("atom_name_1"), cell("atom_name_2"))) continue;
    for (const std::string end : {"_1", "_2"}) {
      const std::size_t chain = finder.find(cell("chain_code" + end));
      if (chain != kNoChain) file.chains[chain].disulfides.push_back(cell("sequence_code" + end));
    }
  }
}

}  // namespace

bool isNef(const Source& source) {
  if (!source.star) return false;
  for (const Block* frame : framesOf(*source.star))
    if (!tablesOf(*frame, "_nef_").empty()) return true;
  return false;
}

ShiftFile readNef(const Source& source) {
  const std::vector<const Block*> frames = framesOf(*source.star);
  ShiftFile file;
  ChainFinder finder(file.chains, source.file);
  for (const Block* frame : frames)
    for (const StarTable& table : tablesOf(*frame, "_nef_sequence.")) readSequence(table, file, finder);
  for (const Block* frame : frames) readList(*frame, file, finder);
  for (const Block* frame : frames)
    for (const StarTable& table : tablesOf(*frame, "_nef_covalent_links.")) readLinks(table, file, finder);
  for (FileShiftList& list : file.lists) placeByNames(list.shifts, file.chains, file.notes);
  file.contents = starContents(*source.star);
  return file;
}

}  // namespace zorvela
