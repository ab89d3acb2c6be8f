/// @file
/// The live run: the unit's ports on TAP interfaces, so that real programs talk through the unit.
#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>

#include "datapath/port_id.h"
#include "failure.h"
#include "session.h"

namespace onu {

/// What a live run binds the unit's ports to, what configures it, and how long it lasts.
struct LiveOptions {
  std::map<virtual_onu::PortId, std::string> bindings;  ///< "tap:NAME" and its like
  std::optional<std::string> script;                    ///< a path, or "-" for standard input
  bool keepGoing = false;                               ///< behind an error of the script
  std::optional<std::chrono::milliseconds> duration;    ///< without it, until a signal comes
};

/// Changes the session's options to those of a unit that runs live: its tasks run, its
/// protocol clients serve, and only the ports that are bound have a cable.
void PrepareLive(SessionOptions& session, const LiveOptions& options);

/// Binds the ports, configures the unit, and carries frames until a signal comes, the time is over
/// or no interface is left; prints what crossed the ports.
ExitStatus RunLive(Session& session, const LiveOptions& options, const Sink& errors);

}  // namespace onu
