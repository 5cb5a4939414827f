// Turns the input shifts into secondary shifts, residue by residue.
#include <algorithm>  // for std::min, std::max
#include <cstdlib>    // for std::exit
#include <iostream>   // for std::cerr
#include <utility>    // for std::swap, std::move

#include "ZORVELA.h"
#include "names.h"
#include "reference_shifts.h"
#include "residue_rows.h"

namespace {

const std::string kAlphaProton = "HA";

// Proline has no amide proton, and its nitrogen, which carries none, is not used.
bool isUnusedInProline(const std::string& atomName) {
  return atomName == "HN" || atomName == "H" || atomName == "N";
}

// Glycine has two HA: their mean where both are resolved, the one there is, else missing (ppm).
float glycineHA(const ResidueRows::Residue& input) {
  const float ha2 = input.shiftOf("HA2", kMissingBound);
  const float ha3 = input.shiftOf("HA3", kMissingBound);
  if (ha2 < kMissingBound && ha3 < kMissingBound) return (ha2 + ha3) * 0.5F;
  if (ha2 < kMissingBound) return ha2;
  if (ha3 < kMissingBound) return ha3;
  return kMissingShift;
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
  // A table that ends early still reaches one residue further: its neighbour's shifts say something.
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
    const std::vector<TypeShifts>& own = references.of(name);
    const std::vector<TypeShifts>& prev = references.of(resNames[resid - 1]);
    const std::vector<TypeShifts>& next = references.of(resNames[resid + 1]);
    const ResidueRows::Residue input = inputRows.of(resid);
    std::map<std::string, float>& reference = rcShifts[resid];
    int missing = 0;
    std::size_t k = 0;
    for (const auto& [key, atom] : atomNames) {
      const float ref = own[k].randomCoil + own[k].own + prev[k].asPrevious + next[k].asNext;
      ++k;
      reference[atom] = ref;

      const GDB::Row* observed = input.find(atom);
      float shift = kMissingShift;
      if (name == kGlycine && atom == kAlphaProton) {
        shift = glycineHA(input);
        if (shift == kMissingShift) ++missing;
        if (ref < kMissingBound) shift -= ref;
      } else if (!observed) {
        ++missing;
      } else if (!(ref >= kMissingBound)) {
        shift = GDB::toFloat(GDB::cell(*observed, kShift)) - ref;
      }
      if (name == kProline && isUnusedInProline(atom)) shift = kMissingShift;
      GDB::Row& row = addResRow(observed, resid, name, atom);
      row[kShift] = ftoa(shift, numBuffer, 'g', 6);
    }
    missingCount[resid] = missing;
    if (name == kProline) cgShifts[resid] = input.shiftOf("CG", kMissingShift);
  }
}

// A new row of secondary shifts: a copy of the input row where there is one.
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
