/// @file
/// The command line by CLI11, which no other file knows: its header takes longer to compile than a
/// whole file of the program.
#include "command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "language/failure.h"

namespace onu {

namespace {

using virtual_onu::PortId;

/// Longer runs end by a signal.
constexpr double kMostSeconds = 1e6;

/// Options of further ports are there, but not listed.
constexpr std::uint32_t kListedUniPorts = 4;

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
class LiveSubcommand {
 public:
  explicit LiveSubcommand(CLI::App& app);

  /// Nothing when the subcommand was not given.
  [[nodiscard]] std::optional<LiveCommandLine> line() const;

 private:
  CLI::App* live_;
  std::map<PortId, std::string> bindings_;
  std::string script_;
  double seconds_ = 0;
};

LiveSubcommand::LiveSubcommand(CLI::App& app)
    : live_(app.add_subcommand(
          "live", "binds ports to TAP interfaces: real programs talk through the unit")) {
  live_
      ->add_option("--wan", bindings_[PortId::Wan()],
                   "the WAN side's end: tap:NAME for a TAP interface, which is made "
                   "when there is none, tap:NAME@NETNS for one in a network namespace, "
                   "fd:N for an open socket that keeps frames apart")
      ->type_name("END");
  for (std::uint32_t uni = 1; uni <= virtual_onu::kMaxUniPorts; ++uni) {
    const PortId port = PortId::Uni(uni);
    live_
        ->add_option("--" + port.name(), bindings_[port],
                     "the end of UNI port " + std::to_string(uni))
        ->type_name("END")
        ->group(uni <= kListedUniPorts ? "Options" : "");
  }
  live_
      ->add_option("--script", script_,
                   "configures the unit, - for standard input; "
                   "without it the library is started and the bound ports are up and transparent")
      ->type_name("FILE");
  live_->add_option("--for", seconds_, "ends by itself; without it, by Ctrl-C or SIGTERM")
      ->type_name("SECONDS")
      ->check(CLI::Range(0.001, kMostSeconds));
  live_->footer(
      "A port that is bound has a link, others have no cable. "
      "At the end the frames that crossed each port are listed.");
}

std::optional<LiveCommandLine> LiveSubcommand::line() const {
  if (!live_->parsed()) {
    return std::nullopt;
  }
  LiveCommandLine line;
  std::ranges::copy_if(bindings_, std::inserter(line.bindings, line.bindings.end()),
                       [](const auto& binding) { return !binding.second.empty(); });
  if (live_->count("--script") > 0) {
    line.script = script_;
  }
  if (live_->count("--for") > 0) {
    line.seconds = seconds_;
  }
  return line;
}

}  // namespace

CommandLine ReadCommandLine(int argc, const char* const* argv) {
  CommandLine line;
  std::string script;
  std::vector<std::string> help;
  bool markdown = false;

  CLI::App app("Runs the switch hardware-abstraction library on a virtual ONU.", "onu");
  app.set_version_flag("--version", "onu " ONU_VERSION);
  app.add_option("-c,--command", line.commands, "runs a command; may be repeated")
      ->allow_extra_args(false)
      ->type_name("COMMAND");
  app.add_flag("--json", line.json, "writes each result as one JSON document a line");
  app.add_flag("--log", line.log, "shows log lines as they come");
  app.add_flag("--keep-going", line.keepGoing, "goes on behind an error");
  app.add_option("--config", line.config,
                 "sets a key of the configuration at the start, \"eth=2\" or \"feature=27,0\"; "
                 "may be repeated")
      ->allow_extra_args(false)
      ->type_name("KEY=VALUE");
  CLI::App* run = app.add_subcommand("run", "runs a script");
  run->add_option("SCRIPT", script, "the script, or - for standard input")->required();
  CLI::App* explain = app.add_subcommand("help", "explains the commands of scripts and prompt");
  explain->add_option("NAME", help, "a command or an operation");
  explain->add_flag("--markdown", markdown, "writes the whole reference");
  const LiveSubcommand live(app);
  app.require_subcommand(0, 1);
  app.footer("Without run, live and -c, commands are read from the prompt.");

  line.text = Parse(app, argc, argv);
  if (!line.commands.empty() && !app.get_subcommands().empty()) {
    throw WrongUse("expected either -c or " + app.get_subcommands().front()->get_name() +
                   ", got both");
  }
  line.live = live.line();
  if (run->parsed()) {
    line.script = script;
  }
  if (explain->parsed()) {
    if (markdown) {
      help.emplace_back("--markdown");
    }
    line.help = help;
  }
  return line;
}

}  // namespace onu
