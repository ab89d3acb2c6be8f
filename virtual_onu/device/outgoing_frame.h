/// @file
/// A frame that a command gave to the driver to send.
#pragma once

#include <cstdint>

#include "base/bytes.h"

namespace virtual_onu {

struct OutgoingFrame {
  std::uint32_t command = 0;  ///< BRMGR_CMD_SEND_...
  std::uint32_t desPort = 0;  ///< as the command gave it
  Bytes bytes;
};

}  // namespace virtual_onu
