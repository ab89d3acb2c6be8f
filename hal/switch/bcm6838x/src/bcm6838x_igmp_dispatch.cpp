/// @file
/// The way of IGMP and MLD frames from the snooping service to the ports.
#include <cstdint>

#include <bcm6838x_igmp.h>
#include <hal_bcm6838x.h>
#include <platform_config.h>
#include <platform_log.h>

#include "hal_bcm6838x_log.h"
#include "hal_bcm6838x_ports.h"

using namespace hal;

uint32_t BCM6838X_DispatchIgmpPacket(const uint8_t* packet, uint32_t length, uint32_t vlan,
                                     uint32_t port) {
  if (HAL_IS_NULL(packet)) {
    return BCM6838X_OK;
  }
  const uint32_t from = UniPort(port);
  // Required: mcast-port-0-goes-up
  if (IsUpToLastEthPort(from)) {
    BCM6838X_SendPacket(packet, length, vlan, from, HC_GetUplinkPortNo());
    return BCM6838X_OK;
  }
  for (const uint32_t uni : EthPorts()) {
    BCM6838X_SendPacket(packet, length, vlan, HC_GetUplinkPortNo(), uni);
  }
  return BCM6838X_OK;
}
