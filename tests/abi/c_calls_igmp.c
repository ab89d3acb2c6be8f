/// @file
/// Calls of the operations of bcm6838x_igmp.h from C.
#include <bcm6838x_igmp.h>

#include "c_calls.h"

void call_BCM6838X_InitIgmp(void) {
  EXPECT(BCM6838X_InitIgmp() == BCM6838X_OK);
}
