/// @file
/// Messages that the kernel sends on the monitor's netlink socket, as bytes.
#pragma once

#include <cstdint>
#include <string_view>

#include "base/bytes.h"

namespace virtual_onu {

constexpr std::uint16_t kButtonMessage = 0x3001;
constexpr std::uint16_t kLinkMessage = 0x2000;

/// A netlink message: header in the processor's byte order, then the payload, padded to a multiple
/// of four. `senderPort` 0 is the kernel.
Bytes NetlinkMessage(std::uint16_t type, ByteView payload, std::uint32_t senderPort = 0);

/// The reset button: pressed or released.
Bytes ButtonMessage(bool pressed);

/// An Ethernet interface's link: speed in Mbit/s, 0 for link down; duplex 1 full, 0 half. Of the
/// name at most 16 bytes are sent.
Bytes LinkMessage(std::string_view interface, std::uint32_t speed, std::uint32_t duplex);

}  // namespace virtual_onu
