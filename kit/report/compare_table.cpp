// A comparison as a table for people.
#include <algorithm>
#include <array>
#include <ostream>

#include "report/compare_fields.h"
#include "report/text_table.h"
#include "util/number.h"
#include "util/text.h"

namespace zorvela {

namespace {

constexpr std::size_t kMostSites = 4;
constexpr std::array<Verdict, 6> kVerdicts = {Verdict::agree, Verdict::disagree,     Verdict::undecided,
                                              Verdict::mixed, Verdict::noPrediction, Verdict::notInStructure};

std::string orAbsent(const std::string& text) {
  return text.empty() ? kAbsentCell : text;
}

std::string residueText(const std::string& letter, const std::string& number) {
  return letter.empty() ? kAbsentCell : letter + number;
}

/// "10 trans" or "8 trans, 2 cis".
std::string modelsText(const ComparedProline& proline) {
  std::vector<std::string> texts;
  for (const BondState state : {BondState::trans, BondState::cis, BondState::twisted})
    if (const std::size_t count = proline.count(state); count > 0)
      texts.push_back(std::to_string(count) + " " + toText(state));
  return orAbsent(enumerated(texts));
}

std::string geometryText(const ComparedProline& proline) {
  const std::vector<ModelBond> bonds = proline.bonds();
  if (const auto omega = meanOmega(bonds)) return fixedText(*omega, 0);
  if (const auto step = meanCaToCa(bonds)) return "CA-CA " + fixedText(*step, 1) + " A";
  return kAbsentCell;
}

/// Chain and number in the structure; with the file where there are several.
std::string sitesText(const ComparedProline& proline, bool withFile) {
  std::vector<std::string> texts;
  for (const BondSite& site : proline.sites)
    texts.push_back((withFile ? site.file + " " : "") + (site.chain.empty() ? "" : site.chain + " ") +
                    site.residue + site.number);
  return orAbsent(enumerated(texts, kMostSites));
}

void writeProlines(const CompareReport& report, bool colour, std::ostream& out) {
  TextTable table({" ", "File", "Chain", "Before", "Proline", "P_CIS_NORM", "Shifts", "Structure", "Models",
                   "|omega|", "There", "Verdict"});
  const bool withFile = report.structures.size() > 1;
  forEachCompared(report, [&](const ComparedProtein& protein, const ComparedProline& proline) {
    const ProlineResult& shifts = proline.shifts;
    const bool isWrong = proline.verdict == Verdict::disagree;
    table.add(
        {isWrong ? "!" : " ", protein.result.file, orAbsent(protein.result.chain),
         residueText(shifts.previous, shifts.previousNumber), "P" + shifts.number,
         shifts.pCisNorm ? fixedText(static_cast<double>(*shifts.pCisNorm), 3) : kAbsentCell,
         shifts.reason.empty() ? toText(shifts.call) : kAbsentCell + " (" + shifts.reason + ")",
         proline.structure == StructureCall::none ? kAbsentCell : toText(proline.structure),
         modelsText(proline), geometryText(proline), sitesText(proline, withFile), toText(proline.verdict)},
        isWrong);
  });
  table.write(colour, out);
}

/// The sentences that say more than the rows.
void writeEvidence(const CompareReport& report, std::ostream& out) {
  bool isFirst = true;
  forEachCompared(report, [&](const ComparedProtein& protein, const ComparedProline& proline) {
    if (proline.evidence.empty()) return;
    if (isFirst) out << '\n';
    isFirst = false;
    const std::string chain = protein.result.chain.empty() ? "" : " chain " + protein.result.chain;
    out << (proline.verdict == Verdict::disagree ? "!  " : "   ")
        << shown(protein.result.file + chain + " P" + proline.shifts.number + ": " + proline.evidence)
        << '\n';
  });
}

void writeErrors(const CompareReport& report, std::ostream& out) {
  if (report.errors.empty()) return;
  out << "\nNot compared\n";
  for (const FailedFile& failed : report.errors) out << "   " << shown(failed.message) << '\n';
}

void writeSummary(const CompareReport& report, std::ostream& out) {
  std::size_t prolines = 0;
  std::string counts;
  for (const Verdict verdict : kVerdicts) {
    const std::size_t count = countVerdicts(report, verdict);
    prolines += count;
    if (count > 0)
      counts += (counts.empty() ? ": " : ", ") + std::to_string(count) + " " + toText(verdict) +
                (verdict == Verdict::disagree ? " (!)" : "");
  }
  out << '\n'
      << counted(prolines, "proline", "prolines") << " against "
      << counted(report.structures.size(), "structure", "structures") << counts << '\n'
      << "cis: |omega| up to " << fixedText(kCisOmegaUpTo, 0) << " degrees; trans: from "
      << fixedText(kTransOmegaFrom, 0) << "; twisted: between\n";
}

}  // namespace

void writeCompareTable(const CompareReport& report, bool colour, std::ostream& out) {
  const bool hasRows = std::any_of(report.proteins.begin(), report.proteins.end(),
                                   [](const ComparedProtein& protein) { return !protein.prolines.empty(); });
  if (hasRows) writeProlines(report, colour, out);
  writeEvidence(report, out);
  writeErrors(report, out);
  writeSummary(report, out);
}

}  // namespace zorvela
