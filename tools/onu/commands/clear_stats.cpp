/// @file
/// The command that lets the library count a port from here on.
#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <variant>

#include <brmgr_cmd.h>

#include "commands/command_rows.h"
#include "session/port_argument.h"
#include "session/session.h"

namespace onu {

namespace {

using virtual_onu::PortId;

/// The port that the newest request for counters since an event named.
std::optional<std::uint32_t> AskedPort(Session& session, std::uint64_t since) {
  std::optional<std::uint32_t> asked;
  for (const virtual_onu::TraceEvent& event : session.unit().trace().events(since)) {
    const auto* command = std::get_if<virtual_onu::CommandEvent>(&event.detail);
    if (command != nullptr && command->code == BRMGR_CMD_PORT_STATS &&
        command->before.size() >= sizeof(std::uint32_t)) {
      std::uint32_t port = 0;
      std::memcpy(&port, command->before.data(), sizeof(port));
      asked = port;
    }
  }
  return asked;
}

Result ClearStats(Session& session, const Arguments& arguments) {
  const std::uint32_t uni = UniNumberArgument(session, arguments);
  const std::uint64_t since = session.unit().trace().next();
  const Words clear = {"SetPortStatisticsClear", std::to_string(uni)};
  Result result = session.perform(session.commands().findOrThrow(clear));
  const std::optional<std::uint32_t> asked = AskedPort(session, since);
  const std::uint32_t answered = asked ? std::max(*asked, 1U) : uni;
  result.json["baselineOf"] = PortId::Uni(answered).name();
  if (answered != uni) {
    result.text += "the library asked for port " + std::to_string(*asked) +
                   ", which the driver takes for " + PortId::Uni(answered).name() + ": " +
                   PortId::Uni(uni).name() + " counts from the counters of that port\n";
  }
  return result;
}

}  // namespace

const Command kClearStats = {
    {"clear stats",
     {{"N", ArgumentType::Number, "UNI port, from 1"}},
     "lets the library count a port from here on; the chip's counters go on. "
     "The library's first request for a port names port 0, which the driver takes for UNI port 1",
     {"InitDrv\nclear stats 1\nshow stats 1"}},
    ClearStats};

}  // namespace onu
