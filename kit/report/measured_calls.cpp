// Share of right calls by the shifts behind them, from cross-validation with the shipped tables.
#include <algorithm>
#include <array>

#include "report/words.h"

namespace zorvela {

namespace {

constexpr int kFewestShifts = 10;

/// A range of P_CIS_NORM with one call; the bounds of calls belong to cis and to trans.
struct Level {
  Call call;
  float above;
  const char* text;
};
constexpr std::array<Level, 5> kLevels = {{{Call::trans, 0.0F, " and P_CIS_NORM up to 0.01"},
                                           {Call::trans, 0.01F, " and P_CIS_NORM from 0.01 to 0.05"},
                                           {Call::undecided, 0.05F, ""},
                                           {Call::cis, 0.5F, " and P_CIS_NORM from 0.5 to 0.8"},
                                           {Call::cis, 0.8F, " and P_CIS_NORM above 0.8"}}};

struct Count {
  int prolines;
  int cis;
};

/// Prolines by what is known of them, at each level.
struct Group {
  const char* known;
  std::array<Count, kLevels.size()> counts;
};
/// Printed by script/measured-calls.
constexpr std::array<Group, 4> kGroups = {{
    {"with CB and CG", {{{1128, 0}, {50, 0}, {19, 2}, {2, 1}, {32, 32}}}},
    {"with CB, without CG", {{{421, 1}, {157, 4}, {57, 12}, {6, 3}, {11, 8}}}},
    {"without CB", {{{57, 0}, {76, 2}, {38, 7}, {1, 1}, {0, 0}}}},
    {"with fewer than ten shifts", {{{59, 2}, {144, 6}, {81, 17}, {1, 1}, {0, 0}}}},
}};

const Group& groupOf(const Evidence& evidence) {
  const auto shifts = std::count_if(evidence.shifts.begin(), evidence.shifts.end(),
                                    [](const ShiftContribution& shift) { return shift.secondary; });
  if (shifts < kFewestShifts) return kGroups[3];
  if (!evidence.shift(kIndexCB).secondary) return kGroups[2];
  return kGroups[evidence.shift(kIndexCG).secondary ? 0 : 1];
}

std::size_t levelOf(Call call, float p) {
  std::size_t level = 0;
  for (std::size_t i = 1; i < kLevels.size(); ++i)
    if (kLevels[i].call == call && (kLevels[level].call != call || p > kLevels[i].above)) level = i;
  return level;
}

std::string shareText(int part, int whole) {
  return std::to_string(part) + " of " + std::to_string(whole) + " ";
}

/// "; 1 of 10 cis prolines without CB was called cis", if less than half of them are.
std::string sensitivityText(const Group& group) {
  int found = 0;
  int all = 0;
  for (std::size_t i = 0; i < kLevels.size(); ++i) {
    all += group.counts[i].cis;
    if (kLevels[i].call == Call::cis) found += group.counts[i].cis;
  }
  if (2 * found >= all) return "";
  return "; " + shareText(found, all) + "cis prolines " + group.known + (found == 1 ? " was" : " were") +
         " called cis";
}

}  // namespace

std::string howOftenRight(const ProlineResult& proline) {
  if (!proline.evidence || !proline.pCisNorm) return "";
  const Group& group = groupOf(*proline.evidence);
  const std::size_t level = levelOf(proline.call, *proline.pCisNorm);
  const auto [prolines, cis] = group.counts[level];
  const std::string sensitivity = proline.call == Call::cis ? "" : sensitivityText(group);
  const std::string name = std::string("prolines ") + group.known + kLevels[level].text;
  if (prolines == 0) return "in cross-validation, there were no " + name + sensitivity;
  const bool isTrans = proline.call == Call::trans;
  return "in cross-validation, " + shareText(isTrans ? prolines - cis : cis, prolines) +
         (proline.call == Call::undecided ? "undecided " : "") + name +
         (isTrans ? " were trans" : " were cis") + sensitivity;
}

}  // namespace zorvela
