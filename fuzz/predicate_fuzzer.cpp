/// @file
/// Any bytes through the protocol predicates: MLD in memory that ends with the frame, the others in
/// the 2048 bytes that are enough for every frame.
#include <hal_bcm6838x.h>

#include "fuzz_platform.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kFrameCapacity = 2048;
  fuzz::Bytes frame(data, data + size);
  const std::uint32_t mld =
      BCM6838X_IsMldPacket(frame.data(), static_cast<std::uint32_t>(frame.size()));
  frame.resize(kFrameCapacity);
  const std::uint32_t dhcp = BCM6838X_IsDHCPProtocol(frame.data());
  const std::uint32_t pppoe = BCM6838X_IsPPPoEProtocol(frame.data());
  std::uint16_t vid = 0;
  std::uint16_t priority = 0;
  fuzz::Require(BCM6838X_GetTag(frame.data(), &vid, &priority) <= 2 && vid <= 4095 &&
                priority <= 7);
  fuzz::Require(mld + dhcp + pppoe <= 1);
  return 0;
}
