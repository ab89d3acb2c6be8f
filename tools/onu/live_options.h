/// @file
/// The options of a live run.
#pragma once

#include <CLI/CLI.hpp>
#include <map>
#include <optional>
#include <string>

#include "options.h"

namespace onu {

/// Declares the subcommand "live" and reads what was given to it.
class LiveCommandLine {
 public:
  explicit LiveCommandLine(CLI::App& app);
  LiveCommandLine(const LiveCommandLine&) = delete;
  LiveCommandLine& operator=(const LiveCommandLine&) = delete;

  /// Tells whether the subcommand was given.
  [[nodiscard]] bool given() const { return live_->parsed(); }

  /// What was given; throws a Failure for wrong use.
  [[nodiscard]] LiveOptions options() const;

  /// The script's path, or "-"; nothing when none was given.
  [[nodiscard]] std::optional<std::string> script() const;

 private:
  CLI::App* live_;
  std::map<virtual_onu::PortId, std::string> bindings_;
  std::string script_;
  double seconds_ = 0;
};

}  // namespace onu
