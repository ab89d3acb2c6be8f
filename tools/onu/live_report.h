/// @file
/// What a live run prints at its end.
#pragma once

#include <map>
#include <string>

#include "live/pump.h"
#include "session.h"

namespace onu {

/// @param[in] names  how the ends are called that ports were bound to
Result ReportLive(const std::map<virtual_onu::PortId, virtual_onu::PortTraffic>& traffic,
                  const std::map<virtual_onu::PortId, std::string>& names);

}  // namespace onu
