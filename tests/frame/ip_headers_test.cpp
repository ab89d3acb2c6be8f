/// @file
/// IP and layer-4 fields: options, extension headers, fragments, damaged and cut headers.
#include <gtest/gtest.h>
#include <string>

#include "frame/frame.h"
#include "support/sample_frames.h"

namespace virtual_onu {
namespace {

FrameHeaders Parse(const std::string& frame) {
  FrameHeaders headers;
  EXPECT_EQ(ParseFrame(Hex(frame), headers), FrameFault::None);
  return headers;
}

void ExpectNoIp(const FrameHeaders& headers) {
  EXPECT_FALSE(headers.ipVersion);
  EXPECT_TRUE(headers.srcIp.empty());
  EXPECT_TRUE(headers.dstIp.empty());
  EXPECT_FALSE(headers.ipProtocol);
  EXPECT_FALSE(headers.tos);
  EXPECT_FALSE(headers.l4SrcPort);
  EXPECT_FALSE(headers.l4DstPort);
  EXPECT_EQ(headers.l4Length, 0U);
}

TEST(IpHeaders, Ipv4_AllFieldsAreRead) {
  const FrameHeaders headers = Parse(kUdp4);
  EXPECT_EQ(headers.ipVersion, 4U);
  EXPECT_EQ(headers.tos, 0xB8);
  EXPECT_EQ(headers.ipProtocol, 17);
  EXPECT_EQ(FormatIp(headers.srcIp), "192.0.2.1");
  EXPECT_EQ(FormatIp(headers.dstIp), "192.0.2.2");
  EXPECT_EQ(headers.l4SrcPort, 68);
  EXPECT_EQ(headers.l4DstPort, 67);
  EXPECT_EQ(headers.l4Offset, 34U);
  EXPECT_EQ(headers.l4Length, 10U);
}

TEST(IpHeaders, Ipv4_BehindTags_IsRead) {
  const std::string packet = kUdp4.substr(kMacs.size());
  const FrameHeaders headers = Parse(kMacs + "88a8 00c8 8100 0064 " + packet);
  EXPECT_EQ(headers.l4DstPort, 67);
  EXPECT_EQ(headers.l4Offset, 42U);
}

TEST(IpHeaders, Ipv4_Options_AreSkipped) {
  const FrameHeaders headers = Parse(
      kMacs + "0800 4600 0020 0001 0000 40 11 0000 c0000201 c0000202 01010101 0400 0050 000c 0000");
  EXPECT_EQ(headers.l4SrcPort, 1024);
  EXPECT_EQ(headers.l4DstPort, 80);
  EXPECT_EQ(headers.l4Offset, 38U);
}

TEST(IpHeaders, Ipv4_LaterFragment_HasNoPorts) {
  const FrameHeaders headers = Parse(kUdp4Fragment);
  EXPECT_EQ(headers.ipProtocol, 17);
  EXPECT_FALSE(headers.l4SrcPort);
  EXPECT_FALSE(headers.l4DstPort);
  EXPECT_EQ(headers.l4Length, 0U);
}

TEST(IpHeaders, Ipv4_FirstFragment_HasPorts) {
  const FrameHeaders headers = Parse(
      kMacs + "0800 4500 001e 0001 2000 40 11 0000 c0000201 c0000202 0044 0043 000a 0000 6869");
  EXPECT_EQ(headers.l4DstPort, 67);
}

TEST(IpHeaders, Ipv4_Padding_IsNotTakenForPorts) {
  const FrameHeaders headers =
      Parse(kMacs + "0800 4500 0014 0001 0000 40 11 0000 c0000201 c0000202 0044 0043 0000 0000");
  EXPECT_EQ(headers.ipProtocol, 17);
  EXPECT_FALSE(headers.l4SrcPort);
  EXPECT_EQ(headers.l4Length, 0U);
}

TEST(IpHeaders, Ipv4_PortsCutOff_AreNone) {
  const FrameHeaders headers =
      Parse(kMacs + "0800 4500 001e 0001 0000 40 11 0000 c0000201 c0000202 0044 00");
  EXPECT_EQ(headers.ipVersion, 4U);
  EXPECT_FALSE(headers.l4SrcPort);
  EXPECT_EQ(headers.l4Length, 3U);
}

TEST(IpHeaders, OtherProtocols_HaveNoPorts) {
  const FrameHeaders headers = Parse(kIgmpReport);
  EXPECT_EQ(headers.ipProtocol, 2);
  EXPECT_FALSE(headers.l4SrcPort);
  EXPECT_EQ(headers.l4Length, 8U);
}

TEST(IpHeaders, Ipv4_DamagedHeader_GivesNoFields) {
  const std::string rest = "0001 0000 40 11 0000 c0000201 c0000202 0044 0043 000a 0000 6869";
  for (std::string frame : {
           kMacs + "0800 5500 001e",  // version 5
           kMacs + "0800 4400 001e",  // IHL below 5
           kMacs + "0800 4f00 001e",  // IHL beyond the frame
           kMacs + "0800 4500 0013",  // total length below the header
           kMacs + "0800 6500 001e",  // an IPv6 nibble under the IPv4 EtherType
           kMacs + "86dd 4500 001e",  // and the other way round
       }) {
    SCOPED_TRACE(frame);
    frame += rest;
    ExpectNoIp(Parse(frame));
  }
}

TEST(IpHeaders, CutHeader_GivesNoFields) {
  const Bytes four = Hex(kUdp4);
  const Bytes six = Hex(kTcp6);
  int tried = 0;
  for (const auto& [frame, headerEnd] : {std::pair(four, 34U), std::pair(six, 54U)}) {
    for (std::size_t length = 14; length < headerEnd; ++length, ++tried) {
      FrameHeaders headers;
      ParseFrame(Bytes(frame.begin(), frame.begin() + static_cast<std::ptrdiff_t>(length)),
                 headers);
      ExpectNoIp(headers);
    }
  }
  EXPECT_EQ(tried, 20 + 40);
}

TEST(IpHeaders, Ipv6_AllFieldsAreRead) {
  const FrameHeaders headers = Parse(kTcp6);
  EXPECT_EQ(headers.ipVersion, 6U);
  EXPECT_EQ(headers.tos, 0xB8);
  EXPECT_EQ(headers.ipProtocol, 6);
  EXPECT_EQ(FormatIp(headers.srcIp), "2001:db8::1");
  EXPECT_EQ(FormatIp(headers.dstIp), "2001:db8::2");
  EXPECT_EQ(headers.l4SrcPort, 1024);
  EXPECT_EQ(headers.l4DstPort, 80);
  EXPECT_EQ(headers.l4Offset, 54U);
  EXPECT_EQ(headers.l4Length, 20U);
}

/// An IPv6 frame with these bytes behind the fixed header.
std::string Six(const std::string& next, const std::string& payload) {
  const std::size_t length = Hex(payload).size();
  return kMacs + "86dd 60000000 " + HexNumber(static_cast<std::uint32_t>(length)).substr(2) + next +
         "40 20010db8000000000000000000000001 20010db8000000000000000000000002 " + payload;
}

const std::string kUdpPorts = "0044 0043 0008 0000";

TEST(IpHeaders, Ipv6_EveryExtensionHeader_IsFollowed) {
  const FrameHeaders headers = Parse(Six("00",
                                         "3c00 0104 0000 0000"    // hop-by-hop options
                                         "2b01 0104 0000 0000"    // destination options, 16
                                         "0000 0000 0000 0000"    //   bytes
                                         "2c00 0000 0000 0000"    // routing
                                         "1100 0001 0000 0001" +  // first fragment
                                             kUdpPorts));
  EXPECT_EQ(headers.ipProtocol, 17);
  EXPECT_EQ(headers.l4SrcPort, 68);
  EXPECT_EQ(headers.l4DstPort, 67);
  EXPECT_EQ(headers.l4Length, 8U);
}

TEST(IpHeaders, Ipv6_LaterFragment_HasAProtocolButNoPorts) {
  const FrameHeaders headers = Parse(Six("2c", "1100 0008 0000 0001" + kUdpPorts));
  EXPECT_EQ(headers.ipProtocol, 17);
  EXPECT_FALSE(headers.l4SrcPort);
}

TEST(IpHeaders, Ipv6_LaterFragment_ExtensionHeadersInItArePayload) {
  const FrameHeaders headers =
      Parse(Six("2c", "3c00 0008 0000 0001 1100 0000 0000 0000" + kUdpPorts));
  EXPECT_EQ(headers.ipProtocol, 60);
  EXPECT_FALSE(headers.l4SrcPort);
}

TEST(IpHeaders, Ipv6_ExtensionHeaderCutOff_GivesNoProtocol) {
  for (const std::string payload : {"", "1100 0000 0000 00", "1101 0000 0000 0000", "11ff"}) {
    const FrameHeaders headers = Parse(Six("3c", payload));
    EXPECT_EQ(headers.ipVersion, 6U) << payload;
    EXPECT_FALSE(headers.ipProtocol) << payload;
    EXPECT_FALSE(headers.l4SrcPort) << payload;
  }
}

TEST(IpHeaders, Ipv6_BytesBehindThePayloadLength_AreNotRead) {
  const FrameHeaders headers = Parse(Six("11", "") + kUdpPorts);
  EXPECT_EQ(headers.ipProtocol, 17);
  EXPECT_FALSE(headers.l4SrcPort);
}

TEST(IpHeaders, Ipv6_OtherNextHeaders_EndTheChain) {
  const FrameHeaders headers = Parse(Six("3b", "0044 0043"));
  EXPECT_EQ(headers.ipProtocol, 59);
  EXPECT_FALSE(headers.l4SrcPort);
}

TEST(IpHeaders, OtherEtherTypes_HaveNoIpFields) {
  ExpectNoIp(Parse(kArpRequest));
  ExpectNoIp(Parse(kUntagged));
}

}  // namespace
}  // namespace virtual_onu
