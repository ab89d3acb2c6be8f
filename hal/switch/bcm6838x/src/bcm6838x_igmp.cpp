/// @file
/// Multicast; not built yet beyond its place in the start-up sequence.
#include <cstdint>

#include <bcm6838x_igmp.h>

uint32_t BCM6838X_InitIgmp(void) {
  return BCM6838X_OK;
}
