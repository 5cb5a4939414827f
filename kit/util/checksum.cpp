// CRC-32, bit by bit: what is summed up are seven small tables.
#include "util/checksum.h"

namespace zorvela {

std::uint32_t crc32(std::uint32_t sum, std::string_view bytes) {
  constexpr std::uint32_t kPolynomial = 0xEDB88320U;
  sum = ~sum;
  for (const char c : bytes) {
    sum ^= static_cast<unsigned char>(c);
    for (int bit = 0; bit < 8; ++bit) sum = (sum >> 1U) ^ ((sum & 1U) != 0 ? kPolynomial : 0U);
  }
  return ~sum;
}

}  // namespace zorvela
