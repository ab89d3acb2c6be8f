/// @file
/// The relays of trapped DHCP and PPPoE frames, and the switches of their traps.
#include "hal_bcm6838x_relay.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>
#include <platform_clients.h>

#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_frame.h"
#include "hal_bcm6838x_log.h"
#include "hal_bcm6838x_ports.h"

using namespace hal;

uint8_t hal::g_dhcpRelayStatus = 0;
uint8_t hal::g_pppoeRelayStatus = 0;

namespace {

/// A transmit record with room for the tag that a VLAN rule adds to the longest frame.
union RelayFrame {
  RelayPkt record;
  uint8_t bytes[sizeof(RelayPkt) + kTagSize];

  uint8_t* frame() { return bytes + offsetof(RelayPkt, data); }
};

/// Takes a frame out of its event and applies its port's upstream VLAN rule. Returns false, with a
/// log line, when it is not to be relayed.
bool TakeFrame(const BrmgrEvent* event, bool (*recognises)(FrameView), RelayFrame& relay) {
  if (event == nullptr) {
    HAL_LOG(LOG_LEVEL_INVALID, "Invalid parameter!\r\n");
    return false;
  }
  if (event->length > sizeof(relay.record.data)) {
    HAL_LOG(LOG_LEVEL_TRACE, "Packet is too long!\r\n");
    return false;
  }
  relay = {};
  relay.record.desPort = event->port;
  relay.record.length = event->length;
  memcpy(relay.frame(), FrameOf(*event), event->length);
  if (!recognises({relay.frame(), relay.record.length})) {
    // Required: log-relays-say-dhcp
    HAL_LOG(LOG_LEVEL_TRACE, "Packet is not dhcp pkts!\r\n");
    return false;
  }
  if (AccordFrame(relay.frame(), &relay.record.length, UniPort(relay.record.desPort), 0) != 0) {
    HAL_LOG(LOG_LEVEL_TRACE, "Deal with vlan failed!\r\n");
    return false;
  }
  return true;
}

/// The VID of the outer customer tag, 0 when there is none.
// Required: client-told-inner-vid
uint32_t OuterVid(RelayFrame& relay) {
  const FrameView frame = {relay.frame(), relay.record.length};
  return frame.u16(kTypeOffset) == kTypeCustomerTag ? TagVid(frame.u16(kTypeOffset + kTypeSize))
                                                    : 0;
}

// Required: trap-value-passed-on
void SetTraps(Command<TrapEnableRecord> command, uint32_t enable) {
  for (const uint32_t uni : EthPorts()) {
    // Required: trap-index-from-0
    TrapEnableRecord record = {uni - 1, enable};
    Send(command, record);
  }
}

}  // namespace

uint32_t BCM6838X_DhcpRelayHandle(const BrmgrEvent* event) {
  RelayFrame relay;
  if (!TakeFrame(event, IsDhcpFrame, relay)) {
    return BCM6838X_FAILED;
  }
  // Required: relay-on-at-1-alone
  if (g_dhcpRelayStatus != 1) {
    // Required: relay-off-succeeds
    BCM6838X_SendDhcpPkt(&relay.record);
    return BCM6838X_OK;
  }
  const uint32_t vid = OuterVid(relay);
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "[%s:%d] receive dhcp pkts from port %u VLAN %u\r\n",
               relay.record.desPort, vid);
  return DHCPRELAY_HandlePacket(relay.frame(), relay.record.length, vid, relay.record.desPort);
}

uint32_t BCM6838X_PPPoERelayHandle(const BrmgrEvent* event) {
  RelayFrame relay;
  if (!TakeFrame(event, IsPppoeFrame, relay)) {
    return BCM6838X_FAILED;
  }
  // Required: relay-on-at-1-alone
  if (g_pppoeRelayStatus != 1) {
    BCM6838X_SendPPPoEPkt(&relay.record);
    return BCM6838X_OK;
  }
  const uint32_t vid = OuterVid(relay);
  // Required: log-ppoe
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "[%s:%d] receive ppoe pkts from port %u VLAN %u\r\n",
               relay.record.desPort, vid);
  return PPPOERELAY_HandlePacket(relay.frame(), relay.record.length, vid, relay.record.desPort);
}

uint32_t BCM6838X_SetDhcpTrapEnable(uint32_t enable) {
  g_dhcpRelayStatus = enable > 0 ? 1 : 0;
  SetTraps(CommandOf<BRMGR_CMD_DHCP_TRAP>(), enable);
  return BCM6838X_OK;
}

uint32_t BCM6838X_SetPPPoETrapEnable(uint32_t enable) {
  g_pppoeRelayStatus = enable > 0 ? 1 : 0;
  SetTraps(CommandOf<BRMGR_CMD_PPPOE_TRAP>(), enable);
  return BCM6838X_OK;
}
