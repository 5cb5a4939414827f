// One run: from a table of chemical shifts to the probability of cis for every proline.
//
// The sources, in the order of the run:
//   settings.cpp           options, directories, file names
//   load_tables.cpp        input table, reference tables, proline databases
//   reference_shifts.cpp   random-coil shifts and corrections of a residue type
//   shift_assembly.cpp     input shifts to secondary shifts
//   residue_rows.cpp       the rows of a residue in a shift table
//   check_report.cpp       outliers, referencing
//   clipping.cpp           secondary shifts into their limits
//   triplet.cpp            a residue and its neighbours
//   prediction.cpp         the run from end to end, probabilities
//   prediction_output.cpp  output table, listing
//   statistics.cpp         numbers to text, means and deviations
#pragma once

#include <array>     // for std::array
#include <map>       // for std::map
#include <optional>  // for std::optional
#include <string>    // for std::string
#include <vector>    // for std::vector

#include "GDB.h"
#include "zorvela/core.h"

/// The prediction for one proline.
struct ProlinePrediction {
  int resid = 0;                           ///< residue number of the proline
  std::array<std::string, 3> names;        ///< one-letter names: previous residue, proline, next residue
  std::array<int, 3> shiftCounts{};        ///< how many of the six backbone shifts each of them has
  float cgShift = zorvela::kMissingShift;  ///< CG of the proline as observed (ppm), 9999 if absent
  float pCis = 0;                          ///< probability of cis under equal odds
  float pCisNorm = 0;                      ///< probability of cis where 1 proline in 20 is cis
  zorvela::ProlineEvidence evidence;       ///< contributions to the two
};

/// A straight-line estimate of a referencing offset, as the check report prints it.
struct FittedOffset {
  std::string atom;          ///< "CA", "CB", "HA" or "C"
  float offset = 0;          ///< ppm; infinite or not a number if there are too few residues
  float error = 0;           ///< ppm, of the fit
  int size = 0;              ///< residues in the fit
  bool recommended = false;  ///< the offset calls for a correction
};

class ResidueRows;

/// The run object: settings, tables and per-residue results of one run. It is moved, not copied. The members
/// and operations are the class's fixed interface; some serve only other hosts and tests.
class ZORVELA {
 public:
  // --- Settings ---------------------------------------------------------------------------------

  /// Takes the main directory and the path separator from ZORVELA_DIR (else PATH) and fills the lists
  /// of option names and backbone atoms.
  ZORVELA();
  /// Sets only the input name: no directory, no option names, no atoms.
  explicit ZORVELA(const std::string& inputName);
  ZORVELA(const ZORVELA&) = delete;
  ZORVELA& operator=(const ZORVELA&) = delete;
  ZORVELA(ZORVELA&&) noexcept = default;
  ZORVELA& operator=(ZORVELA&&) noexcept = default;
  ~ZORVELA() = default;

  /// Sets every run setting from option names and values; an empty value counts as not given.
  /// "help" shows the usage text and ends the process.
  void setArgs(std::map<std::string, std::string> args);
  /// Writes the usage text to standard error and ends the process with status 0.
  void printSyntax();
  /// Writes the non-empty values of a row, each with a blank behind it, and an end of line.
  void printEntry(std::map<std::string, std::string> entry);

  // --- The run ------------------------------------------------------------------------------------

  /// Does the whole run: tables, secondary shifts, prediction, listing, output table.
  void runPredict();
  /// Reads the input table and all reference tables, with a line for each of the latter.
  void init();
  /// Turns the input shifts into secondary shifts (observed - reference, ppm) in `resTable`; with
  /// `checkShifts` prints the check report and ends the process with status 255.
  void getResInfo();

  // --- Reference shifts ---------------------------------------------------------------------------

  /// Returns the random-coil shift (ppm) of an atom in a residue type; 9999 if the table lacks the type, 0
  /// if it lacks the atom.
  float getRC(const std::string& resName, const std::string& atomName);
  /// Return the corrections (ppm) for the residue itself, by its preceding and by its following residue; 0 if
  /// the table lacks the type or the atom.
  float getRCadj(const std::string& resName, const std::string& atomName);
  float getPrevRCadj(const std::string& resName, const std::string& atomName);
  float getNextRCadj(const std::string& resName, const std::string& atomName);

  // --- Shift checks -------------------------------------------------------------------------------

  /// Prints outlier shifts and estimated referencing offsets to standard output.
  void checkCS();
  /// Returns the referencing offsets that the report prints: CA, CB, HA, C.
  std::vector<FittedOffset> referencingOffsets();
  /// Brings a secondary shift (ppm) into the limits of its residue type and atom; a shift of 999 or
  /// more stays. A type or atom without limits has the limits 0 and 0. With `showDetail` prints a line
  /// for each clipped shift.
  float clipSShift(int resid, float shift, const std::string& atomName);
  /// Fits y = a x + b; `err` is the fitting error. Returns false and changes nothing if the lengths
  /// differ. The first pair counts in the means only. Division by zero is not prevented.
  bool LinearLeastSquareFitting(const std::vector<float>& x, const std::vector<float>& y, float& a, float& b,
                                float& err);

  // --- Prediction -------------------------------------------------------------------------------

  /// Reads the means and deviations of shifts around cis and trans prolines.
  void getProCSValue(const std::string& fileName);
  /// Reads the shares of residue types before and after cis and trans prolines.
  void getProSeqOccurence(const std::string& fileName);
  /// Names, numbers and secondary shifts (as text, ppm) of residues r - 1, r and r + 1 under keys such
  /// as RESID_R1, RESNAME_R2, CB_R3; shifts clipped if `clipShifts`.
  std::map<std::string, std::string> getTriplet(int r);
  /// Tells whether a triplet lies inside the sequence and at most one of its residues lacks more than three
  /// of its six shifts.
  bool testTriplet(std::map<std::string, std::string> record);
  /// Predicts one residue; nothing if the triplet fails its test or the residue is not a proline. Walks
  /// all secondary shifts.
  std::optional<ProlinePrediction> predictProline(int r);

  // --- Statistics ---------------------------------------------------------------------------------

  /// Prints a number with conversion f, F, e, E, g or G (else f) and a precision up to 99 (none if
  /// negative) into `buffer`, which must hold the result: 32 characters do for g and 6, 160 always.
  char* ftoa(float value, char* buffer, char conversion, int precision);
  /// Prints an integer in decimal, whatever the base, into `buffer` of at least 12 characters.
  char* itoa(int value, char* buffer, int base);
  /// A placeholder: always 9999.
  float getWeight(const std::string& name1, const std::string& name2);
  /// Returns the difference of two angles (degrees), 0 if it is above 999 because one of them is absent.
  float getDiff(float a, float b);
  /// Returns the mean; 0 for no values.
  float getAverage(const std::vector<float>& v);
  /// Root of the second moment about zero with the sample denominator, for values that are differences
  /// already; no guard for fewer than two values.
  float getSTDev(const std::vector<float>& v);
  /// Circular mean of angles (degrees, -180 to 180), those above 999 skipped; 9999 for no values.
  float getAVGAngle(const std::vector<float>& v);
  /// Circular spread of angles (degrees); absent ones count, with their number as it is.
  float getSTDAngle(const std::vector<float>& v);

  // --- State ------------------------------------------------------------------------------------

  std::string mainDir;      ///< main directory
  std::string predDir;      ///< directory for prediction results
  std::string tabDir;       ///< directory of the reference tables
  std::string spareDir;     ///< not used
  std::string pathSep;      ///< "/", a backslash or empty
  char numBuffer[32] = {};  ///< a number on its way to text

  std::string inName;  ///< input shift table
  GDB csTable;
  GDB resTable;         ///< secondary shifts: six rows a residue
  std::string refName;  ///< not used

  std::string rcName;  ///< random-coil shifts
  GDB rcTable;
  std::string adjName;  ///< corrections of the residue itself
  GDB adjTable;
  std::string prevName;  ///< corrections by the preceding residue
  GDB prevTable;
  std::string nextName;  ///< corrections by the following residue
  GDB nextTable;
  std::string limitName;  ///< limits of secondary shifts
  GDB limitTable;

  std::string sumName;  ///< output table
  std::string sumBase;  ///< its name without the extension

  int firstResid = 1;    ///< first residue to predict
  int lastResid = 9999;  ///< last residue to predict
  int minResid = 999;    ///< smallest residue number among the shifts
  int maxResid = -999;   ///< largest residue number among the shifts
  bool clipShifts = true;
  bool showDetail = false;
  bool checkShifts = false;

  std::map<int, std::string> resNames;   ///< residue number to one-letter name
  std::map<int, std::string> atomNames;  ///< 1 N, 2 HA, 3 C, 4 CA, 5 CB, 6 HN
  std::map<int, int> missingCount;       ///< residue number to how many of the six shifts are missing

  float tpct = 15.0F;
  float dbpct = 59.0F;
  int count = 10;
  int seqLength = 0;      ///< residues in the sequence
  std::string spareName;  ///< not used

  std::map<int, std::map<std::string, float>> rcShifts;  ///< residue, atom to reference shift (ppm)

  std::string proCsName;                                  ///< shift statistics of prolines
  std::string proSeqName;                                 ///< neighbour statistics of prolines
  std::map<std::string, std::map<int, float>> proSeqCis;  ///< residue name, position 1 or 3 to share
  std::map<std::string, std::map<int, float>> proSeqTrans;
  std::map<int, float> avgCis;  ///< shift index to mean (ppm)
  std::map<int, float> stdCis;  ///< shift index to standard deviation (ppm)
  std::map<int, float> avgTrans;
  std::map<int, float> stdTrans;
  std::map<int, float> cgShifts;  ///< residue number of a proline to its CG shift (ppm), 9999 if absent

  std::vector<std::string> argNames;  ///< option names that the command line accepts

 private:
  // Shift assembly.
  void startResTable();
  void checkSequence();
  void clampRange();
  void assembleResidues();
  GDB::Row& addResRow(const GDB::Row* observed, int resid, const std::string& name, const std::string& atom);
  std::string shiftText(float shift);

  // Shift checks.
  void printClipping(int resid, const std::string& name, const std::string& atom, float shift, float limit);
  void reportOutlier(const GDB::Row& row);

  // Prediction.
  std::vector<int> residuesToVisit() const;
  std::map<std::string, std::string> tripletOf(int r, const ResidueRows& secondaryShifts);
  std::optional<ProlinePrediction> predictResidue(int r, const ResidueRows& secondaryShifts);
  zorvela::ProlineEvidence gatherEvidence(const std::map<std::string, std::string>& tripletRecord,
                                          const ProlinePrediction& proline);
  zorvela::ShiftStatistics statisticsOf(std::size_t index);
  static GDB startPredictions();
  void addPrediction(GDB& table, const ProlinePrediction& prediction);
  void printListing(const GDB& table);
};
