// The numbers of a prediction: shifts, reference values, probabilities. No text, no tables, no files.
//
// Shifts are in ppm and in single precision, which is part of the result. A secondary shift is the observed
// shift less its reference, the random-coil shift with its corrections.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <string_view>
#include <vector>

namespace zorvela {

// --- Atoms --------------------------------------------------------------------------------------

/// The atoms whose shifts are used. The six backbone atoms come first, in the order of shift indices.
enum class Atom : unsigned char { N, HA, C, CA, CB, HN, HA2, HA3, CG };
inline constexpr std::size_t kAtomCount = 9;
inline constexpr std::size_t kBackboneAtoms = 6;
inline constexpr std::array<Atom, kBackboneAtoms> kBackbone = {Atom::N,  Atom::HA, Atom::C,
                                                               Atom::CA, Atom::CB, Atom::HN};

/// Place of an atom in an array of values for atoms.
constexpr std::size_t indexOf(Atom atom) {
  return static_cast<std::size_t>(atom);
}
/// Returns the atom's name in shift tables.
constexpr std::string_view nameOf(Atom atom) {
  constexpr std::array<std::string_view, kAtomCount> names = {"N",  "HA",  "C",   "CA", "CB",
                                                              "HN", "HA2", "HA3", "CG"};
  return names[indexOf(atom)];
}
/// Finds the atom of that name.
std::optional<Atom> atomNamed(std::string_view name);

/// A value for each backbone atom.
using BackboneValues = std::array<float, kBackboneAtoms>;

// --- Residue types ------------------------------------------------------------------------------

/// One-letter codes with rules of their own. A proline written as p is taken as a neighbour alone.
inline constexpr char kProlineCode = 'P';
inline constexpr char kPassedProlineCode = 'p';
inline constexpr char kGlycineCode = 'G';
/// The type beyond the ends of a sequence.
inline constexpr char kNoType = '\0';

constexpr bool isProline(char type) {
  return type == kProlineCode || type == kPassedProlineCode;
}
/// The shifts that no proline has: it has no amide proton, and its nitrogen, which carries none, is not used.
constexpr bool isAmide(Atom atom) {
  return atom == Atom::N || atom == Atom::HN;
}

// --- The 19 shifts of a triplet -------------------------------------------------------------------

/// Where a shift belongs: residue -1 before the proline, 0 the proline, 1 after it.
struct ShiftPlace {
  int residue;
  Atom atom;
};

/// Backbone shifts of the residue before, of the proline and of the residue after, then CG of the proline.
inline constexpr std::size_t kBackboneShifts = 3 * kBackboneAtoms;
inline constexpr std::size_t kShifts = kBackboneShifts + 1;

/// Returns the index of a shift; for CG that of the proline.
constexpr std::size_t shiftIndex(int residue, Atom atom) {
  if (atom == Atom::CG) return kBackboneShifts;
  return static_cast<std::size_t>(residue + 1) * kBackboneAtoms + indexOf(atom);
}
/// Returns the place of a shift index.
constexpr ShiftPlace shiftPlace(std::size_t index) {
  if (index == kBackboneShifts) return {0, Atom::CG};
  return {static_cast<int>(index / kBackboneAtoms) - 1, static_cast<Atom>(index % kBackboneAtoms)};
}

// --- Missing shifts -----------------------------------------------------------------------------

/// Marks a shift that does not exist.
inline constexpr float kMissingShift = 9999.0F;
/// A shift at or above this bound is missing.
inline constexpr float kMissingBound = 999.0F;
/// In the prediction a secondary shift above this bound is missing; no real one comes near.
inline constexpr float kMissingSecondaryShift = 99.0F;
/// An atom that the table has no row for. A row with 9999 counts as a row.
inline constexpr float kNotMeasured = std::numeric_limits<float>::quiet_NaN();

// --- The model ----------------------------------------------------------------------------------

/// Reference values of one residue type. A type that no table has keeps these values.
struct ReferenceValues {
  BackboneValues randomCoil = {kMissingShift, kMissingShift, kMissingShift,
                               kMissingShift, kMissingShift, kMissingShift};
  BackboneValues own = {};         ///< corrections of the residue's own shifts
  BackboneValues asPrevious = {};  ///< of those of the residue after it
  BackboneValues asNext = {};      ///< of those of the residue before it
  BackboneValues lowest = {};      ///< limits of its secondary shifts
  BackboneValues highest = {};
  float cisBefore = 0;  ///< share among the residues before cis prolines
  float cisAfter = 0;
  float transBefore = 0;
  float transAfter = 0;
};

/// Mean and deviation of a shift in one class (ppm).
struct ClassShift {
  float mean = 0;
  float deviation = 0;
};

struct ShiftStatistics {
  ClassShift cis;
  ClassShift trans;
};

/// All reference values of a prediction.
struct Model {
  std::array<ReferenceValues, 256> types;            ///< by one-letter code
  std::array<ShiftStatistics, kShifts> shifts = {};  ///< by shift index

  const ReferenceValues& type(char code) const { return types[static_cast<unsigned char>(code)]; }
  ReferenceValues& type(char code) { return types[static_cast<unsigned char>(code)]; }
};

// --- Secondary shifts -----------------------------------------------------------------------------

/// One residue of a sequence with its observed shifts.
struct Residue {
  char type = kNoType;
  std::array<float, kAtomCount> shifts = {kNotMeasured, kNotMeasured, kNotMeasured,
                                          kNotMeasured, kNotMeasured, kNotMeasured,
                                          kNotMeasured, kNotMeasured, kNotMeasured};

  float shift(Atom atom) const { return shifts[indexOf(atom)]; }
  float& shift(Atom atom) { return shifts[indexOf(atom)]; }
  bool has(Atom atom) const { return !std::isnan(shift(atom)); }
};

/// Rounds to six significant digits, as a number does that goes through a cell of a table.
float sixDigits(float value);

/// Returns the reference shift of an atom; from 999 on it is unknown.
float referenceShift(const ReferenceValues& previous, const ReferenceValues& own, const ReferenceValues& next,
                     Atom atom);
/// Returns the reference shifts of the residue at that place (from 0) of a sequence.
BackboneValues referenceShifts(const Model& model, const std::vector<Residue>& sequence, std::size_t place);

/// Returns HA of glycine: the mean of HA2 and HA3, or the one that is below 999; nothing if neither is.
std::optional<float> glycineHA(float ha2, float ha3);
/// Returns the observed shift minus its reference; 9999 if it is missing or not used.
float secondaryShift(char type, Atom atom, std::optional<float> observed, float reference);

/// Returns the observed shift of a backbone atom, for glycine that of its two HA; nothing if there is none.
std::optional<float> observedShift(const Residue& residue, Atom atom);
/// Counts the missing ones of the six backbone shifts.
int missingShifts(const Residue& residue);

/// Returns the secondary shifts of a residue, with six digits; 9999 if missing.
BackboneValues secondaryShifts(const Residue& residue, const BackboneValues& references);
/// Returns the secondary shifts of a whole sequence.
std::vector<BackboneValues> secondaryShifts(const Model& model, const std::vector<Residue>& sequence);

/// Brings a secondary shift into its limits; a shift of 999 or more stays.
float clipped(float shift, float lowest, float highest);

// --- Prediction -------------------------------------------------------------------------------

/// A proline with its neighbours.
struct Triplet {
  std::array<char, 3> types = {};                ///< one-letter codes: before, proline, after
  std::array<BackboneValues, 3> secondary = {};  ///< before they are brought into their limits
  float cg = kMissingShift;                      ///< as observed
};

/// One shift of a triplet against what cis and trans prolines have. A missing one favours neither.
struct ShiftEvidence {
  float used = kMissingShift;  ///< a secondary shift within its limits; of CG the shift itself
  bool isMissing = true;
  double lnCis = 0;    ///< natural logarithm of its factor of the likelihood of cis, at most 0
  double lnTrans = 0;  ///< the same for trans
};

/// All contributions to a probability.
struct ProlineEvidence {
  std::array<ShiftEvidence, kShifts> shifts;  ///< by shift index
  std::array<float, 2> cisShares{};    ///< of the residue types before and after, among those of cis prolines
  std::array<float, 2> transShares{};  ///< the same for trans
};

/// The probability of cis, and its contributions.
struct CisPrediction {
  ProlineEvidence evidence;
  float pCis = 0;      ///< under equal odds
  float pCisNorm = 0;  ///< where 1 proline in 20 is cis
};

/// Tells whether there are enough shifts: at most one residue of a triplet lacks more than three of its six.
bool hasEnoughShifts(const std::array<int, 3>& missing);

/// Tells whether a secondary shift or the shift of a CG is missing in the prediction.
constexpr bool isMissingSecondary(float shift) {
  return shift > kMissingSecondaryShift;
}
constexpr bool isMissingCG(float shift) {
  return shift >= kMissingBound;
}
/// Compares a shift that is not missing with its statistics.
ShiftEvidence compared(float shift, const ShiftStatistics& statistics);

/// Returns the probability of cis under equal odds; not a number if neither class fits.
float cisProbability(const ProlineEvidence& evidence);
/// Converts a probability under equal odds to the one for 1 cis proline in 20.
float naturalOdds(float pCis);

/// Trans to cis among prolines, by which equal odds become natural ones.
inline constexpr double kTransPerCis = 19.0;

/// Predicts the proline of a triplet. Its shifts are brought into their limits.
CisPrediction predict(const Model& model, const Triplet& triplet);

}  // namespace zorvela
