/// @file
/// The command that shows log lines as they come, or no longer.
#include "commands/command_rows.h"
#include "session/session.h"

namespace onu {

namespace {

Result SwitchLog(Session& session, const Arguments& arguments) {
  const bool on = arguments.word("STATE") == "on";
  session.showLog(on);
  return {{{"on", on}}};
}

}  // namespace

const Command kLog = {{"log",
                       {{"STATE", ArgumentType::Switch, "on or off"}},
                       "shows log lines as they come, or no longer",
                       {"log on\nfault nth 2\nInit"}},
                      SwitchLog};

}  // namespace onu
