/// @file
/// The parts of which a frame is put together, and what a protocol is made of.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "base/bytes.h"
#include "frame/headers.h"

namespace virtual_onu {

/// The shortest Ethernet frame, without its frame check sequence.
constexpr std::size_t kMinFrameLength = 60;
/// The longest frame that is built.
constexpr std::size_t kMaxFrameLength = 9216;

struct FrameParts;

/// What a frame can carry. The parts that a protocol does not use are refused by the reader of the
/// words, not here.
struct FrameProtocol {
  std::string_view name;  ///< the word for it; empty where there is none
  bool overIpv4 = false;
  bool overIpv6 = false;
  bool hasAddresses = false;  ///< source and destination IP address
  bool hasPorts = false;
  bool hasPayload = false;
  /// Fills parts that nobody gave and whose default is not the general one; may be null.
  void (*defaults)(FrameParts& parts) = nullptr;
  /// What stands behind the IP header, or behind the EtherType.
  Bytes (*message)(const FrameParts& parts) = nullptr;
  std::uint8_t ipv4Protocol = 0;
  std::uint8_t ipv6Protocol = 0;  ///< next header of the IPv6 header
  ByteView ipv4Options = {};
  /// EtherType where there is no IP header; 0 stands for the message's length (IEEE 802.3).
  std::uint16_t etherType = 0;

  [[nodiscard]] bool overIp() const { return overIpv4 || overIpv6; }
};

using MacAddress = std::array<std::uint8_t, kMacSize>;

/// The parts of a frame; what is empty takes its default.
struct FrameParts {
  std::optional<MacAddress> dstMac;
  std::optional<MacAddress> srcMac;
  std::vector<VlanTag> tags;  ///< outermost first
  const FrameProtocol* protocol = nullptr;
  std::optional<std::uint16_t> etherType;  ///< in place of the protocol's own
  std::uint32_t ipVersion = 4;
  std::optional<Bytes> srcIp;  ///< of the length that belongs to `ipVersion`, like `dstIp`
  std::optional<Bytes> dstIp;
  std::optional<std::uint8_t> ipProtocol;
  std::uint8_t dscp = 0;
  std::optional<std::uint8_t> ttl;
  std::optional<std::uint16_t> srcPort;
  std::optional<std::uint16_t> dstPort;
  std::optional<Bytes> payload;
};

}  // namespace virtual_onu
