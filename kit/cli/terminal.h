// What the standard streams of the process can show.
#pragma once

namespace zorvela {

enum class StandardStream { output = 1, error = 2 };

/// Tells whether a stream is a terminal that understands control sequences.
bool isCapableTerminal(StandardStream stream);

}  // namespace zorvela
