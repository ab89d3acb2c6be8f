/// @file
/// The traps of the driver: frames that it hands to the library by itself, before any flow decides,
/// and the type of event that a trapped frame becomes.
#pragma once

#include <cstdint>

#include "base/bytes.h"
#include "datapath/port_id.h"
#include "device/port_tables.h"
#include "frame/headers.h"

namespace virtual_onu {

/// Tells whether the driver traps a frame: IGMP and MLD of either side, DHCP towards a server and
/// PPPoE discovery of a UNI port, each while its trap is on.
bool IsTrapped(const TrapTables& traps, PortId port, ByteView frame, const FrameHeaders& headers);

/// DHCP and DHCPv6, by the port of the server.
bool IsToDhcpServer(const FrameHeaders& headers);

/// The type of the event with which a trapped frame reaches the library.
/// @param[in] byFlow  a flow trapped it, or else the driver
std::uint32_t EventTypeOf(PortId port, ByteView frame, const FrameHeaders& headers, bool byFlow);

}  // namespace virtual_onu
