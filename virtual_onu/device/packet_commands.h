/// @file
/// The commands of the packet path: the traps of the ports, and the frames that the driver is given
/// to send.
#pragma once

#include <cstdint>
#include <span>

#include "device/command_row.h"

namespace virtual_onu {

std::span<const CommandRow> PacketCommands();

}  // namespace virtual_onu
