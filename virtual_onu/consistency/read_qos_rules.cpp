/// @file
/// Three words of the library's tables a rule.
#include "consistency/read_qos_rules.h"

#include <algorithm>
#include <cstddef>

#include "bcm6838x_qos_internal.h"

namespace virtual_onu {
namespace {

std::optional<std::uint32_t> IndexOf(std::int32_t entry) {
  return entry == hal::kNoQosObject ? std::nullopt
                                    : std::optional(static_cast<std::uint32_t>(entry));
}

KnownQosRule RuleOf(std::uint32_t uni, std::uint32_t precedence) {
  const std::size_t entry = hal::QosRuleEntry(uni, precedence);
  return {precedence, IndexOf(hal::sg_QosClassificationICEntry[entry]),
          IndexOf(hal::sg_QosClassificationFlowEntry[entry]),
          IndexOf(hal::sg_QosClassificationVlanEntry[entry])};
}

/// The tables are zero until the start-up; after it two rules never have the same class.
bool IsStarted() {
  return std::ranges::any_of(hal::sg_QosClassificationICEntry,
                             [](std::int32_t entry) { return entry != 0; });
}

}  // namespace

std::vector<KnownQosRule> ReadQosRules(std::uint32_t uni) {
  std::vector<KnownQosRule> rules;
  if (!hal::IsInTables(uni) || !IsStarted()) {
    return rules;
  }
  for (std::uint32_t precedence = 1; hal::IsQosPrecedence(precedence); ++precedence) {
    const KnownQosRule rule = RuleOf(uni, precedence);
    if (rule.icIndex || rule.flowIndex || rule.vlanActionIndex) {
      rules.push_back(rule);
    }
  }
  return rules;
}

}  // namespace virtual_onu
