/// @file
/// Multicast VLANs and channels.
#ifndef BCM6838X_IGMP_H
#define BCM6838X_IGMP_H

#include <stdint.h>

#include "bcm6838x_api.h"

BCM6838X_BEGIN_DECLS

/// Clears the multicast tables; called by BCM6838X_Init. The multicast area is not built yet: the
/// operation does nothing.
///
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_InitIgmp(void);

BCM6838X_END_DECLS

#endif
