// Packs and unpacks gzip with zlib.
#include <zlib.h>

#include <memory>
#include <new>

#include "formats/input_bytes.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr std::size_t kChunk = std::size_t{1} << 16;

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
  if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, kGzipWindow, kMemory, Z_DEFAULT_STRATEGY) !=
      Z_OK)
    throw std::bad_alloc();
  return {&stream, deflateEnd};
}

bool isAnotherPart(const z_stream& stream) {
  return stream.avail_in >= 2 && stream.next_in[0] == 0x1f && stream.next_in[1] == 0x8b;
}

}  // namespace

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
  if (bytes.size() > kLargestInput) throw inputError(InputFault::tooLarge, file);
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
    if (text.size() + count > kLargestInput) throw inputError(InputFault::tooLarge, file);
    text.append(chunk, count);
    if (state == Z_STREAM_END) {
      // A gzip file may hold several parts, one after the other; other bytes after the last are padding.
      if (!isAnotherPart(stream) || inflateReset(&stream) != Z_OK) return text;
    } else if (state != Z_OK) {
      throw inputError(state == Z_BUF_ERROR ? InputFault::cutGzip : InputFault::damagedGzip, file);
    }
  }
}

}  // namespace zorvela
