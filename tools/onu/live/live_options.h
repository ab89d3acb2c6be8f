/// @file
/// What a live run is told.
#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>

#include "datapath/port_id.h"

namespace onu {

/// What a live run binds the unit's ports to, what configures it, and how long it lasts.
struct LiveOptions {
  std::map<virtual_onu::PortId, std::string> bindings;  ///< "tap:NAME" and its like
  std::optional<std::string> script;                    ///< a path, or "-" for standard input
  bool keepGoing = false;                               ///< behind an error of the script
  std::optional<std::chrono::milliseconds> duration;    ///< without it, until a signal comes
};

/// How people name the binding of a port: "--uni1".
inline std::string BindingName(virtual_onu::PortId port) {
  return "--" + port.name();
}

}  // namespace onu
