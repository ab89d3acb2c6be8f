/// @file
/// The command that empties the trace and the log.
#include "commands/command_rows.h"
#include "session/session.h"

namespace onu {

namespace {

Result ClearTrace(Session& session, const Arguments& /*arguments*/) {
  session.unit().trace().clear();
  session.noteChange({"clear", "trace"});
  return {};
}

}  // namespace

const Command kClearTrace = {
    {"clear trace", {}, "empties the trace and the log", {"Init\nclear trace\nshow trace"}},
    ClearTrace,
    true};

}  // namespace onu
