// Whole-or-nothing output through a temporary file.
#include "cli/whole_file.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <mutex>
#include <random>
#include <sstream>
#include <system_error>

#include "zorvela/error.h"

namespace zorvela {

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

std::string systemMessage(int number) {
  return std::generic_category().message(number);
}

[[noreturn]] void throwUnwritable(const std::string& name, int number) {
  const std::string cause = number != 0 ? ": " + systemMessage(number) : "";
  throw Error(name, 0, "cannot be written" + cause, "choose another place with --output, or make room");
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

}  // namespace zorvela
