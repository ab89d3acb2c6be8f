/// @file
/// Rendering of events that wait for the library, and of frames that it sent.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "report/json.h"
#include "unit/unit.h"

namespace onu {

/// The event of a trapped frame: type, name, port and what kept it from the library; null when the
/// frame was not trapped.
Json EventOfToJson(virtual_onu::PortId port, const virtual_onu::Verdict& verdict);

/// The same in words, "event BPDU of port 1"; empty when the frame was not trapped.
std::string EventOfToText(virtual_onu::PortId port, const virtual_onu::Verdict& verdict);

/// "2 events wait for the library\n"; empty when none does.
std::string PendingToText(std::size_t pending);

Json TransmissionsToJson(const std::vector<virtual_onu::Transmission>& transmissions);

/// A table; `none` when there is no row.
std::string TransmissionsToText(const std::vector<virtual_onu::Transmission>& transmissions,
                                const std::string& none);

}  // namespace onu
