/// @file
/// The commands of policing and rates.
#pragma once

#include <span>

#include "device/command_row.h"

namespace virtual_onu {

std::span<const CommandRow> QosCommands();

}  // namespace virtual_onu
