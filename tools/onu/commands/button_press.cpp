/// @file
/// The reset button.
#include <string>

#include "commands/command_rows.h"
#include "monitor/netlink_message.h"
#include "report/event_report.h"
#include "session/session.h"

namespace onu {

namespace {

/// A press that nobody measures.
constexpr std::uint32_t kShortPress = 100;  ///< milliseconds

Result PressButton(Session& session, const Arguments& arguments) {
  const std::uint32_t duration = arguments.optionalNumber("MS").value_or(kShortPress);
  bool listening = false;
  const Observation seen = session.observe([&] {
    virtual_onu::Unit& unit = session.unit();
    listening = unit.monitor().tell(virtual_onu::ButtonMessage(true));
    unit.clock().advance(duration);
    listening = unit.monitor().tell(virtual_onu::ButtonMessage(false)) && listening;
  });
  Result result;
  result.add("milliseconds", duration)
      .addText("button pressed for " + std::to_string(duration) + " ms\n" + seen.console)
      .add("listening", listening);
  if (!listening) {
    result.addText("no task of the library listens: config run-tasks on, then Init\n");
  }
  result.add("left", Listed(seen.events, ReportEvent));
  session.journal().add({"button", "press", std::to_string(duration)}, result.json, seen.events);
  return result;
}

}  // namespace

const Command kButtonPress = {
    {"button press",
     {{"MS", ArgumentType::Number, "how long, in milliseconds of the unit's time; 100 without it",
       Presence::Optional}},
     "presses the reset button and lets it go; "
     "what the library's task then does is recorded and not done",
     {"config run-tasks on\nInit\nbutton press", "config run-tasks on\nInit\nbutton press 5000"}},
    PressButton,
    true};

}  // namespace onu
