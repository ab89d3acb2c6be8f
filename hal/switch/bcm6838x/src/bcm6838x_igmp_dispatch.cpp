/// @file
/// The way of IGMP and MLD frames from the snooping service to the ports.
#include <cstdint>

#include <bcm6838x_igmp.h>
#include <hal_bcm6838x.h>
#include <platform_config.h>
#include <platform_log.h>

#include "hal_bcm6838x_log.h"

uint32_t BCM6838X_DispatchIgmpPacket(const uint8_t* packet, uint32_t length, uint32_t vlan,
                                     uint32_t port) {
  if (packet == nullptr) {
    HAL_LOG_NULL_POINTER();
    return BCM6838X_OK;
  }
  const uint32_t from = port & 0xFF;
  // Required: mcast-port-0-goes-up
  if (from <= HC_GetEthPortNum()) {
    BCM6838X_SendPacket(packet, length, vlan, from, HC_GetUplinkPortNo());
    return BCM6838X_OK;
  }
  for (uint32_t uni = 1; uni <= HC_GetEthPortNum(); ++uni) {
    BCM6838X_SendPacket(packet, length, vlan, HC_GetUplinkPortNo(), uni);
  }
  return BCM6838X_OK;
}
