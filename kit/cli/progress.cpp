// Progress of long work, and whether a terminal shows colour.
#include "cli/progress.h"

#include <cstdlib>
#include <iostream>

#include "cli/process.h"
#include "util/number.h"

namespace zorvela {

bool wantsColour(const std::string& output) {
  const char* refused = std::getenv("NO_COLOR");
  return output == "-" && isCapableTerminal(StandardStream::output) &&
         (refused == nullptr || *refused == '\0');
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

Progress::Progress(const std::string& what, std::size_t total)
    : name(what),
      all(total),
      isShown(isCapableTerminal(StandardStream::error)),
      nextDrawing(start + std::chrono::seconds(1)) {}

Progress::~Progress() {
  if (isDrawn) std::cerr << "\r\033[K" << std::flush;
}

void Progress::step() {
  const std::lock_guard<std::mutex> lock(mutex);
  ++done;
  const auto now = Clock::now();
  if (!isShown || now < nextDrawing) return;
  const double seconds = std::chrono::duration<double>(now - start).count();
  std::cerr << "\r" + name + " " + std::to_string(done) + "/" + std::to_string(all) +
                   timeLeft(seconds, done, all) + "\033[K"
            << std::flush;
  isDrawn = true;
  nextDrawing = now + std::chrono::milliseconds(100);
}

}  // namespace zorvela
