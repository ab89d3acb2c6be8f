/// @file
/// Tests of the byte helpers.
#include "base/bytes.h"

#include <gtest/gtest.h>

namespace virtual_onu {
namespace {

TEST(Bytes, ToHex_WritesLowerCaseWithSeparator) {
  const Bytes bytes = {0x00, 0xAB, 0x10};
  EXPECT_EQ(ToHex(bytes), "00ab10");
  EXPECT_EQ(ToHex(bytes, ' '), "00 ab 10");
  EXPECT_EQ(ToHex({}), "");
}

TEST(Bytes, ReadBigEndian_TakesOneToFourBytes) {
  const Bytes bytes = {0x81, 0x00, 0xFF, 0x02};
  EXPECT_EQ(ReadBigEndian(ByteView(bytes).first(1)), 0x81U);
  EXPECT_EQ(ReadBigEndian(ByteView(bytes).first(2)), 0x8100U);
  EXPECT_EQ(ReadBigEndian(bytes), 0x8100FF02U);
}

TEST(Bytes, FormatMac_UsesColons) {
  const Bytes mac = {0x01, 0x80, 0xC2, 0x00, 0x00, 0x23};
  EXPECT_EQ(FormatMac(mac), "01:80:c2:00:00:23");
}

TEST(Digest, IsFnv1aWith64Bits) {
  EXPECT_EQ(Digest({}), "0 bytes, FNV-1a cbf29ce484222325");
  EXPECT_EQ(Digest(Bytes{'a'}), "1 bytes, FNV-1a af63dc4c8601ec8c");
  EXPECT_EQ(Digest(Bytes{'f', 'o', 'o', 'b', 'a', 'r'}), "6 bytes, FNV-1a 85944171f73967e8");
}

}  // namespace
}  // namespace virtual_onu
