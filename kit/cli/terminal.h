// What the standard streams of the process can show.
#pragma once

namespace zorvela {

enum class StandardStream { output = 1, error = 2 };

/// Tells whether a stream is a terminal that understands control sequences.
bool isCapableTerminal(StandardStream stream);

/// The columns of the terminal; 0 where the system does not say.
int terminalColumns(StandardStream stream);

}  // namespace zorvela
