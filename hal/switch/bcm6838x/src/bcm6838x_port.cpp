/// @file
/// Port control by device commands: administrative state, negotiation mode, loopback, isolation,
/// learning, spanning tree, frame size and mirroring. What needs the PHY's registers is in
/// bcm6838x_port_link.cpp.
#include <cstddef>
#include <cstdint>

#include <bcm6838x_port.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <platform_chip.h>
#include <platform_log.h>
#include <platform_vos.h>

#include "bcm6838x_port_internal.h"
#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_log.h"
#include "hal_bcm6838x_platform.h"
#include "hal_bcm6838x_ports.h"

using namespace hal;

PortMirrorRecord hal::g_mirror_cfg = {};

namespace {

// Required: port-ranges-differ
constexpr uint32_t kMaxPort = 5;        ///< highest port of administrative state and loopback
constexpr uint32_t kMaxSwitchPort = 4;  ///< highest port of isolation and mirroring

/// Last administrative state given to each port, by UNI port number.
uint32_t sg_portAdminState[kUniPorts] = {};

bool IsPort(uint32_t uni, uint32_t max) {
  return uni >= 1 && uni <= max;
}

/// Media types of the chip vendor's tool, by negotiation mode.
// Required: negotiation-modes-without-gigabit
constexpr const char* kMediaTypes[] = {"10HD", "100HD", "auto", "10FD", "100FD", "auto", "auto"};

constexpr uint32_t kNegModes = sizeof(kMediaTypes) / sizeof(kMediaTypes[0]);

void SendIsolation(uint32_t uni, uint32_t peerPort, uint32_t isolate) {
  // Required: isolation-word-12
  constexpr uint32_t kWord12 = 2;
  PortIsolateRecord record = {};
  record.port = DevicePort(uni);
  record.peerPort = peerPort;
  record.isolate = isolate;
  record.word12 = kWord12;
  Send<BRMGR_CMD_PORT_ISOLATE>(record);
}

}  // namespace

uint32_t BCM6838X_InitPort(void) {
  g_mirror_cfg = {};
  for (uint32_t& state : sg_portAdminState) {
    state = 1;
  }
  for (const uint32_t uni : EthPorts()) {
    const auto index = static_cast<uint8_t>(uni - 1);
    // Required: start-lines-name-full-path
    VOS_System("/bin/ethctl eth%hhu reg 24 0xf077 > /dev/null 2>&1", index);
    VOS_System("/bin/ethctl eth%hhu reg 28 0x9000 > /dev/null 2>&1", index);
  }
  return BCM6838X_OK;
}

int32_t BCM6838X_SetPortAdminState(uint32_t port, uint32_t state) {
  const uint32_t uni = UniPort(port);
  if (!IsPort(uni, kMaxPort)) {
    return BCM6838X_FAILED;
  }
  PortAdminRecord record = {};
  record.port = DevicePort(uni);
  record.enable = state != 0 ? 1 : 0;
  Send<BRMGR_CMD_PORT_ADMIN>(record);
  const int32_t result = BCM6838X_PhyPowerDown(uni, state == 0 ? 1 : 0);
  sg_portAdminState[uni] = state;
  return result;
}

uint32_t BCM6838X_SetPortNegMode(uint32_t port, uint32_t mode) {
  if (mode >= kNegModes) {
    return BCM6838X_FAILED;
  }
  const uint32_t uni = UniPort(port);
  // Required: negotiation-mode-takes-any-port
  VOS_System("ethctl eth%d media-type %s", AsInt(uni) - 1, kMediaTypes[mode]);
  if (uni < kUniPorts) {
    // Required: negotiation-mode-reapplies-state
    BCM6838X_SetPortAdminState(uni, sg_portAdminState[uni]);
  }
  return BCM6838X_OK;
}

uint32_t BCM6838X_SetPortLoopback(uint32_t port, uint32_t on) {
  const uint32_t uni = UniPort(port);
  if (!IsPort(uni, kMaxPort)) {
    return BCM6838X_FAILED;
  }
  PortLoopbackRecord record = {};
  record.port = DevicePort(uni);
  record.enable = on != 0 ? 1 : 0;
  // Required: port-commands-succeed
  Send<BRMGR_CMD_PORT_LOOPBACK>(record);
  return BCM6838X_OK;
}

uint32_t BCM6838X_SetPortIsolateMask(uint32_t port, uint32_t mask) {
  const uint32_t uni = UniPort(port);
  if (!IsPort(uni, kMaxSwitchPort)) {
    return BCM6838X_FAILED;
  }
  for (uint32_t peer = 1; peer <= kMaxSwitchPort; ++peer) {
    const bool named = ((mask >> (peer - 1)) & 1U) != 0;
    // Required: isolation-of-itself-sent, isolation-mask-only-adds
    if (mask == 0 ? peer != uni : named) {
      SendIsolation(uni, DevicePort(peer), mask == 0 ? 0 : 1);
    }
  }
  return BCM6838X_OK;
}

// Required: learning-is-of-the-switch
uint32_t BCM6838X_SetPortMacLearn(uint32_t /*port*/, uint32_t enable) {
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "%s(%d), enable=%d\r\n", AsInt(enable));
  MacLearnRecord record = {};
  record.value = enable;
  Send<BRMGR_CMD_MAC_LEARN>(record);
  return BCM6838X_OK;
}

// Required: learning-is-of-the-switch
uint32_t BCM6838X_SetPortLimitMacNum(uint32_t /*port*/, uint32_t limit) {
  MacLimitRecord record = {};
  record.limit = static_cast<uint16_t>(limit);
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "%s(%d), limit=%d\r\n", record.limit);
  Send<BRMGR_CMD_MAC_LIMIT>(record);
  return BCM6838X_OK;
}

uint32_t BCM6838X_SetPortStpEnable(uint32_t enable) {
  for (const uint32_t uni : EthPorts()) {
    PortStpRecord record = {};
    // Required: stp-index-from-0
    record.portIndex = uni - 1;
    record.enable = enable;
    // Required: stp-platform-before-driver
    VOS_MsgSend(kStpModule, kStpEnable, &record, sizeof(record));
    Send<BRMGR_CMD_PORT_STP>(record);
  }
  return BCM6838X_OK;
}

uint32_t BCM6838X_SetPortStpState(uint32_t port, uint32_t stpState) {
  constexpr uint32_t kBlocking = 1;
  constexpr uint32_t kForwarding = 4;
  // Required: stp-state-is-port-state
  if (!IsCaptureEnabled() || (stpState != kBlocking && stpState != kForwarding)) {
    return BCM6838X_OK;
  }
  return static_cast<uint32_t>(BCM6838X_SetPortAdminState(port, stpState == kForwarding ? 1 : 0));
}

uint32_t BCM6838X_SetPortMtu(uint32_t port, uint32_t mtu) {
  constexpr uint32_t kFirstJumboMtu = 1519;
  // Required: jumbo-from-1519
  uint32_t value = (mtu & 0xFFFF) >= kFirstJumboMtu ? 1 : 0;
  bcm_port_jumbo_control_set(0, UniPort(port) - 1, &value);
  return BCM6838X_OK;
}

uint32_t BCM6838X_SetPortMirrorDestport(uint32_t port) {
  const uint32_t uni = UniPort(port);
  if (!IsPort(uni, kMaxSwitchPort)) {
    return BCM6838X_FAILED;
  }
  // Required: mirror-sent-with-enable-alone
  g_mirror_cfg.destinationPort = DevicePort(uni);
  return BCM6838X_OK;
}

uint32_t BCM6838X_SetPortMirrorMode(const uint8_t* modes) {
  /// Direction word of the modes 1, 2 and 3.
  constexpr uint32_t kDirections[] = {1, 0, 2};
  constexpr size_t kModes = sizeof(kDirections) / sizeof(kDirections[0]);
  if (HAL_IS_NULL(modes)) {
    return BCM6838X_FAILED;
  }
  // Required: mirror-last-port-wins
  for (const uint32_t uni : EthPorts()) {
    const uint32_t mode = modes[uni - 1];
    if (mode == 0) {
      continue;
    }
    // Required: mirror-any-mode-resets-selector
    g_mirror_cfg.selector = 0;
    if (mode <= kModes) {
      g_mirror_cfg.direction = kDirections[mode - 1];
    }
  }
  return BCM6838X_OK;
}

uint32_t BCM6838X_SetPortMirrorEnable(uint32_t enable) {
  g_mirror_cfg.enable = enable;
  Send<BRMGR_CMD_PORT_MIRROR>(g_mirror_cfg);
  return BCM6838X_OK;
}

uint32_t BCM6838X_GetGlobalLinkState(uint32_t /*port*/, ...) {
  return BCM6838X_OK;
}

uint32_t BCM6838X_GetGlobalNegResult(uint32_t /*port*/, ...) {
  return BCM6838X_OK;
}

uint32_t BCM6838X_SetPortAuthMode(uint32_t /*port*/, ...) {
  return BCM6838X_OK;
}
