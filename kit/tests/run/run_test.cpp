#include <new>
#include <stdexcept>

#include <gtest/gtest.h>

#include "formats/input_bytes.h"
#include "zorvela/error.h"
#include "zorvela/read.h"
#include "zorvela/run.h"

namespace zorvela {
namespace {

const std::string kThreeResidues = "resid,resname,atom,shift\n1,ALA,CA,52\n2,PRO,CB,32\n3,ALA,CA,52\n";

FileReport reportOnThrown(const std::function<std::vector<Protein>()>& read) {
  Predictor predictor(tablesFromFolder(MADE_TABLES));
  return reportOn("a.csv", read, predictor);
}

TEST(Run, HoldsTheProteinsOfTheFile) {
  const FileReport report = reportOnThrown([] { return readShiftBytes(kThreeResidues, "a.csv", {}); });
  EXPECT_EQ(report.file, "a.csv");
  EXPECT_EQ(report.error, "");
  ASSERT_EQ(report.proteins.size(), 1U);
  EXPECT_EQ(report.proteins[0].prolines.size(), 1U);
}

TEST(Run, HoldsTheErrorOfTheFile) {
  EXPECT_EQ(reportOnThrown([] { return readShiftBytes("", "a.csv", {}); }).error,
            "a.csv: is empty; give a file with chemical shifts");
  EXPECT_THROW(reportOnThrown([]() -> std::vector<Protein> { throw std::bad_alloc(); }), std::bad_alloc);
  EXPECT_EQ(reportOnThrown([]() -> std::vector<Protein> { throw std::runtime_error("odd"); }).error,
            "a.csv: cannot be predicted: odd");
}

TEST(InputError, SaysWhyThereAreNoBytes) {
  EXPECT_STREQ(inputError(InputFault::unreadable, "a").what(),
               "a: cannot be read; check the name and the permissions");
  EXPECT_STREQ(inputError(InputFault::damagedGzip, "a").what(),
               "a: the gzip file is damaged; fetch it again");
  EXPECT_STREQ(inputError(InputFault::cutGzip, "a").what(),
               "a: the gzip file ends too early; fetch it again");
  EXPECT_STREQ(inputError(InputFault::tooLarge, "a").what(),
               "a: is larger than 256 MiB; give the part that is needed");
}

}  // namespace
}  // namespace zorvela
