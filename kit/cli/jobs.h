// Work in several threads that ends in words when threads or memory end.
#pragma once

#include <cstddef>
#include <functional>

namespace zorvela {

/// Calls `work` with 0, 1, ... `jobs` - 1 at the same time: 0 in the calling thread, each other in one of its
/// own. Fewer where the system gives no more threads, so each must take the next item that nobody has.
/// Throws std::bad_alloc, after all have ended, where it left one of them; nothing else may leave.
void inThreads(std::size_t jobs, const std::function<void(std::size_t job)>& work);

}  // namespace zorvela
