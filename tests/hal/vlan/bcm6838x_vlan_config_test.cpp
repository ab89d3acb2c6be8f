/// @file
/// Tests of the start-up of the VLAN area, of the mode setters, and of clear, rebuild and apply as
/// the driver and the shell see them.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <bcm6838x_port.h>
#include <bcm6838x_vlan.h>
#include <hal_bcm6838x.h>

#include "hal/vlan/chip_content.h"
#include "hal/vlan/vlan_port_test.h"

namespace hal_test {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

const std::string kPlace = "hal/switch/bcm6838x/src/bcm6838x_vlan_rebuild.cpp ";
const std::string kConfigPlace = "hal/switch/bcm6838x/src/bcm6838x_vlan_config.cpp ";

const std::string kDefaultAction =
    Sent("VLAN_ACTION_ADD", 1, WireRecord(24).u32(0, 4).u32(20, 0xFFFFFFFF));

std::string AdminSent(std::uint32_t port, std::uint8_t enable) {
  return Sent("PORT_ADMIN", 0, WireRecord(48).u32(0, port + 1).u8(44, enable));
}

std::string Refused(const std::string& operation, std::uint32_t port) {
  return "log 4 " + kConfigPlace + "[" + operation + " <line>] port " + std::to_string(port) +
         " is out of range\r\n";
}

/// The shell line that attaches the default action to a port.
std::string StripAction(const std::string& index) {
  return "vlan_action={vlan_action/dir=ds,index=" + index + "}";
}

class InitVlanTest : public VlanPortTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    ASSERT_EQ(BCM6838X_RdpaIcInit(), 0U);
    forget();
  }

  /// The shell lines with which ZTE stacking attaches the default action.
  std::vector<std::string> stripActionsOfStacking() {
    forget();
    BCM6838X_SetZteStacking(1);
    std::vector<std::string> found;
    for (const std::string& line : shellLines()) {
      if (line.find("port_action") != std::string::npos) {
        found.push_back(line);
      }
    }
    return found;
  }
};

TEST_F(InitVlanTest, CreatesTheDefaultActionAndNothingElse) {
  EXPECT_EQ(BCM6838X_InitVlan(), 0U);
  EXPECT_THAT(left(), ElementsAre(kDefaultAction));
}

TEST_F(InitVlanTest, GivesEveryPortOfTheUnitNoMode) {
  BCM6838X_InitVlan();
  EXPECT_EQ(configNow(), Config(4).sent());
}

// Required: missing-ports-have-mode-0
TEST_F(InitVlanTest, RecordsBeyondThePortCount_KeepModeZero) {
  unit.platform().config().ethPorts = 2;
  BCM6838X_InitVlan();
  EXPECT_EQ(configNow(2), Config(2).sent());
}

TEST_F(InitVlanTest, NoPort_LeavesEveryRecordZero) {
  unit.platform().config().ethPorts = 0;
  BCM6838X_InitVlan();
  forget();
  BCM6838X_RebuildVlanRule(1);
  EXPECT_EQ(commands().back(), Config(0).sent());
  EXPECT_EQ(CountOf(commands(), "FLOW_ADD"), 17 + 3) << "mode 0 is transparent";
}

TEST_F(InitVlanTest, MorePortsThanTheTablesHold_FillsTheTables) {
  unit.platform().config().ethPorts = 200;
  EXPECT_EQ(BCM6838X_InitVlan(), 0U);
  EXPECT_EQ(configNow(32), Config(32).sent());
}

TEST_F(InitVlanTest, Again_ClearsTheRecordsOfThePortsAndLeavesTheOthers) {
  BCM6838X_InitVlan();
  for (const std::uint8_t port : Ports({1, 4, 5, 32})) {
    AddTrunk(port, 100);
    AddTranslation(port, 10, 20);
    BCM6838X_SetPortPriority(port, 5);
  }
  BCM6838X_InitVlan();
  Config expected(4);
  for (const std::uint32_t port : {5U, 32U}) {
    expected.trunk(port, 0, 100).translation(port, 0, 10, 20, 0, 0).priority(port, 5);
  }
  EXPECT_EQ(configNow(), expected.sent());
}

/// What the platform says to be its number of ports, one answer a question, and which ports'
/// records are cleared then: those up to the first that is beyond the number just said.
struct ChangingPorts {
  std::vector<std::uint32_t> answers;
  std::uint32_t cleared;
};

// Required: port-count-asked-each-round
TEST_F(InitVlanTest, NumberOfPorts_IsAskedAnewForEachRecord) {
  int rounds = 0;
  for (const ChangingPorts& row : std::vector<ChangingPorts>{
           {{4, 4, 2}, 2}, {{1, 2, 3, 3}, 3}, {{4, 1}, 1}, {{0}, 0}, {{1, 4, 4, 4, 4}, 4}}) {
    BCM6838X_InitVlan();
    Config expected(4);
    for (std::uint32_t port = 1; port <= 4; ++port) {
      BCM6838X_SetPortPriority(port, 5);
      if (port > row.cleared) {
        expected.priority(port, 5);
      }
    }
    std::size_t asked = 0;
    unit.platform().onEthPortsAsked([&] { return row.answers.at(asked++); });
    EXPECT_EQ(BCM6838X_InitVlan(), 0U);
    unit.platform().onEthPortsAsked({});
    EXPECT_EQ(asked, row.answers.size());
    EXPECT_EQ(configNow(), expected.sent()) << rounds;
    ++rounds;
  }
  EXPECT_EQ(rounds, 5);
}

TEST_F(InitVlanTest, DefaultAction_IsWhatStackingAttaches) {
  VlanActionRule other = {};
  other.tag[0].tpid = 0x8100;
  BCM6838X_AddVlanAction(other, 1);
  BCM6838X_InitVlan();
  EXPECT_THAT(stripActionsOfStacking(),
              AllOf(SizeIs(2), testing::Each(HasSubstr(StripAction("1")))));
}

TEST_F(InitVlanTest, DefaultActionRefusedAtFirst_ThereIsNone) {
  unit.device().faults().refuseNth(1);
  EXPECT_EQ(BCM6838X_InitVlan(), 0U);
  EXPECT_EQ(configNow(), Config(4).sent()) << "the rest is done all the same";
  EXPECT_THAT(stripActionsOfStacking(),
              AllOf(SizeIs(2), testing::Each(HasSubstr(StripAction("-1")))));
}

// Required: default-action-kept-on-refusal
TEST_F(InitVlanTest, DefaultActionRefusedLater_TheEarlierOneStays) {
  BCM6838X_InitVlan();
  VlanActionRule other = {};
  other.tag[0].tpid = 0x8100;
  BCM6838X_AddVlanAction(other, 1);
  unit.device().faults().refuseNth(1);
  EXPECT_EQ(BCM6838X_InitVlan(), 0U);
  EXPECT_THAT(stripActionsOfStacking(),
              AllOf(SizeIs(2), testing::Each(HasSubstr(StripAction("0")))));
}

TEST_F(InitVlanTest, EveryCommandRefused_PreparesTheTables) {
  unit.device().faults().refuseFrom(1);
  EXPECT_EQ(BCM6838X_InitVlan(), 0U);
  unit.device().faults().clear();
  EXPECT_EQ(configNow(), Config(4).sent());
}

TEST_F(InitVlanTest, ForgetsActionsFlowsAndObjects) {
  VlanActionRule action = {};
  action.tag[0] = {100, 0, 0, 0x8100};
  ASSERT_GE(BCM6838X_AddVlanAction(action, 1), 0);
  ASSERT_GE(BCM6838X_AddDsIngressClass(100, 1, 1), 0);
  BCM6838X_AddWanVlan(1, 100, 10);
  BCM6838X_AddLanVlan(1, 100);
  ASSERT_EQ(BCM6838X_AddUsTag(2, 200, 0), 0);
  BCM6838X_InitVlan();
  EXPECT_EQ(BCM6838X_GetVlanAction(action), -1);
  EXPECT_EQ(BCM6838X_GetDsIngressClass(100, 1), -1);
  forget();
  BCM6838X_DelUsTag(2, 200, 0);
  BCM6838X_DelWanVlan(1, 100, 10);
  BCM6838X_DelLanVlan(1, 100);
  EXPECT_THAT(commands(), IsEmpty());
  EXPECT_THAT(shellLines(), IsEmpty());
}

/// A pushing action with that VID.
VlanActionRule PushOf(std::uint32_t vid) {
  VlanActionRule action = {};
  action.tag[0] = {static_cast<std::uint16_t>(vid), 0, 0, 0x8100};
  return action;
}

TEST_F(InitVlanTest, ForgetsEveryEntryOfFullTables) {
  constexpr std::uint32_t kEntries = 256;
  for (std::uint32_t vid = 1; vid <= kEntries; ++vid) {
    ASSERT_GE(BCM6838X_AddVlanAction(PushOf(vid), 1), 0);
    ASSERT_GE(BCM6838X_AddDsIngressClass(vid, 1, 1), 0);
    BCM6838X_AddWanVlan(1, vid, 10);
    BCM6838X_AddLanVlan(1, vid);
  }
  BCM6838X_InitVlan();
  forget();
  for (std::uint32_t vid = 1; vid <= kEntries; ++vid) {
    EXPECT_EQ(BCM6838X_GetVlanAction(PushOf(vid)), -1) << vid;
    EXPECT_EQ(BCM6838X_GetDsIngressClass(vid, 1), -1) << vid;
    BCM6838X_DelWanVlan(1, vid, 10);
    BCM6838X_DelLanVlan(1, vid);
  }
  EXPECT_THAT(commands(), IsEmpty());
  EXPECT_THAT(shellLines(), IsEmpty());
}

class ModeSetterTest : public VlanPortTest, public testing::WithParamInterface<ModeSetter> {
 protected:
  static std::uint32_t set(std::uint32_t port) { return GetParam().set(port); }

  /// What the setter logs first.
  static std::string logged(std::uint32_t port) {
    const bool comma = GetParam().code == Config::kTrunk;
    return "log 1 " + kPlace + "###### " + GetParam().name + "(<line>)" + (comma ? "," : "") +
           " port=" + std::to_string(port) + "\r\n";
  }
};

// Required: trunk-setter-logs-a-comma
TEST_P(ModeSetterTest, LogsStoresTheCodeAndSendsTheConfigurationLast) {
  EXPECT_EQ(set(2), 0U);
  EXPECT_EQ(left().front(), logged(2));
  EXPECT_EQ(left().back(), Config().mode(2, GetParam().code).sent());
  EXPECT_EQ(CountOf(commands(), "VLAN_REBUILD"), 1);
}

TEST_P(ModeSetterTest, FirstModeAfterTheStart_RemovesNothing) {
  EXPECT_EQ(set(1), 0U);
  EXPECT_EQ(CountOf(commands(), "FLOW_DEL"), 0);
  EXPECT_EQ(CountOf(commands(), "VLAN_ACTION_DEL"), 0);
  EXPECT_THAT(shellLines(), Not(Contains(HasSubstr("bs /b/d "))));
  EXPECT_THAT(shellLines(), Not(Contains(HasSubstr("transparent=no"))));
}

// Required: same-mode-does-nothing
TEST_P(ModeSetterTest, ModeThatThePortHas_LogsAndDoesNothingElse) {
  set(2);
  forget();
  EXPECT_EQ(set(2), 0U);
  EXPECT_THAT(left(), ElementsAre(logged(2)));
}

TEST_P(ModeSetterTest, OnlyTheLowEightBitsNameThePort) {
  EXPECT_EQ(set(0xABCDEF03), 0U);
  EXPECT_EQ(left().front(), logged(3));
  EXPECT_EQ(left().back(), Config().mode(3, GetParam().code).sent());
}

TEST_P(ModeSetterTest, PortOutOfRange_IsRefusedAndNothingIsSent) {
  int rounds = 0;
  for (const std::uint32_t port : {0U, 33U, 255U, 0x100U}) {
    forget();
    EXPECT_EQ(set(port), 1U);
    EXPECT_THAT(left(), ElementsAre(logged(port & 0xFF), Refused(GetParam().name, port & 0xFF)));
    ++rounds;
  }
  EXPECT_EQ(rounds, 4);
  EXPECT_EQ(configNow(), Config().sent());
}

TEST_P(ModeSetterTest, PortWithoutInterface_IsSwitched) {
  // Its record holds mode 0 after the start, so that only the other setters change anything.
  EXPECT_EQ(set(32), 0U);
  if (GetParam().code == Config::kTransparent) {
    EXPECT_THAT(commands(), IsEmpty());
  } else {
    EXPECT_EQ(left().back(), Config().mode(32, GetParam().code).sent());
  }
}

TEST_P(ModeSetterTest, EveryCommandRefused_SwitchesAllTheSame) {
  unit.device().faults().refuseFrom(1);
  EXPECT_EQ(set(2), 0U);
  unit.device().faults().clear();
  EXPECT_EQ(configNow(), Config().mode(2, GetParam().code).sent());
  forget();
  EXPECT_EQ(set(2), 0U);
  EXPECT_THAT(commands(), IsEmpty()) << "the port has the mode";
}

INSTANTIATE_TEST_SUITE_P(Modes, ModeSetterTest, testing::ValuesIn(kModeSetters),
                         [](const testing::TestParamInfo<ModeSetter>& test) {
                           return std::string(test.param.name).substr(9);
                         });

class VlanConfigTest : public VlanPortTest {};

TEST_F(VlanConfigTest, SetVlanTransparent_InNormalMode_BuildsTheFlowsOfEveryPriority) {
  BCM6838X_SetVlanTransparent(1);
  EXPECT_EQ(CountOf(commands(), "FLOW_ADD"), 17 + 3);
}

TEST_F(VlanConfigTest, SetVlanTransparent_InPerformanceMode_BuildsOneFlowEachWay) {
  unit.platform().setPerformanceMarker(true);
  testing::internal::CaptureStdout();
  BCM6838X_Init();
  testing::internal::GetCapturedStdout();
  forget();
  BCM6838X_SetVlanTransparent(1);
  EXPECT_THAT(commandNames(), ElementsAre("FLOW_ADD", "FLOW_ADD", "VLAN_REBUILD"));
  EXPECT_THAT(OfKind(left(), "log"), Contains(HasSubstr("BCM6838X_AddDsIngressClass_Perf")));
}

TEST_F(VlanConfigTest, SetMode_RemovesTheOldRulesThenCreatesTheNewOnes) {
  BCM6838X_SetPortPvid(1, 100);
  BCM6838X_SetVlanTag(1);
  forget();
  BCM6838X_SetVlanTrunk(1);
  EXPECT_THAT(commandNames(),
              ElementsAre("FLOW_DEL", "VLAN_ACTION_DEL", "FLOW_DEL", "VLAN_ACTION_ADD", "FLOW_ADD",
                          "FLOW_ADD", "VLAN_REBUILD"));
}

// Required: rebuild-hands-over-any-mode
TEST_F(VlanConfigTest, Rebuild_OfAPortWithoutMode_SendsTheConfigurationAlone) {
  EXPECT_EQ(BCM6838X_RebuildVlanRule(0x101), 0U);
  EXPECT_THAT(left(), ElementsAre(Config().sent()));
}

TEST_F(VlanConfigTest, Clear_OfAPortWithoutMode_DoesNothing) {
  EXPECT_EQ(BCM6838X_ClearVlanRule(0x101), 0U);
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(VlanConfigTest, ClearAndRebuild_ChangeNoConfiguration) {
  BCM6838X_SetPortPvid(1, 100);
  BCM6838X_SetVlanTag(1);
  const std::vector<std::string> before = ChipContent(unit);
  const std::string config = configNow();
  BCM6838X_ClearVlanRule(1);
  EXPECT_EQ(configNow(), config);
  EXPECT_NE(ChipContent(unit), before);
  BCM6838X_RebuildVlanRule(1);
  EXPECT_EQ(ChipContent(unit), before);
  EXPECT_EQ(configNow(), config);
}

TEST_F(VlanConfigTest, ClearAndRebuild_PortOutOfRange_IsRefused) {
  int rounds = 0;
  for (const std::uint32_t port : {0U, 33U, 255U}) {
    forget();
    EXPECT_EQ(BCM6838X_ClearVlanRule(port), 1U);
    EXPECT_EQ(BCM6838X_RebuildVlanRule(port), 1U);
    EXPECT_THAT(left(), ElementsAre(Refused("BCM6838X_ClearVlanRule", port),
                                    Refused("BCM6838X_RebuildVlanRule", port)));
    ++rounds;
  }
  EXPECT_EQ(rounds, 3);
}

TEST_F(VlanConfigTest, Rebuild_ConfigurationRefused_ReturnsZero) {
  unit.device().faults().refuseNth(1);
  EXPECT_EQ(BCM6838X_RebuildVlanRule(1), 0U);
  EXPECT_THAT(logLines(), ElementsAre(HasSubstr("cmd:158 err:4294967295")));
}

class ApplyVlanTest : public VlanPortTest {
 protected:
  static std::string logged(std::uint32_t port) {
    return "log 1 " + kPlace + "###### BCM6838X_ApplyVlan(<line>) port=" + std::to_string(port) +
           "\r\n";
  }
};

TEST_F(ApplyVlanTest, WithoutMode_TakesThePortDownSendsTheConfigurationAndTakesItUp) {
  EXPECT_EQ(BCM6838X_ApplyVlan(0x202), 0U);
  EXPECT_THAT(left(),
              ElementsAre(logged(2), AdminSent(2, 0), "shell ethctl eth1 reg 0 1940",
                          Config().sent(), AdminSent(2, 1), "shell ethctl eth1 reg 0 1140"));
}

// Required: apply-always-rebuilds
TEST_F(ApplyVlanTest, UnchangedPort_DeletesAndCreatesItsRulesAnew) {
  BCM6838X_SetPortPvid(1, 100);
  BCM6838X_SetVlanTag(1);
  const std::vector<std::string> before = ChipContent(unit);
  forget();
  EXPECT_EQ(BCM6838X_ApplyVlan(1), 0U);
  EXPECT_THAT(commandNames(),
              ElementsAre("PORT_ADMIN", "FLOW_DEL", "VLAN_ACTION_DEL", "FLOW_DEL",
                          "VLAN_ACTION_ADD", "FLOW_ADD", "FLOW_ADD", "VLAN_REBUILD", "PORT_ADMIN"));
  EXPECT_EQ(commands().front(), AdminSent(1, 0));
  EXPECT_EQ(commands().back(), AdminSent(1, 1));
  EXPECT_EQ(ChipContent(unit), before);
}

// Required: apply-leaves-port-up
TEST_F(ApplyVlanTest, PortThatWasDown_IsLeftUp) {
  BCM6838X_SetPortAdminState(1, 0);
  EXPECT_FALSE(unit.device().portTables().of(1).adminUp);
  BCM6838X_ApplyVlan(1);
  EXPECT_TRUE(unit.device().portTables().of(1).adminUp);
  EXPECT_TRUE(unit.phy(1).link());
}

TEST_F(ApplyVlanTest, PortWithoutInterface_IsAppliedWithoutAdministrativeState) {
  EXPECT_EQ(BCM6838X_ApplyVlan(6), 0U);
  EXPECT_EQ(CountOf(commands(), "PORT_ADMIN"), 0);
  EXPECT_EQ(commands().back(), Config().sent());
}

TEST_F(ApplyVlanTest, PortOutOfRange_IsRefused) {
  int rounds = 0;
  for (const std::uint32_t port : {0U, 33U, 255U}) {
    forget();
    EXPECT_EQ(BCM6838X_ApplyVlan(port), 1U);
    EXPECT_THAT(left(), ElementsAre(logged(port), Refused("BCM6838X_ApplyVlan", port)));
    ++rounds;
  }
  EXPECT_EQ(rounds, 3);
}

}  // namespace
}  // namespace hal_test
