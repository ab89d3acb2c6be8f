/// @file
/// Tests of transparent and tag mode beyond their plain sequences: LAN objects, references, shared
/// objects, arguments, full slots.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <bcm6838x_vlan.h>
#include <hal_bcm6838x.h>
#include <platform_config.h>
#include <platform_vos.h>

#include "hal/vlan/vlan_mode_fixture.h"

namespace hal_test {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

class VlanModeBasicTest : public VlanModeTest {};

TEST_F(VlanModeBasicTest, Transparent_EveryPort_NamesItsLanObject) {
  const std::vector<std::string> normal = {"lan0", "lan1", "lan2", "lan3"};
  const std::vector<std::string> reversed = {"lan3", "lan2", "lan1", "lan0"};
  int calls = 0;
  for (const auto& names : {normal, reversed}) {
    g_PortRevert = names == reversed ? 1 : 0;
    for (std::uint32_t port = 1; port <= 4; ++port, ++calls) {
      const std::string line = "shell bs /b/c port/index=" + names.at(port - 1) + " transparent=";
      forget();
      BCM6838X_AddUsTransparent(port);
      BCM6838X_DelUsTransparent(port);
      BCM6838X_AddUsTransparent_Perf(port);
      BCM6838X_DelUsTransparent(port);
      EXPECT_THAT(leftWith("shell"),
                  ElementsAre(line + "yes", line + "no", line + "yes", line + "no"));
    }
  }
  EXPECT_EQ(calls, 8);
}

TEST_F(VlanModeBasicTest, Transparent_FlowsNameTheirDataPathPort) {
  std::uint32_t port = 1;
  for (; port <= 32; ++port) {
    forget();
    BCM6838X_AddUsTransparent(port);
    EXPECT_THAT(leftWith("FLOW_ADD us"), SizeIs(17));
    EXPECT_THAT(
        leftWith("FLOW_ADD us"),
        Each(StartsWith("FLOW_ADD us outerVid=0 ingressPort=" + std::to_string(port + 1) + " ")));
    BCM6838X_DelUsTransparent(port);
  }
  EXPECT_EQ(port, 33U);
}

TEST_F(VlanModeBasicTest, Transparent_TwoPorts_ShareTheDownstreamFlows) {
  BCM6838X_AddUsTransparent(1);
  forget();
  BCM6838X_AddUsTransparent(2);
  EXPECT_THAT(leftWith("FLOW_ADD us"), SizeIs(17));
  EXPECT_THAT(leftWith("FLOW_ADD ds"), IsEmpty());
  EXPECT_THAT(leftWith("log BCM6838X_AddDsIngressClass,<line>, add IC"),
              ElementsAre("log BCM6838X_AddDsIngressClass,<line>, add IC num 2",
                          "log BCM6838X_AddDsIngressClass,<line>, add IC num 16",
                          "log BCM6838X_AddDsIngressClass,<line>, add IC num 16"));
  BCM6838X_DelUsTransparent(1);
  EXPECT_THAT(device(), SizeIs(17 + 3)) << "port 2 keeps all of its own";
  BCM6838X_DelUsTransparent(2);
  EXPECT_THAT(device(), IsEmpty());
}

TEST_F(VlanModeBasicTest, Transparent_FourPorts_ShareTheDownstreamFlows) {
  for (std::uint32_t port = 1; port <= 4; ++port) {
    BCM6838X_AddUsTransparent(port);
  }
  EXPECT_THAT(device(), SizeIs(4 * 17 + 3));
  for (const std::uint32_t port : {3U, 1U, 4U}) {
    EXPECT_EQ(BCM6838X_DelUsTransparent(port), 0);
  }
  EXPECT_THAT(device(), SizeIs(17 + 3));
  EXPECT_EQ(BCM6838X_DelUsTransparent(2), 0);
  EXPECT_THAT(device(), IsEmpty());
}

// Required: full-slots-unrecorded
TEST_F(VlanModeBasicTest, Transparent_FullSlots_LeaveFlowsUnrecorded) {
  // 15 adds take 255 of the 256 slots; of the next add one flow finds a slot.
  for (int add = 0; add < 16; ++add) {
    EXPECT_EQ(BCM6838X_AddUsTransparent(1), 0);
  }
  EXPECT_THAT(device(), SizeIs(16 * 17 + 3));
  forget();
  EXPECT_EQ(BCM6838X_DelUsTransparent(1), 0);
  EXPECT_THAT(leftWith("FLOW_DEL dir=us"), SizeIs(256));
  // 16 flows cannot be deleted any more; they hold 8 references on each downstream flow of tagged
  // frames.
  EXPECT_THAT(device(), SizeIs(16 + 2));
  EXPECT_THAT(device(), Contains("ds flow 0.1 vid 0 tags 1"));
  EXPECT_THAT(device(), Contains("ds flow 0.2 vid 0 tags 2"));
}

// Required: reference-back-for-each-flow
TEST_F(VlanModeBasicTest, Transparent_Delete_GivesBackAReferenceForEachRecordedFlow) {
  for (const std::uint32_t refused : {2U, 5U, 12U}) {
    // Command 1 is the untagged flow's, 2 its downstream flow's, 3 to 10 those of single-tagged
    // frames.
    unit.device().faults().refuseNth(refused);
  }
  EXPECT_EQ(BCM6838X_AddUsTransparent(2), 0);
  forget();
  EXPECT_EQ(BCM6838X_DelUsTransparent(2), 0);
  EXPECT_THAT(leftWith("FLOW_DEL dir=us"), SizeIs(1 + 7 + 7));
  // The flow of (4096, 0) was refused; of both others one of eight references stays.
  EXPECT_THAT(device(), ElementsAre("ds flow 0.0 vid 0 tags 1", "ds flow 0.1 vid 0 tags 2"));
}

// Required: last-priority-takes-references
TEST_F(VlanModeBasicTest, Transparent_LastPriorityRefused_TakesNoReferences) {
  unit.device().faults().refuseNth(10);
  EXPECT_EQ(BCM6838X_AddUsTransparent(2), 0) << "the result is that of the double-tagged flows";
  EXPECT_THAT(leftWith("FLOW_ADD ds"), ElementsAre("FLOW_ADD ds outerVid=0 vlanNum=0 icIndex=0",
                                                   "FLOW_ADD ds outerVid=0 vlanNum=2 icIndex=0"));
  EXPECT_THAT(leftWith("log BCM6838X_AddUsTransparent,"),
              ElementsAre("log BCM6838X_AddUsTransparent,<line>, "
                          "add us icIndex=4 flowIndex=-1 error"));
}

// Required: builders-return-last-result
TEST_F(VlanModeBasicTest, Transparent_LastDoubleTaggedFlowRefused_IsTheResult) {
  unit.device().faults().refuseNth(19);
  EXPECT_EQ(BCM6838X_AddUsTransparent(2), 8);
  EXPECT_THAT(leftWith("FLOW_ADD ds"), ElementsAre("FLOW_ADD ds outerVid=0 vlanNum=0 icIndex=0",
                                                   "FLOW_ADD ds outerVid=0 vlanNum=1 icIndex=0"));
}

// Required: transparent-delete-returns-shell-result
TEST_F(VlanModeBasicTest, Transparent_ShellLineRefused_IsTheResultOfADeleteWithoutFlows) {
  unit.shell().faults().refuseFrom(1);
  EXPECT_EQ(BCM6838X_AddUsTransparent(2), 0);
  EXPECT_EQ(BCM6838X_DelUsTransparent(2), 0) << "the last flow was deleted";
  const std::int32_t withoutFlows = BCM6838X_DelUsTransparent(2);
  EXPECT_NE(withoutFlows, 0);
  EXPECT_EQ(withoutFlows, VOS_System("%s", "bs /b/c port/index=lan1 transparent=no"));
}

TEST_F(VlanModeBasicTest, TransparentPerf_Refused_RecordsNothing) {
  unit.device().faults().refuseNth(1);
  EXPECT_EQ(BCM6838X_AddUsTransparent_Perf(2), 8);
  EXPECT_THAT(leftWith("log BCM6838X_AddUsTransparent_Perf,"),
              ElementsAre("log BCM6838X_AddUsTransparent_Perf,<line>, add us icIndex=0 "
                          "flowIndex=-1 error"));
  EXPECT_THAT(leftWith("FLOW_ADD"), SizeIs(1));
  forget();
  BCM6838X_DelUsTransparent(2);
  EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(VlanModeBasicTest, Tag_TwoPorts_ShareTheActionAndTheDownstreamFlow) {
  EXPECT_EQ(BCM6838X_AddUsTag(1, 100, 3), 0);
  forget();
  EXPECT_EQ(BCM6838X_AddUsTag(2, 100, 3), 0);
  EXPECT_THAT(leftBriefly(),
              ElementsAre("log ++++++BCM6838X_AddUsTag,<line>",
                          "log BCM6838X_AddWanVlan,<line>, add wan vlan  2  wanVid=100 lanVid=4096",
                          "log BCM6838X_AddWanVlan,<line>, add wan vlan  2  wanVid=100 lanVid=4096",
                          "shell bs /b/c vlan/name=wan0_100 vid_enable[100]=no",
                          "shell bs /b/c vlan/name=wan0_100 vid_enable[100]=yes",
                          "log BCM6838X_AddVlanAction,<line>, add vlan action cmd 257 vid[0]=100 "
                          "vid[1]=0  dir=us",
                          "log BCM6838X_AddVlanAction,<line>, add vlan action num 2",
                          "FLOW_ADD us outerVid=0 ingressPort=3 outerPbit=0 vlanNum=0 queue=3 "
                          "icIndex=0 vlanActionIndex=0",
                          "log BCM6838X_AddDsIngressClass,<line>, "
                          "add ds ingress class vid 100  vlanNum 1",
                          "log BCM6838X_AddDsIngressClass,<line>, add IC num 2"));
  EXPECT_EQ(BCM6838X_DelUsTag(1, 100, 3), 0);
  EXPECT_THAT(device(), ElementsAre("us flow 0.1 vid 0 pbit 0 tags 0 action 0",
                                    "ds flow 1.0 vid 100 tags 1", "us action 0 vid 100 pbit 3"));
  EXPECT_EQ(BCM6838X_DelUsTag(2, 100, 3), 0);
  EXPECT_THAT(device(), IsEmpty());
}

TEST_F(VlanModeBasicTest, Tag_FourPorts_ShareByVidAndPriority) {
  BCM6838X_AddUsTag(1, 100, 3);
  BCM6838X_AddUsTag(2, 100, 4);
  BCM6838X_AddUsTag(3, 100, 3);
  BCM6838X_AddUsTag(4, 200, 3);
  EXPECT_THAT(device(),
              ElementsAre("us flow 0.0 vid 0 pbit 0 tags 0 action 0",
                          "us flow 0.1 vid 0 pbit 0 tags 0 action 1",
                          "us flow 0.2 vid 0 pbit 0 tags 0 action 0",
                          "us flow 0.3 vid 0 pbit 0 tags 0 action 2", "ds flow 1.0 vid 100 tags 1",
                          "ds flow 1.1 vid 200 tags 1", "us action 0 vid 100 pbit 3",
                          "us action 1 vid 100 pbit 4", "us action 2 vid 200 pbit 3"));
  BCM6838X_DelUsTag(1, 100, 3);
  BCM6838X_DelUsTag(2, 100, 4);
  EXPECT_THAT(device(), ElementsAre("us flow 0.2 vid 0 pbit 0 tags 0 action 0",
                                    "us flow 0.3 vid 0 pbit 0 tags 0 action 2",
                                    "ds flow 1.0 vid 100 tags 1", "ds flow 1.1 vid 200 tags 1",
                                    "us action 0 vid 100 pbit 3", "us action 2 vid 200 pbit 3"));
  BCM6838X_DelUsTag(3, 100, 3);
  BCM6838X_DelUsTag(4, 200, 3);
  EXPECT_THAT(device(), IsEmpty());
}

TEST_F(VlanModeBasicTest, Tag_ArgumentsAreTheirLowBits) {
  EXPECT_EQ(BCM6838X_AddUsTag(2, 0xABCD0064, 0xABCD0105), 0);
  EXPECT_THAT(leftWith("VLAN_ACTION_ADD"),
              ElementsAre("VLAN_ACTION_ADD us cmd=push|replace_priority tag[0].vid=100 "
                          "tag[0].pbit=5"));
  EXPECT_THAT(leftWith("FLOW_ADD"),
              ElementsAre("FLOW_ADD us outerVid=0 ingressPort=3 outerPbit=0 vlanNum=0 queue=261 "
                          "icIndex=0 vlanActionIndex=0",
                          "FLOW_ADD ds outerVid=100 vlanNum=1 icIndex=1"));
  EXPECT_EQ(BCM6838X_DelUsTag(2, 0xABCD0064, 9), 0);
  EXPECT_THAT(device(), IsEmpty());
}

// Required: flow-without-refused-action
TEST_F(VlanModeBasicTest, Tag_PoolRefuses_CreatesTheFlowWithoutAnAction) {
  unit.device().faults().refuseNth(1);
  EXPECT_EQ(BCM6838X_AddUsTag(2, 100, 3), 0);
  EXPECT_THAT(leftWith("FLOW_ADD us"),
              ElementsAre("FLOW_ADD us outerVid=0 ingressPort=3 outerPbit=0 vlanNum=0 queue=3 "
                          "icIndex=0"));
  forget();
  EXPECT_EQ(BCM6838X_DelUsTag(2, 100, 3), 0);
  EXPECT_THAT(leftWith("log BCM6838X_DelVlanAction"), IsEmpty());
  EXPECT_THAT(device(), IsEmpty());
}

TEST_F(VlanModeBasicTest, Tag_PoolAndDriverRefuse_GivesNothingBack) {
  unit.device().faults().refuseFrom(1);
  EXPECT_EQ(BCM6838X_AddUsTag(2, 100, 3), 8);
  EXPECT_THAT(leftWith("log BCM6838X_DelVlanAction"), IsEmpty());
  EXPECT_THAT(leftWith("FLOW_ADD"), SizeIs(1));
}

// Required: tag-delete-takes-first-slot
TEST_F(VlanModeBasicTest, Tag_Delete_TakesTheFirstUsedSlotWhateverItsFlow) {
  BCM6838X_AddUsZTETrunk(2, TrunkList(2, 1).data());
  forget();
  EXPECT_EQ(BCM6838X_DelUsTag(2, 100, 3), 0);
  EXPECT_THAT(leftWith("FLOW_DEL"), ElementsAre("FLOW_DEL dir=us icIndex=3 flowIndex=0"));
  EXPECT_THAT(leftWith("log BCM6838X_DelDsIngressClass,<line>, del IC"),
              ElementsAre("log BCM6838X_DelDsIngressClass,<line>, del IC num 7"));
  forget();
  EXPECT_EQ(BCM6838X_DelUsTag(2, 100, 3), 0) << "all slots were cleared";
  EXPECT_THAT(leftBriefly(), ElementsAre("log ++++++BCM6838X_DelUsTag,<line>"));
}

// Required: refused-delete-gives-rest-back
TEST_F(VlanModeBasicTest, Tag_DeleteRefused_GivesTheRestBackAndForgetsTheFlow) {
  BCM6838X_AddUsTag(2, 100, 3);
  unit.device().faults().refuseNth(1);
  forget();
  EXPECT_EQ(BCM6838X_DelUsTag(2, 100, 3), 8);
  EXPECT_THAT(leftWith("log BCM6838X_DelUsTag"),
              ElementsAre("log BCM6838X_DelUsTag,<line>, del us icIndex=0 flowIndex=0 error"));
  EXPECT_THAT(device(), ElementsAre("us flow 0.0 vid 0 pbit 0 tags 0 action 0"));
  forget();
  EXPECT_EQ(BCM6838X_DelUsTag(2, 100, 3), 0);
  EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(VlanModeBasicTest, Tag_VidOutOfRange_IsRefusedByTheWanObjectAlone) {
  EXPECT_EQ(BCM6838X_AddUsTag(2, 0, 3), 0);
  EXPECT_THAT(leftWith("log [BCM6838X_AddWanVlan"),
              ElementsAre("log [BCM6838X_AddWanVlan <line>] wanVid is 0 or 4095"));
  EXPECT_THAT(leftWith("shell"), IsEmpty());
  EXPECT_THAT(leftWith("FLOW_ADD us"), SizeIs(1));
}

// Required: full-slots-unrecorded
TEST_F(VlanModeBasicTest, Tag_FullSlots_LeaveTheFlowUnrecorded) {
  for (int add = 0; add < 256; ++add) {
    ASSERT_EQ(BCM6838X_AddUsTag(2, 100, 3), 0);
  }
  forget();
  EXPECT_EQ(BCM6838X_AddUsTag(2, 100, 3), 0);
  EXPECT_THAT(leftWith("log BCM6838X_AddDsIngressClass,<line>, add IC"),
              ElementsAre("log BCM6838X_AddDsIngressClass,<line>, add IC num 257"))
      << "the reference is taken all the same";
  EXPECT_EQ(unit.device().tables().upstream.classes.at(0).flows.size(), 257U);
}

class VlanModeClosedTest : public LibraryTest {};

TEST_F(VlanModeClosedTest, DeviceNotOpen_IsTheResultAndNothingIsRecorded) {
  int modes = 0;
  for (const VlanMode& mode : VlanModes()) {
    EXPECT_EQ(mode.add(2, 2), 10) << mode.name;
    EXPECT_EQ(mode.del(2, 2), 0) << mode.name;
    ++modes;
  }
  EXPECT_EQ(modes, 7);
  EXPECT_THAT(commands(), IsEmpty());
}

}  // namespace
}  // namespace hal_test
