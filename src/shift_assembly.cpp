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

// The row of a residue type in a reference table; nullptr if it has none.
const GDB::Row* typeRow(const GDB& table, const std::string& resName) {
  const GDB::Row* row = table.findEntry(kResname, resName, 1);
  return row && !row->empty() ? row : nullptr;
}

// The value of an atom in the row of a residue type (ppm); `absent` where there is no such row.
float typeValue(const GDB::Row* row, const std::string& atomName, float absent) {
  return row ? GDB::toFloat(GDB::cell(*row, atomName)) : absent;
}

// An unknown residue type has no random-coil shift; a correction that is unknown is none.
constexpr float kNoRandomCoil = kMissingShift;
constexpr float kNoCorrection = 0.0F;

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
  explicit ReferenceCache(const ZORVELA& run) : zorvela(run) {}

  // One entry an atom, in the order of the atom names.
  const std::vector<TypeShifts>& of(const std::string& resName) {
    const auto [found, isNew] = types.try_emplace(resName);
    if (isNew) found->second = lookUp(resName);
    return found->second;
  }

 private:
  std::vector<TypeShifts> lookUp(const std::string& resName) const {
    const GDB::Row* randomCoil = typeRow(zorvela.rcTable, resName);
    const GDB::Row* own = typeRow(zorvela.adjTable, resName);
    const GDB::Row* previous = typeRow(zorvela.prevTable, resName);
    const GDB::Row* next = typeRow(zorvela.nextTable, resName);
    std::vector<TypeShifts> shifts;
    for (const auto& [key, atom] : zorvela.atomNames)
      shifts.push_back({typeValue(randomCoil, atom, kNoRandomCoil), typeValue(own, atom, kNoCorrection),
                        typeValue(previous, atom, kNoCorrection), typeValue(next, atom, kNoCorrection)});
    return shifts;
  }

  const ZORVELA& zorvela;
  std::unordered_map<std::string, std::vector<TypeShifts>> types;
};

// A backbone atom and the rules of its own.
struct Atom {
  explicit Atom(const std::string& atomName)
      : name(atomName),
        isAlphaProton(name == "HA"),
        // Proline has no amide proton, and its nitrogen, which carries none, is not used.
        isUnusedInProline(name == "HN" || name == "H" || name == "N") {}

  std::string name;
  bool isAlphaProton;
  bool isUnusedInProline;
};

}  // namespace

// The input rows by residue. A row belongs to a residue only if its RESID is the plain decimal number:
// 007 is no residue 7.
class ZORVELA::InputRows {
 public:
  struct Entry {
    int resid;
    const GDB::Row* row;
  };

  void reserve(std::size_t rowCount) { entries.reserve(rowCount); }

  // Rows are added in the order of the table.
  void add(const std::string& resid, const GDB::Row& row) {
    const int number = plainNumber(resid);
    if (number > 0) entries.push_back({number, &row});
  }

  // Before the first residue, when all rows are there.
  void start() {
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
  const GDB::Row* find(const std::string& atomName) {
    const auto found =
        std::find_if(first, end, [&](const Entry& entry) { return atomNames.of(*entry.row) == atomName; });
    return found == end ? nullptr : found->row;
  }

  // The observed shift of an atom (ppm), or `absent`.
  float shiftOf(const std::string& atomName, float absent) {
    const GDB::Row* row = find(atomName);
    return row ? shiftOf(*row) : absent;
  }
  float shiftOf(const GDB::Row& row) { return GDB::toFloat(shifts.of(row)); }

  // Glycine has two HA: their mean where both are resolved, the one there is, else missing (ppm).
  float glycineHA() {
    const float ha2 = shiftOf("HA2", kMissingBound);
    const float ha3 = shiftOf("HA3", kMissingBound);
    if (ha2 < kMissingBound && ha3 < kMissingBound) return (ha2 + ha3) * 0.5F;
    if (ha2 < kMissingBound) return ha2;
    if (ha3 < kMissingBound) return ha3;
    return kMissingShift;
  }

 private:
  static int plainNumber(const std::string& text) {
    int number = 0;
    const char* last = text.data() + text.size();
    const auto [parsed, error] = std::from_chars(text.data(), last, number);
    const bool plain = error == std::errc() && parsed == last && text.front() != '0';
    return plain ? number : 0;
  }

  Row::Column atomNames{kAtomName};
  Row::Column shifts{kShift};
  std::vector<Entry> entries;
  std::vector<Entry>::const_iterator first{};
  std::vector<Entry>::const_iterator end{};
};

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

float ZORVELA::getRC(const std::string& resName, const std::string& atomName) {
  return typeValue(typeRow(rcTable, resName), atomName, kNoRandomCoil);
}
float ZORVELA::getRCadj(const std::string& resName, const std::string& atomName) {
  return typeValue(typeRow(adjTable, resName), atomName, kNoCorrection);
}
float ZORVELA::getPrevRCadj(const std::string& resName, const std::string& atomName) {
  return typeValue(typeRow(prevTable, resName), atomName, kNoCorrection);
}
float ZORVELA::getNextRCadj(const std::string& resName, const std::string& atomName) {
  return typeValue(typeRow(nextTable, resName), atomName, kNoCorrection);
}

// --- Residues -----------------------------------------------------------------------------------

void ZORVELA::getResInfo() {
  startResTable();
  InputRows input;
  checkSequence(input);
  clampRange();
  assembleResidues(input);
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

// Finds the range of residue numbers and warns where a row and the sequence name different residues; takes
// the rows down by residue on the way, for the walk through a large table is not free.
void ZORVELA::checkSequence(InputRows& input) {
  input.reserve(csTable.entries.size());
  minResid = 999;
  maxResid = -999;
  int namedResid = 0;
  const std::string* headerName = nullptr;  // of namedResid: rows of one residue stand together
  Row::Column resids(kResid);
  Row::Column names(kResname);
  for (const auto& [number, row] : csTable.entries) {
    const std::string& residText = resids.of(row);
    input.add(residText, row);
    const int resid = GDB::toInt(residText);
    minResid = std::min(minResid, resid);
    maxResid = std::max(maxResid, resid);
    if (!headerName || resid != namedResid) headerName = &resNames[resid];
    namedResid = resid;
    const std::string& rowName = names.of(row);
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

void ZORVELA::assembleResidues(InputRows& input) {
  input.start();
  ReferenceCache references(*this);
  std::vector<Atom> atoms;
  NamedMap<float> noReference;
  for (const auto& [key, name] : atomNames) {
    atoms.emplace_back(name);
    noReference[name] = kMissingShift;
  }
  const std::string* before = &resNames[0];
  const std::string* after = &resNames[1];
  for (int resid = 1; resid <= seqLength; ++resid) {
    input.moveTo(resid);
    const std::string& name = *after;
    after = &resNames[resid + 1];
    const bool isGlycine = name == kGlycine;
    const bool isProline = name == kProline;
    const std::vector<TypeShifts>& own = references.of(name);
    const std::vector<TypeShifts>& prev = references.of(*before);
    const std::vector<TypeShifts>& next = references.of(*after);
    before = &name;
    NamedMap<float>& reference = rcShifts.try_emplace(rcShifts.end(), resid, noReference)->second;
    int missing = 0;
    for (std::size_t k = 0; k < atoms.size(); ++k) {
      const Atom& atom = atoms[k];
      const float ref = own[k].randomCoil + own[k].own + prev[k].asPrevious + next[k].asNext;
      reference[atom.name] = ref;

      const GDB::Row* observed = input.find(atom.name);
      float shift = kMissingShift;
      if (isGlycine && atom.isAlphaProton) {
        shift = input.glycineHA();
        if (shift == kMissingShift) ++missing;
        if (ref < kMissingBound) shift -= ref;
      } else if (!observed) {
        ++missing;
      } else if (!(ref >= kMissingBound)) {
        shift = input.shiftOf(*observed) - ref;
      }
      if (isProline && atom.isUnusedInProline) shift = kMissingShift;
      addResRow(observed, resid, name, atom.name)[kShift] = shiftText(shift);
    }
    missingCount.insert_or_assign(missingCount.end(), resid, missing);
    if (isProline) cgShifts[resid] = input.shiftOf("CG", kMissingShift);
  }
}

// A new row of secondary shifts: a copy of the input row where there is one.
GDB::Row& ZORVELA::addResRow(const GDB::Row* observed, int resid, const std::string& name,
                             const std::string& atom) {
  static const GDB::Row unobserved = {{kResid, ""}, {kResname, ""}, {kAtomName, ""}, {kShift, ""}};
  const int number = resTable.getEntryCount() + 1;
  GDB::Row& row = resTable.entries.append(number, observed ? *observed : unobserved);
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
