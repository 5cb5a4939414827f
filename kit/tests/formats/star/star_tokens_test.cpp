// The words of STAR text: quotes, text fields, comments, headings.
#include "formats/star/star_tokens.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using Kind = zorvela::StarToken::Kind;

using Word = std::pair<Kind, std::string>;

std::vector<Word> wordsOf(const std::string& text) {
  zorvela::StarTokens tokens(text);
  std::vector<Word> words;
  for (auto token = tokens.next(); token.kind != Kind::end; token = tokens.next())
    words.emplace_back(token.kind, token.value);
  return words;
}

TEST(StarTokens, HeadingsTagsAndValues) {
  EXPECT_EQ(wordsOf("data_x Save_y _a.b $frame loop_ stop_ save_ a_b"),
            (std::vector<Word>{{Kind::frame, "data_x"},
                               {Kind::frame, "Save_y"},
                               {Kind::tag, "_a.b"},
                               {Kind::value, "$frame"},
                               {Kind::loop, "loop_"},
                               {Kind::stop, "stop_"},
                               {Kind::frame, "save_"},
                               {Kind::value, "a_b"}}));
}

TEST(StarTokens, AQuoteEndsInFrontOfWhiteSpaceOrAComment) {
  EXPECT_EQ(wordsOf("'it's $5' \"a\"#b\n5'-end"),
            (std::vector<Word>{{Kind::value, "it's $5"}, {Kind::value, "a"}, {Kind::value, "5'-end"}}));
  EXPECT_EQ(wordsOf("'loop_' '_a'"), (std::vector<Word>{{Kind::value, "loop_"}, {Kind::value, "_a"}}));
}

TEST(StarTokens, AnOpenQuoteEndsWithItsLine) {
  const std::string text = "'b c\nd";
  zorvela::StarTokens tokens(text);
  const auto open = tokens.next();
  EXPECT_TRUE(open.isOpen);
  EXPECT_EQ(open.value, "b c");
  EXPECT_EQ(tokens.next().value, "d");
}

TEST(StarTokens, TextFieldsBeginAndEndAtALineStart) {
  EXPECT_EQ(wordsOf("_a\n;\n'b # ;c\n;d ;e"),
            (std::vector<Word>{
                {Kind::tag, "_a"}, {Kind::value, "\n'b # ;c"}, {Kind::value, "d"}, {Kind::value, ";e"}}));
  const std::string open = ";a\nb";
  EXPECT_TRUE(zorvela::StarTokens(open).next().isOpen);
}

TEST(StarTokens, CommentsArePassedOver) {
  EXPECT_EQ(wordsOf("# 'a\n b#c # d"), (std::vector<Word>{{Kind::value, "b#c"}}));
}

TEST(StarTokens, WordsKnowTheirLine) {
  for (const std::string text : {"a # c\n\n'b c'\n;d\ne\n;\nf", "a\r\r'b c'\r;d\re\r;\rf"}) {
    zorvela::StarTokens tokens(text);
    for (const std::size_t line : {1U, 3U, 4U, 7U}) {
      const zorvela::StarToken token = tokens.next();
      EXPECT_EQ(token.line, line) << token.value;
    }
  }
}

}  // namespace
