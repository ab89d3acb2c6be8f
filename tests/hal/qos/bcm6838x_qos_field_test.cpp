/// @file
/// Tests of the conditions of a classification rule: every field and operator, as they become key
/// fields of the class and keys of the flow.
#include <cstdint>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <bcm6838x_qos.h>

#include "qos_rule_fixture.h"
#include "qos_rules.h"
#include "support/wire_record.h"

namespace hal_test::qos_rule {
namespace {

using testing::ElementsAre;

std::string IgnoredLogged(const std::string& code) {
  return kTrace + "field does not support. field = " + code + " will be ignored. line = <line>\r\n";
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

}  // namespace
}  // namespace hal_test::qos_rule
