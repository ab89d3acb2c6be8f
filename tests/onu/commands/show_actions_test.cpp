/// @file
/// Tests of the command that lists the VLAN actions.
#include <gmock/gmock.h>

#include "run_lines.h"

namespace onu {
namespace {

using test::RunLines;
using test::RunLinesAsJson;
using testing::HasSubstr;

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
