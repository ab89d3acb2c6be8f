/// @file
/// The command that sets the counters of frames to zero.
#include "commands/command_rows.h"
#include "session/session.h"

namespace onu {

namespace {

Result ClearCounters(Session& session, const Arguments& /*arguments*/) {
  session.unit().dataPath().clearCounters();
  session.noteChange({"clear", "counters"});
  return {};
}

}  // namespace

const Command kClearCounters = {
    {"clear counters", {}, "sets the counters of frames to zero", {"clear counters"}},
    ClearCounters,
    true};

}  // namespace onu
