// The progress bar, and what a terminal can show.
#include "cli/progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <mutex>

namespace zorvela {

namespace {

/// Whether a stream of the process (0, 1, 2) is a terminal that understands control sequences.
bool isCapableTerminal(int descriptor) {
  const char* term = std::getenv("TERM");
  return isatty(descriptor) != 0 && term != nullptr && std::strcmp(term, "dumb") != 0 && *term != '\0';
}

}  // namespace

bool wantsColour(const std::string& output) {
  const char* refused = std::getenv("NO_COLOR");
  return output == "-" && isCapableTerminal(STDOUT_FILENO) && (refused == nullptr || *refused == '\0');
}

struct Progress::State {
  using Clock = std::chrono::steady_clock;
  static constexpr std::chrono::milliseconds kQuietStart{1000};
  static constexpr std::chrono::milliseconds kBetweenDrawings{100};
  static constexpr int kWidestBar = 40;

  std::string what;
  std::size_t total;
  std::size_t done = 0;
  bool onTerminal = isCapableTerminal(STDERR_FILENO);
  bool isDrawn = false;
  Clock::time_point nextDrawing = Clock::now() + kQuietStart;
  std::mutex mutex;

  State(const std::string& name, std::size_t count) : what(name), total(count) {}

  static void put(const std::string& text) {
    // A progress bar that cannot be shown is no error.
    if (write(STDERR_FILENO, text.data(), text.size()) < 0) return;
  }

  int barWidth(std::size_t textWidth) const {
    struct winsize size {};
    if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return kWidestBar;
    return std::min(kWidestBar, static_cast<int>(size.ws_col) - static_cast<int>(textWidth) - 1);
  }

  void draw() {
    const std::string counts = " " + std::to_string(done) + "/" + std::to_string(total);
    const int width = barWidth(what.size() + counts.size() + 3);
    std::string line = "\r" + what;
    if (width > 0) {
      const auto columns = static_cast<std::size_t>(width);
      const std::size_t filled = total > 0 ? columns * std::min(done, total) / total : columns;
      line += " [" + std::string(filled, '#') + std::string(columns - filled, '.') + "]";
    }
    put(line + counts + "\033[K");
    isDrawn = true;
  }
};

Progress::Progress(const std::string& what, std::size_t total)
    : state(std::make_unique<State>(what, total)) {}

Progress::~Progress() {
  if (state->isDrawn) State::put("\r\033[K");
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
