/// @file
/// Tests of the tables as a program sees them that links with the archive: their layout, what the
/// operations keep in them, and entries that only such a program can make.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <bcm6838x_port.h>
#include <bcm6838x_vlan.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>

#include "support/library_tables.h"
#include "support/library_test.h"
#include "support/wire_record.h"

namespace hal_test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t kNone = 0xFFFFFFFF;

VlanActionRule PushTag(std::uint16_t vid) {
  return {0x101, {{vid, 3, 0, 0x8100}, {9, 2, 0, 0x88A8}}, BRMGR_DIR_UPSTREAM, 0};
}

class VlanStateTest : public LibraryTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    ASSERT_EQ(BCM6838X_RdpaIcInit(), 0U);
    forget();
  }

  [[nodiscard]] std::vector<std::string> shellLines() const { return OfKind(left(), "shell"); }
};

TEST_F(VlanStateTest, EveryTableIsZeroAtTheStart) {
  EXPECT_THAT(BytesOf(g_vlanAction), Each(0));
  EXPECT_THAT(BytesOf(g_lanVlan), Each(0));
  EXPECT_THAT(BytesOf(g_dsIngressClass), Each(0));
  EXPECT_TRUE(std::ranges::all_of(BytesOf(g_usIngressClass), [](int byte) { return byte == 0; }));
  EXPECT_TRUE(std::ranges::all_of(BytesOf(g_wanVlan), [](int byte) { return byte == 0; }));
}

TEST_F(VlanStateTest, Action_KeepsItsContentIndexAndCount) {
  VlanActionRule rule = PushTag(100);
  rule.tag[0].reserved3 = 0xAA;
  rule.vlanActionIndex = 77;
  BCM6838X_AddVlanAction(PushTag(50), 1);
  BCM6838X_AddVlanAction(rule, 8);
  VlanActionEntry expected = {PushTag(100), 8};
  expected.rule.vlanActionIndex = 1;
  EXPECT_EQ(BytesOf(g_vlanAction[1]), BytesOf(expected));
  BCM6838X_DelVlanAction({0, {}, BRMGR_DIR_UPSTREAM, 0});
  EXPECT_THAT(BytesOf(g_vlanAction[0]), Each(0)) << "the last delete clears the slot";
}

TEST_F(VlanStateTest, Action_WithoutIndex_IsNeverRemoved) {
  BCM6838X_AddVlanAction(PushTag(100), 1);
  g_vlanAction[0].rule.vlanActionIndex = kNone;
  forget();
  BCM6838X_DelVlanAction({0, {}, BRMGR_DIR_UPSTREAM, kNone});
  EXPECT_THAT(commands(), IsEmpty());
  EXPECT_EQ(g_vlanAction[0].refCount, 0U);
  EXPECT_EQ(g_vlanAction[0].rule.tag[0].vid, 100);
}

TEST_F(VlanStateTest, DownstreamFlow_KeepsItsFields) {
  BCM6838X_AddDsIngressClass(50, 1, 1);
  BCM6838X_AddDsIngressClass(4096, 2, 8);
  IngressFlowRule expected = {};
  expected.outerVid = 4096;
  expected.vlanNum = 2;
  expected.forward = 1;
  expected.flowIndex = 0;
  expected.vlanActionIndex = kNone;
  expected.policer = kNone;
  expected.refCount = 8;
  EXPECT_EQ(BytesOf(g_dsIngressClass[1]), BytesOf(expected));
  BCM6838X_DelDsIngressClass(50, 1);
  EXPECT_THAT(BytesOf(g_dsIngressClass[0]), Each(0));
}

TEST_F(VlanStateTest, DownstreamFlow_OfPerformanceMode_KeepsTheFirstOfItsTwoWords) {
  BCM6838X_AddDsIngressClass_Perf(100, 1, 1);
  EXPECT_EQ(g_dsIngressClass[0].result104, 1U);
  EXPECT_EQ(g_dsIngressClass[0].result108, 0U);
  EXPECT_EQ(g_dsIngressClass[0].icIndex, 1U);
}

TEST_F(VlanStateTest, DownstreamFlow_ThatNeverReachedTheDevice_IsSharedButNeitherFoundNorDeleted) {
  BCM6838X_AddDsIngressClass(100, 1, 1);
  g_dsIngressClass[0].flowIndex = kNone;
  forget();
  EXPECT_EQ(BCM6838X_GetDsIngressClass(100, 1), -1);
  EXPECT_EQ(BCM6838X_DelDsIngressClass(100, 1), 0U);
  EXPECT_EQ(g_dsIngressClass[0].refCount, 1U);
  EXPECT_EQ(BCM6838X_AddDsIngressClass(100, 1, 2), -1);
  EXPECT_EQ(g_dsIngressClass[0].refCount, 3U);
  EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(VlanStateTest, WanObject_KeepsTheLanVidsOfEachPort) {
  BCM6838X_AddWanVlan(1, 50, 10);
  BCM6838X_AddWanVlan(32, 100, 10);
  BCM6838X_AddWanVlan(32, 100, 11);
  BCM6838X_AddWanVlan(1, 100, 4096);
  BCM6838X_DelWanVlan(32, 100, 10);
  BCM6838X_AddWanVlan(32, 100, 12);
  WanVlanEntry expected = {};
  expected.wanVid = 100;
  expected.lanVid[31][0] = 12;
  expected.lanVid[31][1] = 11;
  expected.lanVid[0][0] = 4096;
  EXPECT_EQ(g_wanVlan[1], expected);
}

TEST_F(VlanStateTest, WanObject_SameThreeTwice_TakesOneSlot) {
  for (const std::uint32_t lanVid : {10U, 10U, 11U, 11U, 10U}) {
    BCM6838X_AddWanVlan(2, 100, lanVid);
  }
  WanVlanEntry expected = {};
  expected.wanVid = 100;
  expected.lanVid[1][0] = 10;
  expected.lanVid[1][1] = 11;
  EXPECT_EQ(g_wanVlan[0], expected);
}

TEST_F(VlanStateTest, WanObject_LastDelete_ClearsTheEntry) {
  BCM6838X_AddWanVlan(2, 100, 10);
  BCM6838X_DelWanVlan(2, 100, 10);
  EXPECT_EQ(g_wanVlan[0], WanVlanEntry{});
}

TEST_F(VlanStateTest, WanObject_EverySlotHoldingTheLanVidIsFreed) {
  BCM6838X_AddWanVlan(2, 100, 10);
  g_wanVlan[0].lanVid[1][300] = 10;
  g_wanVlan[0].lanVid[1][511] = 10;
  BCM6838X_DelWanVlan(2, 100, 10);
  EXPECT_EQ(g_wanVlan[0], WanVlanEntry{});
}

TEST_F(VlanStateTest, WanObject_AnySlotOfAnyPortKeepsIt) {
  BCM6838X_AddWanVlan(2, 100, 10);
  g_wanVlan[0].lanVid[31][511] = 1;
  forget();
  BCM6838X_DelWanVlan(2, 100, 10);
  EXPECT_THAT(shellLines(), IsEmpty());
  EXPECT_EQ(g_wanVlan[0].wanVid, 100);
}

TEST_F(VlanStateTest, WanObject_OutOfRangePort_ChangesNothingInTheTable) {
  BCM6838X_AddWanVlan(1, 100, 10);
  const WanVlanEntry before = g_wanVlan[0];
  for (const std::uint32_t port : {0U, 33U, 0xFFFFU}) {
    BCM6838X_AddWanVlan(port, 100, 11);
    BCM6838X_AddWanVlan(port, 101, 11);
    BCM6838X_DelWanVlan(port, 100, 10);
  }
  EXPECT_EQ(g_wanVlan[0], before);
  EXPECT_EQ(g_wanVlan[1], WanVlanEntry{});
}

TEST_F(VlanStateTest, WanTable_ClearedByTheProgram_IsEmptyForTheLibraryToo) {
  BCM6838X_AddWanVlan(1, 100, 10);
  BCM6838X_AddWanVlan(1, 200, 10);
  std::ranges::fill(g_wanVlan, WanVlanEntry{});
  forget();
  BCM6838X_DelWanVlan(1, 200, 10);
  EXPECT_THAT(shellLines(), IsEmpty());
  BCM6838X_AddWanVlan(1, 200, 10);
  EXPECT_EQ(shellLines().front(), "shell bs /b/n vlan/name=wan0_200 port/index=wan0");
  EXPECT_EQ(g_wanVlan[0].wanVid, 200) << "the first entry is free again";
}

TEST_F(VlanStateTest, WanTable_ClearedWhileFull_TakesNewObjectsAgain) {
  for (std::uint32_t vid = 1; vid <= kChipObjects; ++vid) {
    BCM6838X_AddWanVlan(1, vid, 10);
  }
  std::ranges::fill(g_wanVlan, WanVlanEntry{});
  BCM6838X_AddWanVlan(1, 1000, 10);
  EXPECT_EQ(g_wanVlan[0].wanVid, 1000);
}

TEST_F(VlanStateTest, WanTable_FilledByTheProgram_IsSearched) {
  g_wanVlan[0].wanVid = 100;
  g_wanVlan[0].lanVid[0][0] = 10;
  g_wanVlan[1].wanVid = 200;
  g_wanVlan[1].lanVid[4][7] = 20;
  BCM6838X_DelWanVlan(5, 200, 20);
  EXPECT_EQ(shellLines().back(), "shell bs /b/d vlan/name=wan0_200");
  BCM6838X_AddWanVlan(1, 300, 10);
  EXPECT_EQ(g_wanVlan[1].wanVid, 300);
}

TEST_F(VlanStateTest, WanTable_EntryOfTheProgramBehindFreeOnes_IsFound) {
  BCM6838X_AddWanVlan(1, 100, 10);
  g_wanVlan[5].wanVid = 300;
  g_wanVlan[5].lanVid[0][0] = 10;
  forget();
  BCM6838X_DelWanVlan(1, 300, 10);
  EXPECT_THAT(shellLines(), ElementsAre("shell bs /b/c vlan/name=wan0_300 vid_enable[300]=no",
                                        "shell bs /b/d vlan/name=wan0_300"));
  EXPECT_EQ(g_wanVlan[5], WanVlanEntry{});
}

TEST_F(VlanStateTest, WanTable_TheFirstEntryWithTheVidIsUsed) {
  g_wanVlan[3].wanVid = 100;
  g_wanVlan[1].wanVid = 100;
  g_wanVlan[0].wanVid = 7;
  BCM6838X_AddWanVlan(1, 100, 10);
  EXPECT_EQ(g_wanVlan[1].lanVid[0][0], 10);
  EXPECT_EQ(g_wanVlan[3].lanVid[0][0], 0);
}

TEST_F(VlanStateTest, LanObject_KeepsPortVidAndCount) {
  BCM6838X_AddLanVlan(1, 50);
  BCM6838X_AddLanVlan(4, 100);
  BCM6838X_AddLanVlan(4, 100);
  const LanVlanEntry expected = {4, 100, 2};
  EXPECT_EQ(BytesOf(g_lanVlan[1]), BytesOf(expected));
  BCM6838X_DelLanVlan(1, 50);
  EXPECT_THAT(BytesOf(g_lanVlan[0]), Each(0));
  BCM6838X_AddLanVlan(2, 60);
  EXPECT_EQ(g_lanVlan[0].vid, 60) << "the first free entry is taken";
}

TEST_F(VlanStateTest, LanObject_CountHasSixteenBits) {
  BCM6838X_AddLanVlan(1, 100);
  g_lanVlan[0].refCount = 0xFFFF;
  BCM6838X_AddLanVlan(1, 100);
  EXPECT_EQ(g_lanVlan[0].refCount, 0);
  forget();
  BCM6838X_DelLanVlan(1, 100);
  EXPECT_EQ(g_lanVlan[0].refCount, 0xFFFF);
  EXPECT_THAT(shellLines(), IsEmpty());
}

// Required: mirror-any-mode-resets-selector
TEST_F(VlanStateTest, MirrorMode_OfAnyPortResetsTheSelector) {
  std::array<std::uint8_t, 4> modes = {};
  g_mirror_cfg[0] = 9;
  BCM6838X_SetPortMirrorMode(modes.data());
  EXPECT_THAT(g_mirror_cfg, ElementsAre(9, 0, 0, 0)) << "no port has a mode";
  modes = {3, 0, 200, 0};
  BCM6838X_SetPortMirrorMode(modes.data());
  EXPECT_THAT(g_mirror_cfg, ElementsAre(0, 0, 0, 2));
  modes = {0, 0, 0, 4};
  g_mirror_cfg[0] = 9;
  BCM6838X_SetPortMirrorMode(modes.data());
  EXPECT_THAT(g_mirror_cfg, ElementsAre(0, 0, 0, 2))
      << "an unknown mode changes the selector alone";
}

TEST_F(VlanStateTest, MirrorEnable_SendsTheWholeRecord) {
  constexpr std::array<std::uint32_t, 4> kWords = {1, 2, 3, 4};
  std::ranges::copy(kWords, std::begin(g_mirror_cfg));
  BCM6838X_SetPortMirrorEnable(5);
  EXPECT_THAT(
      commands(),
      ElementsAre(Sent("PORT_MIRROR", 0, WireRecord(16).u32(0, 1).u32(4, 2).u32(8, 5).u32(12, 4))));
  BCM6838X_InitPort();
  EXPECT_THAT(g_mirror_cfg, Each(0));
}

}  // namespace
}  // namespace hal_test
