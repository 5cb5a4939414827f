#include "train/evaluation_groups.h"

#include <cstdint>

#include "zorvela/calls.h"

namespace zorvela {

namespace {

// Seed of the bootstrap; any number does, but always the same one.
constexpr std::uint64_t kBootstrapSeed = 7;

}  // namespace

std::vector<Group> groups() {
  const auto all = [](const Evaluated&) { return true; };
  const auto withBoth = [](const Evaluated& p) { return p.ruleApplies(); };
  const auto without = [](const Evaluated& p) { return !p.ruleApplies(); };
  const auto fair = [](const Evaluated& p) { return !p.isContradicted(); };
  const auto fairWithBoth = [](const Evaluated& p) { return p.ruleApplies() && !p.isContradicted(); };
  const auto onlyCB = [](const Evaluated& p) { return p.hasCB && !p.hasCG; };
  const auto noCB = [](const Evaluated& p) { return !p.hasCB; };
  const auto few = [](const Evaluated& p) { return p.shiftCount <= 9; };
  const auto some = [](const Evaluated& p) { return p.shiftCount >= 10 && p.shiftCount <= 13; };
  const auto many = [](const Evaluated& p) { return p.shiftCount >= 14; };
  return {{"all", "all prolines", Method::program, all},
          {"with_cb_and_cg", "with CB and CG", Method::program, withBoth},
          {"with_cb_and_cg_rule", "  CB - CG above 7.1 ppm", Method::rule, withBoth},
          {"without_cb_minus_cg", "without CB - CG", Method::program, without},
          {"not_contradicted", "label not contradicted", Method::program, fair},
          {"not_contradicted_with_cb_and_cg", "  of these, with CB and CG", Method::program, fairWithBoth},
          {"not_contradicted_with_cb_and_cg_rule", "  CB - CG above 7.1 ppm", Method::rule, fairWithBoth},
          {"cb_without_cg", "with CB, without CG", Method::program, onlyCB},
          {"without_cb", "without CB", Method::program, noCB},
          {"up_to_9_shifts", "up to 9 shifts", Method::program, few},
          {"from_10_to_13_shifts", "10 to 13 shifts", Method::program, some},
          {"from_14_shifts", "14 shifts or more", Method::program, many}};
}

std::vector<Scored> scored(const Evaluation& evaluation, const Group& group) {
  std::vector<Scored> set;
  for (const Evaluated& p : evaluation.prolines) {
    if (!group.holds(p)) continue;
    if (group.method == Method::rule)
      set.push_back({p.isCis, p.cbMinusCg, p.cbMinusCg > kRuleCisAbove, -1, p.cluster});
    else
      set.push_back(
          {p.isCis, p.pCisNorm, callOf(static_cast<float>(p.pCisNorm)) == Call::cis, p.pCisNorm, p.cluster});
  }
  return set;
}

std::vector<GroupFigures> allFigures(const Evaluation& evaluation, int rounds) {
  std::vector<GroupFigures> all;
  for (const Group& group : groups()) {
    const std::vector<Scored> set = scored(evaluation, group);
    all.push_back({group, figuresOf(set), bootstrap(set, rounds, kBootstrapSeed)});
  }
  return all;
}

}  // namespace zorvela
