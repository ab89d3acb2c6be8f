/// @file
/// The switch of the EPON laser.
#include <cstdint>

#include <brmgr_cmd.h>
#include <hal_bcm6838x.h>

uint32_t BCM6838X_SetEponLaserState(uint32_t on) {
  if ((on & 0xFF) == 1) {
    // Required: laser-on-reads-back
    BCM6838X_Ioctl(BRMGR_CMD_LASER_ON, nullptr, 0, BRMGR_FLAG_READ_BACK);
  } else {
    BCM6838X_Ioctl(BRMGR_CMD_LASER_OFF, nullptr, 0, BRMGR_FLAG_INPUT);
  }
  return BCM6838X_OK;
}
