/// @file
/// Frames in words: the bytes that they give, and the errors.
#include "frame/words.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "frame/frame.h"
#include "support/sample_frames.h"

namespace virtual_onu {
namespace {

std::vector<std::string> Split(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> words;
  for (std::string word; stream >> word;) {
    words.push_back(word);
  }
  return words;
}

Bytes Built(const std::string& words) {
  const FrameOrError frame = BuildFrame(Split(words));
  if (const auto* error = std::get_if<std::string>(&frame)) {
    ADD_FAILURE() << words << ": " << *error;
    return {};
  }
  return std::get<Bytes>(frame);
}

std::string ErrorOf(const std::string& words) {
  const FrameOrError frame = BuildFrame(Split(words));
  const auto* error = std::get_if<std::string>(&frame);
  return error ? *error : "a frame";
}

/// So many bytes of zeros in hexadecimal digits.
std::string Zeros(std::size_t bytes) {
  std::string digits(2 * bytes, '0');
  return digits;
}

/// The frame without the zeros at its end, so that a test names only what counts.
std::string Unpadded(const Bytes& frame) {
  std::string text = ToHex(frame);
  while (text.ends_with("00")) {
    text.resize(text.size() - 2);
  }
  return text;
}

struct Sample {
  std::string words;
  std::string frame;  ///< without the zeros at the end
};

// Headers by hand; tcpdump finds every checksum correct.
const std::vector<Sample>& Samples() {
  static const std::vector<Sample> samples = {
      {"vlan 1", kMacs + "8100 0001 88b5"},
      {"ethertype 0xcafe payload 0102", kMacs + "cafe 0102"},
      {"udp dport 67",
       kMacs + "0800 4500 001c 0000 4000 40 11 b6cd c0000201 c0000202 c000 0043 0008 bb96"},
      {"udp payload 68690a",
       kMacs + "0800 4500 001f 0000 4000 40 11 b6ca c0000201 c0000202 c000 0009 000b 4961 68690a"},
      {"udp ip6 sport 1 dport 2 payload ff",
       kMacs + "86dd 6000 0000 0009 11 40 20010db8000000000000000000000001 "
               "20010db8000000000000000000000002 0001 0002 0009 a563 ff"},
      {"tcp", kMacs + "0800 4500 0028 0000 4000 40 06 b6cc c0000201 c0000202 "
                      "c000 0009 00000000 00000000 5002 ffff 6bd5"},
      {"tcp ip6 dscp 46 ttl 3 payload 00ff01",
       kMacs + "86dd 6b80 0000 0017 06 03 20010db8000000000000000000000001 "
               "20010db8000000000000000000000002 c000 0009 00000000 00000000 5002 ffff 9262 0000 "
               "00ff01"},
      {"icmp payload 6869", kMacs + "0800 4500 001e 0000 4000 40 01 b6db c0000201 c0000202 "
                                    "08 00 8f94 0001 0001 6869"},
      {"icmp ip6", kMacs + "86dd 6000 0000 0008 3a 40 20010db8000000000000000000000001 "
                           "20010db8000000000000000000000002 80 00 2446 0001 0001"},
      {"igmp",
       "01005e7c0001 020000000001 0800 4600 0020 0000 4000 01 02 38d9 c0000201 e9fc0001 "
       "94040000 16 00 0002 e9fc0001"},
      {"mld",
       "333300000001 020000000001 86dd 6000 0000 0020 00 01 fe800000000000000000000000000001 "
       "ff0e00000000000000000db800000001 3a00 0502 0000 0100 83 00 649b 0000 0000 "
       "ff0e00000000000000000db800000001"},
      {"arp dip 10.0.0.2",
       "ffffffffffff 020000000001 0806 0001 0800 0604 0001 020000000001 "
       "c0000201 000000000000 0a000002"},
      {"stp src 02:00:00:00:00:05",
       "0180c2000000 020000000005 0026 424203 0000 00 00 00 8000020000000005 00000000 "
       "8000020000000005 8001 0000 1400 0200 0f"},
      {"pppoe", "ffffffffffff 020000000001 8863 11 09 0000 0004 0101"},
      {"pppoe payload 01030002abcd",
       "ffffffffffff 020000000001 8863 11 09 0000 0006 0103 0002 abcd"},
      {"ip proto 47 dscp 46 ttl 9 payload 01",
       kMacs + "0800 45b8 0015 0000 4000 09 2f ecfe c0000201 c0000202 01"},
      {"ip6", kMacs + "86dd 6000 0000 0000 fd 40 20010db8000000000000000000000001 "
                      "20010db8000000000000000000000002"},
      {"sip 2001:db8::7", kMacs + "86dd 6000 0000 0000 fd 40 20010db8000000000000000000000007 "
                                  "20010db8000000000000000000000002"},
      {"sip 10.0.0.1", kMacs + "0800 4500 0014 0000 4000 40 fd 6dea 0a000001 c0000202"},
  };
  return samples;
}

TEST(FrameWords, Samples_GiveTheseBytes) {
  for (const Sample& sample : Samples()) {
    EXPECT_EQ(Unpadded(Built(sample.words)), ToHex(Hex(sample.frame))) << sample.words;
  }
}

TEST(FrameWords, Samples_UseEveryWordButThoseOfOtherTests) {
  std::set<std::string, std::less<>> unused = {};
  for (const FrameWord& word : FrameWords()) {
    unused.emplace(word.word);
  }
  for (const Sample& sample : Samples()) {
    for (const std::string& word : Split(sample.words)) {
      unused.erase(word);
    }
  }
  EXPECT_EQ(unused, (std::set<std::string, std::less<>>{"dei", "dhcp", "dst", "length", "pcp",
                                                        "svlan", "tpid"}));
}

TEST(FrameWords, Tags_StandInTheOrderWritten) {
  const std::string words = "svlan 200 pcp 3 dei vlan 100 pcp 5 vlan 4095 tpid 9100";
  EXPECT_EQ(Unpadded(Built(words)), ToHex(Hex(kMacs + "88a8 70c8 8100 a064 9100 0fff 88b5")));
}

TEST(FrameWords, Tag_AttributesMayBeReplaced) {
  EXPECT_EQ(Unpadded(Built("vlan 1 pcp 3 pcp 7 tpid 88a8 tpid 8100")),
            ToHex(Hex(kMacs + "8100 e001 88b5")));
}

TEST(FrameWords, Dhcp_IsABroadcastDiscoverOf342Bytes) {
  const Bytes frame = Built("dhcp src 02:00:00:00:00:07");
  ASSERT_EQ(frame.size(), 342U);
  // The checksums are those that tcpdump confirms; the message follows RFC 2131 table 1.
  EXPECT_EQ(ToHex(ByteView(frame).first(42)),
            ToHex(Hex("ffffffffffff 020000000007 0800 4500 0148 0000 4000 40 11 39a6 00000000 "
                      "ffffffff 0044 0043 0134 8610")));
  const ByteView message = ByteView(frame).subspan(42);
  EXPECT_EQ(ToHex(message.first(12)), "010106000000000100008000");
  EXPECT_EQ(ToHex(message.subspan(28, 6)), "020000000007");
  EXPECT_EQ(ToHex(message.subspan(236, 8)), "63825363350101ff");
  EXPECT_EQ(std::count_if(message.begin(), message.end(), [](auto byte) { return byte != 0; }),
            5 + 2 + 8);
}

TEST(FrameWords, Dhcp_IsAShorthandWhosePartsCanBeGiven) {
  EXPECT_EQ(Built("dhcp payload 01 sip 192.0.2.1 dip 192.0.2.2 sport 67 dport 68"),
            Built("udp payload 01 sport 67 dport 68"));
  EXPECT_EQ(Unpadded(Built("dhcp payload 01")).substr(0, 24), "ffffffffffff020000000001");
}

TEST(FrameWords, Destination_FollowsFromTheIpAddress) {
  const auto destination = [](const std::string& words) {
    return FormatMac(ByteView(Built(words)).first(6));
  };
  EXPECT_EQ(destination("udp dip 224.0.0.251"), "01:00:5e:00:00:fb");
  EXPECT_EQ(destination("udp dip 239.255.1.2"), "01:00:5e:7f:01:02");
  EXPECT_EQ(destination("udp dip 240.0.0.1"), "02:00:00:00:00:02");
  EXPECT_EQ(destination("udp dip 255.255.255.255"), "ff:ff:ff:ff:ff:ff");
  EXPECT_EQ(destination("udp dip ff02::1:3"), "33:33:00:01:00:03");
  EXPECT_EQ(destination("udp dip fe80::1"), "02:00:00:00:00:02");
  EXPECT_EQ(destination("igmp dst 02:00:00:00:00:09"), "02:00:00:00:00:09");
  EXPECT_EQ(destination("arp dip 224.0.0.1"), "ff:ff:ff:ff:ff:ff");
}

TEST(FrameWords, UdpChecksumOfZero_IsSentAsAllOnes) {
  // With its own checksum as payload, the datagram's sum is 0xffff and its complement 0.
  const Bytes probe = Built("udp payload 0000");
  const std::string checksum = ToHex(ByteView(probe).subspan(40, 2));
  const Bytes frame = Built("udp payload " + checksum);
  EXPECT_EQ(ToHex(ByteView(frame).subspan(40, 2)), "ffff");
}

TEST(FrameWords, Length_PadsWithZeros) {
  EXPECT_EQ(Built("udp").size(), 60U);
  EXPECT_EQ(Built("vlan 1 udp").size(), 60U);
  EXPECT_EQ(Built("udp ip6").size(), 62U);
  EXPECT_EQ(Built("length 14").size(), 14U);
  EXPECT_EQ(Built("udp length 42").size(), 42U);
  EXPECT_EQ(Built("length 9216").size(), 9216U);
  const Bytes frame = Built("udp length 1500");
  EXPECT_EQ(frame.size(), 1500U);
  EXPECT_TRUE(std::all_of(frame.begin() + 42, frame.end(), [](auto byte) { return byte == 0; }));
}

TEST(FrameWords, EtherType_ReplacesThatOfTheProtocol) {
  EXPECT_EQ(Unpadded(Built("udp ethertype 86dd")).substr(24, 8), "86dd4500");
  EXPECT_EQ(ToHex(Built("ethertype 8100 length 14")), ToHex(Hex(kMacs + "8100")));
}

TEST(FrameWords, Order_OfTheOtherWordsDoesNotMatter) {
  EXPECT_EQ(Built("dport 67 vlan 100 udp pcp 5"), Built("udp vlan 100 pcp 5 dport 67"));
}

TEST(FrameWords, HexadecimalDigits_AreTheFrameItself) {
  EXPECT_EQ(Built("0180C200000002000000000188b5"), Hex("0180c2000000 020000000001 88b5"));
  EXPECT_EQ(Built("0180c200000002000000000188b5ff").size(), 15U);
}

TEST(FrameWords, Errors_NameTheWordItsPlaceAndWhatWasExpected) {
  const std::string mac = "a MAC address such as 02:00:00:00:00:01";
  const std::string type = "four hexadecimal digits such as 88b5";
  const std::vector<std::pair<std::string, std::string>> errors = {
      {"", R"(frame: expected words such as "udp vlan 100 dport 67", or hexadecimal digits)"},
      {"vlan 5000", R"(word 1 "vlan": expected a VID 0..4095, got "5000")"},
      {"udp vlan 4096", R"(word 2 "vlan": expected a VID 0..4095, got "4096")"},
      {"udp svlan x", R"(word 2 "svlan": expected a VID 0..4095, got "x")"},
      {"udp vlan", R"(word 2 "vlan": expected a VID 0..4095, got nothing)"},
      {"udp pcp 5", R"(word 2 "pcp": expected a vlan or svlan before it)"},
      {"dei vlan 1", R"(word 1 "dei": expected a vlan or svlan before it)"},
      {"tpid 8100 vlan 1", R"(word 1 "tpid": expected a vlan or svlan before it)"},
      {"vlan 1 pcp 8", R"(word 3 "pcp": expected a priority 0..7, got "8")"},
      {"vlan 1 tpid 810", R"(word 3 "tpid": expected )" + type + R"(, got "810")"},
      {"ethertype 088b5", R"(word 1 "ethertype": expected )" + type + R"(, got "088b5")"},
      {"dst 2:0:0:0:0:1", R"(word 1 "dst": expected )" + mac + R"(, got "2:0:0:0:0:1")"},
      {"udp src vlan 1", R"(word 2 "src": expected )" + mac + R"(, got "vlan")"},
      {"udp sip 10.0.0", R"(word 2 "sip": expected an IPv4 or IPv6 address, got "10.0.0")"},
      {"udp dip ::g", R"(word 2 "dip": expected an IPv4 or IPv6 address, got "::g")"},
      {"udp sport 65536", R"(word 2 "sport": expected a port 0..65535, got "65536")"},
      {"udp dport -1", R"(word 2 "dport": expected a port 0..65535, got "-1")"},
      {"udp dscp 64", R"(word 2 "dscp": expected a code point 0..63, got "64")"},
      {"udp ttl 256", R"(word 2 "ttl": expected a number 0..255, got "256")"},
      {"ip proto 256", R"(word 2 "proto": expected a number 0..255, got "256")"},
      {"udp payload 123",
       R"(word 2 "payload": expected pairs of hexadecimal digits, at most 9216 bytes, got "123")"},
      {"length 13", R"(word 1 "length": expected a length 14..9216, got "13")"},
      {"length 9217", R"(word 1 "length": expected a length 14..9216, got "9217")"},
      {"udp length 41", R"(word 2 "length": expected at least 42, the length of the frame without )"
                        R"(padding, got "41")"},
      {"udp tcp", R"(word 2 "tcp": expected one protocol, the frame is udp already)"},
      {"udp udp", R"(word 2 "udp": expected one protocol, the frame is udp already)"},
      {"dst 02:00:00:00:00:01 dst 02:00:00:00:00:02",
       R"(word 3 "dst": expected once, stands at word 1 already)"},
      {"sport 4", R"(word 1 "sport": expected udp, tcp or dhcp in the frame)"},
      {"icmp dport 4", R"(word 2 "dport": expected udp, tcp or dhcp in the frame)"},
      {"arp ttl 3", R"(word 2 "ttl": expected a frame with an IP header)"},
      {"ip arp", R"(word 1 "ip": expected a frame with an IP header)"},
      {"stp sip 10.0.0.1", R"(word 2 "sip": expected a frame with an IP header or arp)"},
      {"igmp payload 00", R"(word 2 "payload": expected a protocol that carries a payload)"},
      {"igmp ip6", R"(word 2 "ip6": expected IPv4 as in the rest of the frame)"},
      {"ip mld", R"(word 1 "ip": expected IPv6 as in the rest of the frame)"},
      {"arp sip ::1", R"(word 2 "sip": expected IPv4 as in the rest of the frame)"},
      {"ip ip6", R"(word 2 "ip6": expected IPv4 as in the rest of the frame)"},
      {"udp sip 10.0.0.1 dip ::1", R"(word 4 "dip": expected IPv4 as in the rest of the frame)"},
  };
  for (const auto& [words, error] : errors) {
    EXPECT_EQ(ErrorOf(words), error) << words;
  }
}

TEST(FrameWords, UnknownWord_ListsTheWords) {
  const std::string error = ErrorOf("udp vlna 3");
  EXPECT_EQ(error.find(R"(word 2 "vlna": expected one of dst, src, vlan, )"), 0U) << error;
  for (const FrameWord& word : FrameWords()) {
    EXPECT_NE(error.find(word.word), std::string::npos) << word.word;
  }
}

TEST(FrameWords, HexadecimalDigitsThatAreNoFrame_SayHowMany) {
  const std::string expected =
      "expected an even number of hexadecimal digits, at least 28 and at most 18432, got ";
  EXPECT_EQ(ErrorOf("0102"), R"(word 1 "0102": )" + expected + "4");
  EXPECT_EQ(ErrorOf(std::string(29, '0')),
            R"(word 1 ")" + std::string(29, '0') + R"(": )" + expected + "29");
  EXPECT_EQ(ErrorOf(std::string(18434, '0')),
            R"(word 1 ")" + std::string(40, '0') + R"(...": )" + expected + "18434");
  EXPECT_EQ(Built(std::string(18432, '0')).size(), 9216U);
}

TEST(FrameWords, FrameThatIsTooLong_IsRefused) {
  EXPECT_EQ(ErrorOf("payload " + Zeros(9216)), "frame: expected at most 9216 bytes, got 9230");
  EXPECT_EQ(Built("payload " + Zeros(9202)).size(), 9216U);
  EXPECT_EQ(ErrorOf("payload " + Zeros(9217)),
            R"(word 1 "payload": expected pairs of hexadecimal digits, at most 9216 bytes, got ")" +
                std::string(40, '0') + R"(...")");
}

TEST(FrameWords, ErrorsOfStrangeWords_AreOneLine) {
  const std::vector<std::string> words = {"udp", "vlan", "1\n\x1b[2J\xff"};
  EXPECT_EQ(std::get<std::string>(BuildFrame(words)),
            R"(word 2 "vlan": expected a VID 0..4095, got "1??[2J?")");
}

TEST(FrameWords, Table_ExplainsEveryWordOnce) {
  std::set<std::string_view> seen;
  for (const FrameWord& word : FrameWords()) {
    EXPECT_FALSE(word.text.empty()) << word.word;
    EXPECT_TRUE(seen.insert(word.word).second) << word.word;
  }
  EXPECT_EQ(seen.size(), 28U);
}

}  // namespace
}  // namespace virtual_onu
