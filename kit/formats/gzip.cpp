// Packs and unpacks gzip with zlib.
#include <zlib.h>

#include <memory>
#include <new>

#include "formats/input_bytes.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr int kGzipWindow = 15 + 16;  // the largest window, with a gzip header

/// zlib's state, released at the end.
using State = std::unique_ptr<z_stream, int (*)(z_stream*)>;

void giveBytes(std::string& bytes, z_stream& stream) {
  stream.next_in = reinterpret_cast<Bytef*>(bytes.data());
  stream.avail_in = static_cast<uInt>(bytes.size());
}

}  // namespace

std::string packed(std::string bytes) {
  constexpr int kMemory = 8;
  z_stream stream{};
  if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, kGzipWindow, kMemory, Z_DEFAULT_STRATEGY) !=
      Z_OK)
    throw std::bad_alloc();
  const State deflater(&stream, deflateEnd);
  std::string result(deflateBound(&stream, static_cast<uLong>(bytes.size())), '\0');
  giveBytes(bytes, stream);
  stream.next_out = reinterpret_cast<Bytef*>(result.data());
  stream.avail_out = static_cast<uInt>(result.size());
  if (deflate(&stream, Z_FINISH) != Z_STREAM_END) throw std::bad_alloc();
  result.resize(stream.total_out);
  return result;
}

std::string unpacked(std::string bytes, const std::string& file) {
  if (bytes.size() > kLargestInput) throw inputError(InputFault::tooLarge, file);
  if (!isGzipped(bytes)) return bytes;
  z_stream stream{};
  if (inflateInit2(&stream, kGzipWindow) != Z_OK) throw std::bad_alloc();
  const State inflater(&stream, inflateEnd);
  giveBytes(bytes, stream);
  constexpr std::size_t kChunk = std::size_t{1} << 16;
  std::string text;
  char chunk[kChunk];
  while (true) {
    stream.next_out = reinterpret_cast<Bytef*>(chunk);
    stream.avail_out = sizeof chunk;
    const int state = inflate(&stream, Z_NO_FLUSH);
    const std::size_t count = sizeof chunk - stream.avail_out;
    if (text.size() + count > kLargestInput) throw inputError(InputFault::tooLarge, file);
    text.append(chunk, count);
    if (state == Z_STREAM_END) {
      // A gzip file may hold several parts, one after the other; other bytes after the last are padding.
      const std::string_view rest(reinterpret_cast<const char*>(stream.next_in), stream.avail_in);
      if (!isGzipped(rest) || inflateReset(&stream) != Z_OK) return text;
    } else if (state != Z_OK) {
      throw inputError(state == Z_BUF_ERROR ? InputFault::cutGzip : InputFault::damagedGzip, file);
    }
  }
}

}  // namespace zorvela
