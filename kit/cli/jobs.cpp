#include "cli/jobs.h"

#include <pthread.h>

#include <algorithm>
#include <atomic>
#include <new>
#include <system_error>
#include <thread>

#include "zorvela/error.h"

namespace zorvela {

namespace {

/// The stack of a thread stays reserved when it has ended, 8 MiB by default: where memory is short, there is
/// none left for the work that is done alone.
void useSmallStacks() {
  constexpr std::size_t kStackSize = std::size_t{1} << 20;
  pthread_attr_t attributes;
  if (pthread_attr_init(&attributes) != 0) return;
  pthread_attr_setstacksize(&attributes, kStackSize);
  pthread_setattr_default_np(&attributes);
  pthread_attr_destroy(&attributes);
}

}  // namespace

int usualJobs() {
  return std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, kMostJobs);
}

std::vector<std::size_t> inThreads(std::size_t items, std::size_t jobs,
                                   const std::function<void(std::size_t item, std::size_t job)>& work) {
  std::vector<char> isDone(items, 0);  // not of bool, whose neighbours share bytes
  std::atomic<std::size_t> next{0};
  // What left it would end the process.
  const auto doItems = [&](std::size_t job) {
    try {
      for (std::size_t item = next++; item < items; item = next++) {
        work(item, job);
        isDone[item] = 1;
      }
    } catch (const std::bad_alloc&) {
    } catch (const ScarcityError&) {
    }
  };
  useSmallStacks();
  std::vector<std::thread> helpers;
  try {
    helpers.reserve(jobs);
    for (std::size_t job = 1; job < std::min(jobs, items); ++job) helpers.emplace_back(doItems, job);
  } catch (const std::system_error&) {
    // The system gives no more threads: those that there are do the work.
  } catch (const std::bad_alloc&) {
    // Nor memory for one.
  }
  doItems(0);
  for (std::thread& helper : helpers) helper.join();

  std::vector<std::size_t> notDone;
  for (std::size_t item = 0; item < items; ++item)
    if (isDone[item] == 0) notDone.push_back(item);
  return notDone;
}

}  // namespace zorvela
