/// @file
/// Tests of start-up: order of calls, operating modes, console lines, and every single failure.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <brmgr_cmd.h>
#include <hal_bcm6838x.h>

#include "support/in_child.h"
#include "support/library_test.h"
#include "support/wire_record.h"

namespace hal_test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

const std::string kLogPlace = "log 1 hal/switch/bcm6838x/src/hal_bcm6838x_init.cpp ";

const std::string kBanner = [] {
  std::string text = "WARNING!!!  Hal enter performance mode !!!" + std::string(30, '>') + "\r\n";
  for (int i = 0; i < 4; ++i) {
    text += std::string(60, '>') + "\r\n";
  }
  return text;
}();

/// Position of the first line that begins with `start`, or the size.
std::size_t Position(const std::vector<std::string>& lines, const std::string& start) {
  return static_cast<std::size_t>(
      std::ranges::find_if(lines,
                           [&](const std::string& line) { return line.starts_with(start); }) -
      lines.begin());
}

class InitTest : public LibraryTest {
 protected:
  /// Runs an operation and returns what it wrote on standard output.
  template <typename Operation>
  std::string console(Operation operation) {
    testing::internal::CaptureStdout();
    operation();
    return testing::internal::GetCapturedStdout();
  }
};

// Required: ports-down-before-device
TEST_F(InitTest, Init_NormalMode_MakesTheCallsInOrder) {
  EXPECT_EQ(console([] { EXPECT_EQ(BCM6838X_Init(), 0U); }), "");
  const std::vector<std::string> lines = left();
  const std::vector<std::string> order = {
      "call LOG_Create(\"hal_bcm6838x\", 1000, -1)",
      "call VOS_TaskSpawn(\"kernelEvent\", 65535, 15, 0, 0, entry, 0)",
      "shell ethctl eth0 reg 0 1940",
      "shell ethctl eth3 reg 0 1940",
      "call access(\"/var/config/switch_perf\")",
      "call VOS_OpenDevice(\"BrmgrDev\")",
      "command BRMGR_CMD_INIT ",
      "call BCM6838X_sysGetBoardId(16)",
      "shell /bin/ethctl eth0 reg 24 0xf077 > /dev/null 2>&1",
      "shell /bin/ethctl eth3 reg 28 0x9000 > /dev/null 2>&1",
      "command BRMGR_CMD_VLAN_ACTION_ADD ",
      "command BRMGR_CMD_IC_CREATE ",
      "call VOS_OntInfoGetMac()",
      "command BRMGR_CMD_FLOW_ADD ",
      "command BRMGR_CMD_FEATURE ",
  };
  std::size_t last = 0;
  for (const std::string& start : order) {
    const std::size_t position = Position(lines, start);
    ASSERT_LT(position, lines.size()) << start;
    EXPECT_GE(position, last) << start;
    last = position;
  }
  EXPECT_EQ(lines.front(), order.front());
  EXPECT_EQ(BCM6838X_IsPerformance(), 0U);
}

// Required: ports-down-before-device
TEST_F(InitTest, Init_PowersEveryPhyDownBeforeTheDeviceIsOpen) {
  BCM6838X_Init();
  const std::vector<std::string> lines = left();
  EXPECT_THAT(OfKind(lines, "shell"),
              ElementsAre("shell ethctl eth0 reg 0 1940", "shell ethctl eth1 reg 0 1940",
                          "shell ethctl eth2 reg 0 1940", "shell ethctl eth3 reg 0 1940",
                          "shell /bin/ethctl eth0 reg 24 0xf077 > /dev/null 2>&1",
                          "shell /bin/ethctl eth0 reg 28 0x9000 > /dev/null 2>&1",
                          "shell /bin/ethctl eth1 reg 24 0xf077 > /dev/null 2>&1",
                          "shell /bin/ethctl eth1 reg 28 0x9000 > /dev/null 2>&1",
                          "shell /bin/ethctl eth2 reg 24 0xf077 > /dev/null 2>&1",
                          "shell /bin/ethctl eth2 reg 28 0x9000 > /dev/null 2>&1",
                          "shell /bin/ethctl eth3 reg 24 0xf077 > /dev/null 2>&1",
                          "shell /bin/ethctl eth3 reg 28 0x9000 > /dev/null 2>&1"));
  EXPECT_LT(Position(lines, "shell ethctl eth3 "), Position(lines, "call VOS_OpenDevice"));
  EXPECT_EQ(Position(lines, "command BRMGR_CMD_PORT_ADMIN "), lines.size())
      << "the device was not open yet, so that the administrative states got lost";
  for (std::uint32_t port = 1; port <= 4; ++port) {
    EXPECT_FALSE(unit.phy(port).link()) << port;
    EXPECT_TRUE(unit.device().portTables().of(port).adminUp) << port;
    EXPECT_EQ(unit.phy(port).read(24), 0xF077) << port;
    EXPECT_EQ(unit.phy(port).read(28), 0x9000) << port;
  }
}

TEST_F(InitTest, Init_ShellRefusesEveryLine_FinishesTheStart) {
  unit.shell().faults().refuseFrom(1);
  EXPECT_EQ(BCM6838X_Init(), 0U);
  EXPECT_EQ(OfKind(left(), "shell").size(), 12U);
  EXPECT_TRUE(unit.phy(1).link());
  EXPECT_EQ(unit.device().tables().upstream.classes.size(), 5U);
}

TEST_F(InitTest, Init_SpawnsTheKernelEventTask) {
  BCM6838X_Init();
  const std::vector<virtual_onu::Task> tasks = unit.platform().tasks();
  ASSERT_EQ(tasks.size(), 1U);
  EXPECT_EQ(tasks[0].entry, &BCM6838X_kernelEvent);
}

// Required: log-handle-32-is-none
TEST_F(InitTest, Init_LogModuleFails_PrintsAndDoesNothingElse) {
  unit.platform().config().logCreateFails = true;
  EXPECT_EQ(console([] { EXPECT_EQ(BCM6838X_Init(), 1U); }), "LOG_Create fail.\r\n");
  EXPECT_THAT(left(), ElementsAre("call LOG_Create(\"hal_bcm6838x\", 1000, -1)"));
}

// Required: log-creat-task
TEST_F(InitTest, Init_TaskSpawnFails_PrintsAndGoesOn) {
  unit.platform().config().taskSpawnFails = true;
  EXPECT_EQ(console([] { EXPECT_EQ(BCM6838X_Init(), 0U); }),
            "\n Creat task kernelEvent Error!!! \r\n");
  EXPECT_THAT(commands(), Contains(Sent("FEATURE", 0, WireRecord(4).u32(0, 1))));
}

// Required: start-goes-on
TEST_F(InitTest, Init_DeviceDoesNotOpen_LogsOnceAndSendsNothing) {
  unit.platform().config().openDeviceFails = true;
  EXPECT_EQ(BCM6838X_Init(), 0U);
  EXPECT_THAT(commands(), IsEmpty());
  EXPECT_THAT(logLines(), ElementsAre(kLogPlace + "BCM6838X_InitDrv :<line>, "
                                                  "Open brmgr device is error\r\n"));
  EXPECT_EQ(BCM6838X_Ioctl(BRMGR_CMD_LASER_ON, nullptr, 0, 1), 10U);
  EXPECT_THAT(left(), Not(Contains("call BCM6838X_sysGetBoardId(16)")));
}

// Required: performance-marker-consumed
TEST_F(InitTest, Init_MarkerPresent_StartsInPerformanceModeForThisStartOnly) {
  unit.platform().setPerformanceMarker(true);
  EXPECT_EQ(console([] { EXPECT_EQ(BCM6838X_Init(), 0U); }), kBanner);
  EXPECT_FALSE(unit.platform().performanceMarker());
  EXPECT_EQ(BCM6838X_IsPerformance(), 1U);
  EXPECT_EQ(unit.device().tables().upstream.classes.size(), 1U);
  EXPECT_EQ(unit.device().tables().downstream.classes.size(), 1U);
  const std::vector<std::string> sent = commands();
  EXPECT_EQ(std::ranges::count_if(sent,
                                  [](const std::string& line) {
                                    return line.starts_with("command BRMGR_CMD_IC_CREATE ");
                                  }),
            2);
  EXPECT_EQ(Position(sent, "command BRMGR_CMD_FLOW_ADD "), sent.size());

  EXPECT_EQ(console([] { EXPECT_EQ(BCM6838X_Init(), 0U); }), "");
  EXPECT_EQ(BCM6838X_IsPerformance(), 0U);
}

TEST_F(InitTest, PerformanceInit_TellsTheModeByItsResult) {
  EXPECT_EQ(BCM6838X_PerformanceInit(), 12U);
  EXPECT_THAT(left(), ElementsAre("call access(\"/var/config/switch_perf\")"));
  unit.platform().setPerformanceMarker(true);
  forget();
  console([] { EXPECT_EQ(BCM6838X_PerformanceInit(), 0U); });
  EXPECT_THAT(left(), ElementsAre("call access(\"/var/config/switch_perf\")",
                                  "call unlink(\"/var/config/switch_perf\")"));
}

TEST_F(InitTest, InitDrv_SendsThePortCounts) {
  unit.platform().config().fePorts = 3;
  unit.platform().config().gePorts = 0x01020304;
  EXPECT_EQ(BCM6838X_InitDrv(), 0U);
  EXPECT_THAT(left(), ElementsAre("call VOS_OpenDevice(\"BrmgrDev\")",
                                  Sent("INIT", 0, WireRecord(32).u32(4, 3).u32(8, 0x01020304)),
                                  "call BCM6838X_sysGetBoardId(16)"));
}

// Required: board-id-read-anyway
TEST_F(InitTest, InitDrv_DriverRefuses_ReturnsEightAndStillReadsTheBoardId) {
  unit.device().faults().refuseNth(1);
  EXPECT_EQ(BCM6838X_InitDrv(), 8U);
  EXPECT_EQ(left().back(), "call BCM6838X_sysGetBoardId(16)");
}

TEST_F(InitTest, InitDrv_DeviceDoesNotOpen_ReturnsOne) {
  unit.platform().config().openDeviceFails = true;
  EXPECT_EQ(BCM6838X_InitDrv(), 1U);
}

// Required: feature-passed-unchanged
TEST_F(InitTest, SFInit_PassesFeatureTwentySevenUnchanged) {
  BCM6838X_InitDrv();
  for (const std::uint32_t value : {0U, 1U, 0xA1B2C3D4U}) {
    unit.platform().config().features[27] = value;
    forget();
    EXPECT_EQ(BCM6838X_SFInit(), 0U);
    EXPECT_THAT(left(), ElementsAre(Sent("FEATURE", 0, WireRecord(4).u32(0, value))));
  }
  unit.device().faults().refuseNth(1);
  EXPECT_EQ(BCM6838X_SFInit(), 8U);
}

TEST_F(InitTest, Init_NoEthernetPort_TouchesNoPort) {
  unit.platform().config().ethPorts = 0;
  EXPECT_EQ(BCM6838X_Init(), 0U);
  EXPECT_THAT(OfKind(left(), "shell"), IsEmpty());
}

// Required: start-not-guarded
TEST_F(InitTest, Init_Twice_RepeatsEverythingAndTheAdministrativeStatesArrive) {
  BCM6838X_Init();
  const std::vector<std::string> first = left();
  forget();
  BCM6838X_Init();
  EXPECT_EQ(left().size(), first.size() + 4);
  for (std::uint32_t port = 1; port <= 4; ++port) {
    EXPECT_THAT(commands(), Contains(Sent("PORT_ADMIN", 0, WireRecord(48).u32(0, port + 1))));
    EXPECT_FALSE(unit.device().portTables().of(port).adminUp) << port;
  }
  EXPECT_EQ(unit.platform().tasks().size(), 2U);
  EXPECT_EQ(unit.device().tables().upstream.classes.size(), 10U);
}

/// What a start with faults shows: its result, the number of commands, of refusal lines, and
/// whether the next command goes through.
std::vector<std::string> StartWithFaults(std::uint32_t nth, bool onwards) {
  virtual_onu::Unit unit;
  if (onwards) {
    unit.device().faults().refuseFrom(nth);
  } else {
    unit.device().faults().refuseNth(nth);
  }
  const std::uint32_t result = BCM6838X_Init();
  const std::vector<std::string> lines = Left(unit);
  unit.device().faults().clear();
  const std::uint32_t next = BCM6838X_Ioctl(BRMGR_CMD_LASER_ON, nullptr, 0, 1);
  return {std::to_string(result), std::to_string(OfKind(lines, "command").size()),
          std::to_string(OfKind(lines, "log").size()), std::to_string(next)};
}

/// Fails the 1st, 2nd, ... command of the start until it runs through without a failure.
void FailEachCommandOfTheStart(bool onwards) {
  const ChildReport clean = InChild([] { return StartWithFaults(1000, false); });
  ASSERT_TRUE(clean.finished);
  ASSERT_EQ(clean.lines.size(), 4U);
  const auto count = static_cast<std::uint32_t>(std::stoul(clean.lines[1]));
  ASSERT_GE(count, 17U);
  std::uint32_t rounds = 0;
  for (std::uint32_t nth = 1; nth <= count; ++nth, ++rounds) {
    const ChildReport report = InChild([=] { return StartWithFaults(nth, onwards); });
    ASSERT_TRUE(report.finished) << nth;
    ASSERT_EQ(report.lines.size(), 4U) << nth;
    EXPECT_EQ(report.lines[0], "0") << nth;
    EXPECT_EQ(report.lines[3], "0") << nth;
    EXPECT_GE(std::stoul(report.lines[2]), 1U) << nth;
  }
  EXPECT_EQ(rounds, count);
}

TEST(InitFaults, Init_NthCommandRefused_LogsAndFinishesTheStart) {
  FailEachCommandOfTheStart(false);
}

// Required: start-goes-on
TEST(InitFaults, Init_EveryCommandFromTheNthOnRefused_LogsAndFinishesTheStart) {
  FailEachCommandOfTheStart(true);
}

}  // namespace
}  // namespace hal_test
