/// @file
/// The multicast tables; their operations are not built yet beyond the place of the start-up in the
/// start-up sequence.
#include <cstdint>

#include <bcm6838x_igmp.h>

#include "bcm6838x_igmp_internal.h"

McastUniPortInfo g_mcastUniPortInfo[kMcastUniPorts] = {};
McastChannelInfo g_mcastChannelInfo[kMcastChannels] = {};

uint32_t BCM6838X_InitIgmp(void) {
  return BCM6838X_OK;
}
