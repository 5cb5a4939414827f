// A block of text below each proline. Columns: name, observed, class means (ppm), nats, bar.
#include <algorithm>
#include <cmath>
#include <iomanip>
#include <sstream>
#include <vector>

#include "report/words.h"
#include "util/number.h"
#include "util/text.h"

namespace zorvela {

namespace {

const std::string kIndent = "     ";
constexpr std::size_t kLineWidth = 80;
constexpr int kNameWidth = 16;
constexpr int kNumberWidth = 8;
constexpr int kCorrectedWidth = 11;
constexpr int kBarWidth = 11;  // to either side
constexpr double kNatsPerMark = 0.5;
constexpr std::size_t kMostRows = 8;
/// Smaller contributions (nats) have no row.
constexpr double kWorthARow = 0.1;

struct Line {
  std::string name;
  double nats = 0;
  ShiftTexts texts = {};
  bool clipped = false;
};

/// The largest contributions, in the order of the triplet.
std::vector<Line> linesOf(const ProlineResult& proline) {
  const Evidence& evidence = *proline.evidence;
  std::vector<Line> lines = {{evidence.before.name + " before", evidence.before.nats}};
  for (const int index : shiftOrder())
    if (const ShiftContribution& shift = evidence.shift(index); shift.secondary)
      lines.push_back({shiftName(proline, index), shift.nats, shiftTexts(shift, index), shift.clipped});
  lines.push_back({evidence.after.name + " after", evidence.after.nats});

  std::vector<double> sizes;
  for (const Line& line : lines) sizes.push_back(std::fabs(line.nats));
  std::sort(sizes.rbegin(), sizes.rend());
  const double least = std::max(kWorthARow, sizes.size() > kMostRows ? sizes[kMostRows - 1] : 0.0);
  lines.erase(std::remove_if(lines.begin(), lines.end(),
                             [least](const Line& line) { return std::fabs(line.nats) < least; }),
              lines.end());
  return lines;
}

/// "     ####|" for trans, "         |##" for cis; ">" at the end of a bar that is cut.
std::string barOf(double nats) {
  const double marks = std::isfinite(nats) ? std::round(std::fabs(nats) / kNatsPerMark) : 2.0 * kBarWidth;
  std::string bar(static_cast<std::size_t>(std::min<double>(marks, kBarWidth)), '#');
  const bool isCut = marks > kBarWidth;
  if (nats < 0) {
    if (isCut) bar.front() = '<';
    return std::string(kBarWidth - bar.size(), ' ') + bar + "|";
  }
  if (isCut) bar.back() = '>';
  return std::string(kBarWidth, ' ') + "|" + bar;
}

std::string rowOf(const std::string& name, const ShiftTexts& texts, bool isClipped, const std::string& nats,
                  const std::string& bar, bool withCorrected) {
  std::ostringstream row;
  row << kIndent << std::left << std::setw(kNameWidth) << printable(name, kNameWidth) << std::right
      << std::setw(kNumberWidth) << texts.observed;
  if (withCorrected) row << std::setw(kCorrectedWidth) << texts.corrected;
  row << (isClipped ? '*' : ' ') << std::setw(kNumberWidth) << texts.cis << std::setw(kNumberWidth)
      << texts.trans << std::setw(kNumberWidth) << nats << "  " << bar;
  std::string text = row.str();
  text.erase(text.find_last_not_of(' ') + 1);
  return text + '\n';
}

/// Broken between words; a word that is too long is cut.
std::string wrapped(const std::string& unsafe) {
  const std::string text = shown(unsafe);
  std::string lines;
  std::string line = kIndent;
  std::size_t from = 0;
  while (from < text.size()) {
    const std::size_t to = std::min(text.find(' ', from), text.size());
    const std::string word = text.substr(from, std::min(to - from, kLineWidth - kIndent.size() - 1));
    if (line.size() > kIndent.size() && line.size() + 1 + word.size() > kLineWidth) {
      lines += line + '\n';
      line = kIndent;
    }
    line += (line.size() > kIndent.size() ? " " : "") + word;
    from = to + 1;
  }
  return lines + line + '\n';
}

std::string missingText(const ProlineResult& proline) {
  std::vector<std::string> items;
  for (const NextShift& next : proline.evidence->next) {
    if (next.bits < kWorthMeasuring) continue;
    std::string item = shiftName(proline, next.index) + " " + fixedText(next.bits, 2);
    if (next.decides && *next.decides >= kLeastChance)
      item += " (chance of a clear call " + fixedText(*next.decides * 100, 0) + " %)";
    items.push_back(item);
  }
  if (items.empty())
    return proline.evidence->next.empty() ? "No shift is missing." : "No missing shift is worth measuring.";
  return "Missing shifts, with their expected information in bits: " + enumerated(items, 18);
}

}  // namespace

std::string explained(const ProlineResult& proline) {
  std::string text;
  for (const std::string& sentence :
       {sentenceOf(proline), nextStep(proline), howOftenRight(proline), precisionNote(proline)})
    if (!sentence.empty()) text += wrapped(sentence);
  if (!proline.evidence) return text;
  std::vector<Line> lines = linesOf(proline);
  lines.insert(lines.begin(), {"1 in 20 is cis", Evidence::prior()});
  lines.push_back({"sum", proline.evidence->logOdds()});
  const bool withCorrected = hasCorrected(*proline.evidence);
  text += rowOf("ppm, nats", {"observed", "corrected", "cis", "trans"}, false, "nats", "      trans|cis",
                withCorrected);
  for (const Line& line : lines)
    text += rowOf(line.name, line.texts, line.clipped,
                  std::isnan(line.nats) ? "unknown" : signedText(line.nats), barOf(line.nats), withCorrected);
  if (std::any_of(lines.begin(), lines.end(), [](const Line& line) { return line.clipped; }))
    text += kIndent + "* beyond the limit of its residue type; the limit is used\n";
  return text + wrapped(missingText(proline));
}

}  // namespace zorvela
