// The prolines of a chain, each with its evidence.
#pragma once

#include <string>

#include "zorvela/predict.h"

namespace zorvela {

/// Returns a card for each proline that someone should look at, with figures (markup) beside them, a line
/// that opens for each other one, and a list of those without a prediction.
std::string prolineCards(const ProteinResult& protein, const std::string& figures);

/// Returns " (as referenced 0.031, trans)", with the call if it differs; empty if the shifts were not
/// corrected.
std::string asReferencedText(const ProlineResult& proline);

/// Returns "K116", or a dash for no residue.
std::string residueName(const std::string& name, const std::string& number);

}  // namespace zorvela
