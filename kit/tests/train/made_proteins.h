// Proteins made in memory for tests of training and evaluation: five residues, the proline in the middle.
#pragma once

#include <string>

#include "predict/tables.h"
#include "train/labelled_prolines.h"
#include "train/table_cells.h"

namespace made {

constexpr int kProlinePosition = 3;
constexpr float kAbsent = 9999.0F;

struct Protein {
  std::string sequence;      ///< such as "GAPAG"; the window of the proline
  zorvela::Omega omega;      ///< its label by structure
  float secondary = 0;       ///< of all atoms of the three residues around the proline (ppm)
  float cg = kAbsent;        ///< CG of the proline (ppm)
  float cb = kAbsent;        ///< observed CB of the proline (ppm)
  std::string cluster = "";  ///< the protein's own where it is empty
};

/// N and HN of the proline are missing, and all shifts of the first and the last residue.
inline zorvela::EntryShifts entryOf(const Protein& protein, const std::string& name) {
  zorvela::EntryShifts entry;
  entry.name = name;
  for (int resid = 1; resid <= static_cast<int>(protein.sequence.size()); ++resid) {
    entry.names.emplace_back(1, protein.sequence[static_cast<std::size_t>(resid) - 1]);
    const bool isEnd = resid == 1 || resid == static_cast<int>(protein.sequence.size());
    auto& shifts = entry.secondary.emplace_back();
    shifts.fill(isEnd ? kAbsent : protein.secondary);
    if (resid == kProlinePosition) shifts[0] = shifts[5] = kAbsent;
    entry.missing.push_back(isEnd ? 6 : resid == kProlinePosition ? 2 : 0);
  }
  entry.cg[kProlinePosition] = protein.cg;
  if (protein.cb != kAbsent) entry.cb[kProlinePosition] = protein.cb;
  return entry;
}

inline zorvela::LabelledProlines dataOf(const std::vector<Protein>& proteins) {
  zorvela::LabelledProlines data;
  data.labels.path = "labels.csv";
  for (const Protein& protein : proteins) {
    const std::string name = "e" + std::to_string(data.entries.size() + 1);
    zorvela::ProlineLabel label;
    label.entry = name;
    label.resid = kProlinePosition;
    label.structure = protein.omega;
    label.cluster = protein.cluster.empty() ? name : protein.cluster;
    data.labels.prolines.push_back(label);
    data.entryOf.push_back(data.entries.size());
    data.windows.push_back(protein.sequence);
    data.entries.push_back(entryOf(protein, name));
  }
  return data;
}

/// Tables as published ones: alanine, glycine and proline, all neighbours as likely beside cis as beside
/// trans.
inline zorvela::ReferenceTables publishedTables() {
  zorvela::ReferenceTables tables;
  tables.randomCoil = zorvela::startTable({}, "RESNAME N HA C CA CB HN", "%s %f %f %f %f %f %f");
  zorvela::addRow(tables.randomCoil, {"A", "124", "4.3", "178", "52", "19", "8.2"});
  zorvela::addRow(tables.randomCoil, {"G", "109", "4", "174", "45", "9999", "8.3"});
  zorvela::addRow(tables.randomCoil, {"P", "136", "4.4", "177", "63", "32", "9999"});
  tables.sequence =
      zorvela::startTable({}, "resname cis_prev cis_next trans_prev trans_next", "%s %f %f %f %f");
  for (const std::string name : {"A", "C", "G", "P"})
    zorvela::addRow(tables.sequence, {name, "0.05", "0.05", "0.05", "0.05"});
  return tables;
}

/// A cell of the row in which a column has this text; empty where there is none.
inline std::string cellOf(const GDB& table, const std::string& column, const std::string& text,
                          const std::string& wanted) {
  for (const auto& [number, row] : table.entries) {
    std::string found;
    bool isRow = false;
    for (const auto& [name, cell] : row) {
      if (name == column && cell == text) isRow = true;
      if (name == wanted) found = cell;
    }
    if (isRow) return found;
  }
  return "";
}

}  // namespace made
