#include "formats/input_bytes.h"

#include <zlib.h>

#include <cerrno>
#include <filesystem>
#include <memory>
#include <new>
#include <system_error>

#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr std::size_t kChunk = std::size_t{1} << 16;

[[noreturn]] void throwUnreadable(const std::string& file, int number) {
  throw FileError(file, 0, "cannot be read: " + std::generic_category().message(number),
                  "check the name and the permissions");
}

[[noreturn]] void throwTooLarge(const std::string& file) {
  throw FileError(file, 0, "is larger than " + std::to_string(kLargestInput >> 20) + " MiB",
                  "give the part that is needed");
}

/// zlib's state, released at the end.
using Inflater = std::unique_ptr<z_stream, int (*)(z_stream*)>;

Inflater makeInflater(z_stream& stream) {
  constexpr int kGzipWindow = 15 + 16;  // the largest window, with a gzip header
  if (inflateInit2(&stream, kGzipWindow) != Z_OK) throw std::bad_alloc();
  return {&stream, inflateEnd};
}

/// zlib's state for packing, released at the end.
Inflater makeDeflater(z_stream& stream) {
  constexpr int kGzipWindow = 15 + 16;
  constexpr int kMemory = 8;
  if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, kGzipWindow, kMemory, Z_DEFAULT_STRATEGY) != Z_OK)
    throw std::bad_alloc();
  return {&stream, deflateEnd};
}

bool isAnotherPart(const z_stream& stream) {
  return stream.avail_in >= 2 && stream.next_in[0] == 0x1f && stream.next_in[1] == 0x8b;
}

}  // namespace

std::string fileBytes(const std::string& path) {
  std::error_code unknown;
  if (std::filesystem::is_directory(path, unknown))
    throw FileError(path, 0, "is a folder", "name the files in it, such as " + path + "/*");
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
  if (!file) throwUnreadable(path, errno);
  return streamBytes(file.get(), path);
}

std::string streamBytes(std::FILE* stream, const std::string& file) {
  std::string bytes;
  char chunk[kChunk];
  while (const std::size_t count = std::fread(chunk, 1, sizeof chunk, stream)) {
    if (bytes.size() + count > kLargestInput) throwTooLarge(file);
    bytes.append(chunk, count);
  }
  if (std::ferror(stream) != 0) throwUnreadable(file, errno);
  return bytes;
}

bool isGzipped(const std::string& bytes) {
  return bytes.size() >= 2 && bytes[0] == '\x1f' && bytes[1] == '\x8b';
}

std::string packed(std::string bytes) {
  z_stream stream{};
  const Inflater deflater = makeDeflater(stream);
  std::string result(deflateBound(&stream, static_cast<uLong>(bytes.size())), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(bytes.data());
  stream.avail_in = static_cast<uInt>(bytes.size());
  stream.next_out = reinterpret_cast<Bytef*>(result.data());
  stream.avail_out = static_cast<uInt>(result.size());
  if (deflate(&stream, Z_FINISH) != Z_STREAM_END) throw std::bad_alloc();
  result.resize(stream.total_out);
  return result;
}

std::string unpacked(std::string bytes, const std::string& file) {
  if (bytes.size() > kLargestInput) throwTooLarge(file);
  if (!isGzipped(bytes)) return bytes;
  z_stream stream{};
  const Inflater inflater = makeInflater(stream);
  stream.next_in = reinterpret_cast<Bytef*>(bytes.data());
  stream.avail_in = static_cast<uInt>(bytes.size());
  std::string text;
  char chunk[kChunk];
  while (true) {
    stream.next_out = reinterpret_cast<Bytef*>(chunk);
    stream.avail_out = sizeof chunk;
    const int state = inflate(&stream, Z_NO_FLUSH);
    const std::size_t count = sizeof chunk - stream.avail_out;
    if (text.size() + count > kLargestInput) throwTooLarge(file);
    text.append(chunk, count);
    if (state == Z_STREAM_END) {
      // A gzip file may hold several parts, one after the other; other bytes after the last are padding.
      if (!isAnotherPart(stream) || inflateReset(&stream) != Z_OK) return text;
    } else if (state != Z_OK) {
      const bool isCut = state == Z_BUF_ERROR;
      throw FileError(file, 0, isCut ? "the gzip file ends too early" : "the gzip file is damaged",
                      "fetch it again");
    }
  }
}

}  // namespace zorvela
