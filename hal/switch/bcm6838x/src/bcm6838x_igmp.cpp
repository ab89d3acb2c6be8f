/// @file
/// The multicast tables and their initial state. The VLANs of the ports are in
/// bcm6838x_igmp_vlan.cpp, the channels in bcm6838x_igmp_channel.cpp.
#include <cstdint>
#include <cstring>

#include <bcm6838x_igmp.h>
#include <brmgr_record.h>

#include "bcm6838x_igmp_internal.h"
#include "hal_bcm6838x_ports.h"

using namespace hal;

McastUniPortInfo hal::g_mcastUniPortInfo[kUniPorts] = {};
McastChannelInfo hal::g_mcastChannelInfo[kMcastChannels] = {};

uint32_t BCM6838X_InitIgmp(void) {
  memset(g_mcastChannelInfo, 0, sizeof(g_mcastChannelInfo));
  for (const uint32_t uni : EthPortsInTables()) {
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
