/// @file
/// Tests of single classification rules: the records byte for byte, every port and precedence,
/// hostile rules.
#include <cstdint>
#include <cstring>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include <bcm6838x_qos.h>
#include <hal_bcm6838x.h>

#include "qos_rule_fixture.h"
#include "qos_rules.h"
#include "support/library_test.h"
#include "support/wire_record.h"

namespace hal_test::qos_rule {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Required: remark-action-sent-with-index-0, rules-take-single-tagged-frames
// Required: rule-queue-is-its-priority, log-precedunce
TEST_F(QosRuleTest, Add_RemarkRule_SendsActionClassAndFlow) {
  shiftIndexes();
  const QosClassRule rule = RemarkRule(3, 2);
  EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 0U);
  EXPECT_THAT(left(), ElementsAre(ActionSent(6), ClassSent(0x48080, 29), RemarkFlowSent(3, 2, 1, 2),
                                  InstalledLogged(3, 0, 2, 1)));
  EXPECT_THAT(removed(3),
              ElementsAre(FlowDeleteSent(1, 0), ClassDeleteSent(1), ActionDeleteSent(2)));
}

TEST_F(QosRuleTest, Add_AclRule_HasNoActionAndForwards4) {
  shiftIndexes();
  const QosClassRule rule = AclRule(1, 1);
  EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 0U);
  EXPECT_THAT(left(),
              ElementsAre(ClassSent(0x48080, 14),
                          Sent("FLOW_ADD", 1, FlowRecord(1, 1, kNoIndex).u16(46, 100).u32(96, 4)),
                          InstalledLogged(1, 2, 1, 1)));
  EXPECT_THAT(removed(1), ElementsAre(FlowDeleteSent(1, 0), ClassDeleteSent(1)));
}

// Required: unknown-rule-type-remarks
TEST_F(QosRuleTest, Add_AnyTypeButAcl_Remarks) {
  const std::vector<std::pair<std::uint32_t, std::int32_t>> types = {
      {0, 0}, {1, 1}, {3, 3}, {0x80000000, -2147483647 - 1}, {0xFFFFFFFF, -1}};
  std::uint32_t index = 0;
  for (const auto& [type, printed] : types) {
    forget();
    QosClassRule rule = RemarkRule(2, 8);
    rule.ruleType = type;
    EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 0U);
    EXPECT_THAT(left(), ElementsAre(ActionSent(0), ClassSent(0x48080, 15),
                                    RemarkFlowSent(2, 8, index, index),
                                    InstalledLogged(2, printed, 8, index)));
    ++index;
  }
  EXPECT_EQ(index, 5U);
}

TEST_F(QosRuleTest, Add_PriorityIsSentAsItIs) {
  for (const std::uint32_t priority : {0U, 7U, 8U, 255U}) {
    forget();
    QosClassRule rule = RemarkRule(1, 1);
    rule.priority = static_cast<std::uint8_t>(priority);
    EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 0U);
    EXPECT_EQ(commands().front(), ActionSent(priority));
    const std::uint32_t index = priority == 0 ? 0 : priority == 7 ? 1 : priority == 8 ? 2 : 3;
    EXPECT_EQ(commands().back(),
              Sent("FLOW_ADD", 1, RemarkFlow(1, index, index, priority).u16(46, 100)));
  }
}

TEST_F(QosRuleTest, Add_EveryPortAndPrecedence_HasItsClassPriorityAndEntry) {
  std::uint32_t installed = 0;
  for (std::uint32_t port = 1; port <= 32; ++port) {
    for (std::uint32_t precedence = 1; precedence <= 8; ++precedence) {
      forget();
      const QosClassRule rule = RemarkRule(port, precedence);
      ASSERT_EQ(BCM6838X_AddQosClassificationRule(&rule), 0U);
      // Port 1 has 14 down to 7, port 2 22 down to 15, and so on.
      EXPECT_EQ(commands().at(1), ClassSent(0x48080, 8 * port + 7 - precedence));
      EXPECT_EQ(commands().at(2), RemarkFlowSent(port, precedence, installed, installed));
      ++installed;
    }
  }
  EXPECT_EQ(installed, 256U);
  for (std::uint32_t port = 1; port <= 32; ++port) {
    std::vector<std::string> expected;
    for (std::uint32_t index = 8 * (port - 1); index < 8 * port; ++index) {
      expected.push_back(FlowDeleteSent(index, 0));
      expected.push_back(ClassDeleteSent(index));
      expected.push_back(ActionDeleteSent(index));
    }
    EXPECT_EQ(removed(port), expected) << port;
  }
  EXPECT_THAT(unit.device().tables().upstream.classes, IsEmpty());
  EXPECT_THAT(unit.device().tables().upstream.actions, IsEmpty());
}

// Required: rule-priorities-follow-ports
TEST_F(QosRuleTest, Add_ClassPriorities_ByHand) {
  struct Row {
    std::uint32_t port;
    std::uint32_t precedence;
    std::uint32_t priority;
  };
  const std::vector<Row> rows = {{1, 1, 14}, {1, 8, 7},    {2, 1, 22},
                                 {2, 8, 15}, {32, 1, 262}, {32, 8, 255}};
  for (const Row& row : rows) {
    forget();
    const QosClassRule rule = AclRule(row.port, row.precedence);
    EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 0U);
    EXPECT_EQ(commands().front(), ClassSent(0x48080, row.priority));
  }
}

TEST_F(QosRuleTest, Add_InvalidRule_IsRefusedAndLeavesNothing) {
  const std::vector<std::function<void(QosClassRule&)>> changes = {
      [](QosClassRule& rule) { rule.fieldCount = 0; },
      [](QosClassRule& rule) { rule.fieldCount = 9; },
      [](QosClassRule& rule) { rule.fieldCount = 255; },
      [](QosClassRule& rule) { rule.precedence = 0; },
      [](QosClassRule& rule) { rule.precedence = 9; },
      [](QosClassRule& rule) { rule.precedence = 255; },
      [](QosClassRule& rule) { rule.port = 0; },
      [](QosClassRule& rule) { rule.port = 33; },
      [](QosClassRule& rule) { rule.port = 255; },
  };
  int refused = 0;
  for (const auto& change : changes) {
    for (QosClassRule rule : {RemarkRule(1, 1), AclRule(1, 1)}) {
      forget();
      change(rule);
      EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 2U);
      EXPECT_THAT(left(), ElementsAre(kInvalid + "Invalid parameter\r\n"));
      ++refused;
    }
  }
  EXPECT_EQ(refused, 18);
}

TEST_F(QosRuleTest, Add_NullRule_IsRefused) {
  EXPECT_EQ(BCM6838X_AddQosClassificationRule(nullptr), 2U);
  EXPECT_THAT(left(), ElementsAre(kInvalid + "Invalid parameter\r\n"));
}

TEST_F(QosRuleTest, Add_HostileButInstallable_IsInstalled) {
  QosClassRule rule;
  memset(&rule, 0xFF, sizeof(rule));
  rule.port = 32;
  rule.precedence = 8;
  rule.fieldCount = 8;
  EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 0U);
  EXPECT_THAT(left(), ElementsAre(ActionSent(255), ClassSent(0x48000, 255),
                                  Sent("FLOW_ADD", 1, RemarkFlow(32, 0, 0, 255)),
                                  InstalledLogged(32, -1, 8, 0)));
}

TEST_F(QosRuleTest, Add_SamePortAndPrecedenceAgain_ForgetsTheFirst) {
  const QosClassRule rule = RemarkRule(1, 1);
  EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 0U);
  EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 0U);
  EXPECT_THAT(removed(1),
              ElementsAre(FlowDeleteSent(1, 0), ClassDeleteSent(1), ActionDeleteSent(1)));
  EXPECT_EQ(unit.device().tables().upstream.classes.count(0), 1U);
}

TEST_F(QosRuleTest, GetRuleTypeIndex_KnowsTheTypesOneAndTwo) {
  EXPECT_EQ(BCM6838X_GetRuleTypeIndex(1), 1U);
  EXPECT_EQ(BCM6838X_GetRuleTypeIndex(2), 2U);
  for (const std::uint32_t type : {0U, 3U, 4U, 0x101U, 0x80000001U, 0xFFFFFFFFU}) {
    EXPECT_EQ(BCM6838X_GetRuleTypeIndex(type), 0U) << type;
  }
}

class QosClosedTest : public LibraryTest {};

TEST_F(QosClosedTest, Add_DeviceNotOpen_ReturnsTheStatusOfTheChannel) {
  BCM6838X_InitQoS();
  const QosClassRule remark = RemarkRule(1, 1);
  const QosClassRule acl = AclRule(1, 1);
  EXPECT_EQ(BCM6838X_AddQosClassificationRule(&remark), 10U);
  EXPECT_EQ(BCM6838X_AddQosClassificationRule(&acl), 10U);
  EXPECT_THAT(left(), ElementsAre(kInvalid + "Failed to Add vlanaction ret 10\r\n",
                                  kInvalid + "Failed to Add ICIndex 0\r\n"));
}

}  // namespace
}  // namespace hal_test::qos_rule
