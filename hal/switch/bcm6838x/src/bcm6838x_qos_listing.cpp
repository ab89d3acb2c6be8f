/// @file
/// The listing of a rule set in the log.
#include <cstddef>
#include <cstdint>
#include <cstdio>

#include <bcm6838x_qos.h>
#include <platform_log.h>

#include "bcm6838x_qos_internal.h"
#include "hal_bcm6838x_log.h"

using namespace hal;

namespace {

#define QOS_NAME(code, name, text) text,
constexpr const char* kRuleTypes[] = {BCM6838X_QOS_RULE_LIST(QOS_NAME)};
constexpr const char* kFields[] = {BCM6838X_QOS_FIELD_LIST(QOS_NAME)};
constexpr const char* kOperators[] = {BCM6838X_QOS_OPERATOR_LIST(QOS_NAME)};
#undef QOS_NAME

#define QOS_CODE(code, name, text) code,
constexpr uint32_t kRuleTypeCodes[] = {BCM6838X_QOS_RULE_LIST(QOS_CODE)};
constexpr uint32_t kFieldCodes[] = {BCM6838X_QOS_FIELD_LIST(QOS_CODE)};
constexpr uint32_t kOperatorCodes[] = {BCM6838X_QOS_OPERATOR_LIST(QOS_CODE)};
#undef QOS_CODE

/// Tells whether a table's codes count from 0, so that a code finds its name by its position.
template <size_t count>
constexpr bool CountFromZero(const uint32_t (&codes)[count]) {
  for (size_t i = 0; i < count; ++i) {
    if (codes[i] != i) {
      return false;
    }
  }
  return true;
}
static_assert(CountFromZero(kRuleTypeCodes));
static_assert(CountFromZero(kFieldCodes));
static_assert(CountFromZero(kOperatorCodes));

/// Room for the number of a code that has no name.
struct NumberText {
  char text[sizeof("4294967295")];
};

/// The name of a code, or its number, written to `number`, when it has none.
template <size_t count>
const char* NameOf(const char* const (&names)[count], uint32_t code, NumberText& number) {
  if (code < count) {
    return names[code];
  }
  snprintf(number.text, sizeof(number.text), "%lu", AsUnsignedLong(code));
  return number.text;
}

/// The value from its first byte that is not zero to its end; nothing for a value of zeros.
void ListValue(const uint8_t (&value)[BCM6838X_QOS_VALUE_SIZE]) {
  size_t i = 0;
  while (i < BCM6838X_QOS_VALUE_SIZE && value[i] == 0) {
    ++i;
  }
  for (; i < BCM6838X_QOS_VALUE_SIZE; ++i) {
    HAL_LOG(LOG_LEVEL_TRACE, ":%02x", value[i]);
  }
}

void ListCondition(const QosClassRule& rule, size_t condition) {
  NumberText field = {};
  NumberText op = {};
  HAL_LOG(LOG_LEVEL_TRACE, "    + %-14s    %-18s    ",
          NameOf(kFields, rule.field[condition], field),
          NameOf(kOperators, rule.op[condition], op));
  ListValue(rule.value[condition]);
  HAL_LOG(LOG_LEVEL_TRACE, "\r\n");
}

void ListRule(const QosClassRule& rule) {
  HAL_LOG(LOG_LEVEL_TRACE, "    + PRECEDENCE: %u\r\n", rule.precedence);
  HAL_LOG(LOG_LEVEL_TRACE, "    + QUEUE:      %u\r\n", rule.queue);
  HAL_LOG(LOG_LEVEL_TRACE, "    + PRIORITY:   %u\r\n", rule.priority);
  HAL_LOG(LOG_LEVEL_TRACE, "    + _________________________________________________________\r\n");
  HAL_LOG(LOG_LEVEL_TRACE, "    + FIELD             OPERATOR              VALUE\r\n");
  for (size_t i = 0; i < rule.fieldCount && i < BCM6838X_QOS_CONDITIONS; ++i) {
    ListCondition(rule, i);
  }
  HAL_LOG(LOG_LEVEL_TRACE, "\r\n");
}

}  // namespace

void hal::ListQosRules(const QosClassRuleSet& set) {
  NumberText type = {};
  HAL_LOG(LOG_LEVEL_TRACE,
          "\r\n%u -------------------------------------------------------------\r\n", set.port);
  HAL_LOG(LOG_LEVEL_TRACE, "    RULETYPE:   %s\r\n\r\n", NameOf(kRuleTypes, set.ruleType, type));
  for (const QosClassRule& rule : set.rule) {
    ListRule(rule);
  }
}
