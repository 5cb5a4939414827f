// Loads the tables of a run and turns the input shifts into secondary shifts, residue by residue.
#include <algorithm>      // for std::is_sorted, std::stable_sort, std::find_if, std::min, std::max
#include <charconv>       // for std::from_chars
#include <iostream>       // for std::cout, std::cerr
#include <unordered_map>  // for std::unordered_map
#include <utility>        // for std::pair, std::swap

#include "ZORVELA.h"

namespace {

const std::string kProline = "P";
const std::string kGlycine = "G";
const std::string kAlphaProton = "HA";

const std::string kResid = "RESID";
const std::string kResname = "RESNAME";
const std::string kAtomName = "ATOMNAME";
const std::string kShift = "SHIFT";

// The value of an atom in the row of a residue type; `absent` where the table has no such row.
float typeValue(const GDB& table, const std::string& resName, const std::string& atomName, float absent) {
  const GDB::Row* row = table.findEntry(kResname, resName, 1);
  return row && !row->empty() ? GDB::toFloat(GDB::cell(*row, atomName)) : absent;
}

// What the four reference tables say of one atom in, after or before one residue type (ppm).
struct TypeShifts {
  float randomCoil;
  float own;
  float asPrevious;
  float asNext;
};

// Each residue type is looked up once in a run, however many residues of it there are.
class ReferenceCache {
 public:
  explicit ReferenceCache(ZORVELA& run) : zorvela(run) {}

  // One entry an atom, in the order of the atom names.
  const std::vector<TypeShifts>& of(const std::string& resName) {
    const auto [found, isNew] = types.try_emplace(resName);
    if (isNew) {
      for (const auto& [key, atom] : zorvela.atomNames)
        found->second.push_back({zorvela.getRC(resName, atom), zorvela.getRCadj(resName, atom),
                                 zorvela.getPrevRCadj(resName, atom), zorvela.getNextRCadj(resName, atom)});
    }
    return found->second;
  }

 private:
  ZORVELA& zorvela;
  std::unordered_map<std::string, std::vector<TypeShifts>> types;
};

// The input rows by residue. A row belongs to a residue only if its RESID is the plain decimal number:
// 007 is no residue 7.
class InputRows {
 public:
  struct Entry {
    int resid;
    const GDB::Row* row;
    const std::string* atomName;
    const std::string* shift;
  };

  explicit InputRows(const GDB& table) {
    entries.reserve(table.entries.size());
    for (const auto& [number, row] : table.entries) {
      const int resid = plainNumber(GDB::cell(row, kResid));
      if (resid > 0) entries.push_back({resid, &row, &GDB::cell(row, kAtomName), &GDB::cell(row, kShift)});
    }
    const auto byResidue = [](const Entry& a, const Entry& b) { return a.resid < b.resid; };
    const bool inOrder = std::is_sorted(entries.begin(), entries.end(), byResidue);
    if (!inOrder) std::stable_sort(entries.begin(), entries.end(), byResidue);
    first = entries.begin();
    end = entries.begin();
  }

  // Goes on to a residue; residues must be visited in ascending order.
  void moveTo(int resid) {
    first = end;
    while (first != entries.end() && first->resid < resid) ++first;
    end = first;
    while (end != entries.end() && end->resid == resid) ++end;
  }

  // The first row of that atom in the residue; nullptr if there is none.
  const Entry* find(const std::string& atomName) const {
    const auto found =
        std::find_if(first, end, [&](const Entry& entry) { return *entry.atomName == atomName; });
    return found == end ? nullptr : &*found;
  }

  // The observed shift of an atom (ppm), or `absent`.
  float shiftOf(const std::string& atomName, float absent) const {
    const Entry* entry = find(atomName);
    return entry ? GDB::toFloat(*entry->shift) : absent;
  }

 private:
  static int plainNumber(const std::string& text) {
    int number = 0;
    const char* last = text.data() + text.size();
    const auto [parsed, error] = std::from_chars(text.data(), last, number);
    const bool plain = error == std::errc() && parsed == last && text.front() != '0';
    return plain ? number : 0;
  }

  std::vector<Entry> entries;
  std::vector<Entry>::const_iterator first;
  std::vector<Entry>::const_iterator end;
};

// Glycine has two HA: their mean where both are resolved, the one there is, else missing.
float glycineHA(const InputRows& input) {
  const float ha2 = input.shiftOf("HA2", kMissingBound);
  const float ha3 = input.shiftOf("HA3", kMissingBound);
  if (ha2 < kMissingBound && ha3 < kMissingBound) return (ha2 + ha3) * 0.5F;
  if (ha2 < kMissingBound) return ha2;
  if (ha3 < kMissingBound) return ha3;
  return kMissingShift;
}

// Proline has no amide proton, and its nitrogen, which carries none, is not used.
bool isUnusedInProline(const std::string& atomName) {
  return atomName == "HN" || atomName == "H" || atomName == "N";
}

}  // namespace

// --- Tables -------------------------------------------------------------------------------------

void ZORVELA::init() {
  csTable.loadGDB(inName);
  const auto load = [](const char* message, const std::string& name, GDB& table) {
    std::cout << message << name << std::endl;
    table.loadGDB(name);
  };
  load("Reading Random Coil Shifts from ", rcName, rcTable);
  load("Reading RC Adjustments from ", adjName, adjTable);
  load("Reading Previous Residue RC Adjustments from ", prevName, prevTable);
  load("Reading Next Residue RC Adjustments from ", nextName, nextTable);
  load("Reading Secondary Shift Limits from ", limitName, limitTable);
  getProCSValue(proCsName);
  getProSeqOccurence(proSeqName);
}

// An unknown residue type has no random-coil shift; a correction that is unknown is none.
float ZORVELA::getRC(const std::string& resName, const std::string& atomName) {
  return typeValue(rcTable, resName, atomName, kMissingShift);
}
float ZORVELA::getRCadj(const std::string& resName, const std::string& atomName) {
  return typeValue(adjTable, resName, atomName, 0.0F);
}
float ZORVELA::getPrevRCadj(const std::string& resName, const std::string& atomName) {
  return typeValue(prevTable, resName, atomName, 0.0F);
}
float ZORVELA::getNextRCadj(const std::string& resName, const std::string& atomName) {
  return typeValue(nextTable, resName, atomName, 0.0F);
}

// --- Residues -----------------------------------------------------------------------------------

void ZORVELA::getResInfo() {
  startResTable();
  checkSequence();
  clampRange();
  assembleResidues();
  if (checkShifts) {
    checkCS();
    endRun(-1);
  }
}

// The table of secondary shifts has the input's header, and no rows yet.
void ZORVELA::startResTable() {
  GDB::Rows inputRows;
  std::swap(inputRows, csTable.entries);  // so that they are not copied
  resTable = csTable;
  std::swap(inputRows, csTable.entries);
  resNames = csTable.residNames;
  seqLength = static_cast<int>(resNames.size());
}

// Finds the range of residue numbers and warns where a row and the sequence name different residues.
void ZORVELA::checkSequence() {
  minResid = 999;
  maxResid = -999;
  int namedResid = 0;
  const std::string* headerName = nullptr;  // of namedResid: rows of one residue stand together
  for (const auto& [number, row] : csTable.entries) {
    const int resid = GDB::toInt(GDB::cell(row, kResid));
    minResid = std::min(minResid, resid);
    maxResid = std::max(maxResid, resid);
    if (!headerName || resid != namedResid) headerName = &resNames[resid];
    namedResid = resid;
    const std::string& rowName = GDB::cell(row, kResname);
    if (rowName != *headerName)
      std::cerr << "WARNING: Unmatched name for residue " << resid << " between header (" << *headerName
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
  InputRows input(csTable);
  ReferenceCache references(*this);
  for (int resid = 1; resid <= seqLength; ++resid) {
    input.moveTo(resid);
    const std::string& name = resNames[resid];
    const std::vector<TypeShifts>& own = references.of(name);
    const std::vector<TypeShifts>& prev = references.of(resNames[resid - 1]);
    const std::vector<TypeShifts>& next = references.of(resNames[resid + 1]);
    PooledMap<std::string, float>& reference = rcShifts[resid];
    int missing = 0;
    std::size_t k = 0;
    for (const auto& [key, atom] : atomNames) {
      const float ref = own[k].randomCoil + own[k].own + prev[k].asPrevious + next[k].asNext;
      reference[atom] = ref;
      ++k;

      const InputRows::Entry* observed = input.find(atom);
      float shift = kMissingShift;
      if (name == kGlycine && atom == kAlphaProton) {
        shift = glycineHA(input);
        if (shift == kMissingShift) ++missing;
        if (ref < kMissingBound) shift -= ref;
      } else if (!observed) {
        ++missing;
      } else if (!(ref >= kMissingBound)) {
        shift = GDB::toFloat(*observed->shift) - ref;
      }
      if (name == kProline && isUnusedInProline(atom)) shift = kMissingShift;
      addResRow(observed ? observed->row : nullptr, resid, name, atom)[kShift] = shiftText(shift);
    }
    missingCount[resid] = missing;
    if (name == kProline) cgShifts[resid] = input.shiftOf("CG", kMissingShift);
  }
}

// A new row of secondary shifts: a copy of the input row where there is one.
GDB::Row& ZORVELA::addResRow(const GDB::Row* observed, int resid, const std::string& name,
                             const std::string& atom) {
  static const GDB::Row unobserved = {{kResid, ""}, {kResname, ""}, {kAtomName, ""}, {kShift, ""}};
  const int number = resTable.getEntryCount() + 1;
  GDB::Row& row =
      resTable.entries.emplace_hint(resTable.entries.end(), number, observed ? *observed : unobserved)
          ->second;
  if (!observed) {
    row[kResid] = itoa(resid, numBuffer, 10);
    row[kResname] = name;
    row[kAtomName] = atom;
  }
  return row;
}

std::string ZORVELA::shiftText(float shift) {
  return ftoa(shift, numBuffer, 'g', 6);
}
