// Predictions of labelled prolines and what of them is scored; expected values are worked out by hand.
#include "train/evaluation.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "made_proteins.h"
#include "zorvela/error.h"

namespace {

using made::Protein;
using zorvela::Call;

zorvela::CisPrediction prediction(float pCisNorm) {
  zorvela::CisPrediction made;
  made.pCisNorm = pCisNorm;
  return made;
}

TEST(CrossValidation, PredictsByModelsOfTheOtherClustersWithoutCommonWindows) {
  const Protein inOne = {"GAPAG", Call::cis, 1.0F, 24.0F, made::kAbsent, "one"};
  const Protein inTwo = {"GAPAG", Call::cis, 9.0F, 25.0F, made::kAbsent, "two"};
  const std::vector<Protein> one = {{"GAPAA", Call::trans, -2.0F, 27.0F, made::kAbsent, "one"},
                                    {"GGPAG", Call::cis, 2.0F, 24.5F, made::kAbsent, "one"}};
  const std::vector<Protein> two = {{"AAPAG", Call::cis, 3.0F, 25.0F, made::kAbsent, "two"},
                                    {"AAPAA", Call::trans, -1.0F, 26.5F, made::kAbsent, "two"}};
  const zorvela::LabelledProlines data = made::dataOf({inOne, one[0], one[1], inTwo, two[0], two[1]});
  const auto predictions =
      zorvela::predictAll(zorvela::trainFolds(made::publishedModel(), data, 2, {}), data);
  Protein unlabelledInOne = inOne;
  Protein unlabelledInTwo = inTwo;
  unlabelledInOne.label = unlabelledInTwo.label = Call::none;
  for (const auto& [trainedOn, predictedAt] :
       {std::pair(made::dataOf({unlabelledInOne, one[0], one[1]}), std::size_t{3}),
        std::pair(made::dataOf({unlabelledInTwo, two[0], two[1]}), std::size_t{0})}) {
    const zorvela::Model model = zorvela::train(made::publishedModel(), trainedOn, {}).model;
    const auto alone = zorvela::predictAll(zorvela::oneModel(model, data), data);
    for (std::size_t i = predictedAt; i < predictedAt + 3; ++i) {
      ASSERT_TRUE(predictions[i] && alone[i]);
      EXPECT_EQ(alone[i]->pCis, predictions[i]->pCis) << i;
    }
  }
}

TEST(Evaluation, ScoresTheMedianOfEachWindowAndCountsTheRest) {
  zorvela::LabelledProlines data = made::dataOf({{"GAPAG", Call::cis},      // scored
                                                 {"GAPAG", Call::cis},      // the same window
                                                 {"AAPAG", Call::trans},    // not predicted
                                                 {"GAPAA", Call::trans},    // no number
                                                 {"AAPAA", Call::trans}});  // no label by structure
  data.prolines[4].structure = Call::none;
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const zorvela::Evaluation result = zorvela::evaluation(
      data, {prediction(0.75F), prediction(0.5F), std::nullopt, prediction(nan), prediction(0.25F)});
  EXPECT_EQ(4U, result.labelled);
  EXPECT_EQ(1U, result.notPredicted);
  EXPECT_EQ(1U, result.repeated);
  EXPECT_EQ(1U, result.notANumber);
  ASSERT_EQ(1U, result.prolines.size());
  EXPECT_EQ(1U, result.prolines[0].label);  // of two the less probable one
  EXPECT_TRUE(result.prolines[0].isCis);
  EXPECT_EQ(0.625, result.prolines[0].pCisNorm);  // (0.75 + 0.5) / 2
}

TEST(Evaluation, AWindowHasTheLabelOfMostAndTheShiftsOfTheMiddleMeasurement) {
  const auto data = made::dataOf({{"GAPAG", Call::cis},
                                  {"GAPAG", Call::trans, 0.0F, 26.0F, 31.0F},
                                  {"GAPAG", Call::trans, 0.0F, 24.0F, 34.0F},
                                  {"AAPAA", Call::cis},
                                  {"AAPAA", Call::trans}});
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const zorvela::Evaluation result = zorvela::evaluation(
      data, {prediction(0.125F), prediction(0.5F), prediction(0.75F), prediction(0.25F), prediction(0.5F)});
  ASSERT_EQ(2U, result.prolines.size());
  EXPECT_EQ(3U, result.repeated);
  EXPECT_FALSE(result.prolines[0].isCis);
  EXPECT_EQ(0.5, result.prolines[0].pCisNorm);
  EXPECT_EQ(5, result.prolines[0].cbMinusCg);  // 31 - 26
  EXPECT_TRUE(result.prolines[1].isCis);       // split: the first
  // A measurement without a number does not hide the others.
  const zorvela::Evaluation other = zorvela::evaluation(
      data, {prediction(nan), prediction(0.5F), prediction(0.75F), std::nullopt, std::nullopt});
  EXPECT_EQ(1U, other.notANumber);
  ASSERT_EQ(1U, other.prolines.size());
  EXPECT_EQ(0.625, other.prolines[0].pCisNorm);
}

TEST(Evaluation, CBLessCGNeedsBothShifts) {
  const auto data = made::dataOf({{"GAPAG", Call::cis, 0.0F, 24.5F, 34.25F},
                                  {"AAPAG", Call::trans, 0.0F, made::kAbsent, 32.0F},
                                  {"GAPAA", Call::trans, 0.0F, 27.0F}});
  const zorvela::Evaluation result =
      zorvela::evaluation(data, {prediction(0.9F), prediction(0.1F), prediction(0.1F)});
  ASSERT_EQ(3U, result.prolines.size());
  EXPECT_EQ(17, result.prolines[0].shiftCount);   // 6 + 4 + 6 and CG
  EXPECT_EQ(9.75, result.prolines[0].cbMinusCg);  // 34.25 - 24.5
  EXPECT_FALSE(result.prolines[1].cbMinusCg);
  EXPECT_FALSE(result.prolines[2].cbMinusCg);
}

TEST(Evaluation, ALabelByShiftOfTheOtherClassContradicts) {
  zorvela::LabelledProlines data =
      made::dataOf({{"GAPAG", Call::cis}, {"AAPAG", Call::trans}, {"GAPAA", Call::cis}});
  data.prolines[0].byShift = Call::trans;
  data.prolines[1].byShift = Call::trans;
  data.prolines[2].byShift = Call::undecided;
  const auto result = zorvela::evaluation(data, {prediction(0.9F), prediction(0.1F), prediction(0.1F)});
  EXPECT_TRUE(result.prolines[0].isContradicted);
  EXPECT_FALSE(result.prolines[1].isContradicted);
  EXPECT_FALSE(result.prolines[2].isContradicted);
}

TEST(Evaluation, NeedsAPrediction) {
  const auto data = made::dataOf({{"GAPAG", Call::cis}});
  EXPECT_THROW(zorvela::evaluation(data, {std::nullopt}), zorvela::Error);
}

}  // namespace
