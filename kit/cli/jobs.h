// Work in several threads.
#pragma once

#include <cstddef>
#include <functional>

#include "cli/command_line.h"

namespace zorvela {

/// The most jobs that may be asked for.
inline constexpr int kMostJobs = 256;
/// One for each processor, 1 where their number is not known.
int usualJobs();

/// Adds --jobs.
void addJobs(Command& command, int& jobs);

/// Calls `work` with the items 0, 1, ... `items` - 1, up to `jobs` at the same time, each job with a number
/// below `jobs` of its own. Fewer where the system gives no more threads. The first exception ends the work
/// and is thrown again.
void inThreads(std::size_t items, std::size_t jobs,
               const std::function<void(std::size_t item, std::size_t job)>& work);

}  // namespace zorvela
