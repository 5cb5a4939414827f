#include "util/checksum.h"

#include <gtest/gtest.h>
#include <zlib.h>

namespace zorvela {
namespace {

TEST(Checksum, IsTheOneOfGzip) {
  EXPECT_EQ(zorvela::crc32(0, "123456789"), 0xCBF43926U);
  EXPECT_EQ(zorvela::crc32(0, ""), 0U);
  const std::string text = "every table, \xff and \x80 too";
  EXPECT_EQ(zorvela::crc32(0, text),
            ::crc32(0, reinterpret_cast<const Bytef*>(text.data()), static_cast<uInt>(text.size())));
}

TEST(Checksum, GoesOnFromTheBytesBefore) {
  EXPECT_EQ(zorvela::crc32(zorvela::crc32(0, "1234"), "56789"), zorvela::crc32(0, "123456789"));
}

}  // namespace
}  // namespace zorvela
