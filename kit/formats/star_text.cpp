#include "formats/star_text.h"

#include <algorithm>

#include "util/text.h"

namespace zorvela {

namespace {

constexpr std::string_view kBlockHeading = "data_ ";

// White space and quote ends as the parser knows them, so that both agree where a value ends.
bool isWhite(char c) {
  return isBlank(c) || c == '\n' || c == '\r';
}

bool endsQuote(char c) {
  return isWhite(c) || c == '#';
}

bool hasPrefix(std::string_view text, std::string_view prefix) {
  return equalIgnoringCase(text.substr(0, prefix.size()), prefix);
}

/// What stands at the very start of a file that lacks the heading of a data block.
bool needsHeading(std::string_view firstWord) {
  return firstWord.front() == '_' || hasPrefix(firstWord, "save_") || hasPrefix(firstWord, "loop_");
}

/// A frame name without quotes, or a word with letters beyond ASCII, as older entries have them.
bool needsQuotes(std::string_view word) {
  if (word.front() == '$') return true;
  return word.front() != '_' &&
         std::any_of(word.begin(), word.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

/// Whether the word can stand between two such quotes: none in it would end the string.
bool fitsBetween(char quote, std::string_view word) {
  for (std::size_t i = 0; i + 1 < word.size(); ++i)
    if (word[i] == quote && endsQuote(word[i + 1])) return false;
  return true;
}

}  // namespace

/// Copies the source to the adapted text, token by token.
class StarText::Scanner {
 public:
  explicit Scanner(StarText& starText) : target(starText), source(starText.source) {}

  void run() {
    while (pos < source.size()) copyToken();
  }

 private:
  void copyToken() {
    const char c = source[pos];
    if (!isWhite(c) && c != '#') ++target.wordCount;
    if (isWhite(c))
      copyTo(pos + 1);
    else if (c == '#')
      copyTo(lineEnd());
    else if (c == ';' && isLineStart())
      copyTo(textFieldEnd());
    else if (c == '\'' || c == '"')
      copyTo(quoteEnd(c));
    else
      copyWord();
  }

  void copyWord() {
    std::size_t end = pos;
    while (end < source.size() && !isWhite(source[end])) ++end;
    const std::string_view word = source.substr(pos, end - pos);
    if (isFirstWord && needsHeading(word)) add(kBlockHeading);
    isFirstWord = false;
    const char quote = fitsBetween('\'', word) ? '\'' : '"';
    const bool isQuoted = needsQuotes(word) && fitsBetween(quote, word);
    if (isQuoted) add(std::string_view(&quote, 1));
    copyTo(end);
    if (isQuoted) add(std::string_view(&quote, 1));
  }

  bool isLineStart() const { return pos == 0 || source[pos - 1] == '\n'; }

  std::size_t lineEnd() const { return std::min(source.find('\n', pos), source.size()); }

  // After the line feed and semicolon that end the field.
  std::size_t textFieldEnd() const {
    const std::size_t end = source.find("\n;", pos);
    return end == std::string_view::npos ? source.size() : end + 2;
  }

  // A quote ends a string only in front of white space or a comment; a line end leaves it open.
  std::size_t quoteEnd(char quote) const {
    for (std::size_t i = pos + 1; i < source.size() && source[i] != '\n'; ++i)
      if (source[i] == quote && (i + 1 == source.size() || endsQuote(source[i + 1]))) return i + 1;
    return lineEnd();
  }

  void copyTo(std::size_t end) {
    target.adapted.append(source.substr(pos, end - pos));
    pos = end;
  }

  void add(std::string_view text) {
    for (const char c : text) {
      target.added.push_back(target.adapted.size());
      target.adapted.push_back(c);
    }
  }

  StarText& target;
  std::string_view source;
  std::size_t pos = 0;
  bool isFirstWord = true;
};

StarText::StarText(std::string_view original) : source(original) {
  adapted.reserve(source.size() + kBlockHeading.size());
  Scanner(*this).run();
}

TextPlace StarText::placeOf(std::size_t offset) const {
  const auto first = std::lower_bound(added.begin(), added.end(), offset);
  const auto before = static_cast<std::size_t>(first - added.begin());
  const std::string_view text = source.substr(0, std::min(offset - before, source.size()));
  const std::size_t lineStart = text.find_last_of('\n') + 1;  // 0 on the first line
  TextPlace place;
  place.line += static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
  place.column += text.size() - lineStart;
  return place;
}

}  // namespace zorvela
