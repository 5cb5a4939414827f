// Whole-or-nothing output through a file that gets its name at the end.
#include "cli/whole_file.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <mutex>
#include <system_error>

#include "cli/descriptor_stream.h"
#include "cli/output_place.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

using Writer = std::function<void(std::ostream&)>;

constexpr mode_t kPermissions = 0777;  // without set-user-id, set-group-id and sticky
constexpr mode_t kNewFile = 0666;      // less what the umask takes away
constexpr int kMostNameTries = 1000;
const std::string kStandardOutput = "standard output";

[[noreturn]] void throwUnwritable(const std::string& name, int number) {
  const std::string cause = number != 0 ? ": " + std::generic_category().message(number) : "";
  throw Error(name, 0, "cannot be written" + cause, "choose another place with --output, or make room");
}

void fill(int descriptor, const std::string& name, const Writer& write) {
  DescriptorBuffer buffer(descriptor);
  std::ostream out(&buffer);
  write(out);
  out.flush();
  if (!out) throwUnwritable(name, buffer.error());
}

/// The bytes reach the disk before the name does. Some file systems cannot; that is no failure.
void syncToDisk(int descriptor, const std::string& name) {
  int status = 0;
  do status = fsync(descriptor);
  while (status != 0 && errno == EINTR);
  if (status != 0 && errno != EINVAL && errno != EROFS && errno != ENOSYS) throwUnwritable(name, errno);
}

// --- Interruption ---------------------------------------------------------------------------------

// Batch systems announce the end of their time by SIGUSR1 or SIGUSR2.
constexpr std::array<int, 12> kInterrupts = {SIGHUP,  SIGINT,  SIGQUIT, SIGTERM, SIGALRM,   SIGPIPE,
                                             SIGXCPU, SIGXFSZ, SIGUSR1, SIGUSR2, SIGVTALRM, SIGPROF};

// The file to remove when the run is interrupted. Plain data, because a signal handler may touch nothing
// else.
int unfinishedFolder = -1;
char unfinishedName[NAME_MAX + 1];

extern "C" void removeUnfinished(int number) {
  unlinkat(unfinishedFolder, unfinishedName, 0);
  signal(number, SIG_DFL);
  raise(number);
}

/// While it lives, an interrupt removes the file before it ends the process. An interrupt that the
/// process was started to ignore stays ignored.
class RemovedOnInterrupt {
 public:
  RemovedOnInterrupt(int folder, const std::string& name) {
    unfinishedFolder = folder;
    name.copy(unfinishedName, NAME_MAX);
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
    std::memset(unfinishedName, 0, sizeof unfinishedName);
  }
  RemovedOnInterrupt(const RemovedOnInterrupt&) = delete;
  RemovedOnInterrupt& operator=(const RemovedOnInterrupt&) = delete;

 private:
  std::array<struct sigaction, kInterrupts.size()> before{};
};

/// While it lives, signals wait.
class SignalsWait {
 public:
  SignalsWait() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, &before);
  }
  ~SignalsWait() { pthread_sigmask(SIG_SETMASK, &before, nullptr); }
  SignalsWait(const SignalsWait&) = delete;
  SignalsWait& operator=(const SignalsWait&) = delete;

 private:
  sigset_t before{};
};

// --- The new file ---------------------------------------------------------------------------------

/// The file to make or replace.
struct Target {
  std::string path;   ///< as the user gave it, for messages
  std::string name;   ///< in the folder
  Descriptor folder;  ///< the folder itself: it may be renamed meanwhile
  bool isThere = false;
  mode_t mode = kNewFile;
};

Target targetAt(const std::string& file, const std::string& path) {
  const int folder = open(folderOf(file).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0) throwUnwritable(path, errno);
  Target target{path, baseName(file), Descriptor(folder)};
  struct stat info {};
  target.isThere = fstatat(folder, target.name.c_str(), &info, 0) == 0;
  if (target.isThere) target.mode = info.st_mode & kPermissions;
  return target;
}

/// Calls `make` with names that nobody has asked for yet until it makes one of them. The name; empty on
/// failure, with errno.
std::string makeTemporary(const std::function<int(const char*)>& make) {
  for (int i = 0; i < kMostNameTries; ++i) {
    std::string name = ".zorvela-" + std::to_string(getpid()) + "-" + std::to_string(i) + ".tmp";
    if (make(name.c_str()) >= 0) return name;
    if (errno != EEXIST) break;
  }
  return "";
}

void fillFile(int descriptor, const Target& target, const Writer& write) {
  fill(descriptor, target.path, write);
  if (target.isThere) fchmod(descriptor, target.mode);
  syncToDisk(descriptor, target.path);
}

/// Puts a temporary name in the place of the target's; removes it on failure.
void renameTo(const std::string& temporary, const Target& target) {
  const int folder = target.folder.number();
  if (renameat(folder, temporary.c_str(), folder, target.name.c_str()) == 0) return;
  const int error = errno;
  unlinkat(folder, temporary.c_str(), 0);
  throwUnwritable(target.path, error);
}

/// Gives a file without a name the target's name. False where the system cannot.
bool giveName(int descriptor, const Target& target) {
  const std::string open = "/proc/self/fd/" + std::to_string(descriptor);
  const auto link = [&](const char* name) {
    return linkat(AT_FDCWD, open.c_str(), target.folder.number(), name, AT_SYMLINK_FOLLOW);
  };
  const SignalsWait undisturbed;
  if (!target.isThere && link(target.name.c_str()) == 0) return true;
  // A link never replaces a file, a rename does.
  const std::string temporary = makeTemporary(link);
  if (temporary.empty()) return false;
  renameTo(temporary, target);
  return true;
}

/// False where the file system has no files without a name.
bool wroteNameless(const Target& target, const Writer& write) {
  const Descriptor file(openat(target.folder.number(), ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, kNewFile));
  if (!file.isOpen()) return false;
  fillFile(file.number(), target, write);
  return giveName(file.number(), target);
}

void writeNamed(const Target& target, const Writer& write) {
  const int folder = target.folder.number();
  int descriptor = -1;
  const std::string temporary = makeTemporary([&](const char* name) {
    descriptor = openat(folder, name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNewFile);
    return descriptor;
  });
  if (temporary.empty()) throwUnwritable(target.path, errno);
  const Descriptor file(descriptor);
  const RemovedOnInterrupt guard(folder, temporary);
  try {
    fillFile(file.number(), target, write);
  } catch (...) {
    unlinkat(folder, temporary.c_str(), 0);
    throw;
  }
  renameTo(temporary, target);
}

OutputPlace placeOf(const std::string& path) {
  try {
    return outputPlaceOf(path);
  } catch (const std::system_error& e) {
    throwUnwritable(path, e.code().value());
  }
}

}  // namespace

void writeWhole(const std::string& path, const Writer& write) {
  static std::mutex oneAtATime;
  const std::lock_guard<std::mutex> lock(oneAtATime);
  if (path == "-") {
    flushStandardOutput();
    fill(STDOUT_FILENO, kStandardOutput, write);
    return;
  }
  const OutputPlace place = placeOf(path);
  if (place.stream.isOpen()) {
    fill(place.stream.number(), path, write);
    return;
  }
  const Target target = targetAt(place.file, path);
  if (!wroteNameless(target, write)) writeNamed(target, write);
}

void flushStandardOutput() {
  errno = 0;
  std::cout.flush();
  if (!std::cout) throwUnwritable(kStandardOutput, errno);
}

}  // namespace zorvela
