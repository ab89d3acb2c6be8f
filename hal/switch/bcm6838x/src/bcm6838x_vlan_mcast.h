/// @file
/// All that multicast and the VLAN modes of a port know of each other: a port that carries every
/// VLAN needs none of its multicast VLANs in the VLAN objects.
#ifndef BCM6838X_VLAN_MCAST_H
#define BCM6838X_VLAN_MCAST_H

#include <cstdint>

namespace hal {

/// Whether the current VLAN mode of a UNI port, 1..32, lets every VLAN through it.
bool CarriesEveryVlan(uint32_t uni);

/// Takes the multicast VLANs that a UNI port, 1..32, keeps out of the VLAN objects, and puts them
/// back, whatever its VLAN mode.
void WithdrawMcastVlans(uint32_t uni);
void RestoreMcastVlans(uint32_t uni);

}  // namespace hal

#endif
