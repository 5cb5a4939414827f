// Proteins with shifts whose prolines are known to be cis or trans: what training and evaluation read.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "ZORVELA.h"
#include "zorvela/core.h"

namespace zorvela {

/// Secondary shifts of one residue (ppm); above 99 missing.
using SecondaryShifts = BackboneValues;

enum class Omega { cis, trans };

/// What CB - CG of the proline itself says.
enum class ShiftLabel { none, cis, trans, unclear };

/// One line of the labels file.
struct ProlineLabel {
  std::size_t line = 0;            ///< in the labels file
  std::string entry;               ///< name of the shift table without ".tab"
  int resid = 0;                   ///< residue number in the shift table
  std::optional<Omega> structure;  ///< from structures; nothing where there is none
  ShiftLabel byShift = ShiftLabel::none;
  std::string cluster;  ///< proteins of one cluster share stretches of sequence
};

/// What a labels file holds.
struct LabelFile {
  std::string path;
  std::vector<ProlineLabel> prolines;  ///< in the order of the file; at least one
};

/// Reads a labels file: CSV with the columns entry, resid, label_structure (cis, trans or empty) and cluster;
/// label_shift (cis, trans, unclear or empty) is read where it is there. Error for a line that is
/// malformed, has another label, or repeats a proline.
LabelFile readLabels(const std::string& path);

/// The secondary shifts of one protein as the program assembles them, in little memory.
struct EntryShifts {
  std::string name;
  std::vector<std::string> names;          ///< one-letter name of residue i + 1
  std::vector<SecondaryShifts> secondary;  ///< of residue i + 1
  std::vector<int> missing;                ///< how many of the six are missing
  std::map<int, float> cg;                 ///< CG of prolines by residue number (ppm), 9999 if absent
  std::map<int, float> cb;                 ///< observed CB of prolines by residue number (ppm)

  int length() const { return static_cast<int>(names.size()); }
};

/// All entries of the labels, and the labels in the order of the file.
struct LabelledProlines {
  LabelFile labels;
  std::vector<EntryShifts> entries;  ///< in the order in which the labels name them
  std::vector<std::size_t> entryOf;  ///< for each label, the index of its entry
  std::vector<std::string> windows;  ///< for each label, the nine residues around it
  std::size_t notFinite = 0;         ///< shifts (nan, inf) that were left out

  const EntryShifts& entry(std::size_t label) const { return entries[entryOf[label]]; }
};

/// Called after each step of long work with how many are done, of how many.
using OnStep = std::function<void(std::size_t done, std::size_t total)>;

/// Reads the labels and, from `folder`, the shift table of each entry; `run` holds the random-coil
/// tables by which the program makes secondary shifts. Error, with the line of the labels, for an
/// entry without a file and for a label of a residue that is no proline. A step is an entry.
LabelledProlines readLabelled(const std::string& labelsPath, const std::string& folder, ZORVELA& run,
                              const OnStep& onStep = {});

/// Puts an entry back into a run object, so that its triplets, predictions and offsets can be asked for. Only
/// residues that are asked for have rows: call `focus` before each question on a proline.
class EntryView {
 public:
  EntryView(ZORVELA& run, const EntryShifts& entry);
  /// Rows of residues `resid` - 1 to `resid` + 1.
  void focus(int resid);
  /// Rows of all residues.
  void showAll();

 private:
  void addRows(int first, int last);

  ZORVELA& zorvela;
  const EntryShifts& shifts;
};

}  // namespace zorvela
