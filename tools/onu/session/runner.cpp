/// @file
/// The loop over lines.
#include "session/runner.h"

#include <optional>

namespace onu {

bool Runner::runLine(std::string_view line, const std::string& place) {
  try {
    session_.execute(line);
  } catch (const Failure& failure) {
    errors_(place + ": " + failure.what() + "\n");
    if (status_ == ExitStatus::Done) {
      status_ = failure.status();
    }
    return keepGoing_;
  }
  return !session_.done();
}

void Runner::runScript(ScriptFile& script) {
  bool more = true;
  while (more) {
    const std::optional<ScriptLine> line = script.next();
    more = line && runLine(line->text, line->place);
  }
}

}  // namespace onu
