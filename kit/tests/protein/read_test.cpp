// The import from memory and streams, and the types of its errors.
#include "zorvela/read.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "formats/input_bytes.h"
#include "made_shift.h"
#include "zorvela/error.h"

namespace {

const char* const kCsv =
    "chain,resid,resname,atom,shift\nA,5,GLY,HA,3.954321\nB,52,CYS,CB,41.5\nB,52A,PRO,CG,24.5\n";

TEST(Read, GivesProteinsToFullPrecisionWithTheirNumbers) {
  const auto proteins = zorvela::readShiftBytes(kCsv, "x.csv", {});
  ASSERT_EQ(proteins.size(), 2U);
  EXPECT_EQ(proteins[0].file, "x.csv");
  EXPECT_EQ(proteins[0].chain, "A");
  EXPECT_EQ(proteins[0].sequence, "G");
  EXPECT_EQ(made::shiftsOf(proteins[0]), (std::vector<std::string>{"5 HA2 3.954321", "5 HA3 3.954321"}));
  EXPECT_EQ(proteins[1].sequence, "cP");
  EXPECT_EQ(proteins[1].numbers, (std::vector<std::string>{"52", "52A"}));
}

TEST(Read, TakesAStream) {
  std::FILE* stream = std::tmpfile();
  ASSERT_NE(stream, nullptr);
  std::fputs(kCsv, stream);
  std::rewind(stream);
  const auto proteins = zorvela::readShiftStream(stream, "a pipe", {});
  EXPECT_EQ(proteins.at(0).file, "a pipe");
  EXPECT_EQ(std::fclose(stream), 0);  // still open, and the caller's
}

template <class Expected>
std::string messageOf(const std::string& bytes, const zorvela::ImportOptions& options = {}) {
  try {
    zorvela::readShiftBytes(bytes, "f", options);
  } catch (const Expected& error) {
    EXPECT_EQ(error.file(), "f");
    return error.what();
  }
  return "nothing thrown";
}

TEST(Read, BytesThatCannotBeReadAreAFileError) {
  using zorvela::FileError;
  EXPECT_EQ(messageOf<FileError>(""), "f: is empty; give a file with chemical shifts");
  EXPECT_EQ(messageOf<FileError>(zorvela::packed(kCsv).substr(0, 30)),
            "f: the gzip file ends too early; fetch it again");
  for (const char* bytes : {"PK\x03\x04", "{\"a\": 1}", "data_x\nloop_\n_a _b\n1\n", "data_x _a 1\n",
                            "resid,resname,shift\n1,A,5\n", "VARS RESID\nFORMAT %d\n1\n",
                            "DATA SEQUENCE AP\nVARS RESID RESNAME ATOMNAME SHIFT\nFORMAT %d %s %s %f\n"})
    EXPECT_NE(messageOf<FileError>(bytes), "nothing thrown") << bytes;
}

TEST(Read, FileErrorsNameTheLine) {
  try {
    zorvela::readShiftBytes("REMARK x\nVARS RESID SHIFT\nFORMAT %4d %5.1e\n1 5\n", "f.tab", {});
    FAIL() << "nothing thrown";
  } catch (const zorvela::FileError& error) {
    EXPECT_EQ(error.file(), "f.tab");
    EXPECT_EQ(error.line(), 3U);
  }
}

TEST(Read, EntriesInOneFileAreReadEachForItself) {
  const std::string entry =
      "_Entity.ID 1 _Entity.Polymer_seq_one_letter_code AP _Entity.Polymer_type polypeptide(L)\n"
      "loop_ _Atom_chem_shift.Entity_ID _Atom_chem_shift.Comp_index_ID _Atom_chem_shift.Comp_ID "
      "_Atom_chem_shift.Atom_ID _Atom_chem_shift.Val\n";
  const auto proteins = zorvela::readShiftBytes("data_one\n" + entry + "1 2 PRO CA 63\ndata_two\n" + entry +
                                                    "1 2 PRO CA 64\ndata_three\n" + entry + "1 2 PRO HD2 3\n",
                                                "f", {});
  ASSERT_EQ(proteins.size(), 2U);
  EXPECT_EQ(proteins[0].chain, "one_1");
  EXPECT_EQ(shiftText(proteins[0].shifts.at(0)), "63");
  EXPECT_EQ(proteins[1].chain, "two_1");
  EXPECT_EQ(shiftText(proteins[1].shifts.at(0)), "64");
  EXPECT_EQ(proteins[0].notes.back().rfind("a data block is ignored: f: holds no backbone shifts", 0), 0U);
}

}  // namespace
