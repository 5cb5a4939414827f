// Proteins with shifts whose prolines are known to be cis or trans: what training and evaluation read.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "zorvela/calls.h"
#include "zorvela/core.h"

namespace zorvela {

/// A protein with its shifts.
struct EntryShifts {
  std::string name;         ///< of the shift table, without ".tab"
  std::size_t cluster = 0;  ///< index into `LabelledProlines::clusters`
  std::vector<Residue> residues;
  std::vector<BackboneValues> secondary;  ///< of each residue
};

/// A proline of the labels file.
struct LabelledProline {
  std::size_t line = 0;         ///< in the labels file
  std::size_t entry = 0;        ///< index into `LabelledProlines::entries`
  int resid = 0;                ///< position in the sequence, from 1
  Call structure = Call::none;  ///< by structures: cis, trans or none
  Call byShift = Call::none;    ///< by its own CB - CG; undecided where that is unclear
  std::string window;           ///< the nine residues around it

  /// Place in the residues of its entry.
  std::size_t place() const { return static_cast<std::size_t>(resid) - 1; }
};

/// A labels file with the shifts of its proteins.
struct LabelledProlines {
  std::string path;                   ///< of the labels file
  std::vector<std::string> clusters;  ///< groups of proteins with common stretches of sequence
  std::vector<EntryShifts> entries;
  std::vector<LabelledProline> prolines;  ///< in the order of the file; at least one

  const EntryShifts& entryOf(const LabelledProline& proline) const { return entries[proline.entry]; }
};

/// Called after each step of long work with the number of steps.
using OnStep = std::function<void(std::size_t total)>;

/// Reads labels and, from `folder`, the shift table of each entry; `model` has the random-coil shifts. A step
/// is an entry. The labels are CSV with the columns entry, resid, label_structure (cis, trans or empty) and
/// cluster. The column label_shift (cis, trans, unclear or empty) is read where it is there. Entries and
/// clusters are in the order in which the labels name them. Error for a malformed line, another label and a
/// repeated proline. Error also for an entry without a file and a residue that is not a proline.
LabelledProlines readLabelled(const std::string& labels, const std::string& folder, const Model& model,
                              const OnStep& onStep = {});

}  // namespace zorvela
