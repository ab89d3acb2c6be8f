/// @file
/// The program's command line as it was typed.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "datapath/port_id.h"

namespace onu {

/// The subcommand "live".
struct LiveCommandLine {
  std::map<virtual_onu::PortId, std::string> bindings;  ///< of the ports that were named
  std::optional<std::string> script;
  std::optional<double> seconds;
};

struct CommandLine {
  bool json = false;
  bool log = false;
  bool keepGoing = false;
  std::vector<std::string> commands;             ///< of -c
  std::vector<std::string> config;               ///< of --config, "KEY=VALUE"
  std::optional<std::string> script;             ///< of the subcommand "run"
  std::optional<std::vector<std::string>> help;  ///< the words behind the subcommand "help"
  std::optional<LiveCommandLine> live;
  std::optional<std::string> text;  ///< help or version, to print instead of doing something
};

/// Reads the command line; throws a Failure for wrong use.
CommandLine ReadCommandLine(int argc, const char* const* argv);

}  // namespace onu
