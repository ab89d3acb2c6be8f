/// @file
/// The live run: the unit's ports on TAP interfaces, so that real programs talk through the unit.
#pragma once

#include "failure.h"
#include "options.h"
#include "session.h"

namespace onu {

/// Changes the session's options to those of a unit that runs live: its tasks run, its
/// protocol clients serve, and only the ports that are bound have a cable.
void PrepareLive(Options& options);

/// Binds the ports, configures the unit, and carries frames until a signal comes, the time is over
/// or no interface is left; prints what crossed the ports.
ExitStatus RunLive(Session& session, const Options& options, const Sink& errors);

}  // namespace onu
