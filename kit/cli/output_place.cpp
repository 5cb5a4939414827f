// Links are followed one by one: the system's own following stops at a target that is not there, and would
// open what /proc/self/fd leads to a second time, at its beginning.
#include "cli/output_place.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <optional>
#include <system_error>

#include "util/text.h"

namespace zorvela {

namespace {

constexpr int kMostLinks = 40;  // as the system itself

[[noreturn]] void throwSystemError(int number) {
  throw std::system_error(number, std::generic_category());
}

std::optional<std::string> linkTarget(const std::string& path) {
  char target[PATH_MAX];
  const ssize_t length = readlink(path.c_str(), target, sizeof target);
  if (length < 0) return std::nullopt;
  return std::string(target, static_cast<std::size_t>(length));
}

std::string realPath(const std::string& path) {
  char real[PATH_MAX];
  return realpath(path.c_str(), real) != nullptr ? real : "";
}

bool isInProc(const std::string& path) {
  struct statfs info {};
  return statfs(folderOf(path).c_str(), &info) == 0 && info.f_type == PROC_SUPER_MAGIC;
}

/// What is open under a name in /proc. What another process has open is added to, never cut.
Descriptor openInProc(const std::string& path) {
  const std::optional<int> number = toInteger(baseName(path));
  const bool isOwn = realPath(folderOf(path)) == realPath("/proc/self/fd");
  const int descriptor = isOwn && number ? fcntl(*number, F_DUPFD_CLOEXEC, 3)
                                         : open(path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
  if (descriptor < 0) throwSystemError(errno);
  return Descriptor(descriptor);
}

/// A file that was made read-only stays, although its folder would let us replace it.
void requireWritable(const std::string& path) {
  if (faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0) throwSystemError(errno);
}

}  // namespace

Descriptor::~Descriptor() {
  if (isOpen()) close(descriptor);
}

std::string folderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

OutputPlace outputPlaceOf(const std::string& path) {
  std::string place = path;
  for (int links = 0; !isInProc(place); ++links) {
    const std::optional<std::string> target = linkTarget(place);
    if (!target) break;
    if (links == kMostLinks) throwSystemError(ELOOP);
    place = target->rfind('/', 0) == 0 ? *target : folderOf(place) + "/" + *target;
  }
  if (isInProc(place)) return {openInProc(place), ""};

  struct stat info {};
  if (stat(place.c_str(), &info) != 0) {
    if (errno != ENOENT) throwSystemError(errno);
    return {Descriptor(), place};
  }
  if (S_ISDIR(info.st_mode)) throwSystemError(EISDIR);
  requireWritable(place);
  if (S_ISREG(info.st_mode)) return {Descriptor(), place};
  const int device = open(place.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
  if (device < 0) throwSystemError(errno);
  return {Descriptor(device), ""};
}

}  // namespace zorvela
