/// @file
/// The messages and the defaults of each protocol.
#include "frame/protocols.h"

#include <algorithm>

#include "base/text.h"
#include "frame/ip_headers.h"
#include "frame/wire_format.h"

namespace virtual_onu {
namespace {

constexpr unsigned kEchoIdentifier = 1;
constexpr unsigned kEchoSequence = 1;

Bytes Address(std::string_view text) {
  return ParseIp(text).value_or(Bytes());
}

template <typename Part>
void Default(std::optional<Part>& part, Part value) {
  if (!part) {
    part = std::move(value);
  }
}

/// The header that TCP, UDP and ICMPv6 count into their checksums, in the form of RFC 8200 clause
/// 8.1; that of IPv4 (RFC 768) has the same sum.
Bytes PseudoHeader(const FrameParts& parts, std::uint8_t protocol, std::size_t length) {
  Bytes header = *parts.srcIp;
  Append(header, *parts.dstIp);
  AppendU32(header, static_cast<std::uint32_t>(length));
  AppendU32(header, protocol);
  return header;
}

void AppendPayload(Bytes& message, const FrameParts& parts) {
  if (parts.payload) {
    Append(message, *parts.payload);
  }
}

Bytes PayloadMessage(const FrameParts& parts) {
  return parts.payload.value_or(Bytes());
}

Bytes UdpDatagram(const FrameParts& parts, ByteView payload) {
  constexpr std::size_t kHeaderSize = 8;
  constexpr std::size_t kChecksum = 6;
  const std::size_t length = kHeaderSize + payload.size();
  Bytes message;
  AppendU16(message, *parts.srcPort);
  AppendU16(message, *parts.dstPort);
  AppendU16(message, static_cast<unsigned>(length));
  AppendU16(message, 0);
  Append(message, payload);
  SetChecksum(message, kChecksum, PseudoHeader(parts, kProtocolUdp, length));
  // A checksum of 0 would mean that there is none (RFC 768).
  if (message[kChecksum] == 0 && message[kChecksum + 1] == 0) {
    message[kChecksum] = message[kChecksum + 1] = 0xFF;
  }
  return message;
}

Bytes UdpMessage(const FrameParts& parts) {
  return UdpDatagram(parts, parts.payload.value_or(Bytes()));
}

/// A segment that opens a connection.
Bytes TcpMessage(const FrameParts& parts) {
  constexpr unsigned kFiveWordsAndSyn = 0x5002;
  constexpr unsigned kWindow = 0xFFFF;
  Bytes message;
  AppendU16(message, *parts.srcPort);
  AppendU16(message, *parts.dstPort);
  AppendU32(message, 0);  // sequence number
  AppendU32(message, 0);  // acknowledgement number
  AppendU16(message, kFiveWordsAndSyn);
  AppendU16(message, kWindow);
  AppendU16(message, 0);  // checksum
  AppendU16(message, 0);  // urgent pointer
  AppendPayload(message, parts);
  SetChecksum(message, 16, PseudoHeader(parts, kProtocolTcp, message.size()));
  return message;
}

void SetIcmpChecksum(Bytes& message, const FrameParts& parts) {
  const bool six = parts.ipVersion == 6;
  SetChecksum(message, 2, six ? PseudoHeader(parts, kProtocolIcmpv6, message.size()) : Bytes());
}

Bytes EchoRequest(const FrameParts& parts) {
  constexpr unsigned kIcmpEcho = 8;
  constexpr unsigned kIcmpv6Echo = 128;
  Bytes message;
  AppendU8(message, parts.ipVersion == 6 ? kIcmpv6Echo : kIcmpEcho);
  AppendU8(message, 0);   // code
  AppendU16(message, 0);  // checksum
  AppendU16(message, kEchoIdentifier);
  AppendU16(message, kEchoSequence);
  AppendPayload(message, parts);
  SetIcmpChecksum(message, parts);
  return message;
}

// RFC 2113; both group protocols are sent with it.
constexpr std::array<std::uint8_t, 4> kRouterAlert = {0x94, 0x04, 0x00, 0x00};

/// Groups of the ranges for documentation (RFC 6676).
void IgmpDefaults(FrameParts& parts) {
  Default(parts.dstIp, Address("233.252.0.1"));
  Default(parts.ttl, std::uint8_t{1});
}

void MldDefaults(FrameParts& parts) {
  Default(parts.srcIp, Address("fe80::1"));
  Default(parts.dstIp, Address("ff0e::db8:0:1"));
  Default(parts.ttl, std::uint8_t{1});
}

/// An IGMPv2 report (RFC 2236) of the group that is the destination.
Bytes IgmpReport(const FrameParts& parts) {
  constexpr unsigned kVersion2Report = 0x16;
  Bytes message;
  AppendU8(message, kVersion2Report);
  AppendU8(message, 0);   // maximum response time
  AppendU16(message, 0);  // checksum
  Append(message, *parts.dstIp);
  SetChecksum(message, 2);
  return message;
}

/// An MLDv1 report (RFC 2710) of the group that is the destination, behind its hop-by-hop options.
Bytes MldReport(const FrameParts& parts) {
  constexpr unsigned kReport = 131;
  constexpr unsigned kRouterAlertOption = 0x0502;
  constexpr unsigned kPadTwo = 0x0100;
  Bytes report;
  AppendU8(report, kReport);
  AppendU8(report, 0);   // code
  AppendU16(report, 0);  // checksum
  AppendU32(report, 0);  // maximum response delay, reserved
  Append(report, *parts.dstIp);
  SetIcmpChecksum(report, parts);
  Bytes message;
  AppendU8(message, kProtocolIcmpv6);
  AppendU8(message, 0);  // one unit of 8 bytes
  AppendU16(message, kRouterAlertOption);
  AppendU16(message, 0);  // MLD
  AppendU16(message, kPadTwo);
  Append(message, report);
  return message;
}

void DhcpDefaults(FrameParts& parts) {
  Default(parts.srcIp, Address("0.0.0.0"));
  Default(parts.dstIp, Address("255.255.255.255"));
  Default(parts.srcPort, std::uint16_t{68});
  Default(parts.dstPort, std::uint16_t{67});
}

/// A DHCPDISCOVER (RFC 2131) of the smallest length that a BOOTP message has.
Bytes DhcpDiscover(const FrameParts& parts) {
  constexpr std::size_t kLength = 300;
  constexpr std::size_t kCookieOffset = 236;
  constexpr std::uint32_t kTransaction = 1;
  constexpr std::uint32_t kBroadcastFlag = 0x8000;  // the 16 bits before it are the seconds
  constexpr std::uint32_t kCookie = 0x63825363;
  Bytes message;
  AppendU32(message, 0x01010600);  // BOOTREQUEST, Ethernet, 6 bytes of address, no hops
  AppendU32(message, kTransaction);
  AppendU32(message, kBroadcastFlag);
  message.resize(message.size() + 4 * sizeof(std::uint32_t));  // addresses, all unknown
  Append(message, *parts.srcMac);
  message.resize(kCookieOffset);
  AppendU32(message, kCookie);
  AppendU32(message, 0x350101FF);  // message type DISCOVER, end
  message.resize(kLength);
  return message;
}

Bytes DhcpMessage(const FrameParts& parts) {
  return UdpDatagram(parts, parts.payload ? *parts.payload : DhcpDiscover(parts));
}

constexpr MacAddress kBroadcast = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};

void BroadcastDefaults(FrameParts& parts) {
  Default(parts.dstMac, kBroadcast);
}

Bytes ArpRequest(const FrameParts& parts) {
  constexpr unsigned kEthernet = 1;
  constexpr unsigned kAddressSizes = 0x0604;
  constexpr unsigned kRequest = 1;
  Bytes message;
  AppendU16(message, kEthernet);
  AppendU16(message, kEtherTypeIpv4);
  AppendU16(message, kAddressSizes);
  AppendU16(message, kRequest);
  Append(message, *parts.srcMac);
  Append(message, *parts.srcIp);
  Append(message, MacAddress{});
  Append(message, *parts.dstIp);
  return message;
}

void StpDefaults(FrameParts& parts) {
  constexpr MacAddress kBridgeGroup = {0x01, 0x80, 0xC2, 0x00, 0x00, 0x00};
  Default(parts.dstMac, kBridgeGroup);
}

void AppendBridgeId(Bytes& message, const FrameParts& parts) {
  constexpr unsigned kDefaultPriority = 0x8000;
  AppendU16(message, kDefaultPriority);
  Append(message, *parts.srcMac);
}

/// The configuration BPDU of a bridge that takes itself for the root (IEEE 802.1D clause 9.3.1),
/// times in 1/256 s.
Bytes StpMessage(const FrameParts& parts) {
  constexpr unsigned kFirstPort = 0x8001;
  Bytes message = {0x42, 0x42, 0x03};  // LLC
  AppendU32(message, 0);               // protocol, version, type CONFIG
  AppendU8(message, 0);                // flags
  AppendBridgeId(message, parts);
  AppendU32(message, 0);  // root path cost
  AppendBridgeId(message, parts);
  AppendU16(message, kFirstPort);
  AppendU16(message, 0);         // message age
  AppendU16(message, 20 << 8U);  // maximum age
  AppendU16(message, 2 << 8U);   // hello time
  AppendU16(message, 15 << 8U);  // forward delay
  return message;
}

/// A PADI (RFC 2516) with an empty service name, or with the tags given as payload.
Bytes PppoeInitiation(const FrameParts& parts) {
  constexpr unsigned kVersionAndType = 0x11;
  constexpr unsigned kPadi = 0x09;
  const Bytes tags = parts.payload.value_or(Bytes{0x01, 0x01, 0x00, 0x00});
  Bytes message;
  AppendU8(message, kVersionAndType);
  AppendU8(message, kPadi);
  AppendU16(message, 0);  // session
  AppendU16(message, static_cast<unsigned>(tags.size()));
  Append(message, tags);
  return message;
}

constexpr std::uint8_t kProtocolExperiment = 253;  // RFC 3692
constexpr std::uint8_t kHopByHopOptions = 0;
constexpr std::uint16_t kEtherTypeExperiment = 0x88B5;  // IEEE 802, local experimental

}  // namespace

constinit const FrameProtocol kPlainProtocol = {
    .name = "", .hasPayload = true, .message = PayloadMessage, .etherType = kEtherTypeExperiment};

constinit const FrameProtocol kIpProtocol = {.name = "",
                                             .overIpv4 = true,
                                             .overIpv6 = true,
                                             .hasAddresses = true,
                                             .hasPayload = true,
                                             .message = PayloadMessage,
                                             .ipv4Protocol = kProtocolExperiment,
                                             .ipv6Protocol = kProtocolExperiment};

constinit const FrameProtocol kUdpProtocol = {.name = "udp",
                                              .overIpv4 = true,
                                              .overIpv6 = true,
                                              .hasAddresses = true,
                                              .hasPorts = true,
                                              .hasPayload = true,
                                              .message = UdpMessage,
                                              .ipv4Protocol = kProtocolUdp,
                                              .ipv6Protocol = kProtocolUdp};

constinit const FrameProtocol kTcpProtocol = {.name = "tcp",
                                              .overIpv4 = true,
                                              .overIpv6 = true,
                                              .hasAddresses = true,
                                              .hasPorts = true,
                                              .hasPayload = true,
                                              .message = TcpMessage,
                                              .ipv4Protocol = kProtocolTcp,
                                              .ipv6Protocol = kProtocolTcp};

constinit const FrameProtocol kIcmpProtocol = {.name = "icmp",
                                               .overIpv4 = true,
                                               .overIpv6 = true,
                                               .hasAddresses = true,
                                               .hasPayload = true,
                                               .message = EchoRequest,
                                               .ipv4Protocol = kProtocolIcmp,
                                               .ipv6Protocol = kProtocolIcmpv6};

constinit const FrameProtocol kIgmpProtocol = {.name = "igmp",
                                               .overIpv4 = true,
                                               .hasAddresses = true,
                                               .defaults = IgmpDefaults,
                                               .message = IgmpReport,
                                               .ipv4Protocol = kProtocolIgmp,
                                               .ipv4Options = kRouterAlert};

constinit const FrameProtocol kMldProtocol = {.name = "mld",
                                              .overIpv6 = true,
                                              .hasAddresses = true,
                                              .defaults = MldDefaults,
                                              .message = MldReport,
                                              .ipv6Protocol = kHopByHopOptions};

constinit const FrameProtocol kDhcpProtocol = {.name = "dhcp",
                                               .overIpv4 = true,
                                               .hasAddresses = true,
                                               .hasPorts = true,
                                               .hasPayload = true,
                                               .defaults = DhcpDefaults,
                                               .message = DhcpMessage,
                                               .ipv4Protocol = kProtocolUdp};

constinit const FrameProtocol kArpProtocol = {.name = "arp",
                                              .hasAddresses = true,
                                              .defaults = BroadcastDefaults,
                                              .message = ArpRequest,
                                              .etherType = kEtherTypeArp};

constinit const FrameProtocol kStpProtocol = {
    .name = "stp", .defaults = StpDefaults, .message = StpMessage};

constinit const FrameProtocol kPppoeProtocol = {.name = "pppoe",
                                                .hasPayload = true,
                                                .defaults = BroadcastDefaults,
                                                .message = PppoeInitiation,
                                                .etherType = kEtherTypePppoeDiscovery};

}  // namespace virtual_onu
