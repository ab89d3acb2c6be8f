/// @file
/// Running of lines from a script, from the command line or from the prompt, with their errors.
#pragma once

#include <string>
#include <string_view>

#include "language/failure.h"
#include "language/script_file.h"
#include "session/session.h"

namespace onu {

/// Runs lines and prints their errors. After an error no further line runs, unless told to keep
/// going.
class Runner {
 public:
  Runner(Session& session, Sink errors, bool keepGoing)
      : session_(session), errors_(std::move(errors)), keepGoing_(keepGoing) {}

  /// Runs one line; an error is printed as "PLACE: TEXT". False when no further line is to run.
  bool runLine(std::string_view line, const std::string& place);

  /// Runs all lines of a script.
  void runScript(ScriptFile& script);

  /// Done, or the status of the first error.
  [[nodiscard]] ExitStatus status() const { return status_; }

 private:
  Session& session_;
  Sink errors_;
  const bool keepGoing_;
  ExitStatus status_ = ExitStatus::Done;
};

}  // namespace onu
