#include "formats/input_bytes.h"

#include <cerrno>
#include <filesystem>
#include <memory>
#include <system_error>

namespace zorvela {

namespace {

FileError unreadable(const std::string& file) {
  const std::string cause = std::generic_category().message(errno);
  return {file, 0, "cannot be read: " + cause, "check the name and the permissions"};
}

}  // namespace

std::string fileBytes(const std::string& path, std::size_t most) {
  std::error_code unknown;
  if (std::filesystem::is_directory(path, unknown))
    throw FileError(path, 0, "is a folder", "name the files in it, such as " + path + "/*");
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
  if (!file) throw unreadable(path);
  return streamBytes(file.get(), path, most);
}

std::string streamBytes(std::FILE* stream, const std::string& file, std::size_t most) {
  constexpr std::size_t kChunk = std::size_t{1} << 16;
  std::string bytes;
  char chunk[kChunk];
  while (bytes.size() <= most) {
    const std::size_t count = std::fread(chunk, 1, sizeof chunk, stream);
    if (count == 0) break;
    bytes.append(chunk, count);
  }
  if (std::ferror(stream) != 0) throw unreadable(file);
  if (bytes.size() > kLargestInput) throw inputError(InputFault::tooLarge, file);
  return bytes;
}

bool isGzipped(std::string_view bytes) {
  return bytes.size() >= 2 && bytes[0] == '\x1f' && bytes[1] == '\x8b';
}

FileError inputError(InputFault fault, const std::string& file) {
  const std::pair<std::string, const char*> kTexts[] = {
      {"cannot be read", "check the name and the permissions"},
      {"the gzip file is damaged", "fetch it again"},
      {"the gzip file ends too early", "fetch it again"},
      {"is larger than " + std::to_string(kLargestInput >> 20) + " MiB", "give the part that is needed"},
      {"does not fit into memory", "give a smaller file"},
  };
  const auto& [what, remedy] = kTexts[static_cast<std::size_t>(fault)];
  return {file, 0, what, remedy};
}

}  // namespace zorvela
