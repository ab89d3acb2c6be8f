/// @file
/// Tests of ports that go from one VLAN mode to another: what the old mode had added is gone, with
/// one port and with several that share VLANs, and with commands or shell lines refused on the way.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <ostream>
#include <string>
#include <tuple>
#include <variant>
#include <vector>

#include <bcm6838x_port.h>
#include <bcm6838x_vlan.h>
#include <brmgr_cmd.h>
#include <hal_bcm6838x.h>

#include "hal/vlan/chip_content.h"
#include "hal/vlan/vlan_port_test.h"
#include "support/in_child.h"

namespace hal_test {
namespace {

using testing::Contains;

constexpr std::size_t kModes = std::size(kModeSetters);

/// Port VID, priority and entries in each list of a port. Ports share VLANs and actions. Customer
/// and service VLAN are the same, because BDCOM stacking looks for the port action of one at the
/// flow of the other when it ends.
void Configure(std::uint8_t port) {
  BCM6838X_SetPortPvid(port, 10);
  BCM6838X_SetPortPriority(port, 3);
  AddTrunk(port, 100);
  AddTrunk(port, 200);
  AddTranslation(port, 300, 400, 1, 2);
  AddTranslation(port, 301, 401, 1, 2);
  AddStacking(StackRange(port, 500, 500, 500));
  AddStacking(StackRange(port, 501, 501, 501));
}

/// What the chip holds after `work` on a started unit, in a process of its own.
template <typename Work>
std::vector<std::string> ContentAfter(Work work, std::uint32_t portRevert = 0) {
  const ChildReport report = InChild([&] {
    virtual_onu::UnitConfig config;
    config.platform.portRevert = portRevert;
    virtual_onu::Unit unit(config);
    unit.trace().setRecording(false);
    BCM6838X_Init();
    work(unit);
    return ChipContent(unit);
  });
  EXPECT_TRUE(report.finished);
  return report.lines;
}

using Pair = std::tuple<std::size_t, std::size_t>;

class ModeSwitchTest : public testing::TestWithParam<Pair> {
 protected:
  static const ModeSetter& from() { return kModeSetters[std::get<0>(GetParam())]; }
  static const ModeSetter& to() { return kModeSetters[std::get<1>(GetParam())]; }
};

TEST_P(ModeSwitchTest, OnePort_HoldsWhatTheSecondModeAloneMakes) {
  const auto direct = ContentAfter([](virtual_onu::Unit&) {
    Configure(1);
    to().set(1);
  });
  const auto switched = ContentAfter([](virtual_onu::Unit&) {
    Configure(1);
    from().set(1);
    to().set(1);
  });
  EXPECT_EQ(switched, direct);
  EXPECT_GT(direct.size(), 7U) << "more than the flows and the action of the start";
}

TEST_P(ModeSwitchTest, OfFourPortsThatShareVlans_HoldsWhatTheModesAloneMake) {
  const auto direct = ContentAfter([](virtual_onu::Unit&) {
    for (const std::uint8_t port : Ports({1, 2, 3, 4})) {
      Configure(port);
    }
    to().set(1);
    from().set(2);
    to().set(3);
    from().set(4);
  });
  const auto switched = ContentAfter([](virtual_onu::Unit&) {
    for (const std::uint8_t port : Ports({1, 2, 3, 4})) {
      Configure(port);
      from().set(port);
    }
    to().set(1);
    to().set(2);
    to().set(3);
    from().set(2);
  });
  EXPECT_EQ(switched, direct);
}

TEST_P(ModeSwitchTest, ThereAndBack_LeavesNothingBehind) {
  const auto direct = ContentAfter([](virtual_onu::Unit&) {
    Configure(1);
    from().set(1);
  });
  const auto switched = ContentAfter([](virtual_onu::Unit&) {
    Configure(1);
    for (int round = 0; round < 3; ++round) {
      from().set(1);
      to().set(1);
    }
    from().set(1);
    BCM6838X_ApplyVlan(1);
  });
  EXPECT_EQ(switched, direct);
}

TEST_P(ModeSwitchTest, OnABoardWithReversedPorts_HoldsWhatTheSecondModeAloneMakes) {
  const auto direct = ContentAfter(
      [](virtual_onu::Unit&) {
        Configure(1);
        to().set(1);
      },
      1);
  const auto switched = ContentAfter(
      [](virtual_onu::Unit&) {
        Configure(1);
        from().set(1);
        to().set(1);
      },
      1);
  EXPECT_EQ(switched, direct);
}

std::vector<Pair> Pairs() {
  std::vector<Pair> pairs;
  for (std::size_t from = 0; from < kModes; ++from) {
    for (std::size_t to = 0; to < kModes; ++to) {
      if (from != to) {
        pairs.emplace_back(from, to);
      }
    }
  }
  return pairs;
}

/// "SetVlanTag" without "BCM6838X_Set".
std::string ShortName(const ModeSetter& setter) {
  return std::string(setter.name).substr(12);
}

INSTANTIATE_TEST_SUITE_P(EveryPair, ModeSwitchTest, testing::ValuesIn(Pairs()),
                         [](const testing::TestParamInfo<Pair>& test) {
                           return ShortName(kModeSetters[std::get<0>(test.param)]) + "To" +
                                  ShortName(kModeSetters[std::get<1>(test.param)]);
                         });

/// ZTE trunk mode without VLANs has no rule: what is left then is what the start made.
TEST(ModeBalance, EveryModeOnFourPortsAndBackToNothing_LeavesTheChipAsTheStartDid) {
  const auto start = ContentAfter([](virtual_onu::Unit&) {});
  const auto after = ContentAfter([](virtual_onu::Unit&) {
    for (std::uint8_t port = 1; port <= 4; ++port) {
      Configure(port);
    }
    for (std::uint32_t round = 0; round < kModes; ++round) {
      for (std::uint32_t port = 1; port <= 4; ++port) {
        kModeSetters[(round + port) % kModes].set(port);
      }
    }
    for (std::uint8_t port = 1; port <= 4; ++port) {
      BCM6838X_SetZteVlanTrunk(port);
      DelTrunk(port, 100);
      DelTrunk(port, 200);
      BCM6838X_ApplyVlan(port);
    }
  });
  EXPECT_EQ(after, start);
}

/// The port action stays as long as another port holds the flow of the service VLAN.
// Required: bdcom-detach-by-customer-vid
TEST(ModeBalance, BdcomStackingOfDifferentVids_LeavesItsPortActionOnASharedFlow) {
  const auto stack = [](std::uint8_t port) {
    AddStacking(StackRange(port, 500, 500, 600));
    BCM6838X_SetBdcomStacking(port);
  };
  const auto actionsOf = [](const std::vector<std::string>& content) {
    return std::ranges::count_if(
        content, [](const std::string& line) { return line.starts_with("port action "); });
  };
  EXPECT_EQ(actionsOf(ContentAfter([&](virtual_onu::Unit&) {
              stack(1);
              stack(2);
              BCM6838X_SetVlanTransparent(1);
            })),
            2);
  EXPECT_EQ(actionsOf(ContentAfter([&](virtual_onu::Unit&) {
              stack(1);
              stack(2);
              BCM6838X_SetVlanTransparent(1);
              BCM6838X_SetVlanTransparent(2);
            })),
            0);
}

TEST(ModeBoard, ReversedPorts_AreNamedInReverse) {
  virtual_onu::UnitConfig config;
  config.platform.portRevert = 1;
  const virtual_onu::Unit unit(config);
  BCM6838X_Init();
  BCM6838X_SetVlanTransparent(1);
  BCM6838X_SetVlanTransparent(4);
  BCM6838X_ApplyVlan(1);
  const std::vector<std::string> lines = Left(unit);
  EXPECT_THAT(lines, Contains("shell bs /b/c port/index=lan3 transparent=yes"));
  EXPECT_THAT(lines, Contains("shell bs /b/c port/index=lan3 transparent=no"));
  EXPECT_THAT(lines, Contains("shell bs /b/c port/index=lan0 transparent=yes"));
}

// Faults: what a setter or an apply says when the driver or the shell refuses something, and that
// the library goes on from there.

enum class Victim : std::uint8_t { kCommand, kShellLine };

struct FaultCase {
  ModeSetter setter;
  Victim victim;
  bool onwards;
  bool apply;
};

void PrintTo(const FaultCase& param, std::ostream* out) {
  *out << param.setter.name;
}

/// One entry in each list, so that the rounds stay few.
void ConfigureBriefly() {
  BCM6838X_SetPortPvid(1, 10);
  BCM6838X_SetPortPriority(1, 3);
  AddTrunk(1, 100);
  AddTranslation(1, 300, 400, 1, 2);
  AddStacking(StackRange(1, 500, 500, 600));
}

std::string ConfigOf(const ModeSetter& setter) {
  return Config()
      .mode(1, setter.code)
      .pvid(1, 10)
      .priority(1, 3)
      .trunk(1, 0, 100)
      .translation(1, 0, 300, 400, 1, 2)
      .stackingEnable(1, 1)
      .stacking(1, 0, 2, 500, 600)
      .sent();
}

/// Brings port 1 to where the operation starts from.
void Arrange(const FaultCase& one) {
  BCM6838X_Init();
  ConfigureBriefly();
  if (one.apply) {
    one.setter.set(1);
  } else if (one.setter.code == Config::kTag) {
    BCM6838X_SetVlanTransparent(1);
  } else {
    BCM6838X_SetVlanTag(1);
  }
}

std::uint32_t Run(const FaultCase& one) {
  return one.apply ? BCM6838X_ApplyVlan(1) : one.setter.set(1);
}

/// How many requests of the victim's kind are among the events.
std::size_t CountRequests(const std::vector<virtual_onu::TraceEvent>& events, Victim victim) {
  return victim == Victim::kCommand
             ? virtual_onu::EventsOf<virtual_onu::CommandEvent>(events).size()
             : virtual_onu::EventsOf<virtual_onu::ShellEvent>(events).size();
}

/// Whether a line says that the driver refused something.
bool SaysRefused(const std::vector<virtual_onu::TraceEvent>& events) {
  const auto lines = virtual_onu::EventsOf<virtual_onu::LogEvent>(events);
  return std::ranges::any_of(lines, [](const virtual_onu::LogEvent& line) {
    return line.text.find(" err:4294967295") != std::string::npos;
  });
}

/// The line of the configuration that was sent last.
std::string LastConfig(const virtual_onu::Unit& unit) {
  std::string line;
  for (const virtual_onu::TraceEvent& event : unit.trace().events()) {
    const auto* const command = std::get_if<virtual_onu::CommandEvent>(&event.detail);
    if (command != nullptr && command->code == BRMGR_CMD_VLAN_REBUILD) {
      line = Describe(event);
    }
  }
  return line;
}

/// Runs the operation with the nth request, and those behind it when asked, refused. Returns its
/// result, how many requests it made, whether a line said that one was refused, and what a next
/// operation returns and sends.
std::vector<std::string> RunWithFault(const FaultCase& one, std::uint32_t nth) {
  virtual_onu::Unit unit;
  Arrange(one);
  virtual_onu::FaultPlan& plan =
      one.victim == Victim::kCommand ? unit.device().faults() : unit.shell().faults();
  if (one.onwards) {
    plan.refuseFrom(nth);
  } else {
    plan.refuseNth(nth);
  }
  unit.trace().clear();
  const std::uint32_t result = Run(one);
  const std::vector<virtual_onu::TraceEvent> events = unit.trace().events();
  plan.clear();
  unit.trace().clear();
  const std::uint32_t next = BCM6838X_ApplyVlan(1);
  return {std::to_string(result), std::to_string(CountRequests(events, one.victim)),
          SaysRefused(events) ? "refused" : "", std::to_string(next), LastConfig(unit)};
}

class ModeFaultTest : public testing::TestWithParam<FaultCase> {};

TEST_P(ModeFaultTest, EachRequestRefusedInTurn_ReturnsZeroAndTheNextOperationWorks) {
  const FaultCase& one = GetParam();
  const ChildReport clean = InChild([&] { return RunWithFault(one, 100000); });
  ASSERT_TRUE(clean.finished);
  ASSERT_EQ(clean.lines.size(), 5U);
  EXPECT_EQ(clean.lines[2], "");
  const auto count = static_cast<std::uint32_t>(std::stoul(clean.lines[1]));
  ASSERT_GE(count, 2U);
  const std::vector<std::string> expected = {
      "0", "", one.victim == Victim::kCommand ? "refused" : "", "0", ConfigOf(one.setter)};
  std::uint32_t rounds = 0;
  for (std::uint32_t nth = 1; nth <= count; ++nth, ++rounds) {
    ChildReport report = InChild([&] { return RunWithFault(one, nth); });
    ASSERT_TRUE(report.finished) << nth;
    ASSERT_EQ(report.lines.size(), 5U) << nth;
    report.lines[1] = "";
    EXPECT_EQ(report.lines, expected) << nth;
  }
  EXPECT_EQ(rounds, count);
}

std::vector<FaultCase> FaultCases() {
  std::vector<FaultCase> cases;
  for (const ModeSetter& setter : kModeSetters) {
    cases.push_back({setter, Victim::kCommand, false, false});
    cases.push_back({setter, Victim::kCommand, true, false});
    cases.push_back({setter, Victim::kCommand, false, true});
    cases.push_back({setter, Victim::kShellLine, true, true});
  }
  return cases;
}

INSTANTIATE_TEST_SUITE_P(Setters, ModeFaultTest, testing::ValuesIn(FaultCases()),
                         [](const testing::TestParamInfo<FaultCase>& test) {
                           return ShortName(test.param.setter) +
                                  (test.param.apply ? "Apply" : "Set") +
                                  (test.param.victim == Victim::kCommand ? "Command" : "Shell") +
                                  (test.param.onwards ? "Onwards" : "Once");
                         });

}  // namespace
}  // namespace hal_test
