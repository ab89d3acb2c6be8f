/// @file
/// What the program is to do.
#pragma once

#include <optional>
#include <string>
#include <variant>

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

/// What the command line asks for, or a text to print instead of doing something; throws a Failure
/// for wrong use.
std::variant<Options, std::string> ReadOptions(int argc, const char* const* argv);

}  // namespace onu
