/// @file
/// The command that shows the QoS of one UNI port: the rules that the library installed, in words,
/// and the port's policer, rates and DSCP map.
#include <algorithm>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <brmgr_record.h>

#include "commands/command_rows.h"
#include "consistency/read_qos_rules.h"
#include "datapath/vlan_action.h"
#include "device/qos_tables.h"
#include "frame/frame.h"
#include "report/chip_report.h"
#include "report/report_table.h"
#include "session/port_argument.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::DirectionTables;
using virtual_onu::DownstreamLimit;
using virtual_onu::DscpMap;
using virtual_onu::IngressClass;
using virtual_onu::KnownQosRule;
using virtual_onu::QosTables;

constexpr std::uint32_t kBank = 8;

/// A rule of the library with what the chip has of it; null where the chip has nothing.
struct RuleState : KnownQosRule {
  const IngressClass* ingressClass = nullptr;
  const IngressFlowRule* flow = nullptr;
  const VlanActionRule* action = nullptr;
};

template <typename Map>
const typename Map::mapped_type* Find(const Map& map, const std::optional<std::uint32_t>& index) {
  const auto found = index ? map.find(*index) : map.end();
  return found == map.end() ? nullptr : &found->second;
}

std::vector<RuleState> RulesOf(const DirectionTables& chip, std::uint32_t uni) {
  std::vector<RuleState> rules;
  for (const KnownQosRule& known : virtual_onu::ReadQosRules(uni)) {
    RuleState& rule = rules.emplace_back(RuleState{known});
    rule.ingressClass = Find(chip.classes, known.icIndex);
    rule.action = Find(chip.actions, known.vlanActionIndex);
    if (rule.ingressClass != nullptr) {
      rule.flow = Find(rule.ingressClass->flows, known.flowIndex);
    }
  }
  return rules;
}

/// What becomes of the frames that meet a rule, one word group a step.
Words StepsOf(const RuleState& rule) {
  if (rule.flow == nullptr) {
    return {"nothing: the chip has no such flow"};
  }
  if (rule.flow->forward != BRMGR_FORWARD_PASS) {
    const FieldTexts fields("IngressFlowRule", BytesOf(*rule.flow));
    return {rule.flow->forward == BRMGR_FORWARD_ACL ? "drop" : fields["forward"]};
  }
  Words steps;
  if (rule.action != nullptr) {
    // A frame with a tag, so that each operation has something to work on.
    virtual_onu::Bytes frame(virtual_onu::kEthernetHeaderSize);
    virtual_onu::PushTag(frame, {});
    virtual_onu::ApplyVlanAction(*rule.action, frame, &steps);
  }
  steps.push_back("queue " + std::to_string(rule.flow->queue));
  return steps;
}

Cell PriorityOf(const RuleState& rule) {
  return rule.ingressClass != nullptr ? Cell(rule.ingressClass->cfg.priority) : Cell();
}

std::string KeysOfRule(const RuleState& rule) {
  return rule.flow == nullptr
             ? "-"
             : KeysOf(*rule.ingressClass, FieldTexts("IngressFlowRule", BytesOf(*rule.flow)));
}

template <std::optional<std::uint32_t> KnownQosRule::*index>
Cell IndexOf(const RuleState& rule) {
  return rule.*index ? Cell(rule.*index) : Cell({}, "none");
}

const Columns<RuleState> kRules = {
    {"precedence", "precedence", &RuleState::precedence},
    {"icIndex", "class", IndexOf<&KnownQosRule::icIndex>},
    {"priority", "priority", PriorityOf},
    {"flowIndex", "flow", IndexOf<&KnownQosRule::flowIndex>},
    {"vlanActionIndex", "action", IndexOf<&KnownQosRule::vlanActionIndex>},
    {"queue", "", [](const auto& rule) { return rule.flow ? Cell(rule.flow->queue) : Cell(); }},
    {"steps", "does",
     [](const auto& rule) { return Cell(StepsOf(rule), Join(StepsOf(rule), ", ")); }},
    {"keys", "keys", KeysOfRule},
};

bool IsRemarking(const RuleState& rule) {
  return rule.flow != nullptr && rule.action != nullptr && rule.flow->remark != 0;
}

/// The schemes in which the re-marking flows are; a flow in neither bank shows none.
std::set<std::uint32_t> SchemesOf(const std::vector<RuleState>& rules) {
  std::set<std::uint32_t> schemes;
  for (const RuleState& rule : rules) {
    const std::uint32_t offset =
        IsRemarking(rule) ? rule.flow->queue - rule.flow->remarkPriority : BRMGR_INDEX_NONE;
    if (offset == 0 || offset == kBank) {
      schemes.insert(offset / kBank);
    }
  }
  return schemes;
}

/// The scheme, as a number and in words. The library keeps it to itself; the flows show it.
Cell SchemeOf(const std::vector<RuleState>& rules) {
  const std::set<std::uint32_t> schemes = SchemesOf(rules);
  if (schemes.size() > 1) {
    return {"mixed", "mixed, both banks are in use"};
  }
  if (!schemes.empty()) {
    return *schemes.begin() == 0 ? Cell(0, "0, the strict queues 0 to 7")
                                 : Cell(1, "1, the weighted queues 8 to 15");
  }
  return {{},
          std::ranges::any_of(rules, IsRemarking)
              ? "unknown, no flow is in the queue of its priority in a bank"
              : "unknown, no rule re-marks"};
}

Cell PolicerOf(Session& session, std::uint32_t uni) {
  const auto* policer = Find(session.unit().device().qosTables().policers, uni);
  if (policer == nullptr) {
    return {{}, "none"};
  }
  const PolicerCfg& cfg = policer->cfg;
  const std::uint64_t left = session.unit().dataPath().policerTokens(uni).value_or(0);
  return {{{"rate", cfg.rate}, {"burst", cfg.burst}, {"tokensLeft", left}},
          std::to_string(cfg.rate) + " bit/s, burst " + std::to_string(cfg.burst) + " octets, " +
              std::to_string(left) + " octets left"};
}

Cell RateOf(const std::uint32_t* rate, const char* none) {
  return rate == nullptr ? Cell({}, none) : Cell(*rate, std::to_string(*rate) + " bit/s");
}

/// Runs of DSCPs of one priority, "0-7=0 8-15=1".
std::string RunsOf(const DscpMap& map) {
  Words runs;
  for (std::size_t first = 0; first < map.size();) {
    std::size_t last = first;
    while (last + 1 < map.size() && map.at(last + 1) == map.at(first)) {
      ++last;
    }
    const std::string end = last == first ? "" : "-" + std::to_string(last);
    runs.push_back(std::to_string(first) + end + "=" + std::to_string(map.at(first)));
    first = last + 1;
  }
  return Join(runs, " ");
}

Cell MapOf(const DscpMap* map) {
  return map == nullptr ? Cell({}, "not told") : Cell(*map, RunsOf(*map));
}

Result ShowQos(Session& session, const Arguments& arguments) {
  const std::uint32_t uni = UniNumberArgument(session, arguments);
  const QosTables& tables = session.unit().device().qosTables();
  const std::vector<RuleState> rules = RulesOf(session.unit().device().tables().upstream, uni);
  const DownstreamLimit* limit = Find(tables.dsLimits, uni);
  return Result()
      .add("port", uni)
      .add("rules", Table(kRules, rules), "no rules")
      .addLine("scheme", "scheduling scheme, as the flows show it", SchemeOf(rules))
      .addLine("policer", "policer", PolicerOf(session, uni))
      .addLine("lineRate", "line rate", RateOf(Find(tables.lineRates, uni), "not told"))
      .addLine("downstreamLimit", "downstream limit",
               RateOf(limit == nullptr ? nullptr : &limit->rate, "none"))
      .addLine("dscpMap", "DSCP map", MapOf(Find(tables.dscpMaps, uni)));
}

}  // namespace

const Command kShowQos = {
    {"show qos",
     {{"N", ArgumentType::Number, "UNI port, from 1"}},
     "shows the QoS of a port: the rules that the library installed and what they do, "
     "the scheduling scheme, policer, line rate, downstream limit and DSCP map",
     {"Init\nApplyQosClassification 1 0 1,7,VlanId=200,Ipv4TosDscp=184 8,0,VlanId=100\n"
      "show qos 1"}},
    ShowQos};

}  // namespace onu
