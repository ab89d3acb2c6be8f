/// @file
/// Which flows of the chip belong to the VLAN modes, and how VIDs are written.
#pragma once

#include <cstdint>
#include <string>

#include <brmgr_record.h>

namespace virtual_onu {

/// VID under which the library shares the downstream flows of any VID.
constexpr std::uint32_t kAnyVid = 4096;

/// Tells whether a flow belongs to a VLAN mode, and neither to the unit's own traffic nor to QoS.
bool IsVlanFlow(const IngressFlowRule& flow);

/// "VID 100", or "any VID".
std::string VidText(std::uint32_t vid);

}  // namespace virtual_onu
