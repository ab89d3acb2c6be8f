/// @file
/// The network and transport headers of a frame, as far as ingress classes compare them.
#pragma once

#include <cstdint>

#include "base/bytes.h"
#include "frame/headers.h"

namespace virtual_onu {

constexpr std::uint8_t kProtocolIcmp = 1;
constexpr std::uint8_t kProtocolIgmp = 2;
constexpr std::uint8_t kProtocolTcp = 6;
constexpr std::uint8_t kProtocolUdp = 17;
constexpr std::uint8_t kProtocolIcmpv6 = 58;

/// Fills the IP and layer-4 fields of `headers`, whose EtherType and payload offset are known.
void ParseIpHeaders(ByteView frame, FrameHeaders& headers);

}  // namespace virtual_onu
