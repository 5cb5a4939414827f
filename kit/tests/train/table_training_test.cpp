// Means, deviations and limits of three made proteins; expected values are worked out by hand in the
// comments.
#include "train/table_training.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "made_proteins.h"
#include "zorvela/error.h"

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

std::string statistic(const zorvela::Training& training, int index, const std::string& column) {
  return made::cellOf(zorvela::shiftTable(training, plain()), "index", std::to_string(index), column);
}

TEST(Training, PoolsVariancesAsInNatureAndWidensThem) {
  // Cis 1, 3: variance 2. Trans -2, 4: variance 18. 0.05 * 2 + 0.95 * 18 = 17.2: 4.147.
  const std::vector<Protein> proteins = {{"GAPAG", Call::cis, 1.0F},
                                         {"AAPAG", Call::cis, 3.0F},
                                         {"GAPAA", Call::trans, -2.0F},
                                         {"AAPAA", Call::trans, 4.0F}};
  zorvela::TrainingChoices choices = plain();
  choices.pooling = "natural";
  choices.widenProline = 1.5;
  choices.widenNeighbours = 2;
  const zorvela::Training training = trained(proteins, choices);
  EXPECT_EQ("6.221", statistic(training, 9, "std_cis"));  // CA of the proline: 4.14729 * 1.5
  EXPECT_EQ("6.221", statistic(training, 9, "std_trans"));
  EXPECT_EQ("8.295", statistic(training, 3, "std_cis"));   // CA before it: 4.14729 * 2
  EXPECT_EQ("1.414", statistic(training, 3, "sd_cis"));    // sqrt(2), as measured
  EXPECT_EQ("4.243", statistic(training, 3, "sd_trans"));  // sqrt(18)
  choices.pooling = "equal";
  EXPECT_EQ("4.743", statistic(trained(proteins, choices), 9, "std_cis"));  // sqrt((2 + 18) / 2) * 1.5
}

TEST(Training, AWindowMeasuredTwiceCountsOnceWithItsMedian) {
  std::vector<Protein> proteins = kThree;
  proteins.push_back({"GAPAG", Call::cis, 7.0F, 24.0F});  // the window of the first: median of 1 and 7 is 4
  const zorvela::Training training = trained(proteins, plain());
  EXPECT_EQ("2", statistic(training, 9, "n_cis"));
  EXPECT_EQ("3.500", statistic(training, 9, "avg_cis"));  // (4 + 3) / 2
}

TEST(Training, ClipsShiftsToTheLimitsBeforeTheMeans) {
  // 50 % is the median on either side: with -2, 1 and 3 of each atom every shift is brought to 1.
  zorvela::TrainingChoices choices = plain();
  choices.limitPercent = 50;
  const zorvela::Training training = trained(kThree, choices);
  EXPECT_EQ("1.000", statistic(training, 9, "avg_cis"));
  EXPECT_EQ("1.000", statistic(training, 9, "avg_trans"));
}

}  // namespace
