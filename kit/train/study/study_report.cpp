// Tables in plain text.
#include "train/study/study_report.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <ostream>
#include <string>

namespace zorvela {

namespace {

const std::array<std::string, kOffsetMethods> kMethodNames = {"zorvela -check", "zorvela-kit", "other half"};

template <class... Values>
std::string formatted(const char* format, Values... values) {
  std::array<char, 160> text{};
  std::snprintf(text.data(), text.size(), format, values...);
  return text.data();
}

std::string share(std::size_t part, std::size_t whole) {
  if (whole == 0) return "-";
  return formatted("%zu (%.1f %%)", part, 100.0 * static_cast<double>(part) / static_cast<double>(whole));
}

/// -0.0004 would be written -0.000.
double withoutMinusZero(double ppm) {
  return std::round(ppm * 1000) == 0 ? 0.0 : ppm;
}

std::string measureText(Measure measure) {
  switch (measure) {
    case Measure::caMinusCb:
      return "caMinusCb";
    case Measure::alphaProton:
      return "alphaProton";
    case Measure::amideProtons:
      break;
  }
  return "amideProtons";
}

}  // namespace

void writeReferencing(std::ostream& out, const ReferencingStudy& study) {
  out << study.chains << " chains, " << study.longChains << " of 40 residues or more\n"
      << "other half: as zorvela-kit, by constants from the clusters of the other half\n\n";
  out << formatted("%-42s %7s  %-15s  %-15s  %s", "a correction is called for", "chains",
                   kMethodNames[0].c_str(), kMethodNames[1].c_str(), kMethodNames[2].c_str())
      << '\n';
  for (const CalledCount& row : study.called)
    out << formatted("%-42s %7zu  %-15s  %-15s  %s", row.chains.c_str(), row.count,
                     share(row.called[0], row.count).c_str(), share(row.called[1], row.count).c_str(),
                     share(row.called[2], row.count).c_str())
        << '\n';
  out << '\n'
      << formatted("%-27s %-15s %7s  %8s  %8s  %s", "offsets as they are (ppm)", "by", "chains", "median",
                   "spread", "beyond two errors")
      << '\n';
  for (const EstimateSpread& row : study.spreads)
    out << formatted("%-27s %-15s %7zu  %8.3f  %8.3f  %.1f %%", row.atoms.c_str(),
                     kMethodNames[row.method].c_str(), row.count, withoutMinusZero(row.median), row.deviation,
                     100 * row.beyondTwoErrors)
        << '\n';
}

void writeRelations(std::ostream& out, const std::vector<ShiftRelation>& relations) {
  for (const ShiftRelation& relation : relations) {
    out << "{\"" << relation.atom << "\", Measure::" << measureText(relation.measure) << ", "
        << formatted("%g, %g", relation.first, relation.step) << ", {";
    for (std::size_t i = 0; i < relation.points.size(); ++i)
      out << (i > 0 ? ", " : "") << formatted("%.3f", relation.points[i]);
    out << "}, " << formatted("%.3f, %.3f", relation.scatter, relation.betweenChains) << "},\n";
  }
}

// --- Next shifts ----------------------------------------------------------------------------------

namespace {

void writeTrialSet(std::ostream& out, const std::string& name, const TrialFigures& figures) {
  out << '\n'
      << name << ": " << figures.starts << " starts of " << figures.prolines << " prolines\n"
      << "          log loss (bits)                               undecided\n"
         "shifts    by gain  at random  saved [95 %]              by gain  at random\n";
  for (std::size_t i = 0; i < figures.steps.size(); ++i) {
    const TrialStep& step = figures.steps[i];
    out << formatted("%6zu    %7.4f  %9.4f  %6.4f [%.4f %.4f]  %8.3f  %9.3f\n", i, step.byGain, step.atRandom,
                     step.atRandom - step.byGain, step.saved.low, step.saved.high, step.undecidedByGain,
                     step.undecidedAtRandom);
  }
  out << formatted("The first shift by gain: %.4f bits expected, %.4f bits less log loss.\n",
                   figures.promised, figures.kept);
}

}  // namespace

void writeTrial(std::ostream& out, const NextShiftTrial& trial, int rounds) {
  out << "Each shift is hidden with a chance of one half, " << rounds
      << " times for each proline; hidden ones are then\n"
         "given back one at a time, by expected gain of information or at random.\n";
  writeTrialSet(out, "All", trial.all);
  writeTrialSet(out, "Undecided at the start", trial.undecided);
}

// --- Offsets --------------------------------------------------------------------------------------

void writeOffsetHeader(std::ostream& out) {
  out << "| 13C offset | corrected | AUC | AUC, CB and CG | log loss | log loss, CB and CG |\n"
         "|---|---|---|---|---|---|\n";
}

void writeOffsetRow(std::ostream& out, double ppm, bool isCorrected, const std::vector<GroupFigures>& all) {
  const auto figuresOf = [&](const std::string& key) {
    const auto isGroup = [&](const GroupFigures& figures) { return figures.group.key == key; };
    return std::find_if(all.begin(), all.end(), isGroup)->figures;
  };
  const Figures ofAll = figuresOf("all");
  const Figures withBoth = figuresOf("with_cb_and_cg");
  out << formatted("| %g ppm | %s | %.3f | %.3f | %.3f | %.3f |\n", ppm, isCorrected ? "yes" : "no",
                   ofAll.auc.value(), withBoth.auc.value(), ofAll.logLoss.value(), withBoth.logLoss.value());
}

}  // namespace zorvela
