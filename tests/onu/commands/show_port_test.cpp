/// @file
/// Tests of the reports of a port's VLAN configuration.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "run_lines.h"

namespace onu {
namespace {

using test::Ran;
using test::RunLines;
using test::RunLinesAsJson;
using test::With;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

const Words kTrunk = {"Init", "SetPortPvid 1 100", "SetPortPriority 1 3", "AddVlanTrunk 1 200",
                      "SetVlanTrunk 1"};

TEST(ShowConfigOfAPort, ToldConfiguration_IsShownWithItsLists) {
  EXPECT_THAT(RunLines(With(kTrunk, {"show config 1"})).out,
              EndsWith("mode trunk\nPVID 100 priority 3\ntrunk list 200\n"));
  const Json document = RunLinesAsJson(With(kTrunk, {"show config 1"})).lastDocument();
  EXPECT_EQ(document["config"]["vlanMode"], 4);
  EXPECT_EQ(document["config"]["trunkList"], Json::array({200}));
  EXPECT_EQ(document["differences"], Json::array());
}

TEST(ShowConfigOfAPort, EveryList_IsWritten) {
  EXPECT_THAT(RunLines({"Init", "AddVlanTranslation 1 10 110 6 2", "AddVlanStacking 1 2 11 11 500",
                        "AddVlanStacking 1 7 12 12 501", "show config 1"})
                  .out,
              EndsWith("mode none\nPVID 0 priority 0\n"
                       "translation list 10<->110 (up 6, down 2)\n"
                       "stacking list 11 in 500, 12 in 501 (parameter 7)\n"));
}

TEST(ShowConfigOfAPort, NothingToldYet_IsSaid) {
  EXPECT_EQ(RunLines({"show config 1"}).out, "the driver was not told a VLAN configuration\n");
  EXPECT_EQ(RunLinesAsJson({"show config 1"}).lastDocument()["config"], nullptr);
}

TEST(ShowConfigOfAPort, PortThatDoesNotExist_IsWrongUse) {
  for (const char* const line : {"show config 5", "show port 0"}) {
    const Ran ran = RunLines({line});
    EXPECT_EQ(ran.status, ExitStatus::WrongUse);
    EXPECT_THAT(ran.errors, HasSubstr("expected a UNI port from 1 to 4, got "));
  }
}

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
