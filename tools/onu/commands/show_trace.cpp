/// @file
/// The commands that list what left the library: trace and log.
#include <cstddef>
#include <optional>
#include <vector>

#include "commands/command_rows.h"
#include "report/event_report.h"
#include "session/session.h"

namespace onu {

using virtual_onu::LogEvent;
using virtual_onu::TraceEvent;

namespace {

Result ShowTrace(Session& session, const Arguments& arguments) {
  std::vector<TraceEvent> events =
      session.unit().trace().events(arguments.optionalNumber("SEQ").value_or(0));
  const std::size_t newest = arguments.optionalNumber("N").value_or(events.size());
  if (newest < events.size()) {
    events.erase(events.begin(), events.end() - static_cast<std::ptrdiff_t>(newest));
  }
  return Result().add("events", Listed(events, ReportEvent));
}

Result ShowLog(Session& session, const Arguments& arguments) {
  const std::optional<std::uint32_t> level = arguments.optionalNumber("L");
  std::vector<LogEvent> lines = virtual_onu::EventsOf<LogEvent>(session.unit().trace().events());
  std::erase_if(lines, [level](const LogEvent& line) { return level && line.level != *level; });
  return Result().add("log", Listed(lines, [](const LogEvent& line) -> Result {
                        return {LogToJson(line), LogToText(line)};
                      }));
}

}  // namespace

const Command kShowTrace = {
    {"show trace",
     {{"N", ArgumentType::Number, "only the newest N events", Presence::Optional},
      {"SEQ", ArgumentType::Number, "only events from this sequence number on", Presence::Optional,
       "since"}},
     "lists what left the library: commands with their records decoded, log lines, calls",
     {"Init\nshow trace", "Init\nshow trace 2", "Init\nshow trace since 5"}},
    ShowTrace};

const Command kShowLog = {
    {"show log",
     {{"L", ArgumentType::Number, "only lines of this level", Presence::Optional, "level"}},
     "lists the log lines",
     {"show log", "config fail-device on\nInit\nshow log level 1"}},
    ShowLog};

}  // namespace onu
