// A whole input file as bytes: plain or gzipped, by name or from standard input.
#include "formats/input_bytes.h"

#include <sys/stat.h>  // for stat
#include <zlib.h>      // for inflate

#include <cerrno>
#include <cstdio>
#include <memory>
#include <new>
#include <system_error>

#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr std::size_t kChunk = std::size_t{1} << 16;

[[noreturn]] void throwUnreadable(const std::string& name, int number) {
  throw Error(name, 0, "cannot be read: " + std::generic_category().message(number),
              "check the name and the permissions");
}

[[noreturn]] void throwTooLarge(const std::string& name) {
  throw Error(name, 0, "is larger than " + std::to_string(kLargestInput >> 20) + " MiB",
              "give the part with the sequence and the shifts only");
}

std::string readAll(std::FILE* file, const std::string& name) {
  std::string bytes;
  char chunk[kChunk];
  while (const std::size_t count = std::fread(chunk, 1, sizeof chunk, file)) {
    if (bytes.size() + count > kLargestInput) throwTooLarge(name);
    bytes.append(chunk, count);
  }
  if (std::ferror(file) != 0) throwUnreadable(name, errno);
  return bytes;
}

std::string readNamed(const std::string& path) {
  struct stat info {};
  if (stat(path.c_str(), &info) != 0) throwUnreadable(path, errno);
  if (S_ISDIR(info.st_mode))
    throw Error(path, 0, "is a folder", "name the shift files in it, such as " + path + "/*.str");
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
  if (!file) throwUnreadable(path, errno);
  return readAll(file.get(), path);
}

bool isGzipped(const std::string& bytes) {
  return bytes.size() >= 2 && bytes[0] == '\x1f' && bytes[1] == '\x8b';
}

/// zlib's state, released at the end.
class Inflater {
 public:
  Inflater() {
    constexpr int kGzipWindow = 15 + 16;  // the largest window, with a gzip header
    isReady = inflateInit2(&stream, kGzipWindow) == Z_OK;
  }
  ~Inflater() { inflateEnd(&stream); }
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;

  z_stream stream{};
  bool isReady = false;
};

}  // namespace

std::string unpacked(std::string bytes, const std::string& name) {
  if (!isGzipped(bytes)) return bytes;
  Inflater inflater;
  z_stream& stream = inflater.stream;
  stream.next_in = reinterpret_cast<Bytef*>(bytes.data());
  stream.avail_in = static_cast<uInt>(bytes.size());  // at most kLargestInput
  std::string text;
  char chunk[kChunk];
  for (int state = Z_OK; inflater.isReady;) {
    stream.next_out = reinterpret_cast<Bytef*>(chunk);
    stream.avail_out = sizeof chunk;
    state = inflate(&stream, Z_NO_FLUSH);
    const std::size_t count = sizeof chunk - stream.avail_out;
    if (text.size() + count > kLargestInput) throwTooLarge(name);
    text.append(chunk, count);
    if (state == Z_STREAM_END) {
      // A gzip file may hold several parts, one after the other; other bytes behind the last are padding.
      const bool isMore = stream.avail_in >= 2 && stream.next_in[0] == 0x1f && stream.next_in[1] == 0x8b;
      if (!isMore || inflateReset(&stream) != Z_OK) return text;
    } else if (state != Z_OK) {
      const bool isCut = state == Z_BUF_ERROR;
      throw Error(name, 0, isCut ? "the gzip file ends too early" : "the gzip file is damaged",
                  "fetch it again");
    }
  }
  throw std::bad_alloc();
}

std::string readBytes(const std::string& path) {
  const std::string name = inputName(path);
  std::string bytes = unpacked(path == "-" ? readAll(stdin, name) : readNamed(path), name);
  if (bytes.empty()) throw Error(name, 0, "is empty", "give a file with chemical shifts");
  return bytes;
}

std::string inputName(const std::string& path) {
  return path == "-" ? "standard input" : path;
}

}  // namespace zorvela
