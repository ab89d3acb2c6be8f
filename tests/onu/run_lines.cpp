/// @file
/// Sessions for tests.
#include "run_lines.h"

#include "console.h"
#include "runner.h"

namespace onu::test {

Json Ran::lastDocument() const {
  const std::string_view text = std::string_view(out).substr(0, out.find_last_not_of('\n') + 1);
  const std::size_t start = text.rfind('\n');
  return Json::parse(text.substr(start == std::string_view::npos ? 0 : start + 1), nullptr, false);
}

Ran RunLines(const Words& lines, const SessionOptions& options) {
  Ran ran;
  Console console;
  Session session(options, console, [&ran](std::string_view text) { ran.out += text; });
  Runner runner(
      session, [&ran](std::string_view text) { ran.errors += text; }, false);
  for (const std::string& line : lines) {
    if (!runner.runLine(line, "test")) {
      break;
    }
  }
  ran.status = runner.status();
  return ran;
}

Ran RunLinesAsJson(const Words& lines, SessionOptions options) {
  options.json = true;
  return RunLines(lines, options);
}

}  // namespace onu::test
