/// @file
/// Requests for multicast channels by the address of the group.
#pragma once

#include <bcm6838x_igmp.h>

#include "base/bytes.h"

namespace virtual_onu {

/// A request that names a group by its address and the MAC address that belongs to it. VLAN and
/// ports are 0.
/// @param[in] group  4 or 16 bytes
McastGroupRequest GroupRequest(ByteView group);

}  // namespace virtual_onu
