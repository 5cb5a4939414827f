#include "formats/input_bytes.h"

#include <system_error>

#include "util/read_whole.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

FileError unreadable(const std::string& file, const std::error_code& error) {
  if (error == std::errc::file_too_large) return inputError(InputFault::tooLarge, file);
  if (error == std::errc::is_a_directory)
    return {file, 0, "is a folder", "name the files in it, such as " + file + "/*"};
  return {file, 0, "cannot be read: " + error.message(), "check the name and the permissions"};
}

}  // namespace

std::string fileBytes(const std::string& path) {
  try {
    return readWhole(path, kLargestInput);
  } catch (const std::system_error& e) {
    throw unreadable(path, e.code());
  }
}

std::string streamBytes(std::FILE* stream, const std::string& file) {
  try {
    return readWhole(stream, kLargestInput);
  } catch (const std::system_error& e) {
    throw unreadable(file, e.code());
  }
}

bool isGzipped(const std::string& bytes) {
  return bytes.size() >= 2 && bytes[0] == '\x1f' && bytes[1] == '\x8b';
}

FileError inputError(InputFault fault, const std::string& file) {
  const char* const kFetchAgain = "fetch it again";
  switch (fault) {
    case InputFault::damagedGzip:
      return {file, 0, "the gzip file is damaged", kFetchAgain};
    case InputFault::cutGzip:
      return {file, 0, "the gzip file ends too early", kFetchAgain};
    case InputFault::tooLarge:
      return {file, 0, "is larger than " + std::to_string(kLargestInput >> 20) + " MiB",
              "give the part that is needed"};
    case InputFault::noMemory:
      return {file, 0, "does not fit into memory", "give a smaller file"};
    case InputFault::unreadable:
      break;
  }
  return {file, 0, "cannot be read", "check the name and the permissions"};
}

}  // namespace zorvela
