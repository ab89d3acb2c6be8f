/// @file
/// A port's VID and default priority, which the rules of most modes use, and its VLAN mode by code.
#include <cstdint>

#include <bcm6838x_vlan_port.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <platform_log.h>

#include "bcm6838x_vlan_config.h"
#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_find.h"
#include "hal_bcm6838x_log.h"
#include "hal_bcm6838x_ports.h"

using namespace hal;

namespace {

/// Whether a change of a port's VID or priority rebuilds its rules.
// Required: pvid-without-mode-hands-over
bool UsesPvid(const PortVlanInfo& info) {
  return info.vlanMode != BCM6838X_VLAN_MODE_TRANSPARENT &&
         info.vlanMode != BCM6838X_VLAN_MODE_ZTE_TRUNK;
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
  Command<CtcModeRecord> command;
  uint32_t (*setMode)(uint32_t port);
};

constexpr Command<CtcModeRecord> kModeA = CommandOf<BRMGR_CMD_CTC_MODE_A>();
constexpr Command<CtcModeRecord> kModeB = CommandOf<BRMGR_CMD_CTC_MODE_B>();

constexpr CtcMode kCtcModes[] = {
    // Required: ctc-command-b-passes-all
    {BCM6838X_VLAN_MODE_TRANSPARENT, kModeB, BCM6838X_SetVlanTransparent},
    {BCM6838X_VLAN_MODE_TAG, kModeA, BCM6838X_SetVlanTag},
    {BCM6838X_VLAN_MODE_TRANSLATION, kModeA, BCM6838X_SetVlanTranslation},
    {BCM6838X_VLAN_MODE_TRANSLATION_2, kModeA, BCM6838X_SetVlanTranslation},
    {BCM6838X_VLAN_MODE_TRUNK, kModeA, BCM6838X_SetVlanTrunk},
    // Required: ctc-codes-fold
    {BCM6838X_VLAN_MODE_HYBRID, kModeA, BCM6838X_SetVlanTrunk},
    {BCM6838X_VLAN_MODE_ZTE_TRUNK, kModeA, BCM6838X_SetZteVlanTrunk},
    {BCM6838X_VLAN_MODE_ZTE_STACKING, kModeB, BCM6838X_SetZteStacking},
    {BCM6838X_VLAN_MODE_BDCOM_STACKING, kModeA, BCM6838X_SetBdcomStacking},
};

/// What a code does, or null for a code that names no mode.
const CtcMode* FindCtcMode(uint32_t code) {
  return FirstOf(kCtcModes, [code](const CtcMode& mode) { return mode.code == code; });
}

/// Tells the driver that a command concerns a port.
uint32_t NamePort(Command<CtcModeRecord> command, uint32_t port) {
  CtcModeRecord record = {};
  record.port = static_cast<uint8_t>(port);
  return Send(command, record);
}

}  // namespace

uint32_t BCM6838X_SetPortPvid(uint32_t port, uint32_t pvid) {
  const uint32_t uni = UniPort(port);
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
  const uint32_t uni = UniPort(port);
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
  const uint32_t uni = UniPort(port);
  const CtcMode* ctcMode = FindCtcMode(mode);
  if (ctcMode == nullptr) {
    // Required: ctc-unknown-names-port
    return NamePort(kModeA, uni);  // no table is touched, so that any port will do
  }
  if (FindVlanInfo(__func__, uni) == nullptr) {
    return BCM6838X_FAILED;
  }
  ctcMode->setMode(uni);
  return NamePort(ctcMode->command, uni);
}
