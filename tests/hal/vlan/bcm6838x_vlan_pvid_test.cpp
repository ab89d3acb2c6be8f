/// @file
/// Tests of port VID, priority and CTC mode.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <bcm6838x_vlan.h>

#include "hal/vlan/chip_content.h"
#include "hal/vlan/vlan_port_test.h"

namespace hal_test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

const std::string kPlace = "log 1 hal/switch/bcm6838x/src/bcm6838x_vlan_pvid.cpp ";

std::string Refused(const std::string& operation, std::uint32_t port) {
  return "log 4 hal/switch/bcm6838x/src/bcm6838x_vlan_config.cpp [" + operation + " <line>] port " +
         std::to_string(port) + " is out of range\r\n";
}

std::string PvidLogged(std::uint32_t port, std::uint32_t pvid) {
  return kPlace + "###### BCM6838X_SetPortPvid(<line>) port=" + std::to_string(port) +
         ", pvid=" + std::to_string(pvid) + "\r\n";
}

std::string PriorityLogged(std::uint32_t port, std::uint32_t priority) {
  return kPlace + "###### BCM6838X_SetPortPriority(<line>) port=" + std::to_string(port) +
         ", pri=" + std::to_string(priority) + "\r\n";
}

class PortPvidTest : public VlanPortTest {};

// Required: pvid-without-mode-hands-over
TEST_F(PortPvidTest, SetPvid_WithoutMode_SendsTheConfigurationAlone) {
  EXPECT_EQ(BCM6838X_SetPortPvid(2, 100), 0U);
  EXPECT_THAT(left(), ElementsAre(PvidLogged(2, 100), Config().pvid(2, 100).sent()));
}

// Required: unchanged-pvid-returns-2
TEST_F(PortPvidTest, SetPvid_SameValue_ReturnsTwoAndSendsNothing) {
  BCM6838X_SetPortPvid(2, 100);
  forget();
  EXPECT_EQ(BCM6838X_SetPortPvid(2, 100), 2U);
  EXPECT_THAT(left(), ElementsAre(PvidLogged(2, 100)));
}

// Required: unchanged-pvid-returns-2
TEST_F(PortPvidTest, SetPvid_ZeroAtFirst_IsTheSameValue) {
  EXPECT_EQ(BCM6838X_SetPortPvid(2, 0), 2U);
  EXPECT_EQ(configNow(), Config().sent()) << "no TPID either";
}

TEST_F(PortPvidTest, SetPvid_OnlyLowBitsCount) {
  EXPECT_EQ(BCM6838X_SetPortPvid(0xFFFFFF02, 0xABCD0064), 0U);
  EXPECT_THAT(left(), ElementsAre(PvidLogged(2, 100), Config().pvid(2, 100).sent()));
  EXPECT_EQ(BCM6838X_SetPortPvid(2, 0x10064), 2U);
  EXPECT_EQ(BCM6838X_SetPortPvid(2, 0xFFFF), 0U) << "any 16 bits are taken";
  EXPECT_EQ(configNow(), Config().pvid(2, 0xFFFF).sent());
}

TEST_F(PortPvidTest, SetPvid_InTagMode_ReplacesThePvidFlow) {
  BCM6838X_SetPortPvid(1, 100);
  BCM6838X_SetVlanTag(1);
  forget();
  EXPECT_EQ(BCM6838X_SetPortPvid(1, 200), 0U);
  EXPECT_EQ(left().front(), PvidLogged(1, 200));
  EXPECT_THAT(commandNames(),
              ElementsAre("FLOW_DEL", "VLAN_ACTION_DEL", "FLOW_DEL", "VLAN_ACTION_ADD", "FLOW_ADD",
                          "FLOW_ADD", "VLAN_REBUILD"));
  EXPECT_EQ(commands().back(), Config().mode(1, Config::kTag).pvid(1, 200).sent());
  EXPECT_THAT(ChipContent(unit), Contains(HasSubstr("VLAN object wan0_200 ")));
  EXPECT_THAT(ChipContent(unit), testing::Not(Contains(HasSubstr("wan0_100"))));
}

TEST_F(PortPvidTest, SetPriority_InTagMode_ReplacesThePvidFlow) {
  BCM6838X_SetPortPvid(1, 100);
  BCM6838X_SetVlanTag(1);
  forget();
  EXPECT_EQ(BCM6838X_SetPortPriority(1, 5), 0U);
  EXPECT_EQ(left().front(), PriorityLogged(1, 5));
  EXPECT_THAT(commandNames(),
              ElementsAre("FLOW_DEL", "VLAN_ACTION_DEL", "FLOW_DEL", "VLAN_ACTION_ADD", "FLOW_ADD",
                          "FLOW_ADD", "VLAN_REBUILD"));
  EXPECT_EQ(commands().back(), Config().mode(1, Config::kTag).pvid(1, 100).priority(1, 5).sent());
}

TEST_F(PortPvidTest, SetPriority_WithoutMode_ChangesThePriorityAlone) {
  EXPECT_EQ(BCM6838X_SetPortPriority(2, 5), 0U);
  EXPECT_THAT(left(), ElementsAre(PriorityLogged(2, 5), Config().priority(2, 5).sent()));
}

// Required: unchanged-pvid-returns-2
TEST_F(PortPvidTest, SetPriority_SameValue_ReturnsTwoAndSendsNothing) {
  EXPECT_EQ(BCM6838X_SetPortPriority(2, 0), 2U);
  BCM6838X_SetPortPriority(2, 5);
  forget();
  EXPECT_EQ(BCM6838X_SetPortPriority(2, 5), 2U);
  EXPECT_THAT(left(), ElementsAre(PriorityLogged(2, 5)));
}

TEST_F(PortPvidTest, SetPriority_OnlyLowBitsCount) {
  EXPECT_EQ(BCM6838X_SetPortPriority(0x102, 0xFFFFFFFF), 0U);
  EXPECT_THAT(left(), ElementsAre(PriorityLogged(2, 255), Config().priority(2, 255).sent()));
  EXPECT_EQ(BCM6838X_SetPortPriority(2, 0x1FF), 2U);
  EXPECT_EQ(BCM6838X_SetPortPriority(2, 0x100), 0U);
  EXPECT_EQ(configNow(), Config().priority(2, 0).sent());
}

TEST_F(PortPvidTest, PortOutOfRange_IsRefused) {
  int rounds = 0;
  for (const std::uint32_t port : {0U, 33U, 255U}) {
    forget();
    EXPECT_EQ(BCM6838X_SetPortPvid(port, 100), 1U);
    EXPECT_EQ(BCM6838X_SetPortPriority(port, 5), 1U);
    EXPECT_THAT(left(),
                ElementsAre(PvidLogged(port, 100), Refused("BCM6838X_SetPortPvid", port),
                            PriorityLogged(port, 5), Refused("BCM6838X_SetPortPriority", port)));
    ++rounds;
  }
  EXPECT_EQ(rounds, 3);
  EXPECT_EQ(configNow(), Config().sent());
}

/// Whether a mode's rules are rebuilt when port VID or priority change.
bool RebuildsInMode(std::uint32_t code) {
  return code != Config::kTransparent && code != Config::kZteTrunk;
}

class PortPvidModeTest : public VlanPortTest, public testing::WithParamInterface<ModeSetter> {
 protected:
  /// Expects the change, just made, to have sent what the mode asks for.
  void expectSent(const std::string& config) const {
    if (RebuildsInMode(GetParam().code)) {
      EXPECT_EQ(commands().back(), config);
      EXPECT_GE(CountOf(commands(), "FLOW_DEL"), 1);
      EXPECT_GE(CountOf(commands(), "FLOW_ADD"), 1);
    } else {
      EXPECT_THAT(commands(), IsEmpty());
      EXPECT_THAT(shellLines(), IsEmpty());
    }
  }
};

// Required: pvid-of-transparent-not-sent
TEST_P(PortPvidModeTest, SetPvid_RebuildsWhereTheRulesUseIt) {
  GetParam().set(1);
  forget();
  EXPECT_EQ(BCM6838X_SetPortPvid(1, 100), 0U);
  const std::string config = Config().mode(1, GetParam().code).pvid(1, 100).sent();
  expectSent(config);
  EXPECT_EQ(configNow(), config);
}

// Required: pvid-of-transparent-not-sent
TEST_P(PortPvidModeTest, SetPriority_RebuildsWhereTheRulesUseIt) {
  GetParam().set(1);
  forget();
  EXPECT_EQ(BCM6838X_SetPortPriority(1, 3), 0U);
  const std::string config = Config().mode(1, GetParam().code).priority(1, 3).sent();
  expectSent(config);
  EXPECT_EQ(configNow(), config);
}

// Required: pvid-of-transparent-not-sent
TEST_P(PortPvidModeTest, SetPvid_IsCommitted) {
  // A trunk entry that was deleted but not applied is lost by any commit: its rules stay.
  AddTrunk(2, 300);
  BCM6838X_SetVlanTrunk(2);
  GetParam().set(1);
  DelTrunk(2, 300);
  BCM6838X_SetPortPvid(1, 100);
  BCM6838X_ApplyVlan(2);
  EXPECT_THAT(ChipContent(unit), Contains(HasSubstr("outerVid=300 ")));
}

INSTANTIATE_TEST_SUITE_P(Modes, PortPvidModeTest, testing::ValuesIn(kModeSetters),
                         [](const testing::TestParamInfo<ModeSetter>& test) {
                           return std::string(test.param.name).substr(9);
                         });

/// A mode code: the setter that it calls, or null, the mode that is stored, and its command.
struct CtcCase {
  std::uint32_t code;
  const char* setter;
  std::uint32_t stored;
  const char* command;
};

void PrintTo(const CtcCase& param, std::ostream* out) {
  *out << "code " << param.code;
}

class CtcModeTest : public VlanPortTest, public testing::WithParamInterface<CtcCase> {
 protected:
  /// The command that names a port.
  static std::string command(std::uint8_t port = 2) {
    return Sent(GetParam().command, 0, WireRecord(1).u8(0, port));
  }

  /// The log lines of mode setters.
  [[nodiscard]] std::vector<std::string> setterLines() const {
    std::vector<std::string> found;
    for (const std::string& line : logLines()) {
      if (line.find("###### ") != std::string::npos) {
        found.push_back(line);
      }
    }
    return found;
  }
};

// Required: ctc-codes-fold, ctc-command-b-passes-all, ctc-unknown-names-port
TEST_P(CtcModeTest, CallsTheSetterThenNamesThePort) {
  EXPECT_EQ(BCM6838X_SetPortCtcMode(0x102, GetParam().code), 0U);
  EXPECT_EQ(left().back(), command());
  if (GetParam().setter == nullptr) {
    EXPECT_THAT(left(), ElementsAre(command()));
  } else {
    EXPECT_THAT(setterLines(), ElementsAre(HasSubstr(std::string("###### BCM6838X_") +
                                                     GetParam().setter + "(<line>)")));
    EXPECT_EQ(commandNames().at(commands().size() - 2), "VLAN_REBUILD");
  }
  EXPECT_EQ(configNow(), Config().mode(2, GetParam().stored).sent());
}

TEST_P(CtcModeTest, Again_NamesThePortAgainAndRebuildsNothing) {
  BCM6838X_SetPortCtcMode(2, GetParam().code);
  forget();
  EXPECT_EQ(BCM6838X_SetPortCtcMode(2, GetParam().code), 0U);
  EXPECT_THAT(commands(), ElementsAre(command()));
}

TEST_P(CtcModeTest, FurtherArguments_AreNotUsed) {
  EXPECT_EQ(BCM6838X_SetPortCtcMode(2, GetParam().code, 7U, 8U), 0U);
  EXPECT_EQ(left().back(), command());
}

TEST_P(CtcModeTest, CommandRefused_IsTheResult) {
  BCM6838X_SetPortCtcMode(2, GetParam().code);
  unit.device().faults().refuseNth(1);
  EXPECT_EQ(BCM6838X_SetPortCtcMode(2, GetParam().code), 8U);
}

TEST_P(CtcModeTest, PortOutOfRange_IsRefusedByACodeWithAModeAlone) {
  int rounds = 0;
  for (const std::uint8_t port : Ports({0, 33, 255})) {
    forget();
    const std::uint32_t result = BCM6838X_SetPortCtcMode(port, GetParam().code);
    if (GetParam().setter == nullptr) {
      EXPECT_EQ(result, 0U);
      EXPECT_THAT(left(), ElementsAre(command(port)));
    } else {
      EXPECT_EQ(result, 1U);
      EXPECT_THAT(left(), ElementsAre(Refused("BCM6838X_SetPortCtcMode", port)));
    }
    ++rounds;
  }
  EXPECT_EQ(rounds, 3);
  EXPECT_EQ(configNow(), Config().sent());
}

// Required: ctc-unknown-names-port
TEST_F(PortPvidTest, CtcMode_UnknownCodeOutOfRange_SendsTheLowByteOfThePortAndLogsNothing) {
  EXPECT_EQ(BCM6838X_SetPortCtcMode(0x121, 7), 0U);
  EXPECT_THAT(left(), ElementsAre(Sent("CTC_MODE_A", 0, WireRecord(1).u8(0, 0x21))));
}

INSTANTIATE_TEST_SUITE_P(
    Codes, CtcModeTest,
    testing::Values(
        CtcCase{BCM6838X_VLAN_MODE_TRANSPARENT, "SetVlanTransparent",
                BCM6838X_VLAN_MODE_TRANSPARENT, "CTC_MODE_B"},
        CtcCase{BCM6838X_VLAN_MODE_TAG, "SetVlanTag", BCM6838X_VLAN_MODE_TAG, "CTC_MODE_A"},
        CtcCase{BCM6838X_VLAN_MODE_TRANSLATION, "SetVlanTranslation",
                BCM6838X_VLAN_MODE_TRANSLATION, "CTC_MODE_A"},
        CtcCase{BCM6838X_VLAN_MODE_TRANSLATION_2, "SetVlanTranslation",
                BCM6838X_VLAN_MODE_TRANSLATION, "CTC_MODE_A"},
        CtcCase{BCM6838X_VLAN_MODE_TRUNK, "SetVlanTrunk", BCM6838X_VLAN_MODE_TRUNK, "CTC_MODE_A"},
        CtcCase{BCM6838X_VLAN_MODE_HYBRID, "SetVlanTrunk", BCM6838X_VLAN_MODE_TRUNK, "CTC_MODE_A"},
        CtcCase{BCM6838X_VLAN_MODE_ZTE_TRUNK, "SetZteVlanTrunk", BCM6838X_VLAN_MODE_ZTE_TRUNK,
                "CTC_MODE_A"},
        CtcCase{BCM6838X_VLAN_MODE_ZTE_STACKING, "SetZteStacking", BCM6838X_VLAN_MODE_ZTE_STACKING,
                "CTC_MODE_B"},
        CtcCase{BCM6838X_VLAN_MODE_BDCOM_STACKING, "SetBdcomStacking",
                BCM6838X_VLAN_MODE_BDCOM_STACKING, "CTC_MODE_A"},
        CtcCase{7, nullptr, BCM6838X_VLAN_MODE_NONE, "CTC_MODE_A"},
        CtcCase{BCM6838X_VLAN_MODE_NONE, nullptr, BCM6838X_VLAN_MODE_NONE, "CTC_MODE_A"},
        CtcCase{0x100, nullptr, BCM6838X_VLAN_MODE_NONE, "CTC_MODE_A"},
        CtcCase{0xFFFFFFFF, nullptr, BCM6838X_VLAN_MODE_NONE, "CTC_MODE_A"}),
    [](const testing::TestParamInfo<CtcCase>& test) {
      return "Code" + std::to_string(test.param.code);
    });

// The other cases name the modes; this one holds their numbers, which the driver knows too.
TEST(PortCtcMode, Modes_HaveTheirNumbers) {
  std::vector<std::pair<std::string, std::uint32_t>> codes;
#define NOTE_MODE(code, name, text) codes.emplace_back(#name, BCM6838X_VLAN_MODE_##name);
  BCM6838X_VLAN_MODE_LIST(NOTE_MODE)
#undef NOTE_MODE
  EXPECT_THAT(codes, ElementsAre(Pair("TRANSPARENT", 0), Pair("TAG", 1), Pair("TRANSLATION", 2),
                                 Pair("TRANSLATION_2", 3), Pair("TRUNK", 4), Pair("ZTE_TRUNK", 19),
                                 Pair("HYBRID", 20), Pair("ZTE_STACKING", 160),
                                 Pair("BDCOM_STACKING", 253), Pair("NONE", 255)));
}

// Required: ctc-codes-fold
TEST_F(PortPvidTest, CtcMode_TwentyThenFour_RebuildsOnce) {
  EXPECT_EQ(BCM6838X_SetPortCtcMode(2, 20), 0U);
  forget();
  EXPECT_EQ(BCM6838X_SetPortCtcMode(2, 4), 0U);
  EXPECT_THAT(commandNames(), ElementsAre("CTC_MODE_A"));
}

TEST(PortCtcMode, DeviceNotOpen_IsTheResult) {
  const virtual_onu::Unit unit;
  EXPECT_EQ(BCM6838X_SetPortCtcMode(2, 7), 10U);
}

}  // namespace
}  // namespace hal_test
