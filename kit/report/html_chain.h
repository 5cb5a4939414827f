// The part of the page about one chain.
#pragma once

#include <cstddef>
#include <string>

#include "zorvela/predict.h"

namespace zorvela {

/// Counts the prolines with this call.
std::size_t countOf(const ProteinResult& protein, Call call);

/// Tells whether the chain was compared with structures.
bool hasFindings(const ProteinResult& protein);

/// Returns the result in a few sentences: "1 of 6 prolines is cis: P117. Undecided: P31. 13C is 3 ppm too
/// high; corrected before predicting."
std::string answer(const ProteinResult& protein);

/// Returns pictures, cards, tables and notes. `name` tells the chain from the others of the page.
std::string chainReport(const ProteinResult& protein, const std::string& name,
                        const ClassStatistics& classes);

}  // namespace zorvela
