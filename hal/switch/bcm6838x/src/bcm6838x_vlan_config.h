/// @file
/// The VLAN configuration of the UNI ports: as the management layer last set it, and as its rules
/// are programmed.
#ifndef BCM6838X_VLAN_CONFIG_H
#define BCM6838X_VLAN_CONFIG_H

#include <cstddef>
#include <cstdint>

#include <brmgr_record.h>

#include "bcm6838x_vlan_internal.h"

namespace hal {

constexpr size_t kVlanListEntries = sizeof(PortVlanInfo::trunkList) / sizeof(PortVlanTrunkEntry);

/// What a port does with VLAN tags; also the mode codes of BCM6838X_SetPortCtcMode.
enum PortVlanMode : uint32_t {
  kVlanModeTransparent = 0,
  kVlanModeTag = 1,
  kVlanModeTranslation = 2,
  kVlanModeTranslation2 = 3,  ///< handled like 2; no operation stores it
  kVlanModeTrunk = 4,
  kVlanModeZteTrunk = 19,
  kVlanModeHybrid = 20,  ///< handled like trunk; no operation stores it
  kVlanModeZteStacking = 160,
  kVlanModeBdcomStacking = 253,
  kVlanModeNone = 255,  ///< after start-up
};

extern "C" {
extern PortVlanInfo g_PortVlanInfo[kUniPorts];     ///< as last set
extern PortVlanInfo g_oldPortVlanInfo[kUniPorts];  ///< as programmed; rules are removed by it
}

/// Whether the tables hold a record for a port.
constexpr bool HasVlanInfo(uint32_t port) {
  return port - 1 < kUniPorts;
}

/// The port that a port argument names.
constexpr uint32_t VlanPort(uint32_t port) {
  return port & 0xFF;
}

/// The current configuration of a port; null, with a log line under the operation's name, when the
/// tables hold no such port.
PortVlanInfo* FindVlanInfo(const char* function, uint32_t port);

/// Copies the whole configuration, all ports, over the applied one.
void CommitVlanConfig();

}  // namespace hal

#endif
