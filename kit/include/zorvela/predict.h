// Predicts whole proteins: reference tables read once, one predictor for all threads.
//
//   const Tables tables = tablesFromFolder("share/zorvela/tab");
//   const Predictor predictor(tables);
//   for (const Protein& protein : readShiftFile("your.str", {})) use(predictor.predict(protein));
//
// Nothing here writes to a standard stream, ends the process or keeps state between objects.
#pragma once

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "zorvela/calls.h"
#include "zorvela/core.h"
#include "zorvela/evidence.h"
#include "zorvela/finding.h"
#include "zorvela/protein.h"

namespace zorvela {

// --- Reference tables ---------------------------------------------------------------------------

struct ReferenceTables;
/// The seven reference tables, read and checked. Never changed, so any number of threads may share them.
using Tables = std::shared_ptr<const ReferenceTables>;

/// Names of the seven files.
extern const std::array<const char*, 7> kTableNames;

/// Reads the tables in a folder. Throws TableError, with file and line if known, for a table that cannot be
/// read to its end, that lacks a column, a residue type or a shift index, or that has a value that is not a
/// finite number, a deviation not above zero, limits in the wrong order or shares that do not add up to 1.
Tables tablesFromFolder(const std::string& folder);

/// Reads the tables from memory: name of the file (as in `kTableNames`) to its text.
Tables tablesFromTexts(const std::map<std::string, std::string>& texts);

/// Shifts that the model expects of cis and of trans prolines.
struct ClassStatistics {
  std::array<ClassShift, kShifts> cis;  ///< by shift index (ppm); see `ShiftContribution`
  std::array<ClassShift, kShifts> trans;
  float prolineCB = 0;      ///< random-coil CB of proline, without neighbours (ppm)
  std::string fingerprint;  ///< eight hexadecimal digits; equal if all values in the seven tables are equal
};
ClassStatistics statisticsOf(const Tables& tables);

/// Fingerprint of the tables that come with the program.
inline constexpr const char* kShippedTables = "efe6a7bd";

// --- Results ------------------------------------------------------------------------------------

/// The referencing offset of an atom in a chain; robust against a few wrong residues.
struct ReferencingOffset {
  std::string atom;          ///< "CA", "CB", "HA" or "C"
  float offset = 0;          ///< ppm, observed minus expected; not a number from fewer than ten residues
  float error = 0;           ///< standard error, ppm
  int size = 0;              ///< residues in the estimate
  bool recommended = false;  ///< above its bound (CA, CB 0.75, C 1, HA 0.25 ppm) and three times its error
  std::optional<float> correctedBy;  ///< ppm subtracted before predicting; nothing if the shifts were kept
};

/// Tells whether the offset of an atom is a number that calls for a correction.
bool callsForCorrection(const ReferencingOffset& offset);

/// Tells whether the offset is above its bound, but not above three times its error.
bool isUncertain(const ReferencingOffset& offset);

/// One proline of the input, predicted or not.
struct ProlineResult {
  int position = 0;      ///< in the sequence, from 1
  std::string number;    ///< the file's own residue number
  std::string previous;  ///< one-letter name; empty before the first residue
  std::string previousNumber;
  std::string next;  ///< one-letter name; empty after the last residue
  std::string nextNumber;
  std::optional<int> previousCount;  ///< how many of the six backbone shifts are present
  std::optional<int> count;
  std::optional<int> nextCount;
  std::optional<float> cgShift;   ///< CG as observed (ppm)
  std::optional<float> pCis;      ///< probability of cis under equal odds
  std::optional<float> pCisNorm;  ///< probability of cis where 1 proline in 20 is cis
  Call call = Call::none;
  /// Both probabilities without the correction; only in a chain that was corrected.
  std::optional<float> pCisNormAsReferenced;
  std::optional<Call> callAsReferenced;
  std::optional<bool> cisFlag;       ///< flag of the file for the bond before it: true cis, false trans
  std::string reason;                ///< why there is no prediction; empty if there is one
  std::optional<Evidence> evidence;  ///< if there are enough shifts, even if neither class fits
  std::optional<StructureFinding> structure;  ///< nothing if no structure was given
};

/// Values of `ProlineResult::reason`.
namespace reason {
inline const std::string kFirstResidue = "first residue";
inline const std::string kLastResidue = "last residue";
inline const std::string kTooFewShifts = "too few shifts";
inline const std::string kLowerCase = "written as lower-case p";
inline const std::string kNeitherFits = "neither class fits";
}  // namespace reason

/// Tells whether the flag of the file and the call contradict each other (cis and trans).
bool differsFromFlag(const ProlineResult& proline);

/// Tells whether the correction of the shifts changed the call.
bool dependsOnCorrection(const ProlineResult& proline);

/// Completeness of the assignment of one residue.
struct Assignment {
  int present = 0;   ///< of N, HA, C, CA, CB, HN
  int possible = 0;  ///< how many of these the residue type has; 0 for a type that is unknown
};

/// One chain with all its prolines.
struct ProteinResult {
  std::string file;
  std::string chain;
  std::string list;
  int length = 0;  ///< residues in the sequence
  /// Residues without a name, if the file gives no sequence: a proline there has no result.
  int unseen = 0;
  std::string sequence;                     ///< one-letter codes
  int shiftCount = 0;                       ///< shifts of the atoms that are used
  std::vector<ReferencingOffset> offsets;   ///< always four: CA, CB, HA, C
  std::string correction;                   ///< what was corrected, in words; empty if nothing was
  double deuteration = 0;                   ///< corrected share of deuterons, 0 to 1
  std::vector<ProlineResult> prolines;      ///< by position
  std::vector<Assignment> assignments;      ///< one for each residue
  std::vector<std::string> numbers;         ///< the file's own residue number of each residue
  std::vector<std::string> notes;           ///< what was renamed, dropped or guessed in reading the file
  std::vector<std::string> asides;          ///< notes that apply to nearly every file
  std::vector<ChainMatch> matches;          ///< chains of structures that were compared
  std::vector<std::string> structureNotes;  ///< what does not fit in them
};

struct PredictorOptions {
  /// Uses shifts as they are. Otherwise, offsets that call for a correction are subtracted before predicting,
  /// as are the isotope shifts of a sample that the file calls deuterated. CG of proline follows CA and CB.
  bool asReferenced = false;
  /// Overrides the file: the sample is deuterated, or is not.
  bool deuterated = false;
  bool protonated = false;
};

/// Predicts proteins. Any number of threads may share it.
class Predictor {
 public:
  explicit Predictor(const Tables& tables, const PredictorOptions& options = {});

  /// Makes a predictor with the same tables and other options.
  Predictor with(const PredictorOptions& other) const;

  /// Returns every proline of the protein, with the reason if it is not predicted. Throws std::out_of_range
  /// for a shift of a residue outside the sequence.
  ProteinResult predict(const Protein& protein) const;

  /// Returns the protein with the shifts that `predict` uses, to 0.001 ppm. A remark tells the size of the
  /// correction; without one, the protein is unchanged.
  Protein corrected(const Protein& protein) const;

 private:
  PredictorOptions options;
  std::shared_ptr<const Model> model;
};

}  // namespace zorvela
