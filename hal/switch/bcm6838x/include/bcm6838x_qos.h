/// @file
/// QoS classification, policing and scheduling.
#ifndef BCM6838X_QOS_H
#define BCM6838X_QOS_H

#include <stdint.h>

#include "bcm6838x_api.h"

BCM6838X_BEGIN_DECLS

/// Initialises the QoS bookkeeping; called by BCM6838X_Init. The QoS area is not built yet: the
/// operation does nothing.
///
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_InitQoS(void);

BCM6838X_END_DECLS

#endif
