/// @file
/// Tests of what the library made of a port's VLAN configuration.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "run_lines.h"

namespace onu {
namespace {

using test::RunLines;
using test::RunLinesAsJson;
using test::With;
using testing::HasSubstr;
using testing::Not;

const Words kTrunk = {"Init", "SetPortPvid 1 100", "SetPortPriority 1 3", "AddVlanTrunk 1 200",
                      "SetVlanTrunk 1"};

TEST(ShowPort, FlowsAndObjects_AreThoseOfThePort) {
  const Json port = RunLinesAsJson(With(kTrunk, {"show port 1"})).lastDocument();
  ASSERT_EQ(port["upstreamFlows"].size(), 9U);
  EXPECT_EQ(port["upstreamFlows"][0]["keys"], "outerVid=200 ingressPort=2 outerPbit=0 vlanNum=1");
  EXPECT_EQ(port["upstreamFlows"][8]["keys"], "ingressPort=2 vlanNum=0");
  EXPECT_EQ(port["downstreamFlows"].size(), 2U);
  EXPECT_EQ(port["downstreamFlows"][1]["vid"], "200");
  EXPECT_EQ(port["downstreamFlows"][1]["references"], 8);
  EXPECT_EQ(port["lanVlans"], Json::array({{{"vid", 200}, {"references", 8}}}));
}

TEST(ShowPort, OtherPort_HasNothingOfIt) {
  const Json port = RunLinesAsJson(With(kTrunk, {"show port 2"})).lastDocument();
  EXPECT_EQ(port["config"]["mode"], "none");
  EXPECT_EQ(port["upstreamFlows"], Json::array());
  EXPECT_EQ(port["downstreamFlows"], Json::array());
}

TEST(ShowPort, ConfigurationToldWithoutRules_DiffersFromTheFlows) {
  // The change of the other port passes the whole table to the driver.
  const Words lines = With(kTrunk, {"AddVlanTrunk 1 300", "SetVlanTag 2", "show port 1"});
  EXPECT_THAT(RunLines(lines).out,
              HasSubstr("difference: frames of VID 300 with 1 tags are configured, "
                        "but no flow lets them in\n"));
}

TEST(ShowPort, Apply_EndsTheDifference) {
  const Words lines = With(kTrunk, {"AddVlanTrunk 1 300", "ApplyVlan 1", "show port 1"});
  EXPECT_THAT(RunLines(lines).out, Not(HasSubstr("difference")));
}

}  // namespace
}  // namespace onu
