/// @file
/// What the library hands to the protocol clients above it.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "base/bytes.h"

namespace virtual_onu {

enum class Client : std::uint8_t { Igmp, Mld, Stp, Dhcp, Pppoe };

/// The platform call that hands over the frame, "IGMP_DispatchPacket"; for STP, which gets a
/// message, "STP".
std::string_view Name(Client client);

/// One frame. The frame is gone when the client returns.
struct ClientCall {
  Client client = Client::Igmp;
  ByteView frame;
  std::uint32_t vid = 0;  ///< 0 for none, and for STP
  std::uint32_t port = 0;
};

/// Takes a frame and returns what the client returns to the library; of STP's nobody asks.
using ClientTaker = std::function<std::uint32_t(const ClientCall& call)>;

}  // namespace virtual_onu
