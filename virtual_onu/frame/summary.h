/// @file
/// One line about a frame for people. Nothing is decided by it.
#pragma once

#include <string>

#include "base/bytes.h"

namespace virtual_onu {

/// Addresses, tags, protocol, ports, length.
std::string SummarizeFrame(ByteView frame);

}  // namespace virtual_onu
