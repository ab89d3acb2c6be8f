/// @file
/// The live run's part of the command line.
#include "live_options.h"

#include "failure.h"

namespace onu {

namespace {

using virtual_onu::PortId;

/// Longer runs end by a signal.
constexpr double kMostSeconds = 1e6;

/// Options of further ports are there, but not listed.
constexpr std::uint32_t kListedUniPorts = 4;

}  // namespace

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
  return options;
}

std::optional<std::string> LiveCommandLine::script() const {
  return live_->count("--script") > 0 ? std::optional(script_) : std::nullopt;
}

}  // namespace onu
