/// @file
/// Any event record, in any VLAN mode, through the capture path.
#include <hal_bcm6838x.h>

#include "fuzz_platform.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  fuzz::ConfigurePorts(input);
  const std::uint8_t relays = input.byte();
  BCM6838X_SetDhcpTrapEnable(relays & 1U);
  BCM6838X_SetPPPoETrapEnable(relays & 2U);
  BrmgrEvent event = {};
  event.eventType = input.byte() % 9U;
  event.port = input.number(2);
  // Mostly the frame's own length, which makes the most of a frame.
  const std::uint8_t kind = input.byte();
  const std::uint32_t told = input.number(4);
  const fuzz::Bytes frame = input.rest();
  std::copy_n(frame.begin(), std::min(frame.size(), sizeof(event.data)), event.data);
  event.length = kind % 4 == 0 ? told : static_cast<std::uint32_t>(frame.size());
  fuzz::PutEvent(event);
  fuzz::Require(BCM6838X_CapturePacket() <= BCM6838X_FAILED);
  return 0;
}
