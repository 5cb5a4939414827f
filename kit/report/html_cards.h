// The prolines of a chain, each with what speaks for cis and what for trans.
#pragma once

#include <string>

#include "zorvela/predict.h"

namespace zorvela {

/// First a card for each proline that someone should look at, with figures (markup) beside them, then a line
/// for each trans one, which opens, then those without a prediction.
std::string prolineCards(const ProteinResult& protein, const std::string& figures);

/// " (as referenced 0.031, trans)", with the call where it is another one; empty in a chain whose shifts were
/// kept.
std::string asReferencedText(const ProlineResult& proline);

/// "K116"; a dash where there is no residue.
std::string residueName(const std::string& name, const std::string& number);

}  // namespace zorvela
