/// @file
/// The commands of the multicast groups.
#pragma once

#include <span>

#include "device/command_row.h"

namespace virtual_onu {

std::span<const CommandRow> McastCommands();

}  // namespace virtual_onu
