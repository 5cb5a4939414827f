#include "formats/input_bytes.h"

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <system_error>

#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr std::size_t kChunk = std::size_t{1} << 16;

[[noreturn]] void throwUnreadable(const std::string& file, int number) {
  const std::string what = "cannot be read: " + std::generic_category().message(number);
  if (number == EMFILE || number == ENFILE || number == ENOMEM)
    throw ScarcityError(file, 0, what, "give fewer files at a time");
  throw FileError(file, 0, what, "check the name and the permissions");
}

/// `expected` bytes, where their number is known: room is made for them at once.
std::string allOf(std::FILE* stream, const std::string& file, std::uintmax_t expected) {
  std::string bytes;
  if (expected <= kLargestInput) bytes.reserve(static_cast<std::size_t>(expected));
  char chunk[kChunk];
  while (const std::size_t count = std::fread(chunk, 1, sizeof chunk, stream)) {
    if (bytes.size() + count > kLargestInput) throw inputError(InputFault::tooLarge, file);
    bytes.append(chunk, count);
  }
  if (std::ferror(stream) != 0) throwUnreadable(file, errno);
  return bytes;
}

}  // namespace

std::string fileBytes(const std::string& path) {
  std::error_code unknown;
  if (std::filesystem::is_directory(path, unknown))
    throw FileError(path, 0, "is a folder", "name the files in it, such as " + path + "/*");
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
  if (!file) throwUnreadable(path, errno);
  const std::uintmax_t size = std::filesystem::file_size(path, unknown);
  return allOf(file.get(), path, unknown ? 0 : size);
}

std::string streamBytes(std::FILE* stream, const std::string& file) {
  return allOf(stream, file, 0);
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
