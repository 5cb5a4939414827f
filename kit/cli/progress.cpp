// The progress bar, and what a terminal can show.
#include "cli/progress.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <mutex>

#include "cli/terminal.h"
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

struct Progress::State {
  using Clock = std::chrono::steady_clock;
  static constexpr std::chrono::milliseconds kQuietStart{1000};
  static constexpr std::chrono::milliseconds kBetweenDrawings{100};
  static constexpr int kWidestBar = 40;

  std::string what;
  std::size_t total;
  std::size_t done = 0;
  bool onTerminal = isCapableTerminal(StandardStream::error);
  bool isDrawn = false;
  Clock::time_point start = Clock::now();
  Clock::time_point nextDrawing = start + kQuietStart;
  std::mutex mutex;

  State(const std::string& name, std::size_t count) : what(name), total(count) {}

  int barWidth(std::size_t textWidth) const {
    const int columns = terminalColumns(StandardStream::error);
    return columns == 0 ? kWidestBar : std::min(kWidestBar, columns - static_cast<int>(textWidth) - 1);
  }

  void draw() {
    const std::string counts =
        " " + std::to_string(done) + "/" + std::to_string(total) +
        timeLeft(std::chrono::duration<double>(Clock::now() - start).count(), done, total);
    const int width = barWidth(what.size() + counts.size() + 3);
    std::string line = "\r" + what;
    if (width > 0) {
      const auto columns = static_cast<std::size_t>(width);
      const std::size_t filled = total > 0 ? columns * std::min(done, total) / total : columns;
      line += " [" + std::string(filled, '#') + std::string(columns - filled, '.') + "]";
    }
    std::cerr << line + counts + "\033[K" << std::flush;
    isDrawn = true;
  }
};

Progress::Progress(const std::string& what, std::size_t total)
    : state(std::make_unique<State>(what, total)) {}

Progress::~Progress() {
  if (state->isDrawn) std::cerr << "\r\033[K" << std::flush;
}

void Progress::step() {
  const std::lock_guard<std::mutex> lock(state->mutex);
  ++state->done;
  const auto now = State::Clock::now();
  if (!state->onTerminal || now < state->nextDrawing) return;
  state->draw();
  state->nextDrawing = now + State::kBetweenDrawings;
}

}  // namespace zorvela
