/// @file
/// The commands of the MAC table.
#pragma once

#include <span>

#include "device/command_row.h"

namespace virtual_onu {

std::span<const CommandRow> MacCommands();

}  // namespace virtual_onu
