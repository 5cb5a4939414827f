// Predictions of labelled prolines and what of them is scored; expected values are worked out by hand.
#include "train/evaluation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "made_proteins.h"
#include "zorvela/error.h"

namespace {

using made::Protein;
using zorvela::Omega;

/// Tables in which the CG of the proline alone says something: 24.5 ppm for cis, 27 for trans, both with 1
/// ppm.
zorvela::ReferenceTables tablesOfCG() {
  zorvela::ReferenceTables tables = made::publishedTables();
  tables.shifts = zorvela::startTable({}, "index avg_cis avg_trans std_cis std_trans", "%d %f %f %f %f");
  for (int index = 0; index < 18; ++index)
    zorvela::addRow(tables.shifts, {std::to_string(index), "0", "0", "1", "1"});
  zorvela::addRow(tables.shifts, {"18", "24.5", "27", "1", "1"});
  return tables;
}

zorvela::Predictions predicted(const zorvela::LabelledProlines& data) {
  ZORVELA run;
  zorvela::useTables(tablesOfCG(), run);
  // Wide limits, so that nothing is clipped.
  run.limitTable = zorvela::startTable(
      {}, "RESNAME N_MIN N_MAX HA_MIN HA_MAX C_MIN C_MAX CA_MIN CA_MAX CB_MIN CB_MAX HN_MIN HN_MAX",
      "%s %f %f %f %f %f %f %f %f %f %f %f %f");
  for (const std::string name : {"A", "G", "P"}) {
    std::vector<std::string> cells = {name};
    for (int atom = 0; atom < 6; ++atom) cells.insert(cells.end(), {"-50", "50"});
    zorvela::addRow(run.limitTable, cells);
  }
  return zorvela::predictAll(run, data);
}

ProlinePrediction prediction(float pCisNorm, float cg = made::kAbsent) {
  ProlinePrediction made;
  made.pCisNorm = pCisNorm;
  made.cgShift = cg;
  return made;
}

TEST(PredictAll, ProbabilityFromOneShift) {
  const auto predictions =
      predicted(made::dataOf({{"GAPAG", Omega::cis, 0.0F, 24.5F}, {"AAPAG", Omega::trans, 0.0F, 25.75F}}));
  ASSERT_EQ(2U, predictions.size());
  ASSERT_TRUE(predictions[0] && predictions[1]);
  // 0 from cis and 2.5 from trans: odds exp(2.5^2 / 2) = exp(3.125) = 22.7599.
  EXPECT_NEAR(0.957912, predictions[0]->pCis, 1e-5);
  EXPECT_NEAR(0.545024, predictions[0]->pCisNorm, 1e-5);  // 22.7599 / 19 = 1.197889
  // Half-way between the means: even odds, and 1 to 19.
  EXPECT_NEAR(0.5, predictions[1]->pCis, 1e-5);
  EXPECT_NEAR(0.05, predictions[1]->pCisNorm, 1e-5);
}

TEST(PredictAll, CountsTheShiftsOfTheThreeResidues) {
  const auto predictions = predicted(made::dataOf({{"GAPAG", Omega::cis, 0.0F, 24.5F}}));
  ASSERT_TRUE(predictions[0]);
  EXPECT_EQ((std::array<int, 3>{6, 4, 6}), predictions[0]->shiftCounts);
}

TEST(CrossValidation, PredictsByTablesOfTheOtherClusters) {
  const std::vector<Protein> proteins = {{"GAPAG", Omega::cis, 1.0F, 24.0F, made::kAbsent, "one"},
                                         {"GAPAA", Omega::trans, -2.0F, 27.0F, made::kAbsent, "one"},
                                         {"AAPAG", Omega::cis, 3.0F, 25.0F, made::kAbsent, "two"},
                                         {"AAPAA", Omega::trans, -1.0F, 26.5F, made::kAbsent, "two"}};
  const zorvela::LabelledProlines data = made::dataOf(proteins);
  const zorvela::TrainingChoices choices;
  std::vector<std::size_t> steps;
  const auto predictions =
      zorvela::crossValidate(made::publishedTables(), data, data, 2, choices,
                             [&](std::size_t done, std::size_t) { steps.push_back(done); });
  EXPECT_EQ((std::vector<std::size_t>{1, 2}), steps);
  const std::vector<bool> first = {true, true, false, false};
  const std::vector<bool> second = {false, false, true, true};
  for (const auto& [trainedOn, predictedAt] : {std::pair(first, 2U), std::pair(second, 0U)}) {
    zorvela::ReferenceTables tables = made::publishedTables();
    zorvela::trainTables(tables, data, trainedOn, trainedOn, choices);
    ZORVELA run;
    zorvela::useTables(tables, run);
    const auto alone = zorvela::predictAll(run, data);
    for (const std::size_t i : {std::size_t{predictedAt}, std::size_t{predictedAt} + 1}) {
      ASSERT_TRUE(predictions[i] && alone[i]);
      EXPECT_EQ(alone[i]->pCis, predictions[i]->pCis) << i;
    }
  }
}

TEST(CrossValidation, NeedsAClusterForEachFold) {
  const auto data = made::dataOf({{"GAPAG", Omega::cis}, {"GAPAA", Omega::trans}});
  EXPECT_THROW(zorvela::crossValidate(made::publishedTables(), data, data, 3, {}), zorvela::Error);
}

TEST(Evaluation, ScoresTheMedianOfEachWindowAndCountsTheRest) {
  zorvela::LabelledProlines data = made::dataOf({{"GAPAG", Omega::cis},      // scored
                                                 {"GAPAG", Omega::cis},      // the same window
                                                 {"AAPAG", Omega::trans},    // not predicted
                                                 {"GAPAA", Omega::trans},    // no number
                                                 {"AAPAA", Omega::trans}});  // no label by structure
  data.labels.prolines[4].structure.reset();
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const zorvela::Evaluation result = zorvela::evaluation(
      data, {prediction(0.75F), prediction(0.5F), std::nullopt, prediction(nan), prediction(0.25F)});
  EXPECT_EQ(4U, result.labelled);
  EXPECT_EQ(1U, result.notPredicted);
  EXPECT_EQ(1U, result.repeated);
  EXPECT_EQ(std::vector<std::size_t>{3}, result.notANumber);
  ASSERT_EQ(1U, result.prolines.size());
  EXPECT_EQ(1U, result.prolines[0].label);  // of two the less probable one
  EXPECT_TRUE(result.prolines[0].isCis);
  EXPECT_EQ(0.625, result.prolines[0].pCisNorm);  // (0.75 + 0.5) / 2
}

TEST(Evaluation, AWindowHasTheLabelOfMostAndTheShiftsOfTheMiddleMeasurement) {
  const auto data = made::dataOf({{"GAPAG", Omega::cis},
                                  {"GAPAG", Omega::trans, 0.0F, 26.0F, 31.0F},
                                  {"GAPAG", Omega::trans, 0.0F, 24.0F, 34.0F},
                                  {"AAPAA", Omega::cis},
                                  {"AAPAA", Omega::trans}});
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const zorvela::Evaluation result =
      zorvela::evaluation(data, {prediction(0.125F), prediction(0.5F, 26.0F), prediction(0.75F, 24.0F),
                                 prediction(0.25F), prediction(0.5F)});
  ASSERT_EQ(2U, result.prolines.size());
  EXPECT_EQ(3U, result.repeated);
  EXPECT_FALSE(result.prolines[0].isCis);
  EXPECT_EQ(0.5, result.prolines[0].pCisNorm);
  EXPECT_DOUBLE_EQ(5, result.prolines[0].cbMinusCg);  // 31 - 26
  EXPECT_TRUE(result.prolines[1].isCis);              // split: the first
  // A measurement without a number does not hide the others.
  const zorvela::Evaluation other = zorvela::evaluation(
      data, {prediction(nan), prediction(0.5F), prediction(0.75F), std::nullopt, std::nullopt});
  EXPECT_EQ((std::vector<std::size_t>{0}), other.notANumber);
  ASSERT_EQ(1U, other.prolines.size());
  EXPECT_EQ(0.625, other.prolines[0].pCisNorm);
}

TEST(Evaluation, CBLessCGNeedsBothShifts) {
  const auto data = made::dataOf({{"GAPAG", Omega::cis, 0.0F, 24.5F, 34.25F},
                                  {"AAPAG", Omega::trans, 0.0F, made::kAbsent, 32.0F},
                                  {"GAPAA", Omega::trans, 0.0F, 27.0F}});
  const zorvela::Evaluation result =
      zorvela::evaluation(data, {prediction(0.9F, 24.5F), prediction(0.1F), prediction(0.1F, 27.0F)});
  ASSERT_EQ(3U, result.prolines.size());
  EXPECT_TRUE(result.prolines[0].ruleApplies());
  EXPECT_DOUBLE_EQ(9.75, result.prolines[0].cbMinusCg);  // 34.25 - 24.5
  EXPECT_FALSE(result.prolines[1].ruleApplies());
  EXPECT_FALSE(result.prolines[2].ruleApplies());
}

TEST(Evaluation, ALabelByShiftOfTheOtherClassContradicts) {
  zorvela::LabelledProlines data =
      made::dataOf({{"GAPAG", Omega::cis}, {"AAPAG", Omega::trans}, {"GAPAA", Omega::cis}});
  data.labels.prolines[0].byShift = zorvela::ShiftLabel::trans;
  data.labels.prolines[1].byShift = zorvela::ShiftLabel::trans;
  data.labels.prolines[2].byShift = zorvela::ShiftLabel::unclear;
  const auto result = zorvela::evaluation(data, {prediction(0.9F), prediction(0.1F), prediction(0.1F)});
  EXPECT_TRUE(result.prolines[0].isContradicted());
  EXPECT_FALSE(result.prolines[1].isContradicted());
  EXPECT_FALSE(result.prolines[2].isContradicted());
}

TEST(Evaluation, NeedsAPrediction) {
  const auto data = made::dataOf({{"GAPAG", Omega::cis}});
  EXPECT_THROW(zorvela::evaluation(data, {std::nullopt}), zorvela::Error);
}

}  // namespace
