/// @file
/// What the chip holds, as lines without indexes: two units whose objects were created in another
/// order have the same content.
#pragma once

#include <string>
#include <vector>

#include "unit/unit.h"

namespace hal_test {

/// Sorted lines, one an object, of flows with the content of their actions, of VLAN actions, port
/// actions, VLAN objects and transparent ports.
std::vector<std::string> ChipContent(virtual_onu::Unit& unit);

}  // namespace hal_test
