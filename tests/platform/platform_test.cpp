/// @file
/// Tests of the platform calls as the library reaches them, through their C names.
#include <array>
#include <atomic>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <platform_chip.h>
#include <platform_clients.h>
#include <platform_config.h>
#include <platform_log.h>
#include <platform_vos.h>

#include "support/left.h"
#include "unit/unit.h"

namespace virtual_onu {
namespace {

using testing::ElementsAre;

class PlatformTest : public testing::Test {
 protected:
  [[nodiscard]] std::vector<std::string> left() const { return hal_test::Left(unit); }
  Unit unit;
};

TEST_F(PlatformTest, Configuration_IsWhatTheCallsAnswer) {
  PlatformConfig& config = unit.platform().config();
  config.ethPorts = 3;
  config.fePorts = 1;
  config.gePorts = 2;
  config.uplinkPort = 9;
  config.factoryMode = 1;
  config.features = {{27, 5}};
  EXPECT_EQ(HC_GetEthPortNum(), 3U);
  EXPECT_EQ(HC_GetFePortNum(), 1U);
  EXPECT_EQ(HC_GetGePortNum(), 2U);
  EXPECT_EQ(HC_GetUplinkPortNo(), 9U);
  EXPECT_EQ(SF_GetFeature(27), 5U);
  EXPECT_EQ(SF_GetFeature(28), 0U);
  std::uint32_t mode = 0;
  EXPECT_EQ(BCM6838X_sysGetFactoryMode(&mode), 0U);
  EXPECT_EQ(mode, 1U);
}

TEST_F(PlatformTest, NumberOfEthernetPorts_IsThatOfWhoAnswersInstead) {
  unit.platform().config().ethPorts = 3;
  std::uint32_t ports = 7;
  unit.platform().onEthPortsAsked([&ports] { return ports++; });
  EXPECT_EQ(HC_GetEthPortNum(), 7U);
  EXPECT_EQ(HC_GetEthPortNum(), 8U);
  unit.platform().onEthPortsAsked({});
  EXPECT_EQ(HC_GetEthPortNum(), 3U);
}

TEST_F(PlatformTest, BoardId_ShortOne_IsFilledWithZeros) {
  unit.platform().config().boardId = "AB";
  std::array<char, 5> buffer = {'x', 'x', 'x', 'x', 'x'};
  EXPECT_EQ(BCM6838X_sysGetBoardId(buffer.data(), 4), 0U);
  EXPECT_THAT(buffer, ElementsAre('A', 'B', '\0', '\0', 'x'));
}

TEST_F(PlatformTest, BoardId_LongOne_IsCutWithoutATerminator) {
  unit.platform().config().boardId = "ABCDEF";
  std::array<char, 5> buffer = {'x', 'x', 'x', 'x', 'x'};
  EXPECT_EQ(BCM6838X_sysGetBoardId(buffer.data(), 4), 0U);
  EXPECT_THAT(buffer, ElementsAre('A', 'B', 'C', 'D', 'x'));
}

TEST_F(PlatformTest, Log_KeepsLevelPlaceAndText) {
  const std::uint32_t id = LOG_Create("module", 1, -1);
  EXPECT_NE(id, LOG_ID_NONE);
  _LOG_Print(id, 4, "a/b.cpp", 12, "%s(%d) %lu %ld\r\n", "name", 12, 4294967295UL, -1L);
  EXPECT_THAT(left(), ElementsAre("call LOG_Create(\"module\", 1, -1)",
                                  "log 4 a/b.cpp name(<line>) 4294967295 -1\r\n"));
}

TEST_F(PlatformTest, LogCreate_Failing_ReturnsThirtyTwo) {
  unit.platform().config().logCreateFails = true;
  EXPECT_EQ(LOG_Create("module", 1, -1), 32U);
}

TEST_F(PlatformTest, ShellLine_IsFormattedNotedAndNotRun) {
  EXPECT_EQ(VOS_System("touch %s/%u", "/nonexistent", 7U), 0);
  EXPECT_THAT(left(), ElementsAre("shell touch /nonexistent/7"));
}

TEST_F(PlatformTest, ShellLine_LongerThanAnyBuffer_IsKeptWhole) {
  const std::string word(5000, 'x');
  VOS_System("%s", word.c_str());
  EXPECT_THAT(left(), ElementsAre("shell " + word));
}

TEST_F(PlatformTest, Message_IsCopied) {
  std::array<std::uint8_t, 3> message = {1, 2, 3};
  EXPECT_EQ(VOS_MsgSend(0xA3C0, 0x1500, message.data(), message.size()), 0U);
  message.fill(0);
  EXPECT_THAT(left(), ElementsAre("message 41920 5376 010203"));
}

TEST_F(PlatformTest, Delay_MovesTheVirtualClockAndDoesNotSleep) {
  EXPECT_EQ(TIMER_GetCurrent(), 0U);
  VOS_TaskDelay(86'400'000);
  EXPECT_EQ(TIMER_GetCurrent(), 86'400'000U);
}

TEST_F(PlatformTest, RebootAndFactoryReset_AreNotedNotDone) {
  VOS_Reboot(11);
  VOS_ResetDefaultCfg();
  EXPECT_THAT(left(), ElementsAre("call VOS_Reboot(11)", "call VOS_ResetDefaultCfg()"));
}

TEST_F(PlatformTest, StrNcaseCmp_IgnoresCase) {
  EXPECT_EQ(VOS_StrNcaseCmp("ETH2", "eth2"), 0);
  EXPECT_NE(VOS_StrNcaseCmp("eth1", "eth2"), 0);
}

TEST_F(PlatformTest, OntInfoGetMac_GivesBothOrFailsAndWritesNothing) {
  unit.platform().config().firstMac = {2, 0, 0, 0, 0, 1};
  unit.platform().config().secondMac = {2, 0, 0, 0, 0, 2};
  MacAddressBytes first = {};
  MacAddressBytes second = {};
  unit.platform().config().macQueryFails = true;
  EXPECT_NE(VOS_OntInfoGetMac(first.data(), second.data()), 0U);
  EXPECT_EQ(first, MacAddressBytes{});
  unit.platform().config().macQueryFails = false;
  EXPECT_EQ(VOS_OntInfoGetMac(first.data(), second.data()), 0U);
  EXPECT_THAT(first, ElementsAre(2, 0, 0, 0, 0, 1));
  EXPECT_THAT(second, ElementsAre(2, 0, 0, 0, 0, 2));
}

TEST_F(PlatformTest, OpenDevice_OtherNameOrConfiguredFailure_Fails) {
  EXPECT_LT(VOS_OpenDevice("OtherDev"), 1);
  unit.platform().config().openDeviceFails = true;
  EXPECT_LT(VOS_OpenDevice("BrmgrDev"), 1);
  unit.platform().config().openDeviceFails = false;
  EXPECT_GT(VOS_OpenDevice("BrmgrDev"), 2);
}

TEST_F(PlatformTest, ProtocolClientsAndChipCalls_AreNoted) {
  std::array<std::uint8_t, 2> frame = {0xAB, 0xCD};
  std::uint32_t jumbo = 1;
  std::array<char, 1> empty = {};
  std::array<char, 3> full = {'a', 'b', 'c'};
  EXPECT_EQ(IGMP_DispatchPacket(frame.data(), 2, 100, 1), 0U);
  EXPECT_EQ(MLD_DispatchPacket(frame.data(), 2, 100, 1), 0U);
  EXPECT_EQ(DHCPRELAY_HandlePacket(frame.data(), 2, 0, 2), 0U);
  EXPECT_EQ(PPPOERELAY_HandlePacket(frame.data(), 2, 0, 2), 0U);
  EXPECT_EQ(devCtl_boardIoctl(1, 0, empty.data(), 0, 5, empty.data()), 0);
  EXPECT_EQ(devCtl_boardIoctl(2, 3, full.data(), 2, 0, nullptr), 0);
  EXPECT_EQ(devCtl_boardIoctl(2, 3, full.data(), 0, 0, full.data()), 0);
  EXPECT_EQ(bcm_port_jumbo_control_set(0, 3, &jumbo), 0);
  EXPECT_THAT(left(), ElementsAre("call IGMP_DispatchPacket(abcd, vid 100, port 1)",
                                  "call MLD_DispatchPacket(abcd, vid 100, port 1)",
                                  "call DHCPRELAY_HandlePacket(abcd, vid 0, port 2)",
                                  "call PPPOERELAY_HandlePacket(abcd, vid 0, port 2)",
                                  "call devCtl_boardIoctl(1, 0, \"\", offset 5, buffer \"\")",
                                  "call devCtl_boardIoctl(2, 3, \"ab\", offset 0, buffer none)",
                                  "call devCtl_boardIoctl(2, 3, \"\", offset 0, buffer not empty)",
                                  "call bcm_port_jumbo_control_set(0, 3, 1)"));
}

std::atomic<int> taskRuns = 0;

void CountRun() {
  ++taskRuns;
}

TEST(PlatformTasks, SpawnedTask_RunsOnAThreadOnlyWhenTheConfigurationSaysSo) {
  for (const bool run : {false, true}) {
    taskRuns = 0;
    {
      UnitConfig config;
      config.platform.runTasks = run;
      const Unit unit(config);
      EXPECT_EQ(VOS_TaskSpawn("task", 1, 2, 3, 4, CountRun, 5), 0);
      EXPECT_THAT(hal_test::Left(unit),
                  ElementsAre("call VOS_TaskSpawn(\"task\", 1, 2, 3, 4, entry, 5)"));
    }
    EXPECT_EQ(taskRuns, run ? 1 : 0);
  }
}

TEST(PlatformTasks, SpawnFailing_RunsNothing) {
  taskRuns = 0;
  {
    UnitConfig config;
    config.platform.runTasks = true;
    config.platform.taskSpawnFails = true;
    const Unit unit(config);
    EXPECT_NE(VOS_TaskSpawn("task", 1, 2, 3, 4, CountRun, 5), 0);
    EXPECT_TRUE(unit.platform().tasks().empty());
  }
  EXPECT_EQ(taskRuns, 0);
}

TEST(PlatformWithoutUnit, EveryCallFailsHarmlessly) {
  std::array<std::uint8_t, 6> mac = {};
  std::array<char, 4> text = {};
  std::uint32_t mode = 3;
  EXPECT_LT(VOS_OpenDevice("BrmgrDev"), 1);
  EXPECT_NE(VOS_TaskSpawn("task", 0, 0, 0, 0, CountRun, 0), 0);
  EXPECT_NE(VOS_System("%s", "true"), 0);
  EXPECT_NE(VOS_MsgSend(1, 2, mac.data(), 6), 0U);
  EXPECT_NE(VOS_OntInfoGetMac(mac.data(), mac.data()), 0U);
  EXPECT_EQ(LOG_Create("module", 1, -1), LOG_ID_NONE);
  EXPECT_EQ(HC_GetEthPortNum(), 0U);
  EXPECT_EQ(SF_GetFeature(27), 0U);
  EXPECT_NE(BCM6838X_sysGetBoardId(text.data(), 4), 0U);
  EXPECT_NE(BCM6838X_sysGetFactoryMode(&mode), 0U);
  EXPECT_EQ(mode, 0U);
  EXPECT_EQ(TIMER_GetCurrent(), 0U);
  _LOG_Print(0, 1, "file", 1, "text");
  VOS_TaskDelay(1);
  VOS_Reboot(1);
  VOS_ResetDefaultCfg();
}

}  // namespace
}  // namespace virtual_onu
