// The chain as lines of 50 residues: names, symbols of the calls, a band of assignment, residue numbers.
#include <algorithm>

#include "report/html_parts.h"
#include "report/html_pieces.h"
#include "report/walk.h"
#include "util/text.h"

namespace zorvela {

namespace {

constexpr std::size_t kPerLine = 50;
constexpr std::size_t kTickEvery = 10;
constexpr double kLeft = 16;
constexpr double kResidue = 5.2;  // units
constexpr double kNameY = 12;
constexpr double kSymbolY = 32;
constexpr double kBandY = 44;
constexpr double kBandHeight = 10;
constexpr double kNumberY = 67;
constexpr double kHeight = 74;
constexpr double kBetweenNames = 4;
constexpr std::size_t kLongestNumber = 6;
constexpr int kLevels = 4;  // of assignment, above none

double middleOf(std::size_t column) {
  return kLeft + (static_cast<double>(column) + 0.5) * kResidue;
}

/// A name above the chain, and where its proline is.
struct Name {
  Call call = Call::none;
  std::string text;
  bool isMarked = false;  ///< by a verdict
  double anchor = 0;
  double x = 0;

  double half() const { return labelWidth(text) / 2; }
};

/// Moves names apart, in their order. False where the line is too short for them.
bool spread(std::vector<Name>& names) {
  double from = 0;
  for (Name& name : names) {
    name.x = std::max(name.anchor, from + name.half());
    from = name.x + name.half() + kBetweenNames;
  }
  double to = kPictureWidth;
  for (auto name = names.rbegin(); name != names.rend(); ++name) {
    name->x = std::min(name->x, to - name->half());
    to = name->x - name->half() - kBetweenNames;
  }
  return to >= -kBetweenNames;
}

/// If there is too little place, prolines without a prediction lose their names, then trans ones. The table
/// has them.
std::vector<Name> placed(std::vector<Name> names) {
  for (const Call dropped : {Call::none, Call::trans, Call::undecided}) {
    if (spread(names)) return names;
    names.erase(std::remove_if(names.begin(), names.end(), [&](const Name& n) { return n.call == dropped; }),
                names.end());
  }
  return spread(names) ? names : std::vector<Name>();
}

/// 0 nothing, 4 all of its shifts.
int levelOf(const Assignment& assignment) {
  if (assignment.possible == 0 || assignment.present == 0) return 0;
  return std::max(1, assignment.present * kLevels / assignment.possible);
}

std::string bandOf(const ProteinResult& protein, std::size_t first, std::size_t last) {
  std::string band;
  for (std::size_t i = first; i < last;) {
    const int level = levelOf(protein.assignments[i]);
    std::size_t end = i + 1;
    while (end < last && levelOf(protein.assignments[end]) == level) ++end;
    band += svgBox(kLeft + static_cast<double>(i - first) * kResidue, kBandY,
                   static_cast<double>(end - i) * kResidue, kBandHeight, "a" + std::to_string(level));
    i = end;
  }
  return band + "\n";
}

std::string numbersOf(const ProteinResult& protein, std::size_t first, std::size_t last) {
  std::string text;
  for (std::size_t i = first; i < last; ++i) {
    if (i != first && (i + 1) % kTickEvery != 0) continue;
    text += svgText(middleOf(i - first), kNumberY, shortened(protein.numbers[i], kLongestNumber), "m s");
  }
  return text + "\n";
}

std::string prolinesOf(const ProteinResult& protein, std::size_t first, std::size_t last) {
  std::vector<Name> names;
  std::string symbols;
  for (const ProlineResult& proline : protein.prolines) {
    const auto index = static_cast<std::size_t>(proline.position) - 1;
    if (index < first || index >= last) continue;
    const double x = middleOf(index - first);
    const std::string mark = svgVerdict(proline, x, kSymbolY);
    names.push_back({proline.call, "P" + shortened(proline.number, kLongestNumber), !mark.empty(), x, x});
    symbols += svgSymbol(proline.call, x, kSymbolY) + mark;
  }
  std::string labels;
  for (const Name& name : placed(names))
    labels += svgText(name.x, kNameY, name.text, name.call == Call::cis ? "m b" : "m") +
              svgLine(name.x, kNameY + 3, name.anchor, kSymbolY - (name.isMarked ? kVerdictSize : 7), "l");
  return labels + symbols + "\n";
}

std::string describe(const ProteinResult& protein, std::size_t first, std::size_t last) {
  std::string text = "Residues " + protein.numbers[first] + " to " + protein.numbers[last - 1] + ":";
  std::string calls;
  for (const ProlineResult& proline : protein.prolines) {
    const auto index = static_cast<std::size_t>(proline.position) - 1;
    if (index >= first && index < last)
      calls += (calls.empty() ? " " : ", ") + ("P" + proline.number) + " " + toText(proline.call) +
               (is(proline, Verdict::agree)      ? ", structure agrees"
                : is(proline, Verdict::disagree) ? ", structure disagrees"
                                                 : "");
  }
  return text + (calls.empty() ? " no proline" : calls);
}

}  // namespace

std::string markCaption(const ProteinResult& protein) {
  return structureSentence(protein).empty() ? "" : " Ring: the structure agrees; square: it disagrees.";
}

std::string chainFigure(const ProteinResult& protein) {
  const std::size_t length = protein.assignments.size();
  if (length == 0) return "";
  std::string pictures;
  for (std::size_t first = 0; first < length; first += kPerLine) {
    const std::size_t last = std::min(first + kPerLine, length);
    pictures += openPicture(kHeight, describe(protein, first, last)) + bandOf(protein, first, last) +
                numbersOf(protein, first, last) + prolinesOf(protein, first, last) + kClosePicture;
  }
  return "<figure><div class=\"grid strips\">" + pictures +
         "</div><figcaption>Lines of 50 residues. Band: share of N, HA, C, CA, CB, HN that is assigned, none "
         "(hollow) to all (dark)." +
         markCaption(protein) + "</figcaption></figure>\n";
}

}  // namespace zorvela
