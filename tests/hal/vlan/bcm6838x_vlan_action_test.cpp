/// @file
/// Tests of the pool of VLAN actions: sharing by content, reference counts, capacity, refusals.
#include <cstdint>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <bcm6838x_vlan.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>

#include "support/library_test.h"
#include "support/wire_record.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t kCapacity = 256;
constexpr std::uint32_t kNone = 0xFFFFFFFF;
const std::string kPlace = "log 1 hal/switch/bcm6838x/src/bcm6838x_vlan_action.cpp ";
const std::string kChannelPlace = "log 1 hal/switch/bcm6838x/src/hal_bcm6838x.cpp ";

/// An upstream action that pushes a tag.
VlanActionRule PushTag(std::uint16_t vid, std::uint32_t dir = BRMGR_DIR_UPSTREAM) {
  return {0x101, {{vid, 3, 0, 0x8100}, {}}, dir, 0};
}

/// What callers pass to delete: direction and index alone.
VlanActionRule Named(std::uint32_t dir, std::int32_t index) {
  return {0, {}, dir, static_cast<std::uint32_t>(index)};
}

std::string ActionSent(const VlanActionRule& rule) {
  return Sent("VLAN_ACTION_ADD", 1,
              WireRecord(24)
                  .u32(0, rule.cmd)
                  .u16(4, rule.tag[0].vid)
                  .u8(6, rule.tag[0].pbit)
                  .u16(8, rule.tag[0].tpid)
                  .u16(10, rule.tag[1].vid)
                  .u8(12, rule.tag[1].pbit)
                  .u16(14, rule.tag[1].tpid)
                  .u32(16, rule.dir)
                  .u32(20, kNone));
}

std::string DeleteSent(std::uint32_t dir, std::uint32_t index) {
  return Sent("VLAN_ACTION_DEL", 0, WireRecord(8).u32(0, dir).u32(4, index));
}

std::string AddLogged(const std::string& content) {
  return kPlace + "BCM6838X_AddVlanAction,<line>, add vlan action " + content + "\r\n";
}

std::string AddCountLogged(const std::string& count) {
  return AddLogged("num " + count);
}

std::string DelLogged(const std::string& content) {
  return kPlace + "BCM6838X_DelVlanAction,<line>, del vlan action " + content + "\r\n";
}

std::string DelCountLogged(const std::string& count) {
  return DelLogged("num " + count);
}

std::string NamedLogged(const std::string& dir) {
  return DelLogged("cmd 0 vid[0]=0 vid[1]=0  dir=" + dir);
}

class VlanActionTest : public LibraryTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    forget();
  }

  void fillPool() {
    for (std::uint16_t vid = 1; vid <= kCapacity; ++vid) {
      ASSERT_EQ(BCM6838X_AddVlanAction(PushTag(vid), 1), vid - 1);
    }
    forget();
  }
};

TEST_F(VlanActionTest, Add_NewContent_LogsThenCreatesItInTheDevice) {
  const VlanActionRule rule = {
      0x10101, {{100, 5, 0, 0x8100}, {4094, 7, 0, 0x88A8}}, BRMGR_DIR_UPSTREAM, 0};
  EXPECT_EQ(BCM6838X_AddVlanAction(rule, 1), 0);
  EXPECT_THAT(left(),
              ElementsAre(AddLogged("cmd 65793 vid[0]=100 vid[1]=4094  dir=us"), ActionSent(rule)));
  EXPECT_EQ(unit.device().tables().upstream.actions.size(), 1U);
}

TEST_F(VlanActionTest, Add_ReservedBytesAndIndexOfTheCaller_AreNotSent) {
  VlanActionRule rule = PushTag(100, BRMGR_DIR_DOWNSTREAM);
  rule.tag[0].reserved3 = 0xAA;
  rule.tag[1].reserved3 = 0xBB;
  rule.vlanActionIndex = 77;
  EXPECT_EQ(BCM6838X_AddVlanAction(rule, 1), 0);
  EXPECT_THAT(commands(), ElementsAre(ActionSent(PushTag(100, BRMGR_DIR_DOWNSTREAM))));
}

TEST_F(VlanActionTest, Add_SameContent_SharesTheActionAndSumsTheCounts) {
  const std::int32_t index = BCM6838X_AddVlanAction(PushTag(100), 8);
  forget();
  VlanActionRule again = PushTag(100);
  again.tag[0].reserved3 = 0xAA;
  again.vlanActionIndex = 77;
  EXPECT_EQ(BCM6838X_AddVlanAction(again, 3), index);
  EXPECT_THAT(left(),
              ElementsAre(AddLogged("cmd 257 vid[0]=100 vid[1]=0  dir=us"), AddCountLogged("11")));
}

TEST_F(VlanActionTest, Add_AnyFieldOfTheContentDiffers_IsAnotherAction) {
  const std::vector<std::function<void(VlanActionRule&)>> changes = {
      [](VlanActionRule& rule) { rule.cmd = 0x100; },
      [](VlanActionRule& rule) { rule.tag[0].vid = 101; },
      [](VlanActionRule& rule) { rule.tag[0].pbit = 4; },
      [](VlanActionRule& rule) { rule.tag[0].tpid = 0x88A8; },
      [](VlanActionRule& rule) { rule.tag[1].vid = 1; },
      [](VlanActionRule& rule) { rule.tag[1].pbit = 1; },
      [](VlanActionRule& rule) { rule.tag[1].tpid = 0x8100; },
      [](VlanActionRule& rule) { rule.dir = BRMGR_DIR_DOWNSTREAM; },
      [](VlanActionRule& rule) { rule.dir = 2; },
  };
  BCM6838X_AddVlanAction(PushTag(100), 1);
  std::vector<std::string> expected = {ActionSent(PushTag(100))};
  for (const auto& change : changes) {
    VlanActionRule rule = PushTag(100);
    change(rule);
    EXPECT_EQ(BCM6838X_GetVlanAction(rule), -1);
    const std::int32_t index = BCM6838X_AddVlanAction(rule, 1);
    EXPECT_GE(index, 0);
    EXPECT_EQ(BCM6838X_GetVlanAction(rule), index);
    expected.push_back(ActionSent(rule));
  }
  EXPECT_EQ(expected.size(), 10U);
  EXPECT_EQ(commands(), expected);
}

// Required: action-needs-tpid
TEST_F(VlanActionTest, Add_BothTpidsZero_IsRefusedWithALogLine) {
  VlanActionRule rule = PushTag(100, BRMGR_DIR_DOWNSTREAM);
  rule.tag[0].tpid = 0;
  EXPECT_EQ(BCM6838X_AddVlanAction(rule, 1), -1);
  EXPECT_THAT(left(), ElementsAre(AddLogged("cmd 257 vid[0]=100 vid[1]=0  dir=ds"),
                                  kPlace + "[BCM6838X_AddVlanAction <line>] tpid is 0\r\n"));
}

TEST_F(VlanActionTest, Add_OneTpidIsEnough) {
  VlanActionRule inner = PushTag(100);
  inner.tag[0].tpid = 0;
  inner.tag[1].tpid = 1;
  EXPECT_EQ(BCM6838X_AddVlanAction(inner, 1), 0);
  EXPECT_EQ(BCM6838X_AddVlanAction(PushTag(100), 1), 1);
  EXPECT_THAT(commands(), ElementsAre(ActionSent(inner), ActionSent(PushTag(100))));
}

TEST_F(VlanActionTest, Add_CountIsItsLowSixteenBits) {
  BCM6838X_AddVlanAction(PushTag(100), 0xABCD0002);
  forget();
  BCM6838X_AddVlanAction(PushTag(100), 0x10003);
  EXPECT_EQ(logLines().back(), AddCountLogged("5"));
  BCM6838X_AddVlanAction(PushTag(100), 0xFFFF);
  EXPECT_EQ(logLines().back(), AddCountLogged("65540")) << "the sum has 32 bits";
}

TEST_F(VlanActionTest, Add_DriverRefuses_LogsAndLeavesTheSlotFree) {
  unit.device().faults().refuseNth(1);
  EXPECT_EQ(BCM6838X_AddVlanAction(PushTag(100), 1), -1);
  EXPECT_THAT(
      left(),
      ElementsAre(AddLogged("cmd 257 vid[0]=100 vid[1]=0  dir=us"), ActionSent(PushTag(100)),
                  kChannelPlace + "BCM6838X_Ioctl :<line>, cmd:102 err:4294967295\r\n",
                  kPlace + "Create vlan action error\r\n"));
  EXPECT_EQ(BCM6838X_GetVlanAction(PushTag(100)), -1);
  EXPECT_EQ(BCM6838X_AddVlanAction(PushTag(100), 1), 0) << "the next add creates it";
}

// Required: action-pool-full-silent
TEST_F(VlanActionTest, Add_PoolFull_RefusesNewContentSilentlyAndSharesPooledContent) {
  fillPool();
  EXPECT_EQ(BCM6838X_AddVlanAction(PushTag(1000), 1), -1);
  EXPECT_THAT(left(), ElementsAre(AddLogged("cmd 257 vid[0]=1000 vid[1]=0  dir=us")));
  EXPECT_EQ(BCM6838X_AddVlanAction(PushTag(kCapacity), 1), kCapacity - 1);
  EXPECT_EQ(left().back(), AddCountLogged("2"));
  EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(VlanActionTest, Add_PoolFullAndOneDeleted_TakesTheFreedSlot) {
  fillPool();
  BCM6838X_DelVlanAction(Named(BRMGR_DIR_UPSTREAM, 100));
  EXPECT_EQ(BCM6838X_AddVlanAction(PushTag(1000), 1), 100) << "the device's lowest free index";
  EXPECT_EQ(BCM6838X_AddVlanAction(PushTag(1001), 1), -1);
  EXPECT_EQ(unit.device().tables().upstream.actions.size(), kCapacity);
}

TEST_F(VlanActionTest, Get_TellsTheIndexAndChangesNothing) {
  BCM6838X_AddVlanAction(PushTag(100), 1);
  const std::int32_t index = BCM6838X_AddVlanAction(PushTag(200), 1);
  forget();
  EXPECT_EQ(BCM6838X_GetVlanAction(PushTag(200)), index);
  EXPECT_EQ(BCM6838X_GetVlanAction(PushTag(300)), -1);
  EXPECT_THAT(left(), IsEmpty());
  BCM6838X_DelVlanAction(Named(BRMGR_DIR_UPSTREAM, index));
  EXPECT_EQ(BCM6838X_GetVlanAction(PushTag(200)), -1);
}

TEST_F(VlanActionTest, Get_BothTpidsZero_IsRefusedWithALogLine) {
  VlanActionRule rule = PushTag(100);
  rule.tag[0].tpid = 0;
  EXPECT_EQ(BCM6838X_GetVlanAction(rule), -1);
  EXPECT_THAT(left(), ElementsAre(kPlace + "[BCM6838X_GetVlanAction <line>] tpid is 0\r\n"));
}

TEST_F(VlanActionTest, Del_LastReference_RemovesItFromTheDevice) {
  const std::int32_t index = BCM6838X_AddVlanAction(PushTag(100, BRMGR_DIR_DOWNSTREAM), 1);
  forget();
  EXPECT_EQ(BCM6838X_DelVlanAction(Named(BRMGR_DIR_DOWNSTREAM, index)), 0U);
  EXPECT_THAT(left(), ElementsAre(NamedLogged("ds"), DelCountLogged("0"), DeleteSent(0, 0)));
  EXPECT_THAT(unit.device().tables().downstream.actions, IsEmpty());
}

TEST_F(VlanActionTest, Del_LogsTheRuleAsGiven) {
  BCM6838X_DelVlanAction({0x108, {{100, 0, 0, 0}, {200, 0, 0, 0}}, 9, 500});
  EXPECT_THAT(left(), ElementsAre(DelLogged("cmd 264 vid[0]=100 vid[1]=200  dir=us")));
}

TEST_F(VlanActionTest, Del_EightReferences_TheEighthRemovesIt) {
  const std::int32_t index = BCM6838X_AddVlanAction(PushTag(100), 8);
  forget();
  int deletes = 0;
  for (; deletes < 7; ++deletes) {
    BCM6838X_DelVlanAction(Named(BRMGR_DIR_UPSTREAM, index));
    EXPECT_EQ(left().back(), DelCountLogged(std::to_string(7 - deletes)));
  }
  EXPECT_EQ(deletes, 7);
  EXPECT_THAT(commands(), IsEmpty());
  BCM6838X_DelVlanAction(Named(BRMGR_DIR_UPSTREAM, index));
  EXPECT_THAT(commands(), ElementsAre(DeleteSent(1, 0)));
}

TEST_F(VlanActionTest, Del_IndexNotInThePool_SendsNothing) {
  const std::int32_t index = BCM6838X_AddVlanAction(PushTag(100), 1);
  forget();
  EXPECT_EQ(BCM6838X_DelVlanAction(Named(BRMGR_DIR_UPSTREAM, index + 1)), 0U);
  EXPECT_EQ(BCM6838X_DelVlanAction(Named(BRMGR_DIR_UPSTREAM, -1)), 0U);
  EXPECT_THAT(left(), ElementsAre(NamedLogged("us"), NamedLogged("us")));
}

TEST_F(VlanActionTest, Del_SameIndexOfTheOtherDirection_IsAnotherAction) {
  const std::int32_t upstream = BCM6838X_AddVlanAction(PushTag(100), 1);
  const std::int32_t downstream = BCM6838X_AddVlanAction(PushTag(100, BRMGR_DIR_DOWNSTREAM), 1);
  ASSERT_EQ(upstream, downstream);
  forget();
  BCM6838X_DelVlanAction(Named(BRMGR_DIR_DOWNSTREAM, downstream));
  EXPECT_THAT(commands(), ElementsAre(DeleteSent(0, 0)));
  EXPECT_EQ(BCM6838X_GetVlanAction(PushTag(100)), upstream);
}

TEST_F(VlanActionTest, Del_NonZeroDirection_IsSentAsItIsAndCalledUpstream) {
  const std::int32_t index = BCM6838X_AddVlanAction(PushTag(100, 7), 1);
  unit.device().faults().refuseNth(1);
  forget();
  BCM6838X_DelVlanAction(Named(7, index));
  EXPECT_THAT(left(),
              ElementsAre(NamedLogged("us"), DelCountLogged("0"), DeleteSent(7, 0),
                          kChannelPlace + "BCM6838X_Ioctl :<line>, cmd:104 err:4294967295\r\n",
                          kPlace + "[BCM6838X_DelVlanAction <line>] delete us vlanAction 0 "
                                   "error\r\n"));
}

// Required: action-refused-delete-stays
TEST_F(VlanActionTest, Del_DriverRefuses_KeepsTheActionForALaterAdd) {
  const std::int32_t index = BCM6838X_AddVlanAction(PushTag(100, BRMGR_DIR_DOWNSTREAM), 1);
  unit.device().faults().refuseNth(1);
  forget();
  EXPECT_EQ(BCM6838X_DelVlanAction(Named(BRMGR_DIR_DOWNSTREAM, index)), 0U);
  EXPECT_EQ(left().back(),
            kPlace + "[BCM6838X_DelVlanAction <line>] delete ds vlanAction 0 error\r\n");
  forget();
  EXPECT_EQ(BCM6838X_AddVlanAction(PushTag(100, BRMGR_DIR_DOWNSTREAM), 1), index);
  EXPECT_EQ(left().back(), AddCountLogged("1"));
  EXPECT_THAT(commands(), IsEmpty());
  BCM6838X_DelVlanAction(Named(BRMGR_DIR_DOWNSTREAM, index));
  EXPECT_THAT(commands(), ElementsAre(DeleteSent(0, 0)));
}

// Required: action-count-wraps
TEST_F(VlanActionTest, Del_CountAlreadyZero_WrapsAndTheActionStays) {
  const std::int32_t index = BCM6838X_AddVlanAction(PushTag(100), 0);
  forget();
  BCM6838X_DelVlanAction(Named(BRMGR_DIR_UPSTREAM, index));
  EXPECT_THAT(left(), ElementsAre(NamedLogged("us"), DelCountLogged("-1")));
  BCM6838X_DelVlanAction(Named(BRMGR_DIR_UPSTREAM, index));
  EXPECT_EQ(left().back(), DelCountLogged("-2"));
  EXPECT_EQ(BCM6838X_GetVlanAction(PushTag(100)), index);
  EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(VlanActionTest, Del_DownstreamIndexZero_MeetsAFreeSlotAndSendsNothing) {
  EXPECT_EQ(BCM6838X_DelVlanAction(Named(BRMGR_DIR_DOWNSTREAM, 0)), 0U);
  EXPECT_THAT(left(), ElementsAre(NamedLogged("ds"), DelCountLogged("-1")));
}

// Required: action-free-slot-hides-index-0
TEST_F(VlanActionTest, Del_DownstreamIndexZero_AFreeSlotHidesTheActionBehindIt) {
  const std::int32_t upstream = BCM6838X_AddVlanAction(PushTag(100), 1);
  const std::int32_t hidden = BCM6838X_AddVlanAction(PushTag(200, BRMGR_DIR_DOWNSTREAM), 1);
  ASSERT_EQ(hidden, 0);
  BCM6838X_DelVlanAction(Named(BRMGR_DIR_UPSTREAM, upstream));
  forget();
  BCM6838X_DelVlanAction(Named(BRMGR_DIR_DOWNSTREAM, hidden));
  EXPECT_THAT(left(), ElementsAre(NamedLogged("ds"), DelCountLogged("-1")));

  // The slot that was met begins anew, and the action is found once the slot is used.
  BCM6838X_AddVlanAction(PushTag(300), 1);
  BCM6838X_AddVlanAction(PushTag(300), 1);
  EXPECT_EQ(left().back(), AddCountLogged("2"));
  forget();
  BCM6838X_DelVlanAction(Named(BRMGR_DIR_DOWNSTREAM, hidden));
  EXPECT_THAT(commands(), ElementsAre(DeleteSent(0, 0)));
}

TEST_F(VlanActionTest, Add_IndexesOfTheDeviceAreKept) {
  // An action made outside the pool takes the device's index 0.
  VlanActionRule direct = {4, {}, BRMGR_DIR_UPSTREAM, kNone};
  ASSERT_EQ(BCM6838X_Ioctl(BRMGR_CMD_VLAN_ACTION_ADD, &direct, sizeof(direct), 1), 0U);
  EXPECT_EQ(BCM6838X_AddVlanAction(PushTag(100), 1), 1);
  EXPECT_EQ(BCM6838X_GetVlanAction(PushTag(100)), 1);
  forget();
  BCM6838X_DelVlanAction(Named(BRMGR_DIR_UPSTREAM, 1));
  EXPECT_THAT(commands(), ElementsAre(DeleteSent(1, 1)));
}

class VlanActionClosedTest : public LibraryTest {};

TEST_F(VlanActionClosedTest, Add_DeviceNotOpen_LogsAndReturnsNoAction) {
  EXPECT_EQ(BCM6838X_AddVlanAction(PushTag(100), 1), -1);
  EXPECT_THAT(left(), ElementsAre(AddLogged("cmd 257 vid[0]=100 vid[1]=0  dir=us"),
                                  kPlace + "Create vlan action error\r\n"));
}

}  // namespace
}  // namespace hal_test
