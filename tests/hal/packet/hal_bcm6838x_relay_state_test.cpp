/// @file
/// Tests of the relays and of their trap switches. The ports' modes are set in the table of the
/// configuration.
#include <cstdint>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <bcm6838x_vlan_port.h>
#include <hal_bcm6838x.h>

#include "packet_bytes.h"
#include "support/library_tables.h"
#include "support/library_test.h"
#include "support/wire_record.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kFile = "hal/switch/bcm6838x/src/hal_bcm6838x_relay.cpp ";

/// What the two relays differ in.
struct Relay {
  std::string name;
  std::uint32_t (*handle)(const BrmgrEvent* event);
  std::uint32_t (*setTrap)(std::uint32_t enable);
  std::uint8_t* status;
  FrameDraft frame;
  FrameDraft foreign;
  std::string transmit;
  std::string trap;
  std::string client;
  std::string operation;
  std::string protocol;
};

std::vector<Relay> Relays() {
  return {{"DHCP", BCM6838X_DhcpRelayHandle, BCM6838X_SetDhcpTrapEnable, &g_dhcpRelayStatus,
           DhcpFrame(), PppoeFrame(), "SEND_DHCP", "DHCP_TRAP", "DHCPRELAY_HandlePacket",
           "BCM6838X_DhcpRelayHandle", "dhcp"},
          {"PPPoE", BCM6838X_PPPoERelayHandle, BCM6838X_SetPPPoETrapEnable, &g_pppoeRelayStatus,
           PppoeFrame(), DhcpFrame(), "SEND_PPPOE", "PPPOE_TRAP", "PPPOERELAY_HandlePacket",
           "BCM6838X_PPPoERelayHandle", "ppoe"}};
}

Bytes WithTag(Bytes frame, const Bytes& tag) {
  frame.insert(frame.begin() + 12, tag.begin(), tag.end());
  return frame;
}

const Bytes kOwnTag = {0x81, 0x00, 0x60, 0x64};

class RelayTest : public LibraryTest, public testing::WithParamInterface<std::size_t> {
 protected:
  void SetUp() override {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    g_PortVlanInfo[1].pvid = 100;
    g_PortVlanInfo[1].priority = 3;
    forget();
  }

  /// Hands an event to the relay, in memory that ends where unreadable memory begins.
  std::uint32_t handle(const Bytes& frame, std::uint32_t port = 2,
                       std::uint32_t length = 0xFFFFFFFF) const {
    const EventDraft event = {
        .type = 6, .port = port, .frame = frame, .frameOffset = 22, .length = length};
    const GuardedBytes guarded(event.bytes());
    return relay_.handle(static_cast<const BrmgrEvent*>(static_cast<const void*>(guarded.data())));
  }

  [[nodiscard]] std::string sent(std::uint32_t port, const Bytes& frame) const {
    return Sent(relay_.transmit, 0,
                WireRecord(8 + frame.size())
                    .u32(0, port)
                    .u32(4, static_cast<std::uint32_t>(frame.size()))
                    .bytes(8, frame));
  }

  [[nodiscard]] std::string handed(const Bytes& frame, std::uint32_t vid,
                                   std::uint32_t port) const {
    return "call " + relay_.client + "(" + virtual_onu::ToHex(frame) + ", vid " +
           std::to_string(vid) + ", port " + std::to_string(port) + ")";
  }

  [[nodiscard]] std::string received(std::uint32_t port, std::uint32_t vid) const {
    return "log 1 " + kFile + "[" + relay_.operation + ":<line>] receive " + relay_.protocol +
           " pkts from port " + std::to_string(port) + " VLAN " + std::to_string(vid) + "\r\n";
  }

  Relay relay_ = Relays().at(GetParam());
};

TEST_P(RelayTest, Off_PutsTheFrameBack) {
  const Bytes frame = relay_.frame.bytes();
  EXPECT_EQ(handle(frame, 4), 0U);
  EXPECT_THAT(left(), ElementsAre(sent(4, frame)));
}

TEST_P(RelayTest, Off_TagMode_PutsTheFrameBackTagged) {
  g_PortVlanInfo[1].vlanMode = BCM6838X_VLAN_MODE_TAG;
  const Bytes frame = relay_.frame.bytes();
  EXPECT_EQ(handle(frame), 0U);
  EXPECT_THAT(left(), ElementsAre(sent(2, WithTag(frame, kOwnTag))));
}

// Required: relay-off-succeeds
TEST_P(RelayTest, Off_ReturnsZeroWhateverTheTransmitGives) {
  unit.device().faults().refuseFrom(1);
  EXPECT_EQ(handle(relay_.frame.bytes()), 0U);
  EXPECT_EQ(commands().size(), 1U);
  EXPECT_EQ(logLines().size(), 1U);
}

// Required: log-ppoe
TEST_P(RelayTest, On_HandsTheFrameToTheClient) {
  relay_.setTrap(1);
  forget();
  const Bytes frame = relay_.frame.bytes();
  EXPECT_EQ(handle(frame, 4), 0U);
  EXPECT_THAT(left(), ElementsAre(received(4, 0), handed(frame, 0, 4)));
}

TEST_P(RelayTest, On_ReturnsTheClientsResult) {
  relay_.setTrap(1);
  for (const std::uint32_t result : {1U, 7U, 0xFFFFFFFFU}) {
    unit.platform().config().clientResult = result;
    EXPECT_EQ(handle(relay_.frame.bytes()), result);
  }
}

TEST_P(RelayTest, On_TheRuleAppliesFirst) {
  relay_.setTrap(1);
  g_PortVlanInfo[1].vlanMode = BCM6838X_VLAN_MODE_TAG;
  forget();
  const Bytes frame = relay_.frame.bytes();
  EXPECT_EQ(handle(frame), 0U);
  EXPECT_THAT(left(), ElementsAre(received(2, 100), handed(WithTag(frame, kOwnTag), 100, 2)));
}

// Required: client-told-inner-vid
TEST_P(RelayTest, On_TheVidIsThatOfTheOuterCustomerTag) {
  relay_.setTrap(1);
  const Bytes frame = relay_.frame.bytes();
  const Bytes tagged = WithTag(WithTag(frame, {0x81, 0x00, 0x20, 0x07}), {0x81, 0x00, 0xFF, 0xFF});
  forget();
  EXPECT_EQ(handle(tagged), 0U);
  EXPECT_THAT(left(), ElementsAre(received(2, 4095), handed(tagged, 4095, 2)));
}

TEST_P(RelayTest, OnlyItsOwnSwitchCounts) {
  for (const Relay& other : Relays()) {
    if (other.name != relay_.name) {
      other.setTrap(1);
    }
  }
  forget();
  EXPECT_EQ(handle(relay_.frame.bytes()), 0U);
  EXPECT_THAT(left(), ElementsAre(sent(2, relay_.frame.bytes())));
}

// Required: relay-on-at-1-alone
TEST_P(RelayTest, OnlyTheStatusOneIsOn) {
  for (const int status : {0, 2, 255}) {
    *relay_.status = static_cast<std::uint8_t>(status);
    forget();
    handle(relay_.frame.bytes());
    EXPECT_THAT(left(), ElementsAre(sent(2, relay_.frame.bytes()))) << status;
  }
}

TEST_P(RelayTest, Drop_OfTheRule_IsLogged) {
  const std::string line = "log 1 " + kFile + "Deal with vlan failed!\r\n";
  g_PortVlanInfo[1].vlanMode = BCM6838X_VLAN_MODE_TAG;
  EXPECT_EQ(handle(WithTag(relay_.frame.bytes(), kOwnTag)), 1U);
  EXPECT_THAT(left(), ElementsAre(line));
  forget();
  EXPECT_EQ(handle(relay_.frame.bytes(), 5), 1U) << "the unit has four ports";
  EXPECT_THAT(left(), ElementsAre(line));
  forget();
  EXPECT_EQ(handle(relay_.frame.bytes(), 0), 1U);
  EXPECT_THAT(left(), ElementsAre(testing::StartsWith("log 4 "), line)) << "no record for port 0";
}

TEST_P(RelayTest, ThePort_ItsLowByteHasTheRule) {
  g_PortVlanInfo[1].vlanMode = BCM6838X_VLAN_MODE_TAG;
  const Bytes frame = relay_.frame.bytes();
  EXPECT_EQ(handle(frame, 0x01020302), 0U);
  EXPECT_THAT(left(), ElementsAre(sent(0x01020302, WithTag(frame, kOwnTag))));
}

// Required: log-relays-say-dhcp
TEST_P(RelayTest, OtherProtocols_AreRefusedWithOneTextForBoth) {
  const std::string line = "log 1 " + kFile + "Packet is not dhcp pkts!\r\n";
  for (const Bytes& frame :
       {relay_.foreign.bytes(), IgmpFrame().bytes(), MldFrame(), Bytes(60), Bytes()}) {
    forget();
    EXPECT_EQ(handle(frame), 1U);
    EXPECT_THAT(left(), ElementsAre(line));
  }
}

// Required: event-frame-at-22
TEST_P(RelayTest, TheFrameBeginsTwoBytesBehindTheDataField) {
  const EventDraft event = {.type = 6, .port = 2, .frame = relay_.frame.bytes(), .frameOffset = 20};
  const GuardedBytes guarded(event.bytes());
  EXPECT_EQ(relay_.handle(static_cast<const BrmgrEvent*>(static_cast<const void*>(guarded.data()))),
            1U);
  EXPECT_THAT(left(), ElementsAre("log 1 " + kFile + "Packet is not dhcp pkts!\r\n"));
}

TEST_P(RelayTest, Lengths_UpTo1700AreTaken) {
  for (const std::size_t size : {1699U, 1700U}) {
    relay_.frame.size = size;
    forget();
    EXPECT_EQ(handle(relay_.frame.bytes()), 0U);
    EXPECT_THAT(left(), ElementsAre(sent(2, relay_.frame.bytes()))) << size;
  }
}

TEST_P(RelayTest, Lengths_LongerOnes_AreRefusedBeforeAnythingIsCopied) {
  relay_.frame.size = 2046;
  for (const std::uint32_t length : {1701U, 2046U, 2048U, 0x80000000U, 0xFFFFFFFEU}) {
    forget();
    EXPECT_EQ(handle(relay_.frame.bytes(), 2, length), 1U);
    EXPECT_THAT(left(), ElementsAre("log 1 " + kFile + "Packet is too long!\r\n")) << length;
  }
}

TEST_P(RelayTest, Lengths_FieldsBehindTheEnd_DoNotCount) {
  const Bytes frame = relay_.frame.bytes();
  const std::uint32_t needed = relay_.name == "DHCP" ? 38 : 14;
  EXPECT_EQ(handle(frame, 2, needed - 1), 1U);
  EXPECT_THAT(commands(), IsEmpty());
  EXPECT_EQ(handle(frame, 2, needed), 0U);
  EXPECT_EQ(commands().size(), 1U);
}

TEST_P(RelayTest, Lengths_AFrameThatItsTagMakesTooLong_IsRefusedByTheTransmit) {
  g_PortVlanInfo[1].vlanMode = BCM6838X_VLAN_MODE_TAG;
  relay_.frame.size = 1696;
  EXPECT_EQ(handle(relay_.frame.bytes()), 0U);
  EXPECT_THAT(left(), ElementsAre(sent(2, WithTag(relay_.frame.bytes(), kOwnTag))));
  for (const std::size_t size : {1697U, 1700U}) {
    relay_.frame.size = size;
    forget();
    EXPECT_EQ(handle(relay_.frame.bytes()), 0U);
    EXPECT_THAT(left(),
                ElementsAre(testing::HasSubstr("( desPort=2,  length=" + std::to_string(size + 4) +
                                               ") params error.\r\n")));
  }
  relay_.setTrap(1);
  forget();
  EXPECT_EQ(handle(relay_.frame.bytes()), 0U);
  EXPECT_THAT(left(), ElementsAre(received(2, 100),
                                  handed(WithTag(relay_.frame.bytes(), kOwnTag), 100, 2)));
}

TEST_P(RelayTest, NullEvent_IsLogged) {
  EXPECT_EQ(relay_.handle(nullptr), 1U);
  EXPECT_THAT(left(), ElementsAre("log 4 " + kFile + "Invalid parameter!\r\n"));
}

// Required: trap-index-from-0
TEST_P(RelayTest, SetTrap_TellsEveryPortFromIndexZero) {
  std::vector<std::string> expected;
  for (std::uint32_t index = 0; index < 4; ++index) {
    expected.push_back(Sent(relay_.trap, 0, WireRecord(8).u32(0, index).u32(4, 1)));
  }
  EXPECT_EQ(relay_.setTrap(1), 0U);
  EXPECT_EQ(left(), expected);
  EXPECT_EQ(*relay_.status, 1);
}

// Required: trap-value-passed-on
TEST_P(RelayTest, SetTrap_PassesTheValueOnAndKeepsASwitch) {
  struct Row {
    std::uint32_t enable;
    int status;
  };
  unit.platform().config().ethPorts = 1;
  for (const Row row : {Row{2, 1}, Row{0, 0}, Row{0xFFFFFFFF, 1}, Row{0x100, 1}, Row{0, 0}}) {
    forget();
    EXPECT_EQ(relay_.setTrap(row.enable), 0U);
    EXPECT_THAT(left(), ElementsAre(Sent(relay_.trap, 0, WireRecord(8).u32(4, row.enable))));
    EXPECT_EQ(*relay_.status, row.status);
  }
}

TEST_P(RelayTest, SetTrap_NoPort_SwitchesTheRelayAlone) {
  unit.platform().config().ethPorts = 0;
  EXPECT_EQ(relay_.setTrap(1), 0U);
  EXPECT_THAT(left(), IsEmpty());
  EXPECT_EQ(*relay_.status, 1);
}

TEST_P(RelayTest, SetTrap_DriverRefuses_TheOtherPortsAreTold) {
  for (std::uint32_t nth = 1; nth <= 4; ++nth) {
    forget();
    unit.device().faults().clear();
    unit.device().faults().refuseNth(nth);
    EXPECT_EQ(relay_.setTrap(1), 0U);
    EXPECT_EQ(commands().size(), 4U);
    EXPECT_EQ(logLines().size(), 1U);
    EXPECT_EQ(*relay_.status, 1);
  }
}

INSTANTIATE_TEST_SUITE_P(Both, RelayTest, testing::Values(0, 1),
                         [](const auto& tested) { return Relays().at(tested.param).name; });

class RelayStartTest : public LibraryTest {};

TEST_F(RelayStartTest, BothRelaysAreOff) {
  EXPECT_EQ(g_dhcpRelayStatus, 0);
  EXPECT_EQ(g_pppoeRelayStatus, 0);
}

}  // namespace
}  // namespace hal_test
