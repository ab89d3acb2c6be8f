/// @file
/// The command that lists the configuration, of the unit or of one port.
#include <string>

#include "commands/command_rows.h"
#include "commands/show_port.h"
#include "session/session.h"

namespace onu {

namespace {

Result ShowConfig(Session& session, const Arguments& arguments) {
  if (arguments.has("N")) {
    return ShowVlanConfig(session, arguments);
  }
  const Settings settings = session.settings();
  Result result;
  result.json["config"] = ConfigToJson(settings);
  for (const Words& words : ConfigToWords(settings)) {
    result.text += JoinWords(words) + "\n";
  }
  return result;
}

}  // namespace

const Command kShowConfig = {
    {"show config",
     {{"N", ArgumentType::Number,
       "only the VLAN configuration of this UNI port, as the driver was told it",
       Presence::Optional}},
     "lists the configuration",
     {"show config", "Init\nSetPortPvid 1 100\nSetVlanTag 1\nshow config 1"}},
    ShowConfig};

}  // namespace onu
