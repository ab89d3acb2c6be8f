/// @file
/// Sessions for tests.
#include "run_lines.h"

#include <gtest/gtest.h>
#include <utility>

#include "commands/command_table.h"
#include "session/console.h"
#include "session/runner.h"

namespace onu::test {

Json Ran::lastDocument() const {
  const std::string_view text = std::string_view(out).substr(0, out.find_last_not_of('\n') + 1);
  const std::size_t start = text.rfind('\n');
  return Json::parse(text.substr(start == std::string_view::npos ? 0 : start + 1)).value_or(Json());
}

Ran RunLines(const Words& lines, const SessionOptions& options) {
  Ran ran;
  Console console;
  Session session(options, AllCommands(), console,
                  [&ran](std::string_view text) { ran.out += text; });
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

std::string Text(const Words& lines) {
  Ran ran = RunLines(lines);
  EXPECT_EQ(ran.errors, "");
  return std::move(ran.out);
}

std::vector<Json> Documents(const Words& lines, const SessionOptions& options) {
  const Ran ran = RunLinesAsJson(lines, options);
  EXPECT_EQ(ran.errors, "");
  std::vector<Json> documents;
  for (const std::string& line : SplitAt(ran.out, '\n')) {
    if (!line.empty()) {
      documents.push_back(Json::parse(line).value());
    }
  }
  return documents;
}

Json Last(const Words& lines) {
  const Ran ran = RunLinesAsJson(lines);
  EXPECT_EQ(ran.errors, "");
  return ran.lastDocument();
}

Words With(Words lines, const Words& more) {
  lines.insert(lines.end(), more.begin(), more.end());
  return lines;
}

std::vector<std::string> Doings(const Json& events) {
  std::vector<std::string> doings;
  for (const Json& event : events) {
    if (event["kind"] == "call") {
      doings.push_back(event["call"].get<std::string>());
    } else if (event["kind"] == "shell") {
      doings.push_back(event["line"].get<std::string>());
    } else if (event["kind"] == "message") {
      doings.push_back(event["message"].get<std::string>());
    }
  }
  return doings;
}

std::string Shown(const Words& lines, const std::string& before) {
  const Ran ran = RunLines(lines);
  EXPECT_EQ(ran.errors, "");
  EXPECT_EQ(ran.out.substr(0, before.size()), before);
  return ran.out.substr(before.size());
}

}  // namespace onu::test
