// The figures of the trials as text.
#pragma once

#include <iosfwd>
#include <vector>

#include "train/evaluation_groups.h"
#include "train/study/next_shift_trial.h"
#include "train/study/referencing_study.h"

namespace zorvela {

/// Writes how often each method calls for a correction, and what its estimates are.
void writeReferencing(std::ostream& out, const ReferencingStudy& study);

/// Writes fitted relations as kit/predict/referencing.cpp holds them.
void writeRelations(std::ostream& out, const std::vector<ShiftRelation>& relations);

/// Writes what the shifts that are measured next are worth, by expected gain and at random; hidden `rounds`
/// times.
void writeTrial(std::ostream& out, const NextShiftTrial& trial, int rounds);

/// Writes a Markdown table of what an offset costs: its header, and a row for an offset of 13C.
void writeOffsetHeader(std::ostream& out);
void writeOffsetRow(std::ostream& out, double ppm, bool isCorrected, const std::vector<GroupFigures>& all);

}  // namespace zorvela
