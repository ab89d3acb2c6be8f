/// @file
/// Parsing of IPv4 (RFC 791), IPv6 with its extension headers (RFC 8200), and the ports of TCP and
/// UDP.
#include "frame/ip_headers.h"

#include <algorithm>

namespace virtual_onu {
namespace {

constexpr std::size_t kIpv4HeaderSize = 20;
constexpr std::size_t kIpv6HeaderSize = 40;
constexpr std::size_t kExtensionUnit = 8;  ///< extension headers are multiples of it
constexpr std::size_t kPortsSize = 4;

constexpr std::uint8_t kHopByHopOptions = 0;
constexpr std::uint8_t kRouting = 43;
constexpr std::uint8_t kFragment = 44;
constexpr std::uint8_t kDestinationOptions = 60;

constexpr bool IsExtension(std::uint8_t header) {
  return header == kHopByHopOptions || header == kRouting || header == kFragment ||
         header == kDestinationOptions;
}

constexpr bool HasPorts(std::uint8_t protocol) {
  return protocol == kProtocolTcp || protocol == kProtocolUdp;
}

std::uint16_t ReadU16(ByteView bytes, std::size_t offset) {
  return static_cast<std::uint16_t>(ReadBigEndian(bytes.subspan(offset, 2)));
}

Bytes Copy(ByteView bytes, std::size_t offset, std::size_t size) {
  const ByteView part = bytes.subspan(offset, size);
  return {part.begin(), part.end()};
}

/// @param payload the packet's bytes behind the IP headers; empty in a fragment other than the
/// first
void SetPayload(ByteView frame, std::uint8_t protocol, ByteView payload, FrameHeaders& headers) {
  headers.ipProtocol = protocol;
  headers.l4Offset = static_cast<std::size_t>(payload.data() - frame.data());
  headers.l4Length = payload.size();
  if (HasPorts(protocol) && payload.size() >= kPortsSize) {
    headers.l4SrcPort = ReadU16(payload, 0);
    headers.l4DstPort = ReadU16(payload, 2);
  }
}

void ParseIpv4(ByteView frame, ByteView packet, FrameHeaders& headers) {
  if (packet.size() < kIpv4HeaderSize || packet[0] >> 4U != 4) {
    return;
  }
  const std::size_t headerSize = (packet[0] & 0xFU) * std::size_t{4};
  const std::size_t totalLength = ReadU16(packet, 2);
  if (headerSize < kIpv4HeaderSize || headerSize > packet.size() || totalLength < headerSize) {
    return;
  }
  headers.ipVersion = 4;
  headers.tos = packet[1];
  headers.srcIp = Copy(packet, 12, 4);
  headers.dstIp = Copy(packet, 16, 4);
  constexpr unsigned kOffsetMask = 0x1FFF;
  const bool laterFragment = (ReadU16(packet, 6) & kOffsetMask) != 0;
  // What follows the packet's own length is padding of the frame.
  const std::size_t end = laterFragment ? headerSize : std::min(totalLength, packet.size());
  SetPayload(frame, packet[9], packet.subspan(headerSize, end - headerSize), headers);
}

/// Bytes that the extension header at the start of `rest` takes; 0 when it is cut off.
std::size_t ExtensionSize(std::uint8_t header, ByteView rest) {
  if (rest.size() < kExtensionUnit) {
    return 0;
  }
  const std::size_t size =
      header == kFragment ? kExtensionUnit : (rest[1] + std::size_t{1}) * kExtensionUnit;
  return size <= rest.size() ? size : 0;
}

/// Follows the extension headers to the payload.
void ParseIpv6Payload(ByteView frame, std::uint8_t next, ByteView rest, FrameHeaders& headers) {
  bool laterFragment = false;
  while (IsExtension(next) && !laterFragment) {
    const std::size_t size = ExtensionSize(next, rest);
    if (size == 0) {
      return;
    }
    constexpr unsigned kOffsetMask = 0xFFF8;
    laterFragment = next == kFragment && (ReadU16(rest, 2) & kOffsetMask) != 0;
    next = rest[0];
    rest = rest.subspan(size);
  }
  SetPayload(frame, next, laterFragment ? rest.first(0) : rest, headers);
}

void ParseIpv6(ByteView frame, ByteView packet, FrameHeaders& headers) {
  if (packet.size() < kIpv6HeaderSize || packet[0] >> 4U != 6) {
    return;
  }
  headers.ipVersion = 6;
  headers.tos = static_cast<std::uint8_t>((ReadU16(packet, 0) >> 4U) & 0xFFU);
  headers.srcIp = Copy(packet, 8, 16);
  headers.dstIp = Copy(packet, 24, 16);
  const std::size_t length =
      std::min<std::size_t>(ReadU16(packet, 4), packet.size() - kIpv6HeaderSize);
  ParseIpv6Payload(frame, packet[6], packet.subspan(kIpv6HeaderSize, length), headers);
}

}  // namespace

void ParseIpHeaders(ByteView frame, FrameHeaders& headers) {
  const ByteView packet = frame.subspan(headers.payloadOffset);
  if (headers.etherType == kEtherTypeIpv4) {
    ParseIpv4(frame, packet, headers);
  } else if (headers.etherType == kEtherTypeIpv6) {
    ParseIpv6(frame, packet, headers);
  }
}

}  // namespace virtual_onu
