/// @file
/// The stable names of outcomes.
#include "datapath/outcome.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

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

}  // namespace
}  // namespace virtual_onu
