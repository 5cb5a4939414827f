// A residue and its neighbours: numbers, names and secondary shifts, and whether these are enough.
#include "triplet.h"

#include <array>  // for std::array

#include "ZORVELA.h"
#include "names.h"
#include "residue_rows.h"

std::map<std::string, std::string> ZORVELA::getTriplet(int r) {
  return tripletOf(r, ResidueRows(resTable));
}

std::map<std::string, std::string> ZORVELA::tripletOf(int r, const ResidueRows& secondaryShifts) {
  std::map<std::string, std::string> tripletRecord;
  for (int position = kPrevious; position <= kNext; ++position) {
    const int resid = residueAt(r, position - kCentre);
    tripletRecord[atPosition(kResid, position)] = itoa(resid, numBuffer, 10);
    tripletRecord[atPosition(kResname, position)] = resNames[resid];
    const ResidueRows::Residue rows = secondaryShifts.of(resid);
    for (const auto& [key, atom] : atomNames) {
      float shift = rows.shiftOf(atom, 0.0F);
      if (clipShifts) shift = clipSShift(resid, shift, atom);
      tripletRecord[atPosition(atom, position)] = shiftText(shift);
    }
  }
  return tripletRecord;
}

bool ZORVELA::testTriplet(std::map<std::string, std::string> record) {
  const int centre = GDB::toInt(record["RESID_R2"]);
  std::array<int, 3> missing{};
  for (std::size_t i = 0; i < missing.size(); ++i)
    missing[i] = missingCount[residueAt(centre, static_cast<int>(i) - 1)];
  return zorvela::hasEnoughShifts(missing) && GDB::toInt(record["RESID_R1"]) > 0 &&
         GDB::toInt(record["RESID_R3"]) <= seqLength;
}
