/// @file
/// The classes of the VLAN modes.
#include "consistency/vlan_flows.h"

#include <algorithm>
#include <array>

namespace virtual_onu {
namespace {

/// Classes of the direction that hold the flows of the VLAN modes. Upstream class 2, downstream
/// class 2 and all above belong to the unit's own traffic and to QoS.
constexpr std::array<std::uint32_t, 4> kUpstreamVlanClasses = {0, 1, 3, 4};
constexpr std::array<std::uint32_t, 2> kDownstreamVlanClasses = {0, 1};

}  // namespace

bool IsVlanFlow(const IngressFlowRule& flow) {
  const auto among = [&](const auto& classes) {
    return std::ranges::find(classes, flow.icIndex) != classes.end();
  };
  return flow.forward == BRMGR_FORWARD_PASS &&
         (flow.dir == BRMGR_DIR_DOWNSTREAM ? among(kDownstreamVlanClasses)
                                           : among(kUpstreamVlanClasses));
}

std::string VidText(std::uint32_t vid) {
  return vid == kAnyVid ? "any VID" : "VID " + std::to_string(vid);
}

}  // namespace virtual_onu
