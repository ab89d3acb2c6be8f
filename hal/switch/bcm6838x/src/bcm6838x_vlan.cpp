/// @file
/// Start-up of the VLAN area; not built yet beyond its place in the start-up sequence.
#include <cstdint>

#include <bcm6838x_vlan.h>

uint32_t BCM6838X_InitVlan(void) {
  return BCM6838X_OK;
}
