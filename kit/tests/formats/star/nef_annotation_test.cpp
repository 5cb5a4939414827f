// Flags in the sequence of a NEF file, and every other byte.
#include "formats/star/nef_annotation.h"

#include <gtest/gtest.h>

#include "message_of.h"
#include "zorvela/error.h"

namespace {

std::optional<bool> cisOfThree(const zorvela::NefSequenceRow& row) {
  if (row.number == "3") return true;
  if (row.number == "4") return false;
  return std::nullopt;
}

std::string annotated(const std::string& text, bool keep = false) {
  return zorvela::annotateNef(text, "a.nef", {!keep, true}, cisOfThree).text;
}

const std::string kHead = "data_x\nloop_\n_nef_sequence.sequence_code\n_nef_sequence.residue_name\n";

TEST(Annotation, FieldsOverSeveralLines) {
  EXPECT_EQ(annotated(kHead + "3\n;PRO\n;\n4 PRO\nstop_\n"),
            kHead + "_nef_sequence.cis_peptide\n3\n;PRO\n; true\n4 PRO false\nstop_\n");
}

TEST(Annotation, AWordThatTouchesTheEndOfATextFieldIsAWord) {
  EXPECT_EQ(annotated(kHead + "\n;3\n;PRO\n      4 PRO\n"),
            kHead + "_nef_sequence.cis_peptide\n\n;3\n;PRO true\n      4 PRO false\n");
  EXPECT_EQ(annotated(kHead + "\n;3\n;PRO"), kHead + "_nef_sequence.cis_peptide\n\n;3\n;PRO true");
}

TEST(Annotation, AQuotedPointIsNotAnEmptyValue) {
  const std::string head = kHead + "_nef_sequence.cis_peptide\n";
  EXPECT_EQ(annotated(head + "3 PRO '.'\n4 PRO .\n", true), head + "3 PRO '.'\n4 PRO false\n");
}

TEST(Annotation, CommentsThatTouchAValueStayComments) {
  EXPECT_EQ(annotated(kHead + "_nef_sequence.cis_peptide\n3 PRO 'no'# a comment\n"),
            kHead + "_nef_sequence.cis_peptide\n3 PRO true # a comment\n");
  EXPECT_EQ(annotated(kHead + "3 'PRO'# a comment\n"),
            kHead + "_nef_sequence.cis_peptide\n3 'PRO' true # a comment\n");
}

TEST(Annotation, OneLineAndOldLineEnds) {
  EXPECT_EQ(annotated("data_x loop_ _nef_sequence.sequence_code _nef_sequence.residue_name 3 PRO stop_"),
            "data_x loop_ _nef_sequence.sequence_code _nef_sequence.residue_name _nef_sequence.cis_peptide 3 "
            "PRO true "
            "stop_");
  EXPECT_EQ(
      annotated("data_x\rloop_\r_nef_sequence.sequence_code\r_nef_sequence.residue_type\r3 PRO\rstop_\r"),
      "data_x\rloop_\r_nef_sequence.sequence_code\r_nef_sequence.residue_type\r_nef_sequence.cis_peptide\r3 "
      "PRO "
      "true\rstop_\r");
}

TEST(Annotation, NewColumnIsOneOfTheSequenceWhateverStandsLast) {
  const std::string head = kHead + "_other.column\n";
  EXPECT_EQ(annotated(head + "3 PRO .\n"), head + "_nef_sequence.cis_peptide\n3 PRO . true\n");
}

TEST(Annotation, OtherLoopsAndTextsStay) {
  const std::string other =
      "data_x\nloop_\n_a.b\n'_nef_sequence.cis_peptide' \"3 # x\" # loop_\n;loop_\n;\nstop_\n";
  EXPECT_EQ(annotated(other + kHead.substr(7) + "5 ALA\n"),
            other + kHead.substr(7) + "_nef_sequence.cis_peptide\n5 ALA .\n");
}

TEST(Annotation, RefusesWhatItCannotPlace) {
  for (const std::string& text :
       {kHead + "3 PRO 4\nstop_\n", kHead + "3 'PRO\nstop_\n", std::string("data_x\n"), kHead + "3\n;PRO\n",
        std::string("data_x\nloop_\n_nef_sequence.index\n1\n")})
    EXPECT_THROW(annotated(text), zorvela::FileError) << text;
  EXPECT_EQ(messageOf([] { annotated(kHead + "3 PRO 4\nstop_\n"); }).substr(0, 8), "a.nef:5:");
  // Two rows in three are whole, so that the count of all values proves nothing.
  EXPECT_EQ(
      messageOf([] { annotated(kHead + "3 PRO\n4\n5 ALA\n6 ALA 7\n8 ALA\n9 ALA\n"); }),
      "a.nef:6: 1 value for the 2 columns of _nef_sequence; give each row one value for each column, or "
      "fetch the file again");
}

}  // namespace
