// A proline's evidence in words: the same sentence on the terminal and on paper.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "zorvela/predict.h"
#include "zorvela/report.h"

namespace zorvela {

/// "CB" for the proline's own, "CA of K116" for a neighbour's; residue numbers are the file's own.
std::string shiftName(const ProlineResult& proline, int index);

/// Short, for a table: "CB", "prev_CA", "next_HN".
std::string shiftKey(int index);

/// Decimals that mean something in a shift (ppm): two for protons, one for carbon and nitrogen.
int decimalsOf(const std::string& atom);

/// The shifts of the triplet in the order of reports: CG of the proline stands beside its CB.
std::vector<int> shiftOrder();

/// One shift as text (ppm); empty where it is missing or unknown.
struct ShiftTexts {
  std::string observed;   ///< as in the file
  std::string corrected;  ///< without the referencing offset and the isotope shift, if one was taken away
  std::string cis;        ///< where cis prolines have it on average, with this reference
  std::string trans;
};
ShiftTexts shiftTexts(const ShiftContribution& shift, int index);

/// Whether a referencing offset was taken away from a shift of the triplet.
bool hasCorrected(const Evidence& evidence);

/// The call in one sentence: "cis: CB and CG of the proline decide; nothing speaks against it". Where there
/// is no prediction, the reason.
std::string sentenceOf(const ProlineResult& proline);

/// The sentence after the call: "CB and CG of the proline decide; nothing speaks against it".
std::string whatDecides(const ProlineResult& proline);

/// What would settle it: for an undecided proline the NOEs, for one with too few shifts how many there must
/// be. Empty for others.
std::string nextStep(const ProlineResult& proline);

/// A shift that promises less (bits) is not worth an experiment.
inline constexpr double kWorthMeasuring = 0.02;

/// The notes of a chain without that on its correction, which reports have in a place of its own.
std::vector<std::string> otherNotes(const ProteinResult& protein);

/// What single precision hides: a P_CIS_NORM of 0, 1 or no number whose evidence is finite. Empty elsewhere.
std::string precisionNote(const ProlineResult& proline);

/// The three strongest contributions: "CB:+4.1;CG:+3.0;next:-0.4". Empty without evidence.
std::string strongestOf(const ProlineResult& proline);

/// The shift most worth measuring with its bits: "CG:0.31". Empty where none is worth it.
std::string nextShiftOf(const ProlineResult& proline);

/// Says that prolines in the gaps of sequences cannot be seen, and what to do. Empty where every file gives
/// its sequence, or has no gap.
std::string unseenSentence(const RunReport& report);

/// "a", "a and b", "a, b and c".
std::string listed(const std::vector<std::string>& items);

}  // namespace zorvela
