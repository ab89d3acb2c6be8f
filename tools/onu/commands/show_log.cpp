/// @file
/// The command that lists the log lines.
#include <optional>
#include <vector>

#include "commands/command_rows.h"
#include "report/event_report.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::LogEvent;

Result ShowLog(Session& session, const Arguments& arguments) {
  const std::optional<std::uint32_t> level = arguments.optionalNumber("L");
  std::vector<LogEvent> lines = virtual_onu::EventsOf<LogEvent>(session.unit().trace().events());
  std::erase_if(lines, [level](const LogEvent& line) { return level && line.level != *level; });
  return Result().add("log", Listed(lines, [](const LogEvent& line) -> Result {
                        return {LogToJson(line), LogToText(line)};
                      }));
}

}  // namespace

const Command kShowLog = {
    {"show log",
     {{"L", ArgumentType::Number, "only lines of this level", Presence::Optional, "level"}},
     "lists the log lines",
     {"show log", "config fail-device on\nInit\nshow log level 1"}},
    ShowLog};

}  // namespace onu
