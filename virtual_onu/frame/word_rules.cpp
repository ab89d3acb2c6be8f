/// @file
/// The table of words.
#include "frame/word_rules.h"

#include <array>

#include "base/text.h"
#include "frame/protocols.h"

namespace virtual_onu {
namespace {

constexpr std::uint32_t kMaxVid = 0xFFF;
constexpr std::uint32_t kMaxPcp = 7;
constexpr std::uint32_t kMaxPort = 0xFFFF;
constexpr std::uint32_t kMaxDscp = 0x3F;
constexpr std::uint32_t kMaxByte = 0xFF;

template <typename Number>
bool Take(Number& target, std::string_view argument, std::uint32_t max) {
  const std::optional<std::uint32_t> number = ParseDecimal(argument, max);
  if (number) {
    target = static_cast<Number>(*number);
  }
  return number.has_value();
}

template <typename Number>
bool Take(std::optional<Number>& target, std::string_view argument, std::uint32_t max) {
  return Take(target.emplace(), argument, max);
}

/// "8100" or "0x8100".
bool TakeEtherType(std::optional<std::uint16_t>& target, std::string_view argument) {
  constexpr std::size_t kDigits = 4;
  if (argument.starts_with("0x")) {
    argument.remove_prefix(2);
  }
  const std::optional<Bytes> bytes = ParseHex(argument);
  if (!bytes || argument.size() != kDigits) {
    return false;
  }
  target = static_cast<std::uint16_t>(ReadBigEndian(*bytes));
  return true;
}

bool TakeMac(std::optional<MacAddress>& target, std::string_view argument) {
  target = ParseMac(argument);
  return target.has_value();
}

bool TakeAddress(FrameDraft& draft, std::optional<Bytes>& target, std::string_view argument) {
  target = ParseIp(argument);
  if (!target) {
    return false;
  }
  draft.uses.back().version = target->size() > 4 ? 6 : 4;
  return true;
}

bool TakeTag(FrameDraft& draft, std::uint16_t tpid, std::string_view argument) {
  return Take(draft.parts.tags.emplace_back(VlanTag{.tpid = tpid}).vid, argument, kMaxVid);
}

bool TakeTpid(FrameDraft& draft, std::string_view argument) {
  std::optional<std::uint16_t> tpid;
  if (TakeEtherType(tpid, argument)) {
    draft.parts.tags.back().tpid = *tpid;
  }
  return tpid.has_value();
}

bool TakePayload(FrameDraft& draft, std::string_view argument) {
  draft.parts.payload = ParseHex(argument);
  return draft.parts.payload && draft.parts.payload->size() <= kMaxFrameLength;
}

bool TakeLength(FrameDraft& draft, std::string_view argument) {
  return Take(draft.length, argument, kMaxFrameLength) && draft.length >= kEthernetHeaderSize;
}

constexpr std::string_view kMac = "a MAC address such as 02:00:00:00:00:01";
constexpr std::string_view kVid = "a VID 0..4095";
constexpr std::string_view kEtherType = "four hexadecimal digits such as 88b5";
constexpr std::string_view kAddress = "an IPv4 or IPv6 address";
constexpr std::string_view kPort = "a port 0..65535";

constexpr std::array kRules = {
    WordRule{
        .help = {"dst", "MAC",
                 "destination MAC address; without it the one that the protocol "
                 "or the IP address calls for, else 02:00:00:00:00:02"},
        .expected = kMac,
        .apply = [](FrameDraft& draft,
                    std::string_view argument) { return TakeMac(draft.parts.dstMac, argument); }},
    WordRule{
        .help = {"src", "MAC", "source MAC address; 02:00:00:00:00:01 without it"},
        .expected = kMac,
        .apply = [](FrameDraft& draft,
                    std::string_view argument) { return TakeMac(draft.parts.srcMac, argument); }},
    WordRule{
        .help = {"vlan", "VID", "a further tag, outermost first, with TPID 8100"},
        .expected = kVid,
        .apply = [](FrameDraft& draft,
                    std::string_view argument) { return TakeTag(draft, kTpidCustomer, argument); },
        .repeatable = true},
    WordRule{
        .help = {"svlan", "VID", "a further tag, outermost first, with TPID 88a8"},
        .expected = kVid,
        .apply = [](FrameDraft& draft,
                    std::string_view argument) { return TakeTag(draft, kTpidService, argument); },
        .repeatable = true},
    WordRule{.help = {"pcp", "N", "priority of the tag before it, 0..7"},
             .expected = "a priority 0..7",
             .apply =
                 [](FrameDraft& draft, std::string_view argument) {
                   return Take(draft.parts.tags.back().pcp, argument, kMaxPcp);
                 },
             .need = Need::TagBefore,
             .repeatable = true},
    WordRule{.help = {"dei", "", "drop eligible indicator of the tag before it"},
             .apply =
                 [](FrameDraft& draft, std::string_view /*argument*/) {
                   draft.parts.tags.back().dei = true;
                   return true;
                 },
             .need = Need::TagBefore,
             .repeatable = true},
    WordRule{.help = {"tpid", "HEX", "tag protocol identifier of the tag before it"},
             .expected = kEtherType,
             .apply = TakeTpid,
             .need = Need::TagBefore,
             .repeatable = true},
    WordRule{.help = {"ethertype", "HEX",
                      "EtherType behind the tags; 88b5 in a frame without a protocol"},
             .expected = kEtherType,
             .apply =
                 [](FrameDraft& draft, std::string_view argument) {
                   return TakeEtherType(draft.parts.etherType, argument);
                 }},
    WordRule{.help = {"arp", "", "ARP request for dip"}, .protocol = &kArpProtocol},
    WordRule{.help = {"ip", "", "IPv4"},
             .apply =
                 [](FrameDraft& draft, std::string_view /*argument*/) {
                   draft.uses.back().version = 4;
                   return true;
                 },
             .need = Need::Ip},
    WordRule{.help = {"ip6", "", "IPv6; follows from IPv6 addresses"},
             .apply =
                 [](FrameDraft& draft, std::string_view /*argument*/) {
                   draft.uses.back().version = 6;
                   return true;
                 },
             .need = Need::Ip},
    WordRule{.help = {"udp", "", "UDP datagram"}, .protocol = &kUdpProtocol},
    WordRule{.help = {"tcp", "", "TCP segment that opens a connection"}, .protocol = &kTcpProtocol},
    WordRule{.help = {"icmp", "", "echo request, ICMPv6 over IPv6"}, .protocol = &kIcmpProtocol},
    WordRule{.help = {"igmp", "", "IGMPv2 report of the group dip"}, .protocol = &kIgmpProtocol},
    WordRule{.help = {"mld", "", "MLDv1 report of the group dip"}, .protocol = &kMldProtocol},
    WordRule{
        .help = {"dhcp", "", "DHCPDISCOVER: UDP from 0.0.0.0 port 68 to 255.255.255.255 port 67"},
        .protocol = &kDhcpProtocol},
    WordRule{.help = {"pppoe", "", "PPPoE discovery initiation (PADI), broadcast"},
             .protocol = &kPppoeProtocol},
    WordRule{.help = {"stp", "", "configuration BPDU to 01:80:c2:00:00:00"},
             .protocol = &kStpProtocol},
    WordRule{
        .help = {"sip", "ADDR",
                 "source IP address; 192.0.2.1 or 2001:db8::1 without it, in mld fe80::1"},
        .expected = kAddress,
        .apply =
            [](FrameDraft& draft, std::string_view argument) {
              return TakeAddress(draft, draft.parts.srcIp, argument);
            },
        .need = Need::Addresses},
    WordRule{
        .help = {"dip", "ADDR",
                 "destination IP address; 192.0.2.2 or 2001:db8::2 without it, "
                 "in igmp 233.252.0.1, in mld ff0e::db8:0:1"},
        .expected = kAddress,
        .apply =
            [](FrameDraft& draft, std::string_view argument) {
              return TakeAddress(draft, draft.parts.dstIp, argument);
            },
        .need = Need::Addresses},
    WordRule{
        .help = {"sport", "N", "source port; 49152 without it"},
        .expected = kPort,
        .apply =
            [](FrameDraft& draft, std::string_view argument) {
              return Take(draft.parts.srcPort, argument, kMaxPort);
            },
        .need = Need::Ports},
    WordRule{
        .help = {"dport", "N", "destination port; 9 without it"},
        .expected = kPort,
        .apply =
            [](FrameDraft& draft, std::string_view argument) {
              return Take(draft.parts.dstPort, argument, kMaxPort);
            },
        .need = Need::Ports},
    WordRule{
        .help = {"dscp", "N", "differentiated services code point, 0..63"},
        .expected = "a code point 0..63",
        .apply =
            [](FrameDraft& draft, std::string_view argument) {
              return Take(draft.parts.dscp, argument, kMaxDscp);
            },
        .need = Need::Ip},
    WordRule{
        .help = {"ttl", "N", "time to live or hop limit; 64 without it, 1 in igmp and mld"},
        .expected = "a number 0..255",
        .apply =
            [](FrameDraft& draft, std::string_view argument) {
              return Take(draft.parts.ttl, argument, kMaxByte);
            },
        .need = Need::Ip},
    WordRule{
        .help = {"proto", "N", "IP protocol number; 253 in a packet without a protocol"},
        .expected = "a number 0..255",
        .apply =
            [](FrameDraft& draft, std::string_view argument) {
              return Take(draft.parts.ipProtocol, argument, kMaxByte);
            },
        .need = Need::Ip},
    WordRule{.help = {"payload", "HEX", "bytes behind the last header"},
             .expected = "pairs of hexadecimal digits, at most 9216 bytes",
             .apply = TakePayload,
             .need = Need::Payload},
    WordRule{
        .help = {"length", "N", "length of the frame, padded with zeros; at least 60 without it"},
        .expected = "a length 14..9216",
        .apply = TakeLength},
};

}  // namespace

std::span<const WordRule> WordRules() {
  return kRules;
}

}  // namespace virtual_onu
