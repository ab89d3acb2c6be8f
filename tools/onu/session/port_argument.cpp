/// @file
/// Ports of the unit by name.
#include "session/port_argument.h"

#include <algorithm>

#include "language/failure.h"

namespace onu {

using virtual_onu::PortId;

namespace {

/// The port of the argument PORT, one of the names.
PortId OneOf(const Words& names, const Arguments& arguments) {
  const PortId port = virtual_onu::ParsePort(arguments.word("PORT")).value();
  if (std::ranges::find(names, port.name()) == names.end()) {
    throw WrongUse("PORT: expected " + Join(names, ", ") + ", got " + Quote(port.name()) +
                   "; the unit has no more ports (config eth)");
  }
  return port;
}

}  // namespace

PortId PortArgument(Session& session, const Arguments& arguments) {
  return OneOf(PortNames(session), arguments);
}

std::uint32_t UniPortArgument(Session& session, const Arguments& arguments) {
  return OneOf(UniPortNames(session), arguments).uni;
}

std::uint32_t UniNumberArgument(Session& session, const Arguments& arguments) {
  const std::uint32_t uni = arguments.number("N");
  const std::uint32_t ports = session.unit().dataPath().uniPorts();
  if (uni == 0 || uni > ports) {
    throw WrongUse("expected a UNI port from 1 to " + std::to_string(ports) + ", got " +
                   std::to_string(uni));
  }
  return uni;
}

Words UniPortNames(Session& session) {
  Words names;
  for (std::uint32_t uni = 1; uni <= session.unit().dataPath().uniPorts(); ++uni) {
    names.push_back(PortId::Uni(uni).name());
  }
  return names;
}

Words PortNames(Session& session) {
  Words names = UniPortNames(session);
  names.push_back(PortId::Wan().name());
  return names;
}

}  // namespace onu
