/// @file
/// The command that lists what left the library.
#include <cstddef>
#include <vector>

#include "commands/command_rows.h"
#include "report/event_report.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::TraceEvent;

Result ShowTrace(Session& session, const Arguments& arguments) {
  std::vector<TraceEvent> events =
      session.unit().trace().events(arguments.optionalNumber("SEQ").value_or(0));
  const std::size_t newest = arguments.optionalNumber("N").value_or(events.size());
  if (newest < events.size()) {
    events.erase(events.begin(), events.end() - static_cast<std::ptrdiff_t>(newest));
  }
  return Result().add("events", Listed(events, ReportEvent));
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

}  // namespace onu
