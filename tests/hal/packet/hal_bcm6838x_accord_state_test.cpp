/// @file
/// Tests of the ports' VLAN rules as they apply to a frame: every row of both tables and every
/// place of a list. Modes and lists are set in the table of the configuration.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <string>

#include <bcm6838x_vlan_port.h>

#include "accord_fixture.h"
#include "packet_bytes.h"
#include "support/library_tables.h"

namespace hal_test::accord {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kNoMode =
    "log 1 hal/switch/bcm6838x/src/hal_bcm6838x_classify.cpp "
    "CTC mode : PORTCFG_CTCMODE_NONE\r\n";
const MaybeTags kDropped = std::nullopt;
const TagBytes kServiceTag = {0x88A8, 10};
const TagBytes kFirst = {0x8100, 0xA00A};  ///< VID 10, the first of every list
const TagBytes kLast = {0x8100, 0x0014};   ///< VID 20, the last of every list

TEST_F(AccordTest, Upstream_Transparent) {
  for (const Tags& tags :
       {Tags{}, Tags{kOther}, Tags{kOther, kFirst}, Tags{kServiceTag}, Tags{kServiceTag, kOther}}) {
    up(BCM6838X_VLAN_MODE_TRANSPARENT, tags, tags);
  }
  EXPECT_EQ(rows_, 5U);
}

TEST_F(AccordTest, Upstream_Tag) {
  up(BCM6838X_VLAN_MODE_TAG, {}, Tags{kOwnTag});
  up(BCM6838X_VLAN_MODE_TAG, {kServiceTag}, Tags{kOwnTag, kServiceTag});
  up(BCM6838X_VLAN_MODE_TAG, {kOther}, kDropped);
  up(BCM6838X_VLAN_MODE_TAG, {kOwnTag}, kDropped);
  up(BCM6838X_VLAN_MODE_TAG, {{0x8100, 0}}, kDropped);
  up(BCM6838X_VLAN_MODE_TAG, {kServiceTag, kOther}, kDropped);
  EXPECT_THAT(left(), IsEmpty()) << "frames are dropped silently";
}

TEST_F(AccordTest, Upstream_TrunkAndHybrid) {
  for (const std::uint32_t mode : {BCM6838X_VLAN_MODE_TRUNK, BCM6838X_VLAN_MODE_HYBRID}) {
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
  up(BCM6838X_VLAN_MODE_TRUNK, {{0x8100, 0xE000}}, Tags{{0x8100, 0xE000}});
  up(BCM6838X_VLAN_MODE_TRUNK, {}, Tags{kOwnTag});
  EXPECT_EQ(rows_, 24U);
}

// Required: frame-rules-visit-free-entries
TEST_F(AccordTest, Upstream_ZteTrunk) {
  up(BCM6838X_VLAN_MODE_ZTE_TRUNK, {}, kDropped);
  up(BCM6838X_VLAN_MODE_ZTE_TRUNK, {kServiceTag}, kDropped);
  up(BCM6838X_VLAN_MODE_ZTE_TRUNK, {kFirst}, Tags{kFirst});
  up(BCM6838X_VLAN_MODE_ZTE_TRUNK, {kLast}, Tags{kLast});
  up(BCM6838X_VLAN_MODE_ZTE_TRUNK, {kOther}, kDropped);
  for (const std::size_t place : {std::size_t{0}, std::size_t{511}}) {
    FillLists(config_);
    config_.trunkList[place] = {};
    up(BCM6838X_VLAN_MODE_ZTE_TRUNK, {}, Tags{});
    up(BCM6838X_VLAN_MODE_ZTE_TRUNK, {kServiceTag}, Tags{kServiceTag});
  }
  EXPECT_EQ(rows_, 9U);
}

TEST_F(AccordTest, Upstream_Translation) {
  for (const std::uint32_t mode :
       {BCM6838X_VLAN_MODE_TRANSLATION, BCM6838X_VLAN_MODE_TRANSLATION_2}) {
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
  up(BCM6838X_VLAN_MODE_ZTE_STACKING, {}, Tags{kOwnTag});
  up(BCM6838X_VLAN_MODE_ZTE_STACKING, {kServiceTag}, Tags{kOwnTag, kServiceTag});
  up(BCM6838X_VLAN_MODE_ZTE_STACKING, {kOther}, Tags{kOwnTag, kOther});
  up(BCM6838X_VLAN_MODE_ZTE_STACKING, {kOwnTag}, Tags{kOwnTag, kOwnTag});
  up(BCM6838X_VLAN_MODE_ZTE_STACKING, {kServiceTag, kOther}, Tags{kOwnTag, kServiceTag, kOther});
  up(BCM6838X_VLAN_MODE_ZTE_STACKING, {kOther, kFirst}, Tags{kOwnTag, kOther, kFirst});
}

TEST_F(AccordTest, Upstream_BdcomStacking) {
  up(BCM6838X_VLAN_MODE_BDCOM_STACKING, {}, Tags{kOwnTag});
  up(BCM6838X_VLAN_MODE_BDCOM_STACKING, {kServiceTag}, Tags{kOwnTag, kServiceTag});
  up(BCM6838X_VLAN_MODE_BDCOM_STACKING, {kFirst}, Tags{{0x8100, 300}, kFirst});
  up(BCM6838X_VLAN_MODE_BDCOM_STACKING, {kLast}, Tags{{0x8100, 320}, kLast});
  up(BCM6838X_VLAN_MODE_BDCOM_STACKING, {{0x8100, 30}}, Tags{{0x8100, 302}, {0x8100, 30}});
  up(BCM6838X_VLAN_MODE_BDCOM_STACKING, {{0x8100, 40}}, kDropped);
  up(BCM6838X_VLAN_MODE_BDCOM_STACKING, {kOther}, kDropped);
  up(BCM6838X_VLAN_MODE_BDCOM_STACKING, {{0x8100, 300}}, kDropped);
  up(BCM6838X_VLAN_MODE_BDCOM_STACKING, {kServiceTag, kOther},
     Tags{{0x8100, 300}, kServiceTag, kOther});
  config_.stackingList[0].cvid = 0x1000 | 10;
  config_.stackingList[256].cvid = 0x10000 | 10;
  up(BCM6838X_VLAN_MODE_BDCOM_STACKING, {kFirst}, kDropped);
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
    down(BCM6838X_VLAN_MODE_TRANSPARENT, tags, tags);
  }
  EXPECT_EQ(rows_, 4U);
}

// Required: unremovable-tag-forwards
TEST_F(AccordTest, Downstream_TagAndZteStacking) {
  for (const std::uint32_t mode : {BCM6838X_VLAN_MODE_TAG, BCM6838X_VLAN_MODE_ZTE_STACKING}) {
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
  for (const std::uint32_t mode : {BCM6838X_VLAN_MODE_TRUNK, BCM6838X_VLAN_MODE_HYBRID}) {
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
  down(BCM6838X_VLAN_MODE_ZTE_TRUNK, {kFirst}, Tags{kFirst});
  down(BCM6838X_VLAN_MODE_ZTE_TRUNK, {kLast}, Tags{kLast});
  down(BCM6838X_VLAN_MODE_ZTE_TRUNK, {kOwnTag}, kDropped);
  down(BCM6838X_VLAN_MODE_ZTE_TRUNK, {kOther}, kDropped);
  down(BCM6838X_VLAN_MODE_ZTE_TRUNK, {}, kDropped);
  config_.trunkList[0] = {};
  down(BCM6838X_VLAN_MODE_ZTE_TRUNK, {}, Tags{});
  config_.trunkList[1].vid = kPvid;
  down(BCM6838X_VLAN_MODE_ZTE_TRUNK, {kOwnTag}, Tags{kOwnTag});
}

// Required: untranslated-frame-forwards
TEST_F(AccordTest, Downstream_Translation) {
  for (const std::uint32_t mode :
       {BCM6838X_VLAN_MODE_TRANSLATION, BCM6838X_VLAN_MODE_TRANSLATION_2}) {
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
  down(BCM6838X_VLAN_MODE_BDCOM_STACKING, {kOwnTag, kFirst}, Tags{kFirst});
  down(BCM6838X_VLAN_MODE_BDCOM_STACKING, {{0x8100, 300}, kFirst}, Tags{kFirst});
  down(BCM6838X_VLAN_MODE_BDCOM_STACKING, {{0x8100, 0xE000 | 320}}, Tags{});
  down(BCM6838X_VLAN_MODE_BDCOM_STACKING, {{0x8100, 301}}, Tags{});
  down(BCM6838X_VLAN_MODE_BDCOM_STACKING, {{0x8100, 303}}, Tags{});
  down(BCM6838X_VLAN_MODE_BDCOM_STACKING, {{0x88A8, 300}, kFirst}, Tags{{0x88A8, 300}, kFirst});
  down(BCM6838X_VLAN_MODE_BDCOM_STACKING, {kFirst}, kDropped);
  down(BCM6838X_VLAN_MODE_BDCOM_STACKING, {kOther}, kDropped);
  down(BCM6838X_VLAN_MODE_BDCOM_STACKING, {}, kDropped);
  config_.stackingList[0] = {};
  down(BCM6838X_VLAN_MODE_BDCOM_STACKING, {}, Tags{});
  down(BCM6838X_VLAN_MODE_BDCOM_STACKING, {kServiceTag}, Tags{kServiceTag});
  EXPECT_EQ(rows_, 11U);
}

/// A priority tag, whose VID is that of a free entry.
const TagBytes kPriorityTag = {0x8100, 0xE000};

// Required: frame-rules-visit-free-entries
TEST_F(AccordTest, FreeEntries_MatchPriorityTagsToo) {
  for (const std::uint32_t mode :
       {BCM6838X_VLAN_MODE_TRANSLATION, BCM6838X_VLAN_MODE_TRANSLATION_2}) {
    up(mode, {kPriorityTag}, kDropped);
    down(mode, {kPriorityTag}, kDropped);
  }
  up(BCM6838X_VLAN_MODE_BDCOM_STACKING, {kPriorityTag}, kDropped);
  down(BCM6838X_VLAN_MODE_BDCOM_STACKING, {kPriorityTag}, kDropped);
  config_.trunkList[511] = {};
  config_.translationList[511] = {};
  config_.stackingList[511] = {};
  up(BCM6838X_VLAN_MODE_ZTE_TRUNK, {kPriorityTag}, Tags{kPriorityTag});
  for (const std::uint32_t mode :
       {BCM6838X_VLAN_MODE_TRUNK, BCM6838X_VLAN_MODE_ZTE_TRUNK, BCM6838X_VLAN_MODE_HYBRID}) {
    down(mode, {kPriorityTag}, Tags{kPriorityTag});
  }
  for (const std::uint32_t mode :
       {BCM6838X_VLAN_MODE_TRANSLATION, BCM6838X_VLAN_MODE_TRANSLATION_2}) {
    up(mode, {kPriorityTag}, Tags{{0x8100, 0}});
    down(mode, {kPriorityTag, kOther}, Tags{{0x8100, 0}, kOther});
  }
  up(BCM6838X_VLAN_MODE_BDCOM_STACKING, {kPriorityTag}, kDropped);  // a free entry does not stack
  down(BCM6838X_VLAN_MODE_BDCOM_STACKING, {kPriorityTag, kOther}, Tags{kOther});
  EXPECT_EQ(rows_, 16U);
}

TEST_F(AccordTest, Downstream_PvidZero_IsThatOfPriorityTagsAndNotOfUntaggedFrames) {
  config_.pvid = 0;
  for (const std::uint32_t mode :
       {BCM6838X_VLAN_MODE_TAG, BCM6838X_VLAN_MODE_ZTE_STACKING, BCM6838X_VLAN_MODE_TRUNK,
        BCM6838X_VLAN_MODE_HYBRID, BCM6838X_VLAN_MODE_TRANSLATION, BCM6838X_VLAN_MODE_TRANSLATION_2,
        BCM6838X_VLAN_MODE_BDCOM_STACKING}) {
    down(mode, {kPriorityTag}, Tags{});
    down(mode, {}, kDropped);
    down(mode, {kServiceTag}, kDropped);
  }
  EXPECT_EQ(rows_, 21U);
}

// Required: frame-rules-visit-free-entries, untranslated-frame-forwards
TEST_F(AccordTest, Lists_OfAnUnusedPort_MatchUntaggedFramesAlone) {
  for (std::size_t i = 0; i < kListEntries; ++i) {
    config_.trunkList[i] = {};
    config_.translationList[i] = {};
    config_.stackingList[i] = {};
  }
  up(BCM6838X_VLAN_MODE_ZTE_TRUNK, {}, Tags{});
  up(BCM6838X_VLAN_MODE_ZTE_TRUNK, {kFirst}, kDropped);
  for (const std::uint32_t mode :
       {BCM6838X_VLAN_MODE_TRANSLATION, BCM6838X_VLAN_MODE_TRANSLATION_2, BCM6838X_VLAN_MODE_TRUNK,
        BCM6838X_VLAN_MODE_HYBRID, BCM6838X_VLAN_MODE_BDCOM_STACKING}) {
    up(mode, {}, Tags{kOwnTag});
    up(mode, {kFirst}, kDropped);
  }
  for (const std::uint32_t mode : {BCM6838X_VLAN_MODE_TRANSLATION, BCM6838X_VLAN_MODE_TRANSLATION_2,
                                   BCM6838X_VLAN_MODE_TRUNK, BCM6838X_VLAN_MODE_ZTE_TRUNK,
                                   BCM6838X_VLAN_MODE_HYBRID, BCM6838X_VLAN_MODE_BDCOM_STACKING}) {
    down(mode, {}, Tags{});
    down(mode, {kFirst}, kDropped);
  }
  EXPECT_EQ(rows_, 24U);
}

// Required: frame-rules-ignore-list-port
TEST_F(AccordTest, Lists_EveryPlaceIsFound) {
  constexpr std::uint16_t kWanted = 2222;
  const TagBytes wanted = {0x8100, kWanted};
  std::size_t places = 0;
  for (std::size_t i = 0; i < kListEntries; ++i) {
    FillLists(config_);
    config_.trunkList[i] = {0, 0, kWanted};
    config_.translationList[i] = {0, 0, 1, kWanted, 2, kWanted};
    config_.stackingList[i] = {0, {}, 2, kWanted, 0, kWanted};
    up(BCM6838X_VLAN_MODE_TRUNK, {wanted}, Tags{wanted});
    up(BCM6838X_VLAN_MODE_TRANSLATION, {wanted}, Tags{{0x8100, 0x4000 | kWanted}});
    up(BCM6838X_VLAN_MODE_BDCOM_STACKING, {wanted}, Tags{wanted, wanted});
    down(BCM6838X_VLAN_MODE_ZTE_TRUNK, {wanted}, Tags{wanted});
    down(BCM6838X_VLAN_MODE_TRANSLATION_2, {wanted}, Tags{{0x8100, 0x2000 | kWanted}});
    down(BCM6838X_VLAN_MODE_BDCOM_STACKING, {wanted}, Tags{});
    ++places;
  }
  EXPECT_EQ(places, 512U);
  FillLists(config_);
  up(BCM6838X_VLAN_MODE_TRUNK, {wanted}, kDropped);
  up(BCM6838X_VLAN_MODE_TRANSLATION, {wanted}, kDropped);
  up(BCM6838X_VLAN_MODE_BDCOM_STACKING, {wanted}, kDropped);
  down(BCM6838X_VLAN_MODE_ZTE_TRUNK, {wanted}, kDropped);
  down(BCM6838X_VLAN_MODE_TRANSLATION_2, {wanted}, kDropped);
  down(BCM6838X_VLAN_MODE_BDCOM_STACKING, {wanted}, kDropped);
}

TEST_F(AccordTest, Lists_OfOtherPorts_DoNotCount) {
  config_.vlanMode = BCM6838X_VLAN_MODE_TRUNK;
  g_PortVlanInfo[0].vlanMode = BCM6838X_VLAN_MODE_TRUNK;
  g_PortVlanInfo[0].trunkList[0].vid = 5;
  g_PortVlanInfo[2].vlanMode = BCM6838X_VLAN_MODE_TRUNK;
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
