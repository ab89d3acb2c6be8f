/// @file
/// The command channel: the descriptor of the bridge-manager device and the one ioctl through which
/// every command record reaches the driver.
#include <cstdint>
#include <sys/ioctl.h>

#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>
#include <platform_log.h>

#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_log.h"

using namespace hal;

int32_t hal::sgHwDevFd = -1;

uint32_t BCM6838X_Ioctl(uint32_t cmd, void* buf, uint32_t len, uint32_t flag) {
  // Required: descriptor-0-is-not-open
  if (sgHwDevFd < 1) {
    return BCM6838X_NOT_OPEN;
  }
  // Required: closed-device-before-code
  if (cmd >= BRMGR_CMD_LIMIT) {
    return BCM6838X_INVALID;
  }
  BrmgrRequest request = {cmd, len, flag, buf};
  const int result = ioctl(sgHwDevFd, BRMGR_IOCTL_REQUEST, &request);
  if (result == 0) {
    return BCM6838X_OK;
  }
  // Required: refusal-logs-the-return-value
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "%s :%d, cmd:%d err:%lu\r\n", AsInt(cmd),
               AsUnsignedLong(static_cast<uint32_t>(result)));
  return BCM6838X_REFUSED;
}
