// A whole input file as bytes, unpacked where it is gzipped.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

#include "zorvela/error.h"

namespace zorvela {

/// The largest input in bytes, unpacked. The largest BMRB entries are a tenth of it.
inline constexpr std::size_t kLargestInput = std::size_t{256} << 20;

/// Why there are no bytes to read. Hosts that fetch and unpack files themselves count on the order.
enum class InputFault { unreadable, damagedGzip, cutGzip, tooLarge, noMemory };

/// The error that says so of a file.
FileError inputError(InputFault fault, const std::string& file);

/// The bytes of a file as they stand, of one above `most` bytes only a little more. FileError for a folder, a
/// file that cannot be read or above `kLargestInput`.
std::string fileBytes(const std::string& path, std::size_t most = kLargestInput);

/// The rest of a stream as it stands. `file` is how messages name it. FileError as above.
std::string streamBytes(std::FILE* stream, const std::string& file);

/// Whether bytes begin with the gzip mark.
bool isGzipped(const std::string& bytes);

/// Bytes, up to a little above `kLargestInput`, as a gzip file; the same for the same bytes.
std::string packed(std::string bytes);

/// Unpacks bytes that begin with the gzip mark; others are returned as they are. FileError for a gzip file
/// that is damaged or cut, and for more than `kLargestInput` bytes. Where there is no zlib, the host unpacks.
std::string unpacked(std::string bytes, const std::string& file);

}  // namespace zorvela
