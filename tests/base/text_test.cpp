/// @file
/// Tests of the readers and writers of numbers, byte sequences and addresses.
#include "base/text.h"

#include <gtest/gtest.h>
#include <string_view>

namespace virtual_onu {
namespace {

TEST(Text, ParseDecimal_TakesDigitsUpToTheMaximum) {
  EXPECT_EQ(ParseDecimal("0"), 0U);
  EXPECT_EQ(ParseDecimal("4095", 4095), 4095U);
  EXPECT_EQ(ParseDecimal("4294967295"), 0xFFFFFFFFU);
}

TEST(Text, ParseDecimal_AnythingElse_IsNothing) {
  for (const std::string_view text : {"", " 1", "1 ", "-1", "+1", "0x10", "1a", "4294967296"}) {
    EXPECT_FALSE(ParseDecimal(text)) << text;
  }
  EXPECT_FALSE(ParseDecimal("4096", 4095));
}

TEST(Text, ParseHex_TakesPairsOfDigitsInEitherCase) {
  EXPECT_EQ(ParseHex("00aBfF"), (Bytes{0x00, 0xAB, 0xFF}));
  EXPECT_EQ(ParseHex(""), Bytes());
}

TEST(Text, ParseHex_AnythingElse_IsNothing) {
  for (const std::string_view text : {"0", "000", "0g", "g0", "0x", "-1", " 1", "1 "}) {
    EXPECT_FALSE(ParseHex(text)) << text;
  }
}

TEST(Text, ParseMac_TakesSixPairsWithColons) {
  EXPECT_EQ(ParseMac("01:80:c2:00:00:0E"),
            (std::array<std::uint8_t, 6>{0x01, 0x80, 0xC2, 0x00, 0x00, 0x0E}));
}

TEST(Text, ParseMac_AnythingElse_IsNothing) {
  for (const std::string_view text :
       {"", "01:80:c2:00:00", "01:80:c2:00:00:0", "01:80:c2:00:00:00:", "01-80-c2-00-00-00",
        "01:80:c2:00:00:0g", "1:80:c2:00:00:000", "01:80:c2:00:00 00"}) {
    EXPECT_FALSE(ParseMac(text)) << text;
  }
}

TEST(Text, ParseIp_ReadsBothVersionsInNetworkOrder) {
  EXPECT_EQ(ParseIp("10.0.1.255"), (Bytes{10, 0, 1, 255}));
  Bytes six(16);
  six[0] = 0x20;
  six[1] = 0x01;
  six[15] = 0x02;
  EXPECT_EQ(ParseIp("2001::2"), six);
}

TEST(Text, ParseIp_AnythingElse_IsNothing) {
  using namespace std::string_view_literals;
  for (const std::string_view text : {""sv, "10.0.0"sv, "10.0.0.256"sv, "10.0.0.1 "sv, "2001:::1"sv,
                                      "::1%eth0"sv, "10.0.0.1\0"sv}) {
    EXPECT_FALSE(ParseIp(text)) << text;
  }
}

TEST(Text, FormatIp_WritesWhatParseIpReads) {
  for (const std::string_view text :
       {"0.0.0.0", "255.255.255.255", "::", "2001:db8::1", "ff02::16"}) {
    const std::optional<Bytes> address = ParseIp(text);
    ASSERT_TRUE(address) << text;
    EXPECT_EQ(FormatIp(*address), text);
  }
}

TEST(Text, FormatIp_OfAnotherLength_WritesHexadecimalDigits) {
  EXPECT_EQ(FormatIp(Bytes{1, 2, 3}), "010203");
  EXPECT_EQ(FormatIp({}), "");
}

TEST(Text, HexNumber_WritesAtLeastFourDigits) {
  EXPECT_EQ(HexNumber(0), "0x0000");
  EXPECT_EQ(HexNumber(0x88A8), "0x88a8");
  EXPECT_EQ(HexNumber(0xFFFFFFFF), "0xffffffff");
}

}  // namespace
}  // namespace virtual_onu
