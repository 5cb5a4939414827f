// Turns the input shifts into secondary shifts, residue by residue.
#include <algorithm>  // for std::min, std::max
#include <cstdlib>    // for std::exit
#include <iostream>   // for std::cerr
#include <optional>   // for std::optional
#include <utility>    // for std::swap, std::move

#include "ZORVELA.h"
#include "names.h"
#include "reference_shifts.h"
#include "residue_rows.h"

using zorvela::Atom;

namespace {

// The code of a residue name; a longer name is that of a type without rules of its own.
char codeOf(const std::string& name) {
  return name.size() == 1 ? name.front() : zorvela::kNoType;
}

// The shift of an atom in the input (ppm), for glycine that of its two HA.
std::optional<float> observedIn(const ResidueRows::Residue& input, const GDB::Row* row, char type,
                                Atom atom) {
  if (type == zorvela::kGlycineCode && atom == Atom::HA)
    return zorvela::glycineHA(input.shiftOf("HA2", zorvela::kMissingBound),
                              input.shiftOf("HA3", zorvela::kMissingBound));
  if (!row) return std::nullopt;
  return GDB::toFloat(GDB::cell(*row, kShift));
}

}  // namespace

void ZORVELA::getResInfo() {
  startResTable();
  checkSequence();
  clampRange();
  assembleResidues();
  if (checkShifts) {
    checkCS();
    std::exit(-1);
  }
}

// The table of secondary shifts has the input's header, and no rows yet.
void ZORVELA::startResTable() {
  GDB::Rows inputRows = std::move(csTable.entries);  // so that they are not copied
  csTable.entries.clear();
  resTable = csTable;
  csTable.entries = std::move(inputRows);
  resNames = csTable.residNames;
  seqLength = static_cast<int>(resNames.size());
}

// Finds the range of residue numbers and warns where a row and the sequence name different residues.
void ZORVELA::checkSequence() {
  minResid = 999;
  maxResid = -999;
  for (const auto& [number, row] : csTable.entries) {
    const int resid = GDB::toInt(GDB::cell(row, kResid));
    minResid = std::min(minResid, resid);
    maxResid = std::max(maxResid, resid);
    const std::string& headerName = resNames[resid];
    const std::string& rowName = GDB::cell(row, kResname);
    if (rowName != headerName)
      std::cerr << "WARNING: Unmatched name for residue " << resid << " between header (" << headerName
                << ") and chemical shift table (" << rowName << ")" << std::endl;
  }
}

// Brings the residues to predict into the range with shifts.
void ZORVELA::clampRange() {
  // A table that ends early still reaches one residue further: its neighbour's shifts are evidence.
  if (maxResid < seqLength) ++maxResid;
  firstResid = std::max(firstResid, minResid);
  lastResid = std::max(lastResid, minResid);
  firstResid = std::min(firstResid, maxResid);
  lastResid = std::min(lastResid, maxResid);
  if (firstResid > lastResid) std::swap(firstResid, lastResid);
}

void ZORVELA::assembleResidues() {
  const ResidueRows inputRows(csTable);
  ReferenceShifts references(*this);
  for (int resid = 1; resid <= seqLength; ++resid) {
    const std::string& name = resNames[resid];
    const char type = codeOf(name);
    const zorvela::ReferenceValues& own = references.of(name);
    const zorvela::ReferenceValues& previous = references.of(resNames[resid - 1]);
    const zorvela::ReferenceValues& next = references.of(resNames[resid + 1]);
    const ResidueRows::Residue input = inputRows.of(resid);
    std::map<std::string, float>& residueReferences = rcShifts[resid];
    int missing = 0;
    for (const auto& [key, atomName] : atomNames) {
      const auto atom = static_cast<Atom>(key - 1);
      const float reference = zorvela::referenceShift(previous, own, next, atom);
      residueReferences[atomName] = reference;
      const GDB::Row* row = input.find(atomName);
      const std::optional<float> observed = observedIn(input, row, type, atom);
      if (!observed) ++missing;
      addResRow(row, resid, name, atomName)[kShift] =
          shiftText(zorvela::secondaryShift(type, atom, observed, reference));
    }
    missingCount[resid] = missing;
    if (name == kProline) cgShifts[resid] = input.shiftOf("CG", zorvela::kMissingShift);
  }
}

// A new row of secondary shifts: a copy of the input row, if there is one.
GDB::Row& ZORVELA::addResRow(const GDB::Row* observed, int resid, const std::string& name,
                             const std::string& atom) {
  GDB::Rows& rows = resTable.entries;
  const int number = resTable.getEntryCount() + 1;
  if (observed) return rows.emplace_hint(rows.end(), number, *observed)->second;
  GDB::Row& row = rows.try_emplace(rows.end(), number)->second;
  row[kAtomName] = atom;
  row[kResid] = itoa(resid, numBuffer, 10);
  row[kResname] = name;
  return row;
}

std::string ZORVELA::shiftText(float shift) {
  return ftoa(shift, numBuffer, 'g', 6);
}
