/// @file
/// The records of the VLAN mode builders byte for byte, one of each kind that a mode sends. In
/// which order and how often they are sent is the matter of the mode's own tests.
#include <array>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <bcm6838x_vlan.h>
#include <brmgr_cmd.h>
#include <hal_bcm6838x.h>

#include "support/library_test.h"
#include "support/wire_record.h"

namespace hal_test {
namespace {

using testing::ElementsAre;

constexpr std::uint32_t kNone = 0xFFFFFFFF;
constexpr std::uint32_t kPushWithPriority = 0x101;
constexpr std::uint32_t kReplace = 0x108;

template <typename Entry>
using List = std::array<Entry, 512>;

/// What every upstream flow of UNI port 2 has in common.
WireRecord UsFlow(std::uint32_t icIndex, std::uint8_t vlanNum) {
  WireRecord record(164);
  record.u32(68, 3).u8(74, vlanNum).u32(96, 1).u32(104, 1).u32(140, 1).u32(144, icIndex);
  record.u32(148, kNone).u32(152, kNone).u32(156, kNone);
  return record;
}

/// A downstream flow; class 1 compares the VID, class 0 does not.
WireRecord DsFlow(std::uint16_t vid, std::uint8_t vlanNum) {
  WireRecord record(164);
  record.u16(46, vid).u8(74, vlanNum).u32(96, 1).u32(144, vid == 0 ? 0 : 1);
  record.u32(148, kNone).u32(152, kNone).u32(156, kNone);
  return record;
}

WireRecord Action(std::uint32_t cmd, std::uint16_t vid, std::uint8_t pbit, std::uint32_t dir) {
  WireRecord record(24);
  record.u32(0, cmd).u16(4, vid).u8(6, pbit).u16(8, 0x8100).u32(16, dir).u32(20, kNone);
  return record;
}

std::string FlowSent(const WireRecord& record) {
  return Sent("FLOW_ADD", 1, record);
}

std::string ActionSent(const WireRecord& record) {
  return Sent("VLAN_ACTION_ADD", 1, record);
}

std::string DeleteSent(std::uint32_t icIndex, std::uint32_t flowIndex) {
  return Sent("FLOW_DEL", 0, WireRecord(12).u32(0, 1).u32(4, icIndex).u32(8, flowIndex));
}

std::string DsDeleteSent(std::uint32_t icIndex, std::uint32_t flowIndex) {
  return Sent("FLOW_DEL", 0, WireRecord(12).u32(4, icIndex).u32(8, flowIndex));
}

std::string ActionDeleteSent(std::uint32_t dir, std::uint32_t index) {
  return Sent("VLAN_ACTION_DEL", 0, WireRecord(8).u32(0, dir).u32(4, index));
}

class VlanModeRecordTest : public LibraryTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(BCM6838X_Init(), 0U);
    forget();
  }
};

TEST_F(VlanModeRecordTest, Transparent) {
  EXPECT_EQ(BCM6838X_AddUsTransparent(2), 0);
  std::vector<std::string> expected = {FlowSent(UsFlow(0, 0)), FlowSent(DsFlow(0, 0))};
  for (std::uint8_t tags = 1; tags <= 2; ++tags) {
    for (std::uint8_t pbit = 0; pbit < 8; ++pbit) {
      expected.push_back(FlowSent(UsFlow(4, tags).u8(72, pbit).u32(112, pbit)));
    }
    expected.push_back(FlowSent(DsFlow(0, tags)));
  }
  ASSERT_EQ(expected.size(), 20U);
  EXPECT_EQ(commands(), expected);
}

TEST_F(VlanModeRecordTest, TransparentDelete) {
  BCM6838X_AddUsTransparent(2);
  forget();
  EXPECT_EQ(BCM6838X_DelUsTransparent(2), 0);
  std::vector<std::string> expected = {DeleteSent(0, 0), DsDeleteSent(0, 0)};
  for (const std::uint32_t tags : {1U, 2U}) {
    for (std::uint32_t pbit = 0; pbit < 8; ++pbit) {
      expected.push_back(DeleteSent(4, 8 * (tags - 1) + pbit));
    }
    expected.push_back(DsDeleteSent(0, tags));
  }
  ASSERT_EQ(expected.size(), 20U);
  EXPECT_EQ(commands(), expected);
}

// Required: performance-transparent-one-flow
TEST_F(VlanModeRecordTest, TransparentOfPerformanceMode) {
  EXPECT_EQ(BCM6838X_AddUsTransparent_Perf(2), 0);
  EXPECT_THAT(commands(),
              ElementsAre(FlowSent(UsFlow(0, 0)), FlowSent(DsFlow(0, 0).u32(104, 1).u32(108, 2))));
}

// Required: upstream-flow-word-104
TEST_F(VlanModeRecordTest, Tag) {
  EXPECT_EQ(BCM6838X_AddUsTag(2, 100, 3), 0);
  EXPECT_THAT(commands(), ElementsAre(ActionSent(Action(kPushWithPriority, 100, 3, 1)),
                                      FlowSent(UsFlow(0, 0).u32(112, 3).u32(152, 0)),
                                      FlowSent(DsFlow(100, 1))));
  forget();
  EXPECT_EQ(BCM6838X_DelUsTag(2, 100, 3), 0);
  EXPECT_THAT(commands(),
              ElementsAre(DeleteSent(0, 0), ActionDeleteSent(1, 0), DsDeleteSent(1, 0)));
}

TEST_F(VlanModeRecordTest, ZteTrunk) {
  const List<PortVlanTrunkEntry> list = {{{2, 0, 100}}};
  EXPECT_EQ(BCM6838X_AddUsZTETrunk(2, list.data()), 0);
  std::vector<std::string> expected;
  for (std::uint8_t pbit = 0; pbit < 8; ++pbit) {
    expected.push_back(FlowSent(UsFlow(3, 1).u16(46, 100).u8(72, pbit).u32(112, pbit)));
  }
  expected.push_back(FlowSent(DsFlow(100, 1)));
  ASSERT_EQ(expected.size(), 9U);
  EXPECT_EQ(commands(), expected);
  forget();
  EXPECT_EQ(BCM6838X_DelUsZTETrunk(2, list.data()), 0);
  expected.clear();
  for (std::uint32_t index = 0; index < 8; ++index) {
    expected.push_back(DeleteSent(3, index));
  }
  expected.push_back(DsDeleteSent(1, 0));
  EXPECT_EQ(commands(), expected);
}

TEST_F(VlanModeRecordTest, Hybrid) {
  const List<PortVlanTrunkEntry> list = {{{2, 0, 100}}};
  EXPECT_EQ(BCM6838X_AddUsHybrid(2, 10, 3, list.data()), 0);
  std::vector<std::string> expected = {ActionSent(Action(kPushWithPriority, 10, 3, 1)),
                                       FlowSent(UsFlow(0, 0).u32(112, 3).u32(152, 0)),
                                       FlowSent(DsFlow(10, 1))};
  for (std::uint8_t pbit = 0; pbit < 8; ++pbit) {
    expected.push_back(FlowSent(UsFlow(3, 1).u16(46, 100).u8(72, pbit).u32(112, pbit)));
  }
  expected.push_back(FlowSent(DsFlow(100, 1)));
  ASSERT_EQ(expected.size(), 12U);
  EXPECT_EQ(commands(), expected);
}

TEST_F(VlanModeRecordTest, Translation) {
  const List<PortVlanTransEntry> list = {{{2, 0, 6, 100, 5, 200}}};
  EXPECT_EQ(BCM6838X_AddUsTranslation(2, 10, 3, list.data()), 0);
  std::vector<std::string> expected = {ActionSent(Action(kPushWithPriority, 10, 3, 1)),
                                       FlowSent(UsFlow(0, 0).u32(112, 3).u32(152, 0)),
                                       FlowSent(DsFlow(10, 1)),
                                       ActionSent(Action(kReplace, 200, 5, 1))};
  for (std::uint8_t pbit = 0; pbit < 8; ++pbit) {
    expected.push_back(FlowSent(UsFlow(3, 1).u16(46, 100).u8(72, pbit).u32(112, pbit).u32(152, 1)));
  }
  expected.push_back(FlowSent(DsFlow(200, 1)));
  expected.push_back(ActionSent(Action(kReplace, 200, 6, 0)));
  ASSERT_EQ(expected.size(), 14U);
  EXPECT_EQ(commands(), expected);
}

// Required: zte-stacking-one-outer-priority
TEST_F(VlanModeRecordTest, ZteStacking) {
  EXPECT_EQ(BCM6838X_AddUsZTEStacking(2, 10, 3), 0);
  std::vector<std::string> expected = {ActionSent(Action(kPushWithPriority, 10, 3, 1)),
                                       FlowSent(UsFlow(0, 0).u32(112, 3).u32(152, 0)),
                                       FlowSent(DsFlow(10, 1))};
  for (std::uint8_t pbit = 0; pbit < 8; ++pbit) {
    expected.push_back(FlowSent(UsFlow(4, 1).u8(72, pbit).u32(112, pbit).u32(152, 0)));
  }
  expected.push_back(FlowSent(DsFlow(10, 2)));
  ASSERT_EQ(expected.size(), 12U);
  EXPECT_EQ(commands(), expected);
}

// Required: bdcom-one-flow-an-entry
TEST_F(VlanModeRecordTest, BdcomStacking) {
  const List<PortVlanStackEntry> list = {{{2, {}, 2, 100, 0, 200}}};
  EXPECT_EQ(BCM6838X_AddUsBDCOMStacking(2, 10, 3, list.data()), 0);
  EXPECT_THAT(commands(), ElementsAre(ActionSent(Action(kPushWithPriority, 10, 3, 1)),
                                      FlowSent(UsFlow(0, 0).u32(112, 3).u32(152, 0)),
                                      FlowSent(DsFlow(10, 1)), ActionSent(Action(1, 200, 0, 1)),
                                      FlowSent(UsFlow(3, 1).u16(46, 100).u32(152, 1)),
                                      FlowSent(DsFlow(200, 2))));
}

}  // namespace
}  // namespace hal_test
