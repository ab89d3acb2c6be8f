/// @file
/// From configuration to chip: rules are removed by the applied configuration and created by the
/// current one, which is what a change of mode and BCM6838X_ApplyVlan do. The rules of each mode
/// are in bcm6838x_vlan_mode_*.cpp.
#include <cstdint>

#include <bcm6838x_port.h>
#include <bcm6838x_vlan_mode.h>
#include <bcm6838x_vlan_port.h>
#include <brmgr_cmd.h>
#include <hal_bcm6838x.h>
#include <platform_log.h>

#include "bcm6838x_vlan_config.h"
#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_log.h"
#include "hal_bcm6838x_ports.h"

using namespace hal;

namespace {

// Nobody looks at the results of the builders, which log their own failures. A mode that is none has
// no rules.

void AddRules(uint32_t uni, const PortVlanInfo& info) {
  switch (info.vlanMode) {
    case BCM6838X_VLAN_MODE_TRANSPARENT:
      if (BCM6838X_IsPerformance() != 0) {
        BCM6838X_AddUsTransparent_Perf(uni);
      } else {
        BCM6838X_AddUsTransparent(uni);
      }
      break;
    case BCM6838X_VLAN_MODE_TAG:
      BCM6838X_AddUsTag(uni, info.pvid, info.priority);
      break;
    case BCM6838X_VLAN_MODE_TRANSLATION:
    case BCM6838X_VLAN_MODE_TRANSLATION_2:
      BCM6838X_AddUsTranslation(uni, info.pvid, info.priority, info.translationList);
      break;
    case BCM6838X_VLAN_MODE_TRUNK:
    case BCM6838X_VLAN_MODE_HYBRID:
      BCM6838X_AddUsHybrid(uni, info.pvid, info.priority, info.trunkList);
      break;
    case BCM6838X_VLAN_MODE_ZTE_TRUNK:
      BCM6838X_AddUsZTETrunk(uni, info.trunkList);
      break;
    case BCM6838X_VLAN_MODE_ZTE_STACKING:
      BCM6838X_AddUsZTEStacking(uni, info.pvid, info.priority);
      break;
    case BCM6838X_VLAN_MODE_BDCOM_STACKING:
      BCM6838X_AddUsBDCOMStacking(uni, info.pvid, info.priority, info.stackingList);
      break;
    default:
      break;
  }
}

void DeleteRules(uint32_t uni, const PortVlanInfo& info) {
  switch (info.vlanMode) {
    case BCM6838X_VLAN_MODE_TRANSPARENT:
      BCM6838X_DelUsTransparent(uni);
      break;
    case BCM6838X_VLAN_MODE_TAG:
      BCM6838X_DelUsTag(uni, info.pvid, info.priority);
      break;
    case BCM6838X_VLAN_MODE_TRANSLATION:
    case BCM6838X_VLAN_MODE_TRANSLATION_2:
      BCM6838X_DelUsTranslation(uni, info.pvid, info.priority, info.translationList);
      break;
    case BCM6838X_VLAN_MODE_TRUNK:
    case BCM6838X_VLAN_MODE_HYBRID:
      BCM6838X_DelUsHybrid(uni, info.pvid, info.priority, info.trunkList);
      break;
    case BCM6838X_VLAN_MODE_ZTE_TRUNK:
      BCM6838X_DelUsZTETrunk(uni, info.trunkList);
      break;
    case BCM6838X_VLAN_MODE_ZTE_STACKING:
      BCM6838X_DelUsZTEStacking(uni, info.pvid, info.priority);
      break;
    case BCM6838X_VLAN_MODE_BDCOM_STACKING:
      BCM6838X_DelUsBDCOMStacking(uni, info.pvid, info.priority, info.stackingList);
      break;
    default:
      break;
  }
}

/// Hands the current configuration to the driver. The table is its record, and no copy is made.
void SendConfig() {
  static_assert(sizeof(g_PortVlanInfo) == sizeof(PortVlanTable));
  Send<BRMGR_CMD_VLAN_REBUILD>(reinterpret_cast<PortVlanTable&>(g_PortVlanInfo));
}

/// Switches a port to a mode, unless it is in that mode.
uint32_t SetMode(const char* function, uint32_t port, uint32_t mode) {
  PortVlanInfo* info = FindVlanInfo(function, port);
  if (info == nullptr) {
    return BCM6838X_FAILED;
  }
  // Required: same-mode-does-nothing
  if (info->vlanMode == mode) {
    return BCM6838X_OK;
  }
  BCM6838X_ClearVlanRule(port);
  info->vlanMode = mode;
  BCM6838X_RebuildVlanRule(port);
  CommitVlanConfig();
  return BCM6838X_OK;
}

/// The body of a mode setter: logs under its name, then switches.
uint32_t LogAndSetMode(const char* function, uint32_t port, uint32_t mode) {
  const uint32_t uni = UniPort(port);
  HAL_LOG_AS(function, LOG_LEVEL_TRACE, "###### %s(%d) port=%u\r\n", uni);
  return SetMode(function, uni, mode);
}

}  // namespace

uint32_t BCM6838X_ClearVlanRule(uint32_t port) {
  const uint32_t uni = UniPort(port);
  if (FindVlanInfo(__func__, uni) == nullptr) {
    return BCM6838X_FAILED;
  }
  // Required: clear-by-applied-copy
  DeleteRules(uni, g_oldPortVlanInfo[uni - 1]);
  return BCM6838X_OK;
}

// Required: rebuild-does-not-commit
uint32_t BCM6838X_RebuildVlanRule(uint32_t port) {
  const uint32_t uni = UniPort(port);
  const PortVlanInfo* info = FindVlanInfo(__func__, uni);
  if (info == nullptr) {
    return BCM6838X_FAILED;
  }
  AddRules(uni, *info);
  // Required: rebuild-hands-over-any-mode
  SendConfig();
  return BCM6838X_OK;
}

uint32_t BCM6838X_SetVlanTransparent(uint32_t port) {
  return LogAndSetMode(__func__, port, BCM6838X_VLAN_MODE_TRANSPARENT);
}

uint32_t BCM6838X_SetVlanTag(uint32_t port) {
  return LogAndSetMode(__func__, port, BCM6838X_VLAN_MODE_TAG);
}

uint32_t BCM6838X_SetVlanTranslation(uint32_t port) {
  return LogAndSetMode(__func__, port, BCM6838X_VLAN_MODE_TRANSLATION);
}

// Required: trunk-setter-logs-a-comma
uint32_t BCM6838X_SetVlanTrunk(uint32_t port) {
  const uint32_t uni = UniPort(port);
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "###### %s(%d), port=%u\r\n", uni);
  return SetMode(__func__, uni, BCM6838X_VLAN_MODE_TRUNK);
}

uint32_t BCM6838X_SetZteVlanTrunk(uint32_t port) {
  return LogAndSetMode(__func__, port, BCM6838X_VLAN_MODE_ZTE_TRUNK);
}

uint32_t BCM6838X_SetZteStacking(uint32_t port) {
  return LogAndSetMode(__func__, port, BCM6838X_VLAN_MODE_ZTE_STACKING);
}

uint32_t BCM6838X_SetBdcomStacking(uint32_t port) {
  return LogAndSetMode(__func__, port, BCM6838X_VLAN_MODE_BDCOM_STACKING);
}

uint32_t BCM6838X_ApplyVlan(uint32_t port) {
  const uint32_t uni = UniPort(port);
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "###### %s(%d) port=%u\r\n", uni);
  if (FindVlanInfo(__func__, uni) == nullptr) {
    return BCM6838X_FAILED;
  }
  BCM6838X_SetPortAdminState(uni, 0);
  // Required: apply-always-rebuilds
  BCM6838X_ClearVlanRule(uni);
  BCM6838X_RebuildVlanRule(uni);
  // Required: apply-leaves-port-up
  BCM6838X_SetPortAdminState(uni, 1);
  CommitVlanConfig();
  return BCM6838X_OK;
}
