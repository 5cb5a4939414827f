// What must hold of the annotation of any file.
#include "fuzz/checks.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "formats/star/nef_annotation.h"
#include "formats/star/star_tokens.h"
#include "fuzz/holds.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

// Cis, trans or undecided, by the number.
std::optional<bool> flagOf(const NefSequenceRow& row) {
  unsigned sum = 0;
  for (const char c : row.number) sum += static_cast<unsigned char>(c);
  if (sum % 3 == 0) return std::nullopt;
  return sum % 3 == 1;
}

std::optional<bool> noFlag(const NefSequenceRow&) {
  return std::nullopt;
}

bool isFlag(std::string_view text) {
  return text == "true" || text == "false";
}

// The text between two words is kept; a blank is added where a word touched what follows it.
bool isSameGap(std::string_view before, std::string_view after) {
  return before == after || (!after.empty() && after.front() == ' ' && before == after.substr(1));
}

// Without a new column both texts are the same except for single words.
void checkWords(std::string_view before, std::string_view after) {
  StarTokens a(before);
  StarTokens b(after);
  std::size_t endOfA = 0;
  std::size_t endOfB = 0;
  while (true) {
    const StarToken x = a.next();
    const StarToken y = b.next();
    check(isSameGap(before.substr(endOfA, x.begin - endOfA), after.substr(endOfB, y.begin - endOfB)));
    const std::string_view wordA = before.substr(x.begin, x.end - x.begin);
    const std::string_view wordB = after.substr(y.begin, y.end - y.begin);
    check(wordA == wordB || (x.kind == StarToken::Kind::value && isFlag(wordB)));
    endOfA = x.end;
    endOfB = y.end;
    if (x.kind == StarToken::Kind::end) return check(y.kind == StarToken::Kind::end);
  }
}

}  // namespace

void checkAnnotation(const std::string& bytes) {
  checkMessageOf([&] {
    const NefAnnotation plain = annotateNef(bytes, "input", {true, true}, noFlag);
    check(plain.columnAdded || plain.text == bytes);
    const NefAnnotation annotated = annotateNef(plain.text, "input", {true, true}, flagOf);
    check(!annotated.columnAdded);
    checkWords(plain.text, annotated.text);
    const NefAnnotation again = annotateNef(annotated.text, "input", {true, true}, flagOf);
    check(again.written == 0 && again.text == annotated.text);
  });
}

}  // namespace zorvela
