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

namespace {

using Builder = void (*)(uint32_t port, const PortVlanInfo& info);

// What the builders of a mode are given of a configuration. Nobody looks at their results: they log
// their own failures.

template <auto builder>
void WithNothing(uint32_t port, const PortVlanInfo& /*info*/) {
  builder(port);
}

template <auto builder>
void WithPvid(uint32_t port, const PortVlanInfo& info) {
  builder(port, info.pvid, info.priority);
}

template <auto builder>
void WithTranslations(uint32_t port, const PortVlanInfo& info) {
  builder(port, info.pvid, info.priority, info.translationList);
}

template <auto builder>
void WithPvidAndTrunk(uint32_t port, const PortVlanInfo& info) {
  builder(port, info.pvid, info.priority, info.trunkList);
}

template <auto builder>
void WithTrunk(uint32_t port, const PortVlanInfo& info) {
  builder(port, info.trunkList);
}

template <auto builder>
void WithStacking(uint32_t port, const PortVlanInfo& info) {
  builder(port, info.pvid, info.priority, info.stackingList);
}

int32_t AddTransparent(uint32_t port) {
  return BCM6838X_IsPerformance() != 0 ? BCM6838X_AddUsTransparent_Perf(port)
                                       : BCM6838X_AddUsTransparent(port);
}

/// How the rules of a mode are created and removed.
struct ModeRules {
  PortVlanMode mode;
  Builder add;
  Builder del;
};

// clang-format off
constexpr ModeRules kModeRules[] = {
    {kVlanModeTransparent,   WithNothing<AddTransparent>,               WithNothing<BCM6838X_DelUsTransparent>},
    {kVlanModeTag,           WithPvid<BCM6838X_AddUsTag>,               WithPvid<BCM6838X_DelUsTag>},
    {kVlanModeTranslation,   WithTranslations<BCM6838X_AddUsTranslation>, WithTranslations<BCM6838X_DelUsTranslation>},
    {kVlanModeTranslation2,  WithTranslations<BCM6838X_AddUsTranslation>, WithTranslations<BCM6838X_DelUsTranslation>},
    {kVlanModeTrunk,         WithPvidAndTrunk<BCM6838X_AddUsHybrid>,    WithPvidAndTrunk<BCM6838X_DelUsHybrid>},
    {kVlanModeHybrid,        WithPvidAndTrunk<BCM6838X_AddUsHybrid>,    WithPvidAndTrunk<BCM6838X_DelUsHybrid>},
    {kVlanModeZteTrunk,      WithTrunk<BCM6838X_AddUsZTETrunk>,         WithTrunk<BCM6838X_DelUsZTETrunk>},
    {kVlanModeZteStacking,   WithPvid<BCM6838X_AddUsZTEStacking>,       WithPvid<BCM6838X_DelUsZTEStacking>},
    {kVlanModeBdcomStacking, WithStacking<BCM6838X_AddUsBDCOMStacking>, WithStacking<BCM6838X_DelUsBDCOMStacking>},
};
// clang-format on

/// Does to a port what the mode of a configuration says; a mode that is none has no rules.
void Run(Builder ModeRules::*builder, uint32_t port, const PortVlanInfo& info) {
  for (const ModeRules& rules : kModeRules) {
    if (rules.mode == info.vlanMode) {
      (rules.*builder)(port, info);
    }
  }
}

/// Switches a port to a mode, unless it is in that mode.
uint32_t SetMode(const char* function, uint32_t port, PortVlanMode mode) {
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
uint32_t LogAndSetMode(const char* function, uint32_t port, PortVlanMode mode) {
  const uint32_t uni = VlanPort(port);
  HAL_LOG_AS(function, LOG_LEVEL_TRACE, "###### %s(%d) port=%u\r\n", uni);
  return SetMode(function, uni, mode);
}

}  // namespace

uint32_t BCM6838X_ClearVlanRule(uint32_t port) {
  const uint32_t uni = VlanPort(port);
  if (FindVlanInfo(__func__, uni) == nullptr) {
    return BCM6838X_FAILED;
  }
  // Required: clear-by-applied-copy
  Run(&ModeRules::del, uni, g_oldPortVlanInfo[uni - 1]);
  return BCM6838X_OK;
}

// Required: rebuild-does-not-commit
uint32_t BCM6838X_RebuildVlanRule(uint32_t port) {
  const uint32_t uni = VlanPort(port);
  const PortVlanInfo* info = FindVlanInfo(__func__, uni);
  if (info == nullptr) {
    return BCM6838X_FAILED;
  }
  Run(&ModeRules::add, uni, *info);
  static_assert(sizeof(g_PortVlanInfo) == sizeof(PortVlanTable));
  // Required: rebuild-hands-over-any-mode
  SendCommand(BRMGR_CMD_VLAN_REBUILD, g_PortVlanInfo, BRMGR_FLAG_INPUT);
  return BCM6838X_OK;
}

uint32_t BCM6838X_SetVlanTransparent(uint32_t port) {
  return LogAndSetMode(__func__, port, kVlanModeTransparent);
}

uint32_t BCM6838X_SetVlanTag(uint32_t port) {
  return LogAndSetMode(__func__, port, kVlanModeTag);
}

uint32_t BCM6838X_SetVlanTranslation(uint32_t port) {
  return LogAndSetMode(__func__, port, kVlanModeTranslation);
}

// Required: trunk-setter-logs-a-comma
uint32_t BCM6838X_SetVlanTrunk(uint32_t port) {
  const uint32_t uni = VlanPort(port);
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "###### %s(%d), port=%u\r\n", uni);
  return SetMode(__func__, uni, kVlanModeTrunk);
}

uint32_t BCM6838X_SetZteVlanTrunk(uint32_t port) {
  return LogAndSetMode(__func__, port, kVlanModeZteTrunk);
}

uint32_t BCM6838X_SetZteStacking(uint32_t port) {
  return LogAndSetMode(__func__, port, kVlanModeZteStacking);
}

uint32_t BCM6838X_SetBdcomStacking(uint32_t port) {
  return LogAndSetMode(__func__, port, kVlanModeBdcomStacking);
}

uint32_t BCM6838X_ApplyVlan(uint32_t port) {
  const uint32_t uni = VlanPort(port);
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
