// A comparison as CSV.
#include <ostream>

#include "report/compare_fields.h"
#include "report/csv_cells.h"
#include "util/number.h"

namespace zorvela {

namespace {

using Cells = std::vector<std::string>;

constexpr int kOmegaDecimals = 1;
constexpr int kDistanceDecimals = 2;

const Cells kColumns = {"file",
                        "chain",
                        "list",
                        "resid",
                        "position",
                        "prev",
                        "next",
                        "p_cis",
                        "p_cis_norm",
                        "call",
                        "reason",
                        "structure",
                        "verdict",
                        "models_cis",
                        "models_trans",
                        "models_twisted",
                        "omega",
                        "ca_distance",
                        "structure_file",
                        "structure_chain",
                        "structure_resid",
                        "structure_residue",
                        "evidence"};

std::string orEmpty(const std::optional<float>& value) {
  return value ? numberText(*value) : "";
}

std::string orEmpty(const std::optional<double>& value, int decimals) {
  return value ? fixedText(*value, decimals) : "";
}

Cells cellsOf(const ComparedProtein& protein, const ComparedProline& proline) {
  const ProlineResult& shifts = proline.shifts;
  const std::vector<ModelBond> bonds = proline.bonds();
  return {protein.result.file,
          protein.result.chain,
          protein.result.list,
          shifts.number,
          std::to_string(shifts.position),
          shifts.previous,
          shifts.next,
          orEmpty(shifts.pCis),
          orEmpty(shifts.pCisNorm),
          toText(shifts.call),
          shifts.reason,
          toText(proline.structure),
          toText(proline.verdict),
          std::to_string(proline.count(BondState::cis)),
          std::to_string(proline.count(BondState::trans)),
          std::to_string(proline.count(BondState::twisted)),
          orEmpty(meanOmega(bonds), kOmegaDecimals),
          orEmpty(meanCaToCa(bonds), kDistanceDecimals),
          joined(proline.sites, &BondSite::file),
          joined(proline.sites, &BondSite::chain),
          joined(proline.sites, &BondSite::number),
          joined(proline.sites, &BondSite::residue),
          proline.evidence};
}

/// A file that failed has its name, "error" for a call and the message for a reason.
Cells errorCells(const FailedFile& failed) {
  Cells cells;
  for (const std::string& column : kColumns)
    cells.push_back(column == "file"     ? failed.file
                    : column == "call"   ? "error"
                    : column == "reason" ? failed.message
                                         : "");
  return cells;
}

}  // namespace

void writeCompareCsv(const CompareReport& report, std::ostream& out) {
  writeCsvLine(kColumns, out);
  forEachCompared(report, [&](const ComparedProtein& protein, const ComparedProline& proline) {
    writeCsvLine(cellsOf(protein, proline), out);
  });
  for (const FailedFile& failed : report.errors) writeCsvLine(errorCells(failed), out);
}

}  // namespace zorvela
