/// @file
/// Every device command of every VLAN mode builder refused in turn, then all from each on: what the
/// builder returns, what then stays in the device, and that the next operations work. The tables
/// say by the refused command what is expected; each round runs in a process of its own.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include "hal/vlan/vlan_mode_fixture.h"
#include "hal/vlan/vlan_modes.h"
#include "support/in_child.h"
#include "support/pattern.h"

namespace hal_test {
namespace {

using testing::Each;
using testing::IsSubsetOf;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

using Lines = std::vector<std::string>;

constexpr std::uint32_t kPort = 2;
constexpr std::uint32_t kEntries = 2;

/// What is expected when a command is refused that matches the pattern.
struct Row {
  std::string mode;
  std::string command;  ///< regular expression for the whole line
  std::int32_t result;  ///< of the operation whose command it is
  /// Beginnings of the lines of DeviceContent() after the delete, "$1" for the pattern's group.
  Lines left = {};
};

/// The command refused during the add; then the delete runs without faults.
const std::vector<Row> kAddRows = {
    {"Transparent", "FLOW_ADD us .* vlanNum=0 .*", 0},
    {"Transparent", "FLOW_ADD us .* outerPbit=[0-6] vlanNum=1 .*", 0, {"ds flow 0.1 vid 0 tags 1"}},
    {"Transparent", "FLOW_ADD us .* outerPbit=7 vlanNum=1 .*", 0},
    {"Transparent", "FLOW_ADD us .* outerPbit=[0-6] vlanNum=2 .*", 0, {"ds flow 0.2 vid 0 tags 2"}},
    {"Transparent", "FLOW_ADD us .* outerPbit=7 vlanNum=2 .*", 8},
    {"Transparent", "FLOW_ADD ds .*", 0},
    {"Tag", "VLAN_ACTION_ADD .*", 0},
    {"Tag", "FLOW_ADD us .*", 8},
    {"Tag", "FLOW_ADD ds .*", 0},
    {"ZteTrunk",
     "FLOW_ADD us outerVid=100 .* outerPbit=[0-6] .*",
     0,
     {"ds flow 1.0 vid 100 tags 1"}},
    {"ZteTrunk", "FLOW_ADD us outerVid=100 .* outerPbit=7 .*", 0},
    {"ZteTrunk",
     "FLOW_ADD us outerVid=101 .* outerPbit=[0-6] .*",
     0,
     {"ds flow 1.1 vid 101 tags 1"}},
    {"ZteTrunk", "FLOW_ADD us outerVid=101 .* outerPbit=7 .*", 8},
    {"ZteTrunk", "FLOW_ADD ds .*", 0},
    {"Hybrid", "VLAN_ACTION_ADD .*", 0},
    {"Hybrid", "FLOW_ADD us outerVid=0 .*", 0},
    {"Hybrid", "FLOW_ADD us outerVid=100 .* outerPbit=[0-6] .*", 0, {"ds flow 1.1 vid 100 tags 1"}},
    {"Hybrid", "FLOW_ADD us outerVid=100 .* outerPbit=7 .*", 0},
    {"Hybrid", "FLOW_ADD us outerVid=101 .* outerPbit=[0-6] .*", 0, {"ds flow 1.2 vid 101 tags 1"}},
    {"Hybrid", "FLOW_ADD us outerVid=101 .* outerPbit=7 .*", 8},
    {"Hybrid", "FLOW_ADD ds .*", 0},
    {"Translation", "VLAN_ACTION_ADD .*", 0},
    {"Translation", "FLOW_ADD us outerVid=0 .*", 0},
    {"Translation",
     "FLOW_ADD us outerVid=100 .* outerPbit=[0-6] .*",
     0,
     {"ds flow 1.1 vid 300 tags 1", "ds action 1 vid 300 pbit 6"}},
    {"Translation", "FLOW_ADD us outerVid=100 .* outerPbit=7 .*", 0},
    {"Translation",
     "FLOW_ADD us outerVid=101 .* outerPbit=[0-6] .*",
     0,
     {"ds flow 1.2 vid 301 tags 1", "ds action 2 vid 301 pbit 6"}},
    {"Translation", "FLOW_ADD us outerVid=101 .* outerPbit=7 .*", 8},
    {"Translation", "FLOW_ADD ds .*", 0},
    {"ZteStacking", "VLAN_ACTION_ADD .*", 0},
    {"ZteStacking", "FLOW_ADD us .* vlanNum=0 .*", 0},
    {"ZteStacking",
     "FLOW_ADD us .* outerPbit=[0-6] vlanNum=1 .*",
     0,
     {"ds flow 1.1 vid 10 tags 2"}},
    {"ZteStacking", "FLOW_ADD us .* outerPbit=7 vlanNum=1 .*", 8},
    {"ZteStacking", "FLOW_ADD ds .*", 0},
    {"BdcomStacking", "VLAN_ACTION_ADD .*", 0},
    {"BdcomStacking", "FLOW_ADD us outerVid=0 .*", 0},
    {"BdcomStacking", "FLOW_ADD us outerVid=100 .*", 0},
    {"BdcomStacking", "FLOW_ADD us outerVid=101 .*", 8},
    {"BdcomStacking", "FLOW_ADD ds .*", 0},
};

/// The command refused during the delete, which follows an add without faults.
const std::vector<Row> kDeleteRows = {
    {"Transparent", "FLOW_DEL dir=us icIndex=0 flowIndex=0", 0, {"us flow 0.0 ", "ds flow 0.0 "}},
    {"Transparent",
     "FLOW_DEL dir=us icIndex=4 flowIndex=([0-7])",
     0,
     {"us flow 4.$1 ", "ds flow 0.1 "}},
    {"Transparent",
     "FLOW_DEL dir=us icIndex=4 flowIndex=(8|9|1[0-4])",
     0,
     {"us flow 4.$1 ", "ds flow 0.2 "}},
    {"Transparent", "FLOW_DEL dir=us icIndex=4 flowIndex=15", 8, {"us flow 4.15 ", "ds flow 0.2 "}},
    {"Transparent", "FLOW_DEL dir=ds icIndex=0 flowIndex=([0-2])", 0, {"ds flow 0.$1 "}},
    {"Tag", "FLOW_DEL dir=us .*", 8, {"us flow 0.0 "}},
    {"Tag", "VLAN_ACTION_DEL .*", 0, {"us action 0 "}},
    {"Tag", "FLOW_DEL dir=ds .*", 0, {"ds flow 1.0 "}},
    {"ZteTrunk",
     "FLOW_DEL dir=us icIndex=3 flowIndex=([0-7])",
     0,
     {"us flow 3.$1 ", "ds flow 1.0 "}},
    {"ZteTrunk",
     "FLOW_DEL dir=us icIndex=3 flowIndex=(8|9|1[0-4])",
     0,
     {"us flow 3.$1 ", "ds flow 1.1 "}},
    {"ZteTrunk", "FLOW_DEL dir=us icIndex=3 flowIndex=15", 8, {"us flow 3.15 ", "ds flow 1.1 "}},
    {"ZteTrunk", "FLOW_DEL dir=ds icIndex=1 flowIndex=([01])", 0, {"ds flow 1.$1 "}},
    {"Hybrid", "FLOW_DEL dir=us icIndex=3 flowIndex=([0-7])", 0, {"us flow 3.$1 ", "ds flow 1.1 "}},
    {"Hybrid",
     "FLOW_DEL dir=us icIndex=3 flowIndex=(8|9|1[0-5])",
     0,
     {"us flow 3.$1 ", "ds flow 1.2 "}},
    {"Hybrid", "FLOW_DEL dir=us icIndex=0 flowIndex=0", 8, {"us flow 0.0 "}},
    {"Hybrid", "VLAN_ACTION_DEL .*", 0, {"us action 0 "}},
    {"Hybrid", "FLOW_DEL dir=ds icIndex=1 flowIndex=([0-2])", 0, {"ds flow 1.$1 "}},
    {"Translation", "FLOW_DEL dir=us icIndex=3 flowIndex=([0-9]+)", 0, {"us flow 3.$1 "}},
    {"Translation", "FLOW_DEL dir=us icIndex=0 flowIndex=0", 8, {"us flow 0.0 "}},
    {"Translation", "VLAN_ACTION_DEL dir=us vlanActionIndex=([0-2])", 0, {"us action $1 "}},
    {"Translation", "VLAN_ACTION_DEL dir=ds vlanActionIndex=([12])", 0, {"ds action $1 "}},
    {"Translation", "FLOW_DEL dir=ds icIndex=1 flowIndex=([0-2])", 0, {"ds flow 1.$1 "}},
    {"ZteStacking", "FLOW_DEL dir=us icIndex=0 flowIndex=0", 0, {"us flow 0.0 "}},
    {"ZteStacking", "FLOW_DEL dir=us icIndex=4 flowIndex=([0-6])", 0, {"us flow 4.$1 "}},
    {"ZteStacking", "FLOW_DEL dir=us icIndex=4 flowIndex=7", 8, {"us flow 4.7 "}},
    {"ZteStacking", "VLAN_ACTION_DEL .*", 0, {"us action 0 "}},
    {"ZteStacking", "FLOW_DEL dir=ds icIndex=1 flowIndex=([01])", 0, {"ds flow 1.$1 "}},
    {"BdcomStacking", "FLOW_DEL dir=us icIndex=3 flowIndex=([01])", 0, {"us flow 3.$1 "}},
    {"BdcomStacking", "FLOW_DEL dir=us icIndex=0 flowIndex=0", 8, {"us flow 0.0 "}},
    {"BdcomStacking", "VLAN_ACTION_DEL dir=us vlanActionIndex=([0-2])", 0, {"us action $1 "}},
    {"BdcomStacking", "FLOW_DEL dir=ds icIndex=1 flowIndex=0", 0, {"ds flow 1.0 "}},
    // Their port actions were not detached.
    {"BdcomStacking",
     "FLOW_DEL dir=ds icIndex=1 flowIndex=([12])",
     0,
     {"ds flow 1.$1 ", "port action 1.$1 uni 2 "}},
};

/// The row of a refused command, with the pattern's group put in; fails unless there is just one.
struct Expectation {
  std::size_t row = 0;
  std::int32_t result = -1;
  Lines left;
};

Expectation Expected(const std::vector<Row>& rows, const std::string& mode,
                     const std::string& command) {
  Expectation expected;
  int found = 0;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const auto match =
        rows[i].mode == mode ? Pattern(rows[i].command).match(command) : std::nullopt;
    if (!match) {
      continue;
    }
    ++found;
    expected = {i, rows[i].result, {}};
    for (const std::string& line : rows[i].left) {
      expected.left.push_back(Expanded(line, *match));
    }
  }
  EXPECT_EQ(found, 1) << mode << ": " << command;
  return expected;
}

/// What came of one round: results and device contents, as a child process reports them.
struct Round {
  std::int32_t result = -1;  ///< of the operation with the fault
  std::int32_t deleteResult = -1;
  Lines left;                     ///< after the delete
  Lines leftAgain;                ///< after one more add and delete
  std::int32_t againResult = -1;  ///< of those, 0 when both succeeded
};

Lines ToLines(const Round& round) {
  Lines lines = {std::to_string(round.result), std::to_string(round.deleteResult),
                 std::to_string(round.againResult), std::to_string(round.left.size())};
  lines.insert(lines.end(), round.left.begin(), round.left.end());
  lines.insert(lines.end(), round.leftAgain.begin(), round.leftAgain.end());
  return lines;
}

Round ToRound(const ChildReport& report) {
  EXPECT_TRUE(report.finished);
  if (!report.finished || report.lines.size() < 4) {
    return {};
  }
  const auto contents = report.lines.begin() + 4;
  const auto again = contents + std::stol(report.lines[3]);
  return {std::stoi(report.lines[0]), std::stoi(report.lines[1]), Lines(contents, again),
          Lines(again, report.lines.end()), std::stoi(report.lines[2])};
}

enum class Where : std::uint8_t { kAdd, kDelete };

class VlanModeFault : public VlanModeTest, public testing::WithParamInterface<VlanMode> {
 protected:
  /// The commands that an operation sends when none is refused.
  Lines commandsOf(Where where) {
    const ChildReport report = InChild([&] {
      if (where == Where::kDelete) {
        GetParam().add(kPort, kEntries);
        forget();
      }
      (where == Where::kAdd ? GetParam().add : GetParam().del)(kPort, kEntries);
      Lines lines = leftBriefly();
      std::erase_if(lines, [](const std::string& line) {
        return line.starts_with("log ") || line.starts_with("shell ");
      });
      return lines;
    });
    EXPECT_TRUE(report.finished);
    return report.lines;
  }

  /// Add and delete with the nth command of one of them refused, or all from it on; then both
  /// again.
  Round run(Where where, std::uint32_t nth, bool onwards) {
    return ToRound(InChild([&] {
      virtual_onu::FaultPlan& faults = unit.device().faults();
      const auto arm = [&](Where now) {
        if (now == where) {
          onwards ? faults.refuseFrom(nth) : faults.refuseNth(nth);
        }
      };
      Round round;
      arm(Where::kAdd);
      const std::int32_t added = GetParam().add(kPort, kEntries);
      faults.clear();
      arm(Where::kDelete);
      round.deleteResult = GetParam().del(kPort, kEntries);
      faults.clear();
      round.result = where == Where::kAdd ? added : round.deleteResult;
      round.left = device();
      const bool again =
          GetParam().add(kPort, kEntries) == 0 && GetParam().del(kPort, kEntries) == 0;
      round.againResult = again ? 0 : 1;
      round.leftAgain = device();
      return ToLines(round);
    }));
  }

  void refuseEach(Where where, const std::vector<Row>& rows);
  void refuseAllFromEach(Where where, const std::string& ownFlow);
};

/// Without the VLAN actions: one whose delete was refused is used again, and then deleted.
Lines WithoutActions(Lines lines) {
  std::erase_if(lines, [](const std::string& line) {
    return line.starts_with("us action") || line.starts_with("ds action");
  });
  return lines;
}

void VlanModeFault::refuseEach(Where where, const std::vector<Row>& rows) {
  const Lines sent = commandsOf(where);
  ASSERT_THAT(sent, SizeIs(testing::Ge(3U)));
  std::vector<std::size_t> used;
  for (std::size_t i = 0; i < sent.size(); ++i) {
    const Expectation expected = Expected(rows, GetParam().name, sent[i]);
    used.push_back(expected.row);
    const Round round = run(where, static_cast<std::uint32_t>(i + 1), false);
    EXPECT_EQ(round.result, expected.result) << sent[i];
    EXPECT_EQ(round.deleteResult, where == Where::kAdd ? 0 : expected.result) << sent[i];
    ASSERT_EQ(round.left.size(), expected.left.size())
        << sent[i] << testing::PrintToString(round.left);
    for (std::size_t line = 0; line < expected.left.size(); ++line) {
      EXPECT_THAT(round.left[line], StartsWith(expected.left[line])) << sent[i];
    }
    EXPECT_EQ(round.againResult, 0) << sent[i];
    EXPECT_EQ(WithoutActions(round.leftAgain), WithoutActions(round.left)) << sent[i];
    EXPECT_THAT(round.leftAgain, Each(Not(StartsWith("us action")))) << sent[i];
  }
  for (std::size_t row = 0; row < rows.size(); ++row) {
    EXPECT_EQ(std::ranges::find(used, row) != used.end(), rows[row].mode == GetParam().name)
        << "row " << row;
  }
}

void VlanModeFault::refuseAllFromEach(Where where, const std::string& ownFlow) {
  const Lines sent = commandsOf(where);
  ASSERT_THAT(sent, SizeIs(testing::Ge(3U)));
  for (std::size_t i = 0; i < sent.size(); ++i) {
    const bool ownFlowRefused =
        std::any_of(sent.begin() + static_cast<std::ptrdiff_t>(i), sent.end(),
                    [&](const std::string& line) { return line.starts_with(ownFlow); });
    const Round round = run(where, static_cast<std::uint32_t>(i + 1), true);
    EXPECT_EQ(round.result, ownFlowRefused ? 8 : 0) << sent[i];
    EXPECT_EQ(round.againResult, 0) << sent[i];
    EXPECT_THAT(round.leftAgain, IsSubsetOf(round.left)) << sent[i];
    if (where == Where::kAdd) {
      EXPECT_THAT(round.leftAgain, Each(StartsWith("ds "))) << sent[i];
    }
  }
}

TEST_P(VlanModeFault, Add_EachCommandRefused) {
  refuseEach(Where::kAdd, kAddRows);
}

TEST_P(VlanModeFault, Delete_EachCommandRefused) {
  refuseEach(Where::kDelete, kDeleteRows);
}

TEST_P(VlanModeFault, Add_AllCommandsRefusedFromEachOn) {
  refuseAllFromEach(Where::kAdd, "FLOW_ADD us");
}

TEST_P(VlanModeFault, Delete_AllCommandsRefusedFromEachOn) {
  refuseAllFromEach(Where::kDelete, "FLOW_DEL dir=us");
}

TEST_P(VlanModeFault, ShellLinesRefused_ChangeNothingElse) {
  const auto run = [this](bool refused) {
    return InChild([this, refused] {
      if (refused) {
        unit.shell().faults().refuseFrom(1);
      }
      Lines lines = {std::to_string(GetParam().add(kPort, kEntries)),
                     std::to_string(GetParam().del(kPort, kEntries))};
      const Lines sent = commands();
      const Lines shell = OfKind(left(), "shell");
      lines.insert(lines.end(), sent.begin(), sent.end());
      lines.insert(lines.end(), shell.begin(), shell.end());
      return lines;
    });
  };
  const ChildReport plain = run(false);
  const ChildReport refused = run(true);
  ASSERT_TRUE(plain.finished && refused.finished);
  EXPECT_THAT(plain.lines, SizeIs(testing::Ge(8U)));
  EXPECT_EQ(refused.lines, plain.lines);
}

INSTANTIATE_TEST_SUITE_P(Modes, VlanModeFault, testing::ValuesIn(VlanModes()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace hal_test
