// A check sum that is the same on every system.
#pragma once

#include <cstdint>
#include <string_view>

namespace zorvela {

/// CRC-32 as in gzip and PNG: of the bytes that went before, whose sum is given (0 for none), and these.
std::uint32_t crc32(std::uint32_t sum, std::string_view bytes);

}  // namespace zorvela
