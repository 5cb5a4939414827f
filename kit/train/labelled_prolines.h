// Proteins with shifts whose prolines are known to be cis or trans: what training and evaluation read.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "zorvela/core.h"

namespace zorvela {

enum class Omega { cis, trans };

/// The state of a proline by its own CB - CG.
enum class ShiftLabel { none, cis, trans, unclear };

/// One line of the labels file.
struct ProlineLabel {
  std::size_t line = 0;            ///< in the labels file
  std::string entry;               ///< name of the shift table without ".tab"
  int resid = 0;                   ///< position in the sequence, from 1
  std::optional<Omega> structure;  ///< from structures; nothing if there is none
  ShiftLabel byShift = ShiftLabel::none;
  std::string cluster;  ///< proteins of one cluster share stretches of sequence
};

/// The content of a labels file.
struct LabelFile {
  std::string path;
  std::vector<ProlineLabel> prolines;  ///< in the order of the file; at least one
};

/// Reads a labels file: CSV with the columns entry, resid, label_structure (cis, trans or empty) and cluster;
/// label_shift (cis, trans, unclear or empty) is read where it is there. Error for a line that is
/// malformed, has another label, or repeats a proline.
LabelFile readLabels(const std::string& path);

/// One protein with its shifts.
struct EntryShifts {
  std::string name;
  std::vector<Residue> residues;
  std::vector<BackboneValues> secondary;  ///< of each residue
};

/// All entries of the labels, and the labels in the order of the file.
struct LabelledProlines {
  LabelFile labels;
  std::vector<EntryShifts> entries;  ///< in the order in which the labels name them
  std::vector<std::size_t> entryOf;  ///< for each label, the index of its entry
  std::vector<std::string> windows;  ///< for each label, the nine residues around it

  const EntryShifts& entry(std::size_t label) const { return entries[entryOf[label]]; }
  /// Place of the proline in the residues of its entry.
  std::size_t place(std::size_t label) const {
    return static_cast<std::size_t>(labels.prolines[label].resid) - 1;
  }
};

/// Called after each step of long work with how many are done, of how many.
using OnStep = std::function<void(std::size_t done, std::size_t total)>;

/// Reads the labels and, from `folder`, the shift table of each entry; `model` has the random-coil shifts.
/// Error, with the line of the labels, for an entry without a file and for a label of a residue that is not a
/// proline. A step is an entry.
LabelledProlines readLabelled(const std::string& labelsPath, const std::string& folder, const Model& model,
                              const OnStep& onStep = {});

}  // namespace zorvela
