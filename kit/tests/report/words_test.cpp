// The sentence of a proline: which contributions it names.
#include "report/words.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

namespace {

using zorvela::Call;
using zorvela::ProlineResult;

/// P5 between A4 and K6 with these contributions by shift index.
ProlineResult proline(const std::vector<std::pair<int, double>>& contributions, double before = 0,
                      double after = 0) {
  ProlineResult result;
  result.number = "5";
  result.previous = "A";
  result.previousNumber = "4";
  result.next = "K";
  result.nextNumber = "6";
  zorvela::Evidence evidence;
  evidence.before = {"A", 0.05F, 0.05F, before};
  evidence.after = {"K", 0.05F, 0.05F, after};
  for (const auto& [index, nats] : contributions) {
    evidence.shifts[static_cast<std::size_t>(index)].secondary = 1.0F;
    evidence.shifts[static_cast<std::size_t>(index)].nats = nats;
  }
  result.evidence = evidence;
  result.pCisNorm = static_cast<float>(1 / (1 + std::exp(-evidence.logOdds())));
  result.call = zorvela::callOf(*result.pCisNorm);
  return result;
}

}  // namespace

TEST(Words, NameWhatDecidesAndWhatSpeaksAgainst) {
  const std::vector<std::pair<ProlineResult, std::string>> cases = {
      {proline({{10, 4.1}, {18, 3.0}}), "cis: CB and CG of the proline decide; nothing contradicts it"},
      {proline({{18, 6.0}, {3, -1.2}}), "cis: CG of the proline decides; CA of A4 contradicts it"},
      {proline({{18, -3.0}, {13, -0.2}}), "trans: CG of the proline supports it; nothing contradicts it"},
      {proline({{18, -3.0}}, 1.0), "trans: CG of the proline decides; the A before contradicts it"},
      {proline({{10, -0.3}, {13, 0.1}}), "trans: no shift clearly favours either, and 19 in 20 are trans"}};
  for (const auto& [result, sentence] : cases) EXPECT_EQ(zorvela::sentenceOf(result), sentence);
}

TEST(Words, UndecidedNamesBothSidesAndWhatToMeasure) {
  ProlineResult result = proline({{10, 2.5}, {13, -0.8}});
  result.evidence->next = {{18, 0.314, 0.5}};
  EXPECT_EQ(zorvela::sentenceOf(result),
            "undecided: CB of the proline favours cis, HA of K6 favours trans; CG would be worth 0.31 bits");
}

TEST(Words, NoAdviceWhereTheBestShiftIsWorthLittle) {
  ProlineResult result = proline({{10, 2.5}, {13, -0.8}});
  result.evidence->next = {{18, 0.019, 0.0}};
  EXPECT_EQ(zorvela::sentenceOf(result), "undecided: CB of the proline favours cis, HA of K6 favours trans");
  EXPECT_EQ(zorvela::nextShiftOf(result), "");
  EXPECT_EQ(zorvela::nextStep(result), "an NOE from HA of A4 to HA of P5 means cis, to HD means trans");
}

TEST(Words, CbMinusCgThatContradictsTheCallIsNamed) {
  ProlineResult result = proline({{18, -6.0}});
  result.evidence->shifts[10].observed = 34.0F;
  result.evidence->shifts[18].observed = 25.0F;
  EXPECT_EQ(
      zorvela::sentenceOf(result),
      "trans: CG of the proline supports it; nothing contradicts it; but CB - CG of 9.0 ppm indicates cis");
  result.evidence->shifts[18].observed = 27.0F;  // 7 ppm: neither
  EXPECT_EQ(zorvela::sentenceOf(result), "trans: CG of the proline supports it; nothing contradicts it");
}

TEST(Words, CbMinusCgThatDecidesWhereTheCallDoesNotIsNamed) {
  ProlineResult result = proline({{10, 2.5}});
  result.evidence->shifts[10].observed = 36.5F;  // both 2.5 ppm too high
  result.evidence->shifts[18].observed = 27.5F;
  EXPECT_EQ(zorvela::sentenceOf(result),
            "undecided: CB of the proline favours cis, but not enough; CB - CG of 9.0 ppm indicates cis");
}

TEST(Words, HowOftenSuchACallIsRight) {
  std::vector<std::pair<int, double>> shifts = {{10, 6.0}, {18, 6.0}};
  for (const int index : {0, 1, 2, 3, 4, 5, 12, 13}) shifts.emplace_back(index, 0.0);
  EXPECT_EQ(zorvela::howOftenRight(proline(shifts)),
            "in cross-validation, 32 of 32 prolines with CB and CG and P_CIS_NORM above 0.8 were cis");
  shifts[0].second = shifts[1].second = 1;
  shifts.pop_back();
  EXPECT_EQ(
      zorvela::howOftenRight(proline(shifts)),
      "in cross-validation, 17 of 81 undecided prolines with fewer than ten shifts were cis; 1 of 26 cis "
      "prolines with fewer than ten shifts was called cis");
  ProlineResult none;
  EXPECT_EQ(zorvela::howOftenRight(none), "");
}

TEST(Words, WithoutEvidenceTheReason) {
  ProlineResult result;
  result.reason = zorvela::reason::kTooFewShifts;
  result.previous = "A";
  result.number = "2";
  result.next = "K";
  EXPECT_EQ(zorvela::sentenceOf(result), "no prediction: too few shifts");
  EXPECT_EQ(zorvela::nextStep(result),
            "a prediction needs three of N, HA, C, CA, CB, HN for two of A, P2 and K");
  EXPECT_EQ(zorvela::strongestOf(result), "");
  EXPECT_EQ(zorvela::nextShiftOf(result), "");
  EXPECT_EQ(zorvela::precisionNote(result), "");
}

TEST(Words, WhereSinglePrecisionEndsTheSumStays) {
  ProlineResult result = proline({{18, -200.0}});
  result.pCisNorm = 0.0F;
  EXPECT_EQ(zorvela::precisionNote(result),
            "P_CIS_NORM is rounded to 0; the contributions add up to -202.9 nats, for trans");
  result.pCisNorm.reset();
  result.call = Call::none;
  EXPECT_EQ(zorvela::precisionNote(result),
            "the factors are too small for single precision; the contributions add up to -202.9 nats, "
            "for trans");
  result.evidence->before.nats = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(zorvela::precisionNote(result), "");
}

TEST(Words, StrongestThreeWithTheirSigns) {
  EXPECT_EQ(zorvela::strongestOf(proline({{10, 4.1}, {18, 3.0}, {3, 0.3}}, 0, -0.44)),
            "CB:+4.1;CG:+3.0;next:-0.4");
  EXPECT_EQ(zorvela::strongestOf(proline({{3, -2.0}, {13, 0.96}, {7, 0.04}})),
            "prev_CA:-2.0;next_HA:+1.0;HA:0.0");
}
