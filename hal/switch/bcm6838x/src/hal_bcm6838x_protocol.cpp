/// @file
/// The protocol predicates: MLD, DHCP towards a server, PPPoE.
#include <cstdint>

#include <hal_bcm6838x.h>

#include "hal_bcm6838x_frame.h"
#include "hal_bcm6838x_log.h"

using namespace hal;

namespace {

constexpr uint32_t kProtocolUdp = 17;
constexpr uint32_t kProtocolIcmpv6 = 58;

/// Where the type field lies behind any number of customer tags.
uint32_t TypeBehindTags(FrameView frame) {
  uint32_t offset = kTypeOffset;
  while (frame.u16(offset) == kTypeCustomerTag) {
    offset += kTagSize;
  }
  return offset;
}

bool IsSkippedExtension(uint32_t nextHeader) {
  switch (nextHeader) {
    case 0:   // hop-by-hop options
    case 41:  // IPv6
    case 43:  // routing
    case 44:  // fragment
    case 50:  // encapsulating security payload
    case 51:  // authentication
      return true;
    default:
      return false;
  }
}

bool IsMldType(uint32_t icmpType) {
  switch (icmpType) {
    case 130:  // query
    case 131:  // report, version 1
    case 132:  // done
    case 143:  // report, version 2
      return true;
    default:
      return false;
  }
}

/// Whether the ICMPv6 message behind an IPv6 header is one of MLD. Headers lie below `end`.
bool HoldsMld(const uint8_t* ipv6, uint32_t end) {
  constexpr uint32_t kHeaderSize = 40;
  constexpr uint32_t kExtensionUnit = 8;
  uint32_t nextHeader = ipv6[6];
  uint32_t position = kHeaderSize;
  while (IsSkippedExtension(nextHeader)) {
    if (position >= end) {
      return false;
    }
    // Required: mld-extensions-in-units-of-8
    nextHeader = ipv6[position];
    position += (ipv6[position + 1] + 1U) * kExtensionUnit;
  }
  return nextHeader == kProtocolIcmpv6 && position < end && IsMldType(ipv6[position]);
}

}  // namespace

uint32_t BCM6838X_IsMldPacket(const uint8_t* frame, uint32_t length) {
  /// Behind the chip's own tag lies the type.
  constexpr uint32_t kChipTagSize = 10;
  /// Bytes that must follow the type's first byte and the last header that is looked at.
  // Required: mld-margin-of-25
  constexpr uint32_t kMargin = 25;
  /// Type field and tags, IPv6 header and margin: what is shorter holds no MLD message.
  constexpr uint32_t kShortest = 40 + kMargin + 1;
  if (HAL_IS_NULL(frame)) {
    return 0;
  }
  FrameView rest = {frame, length & 0xFFFF};
  const auto skip = [&rest](uint32_t count) {
    rest = rest.size < count ? FrameView{rest.data, 0}
                             : FrameView{rest.data + count, rest.size - count};
  };
  skip(kTypeOffset);
  if (rest.u16(0) == kTypeChipTag) {
    skip(kChipTagSize);
  } else if (rest.u8(0) == kTypeChipTag >> 8U) {
    return 0;
  }
  if (rest.u16(0) == kTypeCustomerTag) {
    skip(rest.u16(kTagSize) == kTypeCustomerTag ? 2 * kTagSize : kTagSize);
  }
  if (rest.size < kShortest || rest.u16(0) != kTypeIpv6) {
    return 0;
  }
  return HoldsMld(rest.data + kTypeSize, rest.size - kMargin) ? 1 : 0;
}

bool hal::IsDhcpFrame(FrameView frame) {
  constexpr uint32_t kServerPort = 67;
  // The port on which DHCPv6 servers and relays listen (RFC 8415, 7.2).
  // Required: dhcp-towards-servers-alone
  constexpr uint32_t kServerPortV6 = 547;
  const uint32_t type = TypeBehindTags(frame);
  const uint32_t ip = type + kTypeSize;
  switch (frame.u16(type)) {
    case kTypeIpv4:
      // Required: dhcp-header-of-20-bytes
      return frame.u8(ip + 9) == kProtocolUdp && frame.u16(ip + 22) == kServerPort;
    case kTypeIpv6:
      return frame.u8(ip + 6) == kProtocolUdp && frame.u16(ip + 42) == kServerPortV6;
    default:
      return false;
  }
}

bool hal::IsPppoeFrame(FrameView frame) {
  const uint32_t type = frame.u16(TypeBehindTags(frame));
  return type == kTypePppoeDiscovery || type == kTypePppoeSession;
}

uint32_t BCM6838X_IsDHCPProtocol(const uint8_t* frame) {
  if (HAL_IS_NULL(frame)) {
    return 0;
  }
  return IsDhcpFrame({frame, kFrameCapacity}) ? 1 : 0;
}

uint32_t BCM6838X_IsPPPoEProtocol(const uint8_t* frame) {
  if (HAL_IS_NULL(frame)) {
    return 0;
  }
  return IsPppoeFrame({frame, kFrameCapacity}) ? 1 : 0;
}
