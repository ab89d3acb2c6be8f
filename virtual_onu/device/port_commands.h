/// @file
/// The commands of the ports and of MAC learning.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "device/command_row.h"

namespace virtual_onu {

std::span<const CommandRow> PortCommands();

/// The UNI port of a device port number; nothing when the chip has no such port.
std::optional<std::uint32_t> UniOf(const DriverState& state, std::uint32_t port);

/// The refusal of a device port number that UniOf() does not know.
CommandResult NoPort(const DriverState& state, std::uint32_t port);

}  // namespace virtual_onu
