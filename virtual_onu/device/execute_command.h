/// @file
/// What the driver does with a command: checks, tables, index allotment. Requests, descriptors and
/// the trace are the device's.
#pragma once

#include <cstdint>
#include <span>

#include "device/driver_state.h"

namespace virtual_onu {

/// Carries out one command on a record in the processor's byte order, and fills in what the driver
/// returns. A code that has no described record is accepted and changes nothing; a refused command
/// changes neither the state nor the record.
CommandResult ExecuteCommand(DriverState& state, std::uint32_t code,
                             std::span<std::uint8_t> record);

}  // namespace virtual_onu
