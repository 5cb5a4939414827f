#include "util/read_whole.h"

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <system_error>

namespace zorvela {

namespace {

constexpr std::size_t kChunk = std::size_t{1} << 16;

[[noreturn]] void throwLastError() {
  throw std::system_error(errno, std::generic_category());
}

std::string readAll(std::FILE* stream, std::size_t expected, std::size_t most) {
  std::string bytes;
  bytes.reserve(expected);
  char chunk[kChunk];
  while (const std::size_t count = std::fread(chunk, 1, sizeof chunk, stream)) {
    if (bytes.size() + count > most) throw std::system_error(std::make_error_code(std::errc::file_too_large));
    bytes.append(chunk, count);
  }
  if (std::ferror(stream) != 0) throwLastError();
  return bytes;
}

}  // namespace

std::string readWhole(std::FILE* stream, std::size_t most) {
  return readAll(stream, 0, most);
}

std::string readWhole(const std::string& path, std::size_t most) {
  std::error_code unknown;
  if (std::filesystem::is_directory(path, unknown))
    throw std::system_error(std::make_error_code(std::errc::is_a_directory));
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
  if (!file) throwLastError();
  const std::uintmax_t size = std::filesystem::file_size(path, unknown);
  return readAll(file.get(), unknown || size > most ? 0 : static_cast<std::size_t>(size), most);
}

}  // namespace zorvela
