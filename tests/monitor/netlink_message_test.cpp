/// @file
/// Tests of the kernel's messages, byte by byte.
#include "monitor/netlink_message.h"

#include <bit>
#include <gtest/gtest.h>
#include <string>

namespace virtual_onu {
namespace {

/// Hexadecimal digits of a header: a length and a type below 256, and a sender port.
std::string Header(const std::string& length, const std::string& typeBig,
                   const std::string& typeLittle, const std::string& port = "00000000") {
  return std::endian::native == std::endian::big
             ? "000000" + length + typeBig + "000000000000" + port
             : length + "000000" + typeLittle + "000000000000" + port;
}

TEST(NetlinkMessage, HeaderAndPaddedPayload) {
  const Bytes payload = {1, 2, 3, 4, 5};
  EXPECT_EQ(ToHex(NetlinkMessage(0x3001, payload)),
            Header("15", "3001", "0130") + "0102030405000000");
  EXPECT_EQ(ToHex(NetlinkMessage(3, {})), Header("10", "0003", "0300"));
}

TEST(NetlinkMessage, SenderPort) {
  EXPECT_EQ(ToHex(NetlinkMessage(3, {}, 0xA1A1A1A1)), Header("10", "0003", "0300", "a1a1a1a1"));
}

TEST(NetlinkMessage, Button_IsAWordOfTheProcessor) {
  const bool big = std::endian::native == std::endian::big;
  EXPECT_EQ(ToHex(ButtonMessage(true)),
            Header("14", "3001", "0130") + (big ? "00000001" : "01000000"));
  EXPECT_EQ(ToHex(ButtonMessage(false)), Header("14", "3001", "0130") + "00000000");
}

TEST(NetlinkMessage, Link_IsAPaddedNameAndTwoWordsInNetworkOrder) {
  EXPECT_EQ(ToHex(LinkMessage("eth0", 1000, 1)), Header("28", "2000", "0020") +
                                                     "65746830000000000000000000000000"
                                                     "000003e8"
                                                     "00000001");
  EXPECT_EQ(ToHex(LinkMessage("aaaaaaaaaaaaaaaaaaaa", 0, 0)).substr(32),
            "61616161616161616161616161616161"
            "00000000"
            "00000000");
}

}  // namespace
}  // namespace virtual_onu
