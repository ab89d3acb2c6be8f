/// @file
/// What the multicast area keeps for each UNI port and for each channel.
#ifndef BCM6838X_IGMP_INTERNAL_H
#define BCM6838X_IGMP_INTERNAL_H

#include <cstddef>
#include <cstdint>

#include "hal_bcm6838x_find.h"
#include "hal_bcm6838x_ports.h"

namespace hal {

constexpr size_t kMcastVlansPerPort = 8;
constexpr size_t kMcastChannels = 1024;

/// Marks an empty place and a free translation rule.
constexpr uint16_t kNoMcastVlan = 0xFFFF;

/// How a port's multicast frames leave it.
enum McastVlanMode : uint16_t {
  kMcastVlanStrip = 0,      ///< without their tag
  kMcastVlanKeep = 1,       ///< with it; the multicast VLANs are members of the VLAN objects
  kMcastVlanTranslate = 2,  ///< with the VID of a translation rule
};

/// A translation rule: the multicast VLAN `mvlan` reaches the port as `iptvVlan`.
struct McastVlanTrans {
  uint16_t mvlan;
  uint16_t iptvVlan;
  uint32_t vlanActionIndex;
};

/// Multicast settings of a UNI port.
struct McastUniPortInfo {
  uint16_t mcastVlanMode;  ///< a McastVlanMode
  uint16_t mcastVlan[kMcastVlansPerPort];
  uint32_t stripActionIndex;
  McastVlanTrans mcastVlanTrans[kMcastVlansPerPort];
};

/// A multicast group forwarded to one port.
struct McastChannelInfo {
  uint8_t ipv4[4];
  uint8_t ipv6[16];
  uint16_t port;
  uint16_t inUse;
  uint32_t channelIndex;
};
static_assert(sizeof(McastChannelInfo) == 28);

extern "C" {
extern McastUniPortInfo g_mcastUniPortInfo[kUniPorts];
extern McastChannelInfo g_mcastChannelInfo[kMcastChannels];
}

/// The settings of a UNI port, or null when there is no such port.
inline McastUniPortInfo* FindMcastPort(uint32_t uni) {
  return IsInTables(uni) ? &g_mcastUniPortInfo[uni - 1] : nullptr;
}

/// The first translation rule of a multicast VLAN, or null; a free rule is none.
inline McastVlanTrans* FindMcastRule(McastUniPortInfo& info, uint16_t mvlan) {
  return FirstOf(info.mcastVlanTrans, [mvlan](const McastVlanTrans& rule) {
    return rule.mvlan == mvlan && mvlan != kNoMcastVlan;
  });
}

}  // namespace hal

#endif
