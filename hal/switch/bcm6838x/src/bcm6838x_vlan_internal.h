/// @file
/// What the files of the VLAN area share: the tables of chip objects and the number of a port's LAN
/// object.
#ifndef BCM6838X_VLAN_INTERNAL_H
#define BCM6838X_VLAN_INTERNAL_H

#include <cstddef>
#include <cstdint>

#include <brmgr_record.h>
#include <platform_config.h>

#include "hal_bcm6838x_ports.h"

namespace hal {

constexpr size_t kVlanActions = 256;
constexpr size_t kFlowsPerTable = 256;  ///< shared downstream flows, and upstream flows of a port
constexpr size_t kWanVlans = 256;
constexpr size_t kLanVidsPerPort = 512;
constexpr size_t kLanVlans = 256;

/// VID that stands for any VID in the shared downstream flows, and for untagged on a LAN side.
constexpr uint32_t kAnyVid = 4096;

/// Tag protocol identifier of the tags that the rules push and rewrite.
constexpr uint16_t kTpid = 0x8100;

/// A VLAN action in the pool.
struct VlanActionEntry {
  VlanActionRule rule;
  uint32_t refCount;  ///< flows that hold the action
};
static_assert(sizeof(VlanActionEntry) == 28);

/// A WAN VLAN object: its VID, 0 when free, and the LAN VIDs of each port, 0 in free slots.
struct WanVlanEntry {
  uint16_t wanVid;
  uint16_t lanVid[kUniPorts][kLanVidsPerPort];
};
static_assert(sizeof(WanVlanEntry) == 32770);

/// A LAN VLAN object; free when port and vid are 0.
struct LanVlanEntry {
  uint16_t port;
  uint16_t vid;
  uint16_t refCount;
};
static_assert(sizeof(LanVlanEntry) == 6);

/// A flow in the tables: the record as it was sent, with its references in `refCount`.
using IngressFlowEntry = IngressFlowRule;

extern "C" {
extern VlanActionEntry g_vlanAction[kVlanActions];
extern WanVlanEntry g_wanVlan[kWanVlans];
extern LanVlanEntry g_lanVlan[kLanVlans];
extern IngressFlowEntry g_dsIngressClass[kFlowsPerTable];
extern IngressFlowEntry g_usIngressClass[kUniPorts][kFlowsPerTable];

/// The downstream action that removes the outer tag; none until the start-up has created it.
extern uint32_t g_dsVlanAction;
}

/// Number of a UNI port's LAN object; boards may number them in reverse.
inline uint32_t LanIndex(uint32_t port) {
  constexpr uint32_t kReverseBase = 5;
  // Required: lan-number-wraps
  return (g_PortRevert != 0 ? (kReverseBase - port) & 0xFF : port) - 1;
}

/// "us" or "ds" for a direction word.
constexpr const char* DirectionName(uint32_t dir) {
  return dir == 0 ? "ds" : "us";
}

}  // namespace hal

#endif
