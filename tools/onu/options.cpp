/// @file
/// What the command line asks for.
#include "options.h"

#include <algorithm>
#include <sstream>

#include "command_line.h"
#include "language/failure.h"
#include "session/config_table.h"

namespace onu {

namespace {

using virtual_onu::PortId;

/// The parts of a text between commas.
Words SplitAtCommas(std::string text) {
  std::ranges::replace(text, ',', '\n');
  std::istringstream lines(text);
  Words parts;
  for (std::string part; std::getline(lines, part);) {
    parts.push_back(part);
  }
  return parts;
}

/// "KEY=VALUE"; a comma separates the words of a value.
void SetFromOption(Settings& settings, const std::string& option) {
  const std::size_t equals = option.find('=');
  if (equals == std::string::npos) {
    throw WrongUse("--config: expected KEY=VALUE, got " + Quote(option));
  }
  try {
    SetConfig(settings, option.substr(0, equals), SplitAtCommas(option.substr(equals + 1)));
  } catch (const Failure& failure) {
    throw failure.at("--config");
  }
}

LiveOptions ReadLive(const LiveCommandLine& line) {
  if (!line.bindings.contains(PortId::Wan()) || line.bindings.size() < 2) {
    throw WrongUse(
        "live: expected --wan and at least one of --uni1, --uni2, ... "
        "(onu live --help lists the options)");
  }
  LiveOptions options;
  options.bindings = line.bindings;
  options.script = line.script;
  if (line.seconds) {
    options.duration = std::chrono::milliseconds(static_cast<std::int64_t>(*line.seconds * 1000));
  }
  return options;
}

}  // namespace

std::variant<Options, std::string> ReadOptions(int argc, const char* const* argv) {
  const CommandLine line = ReadCommandLine(argc, argv);
  if (line.text) {
    return *line.text;
  }
  Options options;
  options.session.json = line.json;
  options.session.log = line.log;
  options.keepGoing = line.keepGoing;
  options.commands = line.commands;
  options.script = line.script;
  options.help = line.help;
  for (const std::string& option : line.config) {
    SetFromOption(options.session.settings, option);
  }
  if (line.live) {
    options.live = ReadLive(*line.live);
    options.live->keepGoing = options.keepGoing;
  }
  return options;
}

}  // namespace onu
