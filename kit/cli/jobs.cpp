#include "cli/jobs.h"

#include <atomic>
#include <new>
#include <system_error>
#include <thread>
#include <vector>

namespace zorvela {

void inThreads(std::size_t jobs, const std::function<void(std::size_t job)>& work) {
  std::atomic<bool> memoryEnded{false};
  const auto guarded = [&](std::size_t job) {
    try {
      work(job);
    } catch (const std::bad_alloc&) {
      memoryEnded = true;  // from a thread it would end the process
    }
  };
  std::vector<std::thread> helpers;
  try {
    helpers.reserve(jobs);
    for (std::size_t job = 1; job < jobs; ++job) helpers.emplace_back(guarded, job);
  } catch (const std::system_error&) {
    // The system gives no more threads: those that there are do the work.
  } catch (const std::bad_alloc&) {
    // Nor memory for one.
  }
  guarded(0);
  for (std::thread& helper : helpers) helper.join();
  if (memoryEnded) throw std::bad_alloc();
}

}  // namespace zorvela
