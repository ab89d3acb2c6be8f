/// @file
/// Tests of the ports' VLAN rules as they apply to a frame: every row of both tables and every
/// place of a list. Modes and lists are set in the table of the configuration.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <string>

#include "accord_fixture.h"
#include "packet_bytes.h"
#include "support/library_tables.h"

namespace hal_test::accord {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kNoMode =
    "log 1 hal/switch/bcm6838x/src/hal_bcm6838x_classify.cpp CTC mode : PORTCFG_CTCMODE_NONE\r\n";
const MaybeTags kDropped = std::nullopt;
const TagBytes kServiceTag = {0x88A8, 10};
const TagBytes kFirst = {0x8100, 0xA00A};  ///< VID 10, the first of every list
const TagBytes kLast = {0x8100, 0x0014};   ///< VID 20, the last of every list

TEST_F(AccordTest, Upstream_Transparent) {
  for (const Tags& tags :
       {Tags{}, Tags{kOther}, Tags{kOther, kFirst}, Tags{kServiceTag}, Tags{kServiceTag, kOther}}) {
    up(0, tags, tags);
  }
  EXPECT_EQ(rows_, 5U);
}

TEST_F(AccordTest, Upstream_Tag) {
  up(1, {}, Tags{kOwnTag});
  up(1, {kServiceTag}, Tags{kOwnTag, kServiceTag});
  up(1, {kOther}, kDropped);
  up(1, {kOwnTag}, kDropped);
  up(1, {{0x8100, 0}}, kDropped);
  up(1, {kServiceTag, kOther}, kDropped);
  EXPECT_THAT(left(), IsEmpty()) << "frames are dropped silently";
}

TEST_F(AccordTest, Upstream_TrunkAndHybrid) {
  for (const std::uint32_t mode : {4U, 20U}) {
    up(mode, {}, Tags{kOwnTag});
    up(mode, {kServiceTag}, Tags{kOwnTag, kServiceTag});
    up(mode, {kFirst}, Tags{kFirst});
    up(mode, {kLast}, Tags{kLast});
    up(mode, {{0x8100, 15}}, Tags{{0x8100, 15}});
    up(mode, {kFirst, kOther}, Tags{kFirst, kOther});
    up(mode, {kServiceTag, kOther}, Tags{kServiceTag, kOther});
    up(mode, {kOther}, kDropped);
    up(mode, {kOther, kFirst}, kDropped);
    up(mode, {kOwnTag}, kDropped);
    up(mode, {{0x8100, 0xE000}}, kDropped);
  }
  config_.trunkList[300] = {};
  up(4, {{0x8100, 0xE000}}, Tags{{0x8100, 0xE000}});
  up(4, {}, Tags{kOwnTag});
  EXPECT_EQ(rows_, 24U);
}

TEST_F(AccordTest, Upstream_ZteTrunk) {
  up(19, {}, kDropped);
  up(19, {kServiceTag}, kDropped);
  up(19, {kFirst}, Tags{kFirst});
  up(19, {kLast}, Tags{kLast});
  up(19, {kOther}, kDropped);
  for (const std::size_t place : {std::size_t{0}, std::size_t{511}}) {
    FillLists(config_);
    config_.trunkList[place] = {};
    up(19, {}, Tags{});
    up(19, {kServiceTag}, Tags{kServiceTag});
  }
  EXPECT_EQ(rows_, 9U);
}

TEST_F(AccordTest, Upstream_Translation) {
  for (const std::uint32_t mode : {2U, 3U}) {
    up(mode, {}, Tags{kOwnTag});
    up(mode, {kServiceTag}, Tags{kOwnTag, kServiceTag});
    up(mode, {kFirst}, Tags{{0x8100, 0xC000 | 200}});
    up(mode, {kLast}, Tags{{0x8100, 0xA000 | 220}});
    up(mode, {{0x8100, 0xF00A}}, Tags{{0x8100, 0xC000 | 200}});
    up(mode, {kFirst, kOther}, Tags{{0x8100, 0xC000 | 200}, kOther});
    up(mode, {kServiceTag, kOther}, Tags{kServiceTag, kOther});
    up(mode, {kOther}, kDropped);
    up(mode, {kOther, kFirst}, kDropped);
    up(mode, {{0x8100, 200}}, kDropped);
  }
  EXPECT_EQ(rows_, 20U);
}

TEST_F(AccordTest, Upstream_ZteStacking) {
  up(160, {}, Tags{kOwnTag});
  up(160, {kServiceTag}, Tags{kOwnTag, kServiceTag});
  up(160, {kOther}, Tags{kOwnTag, kOther});
  up(160, {kOwnTag}, Tags{kOwnTag, kOwnTag});
  up(160, {kServiceTag, kOther}, Tags{kOwnTag, kServiceTag, kOther});
  up(160, {kOther, kFirst}, Tags{kOwnTag, kOther, kFirst});
}

TEST_F(AccordTest, Upstream_BdcomStacking) {
  up(253, {}, Tags{kOwnTag});
  up(253, {kServiceTag}, Tags{kOwnTag, kServiceTag});
  up(253, {kFirst}, Tags{{0x8100, 300}, kFirst});
  up(253, {kLast}, Tags{{0x8100, 320}, kLast});
  up(253, {{0x8100, 30}}, Tags{{0x8100, 302}, {0x8100, 30}});
  up(253, {{0x8100, 40}}, kDropped);
  up(253, {kOther}, kDropped);
  up(253, {{0x8100, 300}}, kDropped);
  up(253, {kServiceTag, kOther}, Tags{{0x8100, 300}, kServiceTag, kOther});
  config_.stackingList[0].cvid = 0x1000 | 10;
  config_.stackingList[256].cvid = 0x10000 | 10;
  up(253, {kFirst}, kDropped);
}

TEST_F(AccordTest, OtherModes_DropWithALogLine) {
  for (const std::uint32_t mode : {255U, 5U, 18U, 21U, 252U, 254U, 256U, 0x10000U, 0xFFFFFFFFU}) {
    for (const Tags& tags : {Tags{}, Tags{kFirst}, Tags{kOwnTag}}) {
      forget();
      up(mode, tags, kDropped);
      EXPECT_THAT(left(), ElementsAre(kNoMode));
      forget();
      down(mode, tags, kDropped);
      EXPECT_THAT(left(), ElementsAre(kNoMode));
    }
  }
  EXPECT_EQ(rows_, 54U);
}

TEST_F(AccordTest, Downstream_Transparent) {
  for (const Tags& tags : {Tags{}, Tags{kOther}, Tags{kOwnTag}, Tags{kServiceTag, kOther}}) {
    down(0, tags, tags);
  }
  EXPECT_EQ(rows_, 4U);
}

TEST_F(AccordTest, Downstream_TagAndZteStacking) {
  for (const std::uint32_t mode : {1U, 160U}) {
    down(mode, {kOwnTag}, Tags{});
    down(mode, {{0x8100, 0xF000 | kPvid}}, Tags{});
    down(mode, {kOwnTag, kOther}, Tags{kOther});
    down(mode, {}, kDropped);
    down(mode, {kServiceTag}, kDropped);
    down(mode, {kOther}, kDropped);
    down(mode, {kFirst}, kDropped);
    down(mode, {kOther, kOwnTag}, kDropped);
    // The outer tag's type is not one that can be removed.
    down(mode, {{0x88A8, kPvid}, kOther}, Tags{{0x88A8, kPvid}, kOther});
  }
  EXPECT_EQ(rows_, 18U);
}

TEST_F(AccordTest, Downstream_TrunkAndHybrid) {
  for (const std::uint32_t mode : {4U, 20U}) {
    FillLists(config_);
    down(mode, {kOwnTag}, Tags{});
    down(mode, {kOwnTag, kOther}, Tags{kOther});
    down(mode, {kFirst}, Tags{kFirst});
    down(mode, {kLast}, Tags{kLast});
    down(mode, {kServiceTag, kOther}, Tags{kServiceTag, kOther});
    down(mode, {kOther}, kDropped);
    down(mode, {}, kDropped);
    config_.trunkList[511] = {};
    down(mode, {}, Tags{});
    down(mode, {kServiceTag}, Tags{kServiceTag});
    // The port's own VLAN loses its tag although it is a member too.
    config_.trunkList[7].vid = kPvid;
    down(mode, {kOwnTag}, Tags{});
  }
  EXPECT_EQ(rows_, 20U);
}

TEST_F(AccordTest, Downstream_ZteTrunk) {
  down(19, {kFirst}, Tags{kFirst});
  down(19, {kLast}, Tags{kLast});
  down(19, {kOwnTag}, kDropped);
  down(19, {kOther}, kDropped);
  down(19, {}, kDropped);
  config_.trunkList[0] = {};
  down(19, {}, Tags{});
  config_.trunkList[1].vid = kPvid;
  down(19, {kOwnTag}, Tags{kOwnTag});
}

TEST_F(AccordTest, Downstream_Translation) {
  for (const std::uint32_t mode : {2U, 3U}) {
    FillLists(config_);
    down(mode, {kOwnTag}, Tags{});
    down(mode, {{0x8100, 200}}, Tags{{0x8100, 0x2000 | 10}});
    down(mode, {{0x8100, 0xF000 | 220}}, Tags{{0x8100, 0x4000 | 20}});
    down(mode, {{0x8100, 200}, kOther}, Tags{{0x8100, 0x2000 | 10}, kOther});
    down(mode, {{0x88A8, 200}, kOther}, Tags{{0x88A8, 200}, kOther});
    down(mode, {kFirst}, kDropped);
    down(mode, {kOther}, kDropped);
    down(mode, {}, kDropped);
    down(mode, {kServiceTag}, kDropped);
    config_.translationList[511] = {};
    down(mode, {}, Tags{});
    down(mode, {kServiceTag}, Tags{kServiceTag});
    config_.translationList[9].netVid = kPvid;
    down(mode, {kOwnTag}, Tags{});
  }
  EXPECT_EQ(rows_, 24U);
}

TEST_F(AccordTest, Downstream_BdcomStacking) {
  down(253, {kOwnTag, kFirst}, Tags{kFirst});
  down(253, {{0x8100, 300}, kFirst}, Tags{kFirst});
  down(253, {{0x8100, 0xE000 | 320}}, Tags{});
  down(253, {{0x8100, 301}}, Tags{});
  down(253, {{0x8100, 303}}, Tags{});
  down(253, {{0x88A8, 300}, kFirst}, Tags{{0x88A8, 300}, kFirst});
  down(253, {kFirst}, kDropped);
  down(253, {kOther}, kDropped);
  down(253, {}, kDropped);
  config_.stackingList[0] = {};
  down(253, {}, Tags{});
  down(253, {kServiceTag}, Tags{kServiceTag});
  EXPECT_EQ(rows_, 11U);
}

/// A priority tag, whose VID is that of a free entry.
const TagBytes kPriorityTag = {0x8100, 0xE000};

TEST_F(AccordTest, FreeEntries_MatchPriorityTagsToo) {
  for (const std::uint32_t mode : {2U, 3U}) {
    up(mode, {kPriorityTag}, kDropped);
    down(mode, {kPriorityTag}, kDropped);
  }
  up(253, {kPriorityTag}, kDropped);
  down(253, {kPriorityTag}, kDropped);
  config_.trunkList[511] = {};
  config_.translationList[511] = {};
  config_.stackingList[511] = {};
  up(19, {kPriorityTag}, Tags{kPriorityTag});
  for (const std::uint32_t mode : {4U, 19U, 20U}) {
    down(mode, {kPriorityTag}, Tags{kPriorityTag});
  }
  for (const std::uint32_t mode : {2U, 3U}) {
    up(mode, {kPriorityTag}, Tags{{0x8100, 0}});
    down(mode, {kPriorityTag, kOther}, Tags{{0x8100, 0}, kOther});
  }
  up(253, {kPriorityTag}, kDropped);  // a free entry does not stack
  down(253, {kPriorityTag, kOther}, Tags{kOther});
  EXPECT_EQ(rows_, 16U);
}

TEST_F(AccordTest, Downstream_PvidZero_IsThatOfPriorityTagsAndNotOfUntaggedFrames) {
  config_.pvid = 0;
  for (const std::uint32_t mode : {1U, 160U, 4U, 20U, 2U, 3U, 253U}) {
    down(mode, {kPriorityTag}, Tags{});
    down(mode, {}, kDropped);
    down(mode, {kServiceTag}, kDropped);
  }
  EXPECT_EQ(rows_, 21U);
}

TEST_F(AccordTest, Lists_OfAnUnusedPort_MatchUntaggedFramesAlone) {
  for (std::size_t i = 0; i < kListEntries; ++i) {
    config_.trunkList[i] = {};
    config_.translationList[i] = {};
    config_.stackingList[i] = {};
  }
  up(19, {}, Tags{});
  up(19, {kFirst}, kDropped);
  for (const std::uint32_t mode : {2U, 3U, 4U, 20U, 253U}) {
    up(mode, {}, Tags{kOwnTag});
    up(mode, {kFirst}, kDropped);
  }
  for (const std::uint32_t mode : {2U, 3U, 4U, 19U, 20U, 253U}) {
    down(mode, {}, Tags{});
    down(mode, {kFirst}, kDropped);
  }
  EXPECT_EQ(rows_, 24U);
}

TEST_F(AccordTest, Lists_EveryPlaceIsFound) {
  constexpr std::uint16_t kWanted = 2222;
  const TagBytes wanted = {0x8100, kWanted};
  std::size_t places = 0;
  for (std::size_t i = 0; i < kListEntries; ++i) {
    FillLists(config_);
    config_.trunkList[i] = {0, 0, kWanted};
    config_.translationList[i] = {0, 0, 1, kWanted, 2, kWanted};
    config_.stackingList[i] = {0, {}, 2, kWanted, 0, kWanted};
    up(4, {wanted}, Tags{wanted});
    up(2, {wanted}, Tags{{0x8100, 0x4000 | kWanted}});
    up(253, {wanted}, Tags{wanted, wanted});
    down(19, {wanted}, Tags{wanted});
    down(3, {wanted}, Tags{{0x8100, 0x2000 | kWanted}});
    down(253, {wanted}, Tags{});
    ++places;
  }
  EXPECT_EQ(places, 512U);
  FillLists(config_);
  up(4, {wanted}, kDropped);
  up(2, {wanted}, kDropped);
  up(253, {wanted}, kDropped);
  down(19, {wanted}, kDropped);
  down(3, {wanted}, kDropped);
  down(253, {wanted}, kDropped);
}

TEST_F(AccordTest, Lists_OfOtherPorts_DoNotCount) {
  config_.vlanMode = 4;
  g_PortVlanInfo[0].vlanMode = 4;
  g_PortVlanInfo[0].trunkList[0].vid = 5;
  g_PortVlanInfo[2].vlanMode = 4;
  g_PortVlanInfo[2].trunkList[0].vid = 5;
  const Bytes frame = FrameWith({kOther});
  EXPECT_EQ(judge(frame, 1, 0).result, 0U);
  EXPECT_EQ(judge(frame, 2, 0).result, 1U);
  EXPECT_EQ(judge(frame, 3, 0).result, 0U);
  EXPECT_EQ(judge(frame, 0, 1).result, 0U);
  EXPECT_EQ(judge(frame, 0, 2).result, 1U);
}

}  // namespace
}  // namespace hal_test::accord
