// Estimates the referencing offsets of a chain by a fit that a few wrong residues cannot move.
//
// CA - CB of a residue tells helix from strand whatever the 13C referencing. It predicts the secondary shifts
// of CA, CB, C' and HA to within their scatter. The median deviation over the residues of a chain is its
// offset. In chains without CB (or without 13C), HA (or HN) replaces CA - CB, with a larger error.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "predict/corrections.h"
#include "zorvela/core.h"

namespace zorvela {

/// Standard error of a median over that of a mean, for Gaussian values: the root of pi / 2.
inline constexpr double kMedianOverMean = 1.2533;

/// The measure of helix or strand for a residue.
enum class Measure {
  caMinusCb,     ///< CA - CB
  alphaProton,   ///< HA
  amideProtons,  ///< mean of HN of the residue and of the next one, or the one of them that is there
};

/// A secondary shift, or nothing if it is missing.
std::optional<double> shiftAt(const BackboneValues& residue, Atom atom);

/// The secondary shift of an atom for each value of a measure, in chains without an offset.
struct ShiftRelation {
  std::string atom;  ///< CA, HA or C
  Measure measure = Measure::caMinusCb;
  double first = 0;            ///< value of the measure at the first point (ppm)
  double step = 1;             ///< from point to point (ppm)
  std::vector<double> points;  ///< the atom's secondary shift (ppm); straight lines between
  double scatter = 0;          ///< robust deviation of a residue from the curve (ppm)
  double betweenChains = 0;    ///< deviation from chain to chain that more residues do not lower (ppm)
};

/// The relations of the reference tables that come with the program, fitted to 1,707 BMRB entries by
/// `zorvela-study relations`.
const std::vector<ShiftRelation>& knownRelations();

/// An offset of a chain: its shifts are this much too high.
struct OffsetEstimate {
  std::string atom;   ///< CA, CB, HA or C
  double offset = 0;  ///< ppm; not a number if there are too few residues
  double error = 0;   ///< standard error (ppm); not a number if the offset is not
  int residues = 0;   ///< in the estimate, those beyond the scatter left out
};

/// Returns offsets of CA, CB, HA and C, in this order, from the secondary shifts of a chain in sequence
/// order. CA and CB share one offset, that of the 13C axis: CA - CB does not change with it. Fewer than ten
/// residues give none.
std::vector<OffsetEstimate> estimateOffsets(const std::vector<BackboneValues>& residues,
                                            const std::vector<ShiftRelation>& relations = knownRelations());

/// Returns the size (ppm) from which an offset of an atom matters: 0.75 for CA and CB, 1 for C, 0.25 for HA.
double correctionBound(const std::string& atom);

/// Tells whether an offset is above its bound and more than three times its error.
bool callsForCorrection(const OffsetEstimate& estimate);

/// Returns the offsets that call for a correction. CG of proline follows CA and CB.
Offsets correctionsOf(const std::vector<OffsetEstimate>& estimates);

/// Returns a note on a chain that looks deuterated, else empty text: there is no HA, and CA and CB are lower
/// than C' by more than two errors, which is true of 1 in 90 chains that are not deuterated.
std::string deuterationNote(const std::vector<OffsetEstimate>& estimates);

/// Returns the deviations of a chain's residues from the curve of a relation, in sequence order (ppm).
/// Residues more than one step beyond the curve are left out: no correct assignment is there.
std::vector<double> deviations(const std::vector<BackboneValues>& residues, const ShiftRelation& relation);

/// Values of a measure and of an atom for the residues that have both.
struct MeasuredShift {
  double measure = 0;
  double shift = 0;
};
std::vector<MeasuredShift> measuredShifts(const std::vector<BackboneValues>& residues,
                                          const std::string& atom, Measure measure);

}  // namespace zorvela
