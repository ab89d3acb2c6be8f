/// @file
/// Ports of the unit by name.
#include "port_argument.h"

#include "failure.h"

namespace onu {

using virtual_onu::PortId;

PortId PortArgument(Session& session, const Arguments& arguments) {
  const PortId port = virtual_onu::ParsePort(arguments.word("PORT")).value();
  if (port.uni > session.unit().dataPath().uniPorts()) {
    throw WrongUse("PORT: expected " + Join(PortNames(session), ", ") + ", got " +
                   Quote(port.name()) + "; the unit has no more ports (config eth)");
  }
  return port;
}

Words PortNames(Session& session) {
  Words names;
  for (std::uint32_t uni = 1; uni <= session.unit().dataPath().uniPorts(); ++uni) {
    names.push_back(PortId::Uni(uni).name());
  }
  names.push_back(PortId::Wan().name());
  return names;
}

}  // namespace onu
