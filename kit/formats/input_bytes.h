// A whole input file as bytes: plain or gzipped, by name or from standard input.
#pragma once

#include <cstddef>
#include <string>

namespace zorvela {

/// The largest input in bytes, unpacked. The largest BMRB entries are a tenth of it.
inline constexpr std::size_t kLargestInput = std::size_t{256} << 20;

/// The bytes of a file, unpacked if they are gzipped; "-" is standard input. Error for a folder, a
/// file that cannot be read, is empty, above `kLargestInput`, or a damaged or cut gzip file.
std::string readBytes(const std::string& path);

/// Unpacks bytes that begin with the gzip mark; others are returned as they are.
std::string unpacked(std::string bytes, const std::string& name);

/// How messages name an input: the path, or "standard input" for "-".
std::string inputName(const std::string& path);

}  // namespace zorvela
