#include "cli/evaluate_referencing.h"

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
  std::array<char, 128> text{};
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

void writeRelations(std::ostream& out, const ReferencingStudy& study) {
  for (const ShiftRelation& relation : study.fitted) {
    out << "{\"" << relation.atom << "\", Measure::" << measureText(relation.measure) << ", "
        << formatted("%g, %g", relation.first, relation.step) << ", {";
    for (std::size_t i = 0; i < relation.points.size(); ++i)
      out << (i > 0 ? ", " : "") << formatted("%.3f", relation.points[i]);
    out << "}, " << formatted("%.3f, %.3f", relation.scatter, relation.betweenChains) << "},\n";
  }
}

}  // namespace zorvela
