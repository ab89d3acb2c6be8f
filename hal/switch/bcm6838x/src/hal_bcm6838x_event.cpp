/// @file
/// The kernel event task; its monitor is not built yet.
#include <cstdint>

#include <hal_bcm6838x.h>

void BCM6838X_kernelEvent(void) {}
