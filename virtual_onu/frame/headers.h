/// @file
/// What the headers of an Ethernet frame hold: addresses, VLAN tags (IEEE 802.1Q clause 9), and the
/// fields that ingress classes compare. How they are read is not known here.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "base/bytes.h"

namespace virtual_onu {

constexpr std::uint16_t kTpidCustomer = 0x8100;  ///< C-TAG, IEEE 802.1Q table 9-1
constexpr std::uint16_t kTpidService = 0x88A8;   ///< S-TAG, IEEE 802.1Q table 9-1

/// Values of the type/length field below this one are lengths (IEEE 802.3 clause 3.2.6).
constexpr std::uint16_t kMinEtherType = 0x0600;
constexpr std::uint16_t kEtherTypeIpv4 = 0x0800;
constexpr std::uint16_t kEtherTypeArp = 0x0806;
constexpr std::uint16_t kEtherTypeIpv6 = 0x86DD;
constexpr std::uint16_t kEtherTypePppoeDiscovery = 0x8863;
constexpr std::uint16_t kEtherTypePppoeSession = 0x8864;

constexpr std::size_t kMacSize = 6;
constexpr std::size_t kTagSize = 4;
constexpr std::size_t kEthernetHeaderSize = 14;

/// A tag is recognised by these two TPIDs and no other.
constexpr bool IsTagTpid(std::uint16_t tpid) {
  return tpid == kTpidCustomer || tpid == kTpidService;
}

struct VlanTag {
  std::uint16_t tpid = kTpidCustomer;
  std::uint8_t pcp = 0;
  bool dei = false;
  std::uint16_t vid = 0;
  bool operator==(const VlanTag&) const = default;
};

/// What was found in a frame's headers; fields that the frame does not have are empty.
struct FrameHeaders {
  std::array<std::uint8_t, kMacSize> dstMac = {};
  std::array<std::uint8_t, kMacSize> srcMac = {};
  std::vector<VlanTag> tags;      ///< outermost first
  std::uint16_t etherType = 0;    ///< type/length field; below kMinEtherType it is a length
  std::size_t payloadOffset = 0;  ///< first byte behind the EtherType
  /// 4 or 6; nothing when the IP header is damaged or cut off
  std::optional<std::uint32_t> ipVersion;
  Bytes srcIp;  ///< 4 or 16 bytes, or none
  Bytes dstIp;
  /// Protocol behind the IP header, in IPv6 behind the extension headers; nothing when these are
  /// cut off.
  std::optional<std::uint8_t> ipProtocol;
  std::optional<std::uint8_t> tos;  ///< IPv4 TOS byte or IPv6 traffic class
  std::size_t l4Offset = 0;         ///< first byte behind the IP headers
  std::size_t l4Length = 0;         ///< bytes from there on; 0 in a fragment other than the first
  std::optional<std::uint16_t> l4SrcPort;  ///< TCP and UDP
  std::optional<std::uint16_t> l4DstPort;
};

}  // namespace virtual_onu
