/// @file
/// The multicast tables and their initial state. The VLANs of the ports are in
/// bcm6838x_igmp_vlan.cpp, the channels in bcm6838x_igmp_channel.cpp.
#include <cstdint>
#include <cstring>

#include <bcm6838x_igmp.h>
#include <brmgr_record.h>

#include "bcm6838x_igmp_internal.h"

McastUniPortInfo g_mcastUniPortInfo[kMcastUniPorts] = {};
McastChannelInfo g_mcastChannelInfo[kMcastChannels] = {};

uint32_t BCM6838X_InitIgmp(void) {
  memset(g_mcastChannelInfo, 0, sizeof(g_mcastChannelInfo));
  for (uint32_t uni = 1; uni <= LastMcastPort(); ++uni) {
    McastUniPortInfo& info = g_mcastUniPortInfo[uni - 1];
    info.mcastVlanMode = kMcastVlanKeep;
    info.stripActionIndex = BRMGR_INDEX_NONE;
    for (uint16_t& vid : info.mcastVlan) {
      vid = kNoMcastVlan;
    }
    for (McastVlanTrans& rule : info.mcastVlanTrans) {
      rule.mvlan = kNoMcastVlan;
      // Required: mcast-rules-start-with-action-0
      rule.iptvVlan = kNoMcastVlan;
    }
  }
  return BCM6838X_OK;
}
