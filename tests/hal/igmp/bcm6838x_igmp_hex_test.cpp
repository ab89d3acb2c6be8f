/// @file
/// Tests of the hex dump, to the character.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <gtest/gtest.h>
#include <numeric>
#include <string>

#include <bcm6838x_igmp.h>

namespace hal_test {
namespace {

constexpr std::size_t kBytes = 64;
constexpr std::size_t kColumn = 3;  ///< characters of a byte in a row
using Buffer = std::array<std::uint8_t, kBytes>;

/// The low 32 bits of an address, as eight digits.
std::string Address(const void* address) {
  std::array<char, 9> digits = {};
  static_cast<void>(std::snprintf(
      digits.data(), digits.size(), "%08X",
      static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(address) & 0xFFFFFFFFU)));
  return digits.data();
}

std::string Head(const Buffer& buffer, const std::string& length) {
  return "\r\n" + Address(buffer.data()) +
         "  00 01 02 03 04 05 06 07   08 09 0A 0B 0C 0D 0E 0F ; ASCII [" + length + " bytes]\r\n" +
         std::string(78, '-') + "\r\n";
}

std::string Printed(const void* buffer, std::uint32_t length) {
  testing::internal::CaptureStdout();
  BCM6838X_PrintHex(buffer, length);
  return testing::internal::GetCapturedStdout();
}

/// Bytes 'A', 'B', ...
Buffer Letters() {
  Buffer buffer = {};
  std::iota(buffer.begin(), buffer.end(), std::uint8_t{'A'});
  return buffer;
}

TEST(PrintHex, NullOrEmpty_PrintsNothing) {
  const Buffer buffer = Letters();
  EXPECT_EQ(Printed(nullptr, 16), "");
  EXPECT_EQ(Printed(buffer.data(), 0), "");
  EXPECT_EQ(Printed(nullptr, 0), "");
}

TEST(PrintHex, OneByte_TheRestOfTheRowIsBlank) {
  const Buffer buffer = Letters();
  EXPECT_EQ(Printed(buffer.data(), 1),
            Head(buffer, "1") + "00000000: 41 " + std::string(15 * 3 + 2, ' ') + "; A\r\n");
}

TEST(PrintHex, EightAndNineBytes_TwoMoreBlanksStandAfterTheEighth) {
  const Buffer buffer = Letters();
  EXPECT_EQ(Printed(buffer.data(), 8), Head(buffer, "8") + "00000000: 41 42 43 44 45 46 47 48   " +
                                           std::string(8 * kColumn, ' ') + "; ABCDEFGH\r\n");
  EXPECT_EQ(Printed(buffer.data(), 9), Head(buffer, "9") +
                                           "00000000: 41 42 43 44 45 46 47 48   49 " +
                                           std::string(7 * kColumn, ' ') + "; ABCDEFGHI\r\n");
}

// Required: hex-ends-with-blank-row
TEST(PrintHex, WholeRows_EndWithABlankRow) {
  const Buffer buffer = Letters();
  const std::string rows =
      "00000000: 41 42 43 44 45 46 47 48   49 4A 4B 4C 4D 4E 4F 50 ; ABCDEFGHIJKLMNOP\r\n"
      "00000010: 51 52 53 54 55 56 57 58   59 5A 5B 5C 5D 5E 5F 60 ; QRSTUVWXYZ[\\]^_`\r\n";
  EXPECT_EQ(Printed(buffer.data(), 32),
            Head(buffer, "32") + rows + "00000020: " + std::string(16 * 3 + 2, ' ') + "; \r\n");
  EXPECT_EQ(Printed(buffer.data(), 33),
            Head(buffer, "33") + rows + "00000020: 61 " + std::string(15 * 3 + 2, ' ') + "; a\r\n");
}

// Required: hex-prints-128
TEST(PrintHex, Characters_FromBlankToOneHundredTwentyEightStandAsTheyAre) {
  const Buffer buffer = {0, 31, 32, 33, 126, 127, 128, 129, 255, 0x0A};
  EXPECT_EQ(Printed(buffer.data(), 10),
            Head(buffer, "10") + "00000000: 00 1F 20 21 7E 7F 80 81   FF 0A " +
                std::string(6 * kColumn, ' ') + "; .. !~\x7F\x80...\r\n");
}

}  // namespace
}  // namespace hal_test
