/// @file
/// Building of rules and of the records expected for them.
#include "qos_rules.h"

#include <algorithm>
#include <numeric>

namespace hal_test {

namespace {

constexpr std::uint32_t kVlanId = 3;
constexpr std::uint16_t kVid = 100;

}  // namespace

RuleValue CountingValue() {
  RuleValue value = {};
  std::iota(value.begin(), value.end(), std::uint8_t{0x10});
  return value;
}

RuleValue NumberValue(std::uint16_t number) {
  RuleValue value = {};
  value[4] = static_cast<std::uint8_t>(number >> 8U);
  value[5] = static_cast<std::uint8_t>(number);
  return value;
}

QosClassRule EmptyRule(std::uint32_t port, std::uint32_t precedence, std::uint32_t type,
                       std::uint32_t priority) {
  QosClassRule rule = {};
  rule.ruleType = type;
  rule.port = static_cast<std::uint8_t>(port);
  rule.precedence = static_cast<std::uint8_t>(precedence);
  rule.priority = static_cast<std::uint8_t>(priority);
  return rule;
}

QosClassRule With(QosClassRule rule, std::uint32_t field, const RuleValue& value,
                  std::uint32_t op) {
  rule.field[rule.fieldCount] = field;
  rule.op[rule.fieldCount] = op;
  std::ranges::copy(value, rule.value[rule.fieldCount]);
  ++rule.fieldCount;
  return rule;
}

QosClassRule RemarkRule(std::uint32_t port, std::uint32_t precedence) {
  return With(EmptyRule(port, precedence, kIpv4Remark, 8 - precedence), kVlanId, NumberValue(kVid));
}

QosClassRule AclRule(std::uint32_t port, std::uint32_t precedence) {
  return With(EmptyRule(port, precedence, kAcl, 5), kVlanId, NumberValue(kVid));
}

QosClassRuleSet SetOf(std::uint32_t port, std::initializer_list<QosClassRule> rules) {
  QosClassRuleSet set = {};
  set.port = static_cast<std::uint8_t>(port);
  std::ranges::copy(rules, set.rule);
  return set;
}

QosClassRuleSet FullSet(std::uint32_t port) {
  QosClassRuleSet set = SetOf(port, {});
  for (std::uint32_t precedence = 1; QosClassRule & rule : set.rule) {
    rule = RemarkRule(port, precedence++);
  }
  return set;
}

std::string ActionSent(std::uint32_t priority) {
  return Sent("VLAN_ACTION_ADD", 1,
              WireRecord(24).u32(0, 0x100).u8(6, static_cast<std::uint8_t>(priority)).u32(16, 1));
}

std::string ClassSent(std::uint32_t fieldMask, std::uint32_t priority) {
  return Sent("IC_CREATE", 1,
              WireRecord(32).u32(0, 2).u32(4, fieldMask).u32(8, priority).u32(24, 1));
}

WireRecord FlowRecord(std::uint32_t port, std::uint32_t icIndex, std::uint32_t vlanActionIndex) {
  return WireRecord(164)
      .u32(68, port + 1)
      .u8(74, 1)
      .u32(140, 1)
      .u32(144, icIndex)
      .u32(148, kNoIndex)
      .u32(152, vlanActionIndex)
      .u32(156, kNoIndex);
}

WireRecord RemarkFlow(std::uint32_t port, std::uint32_t icIndex, std::uint32_t vlanActionIndex,
                      std::uint32_t priority) {
  return FlowRecord(port, icIndex, vlanActionIndex)
      .u32(96, 1)
      .u32(112, priority)
      .u8(120, 1)
      .u8(121, static_cast<std::uint8_t>(priority));
}

std::string RemarkFlowSent(std::uint32_t port, std::uint32_t precedence, std::uint32_t icIndex,
                           std::uint32_t vlanActionIndex, std::uint32_t queueOffset) {
  const std::uint32_t priority = 8 - precedence;
  return Sent("FLOW_ADD", 1,
              RemarkFlow(port, icIndex, vlanActionIndex, priority)
                  .u16(46, kVid)
                  .u32(112, priority + queueOffset));
}

std::string ActionDeleteSent(std::uint32_t index) {
  return Sent("VLAN_ACTION_DEL", 1, WireRecord(8).u32(0, 1).u32(4, index));
}

std::string ClassDeleteSent(std::uint32_t icIndex) {
  return Sent("IC_DEL", 1, WireRecord(8).u32(0, 1).u32(4, icIndex));
}

std::string FlowDeleteSent(std::uint32_t icIndex, std::uint32_t flowIndex) {
  return Sent("FLOW_DEL", 1, WireRecord(12).u32(0, 1).u32(4, icIndex).u32(8, flowIndex));
}

}  // namespace hal_test
