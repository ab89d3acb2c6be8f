/// @file
/// Tests of the table of VLAN membership and of the VLAN of the unit's own IP traffic.
#include <cstddef>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <bcm6838x_vlan.h>
#include <hal_bcm6838x.h>

#include "support/library_test.h"
#include "support/wire_record.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

using Vlans = std::vector<std::pair<std::uint16_t, std::uint32_t>>;

/// A walk from the first VLAN to the end.
Vlans Walk() {
  Vlans vlans;
  std::uint16_t vid = 0;
  std::uint32_t ports = 0;
  std::uint32_t attr = 0;
  for (std::uint32_t result = BCM6838X_GetFirstVlanEntry(&vid, &ports, &attr); result == 0;
       result = BCM6838X_GetNextVlanEntry(&vid, &ports, &attr)) {
    vlans.emplace_back(vid, ports);
    EXPECT_EQ(attr, 0U);
  }
  return vlans;
}

class VlanEntryTest : public LibraryTest {};

TEST_F(VlanEntryTest, Set_KeepsTheVlansInOrder) {
  EXPECT_EQ(BCM6838X_SetVlanEntry(3, 20), 0U);
  EXPECT_EQ(BCM6838X_SetVlanEntry(1, 30), 0U);
  EXPECT_EQ(BCM6838X_SetVlanEntry(2, 10), 0U);
  EXPECT_EQ(BCM6838X_SetVlanEntry(32, 25), 0U);
  EXPECT_THAT(Walk(), ElementsAre(Pair(10, 2), Pair(20, 4), Pair(25, 0x80000000), Pair(30, 1)));
  EXPECT_THAT(left(), IsEmpty()) << "nothing leaves the library";
}

TEST_F(VlanEntryTest, Set_TwoPortsOfOneVlan_ShareItsEntry) {
  BCM6838X_SetVlanEntry(1, 10);
  BCM6838X_SetVlanEntry(4, 10);
  EXPECT_THAT(Walk(), ElementsAre(Pair(10, 9)));
}

TEST_F(VlanEntryTest, Set_PortAloneInItsVlan_LeavesNoEntryBehind) {
  BCM6838X_SetVlanEntry(3, 10);
  BCM6838X_SetVlanEntry(3, 20);
  EXPECT_THAT(Walk(), ElementsAre(Pair(20, 4)));
}

TEST_F(VlanEntryTest, Set_PortAmongOthers_LeavesThemBehind) {
  BCM6838X_SetVlanEntry(3, 10);
  BCM6838X_SetVlanEntry(2, 10);
  BCM6838X_SetVlanEntry(3, 5);
  EXPECT_THAT(Walk(), ElementsAre(Pair(5, 4), Pair(10, 2)));
}

TEST_F(VlanEntryTest, Set_MovesAcrossTheTableInBothDirections) {
  for (std::uint32_t port = 1; port <= 5; ++port) {
    BCM6838X_SetVlanEntry(port, 10 * port);
  }
  BCM6838X_SetVlanEntry(1, 35);
  EXPECT_THAT(Walk(),
              ElementsAre(Pair(20, 2), Pair(30, 4), Pair(35, 1), Pair(40, 8), Pair(50, 16)));
  BCM6838X_SetVlanEntry(5, 1);
  EXPECT_THAT(Walk(), ElementsAre(Pair(1, 16), Pair(20, 2), Pair(30, 4), Pair(35, 1), Pair(40, 8)));
  BCM6838X_SetVlanEntry(3, 40);
  EXPECT_THAT(Walk(), ElementsAre(Pair(1, 16), Pair(20, 2), Pair(35, 1), Pair(40, 12)));
}

TEST_F(VlanEntryTest, Set_SameVlanAgain_ChangesNothing) {
  BCM6838X_SetVlanEntry(1, 10);
  BCM6838X_SetVlanEntry(2, 20);
  EXPECT_EQ(BCM6838X_SetVlanEntry(1, 10), 0U);
  EXPECT_THAT(Walk(), ElementsAre(Pair(10, 1), Pair(20, 2)));
}

TEST_F(VlanEntryTest, Set_OnlyLowBitsCount) {
  BCM6838X_SetVlanEntry(0xFFFFFF02, 0xABCD0064);
  EXPECT_THAT(Walk(), ElementsAre(Pair(100, 2)));
  BCM6838X_SetVlanEntry(2, 0xFFFF);
  EXPECT_THAT(Walk(), ElementsAre(Pair(0xFFFF, 2)));
  BCM6838X_SetVlanEntry(2, 0);
  EXPECT_THAT(Walk(), ElementsAre(Pair(0, 2)));
}

TEST_F(VlanEntryTest, Set_PortsModulo32ShareABit) {
  BCM6838X_SetVlanEntry(33, 100);
  EXPECT_THAT(Walk(), ElementsAre(Pair(100, 1)));
  BCM6838X_SetVlanEntry(1, 200);
  EXPECT_THAT(Walk(), ElementsAre(Pair(200, 1)));
  BCM6838X_SetVlanEntry(0, 300);
  EXPECT_THAT(Walk(), ElementsAre(Pair(200, 1), Pair(300, 0x80000000)));
}

TEST_F(VlanEntryTest, GetPorts_ReadsTheMembers) {
  BCM6838X_SetVlanEntry(1, 10);
  BCM6838X_SetVlanEntry(4, 20);
  std::uint32_t ports = 7;
  std::uint32_t extra = 7;
  EXPECT_EQ(BCM6838X_GetVlanPorts(0xFFFF0014, &ports, &extra), 0U);
  EXPECT_EQ(ports, 8U);
  EXPECT_EQ(extra, 0U);
}

// Required: unknown-vlan-leaves-outputs
TEST_F(VlanEntryTest, GetPorts_UnknownVlanOrEmptyTable_LeavesTheOutputs) {
  std::uint32_t ports = 7;
  std::uint32_t extra = 8;
  EXPECT_EQ(BCM6838X_GetVlanPorts(0, &ports, &extra), 0U);
  BCM6838X_SetVlanEntry(1, 10);
  EXPECT_EQ(BCM6838X_GetVlanPorts(11, &ports, &extra), 0U);
  EXPECT_EQ(ports, 7U);
  EXPECT_EQ(extra, 8U);
}

TEST_F(VlanEntryTest, NullPointers_AreRefusedWithoutALine) {
  std::uint16_t vid = 0;
  std::uint32_t a = 0;
  std::uint32_t b = 0;
  BCM6838X_SetVlanEntry(1, 10);
  EXPECT_EQ(BCM6838X_GetVlanPorts(10, nullptr, &b), 2U);
  EXPECT_EQ(BCM6838X_GetVlanPorts(10, &a, nullptr), 2U);
  EXPECT_EQ(BCM6838X_GetFirstVlanEntry(nullptr, &a, &b), 2U);
  EXPECT_EQ(BCM6838X_GetFirstVlanEntry(&vid, nullptr, &b), 2U);
  EXPECT_EQ(BCM6838X_GetFirstVlanEntry(&vid, &a, nullptr), 2U);
  EXPECT_EQ(BCM6838X_GetNextVlanEntry(nullptr, &a, &b), 2U);
  EXPECT_EQ(BCM6838X_GetNextVlanEntry(&vid, nullptr, &b), 2U);
  EXPECT_EQ(BCM6838X_GetNextVlanEntry(&vid, &a, nullptr), 2U);
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(VlanEntryTest, First_OfAnEmptyTable_IsTheEndAndLeavesTheOutputs) {
  std::uint16_t vid = 7;
  std::uint32_t ports = 8;
  std::uint32_t attr = 9;
  EXPECT_EQ(BCM6838X_GetFirstVlanEntry(&vid, &ports, &attr), 12U);
  EXPECT_EQ(BCM6838X_GetNextVlanEntry(&vid, &ports, &attr), 12U);
  EXPECT_EQ(vid, 7);
  EXPECT_EQ(ports, 8U);
  EXPECT_EQ(attr, 9U);
}

// Required: vlan-walk-restarts-at-the-second
TEST_F(VlanEntryTest, Next_BehindTheLast_StartsOverBehindTheFirst) {
  BCM6838X_SetVlanEntry(1, 10);
  BCM6838X_SetVlanEntry(2, 20);
  BCM6838X_SetVlanEntry(3, 30);
  std::uint16_t vid = 0;
  std::uint32_t ports = 0;
  std::uint32_t attr = 0;
  const auto next = [&] { return BCM6838X_GetNextVlanEntry(&vid, &ports, &attr); };
  EXPECT_EQ(next(), 0U);
  EXPECT_EQ(vid, 20) << "without a first read";
  EXPECT_EQ(next(), 0U);
  EXPECT_EQ(vid, 30);
  EXPECT_EQ(next(), 12U);
  EXPECT_EQ(vid, 30) << "left as it was";
  EXPECT_EQ(next(), 0U);
  EXPECT_EQ(vid, 20);
}

// Required: vlan-walk-keeps-its-place
TEST_F(VlanEntryTest, First_DoesNotRestartAWalkThatWasLeft) {
  for (std::uint32_t port = 1; port <= 3; ++port) {
    BCM6838X_SetVlanEntry(port, 10 * port);
  }
  std::uint16_t vid = 0;
  std::uint32_t ports = 0;
  std::uint32_t attr = 0;
  BCM6838X_GetNextVlanEntry(&vid, &ports, &attr);
  EXPECT_EQ(BCM6838X_GetFirstVlanEntry(&vid, &ports, &attr), 0U);
  EXPECT_EQ(vid, 10);
  EXPECT_EQ(BCM6838X_GetNextVlanEntry(&vid, &ports, &attr), 0U);
  EXPECT_EQ(vid, 30) << "20 was read before";
}

TEST_F(VlanEntryTest, RandomMoves_AgreeWithAMapOfPorts) {
  std::mt19937 random(1);
  std::map<std::uint32_t, std::uint16_t> vlanOf;
  std::size_t moves = 0;
  for (; moves < 2000; ++moves) {
    const auto port = static_cast<std::uint32_t>(1 + random() % 32);
    const auto vid = static_cast<std::uint16_t>(random() % 12);
    ASSERT_EQ(BCM6838X_SetVlanEntry(port, vid), 0U);
    vlanOf[port] = vid;
    std::map<std::uint16_t, std::uint32_t> expected;
    for (const auto& [member, vlan] : vlanOf) {
      expected[vlan] |= 1U << (member - 1);
    }
    ASSERT_EQ(Walk(), Vlans(expected.begin(), expected.end())) << "move " << moves;
  }
  EXPECT_EQ(moves, 2000U);
}

// Required: add-vlan-does-nothing
TEST_F(VlanEntryTest, AddVlanAndDelVlan_DoNothing) {
  EXPECT_EQ(BCM6838X_AddVlan(100), 0U);
  EXPECT_EQ(BCM6838X_DelVlan(100, 1, 2), 0U);
  EXPECT_THAT(left(), IsEmpty());
  EXPECT_THAT(Walk(), IsEmpty());
}

class IphostVlanTest : public LibraryTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    forget();
  }

  static std::string logged(const std::string& what, const std::string& result) {
    return "log 1 hal/switch/bcm6838x/src/bcm6838x_vlan_entry.cpp Upstream ip host packets " +
           what + ",ret = " + result + " \r\n";
  }
};

TEST_F(IphostVlanTest, Add_SendsPrioritySevenAndTheVid) {
  EXPECT_EQ(BCM6838X_AddIphostVlan(100), 0U);
  EXPECT_THAT(left(), ElementsAre(Sent("IPHOST_VLAN_ADD", 0, WireRecord(4).u16(0, 0xE064)),
                                  logged("Tci[e064]", "0")));
}

TEST_F(IphostVlanTest, Del_SendsPrioritySevenAndTheVid) {
  EXPECT_EQ(BCM6838X_DelIphostVlan(4095), 0U);
  EXPECT_THAT(left(), ElementsAre(Sent("IPHOST_VLAN_DEL", 0, WireRecord(4).u16(0, 0xEFFF)),
                                  logged("remove Tci[efff]", "0")));
}

// Required: iphost-tag-takes-16-bits
TEST_F(IphostVlanTest, LowSixteenBits_GoIntoTheTag) {
  BCM6838X_AddIphostVlan(0xABCD1001);
  EXPECT_EQ(commands().back(), Sent("IPHOST_VLAN_ADD", 0, WireRecord(4).u16(0, 0xF001)));
  BCM6838X_DelIphostVlan(0x10000);
  EXPECT_EQ(commands().back(), Sent("IPHOST_VLAN_DEL", 0, WireRecord(4).u16(0, 0xE000)));
}

TEST_F(IphostVlanTest, DriverRefuses_IsLoggedAndReturnsZero) {
  unit.device().faults().refuseFrom(1);
  EXPECT_EQ(BCM6838X_AddIphostVlan(100), 0U);
  EXPECT_EQ(logLines().back(), logged("Tci[e064]", "8"));
  EXPECT_EQ(BCM6838X_DelIphostVlan(100), 0U);
  EXPECT_EQ(logLines().back(), logged("remove Tci[e064]", "8"));
}

TEST(IphostVlan, DeviceNotOpen_IsLoggedAndReturnsZero) {
  const virtual_onu::Unit unit;
  EXPECT_EQ(BCM6838X_AddIphostVlan(1), 0U);
  EXPECT_THAT(Left(unit), ElementsAre("log 1 hal/switch/bcm6838x/src/bcm6838x_vlan_entry.cpp "
                                      "Upstream ip host packets Tci[e001],ret = 10 \r\n"));
}

}  // namespace
}  // namespace hal_test
