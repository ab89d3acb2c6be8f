/// @file
/// A port's VID and default priority, which the rules of most modes use, and its VLAN mode by code.
#include <cstdint>

#include <bcm6838x_vlan_port.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <platform_log.h>

#include "bcm6838x_vlan_config.h"
#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_log.h"

using namespace hal;

namespace {

constexpr uint16_t kTpid = 0x8100;

/// Whether the rules of a port depend on its VID and priority. Those of a port without a mode do
/// not either, but the configuration is handed to the driver then too, which is intended.
bool UsesPvid(const PortVlanInfo& info) {
  return info.vlanMode != kVlanModeTransparent && info.vlanMode != kVlanModeZteTrunk;
}

/// Makes a change to a port's configuration, commits it, and brings the rules in line where they
/// depend on it.
template <typename Change>
void ChangePort(uint32_t port, PortVlanInfo& info, Change change) {
  const bool rebuilds = UsesPvid(info);
  if (rebuilds) {
    BCM6838X_ClearVlanRule(port);
  }
  change();
  if (rebuilds) {
    BCM6838X_RebuildVlanRule(port);
  }
  CommitVlanConfig();
}

/// What a mode code does: the mode setter, and the command that names the port to the driver.
struct CtcMode {
  uint32_t code;
  Command<CtcModeRecord> command;
  uint32_t (*setMode)(uint32_t port);
};

constexpr Command<CtcModeRecord> kModeA = CommandOf<BRMGR_CMD_CTC_MODE_A>();
constexpr Command<CtcModeRecord> kModeB = CommandOf<BRMGR_CMD_CTC_MODE_B>();

constexpr CtcMode kCtcModes[] = {
    {kVlanModeTransparent, kModeB, BCM6838X_SetVlanTransparent},
    {kVlanModeTag, kModeA, BCM6838X_SetVlanTag},
    {kVlanModeTranslation, kModeA, BCM6838X_SetVlanTranslation},
    {kVlanModeTranslation2, kModeA, BCM6838X_SetVlanTranslation},
    {kVlanModeTrunk, kModeA, BCM6838X_SetVlanTrunk},
    {kVlanModeHybrid, kModeA, BCM6838X_SetVlanTrunk},
    {kVlanModeZteTrunk, kModeA, BCM6838X_SetZteVlanTrunk},
    {kVlanModeZteStacking, kModeB, BCM6838X_SetZteStacking},
    {kVlanModeBdcomStacking, kModeA, BCM6838X_SetBdcomStacking},
};

/// What a code does, or null for a code that names no mode.
const CtcMode* FindCtcMode(uint32_t code) {
  for (const CtcMode& mode : kCtcModes) {
    if (mode.code == code) {
      return &mode;
    }
  }
  return nullptr;
}

/// Tells the driver that a command concerns a port.
uint32_t NamePort(Command<CtcModeRecord> command, uint32_t port) {
  CtcModeRecord record = {};
  record.port = static_cast<uint8_t>(port);
  return Send(command, record);
}

}  // namespace

uint32_t BCM6838X_SetPortPvid(uint32_t port, uint32_t pvid) {
  const uint32_t uni = VlanPort(port);
  const auto value = static_cast<uint16_t>(pvid);
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "###### %s(%d) port=%u, pvid=%u\r\n", uni, value);
  PortVlanInfo* info = FindVlanInfo(__func__, uni);
  if (info == nullptr) {
    return BCM6838X_FAILED;
  }
  if (info->pvid == value) {
    return BCM6838X_INVALID;
  }
  ChangePort(uni, *info, [info, value] {
    info->tagAttr = 0;
    info->pvid = value;
    info->tpid = kTpid;
  });
  return BCM6838X_OK;
}

uint32_t BCM6838X_SetPortPriority(uint32_t port, uint32_t priority) {
  const uint32_t uni = VlanPort(port);
  const auto value = static_cast<uint8_t>(priority);
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "###### %s(%d) port=%u, pri=%u\r\n", uni, value);
  PortVlanInfo* info = FindVlanInfo(__func__, uni);
  if (info == nullptr) {
    return BCM6838X_FAILED;
  }
  if (info->priority == value) {
    return BCM6838X_INVALID;
  }
  ChangePort(uni, *info, [info, value] { info->priority = value; });
  return BCM6838X_OK;
}

uint32_t BCM6838X_SetPortCtcMode(uint32_t port, uint32_t mode, ...) {
  const uint32_t uni = VlanPort(port);
  const CtcMode* ctcMode = FindCtcMode(mode);
  if (ctcMode == nullptr) {
    return NamePort(kModeA, uni);  // no table is touched, so that any port will do
  }
  if (FindVlanInfo(__func__, uni) == nullptr) {
    return BCM6838X_FAILED;
  }
  ctcMode->setMode(uni);
  return NamePort(ctcMode->command, uni);
}
