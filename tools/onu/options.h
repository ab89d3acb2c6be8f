/// @file
/// The program's command line.
#pragma once

#include <optional>
#include <string>

#include "language/words.h"
#include "live/live_options.h"
#include "session/session.h"

namespace onu {

struct Options {
  SessionOptions session;
  bool keepGoing = false;
  Words commands;                     ///< of -c
  std::optional<std::string> script;  ///< a path, or "-" for standard input
  std::optional<Words> help;          ///< the words behind help
  std::optional<LiveOptions> live;
};

/// What the command line says: what to do, or what to print instead.
struct CommandLine {
  Options options;
  std::optional<std::string> text;  ///< help or version
};

/// Reads the command line; throws a Failure for wrong use.
CommandLine ReadCommandLine(int argc, const char* const* argv);

}  // namespace onu
