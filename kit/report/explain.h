// The evidence of one proline as lines of text.
#pragma once

#include <string>

#include "zorvela/predict.h"

namespace zorvela {

/// Returns lines of at most 80 columns: the call in a sentence, the largest contributions with a bar of
/// characters, and the missing shifts with their expected information. Without evidence, only the sentence.
std::string explained(const ProlineResult& proline);

}  // namespace zorvela
