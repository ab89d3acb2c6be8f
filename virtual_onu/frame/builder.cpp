/// @file
/// Defaults, the IP header and the Ethernet header of a built frame.
#include "frame/builder.h"

#include <algorithm>

#include "base/text.h"
#include "frame/frame.h"
#include "frame/wire_format.h"

namespace virtual_onu {
namespace {

constexpr MacAddress kDefaultSource = {0x02, 0x00, 0x00, 0x00, 0x00, 0x01};
constexpr MacAddress kDefaultDestination = {0x02, 0x00, 0x00, 0x00, 0x00, 0x02};
constexpr std::uint16_t kDefaultSourcePort = 49152;   // the first dynamic port, RFC 6335
constexpr std::uint16_t kDefaultDestinationPort = 9;  // discard
constexpr std::uint8_t kDefaultTtl = 64;

/// Addresses of the ranges for documentation (RFC 5737, RFC 3849).
Bytes DefaultAddress(std::uint32_t ipVersion, bool source) {
  const std::string_view text = ipVersion == 6 ? (source ? "2001:db8::1" : "2001:db8::2")
                                               : (source ? "192.0.2.1" : "192.0.2.2");
  return ParseIp(text).value_or(Bytes());
}

/// The MAC address to which a host sends for an IP address: that of the group (RFC 1112, RFC 2464),
/// broadcast, or the default.
MacAddress DestinationOf(const Bytes& ip) {
  constexpr std::uint8_t kIpv6Multicast = 0xFF;
  constexpr std::uint8_t kIpv4Multicast = 0xE0;
  if (ip.size() > 4 && ip[0] == kIpv6Multicast) {
    return {0x33, 0x33, ip[12], ip[13], ip[14], ip[15]};
  }
  if (ip.size() > 4) {
    return kDefaultDestination;
  }
  if (std::all_of(ip.begin(), ip.end(), [](std::uint8_t byte) { return byte == 0xFF; })) {
    return {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
  }
  if ((ip[0] & 0xF0U) == kIpv4Multicast) {
    return {0x01, 0x00, 0x5E, static_cast<std::uint8_t>(ip[1] & 0x7FU), ip[2], ip[3]};
  }
  return kDefaultDestination;
}

void Complete(FrameParts& parts) {
  const FrameProtocol& protocol = *parts.protocol;
  if (protocol.defaults) {
    protocol.defaults(parts);
  }
  parts.srcMac = parts.srcMac.value_or(kDefaultSource);
  parts.srcIp = parts.srcIp.value_or(DefaultAddress(parts.ipVersion, true));
  parts.dstIp = parts.dstIp.value_or(DefaultAddress(parts.ipVersion, false));
  parts.dstMac =
      parts.dstMac.value_or(protocol.overIp() ? DestinationOf(*parts.dstIp) : kDefaultDestination);
  parts.srcPort = parts.srcPort.value_or(kDefaultSourcePort);
  parts.dstPort = parts.dstPort.value_or(kDefaultDestinationPort);
  parts.ttl = parts.ttl.value_or(kDefaultTtl);
  const bool six = parts.ipVersion == 6;
  parts.ipProtocol = parts.ipProtocol.value_or(six ? protocol.ipv6Protocol : protocol.ipv4Protocol);
}

Bytes Ipv4Packet(const FrameParts& parts, ByteView message) {
  constexpr std::size_t kHeaderSize = 20;
  constexpr unsigned kDontFragment = 0x4000;
  constexpr std::size_t kChecksum = 10;
  const ByteView options = parts.protocol->ipv4Options;
  const std::size_t headerSize = kHeaderSize + options.size();
  Bytes packet;
  AppendU8(packet, 0x40U | static_cast<unsigned>(headerSize / 4));
  AppendU8(packet, static_cast<unsigned>(parts.dscp) << 2U);
  AppendU16(packet, static_cast<unsigned>(headerSize + message.size()));
  AppendU16(packet, 0);  // identification
  AppendU16(packet, kDontFragment);
  AppendU8(packet, *parts.ttl);
  AppendU8(packet, *parts.ipProtocol);
  AppendU16(packet, 0);  // checksum
  Append(packet, *parts.srcIp);
  Append(packet, *parts.dstIp);
  Append(packet, options);
  SetChecksum(packet, kChecksum);
  Append(packet, message);
  return packet;
}

Bytes Ipv6Packet(const FrameParts& parts, ByteView message) {
  constexpr std::uint32_t kVersion = 0x60000000;
  constexpr unsigned kDscpShift = 22;
  Bytes packet;
  AppendU32(packet, kVersion | (static_cast<std::uint32_t>(parts.dscp) << kDscpShift));
  AppendU16(packet, static_cast<unsigned>(message.size()));
  AppendU8(packet, *parts.ipProtocol);
  AppendU8(packet, *parts.ttl);
  Append(packet, *parts.srcIp);
  Append(packet, *parts.dstIp);
  Append(packet, message);
  return packet;
}

std::uint16_t TypeOrLength(const FrameParts& parts, std::size_t length) {
  if (parts.etherType) {
    return *parts.etherType;
  }
  if (parts.protocol->overIp()) {
    return parts.ipVersion == 6 ? kEtherTypeIpv6 : kEtherTypeIpv4;
  }
  return parts.protocol->etherType != 0 ? parts.protocol->etherType
                                        : static_cast<std::uint16_t>(length);
}

}  // namespace

Bytes AssembleFrame(FrameParts parts) {
  Complete(parts);
  Bytes content = parts.protocol->message(parts);
  if (parts.protocol->overIp()) {
    content = parts.ipVersion == 6 ? Ipv6Packet(parts, content) : Ipv4Packet(parts, content);
  }
  Bytes frame(parts.dstMac->begin(), parts.dstMac->end());
  Append(frame, *parts.srcMac);
  AppendU16(frame, TypeOrLength(parts, content.size()));
  Append(frame, content);
  std::for_each(parts.tags.rbegin(), parts.tags.rend(),
                [&frame](const VlanTag& tag) { PushTag(frame, tag); });
  return frame;
}

}  // namespace virtual_onu
