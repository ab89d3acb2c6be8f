/// @file
/// Tests of refusals while a classification rule is added: what is undone, what comes of it, and
/// what stays on record.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <bcm6838x_qos.h>

#include "qos_rule_fixture.h"
#include "qos_rules.h"
#include "support/refusal.h"
#include "support/wire_record.h"

namespace hal_test::qos_rule {
namespace {

using testing::IsEmpty;

/// Which commands are refused while a rule is added, what comes of it, and what stays on record.
struct UndoRow {
  bool acl;
  std::vector<std::uint32_t> refused;
  std::uint32_t result;
  std::vector<std::string> left;
  std::vector<std::string> removed;
};

class QosUndoTest : public QosRuleTest {
 protected:
  void expectUndone(const UndoRow& row) {
    shiftIndexes();
    for (const std::uint32_t code : row.refused) {
      unit.device().faults().refuseNth(1, code);
    }
    const QosClassRule rule = row.acl ? AclRule(1, 1) : RemarkRule(1, 1);
    EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), row.result);
    EXPECT_EQ(left(), row.left);
    EXPECT_EQ(removed(1), row.removed);
    EXPECT_THAT(removed(1), IsEmpty());
  }

  const std::string action_ = ActionSent(7);
  const std::string class_ = ClassSent(0x48080, 14);
  const std::string flow_ = RemarkFlowSent(1, 1, 1, 2);
  const std::string aclFlow_ =
      Sent("FLOW_ADD", 1, FlowRecord(1, 1, kNoIndex).u16(46, 100).u32(96, 4));
  const std::string actionDelete_ = ActionDeleteSent(2);
  const std::string classDelete_ = ClassDeleteSent(1);
  const std::string classFailed_ = kInvalid + "Failed to Add ICIndex 0\r\n";
  const std::string flowFailed_ = kInvalid + "Failed to Add flow -1\r\n";
};

TEST_F(QosUndoTest, Add_ActionRefused_ReturnsItsStatus) {
  expectUndone({false,
                {102},
                8,
                {action_, RefusalLogged(102), kInvalid + "Failed to Add vlanaction ret 8\r\n"},
                {}});
}

// Required: failed-rule-returns-last-delete, rule-deletes-read-back
TEST_F(QosUndoTest, Add_ClassRefused_DeletesTheActionAndReturnsThatStatus) {
  expectUndone(
      {false, {98}, 0, {action_, class_, RefusalLogged(98), actionDelete_, classFailed_}, {}});
}

TEST_F(QosUndoTest, Add_ClassAndDeleteOfTheActionRefused_KeepsTheActionOnRecord) {
  expectUndone(
      {false,
       {98, 104},
       8,
       {action_, class_, RefusalLogged(98), actionDelete_, RefusalLogged(104), classFailed_},
       {actionDelete_}});
}

TEST_F(QosUndoTest, Add_ClassOfAnAclRuleRefused_ReturnsItsStatus) {
  expectUndone({true, {98}, 8, {class_, RefusalLogged(98), classFailed_}, {}});
}

// Required: failed-rule-returns-last-delete
TEST_F(QosUndoTest, Add_FlowRefused_DeletesClassAndAction) {
  expectUndone(
      {false,
       {100},
       0,
       {action_, class_, flow_, RefusalLogged(100), classDelete_, actionDelete_, flowFailed_},
       {}});
}

// Required: failed-undo-stays-on-record
TEST_F(QosUndoTest, Add_FlowAndDeleteOfTheClassRefused_KeepsTheClassOnRecord) {
  expectUndone({false,
                {100, 99},
                0,
                {action_, class_, flow_, RefusalLogged(100), classDelete_, RefusalLogged(99),
                 actionDelete_, flowFailed_},
                {classDelete_}});
}

TEST_F(QosUndoTest, Add_FlowAndDeleteOfTheActionRefused_KeepsTheActionOnRecord) {
  expectUndone({false,
                {100, 104},
                8,
                {action_, class_, flow_, RefusalLogged(100), classDelete_, actionDelete_,
                 RefusalLogged(104), flowFailed_},
                {actionDelete_}});
}

TEST_F(QosUndoTest, Add_FlowAndBothDeletesRefused_KeepsBothOnRecord) {
  expectUndone({false,
                {100, 99, 104},
                8,
                {action_, class_, flow_, RefusalLogged(100), classDelete_, RefusalLogged(99),
                 actionDelete_, RefusalLogged(104), flowFailed_},
                {classDelete_, actionDelete_}});
}

TEST_F(QosUndoTest, Add_FlowOfAnAclRuleRefused_DeletesTheClassAlone) {
  expectUndone(
      {true, {100}, 0, {class_, aclFlow_, RefusalLogged(100), classDelete_, flowFailed_}, {}});
}

TEST_F(QosUndoTest, Add_FlowOfAnAclRuleAndDeleteOfTheClassRefused_KeepsTheClassOnRecord) {
  expectUndone(
      {true,
       {100, 99},
       8,
       {class_, aclFlow_, RefusalLogged(100), classDelete_, RefusalLogged(99), flowFailed_},
       {classDelete_}});
}

TEST_F(QosRuleTest, Add_NthCommandRefused_LeavesNothingBehindAndTheNextAddWorks) {
  const QosClassRule rule = RemarkRule(1, 1);
  const std::vector<std::uint32_t> results = {8, 0, 0, 0};
  for (std::uint32_t nth = 1; nth <= results.size(); ++nth) {
    unit.device().faults().refuseNth(nth);
    EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), results.at(nth - 1)) << nth;
    // The fourth command does not come when none of the three is refused.
    EXPECT_EQ(removed(1).size(), nth == 4 ? 3U : 0U) << nth;
    EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 0U);
    EXPECT_EQ(removed(1).size(), 3U);
    EXPECT_THAT(unit.device().tables().upstream.classes, IsEmpty());
    EXPECT_THAT(unit.device().tables().upstream.actions, IsEmpty());
  }
}

TEST_F(QosRuleTest, Add_AllCommandsRefusedFromTheNth_KeepsOnRecordWhatTheDeviceHolds) {
  const QosClassRule rule = RemarkRule(1, 1);
  for (std::uint32_t nth = 1; nth <= 3; ++nth) {
    unit.device().faults().refuseFrom(nth);
    EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 8U) << nth;
    EXPECT_EQ(removed(1).size(), nth - 1);
    EXPECT_THAT(unit.device().tables().upstream.classes, IsEmpty());
    EXPECT_THAT(unit.device().tables().upstream.actions, IsEmpty());
  }
}

}  // namespace
}  // namespace hal_test::qos_rule
