/// @file
/// The commands that make the driver refuse.
#include <optional>
#include <string>

#include "commands/command_rows.h"
#include "device/records.h"
#include "language/failure.h"
#include "report/report_table.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::FaultPlan;

const Argument kCommand = {"CMD", ArgumentType::CommandCode, "counts commands of this code only",
                           Presence::Optional};

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

}  // namespace

const Command kFaultNth = {
    {"fault nth",
     {{"N", ArgumentType::Number, "counts the commands from now on, from 1"}, kCommand},
     "makes the driver refuse the Nth command",
     {"fault nth 3\nInit\nshow log", "fault nth 2 FLOW_ADD\nInit"}},
    FaultNth,
    true};

const Command kFaultFrom = {
    {"fault from",
     {{"N", ArgumentType::Number, "counts the commands from now on, from 1"}, kCommand},
     "makes the driver refuse every command from the Nth on",
     {"fault from 5\nInit", "fault from 1 98\nInit\nshow classes"}},
    FaultFrom,
    true};

const Command kFaultFraction = {
    {"fault fraction",
     {{"F", ArgumentType::Fraction, "the fraction to refuse"},
      {"S", ArgumentType::Number, "seed of the choice", Presence::Required, "seed"}},
     "makes the driver refuse a fraction of all commands",
     {"fault fraction 0.25 seed 7\nInit"}},
    FaultFraction,
    true};

const Command kFaultClear = {
    {"fault clear", {}, "ends all faults", {"fault nth 3\nfault clear\nInit"}}, FaultClear, true};

const Command kFaultShow = {
    {"fault show", {}, "lists the faults", {"fault nth 3 FLOW_ADD\nfault show"}}, FaultShow};

}  // namespace onu
