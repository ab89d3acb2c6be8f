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

namespace {

constexpr uint16_t kTpid = 0x8100;

/// Whether a change of a port's VID or priority rebuilds its rules.
// Required: pvid-without-mode-hands-over
bool UsesPvid(const PortVlanInfo& info) {
  return info.vlanMode != kVlanModeTransparent && info.vlanMode != kVlanModeZteTrunk;
}

/// Makes a change to a port's configuration, commits it, and brings the rules in line where they
/// depend on it.
template <typename Change>
void ChangePort(uint32_t port, PortVlanInfo& info, Change change) {
  // Required: pvid-of-transparent-not-sent
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
  uint32_t cmd;
  uint32_t (*setMode)(uint32_t port);
};

constexpr CtcMode kCtcModes[] = {
    // Required: ctc-command-b-passes-all
    {kVlanModeTransparent, BRMGR_CMD_CTC_MODE_B, BCM6838X_SetVlanTransparent},
    {kVlanModeTag, BRMGR_CMD_CTC_MODE_A, BCM6838X_SetVlanTag},
    {kVlanModeTranslation, BRMGR_CMD_CTC_MODE_A, BCM6838X_SetVlanTranslation},
    {kVlanModeTranslation2, BRMGR_CMD_CTC_MODE_A, BCM6838X_SetVlanTranslation},
    {kVlanModeTrunk, BRMGR_CMD_CTC_MODE_A, BCM6838X_SetVlanTrunk},
    // Required: ctc-codes-fold
    {kVlanModeHybrid, BRMGR_CMD_CTC_MODE_A, BCM6838X_SetVlanTrunk},
    {kVlanModeZteTrunk, BRMGR_CMD_CTC_MODE_A, BCM6838X_SetZteVlanTrunk},
    {kVlanModeZteStacking, BRMGR_CMD_CTC_MODE_B, BCM6838X_SetZteStacking},
    {kVlanModeBdcomStacking, BRMGR_CMD_CTC_MODE_A, BCM6838X_SetBdcomStacking},
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
uint32_t NamePort(uint32_t cmd, uint32_t port) {
  CtcModeRecord record = {};
  record.port = static_cast<uint8_t>(port);
  return SendCommand(cmd, record, BRMGR_FLAG_INPUT);
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
  // Required: unchanged-pvid-returns-2
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
  // Required: unchanged-pvid-returns-2
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
    // Required: ctc-unknown-names-port
    return NamePort(BRMGR_CMD_CTC_MODE_A, uni);  // no table is touched, so that any port will do
  }
  if (FindVlanInfo(__func__, uni) == nullptr) {
    return BCM6838X_FAILED;
  }
  ctcMode->setMode(uni);
  return NamePort(ctcMode->cmd, uni);
}
