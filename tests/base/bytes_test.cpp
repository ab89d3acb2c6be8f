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

}  // namespace
}  // namespace virtual_onu
