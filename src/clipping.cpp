// Clipping of extreme secondary shifts.
#include <cmath>     // for std::isnan
#include <cstdio>    // for std::snprintf
#include <iostream>  // for std::cout

#include "ZORVELA.h"
#include "names.h"

float ZORVELA::clipSShift(int resid, float shift, const std::string& atomName) {
  const std::string& name = resNames[resid];
  const GDB::Row* row = limitTable.findEntry(kResname, name, 1);
  const float min = row ? GDB::toFloat(GDB::cell(*row, atomName + "_MIN")) : 0.0F;
  const float max = row ? GDB::toFloat(GDB::cell(*row, atomName + "_MAX")) : 0.0F;
  const float limit = zorvela::clipped(shift, min, max);
  const bool isClipped = limit != shift && !std::isnan(shift);
  if (isClipped && showDetail) printClipping(resid, name, atomName, shift, limit);
  return limit;
}

void ZORVELA::printClipping(int resid, const std::string& name, const std::string& atom, float shift,
                            float limit) {
  const auto format = [&](char* out, std::size_t size) {
    return std::snprintf(out, size, " Clipped %3d %s %3s Secondary Shift: %8.3f Limit: %8.3f", resid,
                         name.c_str(), atom.c_str(), static_cast<double>(shift), static_cast<double>(limit));
  };
  std::string line(static_cast<std::size_t>(format(nullptr, 0)) + 1, '\0');
  format(line.data(), line.size());
  line.pop_back();
  std::cout << line << std::endl;
}
