// Reference values of a residue type.
#include "reference_shifts.h"

#include "names.h"

using zorvela::ReferenceValues;

namespace {

// An unknown residue type has no random-coil shift; a correction that is unknown is none.
constexpr float kNoRandomCoil = zorvela::kMissingShift;
constexpr float kNoCorrection = 0.0F;

// The row of a residue type in a reference table; nullptr if it has none.
const GDB::Row* typeRow(const GDB& table, const std::string& resName) {
  const GDB::Row* row = table.findEntry(kResname, resName, 1);
  return row && !row->empty() ? row : nullptr;
}

// The value of an atom in the row of a residue type (ppm); `absent` if there is no such row.
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

const ReferenceValues& ReferenceShifts::of(const std::string& resName) {
  const auto [found, isNew] = types.try_emplace(resName);
  if (isNew) found->second = lookUp(resName);
  return found->second;
}

ReferenceValues ReferenceShifts::lookUp(const std::string& resName) const {
  const GDB::Row* randomCoil = typeRow(run.rcTable, resName);
  const GDB::Row* own = typeRow(run.adjTable, resName);
  const GDB::Row* previous = typeRow(run.prevTable, resName);
  const GDB::Row* next = typeRow(run.nextTable, resName);
  ReferenceValues type;
  for (const zorvela::Atom atom : zorvela::kBackbone) {
    const std::string name(nameOf(atom));
    const std::size_t i = indexOf(atom);
    type.randomCoil[i] = typeValue(randomCoil, name, kNoRandomCoil);
    type.own[i] = typeValue(own, name, kNoCorrection);
    type.asPrevious[i] = typeValue(previous, name, kNoCorrection);
    type.asNext[i] = typeValue(next, name, kNoCorrection);
  }
  return type;
}
