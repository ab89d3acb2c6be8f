/// @file
/// A port's link, as JSON and as text.
#pragma once

#include <optional>

#include "language/words.h"
#include "phy/phy.h"
#include "report/json.h"

namespace onu {

/// Speed, duplex mode and pause of a link; null while it is down.
Json LinkToJson(const std::optional<virtual_onu::Link>& link);

/// State, speed, duplex mode and pause, one word each; "-" where a link that is down has none.
Words LinkWords(const std::optional<virtual_onu::Link>& link);

}  // namespace onu
