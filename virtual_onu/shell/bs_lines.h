/// @file
/// The lines of the data-path shell "bs".
#pragma once

#include <span>

#include "shell/line_row.h"

namespace virtual_onu {

std::span<const LineRow> BsLines();

}  // namespace virtual_onu
