/// @file
/// Simple protocol clients above the library: they let protocols pass, by its public operations.
/// - IGMP and MLD: a port that joins a group gets its channel, one that leaves gives it back; the
///   message goes on to the other side.
/// - STP: a BPDU of a UNI port goes on to the WAN side.
/// - DHCP and PPPoE relay: a frame of a UNI port goes on to the WAN side.
#pragma once

#include <cstdint>

#include "unit/client_call.h"

namespace virtual_onu {

/// Serves one frame; 0. Works on the thread that captures. The library does not lock: nobody may
/// change its multicast channels meanwhile.
std::uint32_t ServeClient(const ClientCall& call);

}  // namespace virtual_onu
