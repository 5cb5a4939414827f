// The import in memory, as the predictor uses it.
#include "zorvela/read.h"

#include <gtest/gtest.h>

#include <thread>

#include "GDB.h"

namespace {

const char* const kCsv =
    "chain,resid,resname,atom,shift\nA,5,GLY,HA,3.954321\nB,52,CYS,CB,41.5\nB,52A,PRO,CG,24.5\n";

TEST(ShiftFile, GivesProteinsToFullPrecisionWithTheirNumbers) {
  const auto proteins = zorvela::readShiftBytes(kCsv, "x.csv", {});
  ASSERT_EQ(proteins.size(), 2U);
  EXPECT_EQ(proteins[0].file, "x.csv");
  EXPECT_EQ(proteins[0].chain, "A");
  EXPECT_EQ(proteins[0].sequence, "G");
  ASSERT_EQ(proteins[0].shifts.size(), 2U);
  EXPECT_EQ(proteins[0].shifts[0].atom, "HA2");
  EXPECT_EQ(proteins[0].shifts[0].shift, "3.954321");
  EXPECT_EQ(proteins[0].shifts[1].atom, "HA3");
  EXPECT_EQ(proteins[1].sequence, "cP");
  EXPECT_EQ(proteins[1].numbers, (std::vector<std::string>{"52", "52A"}));
}

TEST(ShiftFile, ChoosesChains) {
  zorvela::ImportOptions options;
  options.chains = {"b"};
  const auto proteins = zorvela::readShiftBytes(kCsv, "x.csv", options);
  ASSERT_EQ(proteins.size(), 1U);
  EXPECT_EQ(proteins[0].chain, "B");
}

TEST(ShiftFile, AProteinBecomesATable) {
  const auto proteins = zorvela::readShiftBytes(kCsv, "x.csv", {});
  GDB table = zorvela::toTable(proteins[1]);
  EXPECT_EQ(table.getResidName(1), "c");
  EXPECT_EQ(table.getResidName(2), "P");
  EXPECT_EQ(table.getEntryCount(), 2);
  EXPECT_EQ(GDB::cell(table.getEntry(2), "ATOMNAME"), "CG");
  EXPECT_EQ(GDB::cell(table.getEntry(2), "RESNAME"), "P");
  EXPECT_EQ(GDB::cell(table.getEntry(2), "SHIFT"), "24.5");
}

TEST(ShiftFile, LongGapsAndFarNumbersStaySmall) {
  const auto proteins = zorvela::readShiftBytes(
      "resid,resname,atom,shift\n-2000000000,ALA,CA,52\n1,PRO,CA,63\n2000000000,PRO,CA,63\n", "x.csv", {});
  ASSERT_EQ(proteins.size(), 1U);
  EXPECT_EQ(proteins[0].sequence, "A?P?P");
  EXPECT_EQ(proteins[0].numbers,
            (std::vector<std::string>{"-2000000000", "-1999999999", "1", "2", "2000000000"}));
}

TEST(ShiftFile, MayRunInSeveralThreads) {
  std::vector<std::thread> threads;
  std::vector<std::string> sequences(8);
  for (std::string& sequence : sequences)
    threads.emplace_back([&sequence] {
      for (int i = 0; i < 50; ++i) sequence = zorvela::readShiftBytes(kCsv, "x.csv", {}).back().sequence;
    });
  for (std::thread& thread : threads) thread.join();
  for (const std::string& sequence : sequences) EXPECT_EQ(sequence, "cP");
}

}  // namespace
