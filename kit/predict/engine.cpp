// Reference tables, once; then protein after protein.
#include "zorvela/predict.h"

#include <sys/stat.h>  // for stat
#include <unistd.h>    // for readlink

#include <climits>
#include <cmath>
#include <cstdlib>

#include "predict/tables.h"
#include "zorvela/error.h"

namespace zorvela {

// --- Calls --------------------------------------------------------------------------------------

std::string toText(Call call) {
  switch (call) {
    case Call::cis:
      return "cis";
    case Call::trans:
      return "trans";
    case Call::undecided:
      return "undecided";
    case Call::none:
      break;
  }
  return "none";
}

Call callOf(float pCisNorm) {
  if (std::isnan(pCisNorm)) return Call::none;
  if (pCisNorm >= kCisFrom) return Call::cis;
  return pCisNorm <= kTransUpTo ? Call::trans : Call::undecided;
}

bool callsForCorrection(const ReferencingOffset& offset) {
  return offset.recommended && std::isfinite(offset.offset);
}

// --- Reference tables ---------------------------------------------------------------------------

namespace {

const std::string kRemedy =
    "name the folder of the seven reference tables with --tables or its parent with ZORVELA_DIR";

bool isFolder(const std::string& path) {
  struct stat info {};
  return stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

/// The folder that holds the running program; empty if the system does not tell.
std::string programFolder() {
  char path[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
  if (length <= 0 || static_cast<std::size_t>(length) == sizeof path) return "";
  const std::string name(path, static_cast<std::size_t>(length));
  return name.substr(0, name.rfind('/'));
}

bool hasColumn(const GDB& table, const std::string& name) {
  for (const auto& [index, column] : table.columnNames)
    if (column == name) return true;
  return false;
}

GDB loadChecked(const std::string& path, const std::vector<std::string>& columns) {
  GDB table = loadTable(path, kRemedy);
  for (const std::string& column : columns)
    if (!hasColumn(table, column)) throw Error(path, 0, "has no column " + column, kRemedy);
  if (table.entries.empty()) throw Error(path, 0, "has no rows", kRemedy);
  return table;
}

std::vector<std::string> shiftColumns(const ZORVELA& run) {
  std::vector<std::string> columns = {"RESNAME"};
  for (const auto& [key, atom] : run.atomNames) columns.push_back(atom);
  return columns;
}

std::vector<std::string> limitColumns(const ZORVELA& run) {
  std::vector<std::string> columns = {"RESNAME"};
  for (const auto& [key, atom] : run.atomNames) {
    columns.push_back(atom + "_MIN");
    columns.push_back(atom + "_MAX");
  }
  return columns;
}

void loadDatabases(ZORVELA& run) {
  run.useProCSTable(loadChecked(run.proCsName, {"index", "avg_cis", "avg_trans", "std_cis", "std_trans"}));
  run.useProSeqTable(
      loadChecked(run.proSeqName, {"resname", "cis_prev", "cis_next", "trans_prev", "trans_next"}));
  for (int index = 0; index <= kProlineCG; ++index)
    if (run.avgCis.count(index) == 0)
      throw Error(run.proCsName, 0, "has no row with index " + std::to_string(index), kRemedy);
}

}  // namespace

std::string findTables(const std::string& given) {
  if (!given.empty()) return given;
  const char* home = std::getenv("ZORVELA_DIR");
  if (home != nullptr && *home != '\0') return std::string(home) + "/tab";
  const std::string installed = programFolder() + "/../share/zorvela/tab";
  return isFolder(installed) ? installed : "./tab";
}

std::unique_ptr<ZORVELA> loadReferenceTables(const std::string& folder) {
  if (!isFolder(folder)) throw Error(folder, 0, "there is no such folder", kRemedy);
  auto run = std::make_unique<ZORVELA>();
  run->pathSep = "/";
  run->setArgs({{"tabDir", folder}});
  run->rcTable = loadChecked(run->rcName, shiftColumns(*run));
  run->adjTable = loadChecked(run->adjName, shiftColumns(*run));
  run->prevTable = loadChecked(run->prevName, shiftColumns(*run));
  run->nextTable = loadChecked(run->nextName, shiftColumns(*run));
  run->limitTable = loadChecked(run->limitName, limitColumns(*run));
  loadDatabases(*run);
  return run;
}

void copyReferenceTables(const ZORVELA& from, ZORVELA& to) {
  to.rcTable = from.rcTable;
  to.adjTable = from.adjTable;
  to.prevTable = from.prevTable;
  to.nextTable = from.nextTable;
  to.limitTable = from.limitTable;
  to.proSeqCis = from.proSeqCis;
  to.proSeqTrans = from.proSeqTrans;
  to.avgCis = from.avgCis;
  to.stdCis = from.stdCis;
  to.avgTrans = from.avgTrans;
  to.stdTrans = from.stdTrans;
}

// --- Proteins -----------------------------------------------------------------------------------

void assembleProtein(ZORVELA& run, const Protein& protein) {
  run.csTable = toTable(protein);
  run.rcShifts.clear();
  run.missingCount.clear();
  run.cgShifts.clear();
  run.firstResid = 1;
  run.lastResid = INT_MAX;
  run.getResInfo();
}

Predictor::Predictor(const ZORVELA& tables) {
  copyReferenceTables(tables, run);
}

ProteinResult Predictor::predict(const Protein& protein) {
  assembleProtein(run, protein);
  ProteinResult result;
  result.file = protein.file;
  result.chain = protein.chain;
  result.list = protein.list;
  result.length = static_cast<int>(protein.sequence.size());
  result.shiftCount = static_cast<int>(protein.shifts.size());
  result.notes = protein.notes;
  result.offsets = run.referencingOffsets();
  std::vector<int> positions;
  for (std::size_t i = 0; i < protein.sequence.size(); ++i)
    if (protein.sequence[i] == 'P' || protein.sequence[i] == 'p') positions.push_back(static_cast<int>(i) + 1);
  const auto predictions = run.predictProlines(positions);
  for (std::size_t i = 0; i < positions.size(); ++i)
    result.prolines.push_back(describeProline(protein, positions[i], predictions[i]));
  return result;
}

namespace {

/// How many of the six backbone shifts a residue has; nothing outside the sequence.
std::optional<int> shiftCount(const ZORVELA& run, int resid) {
  if (resid < 1 || resid > run.seqLength) return std::nullopt;
  return kAtomsPerResidue - run.missingCount.at(resid);
}

std::optional<float> observedCG(const ZORVELA& run, int resid) {
  const auto shift = run.cgShifts.find(resid);
  if (shift == run.cgShifts.end() || shift->second >= kMissingBound) return std::nullopt;
  return shift->second;
}

/// Proline, neighbours, shift counts: all that is known before a prediction.
ProlineResult describe(const ZORVELA& run, const Protein& protein, int position) {
  const auto index = static_cast<std::size_t>(position) - 1;
  ProlineResult proline;
  proline.position = position;
  proline.number = protein.numbers[index];
  if (index > 0) {
    proline.previous = protein.sequence[index - 1];
    proline.previousNumber = protein.numbers[index - 1];
  }
  if (index + 1 < protein.sequence.size()) {
    proline.next = protein.sequence[index + 1];
    proline.nextNumber = protein.numbers[index + 1];
  }
  proline.previousCount = shiftCount(run, position - 1);
  proline.count = shiftCount(run, position);
  proline.nextCount = shiftCount(run, position + 1);
  proline.cgShift = observedCG(run, position);
  return proline;
}

const std::string& whyNot(const Protein& protein, int position) {
  const auto index = static_cast<std::size_t>(position) - 1;
  if (protein.sequence[index] == 'p') return reason::kLowerCase;
  if (index == 0) return reason::kFirstResidue;
  if (index + 1 == protein.sequence.size()) return reason::kLastResidue;
  return reason::kTooFewShifts;
}

}  // namespace

ProlineResult Predictor::describeProline(const Protein& protein, int position,
                                         const std::optional<ProlinePrediction>& prediction) const {
  ProlineResult proline = describe(run, protein, position);
  if (!prediction) {
    proline.reason = whyNot(protein, position);
    return proline;
  }
  proline.call = callOf(prediction->pCisNorm);
  if (proline.call == Call::none) {
    proline.reason = reason::kNeitherFits;
    return proline;
  }
  proline.pCis = prediction->pCis;
  proline.pCisNorm = prediction->pCisNorm;
  return proline;
}

}  // namespace zorvela
