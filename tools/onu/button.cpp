/// @file
/// The reset button, and how the kernel's messages reach the library's task.
#include <string>

#include "commands.h"
#include "event_report.h"
#include "kernel_message.h"
#include "monitor/netlink_message.h"

namespace onu {

namespace {

/// A press that nobody measures.
constexpr std::uint32_t kShortPress = 100;  ///< milliseconds

/// Whether a task was started whose socket will be there, if it is not yet.
bool ExpectsSocket(virtual_onu::Platform& platform) {
  const virtual_onu::PlatformConfig& config = platform.config();
  return config.runTasks && !platform.tasks().empty() && !config.monitorSocketFails &&
         !config.monitorBindFails && config.monitorRegisterResult == 0;
}

}  // namespace

bool TellKernelTask(Session& session, virtual_onu::ByteView datagram) {
  virtual_onu::Unit& unit = session.unit();
  if (ExpectsSocket(unit.platform())) {
    unit.monitor().waitUntilBound();
  }
  return unit.monitor().send(datagram) && unit.monitor().flush();
}

Result PressButton(Session& session, const Arguments& arguments) {
  const std::uint32_t duration = arguments.optionalNumber("MS").value_or(kShortPress);
  bool listening = false;
  const Observation seen = session.observe([&] {
    listening = TellKernelTask(session, virtual_onu::ButtonMessage(true));
    session.unit().clock().advance(duration);
    listening = TellKernelTask(session, virtual_onu::ButtonMessage(false)) && listening;
  });
  Result result;
  result.json = {{"milliseconds", duration}, {"listening", listening}};
  Json& left = result.json["left"] = Json::array();
  result.text = "button pressed for " + std::to_string(duration) + " ms\n" + seen.console;
  if (!listening) {
    result.text += "no task of the library listens: config run-tasks on, then Init\n";
  }
  for (const virtual_onu::TraceEvent& event : seen.events) {
    left.push_back(EventToDecodedJson(event));
    result.text += EventToText(event);
  }
  session.journal().add({"button", "press", std::to_string(duration)}, result.json, seen.events);
  return result;
}

}  // namespace onu
