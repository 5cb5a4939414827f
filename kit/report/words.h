// The evidence of a proline in words, the same in every report.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "zorvela/predict.h"
#include "zorvela/report.h"

namespace zorvela {

/// Returns "CB" for the proline's own shift, "CA of K116" for a neighbour's, with the file's residue numbers.
std::string shiftName(const ProlineResult& proline, int index);

/// Returns a short name, for a table: "CB", "prev_CA", "next_HN".
std::string shiftKey(int index);

/// Returns the significant decimals of a shift (ppm): two for protons, one for carbon and nitrogen.
int decimalsOf(const std::string& atom);

/// Returns the shifts of the triplet in the order of reports: CG of the proline comes after its CB.
std::vector<int> shiftOrder();

/// One shift as text (ppm); empty if it is missing or unknown.
struct ShiftTexts {
  std::string observed;   ///< as in the file
  std::string corrected;  ///< without the referencing offset and isotope shift, if one was subtracted
  std::string cis;        ///< mean of cis prolines, with this reference
  std::string trans;
};
ShiftTexts shiftTexts(const ShiftContribution& shift, int index);

/// Tells whether a referencing offset was subtracted from a shift of the triplet.
bool hasCorrected(const Evidence& evidence);

/// Returns the call in one sentence: "cis: CB and CG of the proline decide; nothing contradicts it". Without
/// a prediction, the reason.
std::string sentenceOf(const ProlineResult& proline);

/// Returns the measurement that would settle the call: NOEs for an undecided proline, shifts for one that has
/// too few. Empty for others.
std::string nextStep(const ProlineResult& proline);

/// A shift with less expected information (bits) is not worth an experiment.
inline constexpr double kWorthMeasuring = 0.02;

/// A smaller chance of a clear call would be printed as 0 %.
inline constexpr double kLeastChance = 0.005;
/// Returns the shift most worth measuring; nullptr if none is worth it.
const NextShift* worthMeasuring(const ProlineResult& proline);

/// Returns the notes of a chain without the one on its correction, which reports show elsewhere.
std::vector<std::string> otherNotes(const ProteinResult& protein);

/// Returns the sum of the contributions if P_CIS_NORM is 0, 1 or not a number in single precision. Otherwise
/// empty.
std::string precisionNote(const ProlineResult& proline);

/// Returns "in cross-validation, 32 of 32 prolines with CB and CG and P_CIS_NORM above 0.8 were cis". Adds
/// how many cis prolines are called cis if these are less than half. Empty without a prediction.
std::string howOftenRight(const ProlineResult& proline);

/// Returns lines of at most 80 columns. They have the call in a sentence, and the largest contributions with
/// a bar of characters. The missing shifts follow, with their expected information. Without evidence, there
/// is only the sentence.
std::string explained(const ProlineResult& proline);

/// Returns the three strongest contributions: "CB:+4.1;CG:+3.0;next:-0.4". Empty without evidence.
std::string strongestOf(const ProlineResult& proline);

/// Returns the shift most worth measuring with its bits: "CG:0.31". Empty if none is worth it.
std::string nextShiftOf(const ProlineResult& proline);

/// Returns a warning that prolines in the gaps of sequences cannot be seen. Empty if every file gives its
/// sequence, or has no gap.
std::string unseenSentence(const RunReport& report);

}  // namespace zorvela
