/// @file
/// The command line by CLI11, which no other file knows: its header takes longer to compile than a
/// whole file of the program.
#include "options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>
#include <sstream>

#include "language/failure.h"
#include "session/config_table.h"

namespace onu {

namespace {

using virtual_onu::PortId;

/// Longer runs end by a signal.
constexpr double kMostSeconds = 1e6;

/// Options of further ports are there, but not listed.
constexpr std::uint32_t kListedUniPorts = 4;

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

/// Declares the subcommand "live" and reads what was given to it.
class LiveCommandLine {
 public:
  explicit LiveCommandLine(CLI::App& app);

  /// Tells whether the subcommand was given.
  [[nodiscard]] bool given() const { return live_->parsed(); }

  /// What was given; throws a Failure for wrong use.
  [[nodiscard]] LiveOptions options() const;

 private:
  CLI::App* live_;
  std::map<PortId, std::string> bindings_;
  std::string script_;
  double seconds_ = 0;
};

LiveCommandLine::LiveCommandLine(CLI::App& app)
    : live_(app.add_subcommand("live",
                               "binds ports to TAP interfaces: real programs talk through "
                               "the unit")) {
  live_
      ->add_option("--wan", bindings_[PortId::Wan()],
                   "the WAN side's end: tap:NAME for a TAP interface, which is made when there is "
                   "none, tap:NAME@NETNS for one in a network namespace, fd:N for an open socket "
                   "that keeps frames apart")
      ->type_name("END");
  for (std::uint32_t uni = 1; uni <= virtual_onu::kMaxUniPorts; ++uni) {
    const std::string name = "--" + PortId::Uni(uni).name();
    live_
        ->add_option(name, bindings_[PortId::Uni(uni)],
                     "the end of UNI port " + std::to_string(uni))
        ->type_name("END")
        ->group(uni <= kListedUniPorts ? "Options" : "");
  }
  live_
      ->add_option("--script", script_,
                   "configures the unit, - for standard input; without it the library is started "
                   "and the bound ports are up and transparent")
      ->type_name("FILE");
  live_->add_option("--for", seconds_, "ends by itself; without it, by Ctrl-C or SIGTERM")
      ->type_name("SECONDS")
      ->check(CLI::Range(0.001, kMostSeconds));
  live_->footer(
      "A port that is bound has a link, others have no cable. At the end the frames that "
      "crossed each port are listed.");
}

LiveOptions LiveCommandLine::options() const {
  LiveOptions options;
  for (const auto& [port, end] : bindings_) {
    if (!end.empty()) {
      options.bindings.emplace(port, end);
    }
  }
  if (!options.bindings.contains(PortId::Wan()) || options.bindings.size() < 2) {
    throw WrongUse(
        "live: expected --wan and at least one of --uni1, --uni2, ... (onu live --help "
        "lists the options)");
  }
  if (live_->count("--for") > 0) {
    options.duration = std::chrono::milliseconds(static_cast<std::int64_t>(seconds_ * 1000));
  }
  if (live_->count("--script") > 0) {
    options.script = script_;
  }
  return options;
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
    options.live->keepGoing = options.keepGoing;
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
