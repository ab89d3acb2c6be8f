/// @file
/// Tests of port control by device commands and shell lines: every row of its tables, ports out of
/// range, refusals. What needs the PHY's registers is in bcm6838x_port_link_test.cpp.
#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/sockios.h>
#include <string>
#include <vector>

#include <bcm6838x_port.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>

#include "base/bytes.h"
#include "support/library_test.h"
#include "support/wire_record.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t kPorts = 5;
const std::string kPlace = " hal/switch/bcm6838x/src/bcm6838x_port.cpp ";

/// Values of a port argument that name no port, for operations that take the low 8 bits.
constexpr std::array<std::uint32_t, 4> kNoPorts = {0, 6, 255, 256};

virtual_onu::UnitConfig FivePorts() {
  virtual_onu::UnitConfig config;
  config.platform.ethPorts = kPorts;
  return config;
}

std::string AdminSent(std::uint32_t port, std::uint8_t enable) {
  return Sent("PORT_ADMIN", 0, WireRecord(48).u32(0, port + 1).u8(44, enable));
}

std::string LoopbackSent(std::uint32_t port, std::uint8_t on) {
  return Sent("PORT_LOOPBACK", 0, WireRecord(48).u32(0, port + 1).u8(4, on));
}

std::string IsolationSent(std::uint32_t port, std::uint32_t peer, std::uint32_t isolate) {
  return Sent("PORT_ISOLATE", 0,
              WireRecord(16).u32(0, port + 1).u32(4, peer).u32(8, isolate).u32(12, 2));
}

std::string MirrorSent(std::uint32_t destination, std::uint32_t enable, std::uint32_t direction) {
  return Sent("PORT_MIRROR", 0,
              WireRecord(16).u32(4, destination).u32(8, enable).u32(12, direction));
}

/// The shell line that writes a PHY's control register.
std::string ControlWritten(std::uint32_t port, const std::string& value) {
  return "shell ethctl eth" + std::to_string(port - 1) + " reg 0 " + value;
}

class PortTest : public LibraryTest {
 protected:
  PortTest() : LibraryTest(FivePorts()) {}

  void SetUp() override {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    ASSERT_EQ(BCM6838X_InitPort(), 0U);
    forget();
  }

  [[nodiscard]] std::vector<std::string> shellLines() const { return OfKind(left(), "shell"); }
};

// Required: start-lines-name-full-path
TEST_F(PortTest, InitPort_WritesTheSettingsOfEveryPortCountedFromZero) {
  unit.platform().config().ethPorts = 2;
  EXPECT_EQ(BCM6838X_InitPort(), 0U);
  EXPECT_THAT(left(), ElementsAre("shell /bin/ethctl eth0 reg 24 0xf077 > /dev/null 2>&1",
                                  "shell /bin/ethctl eth0 reg 28 0x9000 > /dev/null 2>&1",
                                  "shell /bin/ethctl eth1 reg 24 0xf077 > /dev/null 2>&1",
                                  "shell /bin/ethctl eth1 reg 28 0x9000 > /dev/null 2>&1"));
  EXPECT_EQ(unit.phy(1).peek(24), 0xf077);
  EXPECT_EQ(unit.phy(2).peek(28), 0x9000);
}

TEST_F(PortTest, InitPort_NoPort_RunsNothing) {
  unit.platform().config().ethPorts = 0;
  EXPECT_EQ(BCM6838X_InitPort(), 0U);
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(PortTest, InitPort_TheIndexHasEightBits) {
  unit.platform().config().ethPorts = 257;
  BCM6838X_InitPort();
  const std::vector<std::string> lines = left();
  ASSERT_EQ(lines.size(), 514U);
  EXPECT_EQ(lines[510], "shell /bin/ethctl eth255 reg 24 0xf077 > /dev/null 2>&1");
  EXPECT_EQ(lines[512], "shell /bin/ethctl eth0 reg 24 0xf077 > /dev/null 2>&1");
}

TEST_F(PortTest, InitPort_ShellRefusesEveryLine_GoesOn) {
  unit.shell().faults().refuseFrom(1);
  EXPECT_EQ(BCM6838X_InitPort(), 0U);
  EXPECT_EQ(shellLines().size(), 2 * kPorts);
}

TEST_F(PortTest, InitPort_ForgetsMirroringAndAdministrativeStates) {
  constexpr std::array<std::uint8_t, kPorts> kModes = {3};
  BCM6838X_SetPortAdminState(2, 0);
  BCM6838X_SetPortMirrorDestport(2);
  BCM6838X_SetPortMirrorMode(kModes.data());
  BCM6838X_InitPort();
  forget();
  BCM6838X_SetPortNegMode(2, 4);
  BCM6838X_SetPortMirrorEnable(0);
  EXPECT_THAT(commands(), ElementsAre(AdminSent(2, 1), MirrorSent(0, 0, 0)));
}

TEST_F(PortTest, SetPortAdminState_EveryPort_SendsTheCommandThenPowersThePhy) {
  std::uint32_t ports = 0;
  for (std::uint32_t port = 1; port <= kPorts; ++port, ++ports) {
    forget();
    EXPECT_EQ(BCM6838X_SetPortAdminState(port, 0), 0);
    EXPECT_FALSE(unit.phy(port).link().has_value());
    EXPECT_EQ(BCM6838X_SetPortAdminState(0x7FFFFF00 + port, 7), 0);
    EXPECT_TRUE(unit.phy(port).link().has_value());
    EXPECT_THAT(left(), ElementsAre(AdminSent(port, 0), ControlWritten(port, "1940"),
                                    AdminSent(port, 1), ControlWritten(port, "1140")));
  }
  EXPECT_EQ(ports, kPorts);
}

TEST_F(PortTest, SetPortAdminState_NoSuchPort_DoesNothing) {
  for (const std::uint32_t port : kNoPorts) {
    EXPECT_EQ(BCM6838X_SetPortAdminState(port, 1), 1) << port;
  }
  EXPECT_THAT(left(), IsEmpty());
}

// Required: missing-phy-is-minus-1
TEST_F(PortTest, SetPortAdminState_NoPhyOrInterface_ReturnsThatOfThePowerStep) {
  unit.phy(2).setResponding(false);
  EXPECT_EQ(BCM6838X_SetPortAdminState(2, 0), -1);
  unit.interfaces().faults().refuseNth(1, SIOCGIFINDEX);
  EXPECT_EQ(BCM6838X_SetPortAdminState(3, 0), 1);
  EXPECT_THAT(left(), ElementsAre(AdminSent(2, 0), AdminSent(3, 0)));

  // The states are remembered all the same.
  forget();
  BCM6838X_SetPortNegMode(2, 4);
  BCM6838X_SetPortNegMode(3, 4);
  EXPECT_THAT(commands(), ElementsAre(AdminSent(2, 0), AdminSent(3, 0)));
}

struct NegModeRow {
  std::uint32_t mode;
  std::string mediaType;
  std::string control;  ///< as it is then written again to apply the administrative state
};

const std::vector<NegModeRow> kNegModes = {
    {0, "10HD", "0"},     {1, "100HD", "2000"}, {2, "auto", "1140"}, {3, "10FD", "100"},
    {4, "100FD", "2100"}, {5, "auto", "1140"},  {6, "auto", "1140"},
};

// Required: negotiation-modes-without-gigabit
TEST_F(PortTest, SetPortNegMode_EveryMode_SelectsItsMediaTypeAndAppliesTheState) {
  for (const NegModeRow& row : kNegModes) {
    forget();
    EXPECT_EQ(BCM6838X_SetPortNegMode(0x102, row.mode), 0U);
    EXPECT_THAT(left(), ElementsAre("shell ethctl eth1 media-type " + row.mediaType,
                                    AdminSent(2, 1), ControlWritten(2, row.control)));
  }
  EXPECT_EQ(kNegModes.size(), 7U);
}

TEST_F(PortTest, SetPortNegMode_UnknownMode_IsRefused) {
  for (const std::uint32_t mode : {7U, 8U, 256U, 0xFFFFFFFFU}) {
    EXPECT_EQ(BCM6838X_SetPortNegMode(1, mode), 1U) << mode;
  }
  EXPECT_THAT(left(), IsEmpty());
}

// Required: negotiation-mode-reapplies-state
TEST_F(PortTest, SetPortNegMode_PortThatIsDown_StaysPoweredDown) {
  BCM6838X_SetPortAdminState(1, 0);
  forget();
  EXPECT_EQ(BCM6838X_SetPortNegMode(1, 4), 0U);
  EXPECT_THAT(left(), ElementsAre("shell ethctl eth0 media-type 100FD", AdminSent(1, 0),
                                  ControlWritten(1, "2900")));
  EXPECT_FALSE(unit.phy(1).link().has_value());
}

// Required: negotiation-mode-takes-any-port
TEST_F(PortTest, SetPortNegMode_PortIsNotChecked_OnlyTheShellLineIsRun) {
  const std::vector<std::pair<std::uint32_t, std::string>> ports = {
      {0, "eth-1"}, {6, "eth5"}, {31, "eth30"}, {32, "eth31"}, {255, "eth254"}};
  for (const auto& [port, interface] : ports) {
    forget();
    EXPECT_EQ(BCM6838X_SetPortNegMode(port, 2), 0U);
    EXPECT_THAT(left(), ElementsAre("shell ethctl " + interface + " media-type auto"));
  }
}

TEST_F(PortTest, SetPortNegMode_ShellRefuses_AppliesTheStateAllTheSame) {
  unit.shell().faults().refuseNth(1);
  EXPECT_EQ(BCM6838X_SetPortNegMode(1, 0), 0U);
  EXPECT_THAT(commands(), ElementsAre(AdminSent(1, 1)));
}

// Required: port-ranges-differ
TEST_F(PortTest, SetPortLoopback_EveryPort_SendsItsRecord) {
  std::uint32_t ports = 0;
  for (std::uint32_t port = 1; port <= kPorts; ++port, ++ports) {
    forget();
    EXPECT_EQ(BCM6838X_SetPortLoopback(0x300 + port, 0x100), 0U);
    EXPECT_EQ(BCM6838X_SetPortLoopback(port, 0), 0U);
    EXPECT_THAT(left(), ElementsAre(LoopbackSent(port, 1), LoopbackSent(port, 0)));
  }
  EXPECT_EQ(ports, kPorts);
}

TEST_F(PortTest, SetPortLoopback_NoSuchPort_SendsNothing) {
  for (const std::uint32_t port : kNoPorts) {
    EXPECT_EQ(BCM6838X_SetPortLoopback(port, 1), 1U) << port;
  }
  EXPECT_THAT(left(), IsEmpty());
}

struct IsolationRow {
  std::uint32_t port;
  std::uint32_t mask;
  std::vector<std::uint32_t> peers;
};

// Required: isolation-mask-only-adds, isolation-of-itself-sent, isolation-word-12
TEST_F(PortTest, SetPortIsolateMask_SendsOneRecordForEachPeer) {
  const std::vector<IsolationRow> rows = {
      {1, 0, {3, 4, 5}}, {2, 0, {2, 4, 5}},      {3, 0, {2, 3, 5}}, {4, 0, {2, 3, 4}},
      {3, 0x9, {2, 5}},  {1, 0xF, {2, 3, 4, 5}}, {4, 0x8, {5}},     {2, 0xFFFFFFF4, {4}},
      {2, 0x10, {}},     {0x101, 0x2, {3}},
  };
  for (const IsolationRow& row : rows) {
    std::vector<std::string> expected;
    for (const std::uint32_t peer : row.peers) {
      expected.push_back(IsolationSent(row.port & 0xFF, peer, row.mask == 0 ? 0 : 1));
    }
    forget();
    EXPECT_EQ(BCM6838X_SetPortIsolateMask(row.port, row.mask), 0U);
    EXPECT_EQ(left(), expected) << row.port << " " << row.mask;
  }
}

// Required: port-ranges-differ
TEST_F(PortTest, SetPortIsolateMask_NoSuchPort_SendsNothing) {
  for (const std::uint32_t port : {0U, 5U, 6U, 255U, 256U}) {
    EXPECT_EQ(BCM6838X_SetPortIsolateMask(port, 0xF), 1U) << port;
  }
  EXPECT_THAT(left(), IsEmpty());
}

// Required: learning-is-of-the-switch
TEST_F(PortTest, SetPortMacLearn_LogsAndSendsTheWordForTheWholeSwitch) {
  EXPECT_EQ(BCM6838X_SetPortMacLearn(3, 1), 0U);
  EXPECT_EQ(BCM6838X_SetPortMacLearn(99, 0xFFFFFFFF), 0U);
  const std::string place = "log 1" + kPlace + "BCM6838X_SetPortMacLearn(<line>), ";
  EXPECT_THAT(
      left(),
      ElementsAre(place + "enable=1\r\n", Sent("MAC_LEARN", 0, WireRecord(4).u32(0, 1)),
                  place + "enable=-1\r\n", Sent("MAC_LEARN", 0, WireRecord(4).u32(0, 0xFFFFFFFF))));
}

// Required: learning-is-of-the-switch, mac-limit-logs-what-was-given
TEST_F(PortTest, SetPortLimitMacNum_LogsAndSendsSixteenBits) {
  EXPECT_EQ(BCM6838X_SetPortLimitMacNum(3, 0x1234FFFF), 0U);
  EXPECT_EQ(BCM6838X_SetPortLimitMacNum(99, 64), 0U);
  const std::string place = "log 1" + kPlace + "BCM6838X_SetPortLimitMacNum(<line>), ";
  EXPECT_THAT(
      left(),
      ElementsAre(place + "limit=65535\r\n", Sent("MAC_LIMIT", 0, WireRecord(2).u16(0, 0xFFFF)),
                  place + "limit=64\r\n", Sent("MAC_LIMIT", 0, WireRecord(2).u16(0, 64))));
}

/// The message of SetPortStpEnable: three words in the processor's byte order.
std::string StpMessage(std::uint32_t index, std::uint32_t enable) {
  const std::array<std::uint32_t, 3> words = {index, enable, 0};
  virtual_onu::Bytes bytes(sizeof(words));
  std::memcpy(bytes.data(), words.data(), sizeof(words));
  return "message 41920 5385 " + virtual_onu::ToHex(bytes);
}

// Required: stp-index-from-0, stp-platform-before-driver
TEST_F(PortTest, SetPortStpEnable_EveryIndexFromZero_TellsThePlatformThenTheDriver) {
  constexpr std::uint32_t kEnable = 0x80000005;
  EXPECT_EQ(BCM6838X_SetPortStpEnable(kEnable), 0U);
  std::vector<std::string> expected;
  for (std::uint32_t index = 0; index < kPorts; ++index) {
    expected.push_back(StpMessage(index, kEnable));
    expected.push_back(Sent("PORT_STP", 0, WireRecord(12).u32(0, index).u32(4, kEnable)));
  }
  EXPECT_EQ(left(), expected);
}

TEST_F(PortTest, SetPortStpEnable_NoPort_DoesNothing) {
  unit.platform().config().ethPorts = 0;
  EXPECT_EQ(BCM6838X_SetPortStpEnable(1), 0U);
  EXPECT_THAT(left(), IsEmpty());
}

// Required: stp-state-is-port-state
TEST_F(PortTest, SetPortStpState_BlockingAndForwarding_SwitchThePort) {
  EXPECT_EQ(BCM6838X_SetPortStpState(2, 1), 0U);
  EXPECT_EQ(BCM6838X_SetPortStpState(2, 4), 0U);
  EXPECT_THAT(left(), ElementsAre(AdminSent(2, 0), ControlWritten(2, "1940"), AdminSent(2, 1),
                                  ControlWritten(2, "1140")));
}

TEST_F(PortTest, SetPortStpState_ReturnsTheResultOfSwitching) {
  EXPECT_EQ(BCM6838X_SetPortStpState(6, 1), 1U);
  unit.phy(2).setResponding(false);
  EXPECT_EQ(BCM6838X_SetPortStpState(2, 4), 0xFFFFFFFF);
}

// Required: stp-state-is-port-state
TEST_F(PortTest, SetPortStpState_OtherStates_DoNothing) {
  for (const std::uint32_t state : {0U, 2U, 3U, 5U, 0x101U, 0xFFFFFFFFU}) {
    EXPECT_EQ(BCM6838X_SetPortStpState(2, state), 0U) << state;
  }
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(PortTest, SetPortStpState_FeatureIsNotOne_DoesNothing) {
  for (const std::uint32_t feature : {0U, 2U, 0xFFFFFFFFU}) {
    unit.platform().config().features[27] = feature;
    EXPECT_EQ(BCM6838X_SetPortStpState(2, 1), 0U);
    EXPECT_EQ(BCM6838X_SetPortStpState(6, 1), 0U);
  }
  EXPECT_THAT(left(), IsEmpty());
}

struct MtuRow {
  std::uint32_t port;
  std::uint32_t mtu;
  std::string arguments;
};

// Required: jumbo-from-1519
TEST_F(PortTest, SetPortMtu_JumboFramesBeginAt1519) {
  const std::vector<MtuRow> rows = {
      {1, 1518, "0, 0, 0"},     {1, 1519, "0, 0, 1"},          {5, 0, "0, 4, 0"},
      {2, 0xFFFF, "0, 1, 1"},   {2, 0x105EE, "0, 1, 0"},       {2, 0x105EF, "0, 1, 1"},
      {0x104, 1519, "0, 3, 1"}, {0, 1518, "0, 4294967295, 0"},
  };
  std::vector<std::string> expected;
  for (const MtuRow& row : rows) {
    EXPECT_EQ(BCM6838X_SetPortMtu(row.port, row.mtu), 0U);
    expected.push_back("call bcm_port_jumbo_control_set(" + row.arguments + ")");
  }
  EXPECT_EQ(left(), expected);
}

// Required: mirror-sent-with-enable-alone
TEST_F(PortTest, Mirror_DestinationAndModeTakeEffectWithEnableAlone) {
  constexpr std::array<std::uint8_t, kPorts> kModes = {0, 1};
  EXPECT_EQ(BCM6838X_SetPortMirrorDestport(4), 0U);
  EXPECT_EQ(BCM6838X_SetPortMirrorMode(kModes.data()), 0U);
  EXPECT_THAT(left(), IsEmpty());
  EXPECT_EQ(BCM6838X_SetPortMirrorEnable(0x80000001), 0U);
  EXPECT_EQ(BCM6838X_SetPortMirrorEnable(0), 0U);
  EXPECT_THAT(left(), ElementsAre(MirrorSent(5, 0x80000001, 1), MirrorSent(5, 0, 1)));
}

TEST_F(PortTest, SetPortMirrorDestport_EveryPort_IsItsDevicePort) {
  std::vector<std::string> expected;
  for (std::uint32_t port = 1; port <= 4; ++port) {
    EXPECT_EQ(BCM6838X_SetPortMirrorDestport(0x500 + port), 0U);
    BCM6838X_SetPortMirrorEnable(1);
    expected.push_back(MirrorSent(port + 1, 1, 0));
  }
  EXPECT_EQ(commands(), expected);
  EXPECT_EQ(expected.size(), 4U);
}

TEST_F(PortTest, SetPortMirrorDestport_NoSuchPort_KeepsTheDestination) {
  BCM6838X_SetPortMirrorDestport(3);
  for (const std::uint32_t port : {0U, 5U, 6U, 255U, 256U}) {
    EXPECT_EQ(BCM6838X_SetPortMirrorDestport(port), 1U) << port;
  }
  BCM6838X_SetPortMirrorEnable(1);
  EXPECT_THAT(left(), ElementsAre(MirrorSent(4, 1, 0)));
}

struct MirrorRow {
  std::array<std::uint8_t, kPorts> modes;
  std::uint32_t direction;
};

// Required: mirror-last-port-wins
TEST_F(PortTest, SetPortMirrorMode_TheLastPortWithAModeWins) {
  // Each row begins with the direction that the row before left.
  const std::vector<MirrorRow> rows = {
      {{1}, 1},
      {{2}, 0},
      {{3}, 2},
      {{1, 2, 3, 0, 0}, 2},
      {{0, 0, 0, 0, 1}, 1},
      {{3, 0, 1, 2, 0}, 0},
      {{3, 0, 0, 4, 0}, 2},
      {{0, 0, 0, 0, 0}, 2},
      {{255, 0, 0, 0, 0}, 2},
  };
  std::vector<std::string> expected;
  for (const MirrorRow& row : rows) {
    EXPECT_EQ(BCM6838X_SetPortMirrorMode(row.modes.data()), 0U);
    BCM6838X_SetPortMirrorEnable(1);
    expected.push_back(MirrorSent(0, 1, row.direction));
  }
  EXPECT_EQ(commands(), expected);
}

TEST_F(PortTest, SetPortMirrorMode_ReadsOneByteForEachPort) {
  const std::vector<std::uint8_t> modes = {1, 2};
  unit.platform().config().ethPorts = 1;
  BCM6838X_SetPortMirrorMode(modes.data());
  BCM6838X_SetPortMirrorEnable(1);
  unit.platform().config().ethPorts = 2;
  BCM6838X_SetPortMirrorMode(modes.data());
  BCM6838X_SetPortMirrorEnable(1);
  EXPECT_THAT(commands(), ElementsAre(MirrorSent(0, 1, 1), MirrorSent(0, 1, 0)));
}

TEST_F(PortTest, SetPortMirrorMode_Null_IsRefusedWithALogLine) {
  EXPECT_EQ(BCM6838X_SetPortMirrorMode(nullptr), 1U);
  EXPECT_THAT(left(), ElementsAre("log 4" + kPlace +
                                  "BCM6838X_SetPortMirrorMode(<line>), null pointer\r\n"));
}

/// The operations that send commands, with arguments that they accept.
const std::vector<std::function<std::int64_t()>> kSenders = {
    [] { return BCM6838X_SetPortAdminState(1, 0); },
    [] { return BCM6838X_SetPortNegMode(1, 0); },
    [] { return BCM6838X_SetPortLoopback(1, 1); },
    [] { return BCM6838X_SetPortIsolateMask(1, 0xF); },
    [] { return BCM6838X_SetPortMacLearn(1, 1); },
    [] { return BCM6838X_SetPortLimitMacNum(1, 1); },
    [] { return BCM6838X_SetPortStpEnable(1); },
    [] { return BCM6838X_SetPortStpState(1, 1); },
    [] { return BCM6838X_SetPortMirrorEnable(1); },
};

// Required: port-commands-succeed
TEST_F(PortTest, EveryCommandRefused_TheOperationsSucceedAllTheSame) {
  std::size_t sent = 0;
  for (const auto& operation : kSenders) {
    unit.device().faults().refuseFrom(1);
    forget();
    EXPECT_EQ(operation(), 0);
    EXPECT_FALSE(commands().empty());
    sent += commands().size();
    unit.device().faults().clear();
  }
  EXPECT_EQ(sent, 7 + 4 + kPorts);
}

TEST_F(PortTest, OperationsWithoutEffect_ReturnSuccess) {
  EXPECT_EQ(BCM6838X_GetGlobalLinkState(1, 2, 3), 0U);
  EXPECT_EQ(BCM6838X_GetGlobalNegResult(1, 2, 3), 0U);
  EXPECT_EQ(BCM6838X_SetPortAuthMode(1, 2, 3), 0U);
  EXPECT_THAT(left(), IsEmpty());
}

class PortBeforeInitTest : public LibraryTest {
 protected:
  PortBeforeInitTest() : LibraryTest(FivePorts()) {}
};

TEST_F(PortBeforeInitTest, DeviceNotOpen_OnlyThePhyIsReached) {
  for (const auto& operation : kSenders) {
    EXPECT_EQ(operation(), 0);
  }
  EXPECT_THAT(commands(), IsEmpty());
  EXPECT_THAT(OfKind(left(), "shell"),
              ElementsAre(ControlWritten(1, "1940"), "shell ethctl eth0 media-type 10HD",
                          ControlWritten(1, "800"), ControlWritten(1, "800")));
}

}  // namespace
}  // namespace hal_test
