/// @file
/// Tests of ZTE trunk and hybrid mode beyond their plain sequences: which entries count, VIDs that
/// stand in the list twice, refused flows, shared objects.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include <bcm6838x_vlan.h>
#include <platform_config.h>

#include "hal/vlan/vlan_mode_fixture.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class VlanModeTrunkTest : public VlanModeTest {
 protected:
  /// The references that the shared downstream flow of a VID has, read by taking one more and
  /// giving it back.
  std::string references(std::uint32_t vid) {
    forget();
    BCM6838X_AddDsIngressClass(vid, 1, 0);
    return left().back();
  }
};

std::string CountLogged(std::uint32_t references) {
  return "log 1 hal/switch/bcm6838x/src/bcm6838x_vlan_flow.cpp "
         "BCM6838X_AddDsIngressClass,<line>, add IC num " +
         std::to_string(references) + "\r\n";
}

/// Entries with the VIDs at their places in the list.
VlanList<PortVlanTrunkEntry> ListOf(
    const std::vector<std::pair<std::size_t, std::uint16_t>>& vids) {
  VlanList<PortVlanTrunkEntry> list = {};
  for (const auto& [place, vid] : vids) {
    list.at(place).vid = vid;
  }
  return list;
}

TEST_F(VlanModeTrunkTest, ZteTrunk_TwoVlans_CreateSixteenFlowsAndEightReferencesEach) {
  EXPECT_EQ(BCM6838X_AddUsZTETrunk(2, ListOf({{0, 100}, {1, 200}}).data()), 0);
  EXPECT_THAT(leftWith("FLOW_ADD us"), SizeIs(16));
  EXPECT_EQ(references(100), CountLogged(8));
  EXPECT_EQ(references(200), CountLogged(8));
}

TEST_F(VlanModeTrunkTest, ZteTrunk_EveryPlaceOfTheListIsRead_EntriesWithoutVidAreSkipped) {
  VlanList<PortVlanTrunkEntry> list = ListOf({{7, 100}, {511, 200}});
  list.at(0) = {2, 0, 0};
  list.at(7).port = 9;
  EXPECT_EQ(BCM6838X_AddUsZTETrunk(2, list.data()), 0);
  EXPECT_THAT(leftWith("FLOW_ADD ds"), ElementsAre("FLOW_ADD ds outerVid=100 vlanNum=1 icIndex=1",
                                                   "FLOW_ADD ds outerVid=200 vlanNum=1 icIndex=1"));
  EXPECT_THAT(device(), SizeIs(16 + 2));
  forget();
  EXPECT_EQ(BCM6838X_DelUsZTETrunk(2, list.data()), 0);
  EXPECT_THAT(leftWith("FLOW_DEL"), SizeIs(16 + 2));
  EXPECT_THAT(device(), IsEmpty());
}

TEST_F(VlanModeTrunkTest, ZteTrunk_DeleteOfAnUnrecordedVlan_SendsNothingForIt) {
  BCM6838X_AddUsZTETrunk(2, ListOf({{0, 100}}).data());
  forget();
  EXPECT_EQ(BCM6838X_DelUsZTETrunk(2, ListOf({{0, 200}}).data()), 0);
  EXPECT_THAT(leftBriefly(), ElementsAre("log ++++++BCM6838X_DelUsZTETrunk,<line>"));
  forget();
  EXPECT_EQ(BCM6838X_DelUsZTETrunk(2, ListOf({{0, 100}}).data()), 0);
  EXPECT_THAT(leftBriefly(), ElementsAre("log ++++++BCM6838X_DelUsZTETrunk,<line>"))
      << "the slots were cleared";
}

// Required: refused-delete-keeps-reference
TEST_F(VlanModeTrunkTest, ZteTrunk_DeleteRefusedThroughout_ClearsTheSlotsAndTheObjects) {
  BCM6838X_AddUsZTETrunk(2, ListOf({{0, 100}}).data());
  unit.device().faults().refuseFrom(1);
  forget();
  EXPECT_EQ(BCM6838X_DelUsZTETrunk(2, ListOf({{0, 100}}).data()), 8);
  EXPECT_THAT(leftWith("log BCM6838X_DelUsZTETrunk"), SizeIs(8));
  EXPECT_THAT(leftWith("log BCM6838X_DelDsIngressClass"), IsEmpty()) << "no reference is released";
  EXPECT_THAT(leftWith("shell bs /b/d"),
              ElementsAre("shell bs /b/d vlan/name=wan0_100", "shell bs /b/d vlan/name=lan1_100"));
  unit.device().faults().clear();
  forget();
  EXPECT_EQ(BCM6838X_DelUsZTETrunk(2, ListOf({{0, 100}}).data()), 0);
  EXPECT_THAT(commands(), IsEmpty());
}

// Required: slots-cleared-at-the-end, list-duplicates-built-twice
TEST_F(VlanModeTrunkTest, ZteTrunk_VidTwice_IsBuiltAndDeletedTwice) {
  const auto list = ListOf({{0, 100}, {5, 100}});
  EXPECT_EQ(BCM6838X_AddUsZTETrunk(2, list.data()), 0);
  EXPECT_THAT(leftWith("FLOW_ADD us"), SizeIs(16));
  EXPECT_EQ(references(100), CountLogged(16));
  forget();
  // Each of the two entries finds all sixteen slots; the second's deletes are refused.
  EXPECT_EQ(BCM6838X_DelUsZTETrunk(2, list.data()), 8);
  EXPECT_THAT(leftWith("FLOW_DEL dir=us"), SizeIs(32));
  EXPECT_THAT(leftWith("log BCM6838X_DelUsZTETrunk"), SizeIs(16));
  EXPECT_THAT(leftWith("log BCM6838X_DelDsIngressClass,<line>, del IC num"), SizeIs(16));
  EXPECT_THAT(leftWith("log BCM6838X_DelLanVlan"), SizeIs(32));
  EXPECT_THAT(device(), IsEmpty());
}

// Required: last-priority-takes-references
TEST_F(VlanModeTrunkTest, ZteTrunk_LastPriorityRefused_TakesNoReferencesButIsStillDeleted) {
  unit.device().faults().refuseNth(8);
  EXPECT_EQ(BCM6838X_AddUsZTETrunk(2, ListOf({{0, 100}}).data()), 8);
  EXPECT_THAT(leftWith("FLOW_ADD us"), SizeIs(8));
  EXPECT_THAT(leftWith("FLOW_ADD ds"), IsEmpty());
  EXPECT_THAT(leftWith("log BCM6838X_AddLanVlan"), SizeIs(7)) << "none for the refused flow";
  EXPECT_THAT(leftWith("log BCM6838X_AddUsZTETrunk"),
              ElementsAre("log BCM6838X_AddUsZTETrunk,<line>, "
                          "add us icIndex=3 flowIndex=-1 error"));
  forget();
  EXPECT_EQ(BCM6838X_DelUsZTETrunk(2, ListOf({{0, 100}}).data()), 0);
  EXPECT_THAT(leftWith("FLOW_DEL"), SizeIs(7));
  EXPECT_THAT(device(), IsEmpty());
}

TEST_F(VlanModeTrunkTest, ZteTrunk_OtherPriorityRefused_LeavesAReference) {
  unit.device().faults().refuseNth(3);
  EXPECT_EQ(BCM6838X_AddUsZTETrunk(2, ListOf({{0, 100}}).data()), 0);
  EXPECT_EQ(references(100), CountLogged(8));
  EXPECT_EQ(BCM6838X_DelUsZTETrunk(2, ListOf({{0, 100}}).data()), 0);
  EXPECT_THAT(device(), ElementsAre("ds flow 1.0 vid 100 tags 1"));
  EXPECT_EQ(references(100), CountLogged(1));
}

TEST_F(VlanModeTrunkTest, ZteTrunk_TwoAndFourPorts_ShareTheDownstreamFlowAndTheWanObject) {
  const auto list = ListOf({{0, 100}, {1, 200}});
  BCM6838X_AddUsZTETrunk(1, list.data());
  BCM6838X_AddUsZTETrunk(2, list.data());
  EXPECT_EQ(references(100), CountLogged(16));
  BCM6838X_AddUsZTETrunk(3, list.data());
  BCM6838X_AddUsZTETrunk(4, list.data());
  EXPECT_EQ(references(100), CountLogged(32));
  EXPECT_EQ(references(200), CountLogged(32));
  EXPECT_THAT(device(), SizeIs(4 * 16 + 2));
  forget();
  for (const std::uint32_t port : {2U, 4U, 1U}) {
    EXPECT_EQ(BCM6838X_DelUsZTETrunk(port, list.data()), 0);
  }
  EXPECT_THAT(leftWith("shell bs /b/d vlan/name=wan0"), IsEmpty());
  EXPECT_EQ(references(100), CountLogged(8));
  EXPECT_THAT(device(), SizeIs(16 + 2));
  forget();
  BCM6838X_DelUsZTETrunk(3, list.data());
  EXPECT_THAT(leftWith("shell bs /b/d vlan/name=wan0"),
              ElementsAre("shell bs /b/d vlan/name=wan0_100", "shell bs /b/d vlan/name=wan0_200"));
  EXPECT_THAT(device(), IsEmpty());
}

TEST_F(VlanModeTrunkTest, ZteTrunk_ReversedPorts_NameTheirLanObjects) {
  g_PortRevert = 1;
  BCM6838X_AddUsZTETrunk(1, ListOf({{0, 100}}).data());
  EXPECT_THAT(leftWith("shell bs /b/n vlan/name=lan"),
              ElementsAre("shell bs /b/n vlan/name=lan3_100 port/index=lan3"));
}

TEST_F(VlanModeTrunkTest, Hybrid_ReferencesAndSlotsOfEachVlan) {
  EXPECT_EQ(BCM6838X_AddUsHybrid(2, 10, 3, TrunkList(2, 5).data()), 0);
  EXPECT_THAT(leftWith("FLOW_ADD us"), SizeIs(1 + 8 * 5));
  EXPECT_EQ(references(10), CountLogged(1));
  for (std::uint32_t vid = 100; vid < 105; ++vid) {
    EXPECT_EQ(references(vid), CountLogged(8));
  }
}

TEST_F(VlanModeTrunkTest, Hybrid_ArgumentsAreTheirLowBits) {
  EXPECT_EQ(BCM6838X_AddUsHybrid(2, 0xABCD000A, 0xABCDEF05, TrunkList(2, 0).data()), 0);
  EXPECT_THAT(leftWith("VLAN_ACTION_ADD"),
              ElementsAre("VLAN_ACTION_ADD us cmd=push|replace_priority tag[0].vid=10 "
                          "tag[0].pbit=5"));
  EXPECT_THAT(leftWith("FLOW_ADD"),
              ElementsAre("FLOW_ADD us outerVid=0 ingressPort=3 outerPbit=0 vlanNum=0 queue=5 "
                          "icIndex=0 vlanActionIndex=0",
                          "FLOW_ADD ds outerVid=10 vlanNum=1 icIndex=1"));
  EXPECT_EQ(BCM6838X_DelUsHybrid(2, 0xABCD000A, 7, TrunkList(2, 0).data()), 0);
  EXPECT_THAT(device(), IsEmpty());
}

// Required: untagged-refusal-goes-on, builders-return-last-result
TEST_F(VlanModeTrunkTest, Hybrid_UntaggedFlowRefused_GivesItsActionBackAndGoesOn) {
  unit.device().faults().refuseNth(1, 100);
  EXPECT_EQ(BCM6838X_AddUsHybrid(2, 10, 3, TrunkList(2, 1).data()), 0);
  EXPECT_THAT(leftWith("log BCM6838X_DelVlanAction"),
              ElementsAre("log BCM6838X_DelVlanAction,<line>, del vlan action cmd 257 vid[0]=10 "
                          "vid[1]=0  dir=us",
                          "log BCM6838X_DelVlanAction,<line>, del vlan action num 0"))
      << "released by the whole rule";
  EXPECT_THAT(leftWith("log BCM6838X_AddUsHybrid"),
              ElementsAre("log BCM6838X_AddUsHybrid,<line>, add us icIndex=0 flowIndex=-1 error"));
  EXPECT_THAT(leftWith("VLAN_ACTION_DEL"), SizeIs(1));
  EXPECT_THAT(leftWith("FLOW_ADD ds"), ElementsAre("FLOW_ADD ds outerVid=100 vlanNum=1 icIndex=1"));
  EXPECT_THAT(device(), SizeIs(8 + 1));
  forget();
  // Without the untagged slot the WAN object of the PVID stays.
  EXPECT_EQ(BCM6838X_DelUsHybrid(2, 10, 3, TrunkList(2, 1).data()), 0);
  EXPECT_THAT(leftWith("log BCM6838X_DelWanVlan,<line>, port=2,del wanVid=10 "), IsEmpty());
  EXPECT_THAT(leftWith("log BCM6838X_DelDsIngressClass,<line>, del ds ingress class vid 10 "),
              IsEmpty());
  EXPECT_THAT(device(), IsEmpty());
  forget();
  EXPECT_EQ(BCM6838X_DelUsHybrid(2, 10, 3, TrunkList(2, 1).data()), 0);
  EXPECT_THAT(commands(), IsEmpty()) << "the slots were cleared without the untagged one, too";
}

TEST_F(VlanModeTrunkTest, Hybrid_EmptyListAndUntaggedFlowRefused_IsTheResult) {
  unit.device().faults().refuseNth(1, 100);
  EXPECT_EQ(BCM6838X_AddUsHybrid(2, 10, 3, TrunkList(2, 0).data()), 8);
  EXPECT_THAT(leftWith("FLOW_ADD"), SizeIs(1));
}

// Required: flow-without-refused-action
TEST_F(VlanModeTrunkTest, Hybrid_PoolRefuses_CreatesTheFlowWithoutAnAction) {
  unit.device().faults().refuseNth(1);
  EXPECT_EQ(BCM6838X_AddUsHybrid(2, 10, 3, TrunkList(2, 0).data()), 0);
  EXPECT_THAT(device(), ElementsAre("us flow 0.0 vid 0 pbit 0 tags 0 action none",
                                    "ds flow 1.0 vid 10 tags 1"));
  forget();
  EXPECT_EQ(BCM6838X_DelUsHybrid(2, 10, 3, TrunkList(2, 0).data()), 0);
  EXPECT_THAT(leftWith("log BCM6838X_DelVlanAction"), IsEmpty());
  EXPECT_THAT(device(), IsEmpty());
}

TEST_F(VlanModeTrunkTest, Hybrid_DeleteOfTheUntaggedFlowRefused_ReleasesTheRestOfIt) {
  BCM6838X_AddUsHybrid(2, 10, 3, TrunkList(2, 0).data());
  unit.device().faults().refuseNth(1);
  forget();
  EXPECT_EQ(BCM6838X_DelUsHybrid(2, 10, 3, TrunkList(2, 0).data()), 8);
  EXPECT_THAT(leftWith("log BCM6838X_DelUsHybrid"),
              ElementsAre("log BCM6838X_DelUsHybrid,<line>, del us icIndex=0 flowIndex=0 error"));
  EXPECT_THAT(leftWith("log BCM6838X_DelVlanAction,<line>, del vlan action num"), SizeIs(1));
  EXPECT_THAT(device(), ElementsAre("us flow 0.0 vid 0 pbit 0 tags 0 action 0"));
}

TEST_F(VlanModeTrunkTest, Hybrid_UntaggedSlotIsSoughtBehindTheOthers) {
  BCM6838X_AddUsZTETrunk(2, TrunkList(2, 1).data());
  BCM6838X_AddUsHybrid(2, 10, 3, TrunkList(2, 0).data());
  forget();
  EXPECT_EQ(BCM6838X_DelUsHybrid(2, 10, 3, TrunkList(2, 0).data()), 0);
  EXPECT_THAT(leftWith("FLOW_DEL dir=us"), ElementsAre("FLOW_DEL dir=us icIndex=0 flowIndex=0"));
}

TEST_F(VlanModeTrunkTest, Hybrid_PvidInTheList_SharesTheDownstreamFlow) {
  VlanList<PortVlanTrunkEntry> list = {};
  list.at(0).vid = 10;
  EXPECT_EQ(BCM6838X_AddUsHybrid(2, 10, 3, list.data()), 0);
  EXPECT_EQ(references(10), CountLogged(9));
  EXPECT_EQ(BCM6838X_DelUsHybrid(2, 10, 3, list.data()), 0);
  EXPECT_THAT(device(), IsEmpty());
}

TEST_F(VlanModeTrunkTest, Hybrid_FourPorts_ShareActionsAndDownstreamFlows) {
  for (std::uint32_t port = 1; port <= 4; ++port) {
    EXPECT_EQ(BCM6838X_AddUsHybrid(port, 10, 3, TrunkList(port, 2).data()), 0);
  }
  EXPECT_THAT(device(), SizeIs(4 * 17 + 3 + 1));
  EXPECT_EQ(references(10), CountLogged(4));
  EXPECT_EQ(references(101), CountLogged(32));
  for (const std::uint32_t port : {4U, 2U, 3U}) {
    EXPECT_EQ(BCM6838X_DelUsHybrid(port, 10, 3, TrunkList(port, 2).data()), 0);
  }
  EXPECT_THAT(device(), SizeIs(17 + 3 + 1));
  EXPECT_EQ(BCM6838X_DelUsHybrid(1, 10, 3, TrunkList(1, 2).data()), 0);
  EXPECT_THAT(device(), IsEmpty());
}

}  // namespace
}  // namespace hal_test
