/// @file
/// The command that ends the session.
#include "commands/command_rows.h"
#include "session/session.h"

namespace onu {

namespace {

Result Quit(Session& session, const Arguments& /*arguments*/) {
  session.quit();
  return {};
}

}  // namespace

const Command kQuit = {{"quit", {}, "ends the session", {"quit"}}, Quit};

}  // namespace onu
