#include "protein/remarks.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <string_view>

#include "names/nomenclature.h"
#include "util/number.h"
#include "util/text.h"

namespace zorvela {

namespace {

/// "residue HERE is residue THERE there", as found in a remark.
struct Sentence {
  std::size_t pos = 0;  ///< of the number "here"
  std::size_t size = 0;
  int here = 0;
  std::string there;
};

std::string_view wordAt(std::string_view text, std::size_t pos) {
  return text.substr(pos, std::min(text.find(' ', pos), text.size()) - pos);
}

std::vector<Sentence> sentencesOf(const std::string& remark) {
  constexpr std::string_view kStart = "residue ";
  constexpr std::string_view kMiddle = " here is residue ";
  constexpr std::string_view kEnd = " there";
  const std::string lowered = lower(remark);
  std::vector<Sentence> sentences;
  for (std::size_t pos = 0; (pos = lowered.find(kStart, pos)) != std::string::npos;) {
    pos += kStart.size();
    const std::string_view number = wordAt(lowered, pos);
    const std::optional<int> here = toInteger(number);
    const std::size_t middle = pos + number.size();
    if (!here || lowered.compare(middle, kMiddle.size(), kMiddle) != 0) continue;
    // From the remark itself, because insertion codes keep their case.
    const std::string_view there = wordAt(remark, middle + kMiddle.size());
    const std::size_t end = middle + kMiddle.size() + there.size();
    if (!there.empty() && lowered.compare(end, kEnd.size(), kEnd) == 0)
      sentences.push_back({pos, number.size(), *here, std::string(there)});
  }
  return sentences;
}

constexpr std::string_view kDeuterated = "Deuterated: ";
constexpr std::string_view kOfHydrogens = " % of the hydrogens on carbon";

/// The number of percent in the remark on deuteration; empty in another one.
std::string_view percentIn(std::string_view remark) {
  const std::string_view text = trimmed(remark);
  const std::size_t end = text.find(kOfHydrogens);
  if (text.substr(0, kDeuterated.size()) != kDeuterated || end == std::string_view::npos) return {};
  return text.substr(kDeuterated.size(), end - kDeuterated.size());
}

}  // namespace

void addNumbering(Protein& protein) {
  const std::vector<std::string>& numbers = protein.numbers;
  for (std::size_t i = 0; i < numbers.size(); ++i)
    if (i == 0 || nextNumber(numbers[i - 1]) != numbers[i])
      protein.remarks.push_back(
          printable("Residue " + std::to_string(i + 1) + " here is residue " + numbers[i] + " there"));
}

std::vector<std::string> numbersFromRemarks(const std::vector<std::string>& remarks, int count, int first) {
  std::map<int, std::string> stated;
  for (const std::string& remark : remarks)
    for (const Sentence& sentence : sentencesOf(remark)) stated.emplace(sentence.here, sentence.there);
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
  return !sentencesOf(remark).empty();
}

std::string shiftedNumbering(const std::string& remark, std::int64_t offset) {
  std::string result;
  std::size_t copied = 0;
  for (const Sentence& sentence : sentencesOf(remark)) {
    result += remark.substr(copied, sentence.pos - copied) + std::to_string(sentence.here - offset);
    copied = sentence.pos + sentence.size;
  }
  return result + remark.substr(copied);
}

void setDeuteration(double share, Protein& protein) {
  std::vector<std::string>& remarks = protein.remarks;
  remarks.erase(std::remove_if(remarks.begin(), remarks.end(),
                               [](const std::string& remark) { return !percentIn(remark).empty(); }),
                remarks.end());
  protein.deuteration = share;
  if (share > 0)
    remarks.push_back(std::string(kDeuterated) + fixedText(100 * share, 0) + std::string(kOfHydrogens));
}

double deuterationFromRemarks(const std::vector<std::string>& remarks) {
  for (const std::string& remark : remarks)
    if (const auto percent = toDecimal(percentIn(remark)))
      return std::clamp(std::stod(*percent) / 100, 0.0, 1.0);
  return 0;
}

}  // namespace zorvela
