// The evidence of one proline as lines of text.
#pragma once

#include <string>

#include "zorvela/predict.h"

namespace zorvela {

/// A block of lines of at most 80 columns, each with a line feed: the call in a sentence, the largest
/// contributions with a bar of characters, what is missing and what it would be worth. Of a proline without
/// evidence the sentence alone.
std::string explained(const ProlineResult& proline);

}  // namespace zorvela
