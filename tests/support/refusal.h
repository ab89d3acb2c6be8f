/// @file
/// The log line of a command that the driver refuses.
#pragma once

#include <cstdint>
#include <string>

namespace hal_test {

/// The line of the command channel, as Left() describes it.
std::string RefusalLogged(std::uint32_t code);

}  // namespace hal_test
