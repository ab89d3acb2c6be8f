/// @file
/// Tests of the commands that list the chip's objects.
#include <gmock/gmock.h>

#include "run_lines.h"

namespace onu {
namespace {

using test::Ran;
using test::RunLines;
using test::RunLinesAsJson;
using testing::HasSubstr;

/// What the last of the lines printed, when those before it print `before`.
std::string Shown(const Words& lines, const std::string& before = "BCM6838X_Init() = 0 (ok)\n") {
  const Ran ran = RunLines(lines);
  EXPECT_EQ(ran.errors, "");
  EXPECT_EQ(ran.out.substr(0, before.size()), before);
  return ran.out.substr(before.size());
}

TEST(Show, Classes_InTheOrderInWhichTheyAreTried) {
  EXPECT_EQ(Shown({"Init", "show classes"}),
            "dir  class  priority  flows  keys\n"
            "us   4      5         0      ingressPort|outerPbit|vlanNum\n"
            "us   3      4         0      outerVid|ingressPort|outerPbit|vlanNum\n"
            "us   2      3         4      dstMac\n"
            "us   1      2         0      outerVid|ingressPort|vlanNum\n"
            "us   0      1         0      ingressPort|vlanNum\n"
            "ds   2      3         2      dstMac\n"
            "ds   1      2         0      outerVid|ingressPort|vlanNum\n"
            "ds   0      1         0      ingressPort|vlanNum\n");
}

TEST(Show, Flows_WithTheirKeysAndResults) {
  EXPECT_EQ(Shown({"Init", "show flows"}),
            "dir  class  flow  forward  queue  action  policer  keys\n"
            "us   2      0     trap     0      none    none     dstMac=02:00:5e:10:00:01\n"
            "us   2      1     trap     0      none    none     dstMac=02:00:5e:10:00:02\n"
            "us   2      2     trap     0      none    none     dstMac=01:80:c2:00:00:00\n"
            "us   2      3     trap     0      none    none     dstMac=01:80:c2:00:00:23\n"
            "ds   2      0     trap     0      none    none     dstMac=02:00:5e:10:00:01\n"
            "ds   2      1     trap     0      none    none     dstMac=02:00:5e:10:00:02\n");
}

TEST(Show, Actions_WithTheirOperations) {
  const Json actions =
      RunLinesAsJson({"InitDrv",
                      "Ioctl VLAN_ACTION_ADD cmd=0x101 dir=us tag[0].vid=100 tag[0].pbit=5 "
                      "tag[0].tpid=0x8100",
                      "show actions"})
          .lastDocument()["actions"];
  ASSERT_EQ(actions.size(), 1U);
  EXPECT_EQ(actions[0]["tag[0].vid"], 100);
  EXPECT_EQ(actions[0]["dir"], "us");
}

TEST(Show, EmptyTables_SaySo) {
  EXPECT_EQ(Shown({"show classes"}, ""), "no classes\n");
  EXPECT_EQ(Shown({"show flows"}, ""), "no flows\n");
  EXPECT_EQ(Shown({"show actions"}, ""), "no actions\n");
  EXPECT_EQ(Shown({"show counters"}, ""), "no frames\n");
  EXPECT_EQ(Shown({"show vlans"}, ""), "no VLAN objects\n");
  EXPECT_EQ(Shown({"fault show"}, ""), "no faults\n");
  EXPECT_EQ(Shown({"show log"}, ""), "");
}

TEST(Actions, Show_CountsTheFlowsAndPortActionsThatNameThem) {
  const Words lines = {"InitDrv",
                       "RdpaIcInit",
                       "Ioctl VLAN_ACTION_ADD cmd=pop dir=ds",
                       "Ioctl VLAN_ACTION_ADD cmd=pop dir=us",
                       "Ioctl FLOW_ADD dir=ds icIndex=1 outerVid=1 forward=pass vlanActionIndex=0",
                       "Ioctl FLOW_ADD dir=ds icIndex=1 outerVid=2 forward=pass vlanActionIndex=0",
                       "AddPortAction 1 0 1 0",
                       "show actions"};
  const Json actions = RunLinesAsJson(lines).lastDocument()["actions"];
  ASSERT_EQ(actions.size(), 2U);
  EXPECT_EQ(actions[0]["dir"], "us");
  EXPECT_EQ(actions[0]["flows"], 0);
  EXPECT_EQ(actions[0]["portActions"], 0);
  EXPECT_EQ(actions[1]["flows"], 2);
  EXPECT_EQ(actions[1]["portActions"], 1);
  EXPECT_THAT(RunLines(lines).out,
              HasSubstr("dir  action  operations  vid  pbit  tpid    flows  ports\n"));
}

}  // namespace
}  // namespace onu
