/// @file
/// The two tables of the ports' VLAN configuration, and the start-up of the
/// VLAN area. What the configuration becomes in the chip is in
/// bcm6838x_vlan_rebuild.cpp.
#include "bcm6838x_vlan_config.h"

#include <cstring>

#include <bcm6838x_vlan_port.h>
#include <brmgr_cmd.h>
#include <platform_log.h>

#include "bcm6838x_vlan_mcast.h"
#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_log.h"
#include "hal_bcm6838x_object.h"
#include "hal_bcm6838x_ports.h"

using namespace hal;

PortVlanInfo hal::g_PortVlanInfo[kUniPorts] = {};
PortVlanInfo hal::g_oldPortVlanInfo[kUniPorts] = {};

namespace {

void CreateDefaultAction() {
  VlanActionRule record = BeginAction(BRMGR_DIR_DOWNSTREAM, BRMGR_TAG_POP);
  if (Send<BRMGR_CMD_VLAN_ACTION_ADD>(record) == BCM6838X_OK) {
    // Required: default-action-kept-on-refusal
    g_dsVlanAction = record.vlanActionIndex;
  }
}

// Required: missing-ports-have-mode-0
void ResetConfig() {
  // Required: port-count-asked-each-round
  for (const uint32_t uni : EthPortsInTables()) {
    g_PortVlanInfo[uni - 1] = {};
    g_PortVlanInfo[uni - 1].vlanMode = BCM6838X_VLAN_MODE_NONE;
  }
  CommitVlanConfig();
}

void ClearChipTables() {
  memset(g_wanVlan, 0, sizeof(g_wanVlan));
  memset(g_lanVlan, 0, sizeof(g_lanVlan));
  memset(g_vlanAction, 0, sizeof(g_vlanAction));
  memset(g_usIngressClass, 0, sizeof(g_usIngressClass));
  memset(g_dsIngressClass, 0, sizeof(g_dsIngressClass));
}

}  // namespace

PortVlanInfo* hal::FindVlanInfo(const char* function, uint32_t port) {
  if (!IsInTables(port)) {
    HAL_LOG_AS(function, LOG_LEVEL_INVALID, "[%s %d] port %u is out of range\r\n", port);
    return nullptr;
  }
  return &g_PortVlanInfo[port - 1];
}

bool hal::CarriesEveryVlan(uint32_t uni) {
  const uint32_t mode = g_PortVlanInfo[uni - 1].vlanMode;
  return mode == BCM6838X_VLAN_MODE_TRANSPARENT || mode == BCM6838X_VLAN_MODE_ZTE_STACKING;
}

void hal::CommitVlanConfig() {
  // Required: commit-copies-all-ports
  memcpy(g_oldPortVlanInfo, g_PortVlanInfo, sizeof(g_PortVlanInfo));
}

uint32_t BCM6838X_InitVlan(void) {
  CreateDefaultAction();
  ResetConfig();
  ClearChipTables();
  return BCM6838X_OK;
}
