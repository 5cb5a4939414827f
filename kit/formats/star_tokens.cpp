// The words of STAR text with their places.
#include "formats/star_tokens.h"

#include <algorithm>

#include "util/text.h"

namespace zorvela {

namespace {

bool startsWith(std::string_view text, std::string_view start) {
  return text.size() >= start.size() && equalIgnoringCase(text.substr(0, start.size()), start);
}

StarToken::Kind kindOf(std::string_view word) {
  if (word.front() == '_') return StarToken::Kind::tag;
  if (word.find('_') == std::string_view::npos) return StarToken::Kind::value;
  if (equalIgnoringCase(word, "loop_")) return StarToken::Kind::loop;
  if (equalIgnoringCase(word, "stop_")) return StarToken::Kind::stop;
  for (const char* heading : {"save_", "data_", "global_"})
    if (startsWith(word, heading)) return StarToken::Kind::frame;
  return StarToken::Kind::value;
}

}  // namespace

StarTokens::StarTokens(std::string_view text)
    : source(text), newline(text.find('\n') == std::string_view::npos ? '\r' : '\n') {
  if (source.substr(0, 3) == "\xEF\xBB\xBF") pos = 3;
}

StarToken StarTokens::next() {
  skipBlanks();
  if (pos >= source.size()) {
    StarToken token;
    token.begin = token.end = source.size();
    return token;
  }
  const char c = source[pos];
  const bool isLineStart = pos == 0 || source[pos - 1] == newline;
  if (c == ';' && isLineStart) return textField();
  if (c == '\'' || c == '"') return quoted(c);
  return word();
}

void StarTokens::skipBlanks() {
  while (pos < source.size() && (isStarSpace(source[pos]) || source[pos] == '#'))
    pos = source[pos] == '#' ? lineEnd(pos) : pos + 1;
}

std::size_t StarTokens::lineEnd(std::size_t from) const {
  return std::min(source.find(newline, from), source.size());
}

StarToken StarTokens::textField() {
  const char mark[] = {newline, ';'};
  const std::size_t close = source.find(std::string_view(mark, 2), pos);
  StarToken token;
  token.kind = StarToken::Kind::value;
  token.begin = pos;
  token.end = close == std::string_view::npos ? source.size() : close + 2;
  token.isOpen = close == std::string_view::npos;
  const std::size_t last = token.isOpen ? source.size() : close;
  token.value = source.substr(pos + 1, last - pos - 1);
  pos = token.end;
  return token;
}

// A quote ends a string only in front of white space; a line end leaves it open.
StarToken StarTokens::quoted(char quote) {
  StarToken token;
  token.kind = StarToken::Kind::value;
  token.begin = pos;
  const std::size_t most = lineEnd(pos);
  std::size_t close = pos + 1;
  while (close < most &&
         !(source[close] == quote &&
           (close + 1 == source.size() || isStarSpace(source[close + 1]) || source[close + 1] == '#')))
    ++close;
  token.value = source.substr(pos + 1, close - pos - 1);
  token.isOpen = close == most;
  token.end = token.isOpen ? most : close + 1;
  pos = token.end;
  return token;
}

StarToken StarTokens::word() {
  StarToken token;
  token.begin = pos;
  while (pos < source.size() && !isStarSpace(source[pos])) ++pos;
  token.end = pos;
  token.value = source.substr(token.begin, token.end - token.begin);
  token.kind = kindOf(token.value);
  token.isPlain = token.kind == StarToken::Kind::value;
  return token;
}

std::size_t StarTokens::lineOf(std::size_t offset) const {
  const std::string_view before = source.substr(0, offset);
  return 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), newline));
}

}  // namespace zorvela
