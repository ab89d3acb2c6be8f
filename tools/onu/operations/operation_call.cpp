/// @file
/// Calls of the library's operations.
#include "operations/operation_call.h"

#include <algorithm>
#include <iterator>
#include <variant>

#include <bcm6838x_api.h>

#include "report/event_report.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::CommandEvent;
using virtual_onu::EventsOf;
using virtual_onu::LogEvent;

struct Status {
  std::int64_t value;
  std::string_view name;
};

constexpr Status kStatuses[] = {
    {BCM6838X_OK, "ok"},           {BCM6838X_FAILED, "failed"},
    {BCM6838X_INVALID, "invalid"}, {BCM6838X_UNSUPPORTED, "unsupported"},
    {BCM6838X_REFUSED, "refused"}, {BCM6838X_NOT_OPEN, "not_open"},
    {BCM6838X_END, "end"},
};

/// The words of all arguments in the order of the rows, keywords included.
Words GivenWords(const Operation& operation, const Arguments& arguments) {
  Words given;
  for (const Argument& row : operation.arguments) {
    for (const std::string& word : arguments.words(row.name)) {
      if (!row.keyword.empty()) {
        given.emplace_back(row.keyword);
      }
      given.push_back(word);
    }
  }
  return given;
}

std::string ResultToText(const Operation& operation, const CallOutcome& outcome) {
  if (!outcome.value) {
    return "";
  }
  std::string text = " = " + std::to_string(*outcome.value);
  if (operation.result == ResultKind::Status) {
    text += " (" + std::string(StatusName(*outcome.value)) + ")";
  }
  return text;
}

Json CallToJson(const Operation& operation, const Words& given, const CallOutcome& outcome,
                const Observation& seen) {
  Json json = {{"name", std::string(operation.name)}, {"arguments", given}};
  if (outcome.value) {
    json["result"] = *outcome.value;
  }
  if (operation.result == ResultKind::Status && outcome.value) {
    json["status"] = std::string(StatusName(*outcome.value));
  }
  json.update(outcome.outputs);
  json["console"] = seen.console;
  json["log"] = Json::array();
  for (const LogEvent& line : EventsOf<LogEvent>(seen.events)) {
    json["log"].push_back(LogToJson(line));
  }
  json["commands"] = EventsOf<CommandEvent>(seen.events).size();
  return json;
}

/// Calls an operation, notes it in the journal, and reports it.
Result CallOperation(Session& session, const Operation& operation, const Arguments& arguments) {
  CallOutcome outcome;
  const Observation seen =
      session.observe([&] { outcome = operation.binding.call(arguments, operation.arguments); });
  const Words given = GivenWords(operation, arguments);
  Result result;
  result.json = CallToJson(operation, given, outcome, seen);
  result.text = seen.console + std::string(operation.name) + "(" + Join(given, ", ") + ")" +
                ResultToText(operation, outcome) + "\n" + outcome.text;

  Words words = {std::string(operation.name)};
  std::ranges::copy(given, std::back_inserter(words));
  session.journal().add(words, result.json, seen.events);
  return result;
}

}  // namespace

Command CommandOf(const Operation& operation) {
  Command command = {operation,
                     [&operation](Session& session, const Arguments& arguments) {
                       return CallOperation(session, operation, arguments);
                     },
                     true, "call"};
  command.prefix = kOperationPrefix;
  return command;
}

std::string_view StatusName(std::int64_t status) {
  const auto* const found = std::ranges::find(kStatuses, status, &Status::value);
  return found == std::end(kStatuses) ? "unknown" : found->name;
}

}  // namespace onu
