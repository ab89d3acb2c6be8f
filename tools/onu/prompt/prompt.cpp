/// @file
/// The loop over lines that are typed.
#include "prompt/prompt.h"

#include <optional>
#include <string>

#include "prompt/line_editor.h"
#include "session/runner.h"

namespace onu {

void RunPrompt(Session& session, FILE* terminal, const Sink& errors) {
  Runner runner(session, errors, true);
  LineEditor editor(session, terminal);
  bool more = true;
  while (more) {
    const std::optional<std::string> line = editor.read();
    more = line && (runner.runLine(*line, "onu"), !session.done());
  }
}

}  // namespace onu
