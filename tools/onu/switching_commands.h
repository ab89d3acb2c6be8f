/// @file
/// The commands about the MAC table, the multicast groups and the unit's time.
#pragma once

#include <vector>

#include "command_table.h"

namespace onu {

std::vector<Command> SwitchingCommands();

}  // namespace onu
