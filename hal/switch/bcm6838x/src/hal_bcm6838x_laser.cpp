/// @file
/// The switch of the EPON laser.
#include <cstdint>

#include <brmgr_cmd.h>
#include <hal_bcm6838x.h>

#include "hal_bcm6838x_channel.h"

using namespace hal;

uint32_t BCM6838X_SetEponLaserState(uint32_t on) {
  if ((on & 0xFF) == 1) {
    // Required: laser-on-reads-back
    Send<BRMGR_CMD_LASER_ON>();
  } else {
    Send<BRMGR_CMD_LASER_OFF>();
  }
  return BCM6838X_OK;
}
