#include "cli/jobs.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace zorvela {

int usualJobs() {
  return std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, kMostJobs);
}

void addJobs(Command& command, int& jobs) {
  command.add("--jobs", jobs, {"N", 1, kMostJobs}, "Work on N files at the same time")
      .showsDefault("one for each core");
}

void inThreads(std::size_t items, std::size_t jobs,
               const std::function<void(std::size_t item, std::size_t job)>& work) {
  std::atomic<std::size_t> next{0};
  std::mutex failing;
  std::exception_ptr firstFailure;
  const auto doItems = [&](std::size_t job) {
    try {
      for (std::size_t item = next++; item < items; item = next++) work(item, job);
    } catch (...) {
      const std::lock_guard<std::mutex> lock(failing);
      if (!firstFailure) firstFailure = std::current_exception();
      next = items;
    }
  };
  std::vector<std::thread> helpers;
  helpers.reserve(jobs);
  try {
    for (std::size_t job = 1; job < std::min(jobs, items); ++job) helpers.emplace_back(doItems, job);
  } catch (const std::system_error&) {
    // Those that there are do the work.
  }
  doItems(0);
  for (std::thread& helper : helpers) helper.join();
  if (firstFailure) std::rethrow_exception(firstFailure);
}

}  // namespace zorvela
