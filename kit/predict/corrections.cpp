#include "predict/corrections.h"

#include <cmath>
#include <vector>

#include "predict/isotopes.h"
#include "util/number.h"
#include "util/text.h"

namespace zorvela {

namespace {

// Corrected shifts have six decimals, more than any file gives.
constexpr double kCorrectedScale = 1e6;

/// One phrase for each offset that is taken away.
template <class Phrase>
std::vector<std::string> phrasesOf(const Offsets& offsets, Phrase phrase) {
  std::vector<std::string> phrases;
  for (const char* atom : {"CA", "C", "HA"})
    if (const auto found = offsets.find(atom); found != offsets.end())
      phrases.push_back(phrase(found->first, fixedText(std::fabs(found->second), 2), found->second > 0));
  return phrases;
}

std::string percent(double share) {
  return fixedText(100 * share, 0) + " %";
}

}  // namespace

double corrected(double shift, char type, Atom atom, const Corrections& corrections) {
  const bool isGlycineProton = atom == Atom::HA2 || atom == Atom::HA3;
  const auto offset = corrections.offsets.find(std::string(nameOf(isGlycineProton ? Atom::HA : atom)));
  const double ppm = (offset == corrections.offsets.end() ? 0 : offset->second) +
                     corrections.deuteration * isotopeShift(type, atom);
  return ppm == 0 ? shift : std::nearbyint((shift - ppm) * kCorrectedScale) / kCorrectedScale;
}

std::string correctionText(const Corrections& corrections) {
  auto phrases =
      phrasesOf(corrections.offsets, [](const std::string& atom, const std::string& size, bool isHigh) {
        const std::string name = atom == "CA" ? "13C" : atom == "C" ? "C'" : atom;
        return name + " is " + size + " ppm too " + (isHigh ? "high" : "low");
      });
  if (corrections.deuteration > 0)
    phrases.push_back("carbon is deuterated (" + percent(corrections.deuteration) + "), which lowers it");
  const bool canBeKept = !corrections.offsets.empty() || !corrections.isDeuterationGiven;
  return enumerated(phrases) + "; corrected before predicting" +
         (canBeKept ? " (--as-referenced keeps it)" : "");
}

std::string correctionRemark(const Corrections& corrections) {
  const std::string carbons = "CA, CB and CG of proline";
  auto phrases =
      phrasesOf(corrections.offsets, [&](const std::string& atom, const std::string& size, bool isHigh) {
        const std::string names = atom == "CA" ? carbons : atom == "C" ? "C'" : atom;
        return size + " ppm " + (isHigh ? "subtracted from " : "added to ") + names;
      });
  if (corrections.deuteration > 0)
    phrases.push_back("isotope shifts of deuterium (" + percent(corrections.deuteration) +
                      ") subtracted from " + carbons);
  return "Corrected: " + enumerated(phrases);
}

}  // namespace zorvela
