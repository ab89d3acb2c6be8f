/// @file
/// Calls of the operations of bcm6838x_qos.h from C.
#include <bcm6838x_qos.h>

#include "c_calls.h"

void call_BCM6838X_InitQoS(void) {
  EXPECT(BCM6838X_InitQoS() == BCM6838X_OK);
}
