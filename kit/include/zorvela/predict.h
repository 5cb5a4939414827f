// Predicts whole proteins with the program's own classes: tables read once, one predictor per thread.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ZORVELA.h"
#include "zorvela/protein.h"

namespace zorvela {

/// A proline at least this likely (P_CIS_NORM) is called cis.
inline constexpr float kCisFrom = 0.5F;
/// A proline at most this likely (P_CIS_NORM) is called trans: 1 in 20 is cis before any shift is known,
/// so up to here the shifts speak against cis. Between the two bounds it is undecided.
inline constexpr float kTransUpTo = 0.05F;

/// What is said of one proline in plain words.
enum class Call { cis, trans, undecided, none };
/// "cis", "trans", "undecided" or "none".
std::string toText(Call call);
/// The call for a value of P_CIS_NORM; none if it is not a number.
Call callOf(float pCisNorm);

/// One proline of the input, predicted or not.
struct ProlineResult {
  int position = 0;      ///< in the sequence, from 1
  std::string number;    ///< the file's own residue number
  std::string previous;  ///< one-letter name; empty before the first residue
  std::string previousNumber;
  std::string next;  ///< one-letter name; empty after the last residue
  std::string nextNumber;
  std::optional<int> previousCount;  ///< how many of the six backbone shifts there are
  std::optional<int> count;
  std::optional<int> nextCount;
  std::optional<float> cgShift;   ///< CG as observed (ppm)
  std::optional<float> pCis;      ///< probability of cis under equal odds
  std::optional<float> pCisNorm;  ///< probability of cis where 1 proline in 20 is cis
  Call call = Call::none;
  std::string reason;  ///< why there is no prediction; empty where there is one
};

/// The reasons that `ProlineResult::reason` can hold.
namespace reason {
inline const std::string kFirstResidue = "first residue";
inline const std::string kLastResidue = "last residue";
inline const std::string kTooFewShifts = "too few shifts";
inline const std::string kLowerCase = "written as lower-case p";
inline const std::string kNeitherFits = "neither class fits";
}  // namespace reason

/// One chain with all its prolines.
struct ProteinResult {
  std::string file;
  std::string chain;
  std::string list;
  int length = 0;                          ///< residues in the sequence
  int shiftCount = 0;                      ///< shifts of the kinds that are used
  std::vector<ReferencingOffset> offsets;  ///< CA, CB, HA, C
  std::vector<ProlineResult> prolines;     ///< by position
  std::vector<std::string> notes;          ///< what was renamed, dropped or guessed in reading the file
};

/// Whether the offset of an atom is a number that calls for a correction.
bool callsForCorrection(const ReferencingOffset& offset);

/// The folder of the reference tables: `given` if not empty; else tab/ in ZORVELA_DIR; else, where that
/// is not set, share/zorvela/tab of the installation, or ./tab if the program is not installed.
std::string findTables(const std::string& given);

/// A run object with default settings and all seven tables of a folder. Error where a table cannot
/// be read, lacks a column or has no rows.
std::unique_ptr<ZORVELA> loadReferenceTables(const std::string& folder);

/// Gives a run object the reference tables of another one.
void copyReferenceTables(const ZORVELA& from, ZORVELA& to);

/// Puts a protein in the place of the one before and assembles its secondary shifts.
void assembleProtein(ZORVELA& run, const Protein& protein);

/// Predicts one protein after the other. Not for several threads at once: give each its own.
class Predictor {
 public:
  explicit Predictor(const ZORVELA& tables);
  ProteinResult predict(const Protein& protein);

 private:
  ProlineResult describeProline(const Protein& protein, int position,
                                const std::optional<ProlinePrediction>& prediction) const;

  ZORVELA run;
};

}  // namespace zorvela
