/// @file
/// What reports say of a port's link.
#pragma once

#include <optional>

#include "phy/phy.h"
#include "report/report_table.h"

namespace onu {

/// Speed, duplex mode and pause of a link that is up.
const Columns<virtual_onu::Link>& LinkColumns();

/// The same as an object; null while the link is down.
Json LinkToJson(const std::optional<virtual_onu::Link>& link);

}  // namespace onu
