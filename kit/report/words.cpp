// Chooses the contributions to name, and the words for them.
#include "report/words.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "predict/cb_minus_cg.h"
#include "report/walk.h"
#include "util/number.h"
#include "util/text.h"

namespace zorvela {

namespace {

/// A smaller contribution (nats) is not named: it changes the odds by less than two thirds.
constexpr double kWorthAMention = 0.5;
/// Contributions that support a call are named until they make up this share of them all.
constexpr double kShareNamed = 0.6;
constexpr std::size_t kMostNamed = 3;
constexpr std::size_t kMostOnOneSide = 2;
constexpr std::size_t kStrongest = 3;

struct Reason {
  std::string name;
  std::string key;
  bool isOwn = false;  ///< a shift of the proline itself
  double nats = 0;
};
using Reasons = std::vector<Reason>;

/// The contributions of what was measured, the strongest first.
Reasons reasonsOf(const ProlineResult& proline) {
  const Evidence& evidence = *proline.evidence;
  Reasons reasons = {{"the " + evidence.before.name + " before", "prev", false, evidence.before.nats},
                     {"the " + evidence.after.name + " after", "next", false, evidence.after.nats}};
  for (int index = 0; index <= kIndexCG; ++index)
    if (const ShiftContribution& shift = evidence.shift(index); shift.secondary)
      reasons.push_back({shiftName(proline, index), shiftKey(index),
                         shiftPlace(static_cast<std::size_t>(index)).residue == 0, shift.nats});
  std::stable_sort(reasons.begin(), reasons.end(),
                   [](const Reason& a, const Reason& b) { return std::fabs(a.nats) > std::fabs(b.nats); });
  return reasons;
}

/// Those for cis (sign 1) or for trans (sign -1).
Reasons onSide(const Reasons& reasons, double sign) {
  Reasons side;
  for (const Reason& reason : reasons)
    if (reason.nats * sign > 0) side.push_back(reason);
  return side;
}

double total(const Reasons& reasons) {
  double sum = 0;
  for (const Reason& reason : reasons) sum += std::fabs(reason.nats);
  return sum;
}

/// "a", "a and b" or "a, b and c".
std::string listed(const std::vector<std::string>& items) {
  std::string text;
  for (std::size_t i = 0; i < items.size(); ++i)
    text += (i == 0 ? "" : i + 1 == items.size() ? " and " : ", ") + items[i];
  return text;
}

std::string namesWith(const Reasons& reasons, const std::string& verb) {
  std::vector<std::string> names;
  for (const Reason& reason : reasons) names.push_back(reason.name);
  const bool areOwn = std::all_of(reasons.begin(), reasons.end(), [](const Reason& r) { return r.isOwn; });
  return listed(names) + (areOwn ? " of the proline " : " ") + verb + (reasons.size() == 1 ? "s" : "");
}

/// The strongest that are worth a mention, at most so many.
Reasons strongest(const Reasons& reasons, std::size_t most) {
  Reasons chosen;
  for (const Reason& reason : reasons)
    if (chosen.size() < most && std::fabs(reason.nats) >= kWorthAMention) chosen.push_back(reason);
  return chosen;
}

/// The strongest, until most of what supports the call is named.
Reasons whatCounts(const Reasons& supporting) {
  Reasons named;
  for (const Reason& reason : strongest(supporting, kMostNamed))
    if (total(named) < kShareNamed * total(supporting)) named.push_back(reason);
  return named;
}

/// Contributions without which the call would be another one decide; others support it.
std::string supportText(const Reasons& named, double logOdds, Call call) {
  const double without = logOdds - (call == Call::cis ? total(named) : -total(named));
  const auto chance = static_cast<float>(1 / (1 + std::exp(-without)));
  return callOf(chance) != call ? namesWith(named, "decide") : namesWith(named, "support") + " it";
}

std::string oppositionText(const Reasons& opposing) {
  const Reasons named = strongest(opposing, kMostOnOneSide);
  if (!named.empty()) return namesWith(named, "contradict") + " it";
  return total(opposing) < kWorthAMention ? "nothing contradicts it" : "little contradicts it";
}

/// CB - CG if it is clear and differs from the call. A referencing offset does not change it.
std::string contradiction(const ProlineResult& proline) {
  const auto& cb = proline.evidence->shift(kIndexCB).observed;
  const auto& cg = proline.evidence->shift(kIndexCG).observed;
  if (!cb || !cg) return "";
  const double difference = static_cast<double>(*cb) - static_cast<double>(*cg);
  const Call call = callOfCbMinusCg(difference);
  if (call == Call::undecided || call == proline.call) return "";
  return (proline.call == Call::undecided ? "; CB - CG of " : "; but CB - CG of ") +
         fixedText(difference, 1) + " ppm indicates " + toText(call);
}

std::string undecided(const ProlineResult& proline, const Reasons& reasons) {
  const Reasons forCis = strongest(onSide(reasons, 1), kMostOnOneSide);
  const Reasons against = strongest(onSide(reasons, -1), kMostOnOneSide);
  std::string text = "undecided: ";
  if (forCis.empty() && against.empty())
    text += "no contribution is large";
  else if (against.empty())
    text += namesWith(forCis, "favour") + " cis, but not enough";
  else if (forCis.empty())
    text += "little favours cis, " + namesWith(against, "favour") + " trans";
  else
    text += namesWith(forCis, "favour") + " cis, " + namesWith(against, "favour") + " trans";
  text += contradiction(proline);
  if (const NextShift* best = worthMeasuring(proline))
    text += "; " + shiftName(proline, best->index) + " would be worth " + fixedText(best->bits, 2) + " bits";
  return text;
}

}  // namespace

std::string unseenSentence(const RunReport& report) {
  std::size_t unseen = 0;
  forEachProtein(report,
                 [&](const ProteinResult& protein) { unseen += static_cast<std::size_t>(protein.unseen); });
  if (unseen == 0) return {};
  return "Prolines in gaps cannot be seen: the shifts come without a sequence, and " +
         counted(unseen, "residue has", "residues have") +
         " no name. Give the sequence with --sequence FILE.";
}

std::string shiftName(const ProlineResult& proline, int index) {
  const int residue = shiftPlace(static_cast<std::size_t>(index)).residue;
  if (residue < 0) return atomName(index) + " of " + proline.previous + proline.previousNumber;
  if (residue > 0) return atomName(index) + " of " + proline.next + proline.nextNumber;
  return atomName(index);
}

int decimalsOf(const std::string& atom) {
  return atom == "HA" || atom == "HN" ? 2 : 1;
}

std::vector<int> shiftOrder() {
  std::vector<int> order;
  for (int index = 0; index < kIndexCG; ++index) {
    order.push_back(index);
    if (index == kIndexCB) order.push_back(kIndexCG);
  }
  return order;
}

ShiftTexts shiftTexts(const ShiftContribution& shift, int index) {
  const int decimals = decimalsOf(atomName(index));
  const auto ppm = [decimals](const std::optional<float>& value) {
    return value ? fixedText(static_cast<double>(*value), decimals) : "";
  };
  // The means of CG are shifts, those of the others differences from the reference.
  const auto expected = [&](const ClassShift& of) {
    if (index == kIndexCG) return ppm(of.mean);
    return shift.reference
               ? fixedText(static_cast<double>(*shift.reference) + static_cast<double>(of.mean), decimals)
               : "";
  };
  return {ppm(shift.observed), ppm(shift.corrected), expected(shift.cis), expected(shift.trans)};
}

bool hasCorrected(const Evidence& evidence) {
  return std::any_of(evidence.shifts.begin(), evidence.shifts.end(),
                     [](const ShiftContribution& shift) { return shift.corrected; });
}

std::string shiftKey(int index) {
  const int residue = shiftPlace(static_cast<std::size_t>(index)).residue;
  return (residue < 0 ? "prev_" : residue > 0 ? "next_" : "") + atomName(index);
}

std::string sentenceOf(const ProlineResult& proline) {
  if (!proline.evidence) return "no prediction: " + proline.reason;
  if (proline.call == Call::none)
    return "no prediction: the shifts are too far from cis and from trans; check the assignment";
  const Reasons reasons = reasonsOf(proline);
  if (proline.call == Call::undecided) return undecided(proline, reasons);
  const double side = proline.call == Call::cis ? 1 : -1;
  const Reasons named = whatCounts(onSide(reasons, side));
  if (named.empty())
    return toText(proline.call) +
           (proline.call == Call::cis ? ": many small contributions add up"
                                      : ": no shift clearly favours either, and 19 in 20 are trans") +
           contradiction(proline);
  return toText(proline.call) + ": " + supportText(named, proline.evidence->logOdds(), proline.call) + "; " +
         oppositionText(onSide(reasons, -side)) + contradiction(proline);
}

std::string nextStep(const ProlineResult& proline) {
  if (proline.reason == reason::kTooFewShifts)
    return "a prediction needs three of N, HA, C, CA, CB, HN for two of " +
           listed({proline.previous + proline.previousNumber, "P" + proline.number,
                   proline.next + proline.nextNumber});
  if (proline.call != Call::undecided) return "";
  const std::string before = proline.previous + proline.previousNumber;
  return "an NOE from HA of " + before + " to HA of P" + proline.number + " means cis, to HD means trans";
}

const NextShift* worthMeasuring(const ProlineResult& proline) {
  if (!proline.evidence || proline.evidence->next.empty()) return nullptr;
  const NextShift& best = proline.evidence->next.front();
  return best.bits < kWorthMeasuring ? nullptr : &best;
}

std::vector<std::string> otherNotes(const ProteinResult& protein) {
  std::vector<std::string> others = protein.notes;
  others.erase(std::remove(others.begin(), others.end(), protein.correction), others.end());
  return others;
}

std::string precisionNote(const ProlineResult& proline) {
  if (!proline.evidence) return "";
  const double logOdds = proline.evidence->logOdds();
  if (!std::isfinite(logOdds)) return "";
  const std::string sum = "the contributions add up to " + signedText(logOdds) + " nats, " +
                          (logOdds > 0 ? "for cis" : "for trans");
  if (!proline.pCisNorm) return "the factors are too small for single precision; " + sum;
  if (*proline.pCisNorm <= 0 || *proline.pCisNorm >= 1)
    return "P_CIS_NORM is rounded to " + numberText(*proline.pCisNorm) + "; " + sum;
  return "";
}

std::string strongestOf(const ProlineResult& proline) {
  if (!proline.evidence) return "";
  std::string text;
  const Reasons reasons = reasonsOf(proline);
  for (std::size_t i = 0; i < std::min(kStrongest, reasons.size()); ++i)
    text += (i > 0 ? ";" : "") + reasons[i].key + ":" + signedText(reasons[i].nats);
  return text;
}

std::string nextShiftOf(const ProlineResult& proline) {
  const NextShift* best = worthMeasuring(proline);
  return best == nullptr ? "" : shiftKey(best->index) + ":" + fixedText(best->bits, 2);
}

}  // namespace zorvela
