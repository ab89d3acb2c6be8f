/// @file
/// The VLAN configuration of the UNI ports: as the management layer last set it, and as its rules
/// are programmed.
#ifndef BCM6838X_VLAN_CONFIG_H
#define BCM6838X_VLAN_CONFIG_H

#include <cstddef>
#include <cstdint>

#include <bcm6838x_vlan_port.h>
#include <brmgr_record.h>

#include "bcm6838x_vlan_internal.h"

namespace hal {

constexpr size_t kVlanListEntries = sizeof(PortVlanInfo::trunkList) / sizeof(PortVlanTrunkEntry);

extern "C" {
extern PortVlanInfo g_PortVlanInfo[kUniPorts];     ///< as last set
extern PortVlanInfo g_oldPortVlanInfo[kUniPorts];  ///< as programmed; rules are removed by it
}

/// The current configuration of a port; null, with a log line under the operation's name, when the
/// tables hold no such port.
PortVlanInfo* FindVlanInfo(const char* function, uint32_t port);

/// Copies the whole configuration, all ports, over the applied one.
void CommitVlanConfig();

}  // namespace hal

#endif
