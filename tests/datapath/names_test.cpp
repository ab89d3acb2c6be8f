/// @file
/// The stable names of outcomes and ports.
#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "datapath/outcome.h"
#include "datapath/port.h"

namespace virtual_onu {
namespace {

TEST(Outcome, Names_AreTheseAndStable) {
  const std::vector<std::string> expected = {
      "flow_forward forward",
      "flow_trap trap",
      "flow_access_control drop",
      "group_forward forward",
      "no_class drop",
      "no_flow drop",
      "unknown_decision drop",
      "unknown_vlan_action drop",
      "runt_frame drop",
      "truncated_tag drop",
      "unknown_port drop",
      "port_admin_down drop",
      "port_link_down drop",
      "policed drop",
      "mac_filtered drop",
      "mac_bound_elsewhere drop",
      "mac_limit_reached drop",
      "no_group_member drop",
      "no_egress drop",
      "egress_admin_down drop",
      "egress_link_down drop",
      "egress_isolated drop",
      "egress_mac_filtered drop",
      "egress_vlan_filter drop",
      "egress_rate_limited drop",
      "mirrored forward",
      "protocol_trap trap",
      "event_too_long drop",
      "event_queue_full drop",
      "event_no_reader drop",
      "transmitted forward",
  };
  std::vector<std::string> names;
  for (const OutcomeInfo& info : AllOutcomes()) {
    names.push_back(std::string(info.name) + " " + std::string(Name(info.disposition)));
    EXPECT_FALSE(info.text.empty());
    EXPECT_EQ(Describe(info.outcome).name, info.name);
  }
  EXPECT_EQ(names, expected);
}

TEST(Port, Names_AreReadBack) {
  EXPECT_EQ(PortId::Wan().name(), "wan");
  EXPECT_EQ(PortId::Uni(1).name(), "uni1");
  for (std::uint32_t number = 0; number <= kMaxUniPorts; ++number) {
    EXPECT_EQ(ParsePort(PortId::Uni(number).name()), PortId::Uni(number));
  }
}

TEST(Port, AnythingElse_IsNoPort) {
  for (const std::string_view text :
       {"", "uni", "uni0", "uni33", "uni01", "uni1 ", " uni1", "uni-1", "UNI1", "wan0", "Wan",
        "lan1", "1", "uni4294967297"}) {
    EXPECT_FALSE(ParsePort(text)) << text;
  }
}

TEST(Port, Order_IsWanThenUniByNumber) {
  std::vector<PortId> ports = {PortId::Uni(10), PortId::Uni(2), PortId::Wan()};
  std::sort(ports.begin(), ports.end());
  EXPECT_EQ(ports, (std::vector<PortId>{PortId::Wan(), PortId::Uni(2), PortId::Uni(10)}));
}

}  // namespace
}  // namespace virtual_onu
