// The bytes of a whole file.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

namespace zorvela {

/// Reads what is left of a stream. std::system_error where it cannot be read to its end, or with
/// std::errc::file_too_large above `most` bytes.
std::string readWhole(std::FILE* stream, std::size_t most);

/// Reads a file by its path in the same way. A folder is std::errc::is_a_directory.
std::string readWhole(const std::string& path, std::size_t most);

}  // namespace zorvela
