/// @file
/// The two tables of the ports' VLAN configuration.
#include "bcm6838x_vlan_config.h"

#include <cstring>

PortVlanInfo g_PortVlanInfo[kUniPorts] = {};
PortVlanInfo g_oldPortVlanInfo[kUniPorts] = {};

void CommitVlanConfig() {
  memcpy(g_oldPortVlanInfo, g_PortVlanInfo, sizeof(g_PortVlanInfo));
}
