/// @file
/// Recognition of the protocols that are trapped.
#include "datapath/traps.h"

#include <algorithm>
#include <array>
#include <span>

#include <brmgr_record.h>

#include "device/event_record.h"
#include "frame/ip_headers.h"

namespace virtual_onu {
namespace {

constexpr std::uint16_t kDhcpServerPort = 67;
constexpr std::uint16_t kDhcpv6ServerPort = 547;

/// Addresses of the bridge group and of its neighbours, the last byte aside.
constexpr std::array<std::uint8_t, 5> kBridgeGroup = {0x01, 0x80, 0xC2, 0x00, 0x00};

bool IsToBridgeGroup(const FrameHeaders& headers) {
  return std::ranges::equal(std::span(headers.dstMac).first<kBridgeGroup.size()>(), kBridgeGroup);
}

/// Types of ICMPv6: query, report and done of MLDv1 (RFC 2710), report of MLDv2 (RFC 3810).
bool IsMld(ByteView frame, const FrameHeaders& headers) {
  constexpr std::array<std::uint8_t, 4> kMldTypes = {130, 131, 132, 143};
  return headers.ipVersion == 6 && headers.ipProtocol == kProtocolIcmpv6 && headers.l4Length > 0 &&
         std::ranges::find(kMldTypes, frame[headers.l4Offset]) != kMldTypes.end();
}

bool IsMulticastControl(ByteView frame, const FrameHeaders& headers) {
  return (headers.ipVersion == 4 && headers.ipProtocol == kProtocolIgmp) || IsMld(frame, headers);
}

bool IsPppoeDiscovery(const FrameHeaders& headers) {
  return headers.etherType == kEtherTypePppoeDiscovery;
}

}  // namespace

bool IsToDhcpServer(const FrameHeaders& headers) {
  const std::uint16_t port = headers.ipVersion == 6 ? kDhcpv6ServerPort : kDhcpServerPort;
  return headers.ipProtocol == kProtocolUdp && headers.l4DstPort == port;
}

bool IsTrapped(const TrapTables& traps, PortId port, ByteView frame, const FrameHeaders& headers) {
  return (traps.multicastControl && IsMulticastControl(frame, headers)) ||
         (traps.dhcp.contains(port.uni) && IsToDhcpServer(headers)) ||
         (traps.pppoe.contains(port.uni) && IsPppoeDiscovery(headers));
}

std::uint32_t EventTypeOf(PortId port, ByteView frame, const FrameHeaders& headers, bool byFlow) {
  if (IsMulticastControl(frame, headers)) {
    return port.isWan() ? BRMGR_EVENT_MCAST_OUT : BRMGR_EVENT_MCAST_IN;
  }
  if (byFlow) {
    return IsToBridgeGroup(headers) ? static_cast<std::uint32_t>(BRMGR_EVENT_BPDU) : kHostEvent;
  }
  return IsToDhcpServer(headers) ? BRMGR_EVENT_DHCP : BRMGR_EVENT_PPPOE;
}

}  // namespace virtual_onu
