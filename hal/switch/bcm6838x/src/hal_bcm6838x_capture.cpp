/// @file
/// The capture path: reads one event from the device and hands its frame to the protocol client
/// that owns it.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <unistd.h>

#include <hal_bcm6838x.h>
#include <platform_clients.h>
#include <platform_vos.h>

#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_frame.h"
#include "hal_bcm6838x_log.h"
#include "hal_bcm6838x_platform.h"
#include "hal_bcm6838x_ports.h"

using namespace hal;

namespace {

/// A received BPDU for the spanning-tree process.
struct BpduMsg {
  uint32_t port;
  uint32_t length;
  uint8_t frame[kBpduSize];
};
static_assert(sizeof(BpduMsg) == 108);

/// Descriptor of an event's frame, which must fit.
void MakePacket(const BrmgrEvent& event, RdpaPkt& packet) {
  packet.size = event.length;
  packet.desPort = 0;
  packet.srcPort = 0;
  packet.gemFlowId = 0;
  memcpy(packet.data, event.data, event.length);
  memset(packet.data + event.length, 0, sizeof(packet.data) - event.length);
}

bool Fits(const BrmgrEvent& event) {
  if (event.length <= sizeof(event.data)) {
    return true;
  }
  HAL_LOG_AS("BCM6838X_CapturePacket", LOG_LEVEL_INVALID,
             "%s(%d), event with a frame of %u bytes\r\n", event.length);
  return false;
}

/// What the tags of a frame tell its client.
struct HeaderWalk {
  bool tooManyTags;
  uint32_t vid;         ///< of the last customer tag, 0 when there is none
  uint32_t typeOffset;  ///< of the type field behind the tags
};

HeaderWalk WalkHeaders(FrameView frame) {
  /// Tags of these types, in this order, are skipped; their VIDs are not taken.
  // Required: outermost-tags-in-order
  constexpr uint32_t kOutermostTags[] = {0x9200, 0x9100};
  constexpr uint32_t kMaxCustomerTags = 2;
  HeaderWalk walk = {false, 0, kTypeOffset};
  for (const uint32_t type : kOutermostTags) {
    if (frame.u16(walk.typeOffset) == type) {
      walk.typeOffset += kTagSize;
    }
  }
  uint32_t customerTags = 0;
  for (; frame.u16(walk.typeOffset) == kTypeCustomerTag; walk.typeOffset += kTagSize) {
    // Required: third-customer-tag-drops
    if (++customerTags > kMaxCustomerTags) {
      walk.tooManyTags = true;
      return walk;
    }
    // Required: client-told-inner-vid
    walk.vid = TagVid(frame.u16(walk.typeOffset + kTypeSize));
  }
  return walk;
}

bool IsIgmp(FrameView frame, uint32_t typeOffset) {
  constexpr uint32_t kProtocolIgmp = 2;
  constexpr uint32_t kMulticastPrefix = 0x01005E;
  return ((frame.u16(0) << 8U) | frame.u8(2)) == kMulticastPrefix &&
         frame.u16(typeOffset) == kTypeIpv4 &&
         frame.u8(typeOffset + kTypeSize + 9) == kProtocolIgmp;
}

/// A multicast control frame from a UNI port, for the snooping clients.
uint32_t TakeMulticast(const BrmgrEvent& event) {
  RdpaPkt packet;
  if (!Fits(event)) {
    return BCM6838X_FAILED;
  }
  MakePacket(event, packet);
  packet.srcPort = event.port;
  packet.gemFlowId = event.gemFlowId;
  if (event.port != 0 && BCM6838X_AccordVlan(packet.data, &packet, event.port, 0) != 0) {
    return BCM6838X_FAILED;
  }
  const FrameView frame = {packet.data, packet.size};
  const HeaderWalk walk = WalkHeaders(frame);
  if (walk.tooManyTags) {
    return BCM6838X_FAILED;
  }
  if (IsIgmp(frame, walk.typeOffset)) {
    IGMP_DispatchPacket(packet.data, packet.size, walk.vid, event.port);
  }
  if (BCM6838X_IsMldPacket(packet.data, packet.size) == 1) {
    MLD_DispatchPacket(packet.data, packet.size, walk.vid, event.port);
  }
  return BCM6838X_OK;
}

void TakeBpdu(const BrmgrEvent& event) {
  BpduMsg message = {};
  message.port = event.port;
  // Required: bpdu-cut-at-100
  message.length = event.length < kBpduSize ? event.length : kBpduSize;
  memcpy(message.frame, FrameOf(event), message.length);
  VOS_MsgSend(kStpModule, kStpReceivedBpdu, &message,
              static_cast<uint32_t>(offsetof(BpduMsg, frame)) + message.length);
}

void SendIfForwarded(RdpaPkt& packet) {
  if (BCM6838X_AccordVlan(packet.data, &packet, packet.srcPort, packet.desPort) == 0) {
    BCM6838X_RdpaSendIgmpPkt(&packet);
  }
}

/// A multicast control frame to send: on behalf of a UNI port, or to all of them.
void SendMulticast(const BrmgrEvent& event) {
  RdpaPkt packet;
  if (!Fits(event)) {
    return;
  }
  if (event.port != 0) {
    MakePacket(event, packet);
    // Required: multicast-out-by-source-rule
    packet.srcPort = event.port;
    SendIfForwarded(packet);
    return;
  }
  for (const uint32_t port : EthPorts()) {
    MakePacket(event, packet);
    packet.desPort = port;
    SendIfForwarded(packet);
  }
}

}  // namespace

uint32_t BCM6838X_GetEvent(BrmgrEvent* event) {
  if (event == nullptr) {
    return BCM6838X_INVALID;
  }
  *event = {};
  return read(sgHwDevFd, event, sizeof(*event)) == static_cast<ssize_t>(sizeof(*event))
             ? BCM6838X_OK
             : BCM6838X_FAILED;
}

uint32_t BCM6838X_CapturePacket(void) {
  BrmgrEvent event;
  // Required: capture-by-feature-exactly-1
  if (!IsCaptureEnabled()) {
    return BCM6838X_OK;
  }
  if (BCM6838X_GetEvent(&event) != BCM6838X_OK) {
    return BCM6838X_FAILED;
  }
  switch (event.eventType) {
    case BRMGR_EVENT_MCAST_IN:
      return TakeMulticast(event);
    case BRMGR_EVENT_BPDU:
      TakeBpdu(event);
      return BCM6838X_OK;
    case BRMGR_EVENT_MCAST_OUT:
      SendMulticast(event);
      return BCM6838X_OK;
    case BRMGR_EVENT_DHCP:
      // Required: capture-hides-relay-results
      BCM6838X_DhcpRelayHandle(&event);
      return BCM6838X_OK;
    case BRMGR_EVENT_PPPOE:
      BCM6838X_PPPoERelayHandle(&event);
      return BCM6838X_OK;
    default:
      return BCM6838X_OK;
  }
}
