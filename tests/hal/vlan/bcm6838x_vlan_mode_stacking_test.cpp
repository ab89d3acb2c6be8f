/// @file
/// Tests of ZTE and BDCOM stacking beyond their plain sequences: which entries take part, VIDs of
/// the low 12 bits, refused objects, port actions that stay, shared objects of several ports.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <bcm6838x_vlan.h>
#include <platform_config.h>
#include <platform_vos.h>

#include "hal/vlan/vlan_mode_fixture.h"

namespace hal_test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using List = VlanList<PortVlanStackEntry>;

/// What the access port of the PVID needs.
constexpr std::size_t kPvidObjects = 3;

class VlanModeStackingTest : public VlanModeTest {
 protected:
  static std::int32_t addBdcom(const List& list) {
    return BCM6838X_AddUsBDCOMStacking(2, 10, 3, list.data());
  }
  static std::int32_t delBdcom(const List& list) {
    return BCM6838X_DelUsBDCOMStacking(2, 10, 3, list.data());
  }
};

List OneEntry(const PortVlanStackEntry& entry) {
  List list = {};
  list.at(0) = entry;
  return list;
}

TEST_F(VlanModeStackingTest, Zte_AddThenDelete_LeavesNothing) {
  EXPECT_EQ(BCM6838X_AddUsZTEStacking(2, 10, 3), 0);
  EXPECT_THAT(device(), SizeIs(9 + 2 + 1 + 2));
  EXPECT_THAT(device(), Contains("port action 1.0 uni 2 action 0"));
  EXPECT_THAT(device(), Contains("port action 1.1 uni 2 action 0"));
  EXPECT_EQ(BCM6838X_DelUsZTEStacking(2, 10, 7), 0);
  EXPECT_THAT(device(), IsEmpty());
}

TEST_F(VlanModeStackingTest, Zte_EveryPort_NamesItsLanObject) {
  int calls = 0;
  for (const std::uint32_t revert : {0U, 1U}) {
    g_PortRevert = revert;
    for (std::uint32_t port = 1; port <= 4; ++port, ++calls) {
      const std::string line = "shell bs /b/c port/index=lan" +
                               std::to_string(revert == 0 ? port - 1 : 4 - port) + " transparent=";
      forget();
      BCM6838X_AddUsZTEStacking(port, 10, 3);
      BCM6838X_DelUsZTEStacking(port, 10, 3);
      EXPECT_THAT(leftWith("shell bs /b/c port/"), ElementsAre(line + "yes", line + "no"));
    }
  }
  EXPECT_EQ(calls, 8);
}

TEST_F(VlanModeStackingTest, Zte_ArgumentsAreTheirLowBits) {
  EXPECT_EQ(BCM6838X_AddUsZTEStacking(2, 0xABCD000A, 0xABCDEF05), 0);
  EXPECT_THAT(leftWith("VLAN_ACTION_ADD"),
              ElementsAre("VLAN_ACTION_ADD us cmd=push|replace_priority tag[0].vid=10 "
                          "tag[0].pbit=5"));
  EXPECT_EQ(leftWith("FLOW_ADD us").front(),
            "FLOW_ADD us outerVid=0 ingressPort=3 outerPbit=0 vlanNum=0 queue=5 icIndex=0 "
            "vlanActionIndex=0");
  EXPECT_EQ(BCM6838X_DelUsZTEStacking(2, 0xABCD000A, 0), 0);
  EXPECT_THAT(device(), IsEmpty());
}

// Required: last-priority-takes-references
TEST_F(VlanModeStackingTest, Zte_LastPriorityRefused_BuildsNoDoubleTaggedFlow) {
  // The upstream flows are the first command of its kind and the third to the tenth.
  unit.device().faults().refuseNth(9, 100);
  unit.device().faults().refuseNth(10, 100);
  EXPECT_EQ(BCM6838X_AddUsZTEStacking(2, 10, 3), 8);
  EXPECT_THAT(leftWith("FLOW_ADD ds"), ElementsAre("FLOW_ADD ds outerVid=10 vlanNum=1 icIndex=1"));
  EXPECT_THAT(leftWith("log BCM6838X_AddPortAction"), SizeIs(1));
  EXPECT_THAT(leftWith("log BCM6838X_AddUsZTEStacking,<line>, add us icIndex=4 flowIndex=-1 error"),
              SizeIs(2));
  EXPECT_THAT(leftWith("log BCM6838X_DelVlanAction,<line>, del vlan action cmd 257 vid[0]=10 "),
              SizeIs(2))
      << "released by the whole rule";
  forget();
  EXPECT_EQ(BCM6838X_DelUsZTEStacking(2, 10, 3), 0);
  EXPECT_THAT(leftWith("log BCM6838X_DelPortAction"), SizeIs(1)) << "no flow of double tags";
  EXPECT_THAT(device(), IsEmpty());
}

TEST_F(VlanModeStackingTest, Zte_OtherPriorityRefused_LeavesAReference) {
  unit.device().faults().refuseNth(4, 100);
  EXPECT_EQ(BCM6838X_AddUsZTEStacking(2, 10, 3), 0);
  EXPECT_EQ(BCM6838X_DelUsZTEStacking(2, 10, 3), 0);
  EXPECT_THAT(device(), ElementsAre("ds flow 1.1 vid 10 tags 2"));
}

TEST_F(VlanModeStackingTest, Zte_UntaggedFlowRefused_GoesOnWithTheTaggedOnes) {
  unit.device().faults().refuseNth(1, 100);
  EXPECT_EQ(BCM6838X_AddUsZTEStacking(2, 10, 3), 0);
  EXPECT_THAT(leftWith("FLOW_ADD ds"), ElementsAre("FLOW_ADD ds outerVid=10 vlanNum=2 icIndex=1"));
  EXPECT_THAT(leftWith("log BCM6838X_AddPortAction"), SizeIs(1));
  forget();
  EXPECT_EQ(BCM6838X_DelUsZTEStacking(2, 10, 3), 0);
  EXPECT_THAT(leftWith("log BCM6838X_GetDsIngressClass,<line>, "
                       "get ds ingress class vid 10  vlanNum 1"),
              IsEmpty());
  EXPECT_THAT(leftWith("log BCM6838X_DelWanVlan,<line>, port=2,del wanVid=10 lanVid=4096"),
              SizeIs(1))
      << "unlike the other modes";
  EXPECT_THAT(device(), IsEmpty());
}

TEST_F(VlanModeStackingTest, Zte_DownstreamFlowRefused_AttachesNoPortAction) {
  unit.device().faults().refuseNth(2, 100);
  EXPECT_EQ(BCM6838X_AddUsZTEStacking(2, 10, 3), 0);
  EXPECT_THAT(leftWith("log BCM6838X_AddPortAction"), SizeIs(1)) << "that of the double-tagged";
  EXPECT_EQ(BCM6838X_DelUsZTEStacking(2, 10, 3), 0);
  EXPECT_THAT(device(), IsEmpty());
}

TEST_F(VlanModeStackingTest, Zte_DoubleTaggedFlowRefused_AttachesNoPortActionForIt) {
  unit.device().faults().refuseNth(11, 100);
  EXPECT_EQ(BCM6838X_AddUsZTEStacking(2, 10, 3), 0);
  EXPECT_THAT(leftWith("FLOW_ADD ds outerVid=10 vlanNum=2"), SizeIs(1));
  EXPECT_THAT(leftWith("log BCM6838X_AddPortAction"), SizeIs(1));
  EXPECT_EQ(BCM6838X_DelUsZTEStacking(2, 10, 3), 0);
  EXPECT_THAT(device(), IsEmpty());
}

TEST_F(VlanModeStackingTest, Zte_DeleteRefusedThroughout_IsTheResultAndClearsTheSlots) {
  BCM6838X_AddUsZTEStacking(2, 10, 3);
  unit.device().faults().refuseFrom(1);
  forget();
  EXPECT_EQ(BCM6838X_DelUsZTEStacking(2, 10, 3), 8);
  EXPECT_THAT(leftWith("log BCM6838X_DelUsZTEStacking,<line>, del us"), SizeIs(9));
  EXPECT_THAT(leftWith("log BCM6838X_DelVlanAction,<line>, del vlan action num"), SizeIs(9));
  EXPECT_THAT(leftWith("log BCM6838X_DelPortAction"), SizeIs(9));
  unit.device().faults().clear();
  forget();
  EXPECT_EQ(BCM6838X_DelUsZTEStacking(2, 10, 3), 0);
  EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(VlanModeStackingTest, Zte_ShellLineRefused_IsTheResultOfADeleteWithoutFlows) {
  unit.shell().faults().refuseFrom(1);
  EXPECT_EQ(BCM6838X_AddUsZTEStacking(2, 10, 3), 0);
  EXPECT_EQ(BCM6838X_DelUsZTEStacking(2, 10, 3), 0) << "the last flow was deleted";
  const std::int32_t withoutFlows = BCM6838X_DelUsZTEStacking(2, 10, 3);
  EXPECT_NE(withoutFlows, 0);
  EXPECT_EQ(withoutFlows, VOS_System("%s", "bs /b/c port/index=lan1 transparent=no"));
}

TEST_F(VlanModeStackingTest, Zte_TwoAndFourPorts_ShareTheActionAndDetachTheirOwnPortActions) {
  BCM6838X_AddUsZTEStacking(1, 10, 3);
  BCM6838X_AddUsZTEStacking(2, 10, 3);
  EXPECT_THAT(leftWith("VLAN_ACTION_ADD"), SizeIs(1));
  EXPECT_THAT(device(), SizeIs(2 * 9 + 2 + 1 + 2 * 2));
  BCM6838X_AddUsZTEStacking(3, 10, 3);
  BCM6838X_AddUsZTEStacking(4, 10, 4);
  EXPECT_THAT(device(), SizeIs(4 * 9 + 2 + 2 + 4 * 2)) << "another priority, another action";
  for (const std::uint32_t port : {1U, 4U, 3U}) {
    EXPECT_EQ(BCM6838X_DelUsZTEStacking(port, 10, 3), 0);
  }
  EXPECT_THAT(device(), SizeIs(9 + 2 + 1 + 2));
  EXPECT_EQ(BCM6838X_DelUsZTEStacking(2, 10, 3), 0);
  EXPECT_THAT(device(), IsEmpty());
}

// Required: bdcom-entry-must-name-port
TEST_F(VlanModeStackingTest, Bdcom_EntriesThatDoNotTakePart_AreIgnored) {
  List list = {};
  list.at(0) = {2, {}, 1, 100, 0, 300};
  list.at(1) = {2, {}, 3, 101, 0, 300};
  list.at(2) = {3, {}, 2, 102, 0, 300};
  list.at(3) = {0, {}, 2, 103, 0, 300};
  list.at(4) = {2, {}, 2, 0, 0, 300};
  list.at(5) = {2, {}, 2, 105, 0, 0};
  list.at(511) = {2, {0xAA, 0xAA, 0xAA}, 2, 106, 0xAAAA, 300};
  EXPECT_EQ(addBdcom(list), 0);
  EXPECT_THAT(leftWith("FLOW_ADD us outerVid=10"),
              ElementsAre("FLOW_ADD us outerVid=106 ingressPort=3 outerPbit=0 vlanNum=1 queue=0 "
                          "icIndex=3 vlanActionIndex=1"));
  EXPECT_THAT(leftWith("log BCM6838X_AddLanVlan"),
              ElementsAre("log BCM6838X_AddLanVlan,<line>, add lan vlan  2  vid=106"));
  forget();
  EXPECT_EQ(delBdcom(list), 0);
  EXPECT_THAT(leftWith("log BCM6838X_DelLanVlan"),
              ElementsAre("log BCM6838X_DelLanVlan,<line>, del lan vlan  2  vid=106"));
  EXPECT_THAT(device(), IsEmpty());
}

TEST_F(VlanModeStackingTest, Bdcom_Delete_IgnoresEntriesThatDoNotTakePart) {
  addBdcom(OneEntry({2, {}, 2, 100, 0, 300}));
  forget();
  List list = {};
  list.at(0) = {2, {}, 1, 100, 0, 300};
  list.at(1) = {3, {}, 2, 100, 0, 300};
  list.at(2) = {2, {}, 2, 0, 0, 300};
  list.at(3) = {2, {}, 2, 100, 0, 0};
  EXPECT_EQ(delBdcom(list), 0);
  EXPECT_THAT(leftWith("FLOW_DEL dir=us"), ElementsAre("FLOW_DEL dir=us icIndex=0 flowIndex=0"));
}

TEST_F(VlanModeStackingTest, Bdcom_OfTheParameterAllBitsAreCompared) {
  List list = {};
  list.at(0) = {2, {}, 0x102, 100, 0, 300};
  list.at(1) = {2, {}, 0x10002, 101, 0, 300};
  list.at(2) = {2, {}, 0x80000002, 102, 0, 300};
  list.at(3) = {2, {}, 0x02000000, 103, 0, 300};
  EXPECT_EQ(addBdcom(list), 0);
  EXPECT_THAT(device(), SizeIs(kPvidObjects)) << "no entry is built";
  EXPECT_THAT(leftWith("log BCM6838X_AddLanVlan"), IsEmpty());
  delBdcom(list);
  for (PortVlanStackEntry& entry : list) {
    entry.stackParam = entry.stackParam != 0 ? 2 : 0;
  }
  addBdcom(list);
  EXPECT_THAT(leftWith("log BCM6838X_AddLanVlan"), SizeIs(4)) << "as 2 they are";
  for (PortVlanStackEntry& entry : list) {
    entry.stackParam = entry.stackParam != 0 ? 0x102 : 0;
  }
  forget();
  delBdcom(list);
  EXPECT_THAT(leftWith("FLOW_DEL dir=us"), ElementsAre("FLOW_DEL dir=us icIndex=0 flowIndex=0"))
      << "nor does a delete take them";
}

// Required: bdcom-cvid-counts-whole
TEST_F(VlanModeStackingTest, Bdcom_OfTheCustomerVidTheLowTwelveBitsAreUsed) {
  const List list = OneEntry({2, {}, 2, 0x1001, 0, 300});
  EXPECT_EQ(addBdcom(list), 0);
  EXPECT_THAT(leftWith("FLOW_ADD us outerVid=1 "), SizeIs(1));
  EXPECT_THAT(leftWith("shell bs /b/n vlan/name=lan"),
              ElementsAre("shell bs /b/n vlan/name=lan1_1 port/index=lan1"));
  EXPECT_EQ(delBdcom(list), 0);
  EXPECT_THAT(device(), IsEmpty());
}

/// Customer VIDs that are not zero, but whose low 12 bits are.
class CustomerVidTest : public VlanModeStackingTest,
                        public testing::WithParamInterface<std::uint32_t> {};

INSTANTIATE_TEST_SUITE_P(HighestBits, CustomerVidTest,
                         testing::Values(0x1000, 0x8000, 0x10000, 0x80000000));

// Required: bdcom-cvid-counts-whole
TEST_P(CustomerVidTest, Bdcom_WithoutItsLowBits_BuildsAFlowOfVidZero) {
  const List list = OneEntry({2, {}, 2, GetParam(), 0, 300});
  EXPECT_EQ(addBdcom(list), 0);
  EXPECT_THAT(leftWith("log [BCM6838X_Add"),
              ElementsAre("log [BCM6838X_AddWanVlan <line>] lanVid is 0 or 4096",
                          "log [BCM6838X_AddLanVlan <line>] vid is 0 or 4095"));
  EXPECT_THAT(leftWith("FLOW_ADD us outerVid=0 "),
              ElementsAre("FLOW_ADD us outerVid=0 ingressPort=3 outerPbit=0 vlanNum=0 queue=3 "
                          "icIndex=0 vlanActionIndex=0",
                          "FLOW_ADD us outerVid=0 ingressPort=3 outerPbit=0 vlanNum=1 queue=0 "
                          "icIndex=3 vlanActionIndex=1"));
  forget();
  // The delete takes the first slot of VID 0 for it, which is that of the untagged flow, and the
  // PVID part then finds that slot again: the flow of VID 0 and its action stay.
  EXPECT_EQ(delBdcom(list), 8);
  EXPECT_THAT(leftWith("FLOW_DEL"), ElementsAre("FLOW_DEL dir=us icIndex=0 flowIndex=0",
                                                "FLOW_DEL dir=ds icIndex=1 flowIndex=1",
                                                "FLOW_DEL dir=us icIndex=0 flowIndex=0",
                                                "FLOW_DEL dir=ds icIndex=1 flowIndex=0"));
  EXPECT_THAT(device(), ElementsAre("us flow 3.0 vid 0 pbit 0 tags 1 action 1",
                                    "us action 1 vid 300 pbit 0"));
}

// Required: bdcom-detach-by-customer-vid
TEST_F(VlanModeStackingTest, Bdcom_CustomerAndServiceVidDiffer_ThePortActionIsNotDetached) {
  addBdcom(OneEntry({2, {}, 2, 100, 0, 300}));
  forget();
  EXPECT_EQ(delBdcom(OneEntry({2, {}, 2, 100, 0, 300})), 0);
  EXPECT_THAT(leftWith("log BCM6838X_GetDsIngressClass"),
              ElementsAre("log BCM6838X_GetDsIngressClass,<line>, "
                          "get ds ingress class vid 100  vlanNum 2"));
  EXPECT_THAT(leftWith("log BCM6838X_DelPortAction"), IsEmpty());
}

TEST_F(VlanModeStackingTest, Bdcom_OtherPortKeepsTheServiceVlan_ThePortActionStaysAttached) {
  const List first = OneEntry({1, {}, 2, 100, 0, 300});
  const List second = OneEntry({2, {}, 2, 100, 0, 300});
  BCM6838X_AddUsBDCOMStacking(1, 10, 3, first.data());
  addBdcom(second);
  EXPECT_EQ(delBdcom(second), 0);
  EXPECT_THAT(device(), testing::IsSupersetOf(
                            {"port action 1.1 uni 1 action 0", "port action 1.1 uni 2 action 0"}));
  BCM6838X_DelUsBDCOMStacking(1, 10, 3, first.data());
  EXPECT_THAT(device(), IsEmpty()) << "with their flow";
}

TEST_F(VlanModeStackingTest, Bdcom_CustomerAndServiceVidEqual_ThePortActionIsDetached) {
  const List list = OneEntry({2, {}, 2, 300, 0, 300});
  addBdcom(list);
  forget();
  EXPECT_EQ(delBdcom(list), 0);
  EXPECT_THAT(leftWith("log BCM6838X_DelPortAction"),
              ElementsAre("log BCM6838X_DelPortAction,<line>, del port action port 2 icIndex=1 "
                          "flowIndex=1"));
  EXPECT_THAT(device(), IsEmpty());
}

TEST_F(VlanModeStackingTest, Bdcom_CustomerVidIsAnotherEntrysServiceVid_DetachesThatPortAction) {
  List list = OneEntry({2, {}, 2, 300, 0, 400});
  list.at(1) = {2, {}, 2, 100, 0, 300};
  addBdcom(list);
  forget();
  EXPECT_EQ(delBdcom(list), 0);
  EXPECT_THAT(leftWith("log BCM6838X_DelPortAction"),
              ElementsAre("log BCM6838X_DelPortAction,<line>, del port action port 2 icIndex=1 "
                          "flowIndex=2"));
  EXPECT_THAT(device(), IsEmpty());
}

// Required: slots-cleared-at-the-end
TEST_F(VlanModeStackingTest, Bdcom_SameCustomerVidTwice_BothEntriesDeleteTheFirstSlot) {
  List list = OneEntry({2, {}, 2, 100, 0, 300});
  list.at(1) = {2, {}, 2, 100, 0, 301};
  addBdcom(list);
  forget();
  EXPECT_EQ(delBdcom(list), 0) << "the last command is that of the PVID's flow";
  EXPECT_THAT(leftWith("FLOW_DEL dir=us icIndex=3"),
              ElementsAre("FLOW_DEL dir=us icIndex=3 flowIndex=0",
                          "FLOW_DEL dir=us icIndex=3 flowIndex=0"));
  EXPECT_THAT(device(), ElementsAre("us flow 3.1 vid 100 pbit 0 tags 1 action 2",
                                    "us action 2 vid 301 pbit 0"));
}

TEST_F(VlanModeStackingTest, Bdcom_SameServiceVlan_SharesActionAndDownstreamFlow) {
  List list = OneEntry({2, {}, 2, 100, 0, 300});
  list.at(1) = {2, {}, 2, 101, 0, 300};
  EXPECT_EQ(addBdcom(list), 0);
  EXPECT_THAT(device(), SizeIs(kPvidObjects + 2 + 1 + 1 + 1));
  EXPECT_EQ(delBdcom(list), 0);
  EXPECT_THAT(device(), IsEmpty());
}

// Required: bdcom-objects-before-flow
TEST_F(VlanModeStackingTest, Bdcom_FlowRefused_KeepsTheObjectsAndGoesOn) {
  unit.device().faults().refuseNth(3, 100);
  EXPECT_EQ(addBdcom(StackingList(2, 2)), 0);
  EXPECT_THAT(leftWith("log BCM6838X_AddUsBDCOMStacking"),
              ElementsAre("log BCM6838X_AddUsBDCOMStacking,<line>, "
                          "add us icIndex=3 flowIndex=-1 error"));
  EXPECT_THAT(leftWith("log BCM6838X_DelVlanAction,<line>, del vlan action cmd 1 vid[0]=300 "),
              SizeIs(1))
      << "released by the whole rule";
  EXPECT_THAT(leftWith("log BCM6838X_AddLanVlan"), SizeIs(2)) << "before the flow is tried";
  EXPECT_THAT(leftWith("FLOW_ADD ds outerVid=300"), IsEmpty());
  forget();
  EXPECT_EQ(delBdcom(StackingList(2, 2)), 0);
  EXPECT_THAT(leftWith("log BCM6838X_DelLanVlan"), SizeIs(1)) << "without a slot nothing is undone";
  EXPECT_THAT(device(), IsEmpty());
}

TEST_F(VlanModeStackingTest, Bdcom_LastFlowRefused_IsTheResult) {
  unit.device().faults().refuseNth(5, 100);
  EXPECT_EQ(addBdcom(StackingList(2, 2)), 8);
}

TEST_F(VlanModeStackingTest, Bdcom_PoolRefuses_CreatesTheFlowWithoutAnAction) {
  unit.device().faults().refuseNth(2, 102);
  EXPECT_EQ(addBdcom(StackingList(2, 1)), 0);
  EXPECT_THAT(device(), Contains("us flow 3.0 vid 100 pbit 0 tags 1 action none"));
  EXPECT_EQ(delBdcom(StackingList(2, 1)), 0);
  EXPECT_THAT(device(), IsEmpty());
}

TEST_F(VlanModeStackingTest, Bdcom_DownstreamFlowRefused_AttachesNoPortAction) {
  unit.device().faults().refuseNth(4, 100);
  EXPECT_EQ(addBdcom(StackingList(2, 1)), 0);
  EXPECT_THAT(leftWith("log BCM6838X_AddPortAction"), IsEmpty());
  EXPECT_EQ(delBdcom(StackingList(2, 1)), 0);
  EXPECT_THAT(device(), IsEmpty());
}

// Required: pvid-without-slot-keeps-wan
TEST_F(VlanModeStackingTest, Bdcom_UntaggedFlowRefused_DeleteKeepsTheWanObjectOfThePvid) {
  unit.device().faults().refuseNth(1, 100);
  EXPECT_EQ(addBdcom(StackingList(2, 1)), 0);
  forget();
  EXPECT_EQ(delBdcom(StackingList(2, 1)), 0);
  EXPECT_THAT(leftWith("log BCM6838X_DelWanVlan,<line>, port=2,del wanVid=10 "), IsEmpty());
  EXPECT_THAT(device(), IsEmpty());
  forget();
  delBdcom(StackingList(2, 1));
  EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(VlanModeStackingTest, Bdcom_DeleteRefusedThroughout_IsTheResultAndClearsTheSlots) {
  addBdcom(StackingList(2, 2));
  unit.device().faults().refuseFrom(1);
  forget();
  EXPECT_EQ(delBdcom(StackingList(2, 2)), 8);
  EXPECT_THAT(leftWith("log BCM6838X_DelUsBDCOMStacking,<line>, del us"), SizeIs(3));
  EXPECT_THAT(leftWith("shell bs /b/d"), SizeIs(2 + 2 + 1)) << "the objects go all the same";
  unit.device().faults().clear();
  forget();
  EXPECT_EQ(delBdcom(StackingList(2, 2)), 0);
  EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(VlanModeStackingTest, Bdcom_ArgumentsAreTheirLowBits) {
  const List list = {};
  EXPECT_EQ(BCM6838X_AddUsBDCOMStacking(2, 0xABCD000A, 0xABCDEF05, list.data()), 0);
  EXPECT_THAT(leftWith("VLAN_ACTION_ADD"),
              ElementsAre("VLAN_ACTION_ADD us cmd=push|replace_priority tag[0].vid=10 "
                          "tag[0].pbit=5"));
  EXPECT_EQ(BCM6838X_DelUsBDCOMStacking(2, 0xABCD000A, 9, list.data()), 0);
  EXPECT_THAT(device(), IsEmpty());
}

TEST_F(VlanModeStackingTest, Bdcom_FourPorts_ShareActionsAndDownstreamFlows) {
  for (std::uint32_t port = 1; port <= 4; ++port) {
    EXPECT_EQ(BCM6838X_AddUsBDCOMStacking(port, 10, 3, StackingList(port, 2).data()), 0);
  }
  EXPECT_THAT(device(), SizeIs(4 * 3 + 3 + 3 + 4 * 2));
  for (const std::uint32_t port : {2U, 3U, 1U, 4U}) {
    EXPECT_EQ(BCM6838X_DelUsBDCOMStacking(port, 10, 3, StackingList(port, 2).data()), 0);
  }
  EXPECT_THAT(device(), IsEmpty());
}

}  // namespace
}  // namespace hal_test
