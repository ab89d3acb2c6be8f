/// @file
/// One function a table of the library.
#include "consistency/read_library_tables.h"

#include "bcm6838x_igmp_internal.h"
#include "bcm6838x_vlan_internal.h"
#include "bcm6838x_vlan_mcast.h"

namespace virtual_onu {
namespace {

void ReadActions(LibraryTables& tables) {
  for (const hal::VlanActionEntry& entry : hal::g_vlanAction) {
    if (entry.rule.tag[0].tpid != 0 || entry.rule.tag[1].tpid != 0) {
      tables.actions.push_back({entry.rule, entry.refCount});
    }
  }
  if (hal::g_dsVlanAction != BRMGR_INDEX_NONE) {
    tables.directActions.push_back(hal::g_dsVlanAction);
  }
}

void ReadFlows(LibraryTables& tables) {
  for (const hal::IngressFlowEntry& entry : hal::g_dsIngressClass) {
    if (entry.outerVid != 0) {
      tables.downstreamFlows.push_back(entry);
    }
  }
  for (std::uint32_t port = 1; port <= hal::kUniPorts; ++port) {
    for (const hal::IngressFlowEntry& entry : hal::g_usIngressClass[port - 1]) {
      if (entry.ingressPort != 0) {
        tables.upstreamFlows.push_back({port, entry});
      }
    }
  }
}

void ReadVlanObjects(LibraryTables& tables) {
  for (const hal::WanVlanEntry& entry : hal::g_wanVlan) {
    if (entry.wanVid != 0) {
      tables.wanVids.push_back(entry.wanVid);
    }
  }
  for (const hal::LanVlanEntry& entry : hal::g_lanVlan) {
    if (entry.port != 0 || entry.vid != 0) {
      tables.lanVlans.push_back({entry.port, entry.vid, entry.refCount});
    }
  }
}

/// Before the start-up the settings are all zero; after it no place holds VID 0.
bool IsStarted(const hal::McastUniPortInfo& info) {
  return info.mcastVlan[0] != 0;
}

void ReadMulticastPort(std::uint32_t port, LibraryTables& tables) {
  const hal::McastUniPortInfo& info = hal::g_mcastUniPortInfo[port - 1];
  if (info.mcastVlanMode == hal::kMcastVlanStrip && info.stripActionIndex != BRMGR_INDEX_NONE) {
    tables.directActions.push_back(info.stripActionIndex);
  }
  if (info.mcastVlanMode == hal::kMcastVlanKeep && !hal::CarriesEveryVlan(port)) {
    for (const std::uint16_t vid : info.mcastVlan) {
      if (vid != hal::kNoMcastVlan) {
        tables.multicastVlans.push_back({port, vid});
      }
    }
  }
  for (const hal::McastVlanTrans& rule : info.mcastVlanTrans) {
    if (rule.mvlan != hal::kNoMcastVlan) {
      tables.multicastVlans.push_back({port, rule.iptvVlan});
      tables.directActions.push_back(rule.vlanActionIndex);
    }
  }
}

void ReadMulticast(LibraryTables& tables) {
  for (std::uint32_t port = 1; port <= hal::kUniPorts; ++port) {
    if (IsStarted(hal::g_mcastUniPortInfo[port - 1])) {
      ReadMulticastPort(port, tables);
    }
  }
}

}  // namespace

LibraryTables ReadLibraryTables() {
  LibraryTables tables;
  ReadActions(tables);
  ReadFlows(tables);
  ReadVlanObjects(tables);
  ReadMulticast(tables);
  return tables;
}

}  // namespace virtual_onu
