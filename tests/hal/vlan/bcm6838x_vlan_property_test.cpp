/// @file
/// Random sequences of adds and deletes on the VLAN tables agree with the model. Sequences are
/// generated from a seed, the same on every machine; a failing one is printed in its shortest form.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <ostream>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <bcm6838x_vlan.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>

#include "hal/vlan/vlan_model.h"
#include "support/in_child.h"
#include "support/shortest.h"
#include "unit/unit.h"

namespace hal_test {
namespace {

using Steps = std::vector<VlanStep>;
using virtual_onu::EventsOf;
using virtual_onu::LogEvent;
using virtual_onu::ShellEvent;

/// How many different keys a sequence uses, and how much it adds.
struct Profile {
  std::string name;
  std::uint32_t steps;
  std::uint32_t addPercent;
  std::uint32_t contents;
  std::uint32_t vids;
  std::uint32_t wanVids;
  std::uint32_t ports;
  std::uint32_t lanVids;
};

/// Few keys: they come and go, and counts fall below zero.
const Profile kFew = {"Few", 1500, 36, 6, 3, 3, 3, 3};
/// Many keys: every table is filled to capacity and beyond.
const Profile kMany = {"Many", 4000, 85, 500, 200, 400, 4, 500};
/// One WAN object and port: its list is filled to capacity and beyond.
const Profile kOneList = {"OneList", 5000, 95, 1, 1, 1, 1, 900};

class Generator {
 public:
  Generator(Profile profile, std::uint32_t seed) : profile_(std::move(profile)), random_(seed) {}

  Steps sequence() {
    Steps steps;
    for (std::uint32_t i = 0; i < profile_.steps; ++i) {
      steps.push_back(step());
    }
    return steps;
  }

 private:
  /// 0 to below `limit`; the standard distributions differ from library to library.
  std::uint32_t below(std::uint32_t limit) { return static_cast<std::uint32_t>(random_() % limit); }

  /// Mostly 1 or 2 references; none makes a count that wraps at the first delete.
  std::uint32_t references() { return below(20) == 0 ? 0 : 1 + below(2); }

  VlanStep step() {
    if (below(25) == 0) {
      return {VlanOperation::kRefuseNext, {}};
    }
    const bool adds = below(100) < profile_.addPercent;
    switch (below(4)) {
      case 0:
        return adds ? VlanStep{VlanOperation::kAddAction,
                               {below(profile_.contents), references(), 0}}
                    : VlanStep{VlanOperation::kDelAction,
                               {below(2), below((profile_.contents + 1) / 2), 0}};
      case 1:
        return {adds ? VlanOperation::kAddFlow : VlanOperation::kDelFlow,
                {below(8) == 0 ? 4096 : 1 + below(profile_.vids), below(3), references()}};
      case 2:
        return {
            adds ? VlanOperation::kAddWan : VlanOperation::kDelWan,
            {1 + below(profile_.ports), 1 + below(profile_.wanVids), 1 + below(profile_.lanVids)}};
      default:
        return {adds ? VlanOperation::kAddLan : VlanOperation::kDelLan,
                {1 + below(profile_.ports), 1 + below(profile_.lanVids), 0}};
    }
  }

  Profile profile_;
  std::mt19937 random_;
};

VlanActionRule Rule(std::uint32_t content) {
  const auto vid = static_cast<std::uint16_t>(ContentVid(content));
  return {0x101, {{vid, 0, 0, 0x8100}, {}}, ContentDir(content), 0};
}

std::int64_t CallLibrary(virtual_onu::Unit& unit, const VlanStep& step) {
  const auto& [first, second, third] = step.arguments;
  switch (step.operation) {
    case VlanOperation::kAddAction:
      return BCM6838X_AddVlanAction(Rule(first), second);
    case VlanOperation::kDelAction:
      return BCM6838X_DelVlanAction({0, {}, first, second});
    case VlanOperation::kAddFlow:
      return BCM6838X_AddDsIngressClass(first, second, third);
    case VlanOperation::kDelFlow:
      return BCM6838X_DelDsIngressClass(first, second);
    case VlanOperation::kAddWan:
      return BCM6838X_AddWanVlan(first, second, third);
    case VlanOperation::kDelWan:
      return BCM6838X_DelWanVlan(first, second, third);
    case VlanOperation::kAddLan:
      return BCM6838X_AddLanVlan(first, second);
    case VlanOperation::kDelLan:
      return BCM6838X_DelLanVlan(first, second);
    case VlanOperation::kRefuseNext:
      unit.device().faults().clear();
      unit.device().faults().refuseNth(1);
      break;
  }
  return 0;
}

/// The number behind "num " in the log lines.
std::optional<std::int32_t> LoggedCount(const std::vector<virtual_onu::TraceEvent>& events) {
  std::optional<std::int32_t> count;
  for (const LogEvent& event : EventsOf<LogEvent>(events)) {
    const std::size_t at = event.text.find(" num ");
    if (at != std::string::npos) {
      count = std::stoi(event.text.substr(at + 5));
    }
  }
  return count;
}

VlanOutcome CallAndLook(virtual_onu::Unit& unit, const VlanStep& step) {
  unit.trace().clear();
  VlanOutcome outcome;
  outcome.result = CallLibrary(unit, step);
  const std::vector<virtual_onu::TraceEvent> events = unit.trace().events();
  outcome.count = LoggedCount(events);
  for (const ShellEvent& event : EventsOf<ShellEvent>(events)) {
    outcome.shell.push_back(event.line);
  }
  return outcome;
}

DeviceContent LookAtDevice(virtual_onu::Unit& unit) {
  DeviceContent content;
  const virtual_onu::ChipTables& tables = unit.device().tables();
  for (const std::uint32_t dir : {0U, 1U}) {
    for (const auto& [index, action] : tables.of(dir).actions) {
      content.push_back({false, dir, index, action.tag[0].vid, 0});
    }
  }
  for (const std::uint32_t icIndex : {0U, 1U}) {
    for (const auto& [index, flow] : tables.downstream.classes.at(icIndex).flows) {
      content.push_back({true, icIndex, index, flow.outerVid, flow.vlanNum});
    }
  }
  return content;
}

/// Runs a sequence on a fresh library. Returns nothing when it agrees with the model; otherwise the
/// number of the step, from 0, and what differs.
std::vector<std::string> Disagreement(const Steps& steps, VlanModel model) {
  virtual_onu::Unit unit;
  BCM6838X_InitDrv();
  BCM6838X_RdpaIcInit();
  std::size_t number = 0;
  for (const VlanStep& step : steps) {
    const VlanOutcome expected = model.apply(step);
    const VlanOutcome got = CallAndLook(unit, step);
    if (got != expected) {
      return {std::to_string(number), "expected " + ToText(expected), "got      " + ToText(got)};
    }
    if (LookAtDevice(unit) != model.device()) {
      return {std::to_string(number), "the device holds other objects than expected"};
    }
    ++number;
  }
  return {};
}

/// Disagreement() in a process of its own. One that does not come to its end disagrees too.
std::vector<std::string> Compare(const Steps& steps, const VlanModel& model) {
  ChildReport report = InChild([&] { return Disagreement(steps, model); });
  if (!report.finished) {
    return {std::to_string(steps.size()), "the library did not come to the end of the sequence"};
  }
  return report.lines;
}

/// The shortest sequence that still disagrees with the model, or none when this one agrees.
Steps ShortestDisagreeing(Steps steps, const VlanModel& model) {
  const std::vector<std::string> report = Compare(steps, model);
  if (report.empty()) {
    return {};
  }
  steps.resize(std::min<std::size_t>(steps.size(), std::stoul(report.front()) + 1));
  return Shortest<VlanStep>(steps,
                            [&](const Steps& shorter) { return !Compare(shorter, model).empty(); });
}

std::string Explain(const Steps& steps, const VlanModel& model) {
  std::string text = "shortest failing sequence:\n";
  for (const VlanStep& step : steps) {
    text += "  " + ToText(step) + "\n";
  }
  for (const std::string& line : Compare(steps, model)) {
    text += line + "\n";
  }
  return text;
}

struct Case {
  Profile profile;
  std::uint32_t seed;
};

void PrintTo(const Case& param, std::ostream* out) {
  *out << param.profile.name << ", seed " << param.seed;
}

class VlanPropertyTest : public testing::TestWithParam<Case> {};

TEST_P(VlanPropertyTest, AgreesWithTheModel) {
  const Steps steps = Generator(GetParam().profile, GetParam().seed).sequence();
  ASSERT_EQ(steps.size(), GetParam().profile.steps);
  const Steps failing = ShortestDisagreeing(steps, VlanModel());
  EXPECT_TRUE(failing.empty()) << Explain(failing, VlanModel());
}

std::vector<Case> Cases() {
  std::vector<Case> cases;
  for (std::uint32_t seed = 1; seed <= 10; ++seed) {
    cases.push_back({kFew, seed});
  }
  for (std::uint32_t seed = 1; seed <= 4; ++seed) {
    cases.push_back({kMany, seed});
  }
  cases.push_back({kOneList, 1});
  return cases;
}

std::string CaseName(const testing::TestParamInfo<Case>& info) {
  return info.param.profile.name + std::to_string(info.param.seed);
}

INSTANTIATE_TEST_SUITE_P(Seeds, VlanPropertyTest, testing::ValuesIn(Cases()), CaseName);

/// What an add beyond the capacity of its table shows: nothing is said to the shell, or no index is
/// returned.
bool IsBeyondCapacity(const VlanStep& step, const VlanOutcome& outcome) {
  switch (step.operation) {
    case VlanOperation::kAddAction:
    case VlanOperation::kAddFlow:
      return outcome.result == -1;
    case VlanOperation::kAddWan:
    case VlanOperation::kAddLan:
      return outcome.shell.empty();
    default:
      return false;
  }
}

/// The tables that the profile of many keys is to fill are full for a good part of the sequence;
/// refused commands look the same, but are rare.
TEST(VlanPropertyCoverage, ManyKeys_FillEveryTable) {
  std::map<VlanOperation, int> beyond;
  VlanModel model;
  for (const VlanStep& step : Generator(kMany, 1).sequence()) {
    if (IsBeyondCapacity(step, model.apply(step))) {
      ++beyond[step.operation];
    }
  }
  for (const VlanOperation operation : {VlanOperation::kAddAction, VlanOperation::kAddFlow,
                                        VlanOperation::kAddWan, VlanOperation::kAddLan}) {
    EXPECT_GT(beyond[operation], 100);
  }
}

TEST(VlanPropertySelfTest, AModelThatLacksABehaviour_IsFoundAndShortenedToOneStep) {
  const VlanModel poor(false);
  const Steps failing = ShortestDisagreeing(Generator(kFew, 1).sequence(), poor);
  ASSERT_EQ(failing.size(), 1U);
  EXPECT_EQ(ToText(failing[0]), "DelVlanAction(dir 0, 0, 0)");
  EXPECT_THAT(Explain(failing, poor), testing::HasSubstr("logged count -1"));
}

TEST(ShortestTest, KeepsWhatIsNeeded) {
  const std::function<bool(const std::vector<int>&)> threeBeforeSeven =
      [](const std::vector<int>& steps) {
        const auto three = std::ranges::find(steps, 3);
        return std::find(three, steps.end(), 7) != steps.end();
      };
  EXPECT_THAT(Shortest<int>({1, 3, 5, 2, 3, 9, 7, 8, 7, 4}, threeBeforeSeven),
              testing::ElementsAre(3, 7));
  EXPECT_THAT(Shortest<int>({3, 7}, threeBeforeSeven), testing::ElementsAre(3, 7));
}

}  // namespace
}  // namespace hal_test
