/// @file
/// Any frame through BCM6838X_SendPacket, the relays' transmits and the tag helpers, in memory that
/// ends with the frame.
#include <hal_bcm6838x.h>

#include "fuzz_platform.h"

namespace {

void SendRecords(const fuzz::Bytes& frame, std::uint32_t port, std::uint32_t told) {
  RelayPkt relay = {};
  relay.desPort = port;
  relay.length = told;
  std::copy_n(frame.begin(), std::min(frame.size(), sizeof(relay.data)), relay.data);
  BCM6838X_SendBpduPkt(&relay);
  BCM6838X_SendDhcpPkt(&relay);
  BCM6838X_SendPPPoEPkt(&relay);
  RdpaPkt packet = {};
  packet.size = told;
  packet.desPort = port;
  std::copy_n(frame.begin(), std::min(frame.size(), sizeof(packet.data)), packet.data);
  BCM6838X_RdpaSendIgmpPkt(&packet);
  BCM6838X_AccordVlan(packet.data, &packet, port, told);
  BCM6838X_AccordVlan(packet.data, &packet, 0, port);
}

/// Adds and removes a tag in memory that ends behind the frame's room for it.
void EditTags(const fuzz::Bytes& frame, std::uint32_t vid) {
  fuzz::Bytes room = frame;
  auto size = static_cast<std::uint32_t>(frame.size());
  room.resize(room.size() + 4);
  BCM6838X_AddVlanTag(room.data(), &size, vid, vid >> 12U);
  fuzz::Require(size == frame.size() || size == frame.size() + 4);
  room.resize(size);
  BCM6838X_RemoveVlanTag(room.data(), &size);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  fuzz::ConfigurePorts(input);
  const std::uint32_t port = input.number(2);
  const std::uint32_t told = input.number(4);
  const std::uint32_t vid = input.number(2);
  const fuzz::Bytes frame = input.rest();
  fuzz::Require(BCM6838X_SendPacket(frame.data(), static_cast<std::uint32_t>(frame.size()), 0, 0,
                                    port) == BCM6838X_OK ||
                frame.empty());
  SendRecords(frame, port, told);
  EditTags(frame, vid);
  return 0;
}
