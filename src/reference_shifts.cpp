// What the reference tables say of a residue type.
#include "reference_shifts.h"

#include "names.h"

namespace {

// An unknown residue type has no random-coil shift; a correction that is unknown is none.
constexpr float kNoRandomCoil = kMissingShift;
constexpr float kNoCorrection = 0.0F;

// The row of a residue type in a reference table; nullptr if it has none.
const GDB::Row* typeRow(const GDB& table, const std::string& resName) {
  const GDB::Row* row = table.findEntry(kResname, resName, 1);
  return row && !row->empty() ? row : nullptr;
}

// The value of an atom in the row of a residue type (ppm); `absent` where there is no such row.
float typeValue(const GDB::Row* row, const std::string& atomName, float absent) {
  return row ? GDB::toFloat(GDB::cell(*row, atomName)) : absent;
}

}  // namespace

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

const std::vector<TypeShifts>& ReferenceShifts::of(const std::string& resName) {
  const auto [found, isNew] = types.try_emplace(resName);
  if (isNew) found->second = lookUp(resName);
  return found->second;
}

std::vector<TypeShifts> ReferenceShifts::lookUp(const std::string& resName) const {
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
