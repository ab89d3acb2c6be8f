/// @file
/// Tests of the channel table: slots, the entries sent to the driver, log and console lines, the
/// full table, refusals. The VLAN actions come from the ports' real multicast settings.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bcm6838x_igmp.h>
#include <hal_bcm6838x.h>

#include "igmp_channel_fixture.h"
#include "support/console_output.h"
#include "support/refusal.h"

namespace hal_test::igmp_channel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST_F(McastChannelTest, FindUnuse_GivesTheFirstFreeSlot) {
  EXPECT_EQ(BCM6838X_FindUnuseMcastChanSlot(), 0);
  add(Group(1));
  EXPECT_EQ(BCM6838X_FindUnuseMcastChanSlot(), 1);
  add(Group(2));
  del(Group(1));
  EXPECT_EQ(BCM6838X_FindUnuseMcastChanSlot(), 0);
}

TEST_F(McastChannelTest, FindTarget_NeedsPortAndIpv4Address) {
  add(Group(1));
  add(Group(2));
  EXPECT_EQ(find(Group(0), 1), 0);
  EXPECT_EQ(find(Group(0), 2), 1);
  EXPECT_EQ(find(Group(0), 0x102), 1) << "the low 8 bits";
  EXPECT_EQ(find(Group(0), 3), kNoSlot);
  EXPECT_EQ(find(Group(0, 4), 1), kNoSlot);
}

// Required: group-compares-one-family
TEST_F(McastChannelTest, FindTarget_Ipv4GroupsThatDifferInIpv6Only_AreTheSame) {
  add(Group(1));
  McastGroupRequest other = Group(0);
  other.groupIpv6[15] = 9;
  EXPECT_EQ(find(other, 1), 0);
}

TEST_F(McastChannelTest, FindTarget_WithoutIpv4_ComparesAllOfIpv6) {
  add(Ipv6Group(1, 7));
  EXPECT_EQ(find(Ipv6Group(0, 7), 1), 0);
  EXPECT_EQ(find(Ipv6Group(0, 8), 1), kNoSlot);
  McastGroupRequest other = Ipv6Group(0, 7);
  other.groupIpv6[0] = 0xFE;
  EXPECT_EQ(find(other, 1), kNoSlot);
  for (std::size_t byte = 0; byte < 4; ++byte) {
    McastGroupRequest ipv4 = Ipv6Group(0, 7);
    ipv4.groupIpv4[byte] = 1;
    EXPECT_EQ(find(ipv4, 1), kNoSlot) << "an IPv4 group, by byte " << byte;
  }
}

// Required: group-search-ignores-in-use
TEST_F(McastChannelTest, FindTarget_DoesNotLookAtTheInUseFlag) {
  EXPECT_EQ(find(McastGroupRequest{}, 0), 0) << "a free slot has port 0 and no addresses";
}

TEST_F(McastChannelTest, FindTarget_NullAddress_FindsNothing) {
  add(Group(1));
  forget();
  const McastGroupRequest request = Group(0);
  EXPECT_EQ(BCM6838X_FindTargetMcastChanSlot(nullptr, request.groupIpv6, 1), kNoSlot);
  EXPECT_EQ(BCM6838X_FindTargetMcastChanSlot(request.groupIpv4, nullptr, 1), kNoSlot);
  EXPECT_THAT(left(), IsEmpty());
}

// Required: group-add-takes-first-port
TEST_F(McastChannelTest, Add_ProgramsTheFirstPortOfTheMaskAlone) {
  EXPECT_EQ(Console([] { EXPECT_EQ(add(Group(6)), 0U); }), "");
  EXPECT_THAT(left(), ElementsAre(AddSent(Entry(2, 6, kNone)), Logged("Add", 2, -1, 0, 0)));
  EXPECT_THAT(portsOf(Group(0)), ElementsAre(2));
  ASSERT_THAT(unit.device().mcastGroups(), SizeIs(1));
}

TEST_F(McastChannelTest, Add_EveryFieldOfTheRequestIsSent) {
  McastGroupRequest request = Group(0x80000008);
  const Bytes ipv6 = {0xFF, 0x0E, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
  std::ranges::copy(ipv6, request.groupIpv6);
  add(request);
  EXPECT_THAT(commands(), ElementsAre(AddSent(Entry(4, 0x80000008, kNone).bytes(34, ipv6))));
}

TEST_F(McastChannelTest, Add_Ipv6Group_IsFoundByItsAddress) {
  EXPECT_EQ(add(Ipv6Group(2, 7)), 0U);
  EXPECT_THAT(logLines(), ElementsAre("log 1" + kPlace +
                                      "Add IPTV group[0.0.0.0] Port[2] vlanActionIndex -1 "
                                      "channelIndex 0  slot 0 ret=0\r\n"));
  EXPECT_THAT(portsOf(Ipv6Group(0, 7)), ElementsAre(2));
  EXPECT_EQ(del(Ipv6Group(2, 7)), 0U);
  EXPECT_THAT(unit.device().mcastGroups(), IsEmpty());
}

TEST_F(McastChannelTest, Add_NoEthernetPortInTheMask_OnlyLogs) {
  for (const std::uint32_t mask : {0U, 0x10U, 0xFFFFFFF0U}) {
    forget();
    EXPECT_EQ(add(Group(mask)), 0U);
    EXPECT_THAT(left(), ElementsAre(Logged("Add", 0, -1, kNone, kNone)));
  }
  EXPECT_EQ(BCM6838X_FindUnuseMcastChanSlot(), 0);
}

// Required: group-add-twice-takes-two-slots
TEST_F(McastChannelTest, Add_TheSameTwice_TakesTwoSlots) {
  add(Group(1));
  add(Group(1));
  EXPECT_THAT(commands(), ElementsAre(AddSent(Entry(1, 1, kNone)), AddSent(Entry(1, 1, kNone))));
  EXPECT_EQ(BCM6838X_FindUnuseMcastChanSlot(), 2);
}

// Required: group-add-twice-takes-two-slots
TEST_F(McastChannelTest, TheSameTwice_IsRemovedSlotBySlot) {
  add(Group(1));
  add(Group(1));
  add(Group(1));
  forget();
  EXPECT_EQ(del(Group(1)), 0U);
  EXPECT_THAT(commands(), ElementsAre(DelSent(Entry(1, 1, 0))));
  EXPECT_EQ(find(Group(0), 1), 1);
  forget();
  EXPECT_EQ(modify(Group(0)), 0U);
  EXPECT_THAT(commands(), ElementsAre(DelSent(Entry(1, 0, 1))));
  EXPECT_EQ(find(Group(0), 1), 2);
}

TEST_F(McastChannelTest, Add_TableFull_ProgramsNothing) {
  fillTable();
  EXPECT_EQ(Console([] { EXPECT_EQ(add(Group(2)), 0U); }), "");
  EXPECT_THAT(left(), ElementsAre(Logged("Add", 0, -1, kNone, kNone)));
  EXPECT_THAT(portsOf(Group(0)), IsEmpty());
}

TEST_F(McastChannelTest, TableFull_AFreedSlotIsTakenAgain) {
  fillTable();
  McastGroupRequest old = Group(1, 44);
  old.groupIpv4[2] = 102;
  del(old);
  EXPECT_EQ(BCM6838X_FindUnuseMcastChanSlot(), 2 * 256 + 44);
  forget();
  EXPECT_EQ(modify(Group(6)), 0U);
  EXPECT_THAT(commands(), SizeIs(1)) << "room for one port only";
  EXPECT_THAT(portsOf(Group(0)), ElementsAre(2));
}

// Required: refused-group-takes-slot
TEST_F(McastChannelTest, Add_DriverRefuses_TellsTheConsoleAndUsesTheSlot) {
  unit.device().faults().refuseNth(1);
  EXPECT_EQ(Console([] { EXPECT_EQ(add(Group(4)), 8U); }),
            "BCM6838X_AddMulticastMacAddr(<line>) create igmp entry failed for port=3 \r\n");
  EXPECT_THAT(left(), ElementsAre(AddSent(Entry(3, 4, kNone)), RefusalLogged(25),
                                  Logged("Add", 3, -1, kNone, 0, 8)));
  EXPECT_EQ(BCM6838X_FindUnuseMcastChanSlot(), 1);

  // A later delete sends the index that stands for none, and frees the slot.
  forget();
  EXPECT_EQ(del(Group(4)), 0U);
  EXPECT_THAT(left(), ElementsAre(DelSent(Entry(3, 4, kNone)), RefusalLogged(26),
                                  Logged("del", 3, -1, kNone, 0)));
  EXPECT_EQ(BCM6838X_FindUnuseMcastChanSlot(), 0);
}

TEST_F(McastChannelTest, Action_ModeThatStripsTheTag_UsesThePortsStripAction) {
  useUpIndexZero();
  BCM6838X_SetMulticastVlanMode(2, 0);
  forget();
  add(Group(2));
  EXPECT_THAT(left(), ElementsAre(AddSent(Entry(2, 2, kNone, 2)), Logged("Add", 2, 2, 0, 0)));
}

TEST_F(McastChannelTest, Action_ModeThatKeepsTheTag_UsesNone) {
  BCM6838X_SetMulticastVlanMode(2, 0);
  BCM6838X_SetMulticastVlanMode(2, 1);
  forget();
  add(Group(2));
  EXPECT_THAT(commands(), ElementsAre(AddSent(Entry(2, 2, kNone, kNone))));
}

TEST_F(McastChannelTest, Action_OtherModes_DoNotLookAtTheRules) {
  useUpIndexZero();
  BCM6838X_AddMulticastVlanTrans(2, 0x0FA1, 61);
  for (const std::uint32_t mode : {1U, 3U, 0xFFFFU}) {
    BCM6838X_SetMulticastVlanMode(2, mode);
    forget();
    add(Group(2));
    EXPECT_THAT(commands(), ElementsAre(AddSent(Entry(2, 2, kNone, kNone)))) << mode;
  }
  BCM6838X_SetMulticastVlanMode(2, 0);
  forget();
  add(Group(2));
  EXPECT_THAT(commands(), ElementsAre(AddSent(Entry(2, 2, kNone, 3)))) << "the strip action";
}

TEST_F(McastChannelTest, Action_RuleWhoseActionWasRefused_IsNone) {
  BCM6838X_SetMulticastVlanMode(1, 0);
  BCM6838X_SetMulticastVlanMode(2, 2);
  unit.device().faults().refuseNth(1);
  BCM6838X_AddMulticastVlanTrans(2, 0x0FA1, 61);
  forget();
  EXPECT_EQ(modify(Group(3)), 0U);
  EXPECT_THAT(commands(),
              ElementsAre(AddSent(Entry(1, 3, kNone, 0)), AddSent(Entry(2, 3, kNone, kNone))))
      << "the rule is there, so that nothing is inherited";
}

TEST_F(McastChannelTest, Action_TranslationMode_UsesTheFirstMatchingRule) {
  BCM6838X_SetMulticastVlanMode(2, 2);
  BCM6838X_AddMulticastVlanTrans(2, 50, 60);
  BCM6838X_AddMulticastVlanTrans(2, 0x0FA1, 61);
  BCM6838X_AddMulticastVlanTrans(2, 0x0FA1, 62);
  forget();
  add(Group(2));
  EXPECT_THAT(commands(), ElementsAre(AddSent(Entry(2, 2, kNone, 1))));
}

TEST_F(McastChannelTest, Action_TranslationModeWithoutAMatchingRule_IsNone) {
  BCM6838X_SetMulticastVlanMode(2, 2);
  BCM6838X_AddMulticastVlanTrans(2, 50, 60);
  BCM6838X_AddMulticastVlanTrans(3, 0x0FA1, 61);
  forget();
  add(Group(2));
  McastGroupRequest noVlan = Group(2, 9);
  noVlan.vlan = 0xFFFF;
  add(noVlan);
  EXPECT_EQ(commands().front(), AddSent(Entry(2, 2, kNone, kNone)));
  EXPECT_EQ(logLines().back(), "log 1" + kPlace +
                                   "Add IPTV group[239.1.2.9] Port[2] vlanActionIndex -1 "
                                   "channelIndex 1  slot 1 ret=0\r\n")
      << "a free rule is no rule of VLAN 65535";
}

TEST_F(McastChannelTest, Del_RemovesTheFirstPortOfTheMaskThatHasTheGroup) {
  modify(Group(0xE));
  forget();
  EXPECT_EQ(del(Group(0xD)), 0U);
  EXPECT_THAT(left(), ElementsAre(DelSent(Entry(3, 0xD, 1)), Logged("del", 3, -1, 1, 1)));
  EXPECT_THAT(portsOf(Group(0)), ElementsAre(2, 4));
  EXPECT_THAT(unit.device().mcastGroups(), SizeIs(2));
}

TEST_F(McastChannelTest, Del_ChoosesTheActionAnew) {
  add(Group(2));
  BCM6838X_SetMulticastVlanMode(2, 0);
  forget();
  del(Group(2));
  EXPECT_THAT(left(), ElementsAre(DelSent(Entry(2, 2, 0, 0)), Logged("del", 2, 0, 0, 0)));
}

TEST_F(McastChannelTest, Del_NoSuchGroupOrPort_OnlyLogs) {
  add(Group(2));
  for (const std::uint32_t mask : {0U, 1U, 0xFFFFFFFDU}) {
    forget();
    EXPECT_EQ(del(Group(mask)), 0U);
    EXPECT_THAT(left(), ElementsAre(Logged("del", 0, -1, kNone, kNone)));
  }
  EXPECT_EQ(del(Group(2, 4)), 0U);
  EXPECT_THAT(portsOf(Group(0)), ElementsAre(2));
}

TEST_F(McastChannelTest, Del_ClearsTheWholeSlot) {
  add(Ipv6Group(1, 7));
  del(Ipv6Group(1, 7));
  EXPECT_EQ(find(Ipv6Group(0, 7), 1), kNoSlot);
  EXPECT_EQ(find(Ipv6Group(0, 7), 0), kNoSlot) << "the address is gone too";
  EXPECT_EQ(find(McastGroupRequest{}, 0), 0);
}

// Required: group-refused-delete-frees-slot
TEST_F(McastChannelTest, Del_DriverRefuses_FreesTheSlotAllTheSame) {
  add(Group(2));
  forget();
  unit.device().faults().refuseNth(1);
  EXPECT_EQ(Console([] { EXPECT_EQ(del(Group(2)), 0U); }), "");
  EXPECT_THAT(left(),
              ElementsAre(DelSent(Entry(2, 2, 0)), RefusalLogged(26), Logged("del", 2, -1, 0, 0)));
  EXPECT_THAT(portsOf(Group(0)), IsEmpty());
}

TEST_F(McastChannelTest, AddAndModify_IndexOfARefusingDriver_IsNotKept) {
  refuseWithAnIndex();
  Console([] { EXPECT_EQ(add(Group(1)), 8U); });
  EXPECT_EQ(logLines().back(), Logged("Add", 1, -1, kNone, 0, 8));
  EXPECT_EQ(modify(Group(3)), 8U);
  EXPECT_EQ(logLines().at(3), Logged("Add", 2, -1, kNone, 1, 8));
  forget();
  modify(Group(0));
  EXPECT_THAT(commands(), ElementsAre(DelSent(Entry(1, 0, kNone)), DelSent(Entry(2, 0, kNone))));
}

TEST_F(McastChannelTest, MorePortsThanTheTableHas_TheLastIsThirtyTwo) {
  unit.platform().config().ethPorts = 200;
  EXPECT_EQ(modify(Group(0xFFFFFFFF)), 8U) << "the chip has four ports";
  EXPECT_THAT(commands(), SizeIs(32));
  EXPECT_EQ(left().back(), ModifyLogged("-1", 8));
  EXPECT_EQ(portsOf(Group(0)).size(), 32U);
  forget();
  EXPECT_EQ(del(Group(0x80000000)), 0U);
  EXPECT_THAT(commands(), SizeIs(1));
  EXPECT_EQ(portsOf(Group(0)).size(), 31U);
  EXPECT_EQ(Console([] { EXPECT_EQ(add(Group(0x80000000)), 8U); }),
            "BCM6838X_AddMulticastMacAddr(<line>) create igmp entry failed for port=32 \r\n");
}

TEST_F(McastChannelTest, NoPort_NothingIsProgrammed) {
  unit.platform().config().ethPorts = 0;
  EXPECT_EQ(add(Group(0xF)), 0U);
  EXPECT_EQ(modify(Group(0xF)), 0U);
  EXPECT_EQ(del(Group(0xF)), 0U);
  EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(McastChannelTest, Null_ReturnsTwoWithoutALine) {
  EXPECT_EQ(BCM6838X_AddMulticastMacAddr(nullptr), 2U);
  EXPECT_EQ(BCM6838X_ModifyMulticastMacAddr(nullptr), 2U);
  EXPECT_EQ(BCM6838X_DelMulticastMacAddr(nullptr), 2U);
  EXPECT_THAT(left(), IsEmpty());
}

class McastChannelClosedTest : public McastChannelTest {
 protected:
  void SetUp() override { ASSERT_EQ(BCM6838X_InitIgmp(), 0U); }
};

TEST_F(McastChannelClosedTest, DeviceNotOpen_TheResultSaysSoAndTheSlotsAreUsed) {
  EXPECT_EQ(Console([] { EXPECT_EQ(add(Group(2)), 10U); }),
            "BCM6838X_AddMulticastMacAddr(<line>) create igmp entry failed for port=2 \r\n");
  EXPECT_EQ(logLines().back(), Logged("Add", 2, -1, kNone, 0, 10));
  EXPECT_EQ(modify(Group(6)), 10U);
  EXPECT_THAT(portsOf(Group(0)), ElementsAre(2, 3));
  EXPECT_EQ(modify(Group(0)), 0U);
  EXPECT_THAT(portsOf(Group(0)), IsEmpty());
  EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(McastChannelTest, InitIgmp_FreesEverySlot) {
  fillTable();
  EXPECT_EQ(BCM6838X_InitIgmp(), 0U);
  EXPECT_THAT(left(), IsEmpty());
  EXPECT_EQ(BCM6838X_FindUnuseMcastChanSlot(), 0);
  EXPECT_EQ(find(McastGroupRequest{}, 1), kNoSlot);
}

}  // namespace
}  // namespace hal_test::igmp_channel
