// Predicts whole proteins: reference tables read once, one predictor per thread.
//
//   const Tables tables = tablesFromFolder("share/zorvela/tab");
//   Predictor predictor(tables);
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
#include "zorvela/protein.h"

class ZORVELA;

namespace zorvela {

// --- Reference tables ---------------------------------------------------------------------------

struct ReferenceTables;
/// The seven reference tables, read and checked. Never changed, so any number of threads may share them.
using Tables = std::shared_ptr<const ReferenceTables>;

/// The names of the seven files.
extern const std::array<const char*, 7> kTableNames;

/// The tables in a folder. TableError, with file and line where there is one, for a table that cannot be
/// read to its end, lacks a column, a residue type or a shift index, or has a value that is no finite
/// number, a deviation that is not above zero, limits the wrong way round or shares that do not add up to 1.
Tables tablesFromFolder(const std::string& folder);

/// The same from memory: name of the file (as in `kTableNames`) to its text.
Tables tablesFromTexts(const std::map<std::string, std::string>& texts);

// --- Results ------------------------------------------------------------------------------------

/// A straight-line estimate of a referencing offset.
struct ReferencingOffset {
  std::string atom;          ///< "CA", "CB", "HA" or "C"
  float offset = 0;          ///< ppm, observed minus expected; infinite or not a number from too few residues
  float error = 0;           ///< ppm, of the fit
  int size = 0;              ///< residues in the fit
  bool recommended = false;  ///< the offset calls for a correction
};

/// Whether the offset of an atom is a number that calls for a correction.
bool callsForCorrection(const ReferencingOffset& offset);

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
  std::vector<std::string> asides;         ///< the same, of what is so in nearly every file
};

/// Predicts one protein after the other. Not for several threads at once: give each its own.
class Predictor {
 public:
  explicit Predictor(const Tables& tables);
  Predictor(Predictor&& other) noexcept;
  Predictor& operator=(Predictor&& other) noexcept;
  ~Predictor();

  /// Every proline of the protein, with the reason where it is not predicted.
  ProteinResult predict(const Protein& protein);

 private:
  std::unique_ptr<ZORVELA> run;
};

}  // namespace zorvela
