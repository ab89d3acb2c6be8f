/// @file
/// Tests of the WAN and LAN VLAN objects: shell lines, log lines, bounds, tables filled to capacity
/// and beyond.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <bcm6838x_vlan.h>
#include <platform_config.h>

#include "support/library_test.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t kObjects = 256;
constexpr std::uint32_t kLanVidsPerPort = 512;
constexpr std::uint32_t kUniPorts = 32;
constexpr std::uint32_t kUntagged = 4096;
const std::string kSource = " hal/switch/bcm6838x/src/bcm6838x_vlan_object.cpp ";
const std::string kPlace = "log 1" + kSource;

std::string Number(std::uint32_t number) {
  return std::to_string(number);
}

std::string WanCreated(std::uint32_t vid) {
  return "shell bs /b/n vlan/name=wan0_" + Number(vid) + " port/index=wan0";
}

std::string WanEnabled(std::uint32_t vid) {
  return "shell bs /b/c vlan/name=wan0_" + Number(vid) + " vid_enable[" + Number(vid) + "]=yes";
}

std::string WanDisabled(std::uint32_t vid) {
  return "shell bs /b/c vlan/name=wan0_" + Number(vid) + " vid_enable[" + Number(vid) + "]=no";
}

std::string WanDestroyed(std::uint32_t vid) {
  return "shell bs /b/d vlan/name=wan0_" + Number(vid);
}

std::string LanName(std::uint32_t lan, std::uint32_t vid) {
  return "vlan/name=lan" + Number(lan) + "_" + Number(vid);
}

std::string LanCreated(std::uint32_t lan, std::uint32_t vid) {
  return "shell bs /b/n " + LanName(lan, vid) + " port/index=lan" + Number(lan);
}

std::string LanEnabled(std::uint32_t lan, std::uint32_t vid) {
  return "shell bs /b/c " + LanName(lan, vid) + " vid_enable[" + Number(vid) + "]=yes";
}

std::string LanDisabled(std::uint32_t lan, std::uint32_t vid) {
  return "shell bs /b/c " + LanName(lan, vid) + " vid_enable[" + Number(vid) + "]=no";
}

std::string LanDestroyed(std::uint32_t lan, std::uint32_t vid) {
  return "shell bs /b/d " + LanName(lan, vid);
}

/// "port", "wanVid" and "lanVid" stand for themselves here, as they do in the calls.
std::string WanAddLogged(std::uint32_t port, std::uint32_t wanVid, std::uint32_t lanVid,
                         const std::string& end = "") {
  return kPlace + "BCM6838X_AddWanVlan,<line>, add wan vlan  " + Number(port) +
         "  wanVid=" + Number(wanVid) + " lanVid=" + Number(lanVid) + end + "\r\n";
}

std::string WanDelLogged(std::uint32_t port, std::uint32_t wanVid, std::uint32_t lanVid) {
  return kPlace + "BCM6838X_DelWanVlan,<line>, port=" + Number(port) +
         ",del wanVid=" + Number(wanVid) + " lanVid=" + Number(lanVid) + "\r\n";
}

std::string WanDestroyLogged(std::uint32_t port, std::uint32_t wanVid, std::uint32_t lanVid,
                             const std::string& result) {
  return kPlace + "BCM6838X_DelWanVlan,<line>, port=" + Number(port) +
         ", del wanVid=" + Number(wanVid) + " lanVid=" + Number(lanVid) + " ret=" + result + "\r\n";
}

std::string LanAddLogged(std::uint32_t port, std::uint32_t vid) {
  return kPlace + "BCM6838X_AddLanVlan,<line>, add lan vlan  " + Number(port) +
         "  vid=" + Number(vid) + "\r\n";
}

std::string LanDelLogged(std::uint32_t port, std::uint32_t vid) {
  return kPlace + "BCM6838X_DelLanVlan,<line>, del lan vlan  " + Number(port) +
         "  vid=" + Number(vid) + "\r\n";
}

/// A port out of range is an invalid parameter; a VID out of range is logged as the traces are.
std::string Complaint(const std::string& operation, const std::string& text) {
  return (text.starts_with("port ") ? "log 4" : "log 1") + kSource + "[BCM6838X_" + operation +
         " <line>] " + text + "\r\n";
}

class VlanObjectTest : public LibraryTest {
 protected:
  [[nodiscard]] std::vector<std::string> shellLines() const { return OfKind(left(), "shell"); }
};

class WanVlanTest : public VlanObjectTest {
 protected:
  void fillTable() {
    for (std::uint32_t vid = 1; vid <= kObjects; ++vid) {
      ASSERT_EQ(BCM6838X_AddWanVlan(1, vid, 10), 0U);
    }
    forget();
  }

  void fillList(std::uint32_t port) {
    for (std::uint32_t lanVid = 1; lanVid <= kLanVidsPerPort; ++lanVid) {
      ASSERT_EQ(BCM6838X_AddWanVlan(port, 100, lanVid), 0U);
    }
    forget();
  }
};

// Required: log-double-blanks
TEST_F(WanVlanTest, Add_NewWanVid_CreatesAndEnablesTheObject) {
  EXPECT_EQ(BCM6838X_AddWanVlan(2, 100, 10), 0U);
  EXPECT_THAT(left(), ElementsAre(WanAddLogged(2, 100, 10), WanCreated(100), WanEnabled(100),
                                  WanAddLogged(2, 100, 10, " ret=0")));
}

// Required: wan-object-toggled
TEST_F(WanVlanTest, Add_KnownWanVid_LogsAgainAndTogglesTheObject) {
  BCM6838X_AddWanVlan(2, 100, 10);
  forget();
  EXPECT_EQ(BCM6838X_AddWanVlan(2, 100, 11), 0U);
  EXPECT_EQ(BCM6838X_AddWanVlan(3, 100, 10), 0U);
  EXPECT_THAT(left(), ElementsAre(WanAddLogged(2, 100, 11), WanAddLogged(2, 100, 11),
                                  WanDisabled(100), WanEnabled(100), WanAddLogged(3, 100, 10),
                                  WanAddLogged(3, 100, 10), WanDisabled(100), WanEnabled(100)));
}

// Required: wan-object-repeat-runs-nothing
TEST_F(WanVlanTest, Add_SameThreeTwice_RunsNothingTheSecondTimeAndNeedsOneDelete) {
  BCM6838X_AddWanVlan(1, 100, 10);
  forget();
  EXPECT_EQ(BCM6838X_AddWanVlan(1, 100, 10), 0U);
  EXPECT_THAT(left(), ElementsAre(WanAddLogged(1, 100, 10)));
  BCM6838X_DelWanVlan(1, 100, 10);
  EXPECT_EQ(shellLines().back(), WanDestroyed(100));
}

TEST_F(WanVlanTest, Add_SameThreeTwice_LeavesRoomForAFullList) {
  for (std::uint32_t lanVid = 1; lanVid <= kLanVidsPerPort; ++lanVid) {
    BCM6838X_AddWanVlan(4, 100, lanVid);
    BCM6838X_AddWanVlan(4, 100, lanVid);
  }
  forget();
  for (std::uint32_t lanVid = 1; lanVid <= kLanVidsPerPort; ++lanVid) {
    BCM6838X_AddWanVlan(4, 100, lanVid);
  }
  EXPECT_THAT(shellLines(), IsEmpty()) << "each is stored, so that none toggles the object";
}

// Required: vid-bounds-above-their-texts
TEST_F(WanVlanTest, Add_BoundsThatAreOneAboveTheirMessages_AreAccepted) {
  EXPECT_EQ(BCM6838X_AddWanVlan(1, 4095, kUntagged), 0U);
  EXPECT_EQ(BCM6838X_AddWanVlan(kUniPorts, 1, 1), 0U);
  EXPECT_THAT(shellLines(),
              ElementsAre(WanCreated(4095), WanEnabled(4095), WanCreated(1), WanEnabled(1)));
  EXPECT_EQ(BCM6838X_DelWanVlan(1, 4095, kUntagged), 0U);
  EXPECT_EQ(shellLines().back(), WanDestroyed(4095));
}

/// Arguments out of range, the complaint, and the arguments as the operation sees them.
struct WanComplaintRow {
  std::uint32_t port;
  std::uint32_t wanVid;
  std::uint32_t lanVid;
  std::string complaint;
};

const std::vector<WanComplaintRow> kWanComplaints = {
    {1, 0, 10, "wanVid is 0 or 4095"},        {1, 4096, 10, "wanVid is 0 or 4095"},
    {1, 0xFFFF, 10, "wanVid is 0 or 4095"},   {1, 0, 0, "wanVid is 0 or 4095"},
    {1, 100, 0, "lanVid is 0 or 4096"},       {1, 100, 4097, "lanVid is 0 or 4096"},
    {0, 100, 0, "lanVid is 0 or 4096"},       {0, 100, 10, "port 0 is out of range"},
    {33, 100, 10, "port 33 is out of range"}, {0xFFFF, 100, 10, "port 65535 is out of range"},
};

TEST_F(WanVlanTest, Add_OutOfRange_LogsReturnsOneAndChangesNothing) {
  for (const WanComplaintRow& row : kWanComplaints) {
    forget();
    EXPECT_EQ(BCM6838X_AddWanVlan(row.port, row.wanVid, row.lanVid), 1U);
    EXPECT_THAT(left(), ElementsAre(WanAddLogged(row.port, row.wanVid, row.lanVid),
                                    Complaint("AddWanVlan", row.complaint)));
  }
  forget();
  BCM6838X_AddWanVlan(1, 100, 10);
  EXPECT_EQ(shellLines().front(), WanCreated(100)) << "the table was still empty";
}

TEST_F(WanVlanTest, Del_OutOfRange_LogsReturnsOneAndChangesNothing) {
  BCM6838X_AddWanVlan(1, 100, 10);
  for (const WanComplaintRow& row : kWanComplaints) {
    forget();
    EXPECT_EQ(BCM6838X_DelWanVlan(row.port, row.wanVid, row.lanVid), 1U);
    EXPECT_THAT(left(), ElementsAre(WanDelLogged(row.port, row.wanVid, row.lanVid),
                                    Complaint("DelWanVlan", row.complaint)));
  }
  EXPECT_EQ(BCM6838X_DelWanVlan(1, 100, 10), 0U);
  EXPECT_EQ(shellLines().back(), WanDestroyed(100)) << "the object was still there";
}

TEST_F(WanVlanTest, AddAndDel_PortOutOfRange_IsAnInvalidParameterInTheLogAndAVidIsNot) {
  BCM6838X_AddWanVlan(33, 100, 10);
  BCM6838X_DelWanVlan(33, 100, 10);
  BCM6838X_AddWanVlan(33, 4096, 10);
  const std::string text = " <line>] port 33 is out of range\r\n";
  EXPECT_THAT(OfKind(left(), "log 4"),
              ElementsAre("log 4" + kSource + "[BCM6838X_AddWanVlan" + text,
                          "log 4" + kSource + "[BCM6838X_DelWanVlan" + text));
}

TEST_F(WanVlanTest, AddAndDel_ArgumentsAreTheirLowSixteenBits) {
  EXPECT_EQ(BCM6838X_AddWanVlan(0x10001, 0xABCD0064, 0xFFFF000A), 0U);
  EXPECT_EQ(BCM6838X_DelWanVlan(0x20001, 0x00010064, 0x1000A), 0U);
  EXPECT_THAT(left(),
              ElementsAre(WanAddLogged(1, 100, 10), WanCreated(100), WanEnabled(100),
                          WanAddLogged(1, 100, 10, " ret=0"), WanDelLogged(1, 100, 10),
                          WanDisabled(100), WanDestroyed(100), WanDestroyLogged(1, 100, 10, "0")));
}

TEST_F(WanVlanTest, Del_TwoPortsShareAnObject_TheLastLanVidOfTheLastPortDestroysIt) {
  BCM6838X_AddWanVlan(1, 100, 10);
  BCM6838X_AddWanVlan(kUniPorts, 100, 10);
  BCM6838X_AddWanVlan(kUniPorts, 100, 11);
  forget();
  EXPECT_EQ(BCM6838X_DelWanVlan(1, 100, 10), 0U);
  EXPECT_EQ(BCM6838X_DelWanVlan(kUniPorts, 100, 10), 0U);
  EXPECT_EQ(BCM6838X_DelWanVlan(kUniPorts, 100, 11), 0U);
  EXPECT_THAT(left(), ElementsAre(WanDelLogged(1, 100, 10), WanDelLogged(1, 100, 10),
                                  WanDelLogged(32, 100, 10), WanDelLogged(32, 100, 10),
                                  WanDelLogged(32, 100, 11), WanDisabled(100), WanDestroyed(100),
                                  WanDestroyLogged(32, 100, 11, "0")));
}

TEST_F(WanVlanTest, Del_LanVidNotInTheList_KeepsTheObject) {
  BCM6838X_AddWanVlan(1, 100, 10);
  forget();
  EXPECT_EQ(BCM6838X_DelWanVlan(1, 100, 11), 0U);
  EXPECT_EQ(BCM6838X_DelWanVlan(2, 100, 10), 0U);
  EXPECT_THAT(left(), ElementsAre(WanDelLogged(1, 100, 11), WanDelLogged(1, 100, 11),
                                  WanDelLogged(2, 100, 10), WanDelLogged(2, 100, 10)));
}

TEST_F(WanVlanTest, Del_UnknownWanVid_RunsNothing) {
  BCM6838X_AddWanVlan(1, 100, 10);
  forget();
  EXPECT_EQ(BCM6838X_DelWanVlan(1, 101, 10), 0U);
  EXPECT_THAT(left(), ElementsAre(WanDelLogged(1, 101, 10)));
}

TEST_F(WanVlanTest, Add_AfterTheLastDelete_CreatesTheObjectAnew) {
  BCM6838X_AddWanVlan(1, 100, 10);
  BCM6838X_DelWanVlan(1, 100, 10);
  forget();
  BCM6838X_AddWanVlan(2, 100, 20);
  EXPECT_THAT(shellLines(), ElementsAre(WanCreated(100), WanEnabled(100)));
  forget();
  BCM6838X_DelWanVlan(2, 100, 20);
  EXPECT_EQ(shellLines().back(), WanDestroyed(100)) << "nothing of the first object was left";
}

// Required: wan-list-full-toggles
TEST_F(WanVlanTest, Add_ListFull_DropsTheLanVidButTogglesTheObject) {
  fillList(4);
  EXPECT_EQ(BCM6838X_AddWanVlan(4, 100, 1000), 0U);
  EXPECT_THAT(left(), ElementsAre(WanAddLogged(4, 100, 1000), WanAddLogged(4, 100, 1000),
                                  WanDisabled(100), WanEnabled(100)));
  std::uint32_t deletes = 0;
  for (std::uint32_t lanVid = 1; lanVid < kLanVidsPerPort; ++lanVid, ++deletes) {
    BCM6838X_DelWanVlan(4, 100, lanVid);
  }
  EXPECT_EQ(deletes, kLanVidsPerPort - 1);
  forget();
  BCM6838X_DelWanVlan(4, 100, kLanVidsPerPort);
  EXPECT_EQ(shellLines().back(), WanDestroyed(100)) << "LAN VID 1000 was not in the list";
}

TEST_F(WanVlanTest, Add_ListFull_OtherPortsAndAFreedSlotStillTake) {
  fillList(4);
  BCM6838X_AddWanVlan(5, 100, 1000);
  BCM6838X_DelWanVlan(4, 100, 77);
  BCM6838X_AddWanVlan(4, 100, 1000);
  forget();
  EXPECT_EQ(BCM6838X_AddWanVlan(4, 100, 1000), 0U);
  EXPECT_EQ(BCM6838X_AddWanVlan(5, 100, 1000), 0U);
  EXPECT_THAT(shellLines(), IsEmpty()) << "both are stored";
}

// Required: object-table-full-succeeds
TEST_F(WanVlanTest, Add_TableFull_IgnoresNewWanVidsAndExtendsKnownOnes) {
  fillTable();
  EXPECT_EQ(BCM6838X_AddWanVlan(1, 1000, 10), 0U);
  EXPECT_THAT(left(), ElementsAre(WanAddLogged(1, 1000, 10)));
  EXPECT_EQ(BCM6838X_AddWanVlan(1, kObjects, 11), 0U);
  EXPECT_THAT(shellLines(), ElementsAre(WanDisabled(kObjects), WanEnabled(kObjects)));
  forget();
  EXPECT_EQ(BCM6838X_DelWanVlan(1, 1000, 10), 0U);
  EXPECT_THAT(left(), ElementsAre(WanDelLogged(1, 1000, 10)));
}

TEST_F(WanVlanTest, Add_TableFullAndOneDestroyed_TakesItsEntry) {
  fillTable();
  BCM6838X_DelWanVlan(1, 77, 10);
  forget();
  BCM6838X_AddWanVlan(1, 1000, 10);
  BCM6838X_AddWanVlan(1, 1001, 10);
  EXPECT_THAT(shellLines(), ElementsAre(WanCreated(1000), WanEnabled(1000)));
}

TEST_F(WanVlanTest, Add_AfterInitVlanClearedAFullTable_TakesEveryObject) {
  fillTable();
  BCM6838X_DelWanVlan(1, 1, 10);
  BCM6838X_InitVlan();
  std::uint32_t created = 0;
  for (std::uint32_t vid = 300; vid < 300 + kObjects; ++vid, ++created) {
    forget();
    EXPECT_EQ(BCM6838X_AddWanVlan(1, vid, 10), 0U);
    EXPECT_THAT(shellLines(), ElementsAre(WanCreated(vid), WanEnabled(vid)));
  }
  EXPECT_EQ(created, kObjects);
}

TEST_F(WanVlanTest, AddAndDel_EveryObjectOfAFullTable_IsFoundAgain) {
  fillTable();
  std::uint32_t destroyed = 0;
  for (std::uint32_t vid = kObjects; vid >= 1; --vid, ++destroyed) {
    forget();
    EXPECT_EQ(BCM6838X_DelWanVlan(1, vid, 10), 0U);
    EXPECT_THAT(shellLines(), ElementsAre(WanDisabled(vid), WanDestroyed(vid)));
  }
  EXPECT_EQ(destroyed, kObjects);
}

TEST_F(WanVlanTest, Add_ShellRefuses_IsLoggedForTheEnableLineAlone) {
  unit.shell().faults().refuseNth(2);
  EXPECT_EQ(BCM6838X_AddWanVlan(1, 100, 10), 0U);
  EXPECT_THAT(left(), ElementsAre(WanAddLogged(1, 100, 10), WanCreated(100), WanEnabled(100),
                                  WanAddLogged(1, 100, 10, " ret=1")));
  forget();
  unit.shell().faults().refuseFrom(1);
  EXPECT_EQ(BCM6838X_AddWanVlan(1, 100, 11), 0U);
  EXPECT_THAT(shellLines(), ElementsAre(WanDisabled(100), WanEnabled(100)));
}

// Required: wan-delete-returns-shell-result
TEST_F(WanVlanTest, Del_ShellRefusesToDestroy_ReturnsItsResultAndForgetsTheObject) {
  BCM6838X_AddWanVlan(1, 100, 10);
  forget();
  unit.shell().faults().refuseNth(2);
  EXPECT_EQ(BCM6838X_DelWanVlan(1, 100, 10), 1U);
  EXPECT_THAT(left(), ElementsAre(WanDelLogged(1, 100, 10), WanDisabled(100), WanDestroyed(100),
                                  WanDestroyLogged(1, 100, 10, "1")));
  forget();
  BCM6838X_AddWanVlan(1, 100, 10);
  EXPECT_EQ(shellLines().front(), WanCreated(100));
}

TEST_F(WanVlanTest, Del_ShellRefusesToDisable_ReturnsTheResultOfDestroying) {
  BCM6838X_AddWanVlan(1, 100, 10);
  unit.shell().faults().refuseNth(1);
  EXPECT_EQ(BCM6838X_DelWanVlan(1, 100, 10), 0U);
  EXPECT_THAT(unit.shell().objects().vlans, IsEmpty());
}

class LanVlanTest : public VlanObjectTest {};

TEST_F(LanVlanTest, Add_New_CreatesAndEnablesTheObject) {
  EXPECT_EQ(BCM6838X_AddLanVlan(2, 100), 0U);
  EXPECT_THAT(left(), ElementsAre(LanAddLogged(2, 100), LanCreated(1, 100), LanEnabled(1, 100)));
}

TEST_F(LanVlanTest, Add_Known_TogglesTheObject) {
  BCM6838X_AddLanVlan(2, 100);
  forget();
  EXPECT_EQ(BCM6838X_AddLanVlan(2, 100), 0U);
  EXPECT_THAT(left(), ElementsAre(LanAddLogged(2, 100), LanDisabled(1, 100), LanEnabled(1, 100)));
}

// Required: lan-objects-counted
TEST_F(LanVlanTest, Del_TwoAdds_NeedTwoDeletes) {
  BCM6838X_AddLanVlan(2, 100);
  BCM6838X_AddLanVlan(2, 100);
  forget();
  EXPECT_EQ(BCM6838X_DelLanVlan(2, 100), 0U);
  EXPECT_THAT(left(), ElementsAre(LanDelLogged(2, 100)));
  EXPECT_EQ(BCM6838X_DelLanVlan(2, 100), 0U);
  EXPECT_THAT(shellLines(), ElementsAre(LanDisabled(1, 100), LanDestroyed(1, 100)));
  forget();
  EXPECT_EQ(BCM6838X_DelLanVlan(2, 100), 0U);
  EXPECT_THAT(left(), ElementsAre(LanDelLogged(2, 100))) << "there is no such object any more";
}

TEST_F(LanVlanTest, AddAndDel_PortAndVidAreTheKey) {
  BCM6838X_AddLanVlan(1, 100);
  BCM6838X_AddLanVlan(2, 100);
  BCM6838X_AddLanVlan(1, 101);
  forget();
  BCM6838X_DelLanVlan(2, 101);
  EXPECT_THAT(shellLines(), IsEmpty());
  BCM6838X_DelLanVlan(1, 101);
  BCM6838X_DelLanVlan(2, 100);
  BCM6838X_DelLanVlan(1, 100);
  EXPECT_THAT(shellLines(),
              ElementsAre(LanDisabled(0, 101), LanDestroyed(0, 101), LanDisabled(1, 100),
                          LanDestroyed(1, 100), LanDisabled(0, 100), LanDestroyed(0, 100)));
}

// Required: lan-number-wraps
TEST_F(LanVlanTest, AddAndDel_EveryPort_NamesItsLanObject) {
  int objects = 0;
  for (const std::uint32_t revert : {0U, 1U, 2U}) {
    g_PortRevert = revert;
    for (std::uint32_t port = 1; port <= 4; ++port, ++objects) {
      const std::uint32_t lan = revert == 0 ? port - 1 : 4 - port;
      forget();
      BCM6838X_AddLanVlan(port, 100);
      BCM6838X_DelLanVlan(port, 100);
      EXPECT_THAT(shellLines(), ElementsAre(LanCreated(lan, 100), LanEnabled(lan, 100),
                                            LanDisabled(lan, 100), LanDestroyed(lan, 100)));
    }
  }
  EXPECT_EQ(objects, 12);
}

TEST_F(LanVlanTest, AddAndDel_VidOutOfRange_LogsAndReturnsOne) {
  for (const std::uint32_t vid : {0U, 4096U, 0xFFFFU, 0x10000U}) {
    const std::uint32_t used = vid & 0xFFFF;
    forget();
    EXPECT_EQ(BCM6838X_AddLanVlan(1, vid), 1U);
    EXPECT_EQ(BCM6838X_DelLanVlan(1, vid), 1U);
    EXPECT_THAT(left(),
                ElementsAre(LanAddLogged(1, used), Complaint("AddLanVlan", "vid is 0 or 4095"),
                            LanDelLogged(1, used), Complaint("DelLanVlan", "vid is 0 or 4095")));
  }
}

TEST_F(LanVlanTest, AddAndDel_VidBoundsAreAcceptedAndArgumentsAreTheirLowSixteenBits) {
  EXPECT_EQ(BCM6838X_AddLanVlan(0x10001, 0x10FFF), 0U);
  EXPECT_EQ(BCM6838X_AddLanVlan(1, 1), 0U);
  EXPECT_EQ(BCM6838X_DelLanVlan(0x20001, 0x20FFF), 0U);
  EXPECT_THAT(left(),
              ElementsAre(LanAddLogged(1, 4095), LanCreated(0, 4095), LanEnabled(0, 4095),
                          LanAddLogged(1, 1), LanCreated(0, 1), LanEnabled(0, 1),
                          LanDelLogged(1, 4095), LanDisabled(0, 4095), LanDestroyed(0, 4095)));
}

// Required: lan-number-wraps
TEST_F(LanVlanTest, Add_PortIsNotChecked_TheIndexHasThirtyTwoBits) {
  EXPECT_EQ(BCM6838X_AddLanVlan(0, 100), 0U);
  EXPECT_THAT(shellLines(),
              ElementsAre("shell bs /b/n vlan/name=lan4294967295_100 port/index=lan-1",
                          "shell bs /b/c vlan/name=lan4294967295_100 vid_enable[100]=yes"));
  g_PortRevert = 1;
  forget();
  EXPECT_EQ(BCM6838X_AddLanVlan(6, 100), 0U);
  EXPECT_THAT(shellLines(), ElementsAre(LanCreated(254, 100), LanEnabled(254, 100)));
}

TEST_F(LanVlanTest, ShellRefusesEveryLine_CountsAllTheSame) {
  unit.shell().faults().refuseFrom(1);
  EXPECT_EQ(BCM6838X_AddLanVlan(1, 100), 0U);
  EXPECT_EQ(BCM6838X_AddLanVlan(1, 100), 0U);
  EXPECT_EQ(BCM6838X_DelLanVlan(1, 100), 0U);
  EXPECT_EQ(BCM6838X_DelLanVlan(1, 100), 0U);
  EXPECT_THAT(shellLines(),
              ElementsAre(LanCreated(0, 100), LanEnabled(0, 100), LanDisabled(0, 100),
                          LanEnabled(0, 100), LanDisabled(0, 100), LanDestroyed(0, 100)));
}

// Required: object-table-full-succeeds
TEST_F(LanVlanTest, Add_TableFull_IgnoresNewObjectsAndCountsKnownOnes) {
  for (std::uint32_t vid = 1; vid <= kObjects; ++vid) {
    ASSERT_EQ(BCM6838X_AddLanVlan(1, vid), 0U);
  }
  forget();
  EXPECT_EQ(BCM6838X_AddLanVlan(1, 1000), 0U);
  EXPECT_THAT(left(), ElementsAre(LanAddLogged(1, 1000)));
  EXPECT_EQ(BCM6838X_AddLanVlan(1, kObjects), 0U);
  EXPECT_THAT(shellLines(), ElementsAre(LanDisabled(0, kObjects), LanEnabled(0, kObjects)));
  BCM6838X_DelLanVlan(1, 77);
  forget();
  BCM6838X_AddLanVlan(1, 1000);
  EXPECT_THAT(shellLines(), ElementsAre(LanCreated(0, 1000), LanEnabled(0, 1000)));
}

}  // namespace
}  // namespace hal_test
