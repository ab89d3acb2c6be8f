/// @file
/// Tests of the multicast VLANs of the ports: what the table holds, shell lines, VLAN actions, log
/// and console lines. They set the ports' VLAN modes and look at the table where it lies.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <vector>

#include <bcm6838x_igmp.h>
#include <bcm6838x_vlan.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>

#include "support/console_output.h"
#include "support/library_tables.h"
#include "support/library_test.h"
#include "support/refusal.h"
#include "support/wire_record.h"

namespace hal_test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::uint16_t kEmpty = 0xFFFF;
constexpr std::uint32_t kNone = 0xFFFFFFFF;
const std::string kSource = " hal/switch/bcm6838x/src/bcm6838x_igmp_vlan.cpp ";
const std::string kPlace = "log 1" + kSource;

std::string Number(std::uint32_t number) {
  return std::to_string(number);
}

std::string VlanLogged(const std::string& operation, const std::string& text) {
  return kPlace + "###### BCM6838X_" + operation + ",<line>, " + text + "\r\n";
}

std::string ActionSent(std::uint32_t cmd, std::uint16_t vid) {
  return Sent("VLAN_ACTION_ADD", 1, WireRecord(24).u32(0, cmd).u16(4, vid).u32(20, kNone));
}

std::string StripSent() {
  return ActionSent(4, 0);
}

std::string ActionDeleted(std::uint32_t index) {
  return Sent("VLAN_ACTION_DEL", 0, WireRecord(8).u32(4, index));
}

std::string OutOfRange(const std::string& operation, std::uint32_t port) {
  return "log 4" + kSource + "[BCM6838X_" + operation + " <line>] port " + Number(port) +
         " is out of range\r\n";
}

/// The shell lines that make the objects of a VLAN on a port whose LAN object is lan(port - 1).
std::vector<std::string> ObjectsMade(std::uint32_t port, std::uint32_t wanVid,
                                     std::uint32_t lanVid) {
  const std::string wan = "vlan/name=wan0_" + Number(wanVid);
  const std::string lan = "lan" + Number(port - 1);
  const std::string object = "vlan/name=" + lan + "_" + Number(lanVid);
  return {"shell bs /b/n " + wan + " port/index=wan0",
          "shell bs /b/c " + wan + " vid_enable[" + Number(wanVid) + "]=yes",
          "shell bs /b/n " + object + " port/index=" + lan,
          "shell bs /b/c " + object + " vid_enable[" + Number(lanVid) + "]=yes"};
}

std::vector<std::string> ObjectsDestroyed(std::uint32_t port, std::uint32_t wanVid,
                                          std::uint32_t lanVid) {
  const std::string wan = "vlan/name=wan0_" + Number(wanVid);
  const std::string object = "vlan/name=lan" + Number(port - 1) + "_" + Number(lanVid);
  return {"shell bs /b/c " + wan + " vid_enable[" + Number(wanVid) + "]=no", "shell bs /b/d " + wan,
          "shell bs /b/c " + object + " vid_enable[" + Number(lanVid) + "]=no",
          "shell bs /b/d " + object};
}

std::vector<std::string> Joined(std::vector<std::string> first,
                                const std::vector<std::string>& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

constexpr std::uint32_t kTagMode = 1;

class McastVlanTest : public LibraryTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    ASSERT_EQ(BCM6838X_InitIgmp(), 0U);
    for (PortVlanInfo& port : g_PortVlanInfo) {
      port.vlanMode = kTagMode;
    }
    forget();
  }

  static McastPort& port(std::uint32_t uni) { return g_mcastUniPortInfo[uni - 1]; }
  [[nodiscard]] std::vector<std::string> shellLines() const { return OfKind(left(), "shell"); }
  /// Commands and shell lines.
  [[nodiscard]] std::vector<std::string> doneInOrder() const {
    std::vector<std::string> lines = left();
    std::erase_if(lines, [](const std::string& line) { return line.starts_with("log "); });
    return lines;
  }
};

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

/// Modes of a port, and whether its multicast VLANs are in its VLAN objects.
struct ModeRow {
  std::uint32_t vlanMode;
  std::uint16_t mcastMode;
  bool inObjects;
};

constexpr std::array<ModeRow, 13> kModes = {{
    {0, 1, false},
    {1, 1, true},
    {2, 1, true},
    {3, 1, true},
    {4, 1, true},
    {19, 1, true},
    {20, 1, true},
    {160, 1, false},
    {253, 1, true},
    {255, 1, true},
    {1, 0, false},
    {1, 2, false},
    {1, 7, false},
}};

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

TEST_F(McastVlanTest, SetMode_Strip_CreatesThePortsAction) {
  EXPECT_EQ(BCM6838X_SetMulticastVlanMode(3, 0), 0U);
  EXPECT_THAT(left(),
              ElementsAre(VlanLogged("SetMulticastVlanMode", "set igmp vlan mode  3  vlanMode=0"),
                          StripSent()));
  EXPECT_EQ(port(3).mode, 0);
  EXPECT_EQ(port(3).stripActionIndex, 0U);
  EXPECT_EQ(port(2).stripActionIndex, kNone);
}

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
  for (const std::uint32_t vlanMode : {0U, 160U}) {
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
}  // namespace hal_test
