/// @file
/// The commands that make the driver refuse.
#include <optional>
#include <string>

#include "commands.h"
#include "device/records.h"
#include "failure.h"
#include "report_table.h"

namespace onu {

namespace {

using virtual_onu::FaultPlan;

std::optional<std::uint32_t> CodeOf(const Arguments& arguments) {
  return arguments.has("CMD") ? std::optional(ParseCommandCode(arguments.word("CMD")))
                              : std::nullopt;
}

/// The position of the first command to refuse.
std::uint32_t NthOf(const Arguments& arguments) {
  const std::uint32_t nth = arguments.number("N");
  if (nth == 0) {
    throw WrongUse("N: expected a number from 1, got \"0\"");
  }
  return nth;
}

/// Notes a rule in the journal as the words that make it, and reports it.
Result NoteRule(Session& session, const Words& words) {
  session.noteChange(words);
  return {{{"rule", JoinWords({words.begin() + 1, words.end()})}}};
}

Words CountedRule(const char* kind, const Arguments& arguments) {
  Words words = {"fault", kind, arguments.word("N")};
  if (arguments.has("CMD")) {
    words.push_back(arguments.word("CMD"));
  }
  return words;
}

Json RuleToJson(const FaultPlan::Rule& rule) {
  if (rule.draw) {
    return {{"kind", "fraction"}, {"fraction", rule.draw->fraction}, {"seed", rule.draw->seed}};
  }
  return {{"kind", rule.onwards ? "from" : "nth"}, {"n", rule.nth}, {"code", OrNull(rule.code)}};
}

/// What the rule refuses.
Cell RefusedBy(const FaultPlan::Rule& rule) {
  const Json json = RuleToJson(rule);
  if (rule.draw) {
    return {json, "fraction " + json["fraction"].dump() + " seed " + json["seed"].dump()};
  }
  const std::string command = rule.code ? " " + virtual_onu::CommandName(*rule.code) : "";
  return {json, json["kind"].get<std::string>() + " " + json["n"].dump() + command};
}

const Columns<FaultPlan::Rule> kRules = {
    {kEveryMember, "refuses", RefusedBy},
    {"seen", "commands seen", &FaultPlan::Rule::seen},
};

}  // namespace

Result FaultNth(Session& session, const Arguments& arguments) {
  session.unit().device().faults().refuseNth(NthOf(arguments), CodeOf(arguments));
  return NoteRule(session, CountedRule("nth", arguments));
}

Result FaultFrom(Session& session, const Arguments& arguments) {
  session.unit().device().faults().refuseFrom(NthOf(arguments), CodeOf(arguments));
  return NoteRule(session, CountedRule("from", arguments));
}

Result FaultFraction(Session& session, const Arguments& arguments) {
  const std::string& fraction = arguments.word("F");
  session.unit().device().faults().refuseFraction(ParseFraction(fraction), arguments.number("S"));
  return NoteRule(session, {"fault", "fraction", fraction, "seed", arguments.word("S")});
}

Result FaultClear(Session& session, const Arguments& /*arguments*/) {
  session.unit().device().faults().clear();
  session.noteChange({"fault", "clear"});
  return {};
}

Result FaultShow(Session& session, const Arguments& /*arguments*/) {
  const Table table(kRules, session.unit().device().faults().rules());
  return Result().add("rules", table, "no faults");
}

}  // namespace onu
