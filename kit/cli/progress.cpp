// The progress bar, and what a terminal can show.
#include "cli/progress.h"

#include <cstdlib>
#include <iostream>

#include "cli/terminal.h"

namespace zorvela {

bool wantsColour(const std::string& output) {
  const char* refused = std::getenv("NO_COLOR");
  return output == "-" && isCapableTerminal(StandardStream::output) &&
         (refused == nullptr || *refused == '\0');
}

Progress::Progress(const std::string& what, std::size_t total)
    : name(what),
      all(total),
      isShown(isCapableTerminal(StandardStream::error)),
      nextDrawing(Clock::now() + std::chrono::seconds(1)) {}

Progress::~Progress() {
  if (isDrawn) std::cerr << "\r\033[K" << std::flush;
}

void Progress::step() {
  const std::lock_guard<std::mutex> lock(mutex);
  ++done;
  const auto now = Clock::now();
  if (!isShown || now < nextDrawing) return;
  std::cerr << "\r" + name + " " + std::to_string(done) + "/" + std::to_string(all) + "\033[K" << std::flush;
  isDrawn = true;
  nextDrawing = now + std::chrono::milliseconds(100);
}

}  // namespace zorvela
