// Errors with a remedy, whole-or-nothing output, progress.
#include "common.h"

#include <fcntl.h>      // for open
#include <signal.h>     // for sigaction
#include <sys/ioctl.h>  // for the width of the terminal
#include <sys/stat.h>   // for stat
#include <unistd.h>     // for isatty, unlink, write

#include <algorithm>     // for std::min, std::replace
#include <array>         // for std::array
#include <cerrno>        // for errno
#include <chrono>        // for std::chrono::steady_clock
#include <climits>       // for PATH_MAX
#include <cstdio>        // for std::rename
#include <cstdlib>       // for realpath, std::getenv
#include <cstring>       // for std::strerror
#include <fstream>       // for std::ofstream
#include <iostream>      // for std::cerr, std::cout
#include <mutex>         // for std::mutex
#include <random>        // for std::random_device
#include <sstream>       // for std::ostringstream
#include <stdexcept>     // for std::out_of_range
#include <system_error>  // for std::generic_category

namespace kit {

// --- Errors -------------------------------------------------------------------------------------

namespace {

std::string located(const std::string& file, std::size_t line, const std::string& what,
                    const std::string& remedy) {
  std::string text = file;
  if (line > 0) text += ":" + std::to_string(line);
  text += ": " + what;
  if (!remedy.empty()) text += "; " + remedy;
  return text;
}

std::string systemMessage(int number) {
  return std::generic_category().message(number);
}

}  // namespace

UserError::UserError(const std::string& file, std::size_t line, const std::string& what,
                     const std::string& remedy)
    : std::runtime_error(located(file, line, what, remedy)) {}

std::string withoutControls(std::string text) {
  for (char& c : text)
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7f') c = '?';
  return text;
}

void throwInsteadOfExit() {
  endRun = [](int) { throw UserError("the table cannot be read"); };
}

// --- Reading a table ----------------------------------------------------------------------------

namespace {

/// Keeps what is written to std::cerr while it lives.
class CaughtErrors {
 public:
  CaughtErrors() : before(std::cerr.rdbuf(caught.rdbuf())) {}
  ~CaughtErrors() { std::cerr.rdbuf(before); }
  CaughtErrors(const CaughtErrors&) = delete;
  CaughtErrors& operator=(const CaughtErrors&) = delete;
  /// As one line.
  std::string text() const { return GDB::simplifyWhiteSpace(caught.str()); }

 private:
  std::ostringstream caught;
  std::streambuf* before;
};

}  // namespace

GDB loadTable(const std::string& path, const std::string& remedy) {
  struct stat info {};
  if (stat(path.c_str(), &info) != 0) throw UserError(path, 0, systemMessage(errno), remedy);
  if (S_ISDIR(info.st_mode)) throw UserError(path, 0, "is a folder, not a table", remedy);
  CaughtErrors errors;
  try {
    return GDB(path);
  } catch (const UserError& e) {
    throw UserError(path, 0, errors.text().empty() ? e.what() : errors.text(), remedy);
  } catch (const std::out_of_range&) {
    throw UserError(path, 0, "a REMARK or DATA line has nothing behind the keyword", remedy);
  }
}

// --- Whole-or-nothing output --------------------------------------------------------------------

namespace {

constexpr std::array<int, 3> kInterrupts = {SIGHUP, SIGINT, SIGTERM};

// The file to remove when the run is interrupted; empty when there is none. A plain buffer, because a
// signal handler may touch nothing else.
char unfinishedFile[PATH_MAX];

extern "C" void removeUnfinished(int number) {
  unlink(unfinishedFile);
  signal(number, SIG_DFL);
  raise(number);
}

/// While it lives, an interrupt removes the file before it ends the process. An interrupt that the
/// process was started to ignore stays ignored.
class RemovedOnInterrupt {
 public:
  explicit RemovedOnInterrupt(const std::string& path) {
    std::memcpy(unfinishedFile, path.c_str(), path.size() + 1);
    for (std::size_t i = 0; i < kInterrupts.size(); ++i) {
      struct sigaction remove {};
      remove.sa_handler = removeUnfinished;
      sigemptyset(&remove.sa_mask);
      sigaction(kInterrupts[i], nullptr, &before[i]);
      if (before[i].sa_handler != SIG_IGN) sigaction(kInterrupts[i], &remove, nullptr);
    }
  }
  ~RemovedOnInterrupt() {
    for (std::size_t i = 0; i < kInterrupts.size(); ++i) sigaction(kInterrupts[i], &before[i], nullptr);
    unfinishedFile[0] = '\0';
  }
  RemovedOnInterrupt(const RemovedOnInterrupt&) = delete;
  RemovedOnInterrupt& operator=(const RemovedOnInterrupt&) = delete;

 private:
  std::array<struct sigaction, kInterrupts.size()> before{};
};

[[noreturn]] void throwUnwritable(const std::string& name, int number) {
  const std::string cause = number != 0 ? ": " + systemMessage(number) : "";
  throw UserError(name, 0, "cannot be written" + cause, "choose another place with --output, or make room");
}

void writeDirectly(std::ostream& out, const std::string& name,
                   const std::function<void(std::ostream&)>& write) {
  errno = 0;
  if (out) write(out);
  out.flush();
  if (!out) throwUnwritable(name, errno);
}

bool isSpecialFile(const std::string& path) {
  struct stat info {};
  return stat(path.c_str(), &info) == 0 && !S_ISREG(info.st_mode) && !S_ISDIR(info.st_mode);
}

/// The file behind a symbolic link, so that the link itself is not replaced.
std::string behindLinks(const std::string& path) {
  char real[PATH_MAX];
  return realpath(path.c_str(), real) != nullptr ? real : path;
}

std::string temporaryName(const std::string& target) {
  std::random_device random;
  std::ostringstream name;
  name << target << '.' << std::hex << random() << random() << ".tmp";
  return name.str();
}

/// An empty file that did not exist before, with the permissions of the file that it will replace.
void createTemporary(const std::string& path, const std::string& target, const std::string& name) {
  const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (descriptor < 0) throwUnwritable(name, errno);
  struct stat info {};
  if (stat(target.c_str(), &info) == 0) fchmod(descriptor, info.st_mode & 07777);
  close(descriptor);
}

void writeThroughTemporary(const std::string& path, const std::function<void(std::ostream&)>& write) {
  const std::string target = behindLinks(path);
  const std::string temporary = temporaryName(target);
  if (temporary.size() >= sizeof unfinishedFile) throwUnwritable(path, ENAMETOOLONG);
  struct stat info {};
  if (stat(target.c_str(), &info) == 0 && S_ISDIR(info.st_mode)) throwUnwritable(path, EISDIR);

  const RemovedOnInterrupt guard(temporary);
  createTemporary(temporary, target, path);
  try {
    std::ofstream out(temporary, std::ios::binary);
    writeDirectly(out, path, write);
    out.close();
    if (!out || std::rename(temporary.c_str(), target.c_str()) != 0) throwUnwritable(path, errno);
  } catch (...) {
    unlink(temporary.c_str());
    throw;
  }
}

}  // namespace

void writeWhole(const std::string& path, const std::function<void(std::ostream&)>& write) {
  static std::mutex oneAtATime;
  const std::lock_guard<std::mutex> lock(oneAtATime);
  if (path == "-") {
    writeDirectly(std::cout, "standard output", write);
  } else if (isSpecialFile(path)) {
    std::ofstream out(path, std::ios::binary);
    if (!out) throwUnwritable(path, errno);
    writeDirectly(out, path, write);
    out.close();
    if (!out) throwUnwritable(path, errno);
  } else {
    writeThroughTemporary(path, write);
  }
}

// --- Progress -----------------------------------------------------------------------------------

bool isCapableTerminal(int descriptor) {
  const char* term = std::getenv("TERM");
  return isatty(descriptor) != 0 && term != nullptr && std::strcmp(term, "dumb") != 0 && *term != '\0';
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

}  // namespace kit
