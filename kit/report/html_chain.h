// The part of the page that one chain has.
#pragma once

#include <cstddef>
#include <string>

#include "zorvela/predict.h"

namespace zorvela {

std::size_t countOf(const ProteinResult& protein, Call call);

/// Whether a structure was asked for the chain.
bool hasFindings(const ProteinResult& protein);

/// What a person must know in a few sentences: "1 of 6 prolines is cis: P117. Undecided: P31. 13C is 3 ppm
/// too high; corrected before predicting."
std::string answer(const ProteinResult& protein);

/// Pictures, cards, tables and notes. `name` tells the chain from the others of the page.
std::string chainReport(const ProteinResult& protein, const std::string& name,
                        const ClassStatistics& classes);

}  // namespace zorvela
