/// @file
/// Tests of the translation rules of a port's multicast VLANs: the table, the VLAN objects and
/// actions, refusals.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include <bcm6838x_igmp.h>
#include <bcm6838x_vlan.h>
#include <brmgr_record.h>

#include "igmp_vlan_fixture.h"
#include "support/console_output.h"
#include "support/library_tables.h"
#include "support/refusal.h"

namespace hal_test::igmp_vlan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class McastTransTest : public McastVlanTest {
 protected:
  static std::string transLogged(const std::string& operation, std::uint32_t port,
                                 std::uint32_t mvlan, std::uint32_t iptvVlan) {
    return VlanLogged(
        operation + "MulticastVlanTrans",
        "port=" + Number(port) + " mvlan=" + Number(mvlan) + ", iptvVlan=" + Number(iptvVlan));
  }

  static void expectRule(const McastRule& rule, std::uint16_t mvlan, std::uint16_t iptvVlan,
                         std::uint32_t index) {
    EXPECT_EQ(rule.mvlan, mvlan);
    EXPECT_EQ(rule.iptvVlan, iptvVlan);
    EXPECT_EQ(rule.vlanActionIndex, index);
  }
};

// Required: mcast-actions-without-tpid
TEST_F(McastTransTest, Add_JoinsTheObjectsAndCreatesTheAction) {
  EXPECT_EQ(BCM6838X_AddMulticastVlanTrans(2, 100, 10), 0U);
  EXPECT_EQ(left().front(), transLogged("Add", 2, 100, 10));
  EXPECT_EQ(left().back(), ActionSent(8, 10));
  EXPECT_EQ(shellLines(), ObjectsMade(2, 100, 10));
  EXPECT_THAT(commands(), SizeIs(1));
  expectRule(port(2).rules[0], 100, 10, 0);
  expectRule(port(2).rules[1], kEmpty, kEmpty, 0);
}

TEST_F(McastTransTest, Add_InEveryMode_JoinsTheObjects) {
  int modes = 0;
  for (const ModeRow& row : kModes) {
    g_PortVlanInfo[1].vlanMode = row.vlanMode;
    port(2).mode = row.mcastMode;
    forget();
    BCM6838X_AddMulticastVlanTrans(2, 100, 10);
    BCM6838X_DelMulticastVlanTrans(2, 100, 10);
    EXPECT_EQ(shellLines(), Joined(ObjectsMade(2, 100, 10), ObjectsDestroyed(2, 100, 10)));
    ++modes;
  }
  EXPECT_EQ(modes, 13);
}

// Required: mcast-ninth-vlan-silent
TEST_F(McastTransTest, Add_TheNinth_TellsTheConsole) {
  for (std::uint16_t i = 0; i < kMcastPlaces; ++i) {
    BCM6838X_AddMulticastVlanTrans(2, 100 + i, 10);
  }
  forget();
  EXPECT_EQ(Console([] { EXPECT_EQ(BCM6838X_AddMulticastVlanTrans(2, 200, 10), 0U); }),
            "BCM6838X_AddMulticastVlanTrans(<line>) add igmp vlan translation rule more than 8 "
            "for the port 2\r\n");
  EXPECT_THAT(left(), ElementsAre(transLogged("Add", 2, 200, 10)));
  for (std::uint16_t i = 0; i < kMcastPlaces; ++i) {
    expectRule(port(2).rules.at(i), 100 + i, 10, i);
  }
}

// Required: mcast-rule-kept-without-action
TEST_F(McastTransTest, Add_DriverRefuses_KeepsTheRuleWithoutAction) {
  unit.device().faults().refuseNth(1);
  EXPECT_EQ(BCM6838X_AddMulticastVlanTrans(2, 100, 10), 0U);
  expectRule(port(2).rules[0], 100, 10, kNone);
  EXPECT_EQ(left().back(), RefusalLogged(102));

  // There is then nothing to delete in the driver.
  forget();
  EXPECT_EQ(BCM6838X_DelMulticastVlanTrans(2, 100, 10), 0U);
  EXPECT_THAT(commands(), IsEmpty());
  EXPECT_EQ(shellLines(), ObjectsDestroyed(2, 100, 10));
  expectRule(port(2).rules[0], kEmpty, kEmpty, kNone);
}

TEST_F(McastTransTest, Del_FreesTheFirstRuleOfTheMulticastVlan) {
  BCM6838X_AddMulticastVlanTrans(2, 50, 60);
  BCM6838X_AddMulticastVlanTrans(2, 100, 10);
  BCM6838X_AddMulticastVlanTrans(2, 100, 11);
  forget();
  EXPECT_EQ(Console([] { EXPECT_EQ(BCM6838X_DelMulticastVlanTrans(2, 100, 10), 0U); }), "");
  EXPECT_EQ(left().front(), transLogged("Del", 2, 100, 10));
  EXPECT_EQ(left().back(), ActionDeleted(1));
  expectRule(port(2).rules[0], 50, 60, 0);
  expectRule(port(2).rules[1], kEmpty, kEmpty, kNone);
  expectRule(port(2).rules[2], 100, 11, 2);
  BCM6838X_AddMulticastVlanTrans(2, 70, 71);
  expectRule(port(2).rules[1], 70, 71, 1);
}

// Required: mcast-rule-found-by-mvlan
TEST_F(McastTransTest, Del_TheOtherVlanIsNotComparedButLeavesTheObjects) {
  BCM6838X_AddMulticastVlanTrans(2, 100, 10);
  forget();
  EXPECT_EQ(BCM6838X_DelMulticastVlanTrans(2, 100, 11), 0U);
  expectRule(port(2).rules[0], kEmpty, kEmpty, kNone);
  EXPECT_THAT(commands(), ElementsAre(ActionDeleted(0)));
  EXPECT_THAT(shellLines(), IsEmpty()) << "the objects do not know VLAN 11";
}

TEST_F(McastTransTest, Del_NotThere_TellsTheConsole) {
  BCM6838X_AddMulticastVlanTrans(2, 100, 10);
  forget();
  EXPECT_EQ(Console([] { EXPECT_EQ(BCM6838X_DelMulticastVlanTrans(2, 101, 10), 0U); }),
            "BCM6838X_DelMulticastVlanTrans(<line>) igmp vlan translation rule(port=2, 101->10) "
            "not appear\r\n");
  EXPECT_THAT(left(), ElementsAre(transLogged("Del", 2, 101, 10)));
  EXPECT_EQ(Console([] { EXPECT_EQ(BCM6838X_DelMulticastVlanTrans(2, 0xFFFF, 10), 0U); }),
            "BCM6838X_DelMulticastVlanTrans(<line>) igmp vlan translation rule(port=2, "
            "65535->10) not appear\r\n")
      << "a free rule is none";
  expectRule(port(2).rules[0], 100, 10, 0);
}

TEST_F(McastTransTest, Del_DriverRefuses_ForgetsTheAction) {
  BCM6838X_AddMulticastVlanTrans(2, 100, 10);
  unit.device().faults().refuseNth(1);
  forget();
  EXPECT_EQ(BCM6838X_DelMulticastVlanTrans(2, 100, 10), 0U);
  EXPECT_EQ(left().back(), RefusalLogged(104));
  expectRule(port(2).rules[0], kEmpty, kEmpty, kNone);
}

}  // namespace
}  // namespace hal_test::igmp_vlan
