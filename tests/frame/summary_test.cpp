/// @file
/// The one line about a frame.
#include "frame/summary.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/sample_frames.h"

namespace virtual_onu {
namespace {

const std::string kAddresses = "02:00:00:00:00:02 < 02:00:00:00:00:01 ";

std::string Summary(const std::string& frame) {
  return SummarizeFrame(Hex(frame));
}

TEST(FrameSummary, Samples_ReadLikeThis) {
  const std::vector<std::pair<std::string, std::string>> samples = {
      {kUntagged, kAddresses + "ethertype 0x88b5 length 16"},
      {kTagged, kAddresses + "vlan 100 pcp 5 ethertype 0x88b5 length 20"},
      {kDoubleTagged, kAddresses + "svlan 200 pcp 3 dei vlan 100 pcp 5 ethertype 0x88b5 length 24"},
      {kUdp4, kAddresses + "dhcp 192.0.2.1:68 > 192.0.2.2:67 length 44"},
      {kUdp4Fragment, kAddresses + "udp 192.0.2.1 > 192.0.2.2 length 44"},
      {kTcp6, kAddresses + "tcp [2001:db8::1]:1024 > [2001:db8::2]:80 length 74"},
      {kIgmpReport,
       "01:00:5e:01:01:01 < 02:00:00:00:00:01 igmp report 192.0.2.1 > 239.1.1.1 length 46"},
      {kMldReport,
       "33:33:00:01:00:03 < 02:00:00:00:00:01 mld report fe80::1 > ff02::1:3 length 86"},
      {kBpdu, "01:80:c2:00:00:00 < 02:00:00:00:00:01 stp config length 52"},
      {kArpRequest,
       "ff:ff:ff:ff:ff:ff < 02:00:00:00:00:01 arp request 192.0.2.1 > 192.0.2.2 length 42"},
      {kPadi, "ff:ff:ff:ff:ff:ff < 02:00:00:00:00:01 pppoe padi length 24"},
      {"", "runt length 0"},
      {kMacs + "88", "runt length 13"},
      {kMacs + "88a8 00c8 8100 00", kAddresses + "svlan 200 truncated tag length 19"},
  };
  for (const auto& [frame, summary] : samples) {
    EXPECT_EQ(Summary(frame), summary);
  }
}

/// An IPv4 packet of a protocol (two digits) with a payload of 8 bytes.
std::string Packet(const std::string& protocol, const std::string& payload) {
  return kMacs + "0800 4500 001c 0000 0000 40 " + protocol + "0000 c0000201 c0000202 " + payload;
}

TEST(FrameSummary, IpProtocols_AreNamedByTheirMessages) {
  const std::vector<std::pair<std::string, std::string>> samples = {
      {Packet("01", "0800 0000 0001 0001"), "icmp echo-request 192.0.2.1 > 192.0.2.2"},
      {Packet("01", "0000 0000 0001 0001"), "icmp echo-reply 192.0.2.1 > 192.0.2.2"},
      {Packet("01", "0d00 0000 0001 0001"), "icmp type 13 192.0.2.1 > 192.0.2.2"},
      {Packet("02", "1100 0000 0000 0000"), "igmp query 192.0.2.1 > 192.0.2.2"},
      {Packet("02", "2200 0000 0000 0000"), "igmp v3-report 192.0.2.1 > 192.0.2.2"},
      {Packet("11", "c000 0222 0008 0000"), "dhcpv6 192.0.2.1:49152 > 192.0.2.2:546"},
      {Packet("11", "0043 0009 0008 0000"), "dhcp 192.0.2.1:67 > 192.0.2.2:9"},
      {Packet("11", "c000 0009 0008 0000"), "udp 192.0.2.1:49152 > 192.0.2.2:9"},
      {Packet("06", "0043 0044 0008 0000"), "tcp 192.0.2.1:67 > 192.0.2.2:68"},
      {Packet("2f", "0000 0000 0000 0000"), "ip protocol 47 192.0.2.1 > 192.0.2.2"},
  };
  for (const auto& [frame, summary] : samples) {
    EXPECT_EQ(Summary(frame), kAddresses + summary + " length 42");
  }
}

TEST(FrameSummary, CutAndDamagedFrames_SayWhatIsKnown) {
  const std::vector<std::pair<std::string, std::string>> samples = {
      {kMacs + "0800 4500", "ip damaged length 16"},
      {Packet("01", ""), "icmp 192.0.2.1 > 192.0.2.2 length 34"},
      {kMacs + "86dd 6000 0000 0000 3c 40 20010db8000000000000000000000001 "
               "20010db8000000000000000000000002",
       "ip cut 2001:db8::1 > 2001:db8::2 length 54"},
      {kMacs + "0806 0001 0800", "arp length 18"},
      {kMacs + "8863", "pppoe length 14"},
      {kMacs + "8863 1133", "pppoe type 51 length 16"},
      {kMacs + "8864 1100 0102 0000", "pppoe session 258 length 20"},
      {kMacs + "8864 1100 01", "pppoe session length 17"},
      {kMacs + "0003", "llc length 14"},
      {kMacs + "0003 aaaa03", "llc 0xaaaa length 17"},
      {kMacs + "0003 424203", "stp length 17"},
      {kMacs + "0007 424203 0000 00 80", "stp tcn length 21"},
      {kMacs + "0007 424203 0000 02 02", "stp rst length 21"},
  };
  for (const auto& [frame, summary] : samples) {
    EXPECT_EQ(Summary(frame), kAddresses + summary);
  }
}

TEST(FrameSummary, OtherArpOperations_AreNumbered) {
  EXPECT_EQ(
      Summary(kMacs + "0806 0001 0800 06 04 0009 020000000001 c0000201 000000000000 c0000202"),
      kAddresses + "arp type 9 192.0.2.1 > 192.0.2.2 length 42");
}

}  // namespace
}  // namespace virtual_onu
