// Proline databases, triplets, the probability of cis, and how it is printed and saved.
#include <cmath>     // for std::exp
#include <cstdio>    // for std::printf, std::puts, std::fflush
#include <iostream>  // for std::cout

#include "ZORVELA.h"

namespace {

const std::string kProline = "P";

// Positions in a triplet; they key the shares of residue types in the databases.
constexpr int kPrevious = 1;
constexpr int kCentre = 2;
constexpr int kNext = 3;

// More missing shifts than this make a residue a poor one; a triplet may hold one of them.
constexpr int kMostMissing = 3;
constexpr int kMostPoorResidues = 1;

// Trans to cis among prolines, by which equal odds become natural ones.
constexpr double kTransPerCis = 19.0;

constexpr const char* kColumns =
    "  RESID RESNAME_PREV RESNAME RESNAME_NEXT CS_CNT1 CS_CNT2 CS_CNT3 CG_SHIFT P_CIS P_CIS_NORM ";
constexpr const char* kFormats = "%2d %1s %1s %1s %2d %2d %2d %8.3f %8.3f %8.3f ";

// The residue `offset` further on. Wraps at the ends of the residue numbers instead of overflowing.
int residueAt(int resid, int offset) {
  return static_cast<int>(static_cast<unsigned>(resid) + static_cast<unsigned>(offset));
}

// The secondary shift (ppm) in the first of a residue's rows that is of that atom; 0 if none is.
float shiftOf(const std::vector<const GDB::Row*>& rows, const std::string& atom) {
  for (const GDB::Row* row : rows)
    if (GDB::cell(*row, "ATOMNAME") == atom) return GDB::toFloat(GDB::cell(*row, "SHIFT"));
  return 0.0F;
}

std::string atPosition(const std::string& key, int position) {
  return key + "_R" + std::to_string(position);
}

// Without the factor 1 / (sigma sqrt(2 pi)): the deviations act through the exponent alone.
double gaussian(float shift, float mean, float deviation) {
  const float difference = shift - mean;
  const double z = (1.0 / deviation) * difference;
  return std::exp(-0.5 * (z * z));
}

float times(float product, double factor) {
  return static_cast<float>(product * factor);
}

// Evidence for cis and for trans, each in single precision after every factor.
struct Evidence {
  float cis = 1.0F;
  float trans = 1.0F;

  float probability() const { return cis / (cis + trans); }
};

float naturalOdds(float p) {
  return static_cast<float>(p / (p + kTransPerCis * (1.0 - p)));
}

}  // namespace

// --- The run ------------------------------------------------------------------------------------

void ZORVELA::runPredict() {
  init();
  std::cout << "Analyzing " << inName << ":" << std::endl;
  getResInfo();

  GDB outTable;
  outTable.VARS_str_parser(kColumns);
  outTable.FORMAT_str_parser(kFormats);
  for (const int resid : residuesToVisit())
    if (const auto prediction = predictProline(resid)) addPrediction(outTable, *prediction);

  printListing(outTable);
  outTable.saveGDB(sumName);
}

// The prolines between the first and the last residue. With details on, every residue is visited: each
// clipped shift has its line.
std::vector<int> ZORVELA::residuesToVisit() const {
  std::vector<int> residues;
  const int residueCount = static_cast<int>(resNames.size());
  for (auto residue = resNames.lower_bound(firstResid); residue != resNames.end(); ++residue) {
    const auto& [resid, name] = *residue;
    if (resid > lastResid) break;
    if (resid < minResid || resid > maxResid || resid == 1 || resid == residueCount) continue;
    if (name == kProline || showDetail) residues.push_back(resid);
  }
  return residues;
}

// --- Databases ----------------------------------------------------------------------------------

void ZORVELA::getProCSValue(const std::string& fileName) {
  useProCSTable(GDB(fileName));
}

void ZORVELA::useProCSTable(const GDB& table) {
  for (const auto& [number, row] : table.entries) {
    const int index = GDB::toInt(GDB::cell(row, "index"));
    avgCis[index] = GDB::toFloat(GDB::cell(row, "avg_cis"));
    avgTrans[index] = GDB::toFloat(GDB::cell(row, "avg_trans"));
    stdCis[index] = GDB::toFloat(GDB::cell(row, "std_cis"));
    stdTrans[index] = GDB::toFloat(GDB::cell(row, "std_trans"));
  }
}

void ZORVELA::getProSeqOccurence(const std::string& fileName) {
  useProSeqTable(GDB(fileName));
}

void ZORVELA::useProSeqTable(const GDB& table) {
  for (const auto& [number, row] : table.entries) {
    const std::string& name = GDB::cell(row, "resname");
    proSeqCis[name][kPrevious] = GDB::toFloat(GDB::cell(row, "cis_prev"));
    proSeqCis[name][kNext] = GDB::toFloat(GDB::cell(row, "cis_next"));
    proSeqTrans[name][kPrevious] = GDB::toFloat(GDB::cell(row, "trans_prev"));
    proSeqTrans[name][kNext] = GDB::toFloat(GDB::cell(row, "trans_next"));
  }
}

// --- Triplets -----------------------------------------------------------------------------------

std::map<std::string, std::string> ZORVELA::getTriplet(int r) {
  std::map<std::string, std::string> record;
  for (int position = kPrevious; position <= kNext; ++position) {
    const int resid = residueAt(r, position - kCentre);
    const std::string residText = itoa(resid, numBuffer, 10);
    record[atPosition("RESID", position)] = residText;
    record[atPosition("RESNAME", position)] = resNames[resid];
    const std::vector<const GDB::Row*> rows = resTable.findEntries("RESID", residText);
    for (const auto& [key, atom] : atomNames) {
      float shift = shiftOf(rows, atom);
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

// --- Probability --------------------------------------------------------------------------------

std::optional<ProlinePrediction> ZORVELA::predictProline(int r) {
  std::map<std::string, std::string> triplet = getTriplet(r);
  if (!hasEnoughShifts(triplet) || triplet["RESNAME_R2"] != kProline) return std::nullopt;

  ProlinePrediction prediction;
  prediction.resid = r;
  prediction.cgShift = cgShifts[r];
  for (int position = kPrevious; position <= kNext; ++position) {
    const auto i = static_cast<std::size_t>(position - kPrevious);
    prediction.names[i] = triplet[atPosition("RESNAME", position)];
    prediction.shiftCounts[i] = kAtomsPerResidue - missingCount[residueAt(r, position - kCentre)];
  }
  prediction.pCis = cisProbability(triplet, prediction.names, prediction.cgShift);
  prediction.pCisNorm = naturalOdds(prediction.pCis);
  return prediction;
}

float ZORVELA::cisProbability(std::map<std::string, std::string>& triplet,
                              const std::array<std::string, 3>& names, float cgShift) {
  Evidence shifts;
  int k = 0;
  for (int position = kPrevious; position <= kNext; ++position) {
    for (const auto& [key, atom] : atomNames) {
      const float shift = GDB::toFloat(triplet[atPosition(atom, position)]);
      if (!(shift > kMissingSecondaryShift)) {
        shifts.cis = times(shifts.cis, gaussian(shift, avgCis[k], stdCis[k]));
        shifts.trans = times(shifts.trans, gaussian(shift, avgTrans[k], stdTrans[k]));
      }
      ++k;
    }
  }

  const float priorCis = proSeqCis[names[0]][kPrevious] * proSeqCis[names[2]][kNext];
  const float priorTrans = proSeqTrans[names[0]][kPrevious] * proSeqTrans[names[2]][kNext];
  Evidence all{shifts.cis * priorCis, shifts.trans * priorTrans};
  if (!(cgShift >= kMissingBound)) {
    all.cis = times(all.cis, gaussian(cgShift, avgCis[kProlineCG], stdCis[kProlineCG]));
    all.trans = times(all.trans, gaussian(cgShift, avgTrans[kProlineCG], stdTrans[kProlineCG]));
  }
  return all.probability();
}

// --- Output -------------------------------------------------------------------------------------

void ZORVELA::addPrediction(GDB& table, const ProlinePrediction& prediction) {
  const int row = prediction.resid;
  const auto& [previous, centre, next] = prediction.names;
  table.setEntry(row, "RESID", itoa(row, numBuffer, 10));
  table.setEntry(row, "RESNAME_PREV", previous);
  table.setEntry(row, "RESNAME", centre);
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
    const int resid = GDB::toInt(GDB::cell(row, "RESID"));
    const double pCis = GDB::toDouble(GDB::cell(row, "P_CIS"));
    const double pCisNorm = GDB::toDouble(GDB::cell(row, "P_CIS_NORM"));
    std::printf("   %1s%-3d %1s%-3d %1s%-3d %-6.3f %-6.3f\n", GDB::cell(row, "RESNAME_PREV").c_str(),
                resid - 1, kProline.c_str(), resid, GDB::cell(row, "RESNAME_NEXT").c_str(), resid + 1, pCis,
                pCisNorm);
  }
  std::fflush(stdout);  // the table may go to the same pipe, and stands behind the listing there
}
