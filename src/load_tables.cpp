// Loads the tables of a run: input shifts, reference tables, proline databases.
#include <iostream>  // for std::cout

#include "ZORVELA.h"
#include "triplet.h"

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

// --- Proline databases --------------------------------------------------------------------------

void ZORVELA::getProCSValue(const std::string& fileName) {
  const GDB table(fileName);
  for (const auto& [number, row] : table.entries) {
    const int index = GDB::toInt(GDB::cell(row, "index"));
    avgCis[index] = GDB::toFloat(GDB::cell(row, "avg_cis"));
    avgTrans[index] = GDB::toFloat(GDB::cell(row, "avg_trans"));
    stdCis[index] = GDB::toFloat(GDB::cell(row, "std_cis"));
    stdTrans[index] = GDB::toFloat(GDB::cell(row, "std_trans"));
  }
}

void ZORVELA::getProSeqOccurence(const std::string& fileName) {
  const GDB table(fileName);
  for (const auto& [number, row] : table.entries) {
    const std::string& name = GDB::cell(row, "resname");
    proSeqCis[name][kPrevious] = GDB::toFloat(GDB::cell(row, "cis_prev"));
    proSeqCis[name][kNext] = GDB::toFloat(GDB::cell(row, "cis_next"));
    proSeqTrans[name][kPrevious] = GDB::toFloat(GDB::cell(row, "trans_prev"));
    proSeqTrans[name][kNext] = GDB::toFloat(GDB::cell(row, "trans_next"));
  }
}
