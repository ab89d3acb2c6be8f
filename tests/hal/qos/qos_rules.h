/// @file
/// Classification rules for the tests, and the records that must leave the library for them,
/// written down by offset.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <string>

#include <bcm6838x_qos.h>

#include "base/bytes.h"
#include "support/wire_record.h"

namespace hal_test {

constexpr std::uint32_t kNoIndex = 0xFFFFFFFF;
constexpr std::uint32_t kIpv4Remark = 0;
constexpr std::uint32_t kAcl = 2;
constexpr std::uint32_t kEqual = 1;

/// The value of a condition.
using RuleValue = std::array<std::uint8_t, 16>;

/// The value 10 11 12 .. 1f, in which every byte tells where it lies.
RuleValue CountingValue();

/// A value of a number of two bytes.
RuleValue NumberValue(std::uint16_t number);

/// A rule without conditions.
QosClassRule EmptyRule(std::uint32_t port, std::uint32_t precedence, std::uint32_t type,
                       std::uint32_t priority);

/// The rule with one condition more.
QosClassRule With(QosClassRule rule, std::uint32_t field, const RuleValue& value,
                  std::uint32_t op = kEqual);

/// A re-marking rule on the VLAN identifier 100 whose priority is 8 less the precedence.
QosClassRule RemarkRule(std::uint32_t port, std::uint32_t precedence);

/// An access-control rule on the VLAN identifier 100.
QosClassRule AclRule(std::uint32_t port, std::uint32_t precedence);

/// A set for a port with these rules, and empty slots behind them.
QosClassRuleSet SetOf(std::uint32_t port, std::initializer_list<QosClassRule> rules);

/// A set for a port with a re-marking rule of each precedence.
QosClassRuleSet FullSet(std::uint32_t port);

std::string ActionSent(std::uint32_t priority);
std::string ClassSent(std::uint32_t fieldMask, std::uint32_t priority);

/// A flow as the classification sends it, without keys of conditions and without a result.
WireRecord FlowRecord(std::uint32_t port, std::uint32_t icIndex, std::uint32_t vlanActionIndex);

/// The same with the result of a re-marking rule.
WireRecord RemarkFlow(std::uint32_t port, std::uint32_t icIndex, std::uint32_t vlanActionIndex,
                      std::uint32_t priority);

/// What RemarkRule() sends.
std::string RemarkFlowSent(std::uint32_t port, std::uint32_t precedence, std::uint32_t icIndex,
                           std::uint32_t vlanActionIndex, std::uint32_t queueOffset = 0);

std::string ActionDeleteSent(std::uint32_t index);
std::string ClassDeleteSent(std::uint32_t icIndex);
std::string FlowDeleteSent(std::uint32_t icIndex, std::uint32_t flowIndex);

}  // namespace hal_test
