/// @file
/// Search of the WAN VLAN table by VID. The table's entries lie 32 kB apart, so that a search over
/// them would miss the cache at every step; it runs over a compact copy of the VIDs instead, in the
/// table's order.
#ifndef BCM6838X_VLAN_WAN_INDEX_H
#define BCM6838X_VLAN_WAN_INDEX_H

#include <cstdint>

#include "bcm6838x_vlan_internal.h"

/// The first entry with that WAN VID, 0 for a free one, or null.
WanVlanEntry* FindWanEntry(uint16_t wanVid);

/// Sets an entry's WAN VID, 0 to free the entry.
void SetWanVid(WanVlanEntry& entry, uint16_t wanVid);

#endif
