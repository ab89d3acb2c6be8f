/// @file
/// The scheduling scheme, changed to 1 and back with rules on several ports, while the read-back,
/// the delete or the adding again of one of them is refused: what is sent, which queues the flows
/// are in then, and what the next change and the next set make of it.
#include <array>
#include <cstddef>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <vector>

#include <bcm6838x_qos.h>
#include <brmgr_cmd.h>
#include <hal_bcm6838x.h>

#include "qos_rules.h"
#include "qos_schedule_fixture.h"
#include "support/refusal.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Place {
  std::uint32_t port;
  std::uint32_t precedence;
};

/// The rules in the order in which they are installed, so that a rule's place is its class and its
/// action too, and in which they are moved.
constexpr std::array<Place, 3> kRules = {{{1, 2}, {1, 7}, {3, 1}}};

/// The commands that move a flow, in their order.
constexpr std::array<std::uint32_t, 3> kCommands = {BRMGR_CMD_QUEUE_SCHEDULE, BRMGR_CMD_FLOW_DEL,
                                                    BRMGR_CMD_FLOW_ADD};

/// Queues above that of the priority; the way down from a queue of scheme 0 wraps.
constexpr std::uint32_t kFirstBank = 0;
constexpr std::uint32_t kSecondBank = 8;
constexpr std::uint32_t kBehindTheSecondBank = 16;
constexpr std::uint32_t kBelowTheFirstBank = 0xFFFFFFF8;

/// One way of the scheme: its target, where the flows are before and behind it, and where a flow is
/// that missed this way and took the way back.
struct Way {
  std::uint32_t scheme;
  std::uint32_t before;
  std::uint32_t behind;
  std::uint32_t backAfterAMiss;
};

constexpr std::array<Way, 2> kWays = {{{1, kFirstBank, kSecondBank, kBelowTheFirstBank},
                                       {0, kSecondBank, kFirstBank, kBehindTheSecondBank}}};

/// The commands of one rule's move up to the one that fails, all of them when none does.
std::vector<std::string> Move(std::uint32_t rule, std::uint32_t queueOffset,
                              std::size_t sent = kCommands.size()) {
  const Place place = kRules.at(rule);
  std::vector<std::string> lines = Moved(place.port, place.precedence, rule, queueOffset);
  lines.resize(sent);
  return lines;
}

/// Way, command that is refused, rule whose command it is.
using FaultCase = std::tuple<std::size_t, std::size_t, std::uint32_t>;

class QosScheduleFaultTest : public QosScheduleFixture,
                             public testing::WithParamInterface<FaultCase> {
 protected:
  void SetUp() override {
    QosScheduleFixture::SetUp();
    for (const Place& place : kRules) {
      const QosClassRule rule = RemarkRule(place.port, place.precedence);
      ASSERT_EQ(BCM6838X_AddQosClassificationRule(&rule), 0U);
    }
    const QosClassRule acl = AclRule(3, 2);
    ASSERT_EQ(BCM6838X_AddQosClassificationRule(&acl), 0U);
    if (way_.scheme == 0) {
      ASSERT_EQ(BCM6838X_SetQosSchedule(1), 0U);
    }
  }

  [[nodiscard]] bool isLost(std::uint32_t rule) const {
    return rule == faulty_ && kCommands.at(refused_) == BRMGR_CMD_FLOW_ADD;
  }

  /// What the way sends with the fault in place.
  [[nodiscard]] std::vector<std::string> faultyWay() const {
    std::vector<std::string> lines;
    for (std::uint32_t rule = 0; rule < kRules.size(); ++rule) {
      Append(lines, Move(rule, way_.behind, rule == faulty_ ? refused_ + 1 : kCommands.size()));
    }
    return lines;
  }

  /// What the way back sends: the flow that missed the way moves from where it stayed.
  [[nodiscard]] std::vector<std::string> wayBack() const {
    std::vector<std::string> lines;
    for (std::uint32_t rule = 0; rule < kRules.size(); ++rule) {
      if (!isLost(rule)) {
        Append(lines, Move(rule, rule == faulty_ ? way_.backAfterAMiss : way_.before));
      }
    }
    return lines;
  }

  /// What removing a rule sends.
  [[nodiscard]] std::vector<std::string> removal(std::uint32_t rule) const {
    std::vector<std::string> lines;
    if (!isLost(rule)) {
      lines.push_back(FlowDeleteSent(rule, 0));
    }
    Append(lines, {ClassDeleteSent(rule), ActionDeleteSent(rule)});
    return lines;
  }

  const Way way_ = kWays.at(std::get<0>(GetParam()));
  const std::size_t refused_ = std::get<1>(GetParam());
  const std::uint32_t faulty_ = std::get<2>(GetParam());
};

TEST_P(QosScheduleFaultTest, OneCommandRefused_ConcernsItsRuleAlone) {
  unit.device().faults().refuseNth(faulty_ + 1, kCommands.at(refused_));
  EXPECT_EQ(changed(way_.scheme), faultyWay());
  EXPECT_THAT(logLines(), ElementsAre(RefusalLogged(kCommands.at(refused_))));
  for (std::uint32_t rule = 0; rule < kRules.size(); ++rule) {
    const auto& flows = unit.device().tables().upstream.classes.at(rule).flows;
    ASSERT_EQ(flows.size(), isLost(rule) ? 0U : 1U) << rule;
    if (!isLost(rule)) {
      const std::uint32_t offset = rule == faulty_ ? way_.before : way_.behind;
      EXPECT_EQ(flows.at(0).queue, 8 - kRules.at(rule).precedence + offset) << rule;
    }
  }
  EXPECT_THAT(changed(way_.scheme), IsEmpty()) << "the scheme is stored all the same";
}

TEST_P(QosScheduleFaultTest, NextChangeAndNextSet_KnowWhatIsThere) {
  unit.device().faults().refuseNth(faulty_ + 1, kCommands.at(refused_));
  EXPECT_EQ(BCM6838X_SetQosSchedule(way_.scheme), 0U);
  unit.device().faults().clear();
  EXPECT_EQ(changed(1 - way_.scheme), wayBack());
  EXPECT_THAT(logLines(), IsEmpty());
  std::vector<std::string> first = removal(0);
  Append(first, removal(1));
  EXPECT_EQ(removed(1), first);
  std::vector<std::string> third = removal(2);
  Append(third, {FlowDeleteSent(3, 0), ClassDeleteSent(3)});
  EXPECT_EQ(removed(3), third);
  EXPECT_THAT(unit.device().tables().upstream.classes, IsEmpty());
  EXPECT_THAT(unit.device().tables().upstream.actions, IsEmpty());
}

std::string NameOfCase(const testing::TestParamInfo<FaultCase>& info) {
  static const std::array<std::string, 2> kWayNames = {"Up", "Down"};
  static const std::array<std::string, 3> kCommandNames = {"ReadBack", "Delete", "Add"};
  return kWayNames.at(std::get<0>(info.param)) + kCommandNames.at(std::get<1>(info.param)) +
         "OfRule" + std::to_string(std::get<2>(info.param));
}

INSTANTIATE_TEST_SUITE_P(EveryFault, QosScheduleFaultTest,
                         testing::Combine(testing::Range<std::size_t>(0, kWays.size()),
                                          testing::Range<std::size_t>(0, kCommands.size()),
                                          testing::Range<std::uint32_t>(0, kRules.size())),
                         NameOfCase);

}  // namespace
}  // namespace hal_test
