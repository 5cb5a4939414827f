// Long work: several threads, and how far it is.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string>

namespace zorvela {

/// The most jobs that may be asked for.
inline constexpr int kMostJobs = 256;
/// One for each processor, 1 where their number is not known.
int usualJobs();

/// Calls `work` with the items 0, 1, ... `items` - 1, up to `jobs` at the same time. Fewer where the system
/// gives no more threads. The first exception ends the work and is thrown again.
void inThreads(std::size_t items, int jobs, const std::function<void(std::size_t item)>& work);

/// Estimates the time for the rest: ", 40 s left", ", 12 min left". Empty at the end.
std::string timeLeft(double seconds, std::size_t done, std::size_t total);

/// Shows progress on standard error ("Predicting 12/340, 40 s left"): only on a terminal, and only for work
/// of more than a second.
class Progress {
 public:
  explicit Progress(const std::string& what);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  /// Counts one more of `total` as done. May be called from several threads.
  void step(std::size_t total);

 private:
  using Clock = std::chrono::steady_clock;

  std::string name;
  std::size_t done = 0;
  bool isShown;
  bool isDrawn = false;
  Clock::time_point start = Clock::now();
  Clock::time_point nextDrawing;
  std::mutex mutex;
};

}  // namespace zorvela
