// Work in several threads that goes on with less when threads, memory or descriptors end.
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

namespace zorvela {

/// The most jobs that may be asked for.
inline constexpr int kMostJobs = 256;
/// One for each processor, 1 where their number is not known.
int usualJobs();

/// Calls `work` with the items 0, 1, ... `items` - 1, up to `jobs` at the same time, each job with a number
/// below `jobs` of its own: 0 in the calling thread, the others in threads, fewer where the system gives no
/// more. A job for whose item memory or descriptors end (std::bad_alloc, ScarcityError; nothing else may
/// leave `work`) does no other, so that there is more for the rest. Returns the items that are not done: they
/// are worth another try, alone.
std::vector<std::size_t> inThreads(std::size_t items, std::size_t jobs,
                                   const std::function<void(std::size_t item, std::size_t job)>& work);

}  // namespace zorvela
