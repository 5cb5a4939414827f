// The words of STAR text with their places.
#include "formats/star/star_tokens.h"

#include <algorithm>

#include "util/text.h"

namespace zorvela {

namespace {

StarToken::Kind kindOf(std::string_view word) {
  switch (word.front()) {
    case '_':
      return StarToken::Kind::tag;
    case 'l':
    case 'L':
      return equalIgnoringCase(word, "loop_") ? StarToken::Kind::loop : StarToken::Kind::value;
    case 's':
    case 'S':
      if (equalIgnoringCase(word, "stop_")) return StarToken::Kind::stop;
      return startsIgnoringCase(word, "save_") ? StarToken::Kind::frame : StarToken::Kind::value;
    case 'd':
    case 'D':
      return startsIgnoringCase(word, "data_") ? StarToken::Kind::frame : StarToken::Kind::value;
    case 'g':
    case 'G':
      return startsIgnoringCase(word, "global_") ? StarToken::Kind::frame : StarToken::Kind::value;
    default:
      return StarToken::Kind::value;
  }
}

}  // namespace

StarTokens::StarTokens(std::string_view text)
    : source(text), newline(text.find('\n') == std::string_view::npos ? '\r' : '\n') {
  if (source.substr(0, 3) == "\xEF\xBB\xBF") pos = 3;
}

StarToken StarTokens::next() {
  skipBlanks();
  StarToken token;
  token.begin = pos;
  token.line = line;
  if (pos >= source.size())
    token.end = pos;
  else if (source[pos] == ';' && (pos == 0 || source[pos - 1] == newline))
    readTextField(token);
  else if (source[pos] == '\'' || source[pos] == '"')
    readQuoted(token);
  else
    readWord(token);
  pos = token.end;
  return token;
}

void StarTokens::skipBlanks() {
  while (pos < source.size()) {
    const char c = source[pos];
    if (c == '#') {
      pos = lineEnd(pos);
    } else if (isStarSpace(c)) {
      if (c == newline) ++line;
      ++pos;
    } else {
      return;
    }
  }
}

std::size_t StarTokens::lineEnd(std::size_t from) const {
  return std::min(source.find(newline, from), source.size());
}

void StarTokens::readTextField(StarToken& token) {
  const char mark[] = {newline, ';'};
  const std::size_t close = source.find(std::string_view(mark, 2), pos);
  token.kind = StarToken::Kind::value;
  token.end = close == std::string_view::npos ? source.size() : close + 2;
  token.isOpen = close == std::string_view::npos;
  const std::size_t last = token.isOpen ? source.size() : close;
  token.value = source.substr(pos + 1, last - pos - 1);
  const std::string_view whole = source.substr(pos, token.end - pos);
  line += static_cast<std::size_t>(std::count(whole.begin(), whole.end(), newline));
}

// A quote ends a string only in front of white space; a line end leaves it open. One line may hold millions
// of strings, so its end is not looked for.
void StarTokens::readQuoted(StarToken& token) {
  const char quote = source[pos];
  token.kind = StarToken::Kind::value;
  std::size_t close = pos + 1;
  while (close < source.size() && source[close] != newline &&
         !(source[close] == quote &&
           (close + 1 == source.size() || isStarSpace(source[close + 1]) || source[close + 1] == '#')))
    ++close;
  token.value = source.substr(pos + 1, close - pos - 1);
  token.isOpen = close == source.size() || source[close] == newline;
  token.end = token.isOpen ? close : close + 1;
}

void StarTokens::readWord(StarToken& token) const {
  std::size_t end = pos;
  while (end < source.size() && !isStarSpace(source[end])) ++end;
  token.end = end;
  token.value = source.substr(pos, end - pos);
  token.kind = kindOf(token.value);
  token.isPlain = token.kind == StarToken::Kind::value;
}

}  // namespace zorvela
