/// @file
/// The live run: the unit's ports on TAP interfaces, so that real programs talk through the unit.
#pragma once

#include "language/failure.h"
#include "live/live_options.h"
#include "session/session.h"

namespace onu {

/// Changes the session's options to those of a unit that runs live: its tasks run, its
/// protocol clients serve, and only the ports that are bound have a cable.
void PrepareLive(SessionOptions& session, const LiveOptions& options);

/// Binds the ports, configures the unit, and carries frames until a signal comes, the time is over
/// or no interface is left; prints what crossed the ports.
ExitStatus RunLive(Session& session, const LiveOptions& options, const Sink& errors);

}  // namespace onu
