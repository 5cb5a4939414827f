// A whole input file as bytes, unpacked where it is gzipped.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

#include "zorvela/error.h"

namespace zorvela {

/// The largest input in bytes, unpacked. The largest BMRB entries are a tenth of it.
inline constexpr std::size_t kLargestInput = std::size_t{256} << 20;

/// Why there are no bytes to read. Hosts that fetch and unpack files themselves depend on the order.
enum class InputFault { unreadable, damagedGzip, cutGzip, tooLarge, noMemory };

/// Returns the error of a file with this fault.
FileError inputError(InputFault fault, const std::string& file);

/// Returns the bytes of a file; of one above `most` bytes, little more than `most`. FileError for a folder,
/// for a file that cannot be read and for one above `kLargestInput`.
std::string fileBytes(const std::string& path, std::size_t most = kLargestInput);

/// Returns the rest of a stream in the same way. `file` is how messages name it.
std::string streamBytes(std::FILE* stream, const std::string& file, std::size_t most = kLargestInput);

/// Tells whether bytes begin with the gzip mark.
bool isGzipped(std::string_view bytes);

/// Packs bytes, up to a little above `kLargestInput`, as a gzip file; the same file for the same bytes.
std::string packed(std::string bytes);

/// Unpacks bytes that begin with the gzip mark; others are returned as they are. FileError for a gzip file
/// that is damaged or cut, and for more than `kLargestInput` bytes. Where there is no zlib, the host unpacks.
std::string unpacked(std::string bytes, const std::string& file);

}  // namespace zorvela
