/// @file
/// Which ports have a policer; the QoS operations are not built yet beyond the place of the
/// start-up in the start-up sequence.
#include <cstdint>

#include <bcm6838x_qos.h>

#include "bcm6838x_qos_internal.h"

uint32_t g_portPolicerCfg[kPolicerPorts] = {};

uint32_t BCM6838X_InitQoS(void) {
  return BCM6838X_OK;
}
