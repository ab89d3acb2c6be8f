/// @file
/// The VLAN configuration of the UNI ports: as the management layer last set it, and as its rules
/// are programmed.
#ifndef BCM6838X_VLAN_CONFIG_H
#define BCM6838X_VLAN_CONFIG_H

#include <cstddef>
#include <cstdint>

#include <bcm6838x_vlan.h>

#include "bcm6838x_vlan_internal.h"

constexpr size_t kVlanListEntries = 512;

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

/// One port's configuration. The driver receives the records of all ports in one table.
struct PortVlanInfo {
  uint16_t pvid;
  uint16_t priority;        ///< default priority, 0..255
  uint16_t tpid;            ///< of the PVID tag
  uint16_t tagAttr;         ///< cleared whenever a PVID is set
  uint32_t vlanMode;        ///< a PortVlanMode
  uint32_t stackingEnable;  ///< 1 while stackingList has had entries
  PortVlanTrunkEntry trunkList[kVlanListEntries];
  PortVlanTransEntry translationList[kVlanListEntries];
  PortVlanStackEntry stackingList[kVlanListEntries];
};
static_assert(offsetof(PortVlanInfo, trunkList) == 16);
static_assert(offsetof(PortVlanInfo, translationList) == 2064);
static_assert(offsetof(PortVlanInfo, stackingList) == 7184);
static_assert(sizeof(PortVlanInfo) == 15376);

extern "C" {
extern PortVlanInfo g_PortVlanInfo[kUniPorts];     ///< as last set
extern PortVlanInfo g_oldPortVlanInfo[kUniPorts];  ///< as programmed; rules are removed by it
}

/// Whether the tables hold a record for a port.
constexpr bool HasVlanInfo(uint32_t port) {
  return port - 1 < kUniPorts;
}

/// Copies the whole configuration, all ports, over the applied one.
void CommitVlanConfig();

#endif
