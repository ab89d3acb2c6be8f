/// @file
/// Tests of bytes that are kept without their zeros.
#include "base/packed_bytes.h"

#include <gtest/gtest.h>
#include <numeric>

namespace virtual_onu {
namespace {

constexpr std::size_t kLong = 492'032;

TEST(PackedBytes, EveryLength_ComesBack) {
  Bytes bytes(300);
  std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
  for (std::size_t length = 0; length <= bytes.size(); ++length) {
    const Bytes part(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length));
    EXPECT_EQ(PackedBytes(part).unpack(), part);
    EXPECT_EQ(PackedBytes(Bytes(length)).unpack(), Bytes(length));
    EXPECT_EQ(PackedBytes(Bytes(length)).kept(), 0U);
  }
  EXPECT_EQ(PackedBytes().unpack(), Bytes());
}

TEST(PackedBytes, AByteAnywhere_ComesBackAtItsPlace) {
  int places = 0;
  for (std::size_t place = 0; place < 200; ++place, ++places) {
    Bytes bytes(200);
    bytes[place] = 0xA5;
    EXPECT_EQ(PackedBytes(bytes).unpack(), bytes);
    EXPECT_LE(PackedBytes(bytes).kept(), 64U);
  }
  EXPECT_EQ(places, 200);
}

TEST(PackedBytes, LongRecord_TakesTheRoomOfWhatIsInIt) {
  Bytes bytes(kLong);
  for (const std::size_t place : {std::size_t{0}, kLong / 2, kLong - 1}) {
    bytes[place] = 1;
  }
  const PackedBytes packed(bytes);
  EXPECT_EQ(packed.unpack(), bytes);
  EXPECT_LE(packed.kept(), 3U * 64U);
}

}  // namespace
}  // namespace virtual_onu
