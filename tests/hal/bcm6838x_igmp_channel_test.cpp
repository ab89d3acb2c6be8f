/// @file
/// Tests of the channel table: slots, the entries sent to the driver, log and console lines, the
/// full table, refusals. The VLAN actions come from the ports' real multicast settings.
#include <array>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include <bcm6838x_igmp.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>

#include "support/console_output.h"
#include "support/library_test.h"
#include "support/refusal.h"
#include "support/wire_record.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using virtual_onu::Bytes;

constexpr std::uint32_t kNone = 0xFFFFFFFF;
constexpr std::uint16_t kNoSlot = 0xFFFF;
constexpr std::uint32_t kSlots = 1024;
const std::string kPlace = " hal/switch/bcm6838x/src/bcm6838x_igmp_channel.cpp ";

McastGroupRequest Group(std::uint32_t portMask, std::uint8_t lastByte = 3) {
  McastGroupRequest request = {};
  request.vlan = 0x0FA1;
  const Bytes mac = {0x01, 0x00, 0x5E, 0x01, 0x02, lastByte};
  const Bytes ipv4 = {239, 1, 2, lastByte};
  std::ranges::copy(mac, request.groupMac);
  std::ranges::copy(ipv4, request.groupIpv4);
  request.portMask = portMask;
  return request;
}

McastGroupRequest Ipv6Group(std::uint32_t portMask, std::uint8_t lastByte) {
  McastGroupRequest request = {};
  request.groupIpv6[0] = 0xFF;
  request.groupIpv6[15] = lastByte;
  request.portMask = portMask;
  return request;
}

/// The entry of Group() for a port.
WireRecord Entry(std::uint32_t port, std::uint32_t portMask, std::uint32_t channelIndex,
                 std::uint32_t vlanActionIndex = kNone) {
  WireRecord record(52);
  record.u32(0, vlanActionIndex).u32(4, channelIndex).u32(8, port).u32(12, portMask);
  record.u16(16, 0x0FA1).bytes(24, Bytes{0x01, 0x00, 0x5E, 0x01, 0x02, 3});
  return record.bytes(30, Bytes{239, 1, 2, 3});
}

std::string AddSent(const WireRecord& entry) {
  return Sent("MCAST_ADD", 1, entry);
}

std::string DelSent(const WireRecord& entry) {
  return Sent("MCAST_DEL", 0, entry);
}

/// "verb" is what the log line begins with; the rest stands for itself.
std::string Logged(const std::string& verb, std::uint32_t port, std::int32_t action,
                   std::uint32_t channelIndex, std::uint32_t slot, std::uint32_t result = 0) {
  return "log 1" + kPlace + verb + " IPTV group[239.1.2.3] Port[" + std::to_string(port) +
         "] vlanActionIndex " + std::to_string(action) + " channelIndex " +
         std::to_string(channelIndex) + "  slot " + std::to_string(slot) +
         " ret=" + std::to_string(result) + "\r\n";
}

std::string ModifyLogged(const std::string& portMask, std::uint32_t result = 0) {
  return "log 1" + kPlace + "Modify IPTV group[239.1.2.3] PortMask[" + portMask +
         "] ret=" + std::to_string(result) + "\r\n";
}

class McastChannelTest : public LibraryTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    ASSERT_EQ(BCM6838X_InitIgmp(), 0U);
    forget();
  }

  static std::uint32_t add(const McastGroupRequest& request) {
    return BCM6838X_AddMulticastMacAddr(&request);
  }
  static std::uint32_t modify(const McastGroupRequest& request) {
    return BCM6838X_ModifyMulticastMacAddr(&request);
  }
  static std::uint32_t del(const McastGroupRequest& request) {
    return BCM6838X_DelMulticastMacAddr(&request);
  }

  static std::uint16_t find(const McastGroupRequest& request, std::uint32_t port) {
    return BCM6838X_FindTargetMcastChanSlot(request.groupIpv4, request.groupIpv6, port);
  }

  /// The ports that have the group, by their slots in the table.
  static std::vector<std::uint32_t> portsOf(const McastGroupRequest& request) {
    std::vector<std::uint32_t> ports;
    for (std::uint32_t port = 1; port <= 32; ++port) {
      if (find(request, port) != kNoSlot) {
        ports.push_back(port);
      }
    }
    return ports;
  }

  /// Uses every slot, each for another group on port 1.
  void fillTable() {
    for (std::uint32_t i = 0; i < kSlots; ++i) {
      McastGroupRequest request = Group(1, static_cast<std::uint8_t>(i));
      request.groupIpv4[2] = static_cast<std::uint8_t>(100 + i / 256);
      ASSERT_EQ(BCM6838X_FindUnuseMcastChanSlot(), i);
      ASSERT_EQ(add(request), 0U);
    }
    ASSERT_EQ(BCM6838X_FindUnuseMcastChanSlot(), kNoSlot);
    forget();
  }

  /// From now on the driver writes an index into the record of every create and refuses it.
  void refuseWithAnIndex() {
    unit.device().onRequest([](const BrmgrRequest& request) -> std::optional<int> {
      if (request.cmd != BRMGR_CMD_MCAST_ADD) {
        return std::nullopt;
      }
      static_cast<McastGroupEntry*>(request.buf)->channelIndex = 99;
      return -1;
    });
  }

  /// Creates a downstream action, so that the next index is not 0.
  static void useUpIndexZero() {
    BCM6838X_SetMulticastVlanMode(4, 0);
    BCM6838X_SetMulticastVlanMode(4, 0);
  }
};

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

TEST_F(McastChannelTest, Modify_TableFull_ProgramsNothing) {
  fillTable();
  EXPECT_EQ(modify(Group(2)), 0U);
  EXPECT_THAT(left(), ElementsAre(ModifyLogged("2")));
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
}  // namespace hal_test
