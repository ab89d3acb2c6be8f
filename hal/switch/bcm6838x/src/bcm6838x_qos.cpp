/// @file
/// QoS; not built yet beyond its place in the start-up sequence.
#include <cstdint>

#include <bcm6838x_qos.h>

uint32_t BCM6838X_InitQoS(void) {
  return BCM6838X_OK;
}
