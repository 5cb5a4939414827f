#include "protein/numbering.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <string_view>
#include <unordered_set>

#include "names/nomenclature.h"
#include "util/text.h"

namespace zorvela {

namespace {

/// "residue HERE is residue THERE there", as found in a remark.
struct Sentence {
  std::size_t herePos = 0;  ///< where the number "here" begins, and its length
  std::size_t hereSize = 0;
  int here = 0;
  std::string there;
  std::size_t end = 0;
};

std::string_view wordAt(std::string_view text, std::size_t pos) {
  const std::size_t end = text.find(' ', pos);
  return text.substr(pos, end == std::string_view::npos ? end : end - pos);
}

/// Finds the sentences of a remark, one after the other.
class Sentences {
 public:
  explicit Sentences(const std::string& text) : remark(text), lowered(lower(text)) {}

  std::optional<Sentence> next() {
    static constexpr std::string_view kStart = "residue ";
    while ((pos = lowered.find(kStart, pos)) != std::string::npos) {
      pos += kStart.size();
      if (std::optional<Sentence> sentence = sentenceAt(pos)) {
        pos = sentence->end;
        return sentence;
      }
    }
    return std::nullopt;
  }

 private:
  std::optional<Sentence> sentenceAt(std::size_t herePos) const {
    static constexpr std::string_view kMiddle = " here is residue ";
    static constexpr std::string_view kEnd = " there";
    Sentence sentence;
    sentence.herePos = herePos;
    sentence.hereSize = wordAt(lowered, herePos).size();
    const std::optional<int> here = toInteger(wordAt(lowered, herePos));
    const std::size_t middle = herePos + sentence.hereSize;
    if (!here || lowered.compare(middle, kMiddle.size(), kMiddle) != 0) return std::nullopt;
    sentence.here = *here;
    // From the remark itself, because insertion codes keep their case.
    sentence.there = wordAt(remark, middle + kMiddle.size());
    sentence.end = middle + kMiddle.size() + sentence.there.size();
    if (sentence.there.empty() || lowered.compare(sentence.end, kEnd.size(), kEnd) != 0) return std::nullopt;
    return sentence;
  }

  const std::string& remark;
  std::string lowered;
  std::size_t pos = 0;
};

/// A number that no residue has yet: so many steps from a known one; nothing if it is taken or there is none.
std::optional<std::string> freeNumber(const std::string& known, std::int64_t steps,
                                      const std::unordered_set<std::string>& taken) {
  const auto number = steppedNumber(known, steps);
  return number && taken.count(*number) == 0 ? number : std::nullopt;
}

/// Compares numbers without their insertion codes.
bool standsAbove(const std::string& number, const std::string& other) {
  const auto first = readResidueNumber(other);
  const auto second = readResidueNumber(number);
  return first && second && second->number > first->number;
}

/// The number before with the first free insertion code, as inserted residues have it: 10A, 10B.
std::optional<std::string> insertedNumber(const std::string& before,
                                          const std::unordered_set<std::string>& taken) {
  const auto number = readResidueNumber(before);
  if (!number) return std::nullopt;
  for (char code = 'A'; code <= 'Z'; ++code) {
    std::string candidate = std::to_string(number->number) + code;
    if (taken.count(candidate) == 0) return candidate;
  }
  return std::nullopt;
}

}  // namespace

std::vector<std::string> numberingRemarks(const std::vector<std::string>& numbers) {
  std::vector<std::string> remarks;
  for (std::size_t i = 0; i < numbers.size(); ++i)
    if (i == 0 || nextNumber(numbers[i - 1]) != numbers[i])
      remarks.push_back("Residue " + std::to_string(i + 1) + " here is residue " + numbers[i] + " there");
  return remarks;
}

std::vector<std::string> numbersFromRemarks(const std::vector<std::string>& remarks, int count, int first) {
  std::map<int, std::string> stated;
  for (const std::string& remark : remarks) {
    Sentences sentences(remark);
    while (const auto sentence = sentences.next()) stated.emplace(sentence->here, sentence->there);
  }

  std::vector<std::string> numbers;
  std::optional<std::string> number = std::to_string(first);
  for (int i = 0; i < count; ++i) {
    const int here = static_cast<int>(static_cast<std::int64_t>(first) + i);
    if (const auto found = stated.find(here); found != stated.end()) number = found->second;
    numbers.push_back(number.value_or(std::to_string(here)));
    number = nextNumber(numbers.back());
  }
  return numbers;
}

bool hasNumbering(const std::string& remark) {
  return Sentences(remark).next().has_value();
}

std::string shiftedNumbering(const std::string& remark, std::int64_t offset) {
  std::string result;
  std::size_t copied = 0;
  Sentences sentences(remark);
  while (const auto sentence = sentences.next()) {
    result += remark.substr(copied, sentence->herePos - copied);
    result += std::to_string(static_cast<std::int64_t>(sentence->here) - offset);
    copied = sentence->herePos + sentence->hereSize;
  }
  return result + remark.substr(copied);
}

void completeNumbers(std::vector<std::string>& numbers) {
  if (std::find(numbers.begin(), numbers.end(), "") == numbers.end()) return;
  std::unordered_set<std::string> taken(numbers.begin(), numbers.end());
  taken.erase("");
  std::size_t next = 0;  // the nearest residue after this one whose number is known
  std::size_t place = 0;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (!numbers[i].empty()) continue;
    next = std::max(next, i);
    while (next < numbers.size() && numbers[next].empty()) ++next;
    std::optional<std::string> number;
    if (i > 0) number = freeNumber(numbers[i - 1], 1, taken);
    if (!number && next < numbers.size()) {
      number =
          freeNumber(numbers[next], static_cast<std::int64_t>(i) - static_cast<std::int64_t>(next), taken);
      if (number && i > 0 && !standsAbove(*number, numbers[i - 1])) number.reset();
    }
    if (!number && i > 0) number = insertedNumber(numbers[i - 1], taken);
    while (!number)
      if (std::string free = std::to_string(++place); taken.count(free) == 0) number = std::move(free);
    taken.insert(*number);
    numbers[i] = std::move(*number);
  }
}

}  // namespace zorvela
