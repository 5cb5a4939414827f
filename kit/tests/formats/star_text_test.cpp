// The pass in front of the CIF parser: what it quotes, what it leaves alone, and that places stay right.
#include "formats/star_text.h"

#include <gtest/gtest.h>

#include "formats/star_document.h"
#include "zorvela/error.h"

namespace {

std::string adapted(const std::string& text) {
  return zorvela::StarText(text).text();
}

TEST(StarText, QuotesFrameNames) {
  EXPECT_EQ(adapted("data_x\n_a $frame\n"), "data_x\n_a '$frame'\n");
  EXPECT_EQ(adapted("data_x\nloop_ _a _b $x $y\tstop_"), "data_x\nloop_ _a _b '$x' '$y'\tstop_");
  EXPECT_EQ(adapted("data_x _a $"), "data_x _a '$'");
}

TEST(StarText, QuotesWordsBeyondAscii) {
  EXPECT_EQ(adapted("data_x _a M\xC3\xBCller"), "data_x _a 'M\xC3\xBCller'");
}

TEST(StarText, TakesTheQuoteThatTheWordLeavesFree) {
  EXPECT_EQ(adapted("data_x _a $5'-end"), "data_x _a '$5'-end'");    // the inner quote ends nothing
  EXPECT_EQ(adapted("data_x _a $a'#b"), "data_x _a \"$a'#b\"");      // here it would
  EXPECT_EQ(adapted("data_x _a $a'#b\"#c"), "data_x _a $a'#b\"#c");  // neither will do
}

TEST(StarText, LeavesQuotedStringsAlone) {
  for (const char* text :
       {"data_x _a '$b'", "data_x _a \"$b $c\"", "data_x _a 'it's $5'", "data_x _a \"a\"#$b\n_c 1"})
    EXPECT_EQ(adapted(text), text);
}

TEST(StarText, LeavesTextFieldsAlone) {
  const std::string text = "data_x\n_a\n;\n$b 'open\n ; $c\n;\n";
  EXPECT_EQ(adapted(text), text);
  EXPECT_EQ(adapted(text + "_d $e\n"), text + "_d '$e'\n");
  EXPECT_EQ(adapted("data_x\n_a\n;\n$b"), "data_x\n_a\n;\n$b");  // never closed
}

TEST(StarText, ASemicolonInsideALineIsNoTextField) {
  EXPECT_EQ(adapted("data_x _a ;b _c $d"), "data_x _a ;b _c '$d'");
}

TEST(StarText, LeavesCommentsAlone) {
  EXPECT_EQ(adapted("# $a 'b\ndata_x # $c\n_d $e"), "# $a 'b\ndata_x # $c\n_d '$e'");
  EXPECT_EQ(adapted("data_x _a b#$c"), "data_x _a b#$c");  // part of the word
}

TEST(StarText, AnOpenQuoteEndsWithItsLine) {
  EXPECT_EQ(adapted("data_x _a 'b\n_c $d"), "data_x _a 'b\n_c '$d'");
}

TEST(StarText, PutsADataBlockInFrontOfABareFrame) {
  EXPECT_EQ(adapted("save_x\nsave_\n"), "data_ save_x\nsave_\n");
  EXPECT_EQ(adapted("# cut out\n\n  SAVE_x"), "# cut out\n\n  data_ SAVE_x");
  EXPECT_EQ(adapted("loop_ _a 1"), "data_ loop_ _a 1");
  EXPECT_EQ(adapted("_a 1"), "data_ _a 1");
  EXPECT_EQ(adapted("data_x save_y"), "data_x save_y");
  EXPECT_EQ(adapted("DATA_x"), "DATA_x");
}

TEST(StarText, CountsWords) {
  EXPECT_EQ(zorvela::StarText("data_x # no word\n_a 'b c'\n;\nd e\n;\n").words(), 4U);
}

TEST(StarText, AddedBytesCanBeTakenAway) {
  const std::string original = "save_x\n_a $b\n_c 'd'\n_e $f\n";
  const zorvela::StarText star(original);
  ASSERT_EQ(star.text(), "data_ save_x\n_a '$b'\n_c 'd'\n_e '$f'\n");
  const auto place = star.placeOf(star.text().find("save_x"));
  EXPECT_EQ(place.line, 1U);
  EXPECT_EQ(place.column, 1U);
  const auto later = star.placeOf(star.text().find("$f"));
  EXPECT_EQ(later.line, 4U);
  EXPECT_EQ(later.column, 4U);
  const auto end = star.placeOf(star.text().size());
  EXPECT_EQ(end.line, 5U);
  EXPECT_EQ(end.column, 1U);
}

TEST(StarText, TakesTimeInProportionToTheText) {
  // A quadratic pass over these would take minutes.
  std::string quotes;
  for (int i = 0; i < 2000000; ++i) quotes += "'a ";
  EXPECT_EQ(adapted(quotes), quotes);
  std::string frames;
  for (int i = 0; i < 2000000; ++i) frames += "$a ";
  EXPECT_EQ(adapted(frames).size(), 5U * 2000000U);
}

std::string errorOf(const std::string& text) {
  try {
    zorvela::parseStar(text, "file.str");
  } catch (const zorvela::Error& error) {
    return error.what();
  }
  return "no error";
}

TEST(StarDocument, ErrorsNameTheUsersLineAndColumn) {
  EXPECT_EQ(errorOf("save_x\n_a $b _c 'open\nsave_\n"),
            "file.str:2: not valid STAR at column 15: unterminated 'string'; mend the file there, or fetch "
            "it again");
  EXPECT_EQ(errorOf("save_x\n_a $b _c \"open\nsave_\n"),
            "file.str:2: not valid STAR at column 15: unterminated \"string\"; mend the file there, or fetch "
            "it again");
  EXPECT_EQ(
      errorOf("data_x\nloop_\n_a _b\n1 2 3\n"),
      "file.str:2: not valid STAR at column 1: Wrong number of values in the loop; mend the file there, or "
      "fetch it again");
  EXPECT_EQ(errorOf("save_x\n_a $b\n"),
            "file.str:3: not valid STAR at column 1: parse error (the file ends too early); mend the file "
            "there, or "
            "fetch it again");
}

TEST(StarDocument, TablesAreLoopsOrSingleTags) {
  const auto document =
      zorvela::parseStar("save_x _A.b 1 _A.c . loop_ _A.b _D.e 5 ? 6 'f g' stop_ save_", "x");
  const auto frames = zorvela::framesOf(document.blocks.at(0));
  ASSERT_EQ(frames.size(), 2U);
  const auto tables = zorvela::tablesWith(*frames[1], "_a.B");
  ASSERT_EQ(tables.size(), 2U);
  EXPECT_EQ(tables[0].rows(), 1U);
  EXPECT_EQ(tables[0].text(0, tables[0].column("_A.b")), "1");
  EXPECT_EQ(tables[0].text(0, tables[0].column("_A.c")), "");
  EXPECT_EQ(tables[1].rows(), 2U);
  EXPECT_EQ(tables[1].text(1, tables[1].column("_d.e")), "f g");
  EXPECT_EQ(tables[1].text(0, tables[1].column("_d.e")), "");
  EXPECT_EQ(tables[1].text(0, tables[1].column("_none")), "");
}

}  // namespace
