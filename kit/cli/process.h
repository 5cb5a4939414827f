// What a process asks of its operating system: streams and terminals, signals, the place of its program.
#pragma once

#include <string>

namespace zorvela {

/// Makes standard streams and limits behave alike on every system: no file takes the place of a stream that
/// the caller closed, line ends are those of the data, and a file above the size limit is an error of the
/// write.
void prepareProcess();

/// Returns the folder that holds the running program; empty where the system does not say.
std::string programFolder();

enum class StandardStream { output = 1, error = 2 };

/// Tells whether a stream is a terminal that understands control sequences.
bool isCapableTerminal(StandardStream stream);

/// Tells whether a report to that output ("-": standard output) is coloured: on such a terminal, unless
/// NO_COLOR is set.
bool wantsColour(const std::string& output);

/// While it lives, an interrupt (INT, TERM, HUP) removes this file before it ends the process. An interrupt
/// that the process was started to ignore stays ignored. One at a time.
class RemovedOnInterrupt {
 public:
  explicit RemovedOnInterrupt(const std::string& path);
  ~RemovedOnInterrupt();
  RemovedOnInterrupt(const RemovedOnInterrupt&) = delete;
  RemovedOnInterrupt& operator=(const RemovedOnInterrupt&) = delete;
};

}  // namespace zorvela
