/// @file
/// Tests of translation mode beyond its plain sequences: which entries count, entries that share
/// VIDs or actions, refused objects, shared objects of several ports.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <bcm6838x_vlan.h>

#include "hal/vlan/vlan_mode_fixture.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Device commands of an add, counted from 1: the action, the flow and the downstream flow of the
/// PVID, then of the first entry its action and its eight flows, its downstream flow and action.
constexpr std::uint32_t kEntryAction = 4;
constexpr std::uint32_t kFirstEntryFlow = 5;
constexpr std::uint32_t kLastEntryFlow = 12;
constexpr std::uint32_t kEntryDsFlow = 13;
constexpr std::uint32_t kEntryDsAction = 14;

using List = VlanList<PortVlanTransEntry>;

class VlanModeTranslationTest : public VlanModeTest {
 protected:
  static std::int32_t add(const List& list) {
    return BCM6838X_AddUsTranslation(2, 10, 3, list.data());
  }
  static std::int32_t del(const List& list) {
    return BCM6838X_DelUsTranslation(2, 10, 3, list.data());
  }
};

/// What the access port of the PVID needs.
constexpr std::size_t kPvidObjects = 3;

TEST_F(VlanModeTranslationTest, EmptyList_IsAnAccessPortAlone) {
  EXPECT_EQ(add({}), 0);
  EXPECT_THAT(device(), ElementsAre("us flow 0.0 vid 0 pbit 0 tags 0 action 0",
                                    "ds flow 1.0 vid 10 tags 1", "us action 0 vid 10 pbit 3"));
}

TEST_F(VlanModeTranslationTest, EntriesWithoutLocalOrNetworkVid_AreIgnored) {
  List list = {};
  list.at(0) = {2, 0, 6, 0, 5, 300};
  list.at(1) = {2, 0, 6, 100, 5, 0};
  EXPECT_EQ(add(list), 0);
  EXPECT_THAT(device(), SizeIs(kPvidObjects));
  forget();
  EXPECT_EQ(del(list), 0);
  EXPECT_THAT(leftWith("FLOW_DEL dir=us"), SizeIs(1));
  EXPECT_THAT(device(), IsEmpty());
}

TEST_F(VlanModeTranslationTest, Delete_IgnoresEntriesWithoutLocalOrNetworkVid) {
  add(TranslationList(2, 1));
  forget();
  List list = {};
  list.at(0) = {2, 0, 6, 100, 5, 0};
  list.at(1) = {2, 0, 6, 0, 5, 300};
  EXPECT_EQ(del(list), 0);
  EXPECT_THAT(leftWith("FLOW_DEL"), ElementsAre("FLOW_DEL dir=us icIndex=0 flowIndex=0",
                                                "FLOW_DEL dir=ds icIndex=1 flowIndex=0"));
}

// Required: builders-ignore-list-port
TEST_F(VlanModeTranslationTest, EveryPlaceOfTheListIsRead_ThePortByteIsNot) {
  List list = {};
  list.at(511) = {9, 0, 6, 100, 5, 300};
  EXPECT_EQ(add(list), 0);
  EXPECT_THAT(device(), SizeIs(kPvidObjects + 8 + 1 + 2 + 1));
  EXPECT_EQ(del(list), 0);
  EXPECT_THAT(device(), IsEmpty());
}

// Required: translation-ds-action-has-net-vid
TEST_F(VlanModeTranslationTest, ActionsCarryTheNetworkVidAndTheirOwnPriority) {
  List list = {};
  list.at(0) = {2, 0, 0x106, 100, 0x205, 300};
  EXPECT_EQ(add(list), 0);
  EXPECT_THAT(leftWith("VLAN_ACTION_ADD"),
              ElementsAre("VLAN_ACTION_ADD us cmd=push|replace_priority tag[0].vid=10 "
                          "tag[0].pbit=3",
                          "VLAN_ACTION_ADD us cmd=replace_vid|replace_priority tag[0].vid=300 "
                          "tag[0].pbit=5",
                          "VLAN_ACTION_ADD ds cmd=replace_vid|replace_priority tag[0].vid=300 "
                          "tag[0].pbit=6"))
      << "of a priority the low 8 bits count";
  EXPECT_EQ(del(list), 0);
  EXPECT_THAT(device(), IsEmpty());
}

// Required: slots-cleared-at-the-end
TEST_F(VlanModeTranslationTest, SameLocalVidTwice_EachEntryDeletesAllSixteenFlows) {
  List list = {};
  list.at(0) = {2, 0, 6, 100, 5, 300};
  list.at(1) = {2, 0, 6, 100, 5, 301};
  EXPECT_EQ(add(list), 0);
  EXPECT_THAT(leftWith("FLOW_ADD us outerVid=100"), SizeIs(16));
  forget();
  EXPECT_EQ(del(list), 0) << "the last command is that of the PVID's flow";
  EXPECT_THAT(leftWith("FLOW_DEL dir=us icIndex=3"), SizeIs(32));
  EXPECT_THAT(leftWith("log BCM6838X_DelUsTranslation,<line>, del us icIndex=3"), SizeIs(16))
      << "refused the second time";
  EXPECT_THAT(leftWith("log BCM6838X_GetDsIngressClass,<line>, get ds ingress class vid 300 "),
              SizeIs(16));
  EXPECT_THAT(leftWith("log BCM6838X_GetDsIngressClass,<line>, get ds ingress class vid 301 "),
              SizeIs(16));
  EXPECT_THAT(leftWith("log BCM6838X_DelLanVlan"), SizeIs(32));
  EXPECT_THAT(device(), IsEmpty());
}

TEST_F(VlanModeTranslationTest, SameNetworkVidTwice_SharesActionsAndDownstreamFlow) {
  List list = {};
  list.at(0) = {2, 0, 6, 100, 5, 300};
  list.at(1) = {2, 0, 6, 101, 5, 300};
  EXPECT_EQ(add(list), 0);
  EXPECT_THAT(leftWith("VLAN_ACTION_ADD"), SizeIs(3));
  EXPECT_THAT(leftWith("FLOW_ADD ds"), SizeIs(2));
  EXPECT_THAT(leftWith("log BCM6838X_AddDsIngressClass,<line>, add IC"),
              ElementsAre("log BCM6838X_AddDsIngressClass,<line>, add IC num 16"));
  EXPECT_EQ(leftWith("log BCM6838X_AddVlanAction,<line>, add vlan action num").back(),
            "log BCM6838X_AddVlanAction,<line>, add vlan action num 16");
  EXPECT_EQ(del(list), 0);
  EXPECT_THAT(device(), IsEmpty());
}

TEST_F(VlanModeTranslationTest, UpstreamActionRefused_TriesAnewWithEachFlow) {
  unit.device().faults().refuseNth(kEntryAction);
  EXPECT_EQ(add(TranslationList(2, 1)), 0);
  const std::vector<std::string> flows = leftWith("FLOW_ADD us outerVid=100");
  ASSERT_THAT(flows, SizeIs(8));
  EXPECT_EQ(flows[0],
            "FLOW_ADD us outerVid=100 ingressPort=3 outerPbit=0 vlanNum=1 queue=0 icIndex=3");
  EXPECT_EQ(flows[1],
            "FLOW_ADD us outerVid=100 ingressPort=3 outerPbit=1 vlanNum=1 queue=1 icIndex=3 "
            "vlanActionIndex=1");
  EXPECT_EQ(del(TranslationList(2, 1)), 0);
  EXPECT_THAT(device(), IsEmpty()) << "seven references were taken, seven given back";
}

TEST_F(VlanModeTranslationTest, FlowRefused_GivesItsReferenceBackAndSkipsItsObjects) {
  unit.device().faults().refuseNth(kFirstEntryFlow + 1);
  EXPECT_EQ(add(TranslationList(2, 1)), 0);
  EXPECT_THAT(leftWith("log BCM6838X_DelVlanAction"),
              ElementsAre("log BCM6838X_DelVlanAction,<line>, del vlan action cmd 264 vid[0]=300 "
                          "vid[1]=0  dir=us",
                          "log BCM6838X_DelVlanAction,<line>, del vlan action num 1"));
  EXPECT_THAT(leftWith("log BCM6838X_AddUsTranslation"),
              ElementsAre("log BCM6838X_AddUsTranslation,<line>, "
                          "add us icIndex=3 flowIndex=-1 error"));
  EXPECT_THAT(leftWith("log BCM6838X_AddLanVlan"), SizeIs(7));
  EXPECT_EQ(del(TranslationList(2, 1)), 0);
  // Seven flows gave back seven of the eight references downstream.
  EXPECT_THAT(device(), ElementsAre("ds flow 1.1 vid 300 tags 1", "ds action 1 vid 300 pbit 6"));
}

TEST_F(VlanModeTranslationTest, FirstFlowRefused_DropsTheActionAndMakesItAnew) {
  unit.device().faults().refuseNth(kFirstEntryFlow);
  EXPECT_EQ(add(TranslationList(2, 1)), 0);
  EXPECT_THAT(leftWith("VLAN_ACTION_DEL"), ElementsAre("VLAN_ACTION_DEL dir=us vlanActionIndex=1"));
  EXPECT_THAT(leftWith("VLAN_ACTION_ADD us cmd=replace_vid"), SizeIs(2));
}

// Required: last-priority-takes-references
TEST_F(VlanModeTranslationTest, LastFlowRefused_BuildsNothingDownstream) {
  unit.device().faults().refuseNth(kLastEntryFlow);
  EXPECT_EQ(add(TranslationList(2, 1)), 8);
  EXPECT_THAT(leftWith("FLOW_ADD ds"), ElementsAre("FLOW_ADD ds outerVid=10 vlanNum=1 icIndex=1"));
  EXPECT_THAT(leftWith("VLAN_ACTION_ADD ds"), IsEmpty());
  EXPECT_THAT(leftWith("log BCM6838X_AddPortAction"), IsEmpty());
  forget();
  EXPECT_EQ(del(TranslationList(2, 1)), 0);
  EXPECT_THAT(leftWith("log BCM6838X_GetDsIngressClass"), SizeIs(7));
  EXPECT_THAT(leftWith("log BCM6838X_DelPortAction"), IsEmpty());
  EXPECT_THAT(device(), IsEmpty());
}

TEST_F(VlanModeTranslationTest, DownstreamFlowRefused_TakesNoDownstreamAction) {
  unit.device().faults().refuseNth(kEntryDsFlow);
  EXPECT_EQ(add(TranslationList(2, 2)), 0);
  EXPECT_THAT(leftWith("VLAN_ACTION_ADD ds"), SizeIs(1)) << "the next entry has one";
  EXPECT_THAT(leftWith("log BCM6838X_AddPortAction"), SizeIs(1));
  EXPECT_EQ(del(TranslationList(2, 2)), 0);
  EXPECT_THAT(device(), IsEmpty());
}

TEST_F(VlanModeTranslationTest, DownstreamActionRefused_AttachesNoPortAction) {
  unit.device().faults().refuseNth(kEntryDsAction);
  EXPECT_EQ(add(TranslationList(2, 2)), 0);
  EXPECT_THAT(leftWith("FLOW_ADD ds outerVid=30"), SizeIs(2));
  EXPECT_THAT(leftWith("log BCM6838X_AddPortAction"),
              ElementsAre("log BCM6838X_AddPortAction,<line>, add port action port 2 icIndex=1 "
                          "flowIndex=2"));
  forget();
  EXPECT_EQ(del(TranslationList(2, 2)), 0);
  EXPECT_THAT(leftWith("log BCM6838X_DelPortAction"), SizeIs(16)) << "sought by the flow alone";
  EXPECT_THAT(device(), IsEmpty());
}

// Required: pvid-without-slot-keeps-wan
TEST_F(VlanModeTranslationTest, UntaggedFlowRefused_DeleteKeepsTheWanObjectOfThePvid) {
  unit.device().faults().refuseNth(1, 100);
  EXPECT_EQ(add(TranslationList(2, 1)), 0);
  forget();
  EXPECT_EQ(del(TranslationList(2, 1)), 0);
  EXPECT_THAT(leftWith("log BCM6838X_DelWanVlan,<line>, port=2,del wanVid=10 "), IsEmpty());
  EXPECT_THAT(device(), IsEmpty());
  forget();
  del(TranslationList(2, 1));
  EXPECT_THAT(commands(), IsEmpty());
}

// Required: refused-delete-gives-rest-back
TEST_F(VlanModeTranslationTest, DeleteRefusedThroughout_IsTheResultAndClearsTheSlots) {
  add(TranslationList(2, 1));
  unit.device().faults().refuseFrom(1);
  forget();
  EXPECT_EQ(del(TranslationList(2, 1)), 8);
  EXPECT_THAT(leftWith("log BCM6838X_DelUsTranslation,<line>, del us"), SizeIs(9));
  EXPECT_THAT(leftWith("log [BCM6838X_DelVlanAction"), SizeIs(3)) << "the last references";
  unit.device().faults().clear();
  forget();
  EXPECT_EQ(del(TranslationList(2, 1)), 0);
  EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(VlanModeTranslationTest, TwoPorts_ShareActionsAndDetachTheirOwnPortAction) {
  const auto list = TranslationList(1, 1);
  BCM6838X_AddUsTranslation(1, 10, 3, list.data());
  BCM6838X_AddUsTranslation(2, 10, 3, list.data());
  EXPECT_THAT(leftWith("VLAN_ACTION_ADD"), SizeIs(3));
  EXPECT_THAT(device(), testing::IsSupersetOf(
                            {"port action 1.1 uni 1 action 1", "port action 1.1 uni 2 action 1"}));
  EXPECT_EQ(BCM6838X_DelUsTranslation(1, 10, 3, list.data()), 0);
  EXPECT_THAT(device(), SizeIs(9 + 2 + 3 + 1));
  EXPECT_THAT(device(), testing::Contains("port action 1.1 uni 2 action 1"));
  EXPECT_EQ(BCM6838X_DelUsTranslation(2, 10, 3, list.data()), 0);
  EXPECT_THAT(device(), IsEmpty());
}

TEST_F(VlanModeTranslationTest, FourPorts_ShareActionsAndDownstreamFlows) {
  for (std::uint32_t port = 1; port <= 4; ++port) {
    EXPECT_EQ(BCM6838X_AddUsTranslation(port, 10, 3, TranslationList(port, 2).data()), 0);
  }
  EXPECT_THAT(device(), SizeIs(4 * 17 + 3 + 5 + 4 * 2));
  for (const std::uint32_t port : {2U, 3U, 1U, 4U}) {
    EXPECT_EQ(BCM6838X_DelUsTranslation(port, 10, 3, TranslationList(port, 2).data()), 0);
  }
  EXPECT_THAT(device(), IsEmpty());
}

}  // namespace
}  // namespace hal_test
