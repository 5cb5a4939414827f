// Fuzzes the annotation of NEF files.
//
// Beside crashes and sanitizer reports it finds: bytes outside the flags that change, a second annotation
// that changes something, and an annotated file that gives other shifts.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "formats/nef_annotation.h"
#include "formats/star_tokens.h"
#include "zorvela/error.h"
#include "zorvela/read.h"

namespace {

using zorvela::StarToken;
using zorvela::StarTokens;

void check(bool holds) {
  if (!holds) std::abort();
}

// Cis, trans or undecided, by the number.
std::optional<bool> flagOf(const zorvela::NefSequenceRow& row) {
  unsigned sum = 0;
  for (const char c : row.number) sum += static_cast<unsigned char>(c);
  if (sum % 3 == 0) return std::nullopt;
  return sum % 3 == 1;
}

std::optional<bool> noFlag(const zorvela::NefSequenceRow&) {
  return std::nullopt;
}

bool isFlag(std::string_view text) {
  return text == "true" || text == "false";
}

// Without a new column both texts are the same but for single words.
void checkWords(std::string_view before, std::string_view after) {
  StarTokens a(before);
  StarTokens b(after);
  std::size_t endOfA = 0;
  std::size_t endOfB = 0;
  while (true) {
    const StarToken x = a.next();
    const StarToken y = b.next();
    check(before.substr(endOfA, x.begin - endOfA) == after.substr(endOfB, y.begin - endOfB));
    const std::string_view wordA = before.substr(x.begin, x.end - x.begin);
    const std::string_view wordB = after.substr(y.begin, y.end - y.begin);
    check(wordA == wordB || (x.kind == StarToken::Kind::value && isFlag(wordB)));
    endOfA = x.end;
    endOfB = y.end;
    if (x.kind == StarToken::Kind::end) return check(y.kind == StarToken::Kind::end);
  }
}

// A new column only adds bytes.
void checkAdded(std::string_view before, std::string_view after) {
  std::size_t at = 0;
  for (const char c : after)
    if (at < before.size() && c == before[at]) ++at;
  check(at == before.size());
}

std::optional<std::vector<zorvela::Protein>> shiftsOf(const std::string& text) {
  try {
    return zorvela::readShiftBytes(text, "input", {});
  } catch (const zorvela::Error&) {
    return std::nullopt;
  }
}

void checkShifts(const std::string& before, const std::string& after) {
  const auto a = shiftsOf(before);
  if (!a) return;
  const auto b = shiftsOf(after);
  check(b && a->size() == b->size());
  for (std::size_t i = 0; i < a->size(); ++i) {
    check((*a)[i].sequence == (*b)[i].sequence && (*a)[i].numbers == (*b)[i].numbers);
    check((*a)[i].shifts.size() == (*b)[i].shifts.size());
    for (std::size_t s = 0; s < (*a)[i].shifts.size(); ++s)
      check((*a)[i].shifts[s].atom == (*b)[i].shifts[s].atom &&
            (*a)[i].shifts[s].shift == (*b)[i].shifts[s].shift);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  try {
    const zorvela::NefAnnotation plain = zorvela::annotateNef(text, "input", false, noFlag);
    if (plain.columnAdded)
      checkAdded(text, plain.text);
    else
      check(plain.text == text);
    const zorvela::NefAnnotation annotated = zorvela::annotateNef(plain.text, "input", false, flagOf);
    check(!annotated.columnAdded);
    checkWords(plain.text, annotated.text);
    const zorvela::NefAnnotation again = zorvela::annotateNef(annotated.text, "input", false, flagOf);
    check(again.written == 0 && again.text == annotated.text);
    checkShifts(text, annotated.text);
  } catch (const zorvela::Error& error) {
    const std::string_view what = error.what();
    check(!what.empty() && what.size() < 2000 && what.find('\n') == std::string_view::npos);
  }
  return 0;
}
