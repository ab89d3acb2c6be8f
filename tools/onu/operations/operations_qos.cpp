/// @file
/// The rows of the operations that bcm6838x_qos.h declares. A new operation is one more row.
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include <bcm6838x_qos.h>

#include "language/failure.h"
#include "operations/operation_rows.h"
#include "operations/qos_rule.h"

namespace onu {

namespace {

using enum ResultKind;

constexpr Argument kRulePort = {"port", ArgumentType::Number,
                                "UNI port number; the low 8 bits count"};
constexpr Argument kRuleType = {"type", ArgumentType::Number,
                                "0 re-marks IPv4, 1 re-marks IPv6, 2 access control"};

QosClassRule RuleOf(const Arguments& given, const std::string& word) {
  return ParseQosRule(given.number("port"), given.number("type"), word);
}

CallOutcome AddRule(const Arguments& given, std::span<const Argument> /*rows*/) {
  const QosClassRule rule = RuleOf(given, given.word("rule"));
  CallOutcome outcome;
  outcome.value = BCM6838X_AddQosClassificationRule(&rule);
  return outcome;
}

CallOutcome ApplyRules(const Arguments& given, std::span<const Argument> /*rows*/) {
  const Words words = given.words("rules");
  if (words.size() > BCM6838X_QOS_RULES) {
    throw WrongUse("rules: expected at most " + std::to_string(BCM6838X_QOS_RULES) + ", got " +
                   std::to_string(words.size()));
  }
  QosClassRuleSet set = {};
  set.port = static_cast<std::uint8_t>(given.number("port"));
  set.ruleType = given.number("type");
  for (std::size_t i = 0; i < words.size(); ++i) {
    set.rule[i] = RuleOf(given, words[i]);
  }
  CallOutcome outcome;
  outcome.value = BCM6838X_ApplyQosClassification(&set);
  return outcome;
}

std::uint32_t SetPolicer(std::uint32_t port, std::uint32_t cir, std::uint32_t cbs,
                         std::uint32_t ebs) {
  const QosUsPolicerCfg cfg = {port, cir, cbs, ebs};
  return BCM6838X_SetQosUsPolicer(&cfg);
}

std::uint32_t SetLimit(std::uint32_t index, std::uint32_t rate) {
  const QosDsRateLimitCfg cfg = {index, rate};
  return BCM6838X_SetQosDsRateLimit(&cfg);
}

/// The priorities of the words "DSCP=PRIORITY"; DSCPs that are not named have 0.
CallOutcome SetDscpMap(const Arguments& given, std::span<const Argument> /*rows*/) {
  constexpr std::uint32_t kMaxByte = 0xFF;
  std::array<std::uint8_t, 64> map = {};
  for (const std::string& word : given.words("DSCP=PRIORITY")) {
    const std::size_t equals = word.find('=');
    const auto dscp = ParseNumber(word.substr(0, equals));
    const auto priority = ParseNumber(word.substr(equals + 1));
    if (!dscp || *dscp >= map.size() || !priority || *priority > kMaxByte) {
      throw WrongUse("expected DSCP=PRIORITY with numbers from 0 to 63 and from 0 to 255, got " +
                     Quote(word));
    }
    map.at(*dscp) = static_cast<std::uint8_t>(*priority);
  }
  CallOutcome outcome;
  outcome.value = BCM6838X_StreamSetDscpMap(given.number("port"), map.data());
  return outcome;
}

constexpr Argument Weight(std::string_view name, std::string_view text) {
  return {name, ArgumentType::Number, text};
}

std::uint32_t SetWeights(std::uint32_t w8, std::uint32_t w9, std::uint32_t w10, std::uint32_t w11,
                         std::uint32_t w12, std::uint32_t w13, std::uint32_t w14,
                         std::uint32_t w15) {
  const std::array<std::uint8_t, 8> weights = {
      static_cast<std::uint8_t>(w8),  static_cast<std::uint8_t>(w9),
      static_cast<std::uint8_t>(w10), static_cast<std::uint8_t>(w11),
      static_cast<std::uint8_t>(w12), static_cast<std::uint8_t>(w13),
      static_cast<std::uint8_t>(w14), static_cast<std::uint8_t>(w15)};
  return BCM6838X_SetQosWrrWeight(weights.data());
}

const std::vector<Operation> kRows = {
    {{"BCM6838X_AddQosClassificationRule",
      {kRulePort,
       kRuleType,
       {"rule", ArgumentType::Word,
        "PRECEDENCE,PRIORITY,FIELD=VALUE,..., the fields by their names in the listing; "
        "PRECEDENCE@PORT for another port"}},
      "installs a classification rule",
      {"Init\nAddQosClassificationRule 1 0 1,7,VlanId=100,Ipv4TosDscp=184"}},
     Status,
     {AddRule, std::nullopt}},
    {{"BCM6838X_ApplyQosClassification",
      {kRulePort,
       kRuleType,
       {"rules", ArgumentType::Word, "up to eight, as for AddQosClassificationRule",
        Presence::OptionalRest}},
      "replaces the classification rules of a port",
      {"Init\nApplyQosClassification 1 0 1,7,L4DestPort=5060 2,5,DaIp=10.0.0.1 "
       "3,0,VlanId:AlwaysMatch=0"}},
     Status,
     {ApplyRules, std::nullopt}},
    {{"BCM6838X_GetRuleTypeIndex",
      {{"type", ArgumentType::Number, "rule type"}},
      "converts a rule type to its index: 1 and 2 to themselves, others to 0",
      {"GetRuleTypeIndex 2"}},
     Number,
     Bind(BCM6838X_GetRuleTypeIndex)},
    {{"BCM6838X_SetQosUsPolicer",
      {{"port", ArgumentType::Number, "UNI port number, 1..32"},
       {"cir", ArgumentType::Number, "committed rate in units of 1000 bit/s: 0 none, 64 or more"},
       {"cbs", ArgumentType::Number, "committed burst size; logged only"},
       {"ebs", ArgumentType::Number, "excess burst size; logged only"}},
      "sets or removes the upstream policer of a port and reports its line rate",
      {"Init\nSetQosUsPolicer 1 64 0 0"}},
     Status,
     Bind(SetPolicer)},
    {{"BCM6838X_SetQosDsRateLimit",
      {{"index", ArgumentType::Number,
        "port index, 0 for UNI port 1; the command carries it plus 1"},
       {"rate", ArgumentType::Number, "limit in units of 1000 bit/s"}},
      "sets the downstream rate limit of a port",
      {"Init\nSetQosDsRateLimit 0 1000"}},
     Status,
     Bind(SetLimit)},
    {{"BCM6838X_StreamSetDscpMap",
      {kUniPort,
       {"DSCP=PRIORITY", ArgumentType::FieldWord, "priority of a DSCP; 0 for those not named",
        Presence::OptionalRest}},
      "sets a port's map from DSCP to priority",
      {"Init\nStreamSetDscpMap 1 46=7 34=5"}},
     Status,
     {SetDscpMap, std::nullopt}},
    {{"BCM6838X_SetQosWrrWeight",
      {Weight("w8", "weight of queue 8, 0..255"), Weight("w9", "of queue 9"),
       Weight("w10", "of queue 10"), Weight("w11", "of queue 11"), Weight("w12", "of queue 12"),
       Weight("w13", "of queue 13"), Weight("w14", "of queue 14"), Weight("w15", "of queue 15")},
      "sets the weights of the upstream queues 8 to 15",
      {"SetQosWrrWeight 1 1 2 2 4 4 8 8"}},
     Status,
     Bind(SetWeights)},
    {{"BCM6838X_SetQosSchedule",
      {{"scheme", ArgumentType::Number, "0 queues 0 to 7, 1 queues 8 to 15"}},
      "moves the installed re-marking flows between the two banks of queues",
      {"Init\nAddQosClassificationRule 1 0 1,7,VlanId=100\nSetQosSchedule 1"}},
     Status,
     Bind(BCM6838X_SetQosSchedule)},
    {{"BCM6838X_InitQoS", {}, "initialises the QoS bookkeeping", {"InitQoS"}},
     Status,
     Bind(BCM6838X_InitQoS)},
};

}  // namespace

const std::vector<Operation>& QosOperations() {
  return kRows;
}

}  // namespace onu
