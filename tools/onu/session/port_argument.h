/// @file
/// The port of a command line, checked against the unit's ports.
#pragma once

#include <cstdint>

#include "datapath/port_id.h"
#include "language/argument.h"
#include "session/session.h"

namespace onu {

/// The port of the argument PORT; throws a Failure when the unit has no such port.
virtual_onu::PortId PortArgument(Session& session, const Arguments& arguments);

/// The same of an argument PORT that is a UNI port: its number.
std::uint32_t UniPortArgument(Session& session, const Arguments& arguments);

/// The UNI port of the argument N; throws a Failure when the unit has no such port.
std::uint32_t UniNumberArgument(Session& session, const Arguments& arguments);

/// "uni1", ...: the UNI ports of the unit.
Words UniPortNames(Session& session);

/// "uni1", ..., "wan": all ports of the unit.
Words PortNames(Session& session);

}  // namespace onu
