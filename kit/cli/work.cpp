// Threads that share the items, and a line that is drawn again and again.
#include "cli/work.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <iostream>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

#include "cli/process.h"
#include "util/number.h"

namespace zorvela {

int usualJobs() {
  return std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, kMostJobs);
}

void inThreads(std::size_t items, int jobs, const std::function<void(std::size_t item)>& work) {
  std::atomic<std::size_t> next{0};
  std::mutex failing;
  std::exception_ptr firstFailure;
  const auto doItems = [&] {
    try {
      for (std::size_t item = next++; item < items; item = next++) work(item);
    } catch (...) {
      const std::lock_guard<std::mutex> lock(failing);
      if (!firstFailure) firstFailure = std::current_exception();
      next = items;
    }
  };
  std::vector<std::thread> helpers;
  const std::size_t threads = std::min(static_cast<std::size_t>(jobs), items);
  helpers.reserve(threads);
  try {
    for (std::size_t i = 1; i < threads; ++i) helpers.emplace_back(doItems);
  } catch (const std::system_error&) {
    // Those that there are do the work.
  }
  doItems();
  for (std::thread& helper : helpers) helper.join();
  if (firstFailure) std::rethrow_exception(firstFailure);
}

std::string timeLeft(double seconds, std::size_t done, std::size_t total) {
  constexpr double kMinute = 60;
  constexpr double kHour = 3600;
  if (done == 0 || done >= total) return "";
  const double left = seconds * static_cast<double>(total - done) / static_cast<double>(done);
  if (left < kMinute) return ", " + fixedText(left, 0) + " s left";
  if (left < 2 * kHour) return ", " + fixedText(left / kMinute, 0) + " min left";
  return ", " + fixedText(left / kHour, 0) + " h left";
}

Progress::Progress(const std::string& what)
    : name(what),
      isShown(isCapableTerminal(StandardStream::error)),
      nextDrawing(start + std::chrono::seconds(1)) {}

Progress::~Progress() {
  if (isDrawn) std::cerr << "\r\033[K" << std::flush;
}

void Progress::step(std::size_t total) {
  const std::lock_guard<std::mutex> lock(mutex);
  ++done;
  const auto now = Clock::now();
  if (!isShown || now < nextDrawing) return;
  const double seconds = std::chrono::duration<double>(now - start).count();
  std::cerr << "\r" + name + " " + std::to_string(done) + "/" + std::to_string(total) +
                   timeLeft(seconds, done, total) + "\033[K"
            << std::flush;
  isDrawn = true;
  nextDrawing = now + std::chrono::milliseconds(100);
}

}  // namespace zorvela
