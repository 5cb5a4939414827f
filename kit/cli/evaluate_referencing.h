// `evaluate --referencing`: how often a referencing offset is seen, and the constants of its estimate.
#pragma once

#include <iosfwd>

#include "train/study/referencing_study.h"

namespace zorvela {

/// A table of how often each method calls for a correction, and what its estimates are.
void writeReferencing(std::ostream& out, const ReferencingStudy& study);

/// The fitted relations, as kit/predict/referencing.cpp holds them.
void writeRelations(std::ostream& out, const ReferencingStudy& study);

}  // namespace zorvela
