// Progress of long work, and colour.
#pragma once

#include <chrono>
#include <cstddef>
#include <mutex>
#include <string>

namespace zorvela {

/// Tells whether a report to that output ("-": standard output) is coloured: on a terminal that understands
/// control sequences, unless NO_COLOR is set.
bool wantsColour(const std::string& output);

/// Estimates the time for the rest: ", 40 s left", ", 12 min left". Empty at the end.
std::string timeLeft(double seconds, std::size_t done, std::size_t total);

/// Shows progress on standard error ("Predicting 12/340, 40 s left"): only on a terminal, and only for work
/// of more than a second.
class Progress {
 public:
  Progress(const std::string& what, std::size_t total);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  /// Counts one more of `total` as done. May be called from several threads.
  void step();

 private:
  using Clock = std::chrono::steady_clock;

  std::string name;
  std::size_t all;
  std::size_t done = 0;
  bool isShown;
  bool isDrawn = false;
  Clock::time_point start = Clock::now();
  Clock::time_point nextDrawing;
  std::mutex mutex;
};

}  // namespace zorvela
