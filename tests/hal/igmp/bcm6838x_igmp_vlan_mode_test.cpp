/// @file
/// Tests of the treatment of a port's multicast VLANs: what entering and leaving each mode does to
/// the strip action and to the VLAN objects.
#include <array>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include <bcm6838x_igmp.h>
#include <bcm6838x_vlan.h>
#include <brmgr_record.h>

#include "igmp_vlan_fixture.h"
#include "support/library_tables.h"
#include "support/refusal.h"

namespace hal_test::igmp_vlan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string StripSent() {
  return ActionSent(4, 0);
}

// Required: mcast-actions-without-tpid
TEST_F(McastVlanTest, SetMode_Strip_CreatesThePortsAction) {
  EXPECT_EQ(BCM6838X_SetMulticastVlanMode(3, 0), 0U);
  EXPECT_THAT(left(),
              ElementsAre(VlanLogged("SetMulticastVlanMode", "set igmp vlan mode  3  vlanMode=0"),
                          StripSent()));
  EXPECT_EQ(port(3).mode, 0);
  EXPECT_EQ(port(3).stripActionIndex, 0U);
  EXPECT_EQ(port(2).stripActionIndex, kNone);
}

// Required: strip-mode-again-adds-action
TEST_F(McastVlanTest, SetMode_StripTwice_CreatesTwoActionsAndKeepsTheSecond) {
  BCM6838X_SetMulticastVlanMode(3, 0);
  forget();
  EXPECT_EQ(BCM6838X_SetMulticastVlanMode(3, 0), 0U);
  EXPECT_THAT(commands(), ElementsAre(StripSent()));
  EXPECT_EQ(port(3).stripActionIndex, 1U);
  EXPECT_EQ(unit.device().tables().downstream.actions.size(), 2U);
}

TEST_F(McastVlanTest, SetMode_LeavingStrip_DeletesTheAction) {
  BCM6838X_SetMulticastVlanMode(2, 0);
  BCM6838X_SetMulticastVlanMode(3, 0);
  for (const std::uint32_t mode : {2U, 9U}) {
    BCM6838X_SetMulticastVlanMode(3, 0);
    const std::uint32_t index = port(3).stripActionIndex;
    EXPECT_NE(index, kNone);
    forget();
    EXPECT_EQ(BCM6838X_SetMulticastVlanMode(3, mode), 0U);
    EXPECT_THAT(commands(), ElementsAre(ActionDeleted(index)));
    EXPECT_EQ(port(3).stripActionIndex, kNone);
    EXPECT_EQ(port(3).mode, mode);
  }
}

// Required: mcast-leaving-strip-always-deletes
TEST_F(McastVlanTest, SetMode_StripIsRefused_LogsReturnsOneAndTheModeIsSet) {
  unit.device().faults().refuseNth(1);
  EXPECT_EQ(BCM6838X_SetMulticastVlanMode(3, 0), 1U);
  EXPECT_THAT(
      left(),
      ElementsAre(VlanLogged("SetMulticastVlanMode", "set igmp vlan mode  3  vlanMode=0"),
                  StripSent(), RefusalLogged(102), kPlace + "Create vlan action error\r\n"));
  EXPECT_EQ(port(3).mode, 0);
  EXPECT_EQ(port(3).stripActionIndex, kNone);

  // Leaving the mode sends the delete all the same.
  forget();
  EXPECT_EQ(BCM6838X_SetMulticastVlanMode(3, 2), 0U);
  EXPECT_THAT(commands(), ElementsAre(ActionDeleted(kNone)));
}

TEST_F(McastVlanTest, SetMode_SecondStripIsRefused_KeepsTheFirstIndex) {
  BCM6838X_SetMulticastVlanMode(3, 0);
  unit.device().faults().refuseNth(1);
  EXPECT_EQ(BCM6838X_SetMulticastVlanMode(3, 0), 1U);
  EXPECT_EQ(port(3).stripActionIndex, 0U);
}

TEST_F(McastVlanTest, SetMode_DeleteIsRefused_ForgetsTheIndex) {
  BCM6838X_SetMulticastVlanMode(3, 0);
  unit.device().faults().refuseNth(1);
  EXPECT_EQ(BCM6838X_SetMulticastVlanMode(3, 1), 0U);
  EXPECT_EQ(port(3).stripActionIndex, kNone);
  EXPECT_EQ(port(3).mode, 1);
}

TEST_F(McastVlanTest, SetMode_LeavingAndEnteringKeep_MovesEveryVlanOutAndIn) {
  BCM6838X_AddIgmpVlan(2, 100);
  BCM6838X_AddIgmpVlan(2, 50);
  BCM6838X_AddIgmpVlan(2, 101);
  BCM6838X_DelIgmpVlan(2, 50);
  forget();
  EXPECT_EQ(BCM6838X_SetMulticastVlanMode(2, 2), 0U);
  EXPECT_EQ(shellLines(), Joined(ObjectsDestroyed(2, 100, 100), ObjectsDestroyed(2, 101, 101)));
  EXPECT_EQ(port(2).vlans[0], 100) << "the table keeps them";
  EXPECT_EQ(port(2).vlans[2], 101);
  forget();
  EXPECT_EQ(BCM6838X_SetMulticastVlanMode(2, 1), 0U);
  EXPECT_EQ(shellLines(), Joined(ObjectsMade(2, 100, 100), ObjectsMade(2, 101, 101)));
  EXPECT_THAT(commands(), IsEmpty());
}

// Required: strip-mode-again-adds-action
TEST_F(McastVlanTest, SetMode_KeepAgain_AddsTheVlansAgain) {
  BCM6838X_AddIgmpVlan(2, 100);
  forget();
  EXPECT_EQ(BCM6838X_SetMulticastVlanMode(2, 1), 0U);
  EXPECT_THAT(shellLines(), ElementsAre("shell bs /b/c vlan/name=lan1_100 vid_enable[100]=no",
                                        "shell bs /b/c vlan/name=lan1_100 vid_enable[100]=yes"))
      << "the WAN object has it, the LAN object counts it";
}

TEST_F(McastVlanTest, SetMode_TransparentOrZteStacking_LeavesTheObjectsAlone) {
  int modes = 0;
  for (const std::uint32_t vlanMode :
       {BCM6838X_VLAN_MODE_TRANSPARENT, BCM6838X_VLAN_MODE_ZTE_STACKING}) {
    g_PortVlanInfo[1].vlanMode = vlanMode;
    BCM6838X_AddIgmpVlan(2, 100);
    BCM6838X_SetMulticastVlanMode(2, 2);
    BCM6838X_SetMulticastVlanMode(2, 1);
    ++modes;
  }
  EXPECT_EQ(modes, 2);
  EXPECT_THAT(shellLines(), IsEmpty());
}

TEST_F(McastVlanTest, SetMode_FromStripToKeepAndBack_LeavesTheOldModeFirst) {
  BCM6838X_SetMulticastVlanMode(2, 0);
  BCM6838X_AddIgmpVlan(2, 100);
  EXPECT_THAT(shellLines(), IsEmpty());
  forget();
  EXPECT_EQ(BCM6838X_SetMulticastVlanMode(2, 1), 0U);
  EXPECT_EQ(doneInOrder(), Joined({ActionDeleted(0)}, ObjectsMade(2, 100, 100)));
  forget();
  EXPECT_EQ(BCM6838X_SetMulticastVlanMode(2, 0), 0U);
  EXPECT_EQ(doneInOrder(), Joined(ObjectsDestroyed(2, 100, 100), {StripSent()}));
}

TEST_F(McastVlanTest, SetMode_OtherValues_LeaveAndEnterTheOthersAlone) {
  BCM6838X_AddIgmpVlan(2, 100);
  int values = 0;
  for (const std::uint16_t mode : std::to_array<std::uint16_t>({3, 7, 0xFFFF})) {
    forget();
    EXPECT_EQ(BCM6838X_SetMulticastVlanMode(2, mode), 0U);
    EXPECT_EQ(port(2).mode, mode);
    EXPECT_EQ(BCM6838X_SetMulticastVlanMode(2, mode), 0U) << "again";
    EXPECT_EQ(doneInOrder(), ObjectsDestroyed(2, 100, 100));
    forget();
    EXPECT_EQ(BCM6838X_SetMulticastVlanMode(2, 1), 0U);
    EXPECT_EQ(doneInOrder(), ObjectsMade(2, 100, 100));
    ++values;
  }
  EXPECT_EQ(values, 3);
}

TEST_F(McastVlanTest, SetMode_StripIsRefusedOnTheWayFromKeep_TheObjectsAreLeft) {
  BCM6838X_AddIgmpVlan(2, 100);
  unit.device().faults().refuseNth(1);
  forget();
  EXPECT_EQ(BCM6838X_SetMulticastVlanMode(2, 0), 1U);
  EXPECT_EQ(doneInOrder(), Joined(ObjectsDestroyed(2, 100, 100), {StripSent()}));
  EXPECT_EQ(port(2).mode, 0);
  EXPECT_EQ(port(2).vlans[0], 100);
}

}  // namespace
}  // namespace hal_test::igmp_vlan
