/// @file
/// The commands of the ports and of MAC learning.
#pragma once

#include <span>

#include "device/command_row.h"

namespace virtual_onu {

std::span<const CommandRow> PortCommands();

}  // namespace virtual_onu
