/// @file
/// Translation mode: the port is an access port of its PVID, and carries the VLANs of its list
/// under other VIDs.
#include <cstdint>

#include <bcm6838x_vlan.h>

#include "bcm6838x_vlan_us.h"

using namespace hal;

namespace {

bool TakesPart(const PortVlanTransEntry& entry) {
  // Required: builders-ignore-list-port
  return entry.localVid != 0 && entry.netVid != 0;
}

VlanActionRule UsAction(const PortVlanTransEntry& entry) {
  return MakeVlanAction(kReplaceVidAndPriority, BRMGR_DIR_UPSTREAM, entry.netVid, entry.usPriority);
}

VlanActionRule DsAction(const PortVlanTransEntry& entry) {
  // Required: translation-ds-action-has-net-vid
  return MakeVlanAction(kReplaceVidAndPriority, BRMGR_DIR_DOWNSTREAM, entry.netVid,
                        entry.dsPriority);
}

bool AddTranslatedFlow(UsCall& call, const PortVlanTransEntry& entry, uint8_t pbit) {
  if (!AddUsFlow(call, {kUsClassVidPriority, 1, entry.localVid, pbit, pbit}, UsAction(entry))) {
    return false;
  }
  BCM6838X_AddWanVlan(call.port, entry.netVid, entry.localVid);
  BCM6838X_AddLanVlan(call.port, entry.localVid);
  return true;
}

/// References for the flows of all priorities on the downstream flow and on its action at the port.
void AddDownstream(const UsCall& call, const PortVlanTransEntry& entry) {
  const auto flow = static_cast<uint32_t>(BCM6838X_AddDsIngressClass(entry.netVid, 1, kPriorities));
  if (flow == BRMGR_INDEX_NONE) {
    return;
  }
  const auto action = static_cast<uint32_t>(BCM6838X_AddVlanAction(DsAction(entry), kPriorities));
  if (action != BRMGR_INDEX_NONE) {
    BCM6838X_AddPortAction(call.port, flow, kDsClassVid, action);
  }
}

/// Gives one reference on the downstream action of an entry back.
void DelDsAction(const PortVlanTransEntry& entry) {
  VlanActionRule action = DsAction(entry);
  action.vlanActionIndex = static_cast<uint32_t>(BCM6838X_GetVlanAction(action));
  if (action.vlanActionIndex != BRMGR_INDEX_NONE) {
    BCM6838X_DelVlanAction(action);
  }
}

/// Undoes what one flow of an entry holds.
void DelTranslatedFlow(UsCall& call, const PortVlanTransEntry& entry,
                       const IngressFlowEntry& slot) {
  DelUsFlowAndAction(call, slot);
  // Required: translation-detaches-each-time
  DetachPortAction(call, entry.netVid, 1);
  DelDsAction(entry);
  BCM6838X_DelDsIngressClass(entry.netVid, 1);
  BCM6838X_DelWanVlan(call.port, entry.netVid, entry.localVid);
  BCM6838X_DelLanVlan(call.port, entry.localVid);
}

}  // namespace

int32_t BCM6838X_AddUsTranslation(uint32_t port, uint32_t pvid, uint32_t priority,
                                  const PortVlanTransEntry* list) {
  UsCall call = BeginCall(__func__, port, list);
  if (!call.isAccepted) {
    return call.result;
  }
  AddPvidFlow(call, pvid, priority);
  ForEachEntry(list, TakesPart, [&](const PortVlanTransEntry& entry) {
    const bool added =
        AddForEachPriority([&](uint8_t pbit) { return AddTranslatedFlow(call, entry, pbit); });
    if (added) {
      AddDownstream(call, entry);
    }
  });
  return call.result;
}

int32_t BCM6838X_DelUsTranslation(uint32_t port, uint32_t pvid, uint32_t /*priority*/,
                                  const PortVlanTransEntry* list) {
  UsCall call = BeginCall(__func__, port, list);
  if (!call.isAccepted) {
    return call.result;
  }
  // Required: slots-cleared-at-the-end
  ForEachEntry(list, TakesPart, [&](const PortVlanTransEntry& entry) {
    const auto isOfVid = [&](const IngressFlowEntry& slot) {
      return slot.outerVid == entry.localVid;
    };
    ForEachSlot(call, isOfVid,
                [&](const IngressFlowEntry& slot) { DelTranslatedFlow(call, entry, slot); });
  });
  DelPvidFlowAndSlots(call, pvid);
  return call.result;
}
