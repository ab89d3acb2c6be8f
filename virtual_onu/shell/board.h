/// @file
/// The parts of the unit that shell lines reach.
#pragma once

#include <cstdint>

#include "device/device.h"
#include "phy/interfaces.h"

namespace virtual_onu {

/// What the lines reach beside the shell's own objects.
struct ShellBoard {
  Device& device;
  Interfaces& interfaces;
  const std::uint32_t& portRevert;  ///< not 0: LAN port objects are numbered in reverse
};

}  // namespace virtual_onu
