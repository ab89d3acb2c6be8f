/// @file
/// Rendering of events that wait for the library, and of frames that it sent.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "report/report_table.h"
#include "unit/unit.h"

namespace onu {

/// The event of a trapped frame: type, name, port and what kept it from the library; in words "event
/// BPDU of port 1". Null and no words when the frame was not trapped.
Cell EventOf(virtual_onu::PortId port, const virtual_onu::Verdict& verdict);

/// "2 events wait for the library\n"; empty when none does.
std::string PendingToText(std::size_t pending);

/// What people read where nothing was sent.
constexpr std::string_view kNoTransmission = "nothing was transmitted";

Table TransmissionTable(const std::vector<virtual_onu::Transmission>& transmissions);

}  // namespace onu
