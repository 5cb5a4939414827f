// Means, deviations and limits of three made proteins; expected values are worked out by hand in the
// comments.
#include "train/table_training.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "made_proteins.h"

namespace {

using made::Protein;
using zorvela::Call;

// Two cis prolines with secondary shifts of 1 and 3 ppm, one trans proline with -2 ppm.
const std::vector<Protein> kThree = {{"GAPAG", Call::cis, 1.0F, 24.0F},
                                     {"AAPAG", Call::cis, 3.0F, 25.0F},
                                     {"GAPAA", Call::trans, -2.0F, 27.0F}};

/// Every value counts, none is clipped, each class has its own deviation, nothing is widened.
zorvela::TrainingChoices plain() {
  zorvela::TrainingChoices choices;
  choices.limitPercent = 0;
  choices.trim = 0;
  choices.pooling = "none";
  choices.widenProline = choices.widenNeighbours = 1;
  return choices;
}

zorvela::Training trained(const std::vector<Protein>& proteins, const zorvela::TrainingChoices& choices) {
  return zorvela::train(made::publishedModel(), made::dataOf(proteins), choices);
}

TEST(Training, PoolsVariancesAsInNatureAndWidensThem) {
  // Cis 1, 3: variance 2. Trans -2, 4: variance 18. 0.05 * 2 + 0.95 * 18 = 17.2.
  const std::vector<Protein> proteins = {{"GAPAG", Call::cis, 1.0F},
                                         {"AAPAG", Call::cis, 3.0F},
                                         {"GAPAA", Call::trans, -2.0F},
                                         {"AAPAA", Call::trans, 4.0F}};
  zorvela::TrainingChoices choices = plain();
  choices.pooling = "natural";
  choices.widenProline = 1.5;
  choices.widenNeighbours = 2;
  const zorvela::Training training = trained(proteins, choices);
  const zorvela::IndexStatistics& own = training.shifts[9];  // CA of the proline
  const zorvela::IndexStatistics& before = training.shifts[3];
  for (const double deviation : {own.stdCis, own.stdTrans})
    EXPECT_NEAR(std::sqrt(17.2) * 1.5, deviation, 1e-12);
  EXPECT_NEAR(std::sqrt(17.2) * 2, before.stdCis, 1e-12);
  EXPECT_NEAR(std::sqrt(2), before.cis.deviation, 1e-12);  // as measured
  EXPECT_NEAR(std::sqrt(18), before.trans.deviation, 1e-12);
  choices.pooling = "equal";
  EXPECT_NEAR(std::sqrt(10) * 1.5, trained(proteins, choices).shifts[9].stdCis, 1e-12);  // (2 + 18) / 2
}

TEST(Training, AWindowMeasuredTwiceCountsOnceWithItsMedian) {
  std::vector<Protein> proteins = kThree;
  proteins.push_back({"GAPAG", Call::cis, 7.0F, 24.0F});  // the window of the first: median of 1 and 7 is 4
  const zorvela::Sample cis = trained(proteins, plain()).shifts[9].cis;
  EXPECT_EQ(2U, cis.count);
  EXPECT_EQ(3.5, cis.mean);  // (4 + 3) / 2
}

TEST(Training, ClipsShiftsToTheLimitsBeforeTheMeans) {
  // 50 % is the median on either side: with -2, 1 and 3 of each atom every shift is brought to 1.
  zorvela::TrainingChoices choices = plain();
  choices.limitPercent = 50;
  const zorvela::Training training = trained(kThree, choices);
  EXPECT_EQ(1, training.shifts[9].cis.mean);
  EXPECT_EQ(1, training.shifts[9].trans.mean);
}

}  // namespace
