/// @file
/// The command line by CLI11.
#include "options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <sstream>

#include "config_table.h"
#include "live.h"
#include "live_options.h"

namespace onu {

namespace {

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

std::string OneLine(std::string text) {
  std::ranges::replace(text, '\n', ' ');
  return text;
}

/// Parses the command line; the text to print instead of doing something, if that is asked for.
std::optional<std::string> Parse(CLI::App& app, int argc, const char* const* argv) {
  try {
    app.parse(argc, argv);
    return std::nullopt;
  } catch (const CLI::CallForHelp&) {
    return app.help();
  } catch (const CLI::CallForVersion& version) {
    return std::string(version.what()) + "\n";
  } catch (const CLI::ParseError& error) {
    throw WrongUse(OneLine(error.what()) + " (onu --help lists the options)");
  }
}

}  // namespace

CommandLine ReadCommandLine(int argc, const char* const* argv) {
  CommandLine line;
  Options& options = line.options;
  Words config;
  std::string script;
  Words help;
  bool markdown = false;

  CLI::App app("Runs the switch hardware-abstraction library on a virtual ONU.", "onu");
  app.set_version_flag("--version", "onu " ONU_VERSION);
  app.add_option("-c,--command", options.commands, "runs a command; may be repeated")
      ->allow_extra_args(false)
      ->type_name("COMMAND");
  app.add_flag("--json", options.session.json, "writes each result as one JSON document a line");
  app.add_flag("--log", options.session.log, "shows log lines as they come");
  app.add_flag("--keep-going", options.keepGoing, "goes on behind an error");
  app.add_option("--config", config,
                 "sets a key of the configuration at the start, \"eth=2\" or \"feature=27,0\"; may "
                 "be repeated")
      ->allow_extra_args(false)
      ->type_name("KEY=VALUE");
  CLI::App* run = app.add_subcommand("run", "runs a script");
  run->add_option("SCRIPT", script, "the script, or - for standard input")->required();
  CLI::App* explain = app.add_subcommand("help", "explains the commands of scripts and prompt");
  explain->add_option("NAME", help, "a command or an operation");
  explain->add_flag("--markdown", markdown, "writes the whole reference");
  LiveCommandLine live(app);
  app.require_subcommand(0, 1);
  app.footer("Without run, live and -c, commands are read from the prompt.");

  line.text = Parse(app, argc, argv);
  if (!options.commands.empty() && !app.get_subcommands().empty()) {
    throw WrongUse("expected either -c or " + app.get_subcommands().front()->get_name() +
                   ", got both");
  }
  if (line.text) {
    return line;
  }
  for (const std::string& option : config) {
    SetFromOption(options.session.settings, option);
  }
  if (run->parsed()) {
    options.script = script;
  }
  if (live.given()) {
    options.live = live.options();
    options.script = live.script();
    PrepareLive(options);
  }
  if (explain->parsed()) {
    if (markdown) {
      help.emplace_back("--markdown");
    }
    options.help = help;
  }
  return line;
}

}  // namespace onu
