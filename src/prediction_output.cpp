// The predictions as a table and as a listing.
#include <cstdio>  // for std::printf, std::puts, std::fflush

#include "ZORVELA.h"
#include "names.h"
#include "triplet.h"

namespace {

constexpr const char* kColumns =
    "  RESID RESNAME_PREV RESNAME RESNAME_NEXT CS_CNT1 CS_CNT2 CS_CNT3 CG_SHIFT P_CIS P_CIS_NORM ";
constexpr const char* kFormats = "%2d %1s %1s %1s %2d %2d %2d %8.3f %8.3f %8.3f ";

}  // namespace

GDB ZORVELA::startPredictions() {
  GDB table;
  table.VARS_str_parser(kColumns);
  table.FORMAT_str_parser(kFormats);
  return table;
}

void ZORVELA::addPrediction(GDB& table, const ProlinePrediction& prediction) {
  const int row = prediction.resid;
  const auto& [previous, centre, next] = prediction.names;
  table.setEntry(row, kResid, itoa(row, numBuffer, 10));
  table.setEntry(row, "RESNAME_PREV", previous);
  table.setEntry(row, kResname, centre);
  table.setEntry(row, "RESNAME_NEXT", next);
  table.setEntry(row, "CS_CNT1", itoa(prediction.shiftCounts[0], numBuffer, 10));
  table.setEntry(row, "CS_CNT2", itoa(prediction.shiftCounts[1], numBuffer, 10));
  table.setEntry(row, "CS_CNT3", itoa(prediction.shiftCounts[2], numBuffer, 10));
  table.setEntry(row, "CG_SHIFT", shiftText(prediction.cgShift));
  table.setEntry(row, "P_CIS", shiftText(prediction.pCis));
  table.setEntry(row, "P_CIS_NORM", shiftText(prediction.pCisNorm));
}

// From the finished table, so that listing and file agree.
void ZORVELA::printListing(const GDB& table) {
  std::puts("\nZorvela Predictions:\n");
  std::puts("  #RES1 RES2 RES3 P_CIS  P_CIS_NORM\n");
  for (const auto& [number, row] : table.entries) {
    const int resid = GDB::toInt(GDB::cell(row, kResid));
    const double pCis = GDB::toDouble(GDB::cell(row, "P_CIS"));
    const double pCisNorm = GDB::toDouble(GDB::cell(row, "P_CIS_NORM"));
    std::printf("   %1s%-3d %1s%-3d %1s%-3d %-6.3f %-6.3f\n", GDB::cell(row, "RESNAME_PREV").c_str(),
                residueAt(resid, -1), kProline.c_str(), resid, GDB::cell(row, "RESNAME_NEXT").c_str(),
                residueAt(resid, 1), pCis, pCisNorm);
  }
  std::fflush(stdout);  // the table may go to the same pipe, after the listing
}
