/// @file
/// The lines of the Ethernet tool "ethctl".
#pragma once

#include <span>

#include "shell/line_row.h"

namespace virtual_onu {

std::span<const LineRow> EthctlLines();

}  // namespace virtual_onu
