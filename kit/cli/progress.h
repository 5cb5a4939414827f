// What a terminal can show while work goes on.
#pragma once

#include <chrono>
#include <cstddef>
#include <mutex>
#include <string>

namespace zorvela {

/// Whether a report that goes to that place ("-": standard output) is coloured: on a terminal that
/// understands control sequences, unless NO_COLOR is set.
bool wantsColour(const std::string& output);

/// How long the rest will take if it goes on like this: ", 40 s left", ", 12 min left". Empty at the end.
std::string timeLeft(double seconds, std::size_t done, std::size_t total);

/// How far the work is, on standard error ("Predicting 12/340, 40 s left"): shown only on a terminal, and
/// only for work above a second.
class Progress {
 public:
  Progress(const std::string& what, std::size_t total);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  /// One more of `total` is done. May be called from several threads.
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
