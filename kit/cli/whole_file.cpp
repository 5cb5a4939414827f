#include "cli/whole_file.h"

#include <cerrno>
#include <fstream>
#include <iostream>
#include <random>
#include <system_error>

#include "cli/process.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

namespace fs = std::filesystem;

using Writer = std::function<void(std::ostream&)>;

[[noreturn]] void throwUnwritable(const std::string& name, const std::error_code& error) {
  const std::string cause = error ? ": " + error.message() : "";
  throw Error(name, 0, "cannot be written" + cause, "choose another place with --output, or free disk space");
}

/// Returns the error of the last system call.
std::error_code lastError() {
  return {errno, std::generic_category()};
}

void writeInto(std::ofstream& file, const std::string& name, const Writer& write) {
  if (file.is_open()) {
    errno = 0;
    write(file);
  }
  file.close();
  if (!file) throwUnwritable(name, lastError());
}

/// Beside the target, so that renaming it copies nothing.
fs::path temporaryBeside(const fs::path& target) {
  std::random_device random;
  return target.parent_path() / (".zorvela-" + std::to_string(random()) + std::to_string(random()) + ".tmp");
}

/// The folder would let us replace a file that was made read-only.
void requireWritable(const fs::path& file, const std::string& name) {
  const std::ofstream out(file, std::ios::app);
  if (!out) throwUnwritable(name, lastError());
}

void replace(const fs::path& target, bool isThere, const std::string& name, const Writer& write) {
  if (isThere) requireWritable(target, name);
  const fs::perms permissions = fs::status(target).permissions() & fs::perms::all;
  const fs::path temporary = temporaryBeside(target);
  const RemovedOnInterrupt guard(temporary.string());
  try {
    std::ofstream file(temporary, std::ios::binary);
    std::error_code notSupported;  // some file systems have no permissions
    if (isThere && file) fs::permissions(temporary, permissions, notSupported);
    writeInto(file, name, write);
    fs::rename(temporary, target);
  } catch (...) {
    std::error_code notThere;
    fs::remove(temporary, notThere);
    throw;
  }
}

void writeFile(const std::string& path, const Writer& write) {
  const fs::file_status status = fs::status(path);
  const bool isThere = fs::exists(status);
  if (!isThere || fs::is_regular_file(status)) {
    replace(afterLinks(path), isThere, path, write);
  } else {
    std::ofstream device(path, std::ios::binary);
    writeInto(device, path, write);
  }
}

/// Tells whether a path leads to standard output, which may be a file with content that stays.
bool isStandardOutput(const std::string& path) {
  std::error_code notThere;
  return path == "-" || path == "/dev/stdout" || fs::equivalent(path, "/dev/stdout", notThere);
}

}  // namespace

fs::path afterLinks(const fs::path& path) {
  if (fs::exists(path)) return fs::canonical(path);
  fs::path place = path;
  while (fs::is_symlink(fs::symlink_status(place))) place = place.parent_path() / fs::read_symlink(place);
  return place;
}

void writeWhole(const std::string& path, const Writer& write) {
  if (isStandardOutput(path)) {
    errno = 0;
    write(std::cout);
    flushStandardOutput();
    return;
  }
  try {
    writeFile(path, write);
  } catch (const fs::filesystem_error& e) {
    throwUnwritable(path, e.code());
  }
}

void writeWhole(const std::string& path, const std::string& text) {
  writeWhole(path, [&text](std::ostream& out) { out << text; });
}

void makeFolder(const std::string& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  if (error)
    throw Error(folder, 0, "cannot be made: " + error.message(), "choose another place with --output");
}

void flushStandardOutput() {
  std::cout.flush();
  if (!std::cout) throwUnwritable("standard output", lastError());
}

}  // namespace zorvela
