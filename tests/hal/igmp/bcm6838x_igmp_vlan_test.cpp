/// @file
/// Tests of the multicast VLANs of the ports: what the table holds, shell lines, log and console
/// lines, refusals. They set the ports' VLAN modes and look at the table where it lies.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <bcm6838x_igmp.h>
#include <bcm6838x_vlan.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>

#include "igmp_vlan_fixture.h"
#include "support/console_output.h"
#include "support/library_tables.h"
#include "support/library_test.h"

namespace hal_test::igmp_vlan {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::string OutOfRange(const std::string& operation, std::uint32_t port) {
  return "log 4" + kSource + "[BCM6838X_" + operation + " <line>] port " + Number(port) +
         " is out of range\r\n";
}

// Required: mcast-rules-start-with-action-0
TEST_F(McastVlanTest, InitIgmp_SetsEveryEthernetPortAndFreesTheChannels) {
  std::memset(g_mcastUniPortInfo, 0xAA, sizeof(g_mcastUniPortInfo));
  std::memset(g_mcastChannelInfo, 0xAA, sizeof(g_mcastChannelInfo));
  unit.platform().config().ethPorts = 3;
  EXPECT_EQ(BCM6838X_InitIgmp(), 0U);
  EXPECT_THAT(left(), IsEmpty());
  for (std::uint32_t uni = 1; uni <= 3; ++uni) {
    EXPECT_EQ(port(uni).mode, 1);
    EXPECT_EQ(port(uni).stripActionIndex, kNone);
    EXPECT_THAT(port(uni).vlans, Each(kEmpty));
    for (const McastRule& rule : port(uni).rules) {
      EXPECT_EQ(rule.mvlan, kEmpty);
      EXPECT_EQ(rule.iptvVlan, kEmpty);
      EXPECT_EQ(rule.vlanActionIndex, 0xAAAAAAAAU) << "not touched, zero at the start";
    }
  }
  EXPECT_THAT(BytesOf(port(4)), Each(0xAA)) << "no Ethernet port";
  EXPECT_TRUE(std::ranges::all_of(BytesOf(g_mcastChannelInfo), [](int byte) { return byte == 0; }));
}

TEST_F(McastVlanTest, InitIgmp_MorePortsThanTheTableHas_FillsTheTable) {
  unit.platform().config().ethPorts = 200;
  EXPECT_EQ(BCM6838X_InitIgmp(), 0U);
  EXPECT_EQ(port(32).mode, 1);
}

TEST_F(McastVlanTest, AddVlan_KeepMode_StoresItAndJoinsTheVlanObjects) {
  EXPECT_EQ(BCM6838X_AddIgmpVlan(2, 100), 0U);
  EXPECT_EQ(left().front(), VlanLogged("AddIgmpVlan", "add igmp vlan  2  vid=100"));
  EXPECT_EQ(shellLines(), ObjectsMade(2, 100, 100));
  EXPECT_THAT(commands(), IsEmpty());
  EXPECT_THAT(port(2).vlans,
              ElementsAre(100, kEmpty, kEmpty, kEmpty, kEmpty, kEmpty, kEmpty, kEmpty));
  EXPECT_THAT(port(1).vlans, Each(kEmpty));
}

TEST_F(McastVlanTest, DelVlan_KeepMode_LeavesTheVlanObjects) {
  BCM6838X_AddIgmpVlan(2, 50);
  BCM6838X_AddIgmpVlan(2, 100);
  forget();
  EXPECT_EQ(Console([] { EXPECT_EQ(BCM6838X_DelIgmpVlan(2, 100), 0U); }), "");
  EXPECT_EQ(left().front(), VlanLogged("DelIgmpVlan", "del igmp vlan  2  vid=100"));
  EXPECT_EQ(shellLines(), ObjectsDestroyed(2, 100, 100));
  EXPECT_THAT(port(2).vlans,
              ElementsAre(50, kEmpty, kEmpty, kEmpty, kEmpty, kEmpty, kEmpty, kEmpty));
}

TEST_F(McastVlanTest, AddAndDelVlan_EveryMode_TouchTheObjectsOrOnlyTheTable) {
  for (const ModeRow& row : kModes) {
    g_PortVlanInfo[1].vlanMode = row.vlanMode;
    port(2).mode = row.mcastMode;
    forget();
    BCM6838X_AddIgmpVlan(2, 100);
    EXPECT_EQ(port(2).vlans[0], 100);
    BCM6838X_DelIgmpVlan(2, 100);
    EXPECT_EQ(port(2).vlans[0], kEmpty);
    EXPECT_EQ(shellLines(), row.inObjects
                                ? Joined(ObjectsMade(2, 100, 100), ObjectsDestroyed(2, 100, 100))
                                : std::vector<std::string>())
        << row.vlanMode << " " << row.mcastMode;
    EXPECT_EQ(logLines().front(), VlanLogged("AddIgmpVlan", "add igmp vlan  2  vid=100"));
  }
}

// Required: mcast-ninth-vlan-silent
TEST_F(McastVlanTest, AddVlan_TheNinth_IsDroppedSilently) {
  for (std::uint16_t vid = 1; vid <= kMcastPlaces; ++vid) {
    BCM6838X_AddIgmpVlan(1, vid);
  }
  forget();
  EXPECT_EQ(Console([] { EXPECT_EQ(BCM6838X_AddIgmpVlan(1, 9), 0U); }), "");
  EXPECT_THAT(left(), ElementsAre(VlanLogged("AddIgmpVlan", "add igmp vlan  1  vid=9")));
  EXPECT_THAT(port(1).vlans, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
  BCM6838X_DelIgmpVlan(1, 4);
  BCM6838X_AddIgmpVlan(1, 9);
  EXPECT_THAT(port(1).vlans, ElementsAre(1, 2, 3, 9, 5, 6, 7, 8)) << "the first empty place";
}

// Required: mcast-vlan-twice-takes-two-places
TEST_F(McastVlanTest, AddVlan_TheSameTwice_TakesTwoPlaces) {
  BCM6838X_AddIgmpVlan(1, 100);
  BCM6838X_AddIgmpVlan(1, 100);
  EXPECT_EQ(port(1).vlans[0], 100);
  EXPECT_EQ(port(1).vlans[1], 100);
  BCM6838X_DelIgmpVlan(1, 100);
  EXPECT_EQ(port(1).vlans[0], kEmpty) << "the first of them";
  EXPECT_EQ(port(1).vlans[1], 100);
}

TEST_F(McastVlanTest, DelVlan_NotThere_TellsTheConsole) {
  BCM6838X_AddIgmpVlan(1, 100);
  forget();
  EXPECT_EQ(Console([] { EXPECT_EQ(BCM6838X_DelIgmpVlan(1, 101), 0U); }),
            "BCM6838X_DelIgmpVlan(<line>) no igmp vlan=101 in the port=1\r\n");
  EXPECT_THAT(left(), ElementsAre(VlanLogged("DelIgmpVlan", "del igmp vlan  1  vid=101")));
  EXPECT_EQ(Console([] { EXPECT_EQ(BCM6838X_DelIgmpVlan(2, 100), 0U); }),
            "BCM6838X_DelIgmpVlan(<line>) no igmp vlan=100 in the port=2\r\n");
  EXPECT_EQ(port(1).vlans[0], 100);
}

TEST_F(McastVlanTest, DelVlan_TheMarkOfAnEmptyPlace_IsNotFound) {
  EXPECT_EQ(Console([] { EXPECT_EQ(BCM6838X_DelIgmpVlan(1, 0xFFFF), 0U); }),
            "BCM6838X_DelIgmpVlan(<line>) no igmp vlan=65535 in the port=1\r\n");
  EXPECT_THAT(shellLines(), IsEmpty());
}

TEST_F(McastVlanTest, Arguments_AreTheirLowBits) {
  EXPECT_EQ(BCM6838X_AddIgmpVlan(0xFFFFFF02, 0x10064), 0U);
  EXPECT_EQ(BCM6838X_DelIgmpVlan(0x102, 0xABCD0064), 0U);
  EXPECT_EQ(shellLines(), Joined(ObjectsMade(2, 100, 100), ObjectsDestroyed(2, 100, 100)));
  forget();
  BCM6838X_SetMulticastVlanMode(0x102, 0x10002);
  EXPECT_THAT(left(),
              ElementsAre(VlanLogged("SetMulticastVlanMode", "set igmp vlan mode  2  vlanMode=2")));
  EXPECT_EQ(port(2).mode, 2);
  forget();
  BCM6838X_AddMulticastVlanTrans(0x102, 0x10064, 0x1000A);
  BCM6838X_DelMulticastVlanTrans(0x102, 0x20064, 0x2000A);
  EXPECT_EQ(shellLines(), Joined(ObjectsMade(2, 100, 10), ObjectsDestroyed(2, 100, 10)));
}

TEST_F(McastVlanTest, PortOutOfRange_IsAnInvalidParameterInTheLogAndChangesNothing) {
  struct Row {
    std::string operation;
    std::string logged;
    std::function<std::uint32_t(std::uint32_t)> call;
  };
  const std::vector<Row> rows = {
      {"AddIgmpVlan", "add igmp vlan  @  vid=5",
       [](std::uint32_t port) { return BCM6838X_AddIgmpVlan(port, 5); }},
      {"DelIgmpVlan", "del igmp vlan  @  vid=5",
       [](std::uint32_t port) { return BCM6838X_DelIgmpVlan(port, 5); }},
      {"SetMulticastVlanMode", "set igmp vlan mode  @  vlanMode=0",
       [](std::uint32_t port) { return BCM6838X_SetMulticastVlanMode(port, 0); }},
      {"AddMulticastVlanTrans", "port=@ mvlan=5, iptvVlan=6",
       [](std::uint32_t port) { return BCM6838X_AddMulticastVlanTrans(port, 5, 6); }},
      {"DelMulticastVlanTrans", "port=@ mvlan=5, iptvVlan=6",
       [](std::uint32_t port) { return BCM6838X_DelMulticastVlanTrans(port, 5, 6); }},
  };
  const std::vector<std::uint8_t> before = BytesOf(g_mcastUniPortInfo);
  int refusals = 0;
  for (const Row& row : rows) {
    for (const std::uint32_t uni : {0U, 33U, 255U}) {
      forget();
      EXPECT_EQ(Console([&] { EXPECT_EQ(row.call(0x100 + uni), 1U); }), "");
      std::string logged = row.logged;
      logged.replace(logged.find('@'), 1, Number(uni));
      EXPECT_THAT(left(),
                  ElementsAre(VlanLogged(row.operation, logged), OutOfRange(row.operation, uni)));
      ++refusals;
    }
  }
  EXPECT_EQ(refusals, 15);
  EXPECT_TRUE(BytesOf(g_mcastUniPortInfo) == before);
  EXPECT_EQ(BCM6838X_AddIgmpVlan(32, 5), 0U) << "the table has 32 ports";
}

/// What the operations of a port return, each, with the Nth command refused.
std::vector<std::uint32_t> ChangesOfAPort() {
  return {BCM6838X_SetMulticastVlanMode(1, 0),        BCM6838X_SetMulticastVlanMode(1, 2),
          BCM6838X_AddMulticastVlanTrans(1, 100, 10), BCM6838X_AddIgmpVlan(1, 100),
          BCM6838X_DelMulticastVlanTrans(1, 100, 10), BCM6838X_DelIgmpVlan(1, 100),
          BCM6838X_SetMulticastVlanMode(1, 1)};
}

TEST_F(McastVlanTest, EachCommandFailingInTurn_OnlyTheStripActionIsReported) {
  std::uint32_t rounds = 0;
  for (std::uint32_t nth = 1; nth <= 5; ++nth, ++rounds) {
    unit.device().faults().clear();
    unit.device().faults().refuseNth(nth);
    forget();
    EXPECT_THAT(ChangesOfAPort(), ElementsAre(nth == 1 ? 1 : 0, 0, 0, 0, 0, 0, 0)) << nth;
    // A rule whose action was refused has none to delete.
    EXPECT_THAT(commands(), SizeIs(nth == 3 ? 3 : 4)) << nth;
    EXPECT_THAT(port(1).vlans, Each(kEmpty));
    EXPECT_EQ(port(1).stripActionIndex, kNone);
    EXPECT_EQ(port(1).rules[0].mvlan, kEmpty);
    EXPECT_EQ(port(1).mode, 1);
  }
  EXPECT_EQ(rounds, 5U) << "the last round refuses nothing";
}

TEST_F(McastVlanTest, EveryShellLineRefused_TheTableIsTheSame) {
  unit.shell().faults().refuseFrom(1);
  EXPECT_THAT(ChangesOfAPort(), Each(0U));
  BCM6838X_AddIgmpVlan(2, 100);
  EXPECT_EQ(port(2).vlans[0], 100);
}

class McastVlanUnsetTest : public LibraryTest {};

TEST_F(McastVlanUnsetTest, BeforeTheStart_EveryPlaceAndRuleIsTaken) {
  BCM6838X_AddIgmpVlan(1, 100);
  EXPECT_THAT(g_mcastUniPortInfo[0].vlans, Each(0));
  EXPECT_EQ(Console([] { BCM6838X_AddMulticastVlanTrans(1, 100, 10); }),
            "BCM6838X_AddMulticastVlanTrans(<line>) add igmp vlan translation rule more than 8 "
            "for the port 1\r\n");
  EXPECT_THAT(OfKind(left(), "shell"), IsEmpty());
}

}  // namespace
}  // namespace hal_test::igmp_vlan
