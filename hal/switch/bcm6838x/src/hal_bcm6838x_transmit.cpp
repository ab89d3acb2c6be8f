/// @file
/// Sending of frames: the four transmit commands, and the operation that sorts the protocol
/// clients' frames onto them.
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <brmgr_cmd.h>
#include <hal_bcm6838x.h>

#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_frame.h"
#include "hal_bcm6838x_log.h"
#include "hal_bcm6838x_ports.h"

using namespace hal;

namespace {

constexpr uint32_t kMacSize = 6;
constexpr uint32_t kRelaySize = sizeof(RelayPkt::data);
constexpr uint32_t kRdpaSize = 2046;  ///< what follows the frame is passed too

/// Sends a relay's frame, up to its end, unless it is longer than the protocol's frames may be.
uint32_t SendRelayFrame(const char* function, FrameCommand<RelayPkt> command, const RelayPkt* rec,
                        uint32_t longest) {
  if (rec == nullptr) {
    return BCM6838X_INVALID;
  }
  if (rec->length > longest) {
    HAL_LOG(LOG_LEVEL_TRACE, "%s( desPort=%u,  length=%u) params error.\r\n", function,
            rec->desPort, rec->length);
    return BCM6838X_INVALID;
  }
  return SendFrame(command, *rec, offsetof(RelayPkt, data) + rec->length);
}

bool IsBridgeFrame(FrameView frame) {
  constexpr uint8_t kBridgeGroup[kMacSize] = {0x01, 0x80, 0xC2, 0x00, 0x00, 0x00};
  return frame.size >= kMacSize && memcmp(frame.data, kBridgeGroup, kMacSize) == 0;
}

/// A record of a frame; of one that is too long for `room` bytes, which its transmit refuses, only
/// the beginning.
RelayPkt MakeRelay(FrameView frame, uint32_t port, uint32_t room) {
  RelayPkt record = {};
  record.desPort = port;
  // Required: bpdu-cut-at-100
  record.length = frame.size;
  memcpy(record.data, frame.data, frame.size < room ? frame.size : room);
  return record;
}

void SendOther(FrameView frame, uint32_t port) {
  // Required: sent-frames-name-flow-1
  constexpr uint32_t kFlow = 1;
  RdpaPkt packet = {};
  packet.size = frame.size;
  // Required: unknown-port-is-sent-to-0
  packet.desPort = IsUpToLastEthPort(port) ? port : 0;
  packet.gemFlowId = kFlow;
  memcpy(packet.data, frame.data, frame.size < kRdpaSize ? frame.size : kRdpaSize);
  BCM6838X_RdpaSendIgmpPkt(&packet);
}

}  // namespace

// Required: null-transmit-silent
uint32_t BCM6838X_SendBpduPkt(const RelayPkt* rec) {
  return SendRelayFrame(__func__, FrameCommandOf<BRMGR_CMD_SEND_BPDU>(), rec, kBpduSize);
}

uint32_t BCM6838X_SendDhcpPkt(const RelayPkt* rec) {
  return SendRelayFrame(__func__, FrameCommandOf<BRMGR_CMD_SEND_DHCP>(), rec, kRelaySize);
}

uint32_t BCM6838X_SendPPPoEPkt(const RelayPkt* rec) {
  return SendRelayFrame(__func__, FrameCommandOf<BRMGR_CMD_SEND_PPPOE>(), rec, kRelaySize);
}

uint32_t BCM6838X_RdpaSendIgmpPkt(const RdpaPkt* desc) {
  // Required: send-passes-two-bytes-more
  constexpr uint32_t kOverhead = offsetof(RdpaPkt, data) + 2;
  static_assert(kOverhead + kRdpaSize == sizeof(RdpaPkt));
  if (desc == nullptr) {
    return BCM6838X_INVALID;
  }
  if (desc->size > kRdpaSize) {
    HAL_LOG(LOG_LEVEL_TRACE,
            "BCM6838X_RdpaSendIgmpPkt(size=%lu>%lu, desPort=%lu, srcPort=%lu, gemFlowId=%lu) "
            "params error.\r\n",
            AsUnsignedLong(desc->size), AsUnsignedLong(kRdpaSize), AsUnsignedLong(desc->desPort),
            AsUnsignedLong(desc->srcPort), AsUnsignedLong(desc->gemFlowId));
    return BCM6838X_INVALID;
  }
  return SendFrame(FrameCommandOf<BRMGR_CMD_SEND_PKT>(), *desc, kOverhead + desc->size);
}

// Required: send-always-succeeds
uint32_t BCM6838X_SendPacket(const uint8_t* frame, uint32_t length, uint32_t /*vlan*/,
                             uint32_t /*srcPort*/, uint32_t desPort) {
  if (HAL_IS_NULL(frame)) {
    return BCM6838X_OK;
  }
  const FrameView view = {frame, length & 0xFFFF};
  const uint32_t port = UniPort(desPort);
  if (IsBridgeFrame(view)) {
    const RelayPkt record = MakeRelay(view, port, kBpduSize);
    BCM6838X_SendBpduPkt(&record);
  } else if (IsDhcpFrame(view)) {
    const RelayPkt record = MakeRelay(view, port, kRelaySize);
    BCM6838X_SendDhcpPkt(&record);
  } else if (IsPppoeFrame(view)) {
    const RelayPkt record = MakeRelay(view, port, kRelaySize);
    BCM6838X_SendPPPoEPkt(&record);
  } else {
    SendOther(view, port);
  }
  return BCM6838X_OK;
}
