/// @file
/// The table of VLAN membership: which ports are members of a VLAN, each port of one.
#ifndef BCM6838X_VLAN_ENTRY_H
#define BCM6838X_VLAN_ENTRY_H

#include <cstddef>
#include <cstdint>

namespace hal {

constexpr size_t kVlanEntries = 4096;

/// A VLAN with its members.
struct VlanEntry {
  uint16_t vid;
  uint32_t portMask;   ///< bit p - 1 is set for each member p; never 0 in use
  uint32_t vlanAttr;   ///< reported as it is; nobody sets it
  uint8_t unused[40];  ///< nobody reads or sets it
};
static_assert(sizeof(VlanEntry) == 52);

extern "C" {
extern VlanEntry g_vlanEntry[kVlanEntries];  ///< the first ones are in use, in the order of VIDs
extern uint16_t g_vlanEntryCnt;              ///< how many are in use
extern uint16_t g_vlanEntryGetCnt;           ///< the entry that a walk has reported last
}

}  // namespace hal

#endif
