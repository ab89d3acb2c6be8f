/// @file
/// Tests of the change of a group's ports: which ports come and go, indexes and actions that one
/// port hands to the next, refusals.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bcm6838x_igmp.h>

#include "igmp_channel_fixture.h"
#include "support/console_output.h"
#include "support/refusal.h"

namespace hal_test::igmp_channel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST_F(McastChannelTest, Modify_TableFull_ProgramsNothing) {
  fillTable();
  EXPECT_EQ(modify(Group(2)), 0U);
  EXPECT_THAT(left(), ElementsAre(ModifyLogged("2")));
}

TEST_F(McastChannelTest, Modify_AfterAnAdd_AddsTheOtherPortsOfTheMask) {
  add(Group(6));
  forget();
  EXPECT_EQ(modify(Group(6)), 0U);
  EXPECT_THAT(left(), ElementsAre(AddSent(Entry(3, 6, kNone)), Logged("Add", 3, -1, 1, 1),
                                  ModifyLogged("6")));
  EXPECT_THAT(portsOf(Group(0)), ElementsAre(2, 3));
  forget();
  EXPECT_EQ(modify(Group(6)), 0U);
  EXPECT_THAT(left(), ElementsAre(ModifyLogged("6"))) << "nothing is left to do";
}

TEST_F(McastChannelTest, Modify_MaskZero_RemovesTheGroupFromEveryPort) {
  modify(Group(0xF));
  modify(Group(1, 4));
  forget();
  EXPECT_EQ(modify(Group(0)), 0U);
  EXPECT_THAT(
      left(),
      ElementsAre(DelSent(Entry(1, 0, 0)), Logged("del", 1, -1, 0, 0), DelSent(Entry(2, 0, 1)),
                  Logged("del", 2, -1, 1, 1), DelSent(Entry(3, 0, 2)), Logged("del", 3, -1, 2, 2),
                  DelSent(Entry(4, 0, 3)), Logged("del", 4, -1, 3, 3), ModifyLogged("0")));
  EXPECT_THAT(portsOf(Group(0)), IsEmpty());
  EXPECT_THAT(portsOf(Group(0, 4)), ElementsAre(1)) << "another group";
}

TEST_F(McastChannelTest, Modify_Ipv6Group_TouchesItsSlotsAlone) {
  modify(Ipv6Group(3, 7));
  modify(Ipv6Group(1, 8));
  forget();
  EXPECT_EQ(modify(Ipv6Group(6, 7)), 0U);
  EXPECT_THAT(commands(), SizeIs(2)) << "one port leaves, one comes";
  EXPECT_THAT(portsOf(Ipv6Group(0, 7)), ElementsAre(2, 3));
  EXPECT_THAT(portsOf(Ipv6Group(0, 8)), ElementsAre(1));
  EXPECT_EQ(logLines().back(),
            "log 1" + kPlace + "Modify IPTV group[0.0.0.0] PortMask[6] ret=0\r\n");
}

TEST_F(McastChannelTest, Modify_IndexOfACreate_GoesIntoItsSlotAlone) {
  EXPECT_EQ(modify(Group(0xB)), 0U);
  EXPECT_THAT(left(), ElementsAre(AddSent(Entry(1, 0xB, kNone)), Logged("Add", 1, -1, 0, 0),
                                  AddSent(Entry(2, 0xB, kNone)), Logged("Add", 2, -1, 1, 1),
                                  AddSent(Entry(4, 0xB, kNone)), Logged("Add", 4, -1, 2, 2),
                                  ModifyLogged("11")));
  forget();
  modify(Group(0));
  EXPECT_THAT(commands(), ElementsAre(DelSent(Entry(1, 0, 0)), DelSent(Entry(2, 0, 1)),
                                      DelSent(Entry(4, 0, 2))));
}

// Required: group-modify-keeps-deleted-index
TEST_F(McastChannelTest, Modify_IndexOfADelete_IsSentWithEveryCreateAfterIt) {
  add(Group(1, 4));
  add(Group(1));
  del(Group(1, 4));
  forget();
  EXPECT_EQ(modify(Group(0xE)), 0U);
  // Port 1 is deleted with its own 1, which the others send, whatever index the driver returns.
  EXPECT_THAT(
      left(),
      ElementsAre(DelSent(Entry(1, 0xE, 1)), Logged("del", 1, -1, 1, 1), AddSent(Entry(2, 0xE, 1)),
                  Logged("Add", 2, -1, 0, 0), AddSent(Entry(3, 0xE, 1)), Logged("Add", 3, -1, 1, 1),
                  AddSent(Entry(4, 0xE, 1)), Logged("Add", 4, -1, 2, 2), ModifyLogged("14")));
}

// Required: group-modify-inherits-action
TEST_F(McastChannelTest, Modify_PortWithoutAMatchingRule_InheritsThePreviousAction) {
  BCM6838X_SetMulticastVlanMode(1, 0);
  BCM6838X_SetMulticastVlanMode(2, 2);
  BCM6838X_SetMulticastVlanMode(4, 2);
  BCM6838X_AddMulticastVlanTrans(4, 0x0FA1, 60);
  forget();
  EXPECT_EQ(modify(Group(0xF)), 0U);
  EXPECT_THAT(commands(),
              ElementsAre(AddSent(Entry(1, 0xF, kNone, 0)), AddSent(Entry(2, 0xF, kNone, 0)),
                          AddSent(Entry(3, 0xF, kNone, kNone)), AddSent(Entry(4, 0xF, kNone, 1))));
}

// Required: refused-group-takes-slot, group-modify-silent-on-console
TEST_F(McastChannelTest, Modify_DriverRefuses_IsSilentOnTheConsoleAndFillsTheSlot) {
  unit.device().faults().refuseFrom(1);
  EXPECT_EQ(Console([] { EXPECT_EQ(modify(Group(2)), 8U); }), "");
  EXPECT_THAT(left(), ElementsAre(AddSent(Entry(2, 2, kNone)), RefusalLogged(25),
                                  Logged("Add", 2, -1, kNone, 0, 8), ModifyLogged("2", 8)));
  EXPECT_THAT(portsOf(Group(0)), ElementsAre(2));
}

TEST_F(McastChannelTest, Modify_ReturnsTheResultOfTheLastCreate) {
  unit.device().faults().refuseNth(1);
  EXPECT_EQ(modify(Group(3)), 0U) << "port 1 refused, port 2 created";
  modify(Group(0));
  unit.device().faults().clear();
  unit.device().faults().refuseNth(2);
  EXPECT_EQ(modify(Group(3)), 8U) << "port 1 created, port 2 refused";
  forget();
  unit.device().faults().clear();
  unit.device().faults().refuseFrom(1);
  EXPECT_EQ(modify(Group(0)), 0U) << "the results of deletes do not count";
  EXPECT_EQ(left().back(), ModifyLogged("0"));
  EXPECT_THAT(portsOf(Group(0)), IsEmpty());
}

TEST_F(McastChannelTest, Modify_RefusedAfterACreate_DeletesNoOtherPortsEntryLater) {
  unit.device().faults().refuseNth(2);
  EXPECT_EQ(modify(Group(3)), 8U);
  EXPECT_EQ(logLines().at(2), Logged("Add", 2, -1, kNone, 1, 8));
  forget();
  EXPECT_EQ(modify(Group(1)), 0U);
  EXPECT_THAT(left(), ElementsAre(DelSent(Entry(2, 1, kNone)), RefusalLogged(26),
                                  Logged("del", 2, -1, kNone, 1), ModifyLogged("1")));
  ASSERT_THAT(unit.device().mcastGroups(), SizeIs(1)) << "the entry of port 1";
}

TEST_F(McastChannelTest, Modify_RefusedAfterADelete_LeavesNoIndexInTheSlot) {
  add(Group(1));
  unit.device().faults().refuseNth(2);
  forget();
  EXPECT_EQ(modify(Group(2)), 8U);
  EXPECT_THAT(left(), ElementsAre(DelSent(Entry(1, 2, 0)), Logged("del", 1, -1, 0, 0),
                                  AddSent(Entry(2, 2, 0)), RefusalLogged(25),
                                  Logged("Add", 2, -1, kNone, 0, 8), ModifyLogged("2", 8)));
  forget();
  del(Group(2));
  EXPECT_THAT(commands(), ElementsAre(DelSent(Entry(2, 2, kNone))));
}

TEST_F(McastChannelTest, Modify_EachCommandFailingInTurn_TheTableFollowsTheMask) {
  std::uint32_t rounds = 0;
  for (std::uint32_t nth = 1; nth <= 4; ++nth, ++rounds) {
    unit.device().faults().clear();
    modify(Group(0));
    modify(Group(3));
    unit.device().faults().refuseNth(nth);
    forget();
    modify(Group(0xC));
    EXPECT_THAT(commands(), SizeIs(4)) << nth;
    EXPECT_THAT(portsOf(Group(0)), ElementsAre(3, 4)) << nth;
    unit.device().faults().clear();
    EXPECT_EQ(add(Group(1, 9)), 0U) << "the next operation works";
    EXPECT_EQ(del(Group(1, 9)), 0U);
  }
  EXPECT_EQ(rounds, 4U);
}

}  // namespace
}  // namespace hal_test::igmp_channel
