// A residue and its neighbours: numbers, names and secondary shifts, and whether these are enough.
#include "triplet.h"

#include "ZORVELA.h"
#include "names.h"
#include "residue_rows.h"

namespace {

// More missing shifts than this make a residue a poor one; a triplet may hold one of them.
constexpr int kMostMissing = 3;
constexpr int kMostPoorResidues = 1;

}  // namespace

std::map<std::string, std::string> ZORVELA::getTriplet(int r) {
  return tripletOf(r, ResidueRows(resTable));
}

std::map<std::string, std::string> ZORVELA::tripletOf(int r, const ResidueRows& secondaryShifts) {
  std::map<std::string, std::string> record;
  for (int position = kPrevious; position <= kNext; ++position) {
    const int resid = residueAt(r, position - kCentre);
    record[atPosition(kResid, position)] = itoa(resid, numBuffer, 10);
    record[atPosition(kResname, position)] = resNames[resid];
    const ResidueRows::Residue rows = secondaryShifts.of(resid);
    for (const auto& [key, atom] : atomNames) {
      float shift = rows.shiftOf(atom, 0.0F);
      if (clipShifts) shift = clipSShift(resid, shift, atom);
      record[atPosition(atom, position)] = shiftText(shift);
    }
  }
  return record;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): part of the interface
bool ZORVELA::testTriplet(std::map<std::string, std::string> record) {
  return hasEnoughShifts(record);
}

bool ZORVELA::hasEnoughShifts(const std::map<std::string, std::string>& triplet) {
  const auto number = [&](const char* key) {
    const auto found = triplet.find(key);
    return found == triplet.end() ? 0 : GDB::toInt(found->second);
  };
  const int centre = number("RESID_R2");
  int poorResidues = 0;
  for (const int offset : {-1, 0, 1})
    if (missingCount[residueAt(centre, offset)] > kMostMissing) ++poorResidues;
  return poorResidues <= kMostPoorResidues && number("RESID_R1") > 0 && number("RESID_R3") <= seqLength;
}
