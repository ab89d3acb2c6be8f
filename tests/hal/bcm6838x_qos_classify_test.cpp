/// @file
/// Tests of single classification rules: every field and operator, the records byte for byte,
/// hostile rules, and the undoing of every step.
#include <cstdint>
#include <cstring>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include <bcm6838x_qos.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>

#include "qos_rules.h"
#include "support/library_test.h"
#include "support/refusal.h"
#include "support/wire_record.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kTrace = "log 1 hal/switch/bcm6838x/src/bcm6838x_qos_classify.cpp ";
const std::string kInvalid = "log 4 hal/switch/bcm6838x/src/bcm6838x_qos_classify.cpp ";

std::string InstalledLogged(std::uint32_t port, std::int32_t type, std::uint32_t precedence,
                            std::uint32_t icIndex) {
  return kTrace + "port = " + std::to_string(port) + ", ruleType = " + std::to_string(type) +
         ", precedunce = " + std::to_string(precedence) + ", icindex = " + std::to_string(icIndex) +
         ", flowIndex = 0\r\n";
}

/// Room for a class, a flow and an action of every rule.
virtual_onu::UnitConfig RoomForAllRules() {
  virtual_onu::UnitConfig config;
  config.chip.classes = 512;
  return config;
}

std::string IgnoredLogged(const std::string& code) {
  return kTrace + "field does not support. field = " + code + " will be ignored. line = <line>\r\n";
}

class QosRuleTest : public LibraryTest {
 protected:
  QosRuleTest() : LibraryTest(RoomForAllRules()) {}

  void SetUp() override {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    ASSERT_EQ(BCM6838X_InitQoS(), 0U);
    forget();
  }

  /// Takes index 0 of the upstream classes and the indexes 0 and 1 of the upstream actions, so that
  /// the next rule has the class 1 and the action 2.
  void shiftIndexes() {
    IngressClassCfg taken = {};
    taken.dir = BRMGR_DIR_UPSTREAM;
    ASSERT_EQ(BCM6838X_Ioctl(BRMGR_CMD_IC_CREATE, &taken, sizeof(taken), 1), 0U);
    for (int i = 0; i < 2; ++i) {
      VlanActionRule action = {4, {}, BRMGR_DIR_UPSTREAM, kNoIndex};
      ASSERT_EQ(BCM6838X_Ioctl(BRMGR_CMD_VLAN_ACTION_ADD, &action, sizeof(action), 1), 0U);
    }
    forget();
  }

  /// What the next set of the port has to remove, without the listing.
  std::vector<std::string> removed(std::uint32_t port) {
    unit.device().faults().clear();
    forget();
    const QosClassRuleSet empty = SetOf(port, {});
    EXPECT_EQ(BCM6838X_ApplyQosClassification(&empty), 0U);
    return commands();
  }
};

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

struct FieldRow {
  std::uint32_t code;
  std::uint32_t fieldMask;
  std::function<void(WireRecord&)> setKey;
};

const virtual_onu::Bytes kMac = {0x10, 0x11, 0x12, 0x13, 0x14, 0x15};
const virtual_onu::Bytes kIpv4 = {0x12, 0x13, 0x14, 0x15};
const virtual_onu::Bytes kIpv6 = {0x10, 0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17,
                                  0x18, 0x19, 0x1a, 0x1b, 0x1c, 0x1d, 0x1e, 0x1f};

/// Every field with a key, for the value 10 11 12 .. 1f.
const std::vector<FieldRow> kFields = {
    {0, 0x48200, [](WireRecord& flow) { flow.bytes(50, kMac); }},
    {1, 0x48400, [](WireRecord& flow) { flow.bytes(56, kMac); }},
    {2, 0x58000, [](WireRecord& flow) { flow.u8(72, 0x15); }},
    {3, 0x48080, [](WireRecord& flow) { flow.u16(46, 0x1415); }},
    {4, 0x48800, [](WireRecord& flow) { flow.u16(62, 0x1415); }},
    {5, 0x48002, [](WireRecord& flow) { flow.u32(20, 0).bytes(24, kIpv4); }},
    {6, 0x48001, [](WireRecord& flow) { flow.u32(0, 0).bytes(4, kIpv4); }},
    {7, 0x49000, [](WireRecord& flow) { flow.u8(44, 0x15); }},
    {8, 0x4A000, [](WireRecord& flow) { flow.u8(64, 0x15); }},
    {10, 0x48020, [](WireRecord& flow) { flow.u16(40, 0x1415); }},
    {11, 0x48040, [](WireRecord& flow) { flow.u16(42, 0x1415); }},
    {12, 0x48002, [](WireRecord& flow) { flow.u32(20, 1).bytes(24, kIpv6); }},
    {13, 0x48001, [](WireRecord& flow) { flow.u32(0, 1).bytes(4, kIpv6); }},
};

TEST_F(QosRuleTest, Add_EveryFieldWithAKey_SetsItsBitAndKey) {
  std::uint32_t index = 0;
  for (const FieldRow& row : kFields) {
    forget();
    const QosClassRule rule = With(EmptyRule(1, 1, kIpv4Remark, 5), row.code, CountingValue());
    EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 0U);
    WireRecord flow = RemarkFlow(1, index, index, 5);
    row.setKey(flow);
    EXPECT_THAT(left(), ElementsAre(ActionSent(5), ClassSent(row.fieldMask, 14),
                                    Sent("FLOW_ADD", 1, flow), InstalledLogged(1, 0, 1, index)))
        << row.code;
    ++index;
  }
  EXPECT_EQ(index, 13U);
}

TEST_F(QosRuleTest, Add_FieldWithoutAKey_IsLoggedAndTheRestInstalled) {
  const std::vector<std::string> codes = {"9",  "14", "15", "16", "17",         "18",
                                          "19", "20", "21", "22", "2147483647", "4294967295"};
  std::uint32_t index = 0;
  for (const std::string& code : codes) {
    forget();
    QosClassRule rule = With(EmptyRule(1, 1, kIpv4Remark, 7),
                             static_cast<std::uint32_t>(std::stoul(code)), CountingValue());
    rule = With(rule, BCM6838X_QOS_FIELD_VLAN_ID, NumberValue(100));
    EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 0U);
    EXPECT_THAT(left(),
                ElementsAre(IgnoredLogged(code), ActionSent(7), ClassSent(0x48080, 14),
                            RemarkFlowSent(1, 1, index, index), InstalledLogged(1, 0, 1, index)));
    ++index;
  }
  EXPECT_EQ(index, 12U);
}

// Required: other-operators-skipped
TEST_F(QosRuleTest, Add_AnyOperatorButEqual_SkipsTheConditionSilently) {
  std::uint32_t index = 0;
  for (const std::uint32_t op : {0U, 2U, 3U, 4U, 5U, 6U, 7U, 8U, 0x101U, 0xFFFFFFFFU}) {
    forget();
    QosClassRule rule =
        With(EmptyRule(1, 1, kIpv4Remark, 7), BCM6838X_QOS_FIELD_DSCP, CountingValue(), op);
    EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 0U);
    EXPECT_THAT(left(), ElementsAre(ActionSent(7), ClassSent(0x48000, 14),
                                    Sent("FLOW_ADD", 1, RemarkFlow(1, index, index, 7)),
                                    InstalledLogged(1, 0, 1, index)))
        << op;
    ++index;
  }
  EXPECT_EQ(index, 10U);
}

TEST_F(QosRuleTest, Add_SkippedOperatorOfAFieldWithoutAKey_IsNotLogged) {
  const QosClassRule rule = With(EmptyRule(1, 1, kAcl, 0), 9, CountingValue(), 2);
  EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 0U);
  EXPECT_THAT(logLines(), ElementsAre(InstalledLogged(1, 2, 1, 0)));
}

TEST_F(QosRuleTest, Add_EightConditions_AreAllApplied) {
  QosClassRule rule = EmptyRule(1, 1, kAcl, 0);
  for (const std::uint32_t field : {0U, 1U, 2U, 3U, 4U, 6U, 7U, 12U}) {
    rule = With(rule, field, CountingValue());
  }
  EXPECT_EQ(rule.fieldCount, 8U);
  EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 0U);
  EXPECT_THAT(commands(), ElementsAre(ClassSent(0x59E83, 14), Sent("FLOW_ADD", 1,
                                                                   FlowRecord(1, 0, kNoIndex)
                                                                       .bytes(50, kMac)
                                                                       .bytes(56, kMac)
                                                                       .u8(72, 0x15)
                                                                       .u16(46, 0x1415)
                                                                       .u16(62, 0x1415)
                                                                       .bytes(4, kIpv4)
                                                                       .u8(44, 0x15)
                                                                       .u32(20, 1)
                                                                       .bytes(24, kIpv6)
                                                                       .u32(96, 4))));
}

TEST_F(QosRuleTest, Add_ConditionsBehindTheCount_AreNotRead) {
  QosClassRule rule = AclRule(1, 1);
  rule.field[1] = BCM6838X_QOS_FIELD_DSCP;
  rule.op[1] = kEqual;
  EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 0U);
  EXPECT_EQ(commands().front(), ClassSent(0x48080, 14));
}

TEST_F(QosRuleTest, Add_ConditionsOnOneField_TheLastWins) {
  QosClassRule rule = With(AclRule(1, 1), BCM6838X_QOS_FIELD_VLAN_ID, NumberValue(0x0ABC));
  EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 0U);
  EXPECT_THAT(commands(), ElementsAre(ClassSent(0x48080, 14),
                                      Sent("FLOW_ADD", 1,
                                           FlowRecord(1, 0, kNoIndex).u16(46, 0x0ABC).u32(96, 4))));
}

TEST_F(QosRuleTest, Add_Ipv4BehindIpv6_SetsVersionAndTheFirstFourBytes) {
  QosClassRule rule = With(EmptyRule(1, 1, kAcl, 0), 12, CountingValue());
  rule = With(rule, 5, CountingValue());
  virtual_onu::Bytes address = kIpv6;
  std::copy(kIpv4.begin(), kIpv4.end(), address.begin());
  EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 0U);
  EXPECT_EQ(
      commands().back(),
      Sent("FLOW_ADD", 1, FlowRecord(1, 0, kNoIndex).u32(20, 0).bytes(24, address).u32(96, 4)));
}

TEST_F(QosRuleTest, Add_Ipv4AddressesOfAllBits_AreSentAsTheyAre) {
  std::uint32_t index = 0;
  for (const std::uint8_t byte : {std::uint8_t{0xFF}, std::uint8_t{0}}) {
    RuleValue value = {};
    value.fill(byte);
    const QosClassRule rule = With(EmptyRule(1, 1, kAcl, 0), 6, value);
    EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 0U);
    EXPECT_EQ(
        commands().back(),
        Sent("FLOW_ADD", 1,
             FlowRecord(1, index, kNoIndex).bytes(4, virtual_onu::Bytes(4, byte)).u32(96, 4)));
    ++index;
  }
  EXPECT_EQ(index, 2U);
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
}  // namespace hal_test
