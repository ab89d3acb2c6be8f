/// @file
/// Runs lines in a session of this process, for tests.
#pragma once

#include <string>
#include <vector>

#include "language/failure.h"
#include "language/words.h"
#include "report/json.h"
#include "session/session.h"

namespace onu::test {

/// What came of the lines.
struct Ran {
  std::string out;
  std::string errors;
  ExitStatus status = ExitStatus::Done;

  /// The last document of a session with JSON; null when there is none.
  [[nodiscard]] Json lastDocument() const;
};

/// Runs the lines in a session with text output. The library's state is the process's, so a test
/// runs a session that calls operations once.
Ran RunLines(const Words& lines, const SessionOptions& options = {});

/// Runs the lines in a session with JSON output.
Ran RunLinesAsJson(const Words& lines, SessionOptions options = {});

/// What the lines print, none of which may fail.
std::string Text(const Words& lines);

/// All documents of the lines, none of which may fail.
std::vector<Json> Documents(const Words& lines, const SessionOptions& options = {});

/// The last of these.
Json Last(const Words& lines);

/// The lines, and more behind them.
Words With(Words lines, const Words& more);

/// The calls, shell lines and messages in a list of events.
std::vector<std::string> Doings(const Json& events);

/// What the last of the lines prints, none of which may fail, when those before it print `before`.
std::string Shown(const Words& lines, const std::string& before = "BCM6838X_Init() = 0 (ok)\n");

}  // namespace onu::test
