// Clusters of sequences.
#include "train/sequence_clusters.h"

#include <gtest/gtest.h>

namespace {

using Numbers = std::vector<std::size_t>;

const std::string kA = "MLEGSKLAPKWDNHIGPKQFYVTEAPKLSTDHGVAPKMRL";
const std::string kB = "GSTDKKRMNQRSTVWYPAEDFHIKKLNQWEERTYIDASFG";

TEST(Clusters, SharedStretches) {
  EXPECT_EQ(zorvela::sequenceClusters({kA, kB, kA, kB.substr(0, 4) + kA.substr(5)}), (Numbers{1, 2, 1, 1}));
  // Through a third one.
  EXPECT_EQ(zorvela::sequenceClusters({kA, kB, kA + kB}), (Numbers{1, 1, 1}));
  EXPECT_EQ(zorvela::sequenceClusters({}), Numbers{});
}

TEST(Clusters, StateOfCysteinesDoesNotCount) {
  EXPECT_EQ(zorvela::sequenceClusters({"GACAG", "GAcAG"}), (Numbers{1, 1}));
}

TEST(Clusters, UnknownResiduesAreNoKinship) {
  EXPECT_EQ(zorvela::sequenceClusters({std::string(30, '?') + "AAA", std::string(30, '?') + "GGG"}),
            (Numbers{1, 2}));
}

}  // namespace
