/// @file
/// The two modes that carry tagged frames inside a second tag: ZTE stacking, where every frame gets
/// the PVID's tag, and BDCOM stacking, where each customer VLAN of the port's list gets the tag of
/// its service VLAN.
#include <cstdint>

#include <bcm6838x_vlan.h>

#include "bcm6838x_vlan_us.h"

using namespace hal;

namespace {

constexpr uint32_t kBuiltStackParam = 2;
constexpr uint32_t kVidMask = 0xFFF;

/// Number of tags of a stacked frame.
constexpr uint32_t kStackedTags = 2;

/// Removes the outer tag of a downstream flow's frames at the port.
void StripAtPort(const UsCall& call, uint32_t dsFlow) {
  if (dsFlow != BRMGR_INDEX_NONE) {
    BCM6838X_AddPortAction(call.port, dsFlow, kDsClassVid, g_dsVlanAction);
  }
}

/// Takes references on a downstream flow whose outer tag the port must not see.
void AddStrippedFlow(const UsCall& call, uint32_t vid, uint32_t references) {
  StripAtPort(call,
              static_cast<uint32_t>(BCM6838X_AddDsIngressClass(vid, kStackedTags, references)));
}

/// Undoes one flow of ZTE stacking, whose frames have `vlanNum` tags downstream.
void DelZteFlow(UsCall& call, const IngressFlowEntry& slot, uint32_t pvid, uint32_t vlanNum) {
  DelUsFlowAndAction(call, slot);
  DetachPortAction(call, pvid, vlanNum);
  BCM6838X_DelDsIngressClass(pvid, vlanNum);
}

uint16_t CustomerVid(const PortVlanStackEntry& entry) {
  return static_cast<uint16_t>(entry.cvid & kVidMask);
}

// Required: bdcom-cvid-counts-whole
/// Tells whether an entry of the list is built at the port.
bool IsBuilt(const UsCall& call, const PortVlanStackEntry& entry) {
  // Required: bdcom-entry-must-name-port
  return entry.stackParam == kBuiltStackParam && entry.port == call.port && entry.cvid != 0 &&
         entry.svid != 0;
}

template <typename Visit>
void ForEachBuiltEntry(const UsCall& call, const PortVlanStackEntry* list, Visit visit) {
  ForEachEntry(
      list, [&](const PortVlanStackEntry& entry) { return IsBuilt(call, entry); }, visit);
}

void AddStackedVlan(UsCall& call, uint16_t cvid, uint16_t svid) {
  // Required: bdcom-objects-before-flow
  BCM6838X_AddWanVlan(call.port, svid, cvid);
  BCM6838X_AddLanVlan(call.port, cvid);
  const VlanActionRule push = MakeVlanAction(BRMGR_TAG_PUSH, BRMGR_DIR_UPSTREAM, svid, 0);
  // Required: bdcom-one-flow-an-entry
  if (AddUsFlow(call, {kUsClassVidPriority, 1, cvid, 0, 0}, push)) {
    AddStrippedFlow(call, svid, 1);
  }
}

void DelStackedVlan(UsCall& call, uint16_t cvid, uint16_t svid) {
  const IngressFlowEntry* slot =
      // Required: bdcom-any-slot-of-the-vid
      FindSlot(call, [&](const IngressFlowEntry& each) { return each.outerVid == cvid; });
  if (slot == nullptr) {
    return;
  }
  DelUsFlowAndAction(call, *slot);
  // Required: bdcom-detach-by-customer-vid
  DetachPortAction(call, slot->outerVid, kStackedTags);
  BCM6838X_DelDsIngressClass(svid, kStackedTags);
  BCM6838X_DelWanVlan(call.port, svid, cvid);
  BCM6838X_DelLanVlan(call.port, cvid);
}

}  // namespace

int32_t BCM6838X_AddUsZTEStacking(uint32_t port, uint32_t pvid, uint32_t priority) {
  UsCall call = BeginOpeningCall(__func__, port);
  if (!call.isAccepted) {
    return call.result;
  }
  StripAtPort(call, AddPvidFlow(call, pvid, priority));
  const VlanActionRule push =
      MakeVlanAction(kPushTagWithPriority, BRMGR_DIR_UPSTREAM, pvid, priority);
  const bool added = AddForEachPriority([&](uint8_t pbit) {
    // Required: zte-stacking-one-outer-priority
    return AddUsFlow(call, {kUsClassPriority, 1, 0, pbit, pbit}, push);
  });
  if (added) {
    AddStrippedFlow(call, pvid, kPriorities);
  }
  return call.result;
}

int32_t BCM6838X_DelUsZTEStacking(uint32_t port, uint32_t pvid, uint32_t /*priority*/) {
  UsCall call = BeginClosingCall(__func__, port);
  if (!call.isAccepted) {
    return call.result;
  }
  if (const IngressFlowEntry* slot = FindUntaggedSlot(call)) {
    DelZteFlow(call, *slot, pvid, 1);
  }
  const auto isTagged = [](const IngressFlowEntry& slot) {
    return IsUsed(slot) && slot.vlanNum == 1;
  };
  ForEachSlot(call, isTagged,
              [&](const IngressFlowEntry& slot) { DelZteFlow(call, slot, pvid, kStackedTags); });
  // Required: zte-stacking-always-releases-wan
  BCM6838X_DelWanVlan(call.port, pvid, kAnyVid);
  ClearSlots(call);
  return call.result;
}

int32_t BCM6838X_AddUsBDCOMStacking(uint32_t port, uint32_t pvid, uint32_t priority,
                                    const PortVlanStackEntry* list) {
  UsCall call = BeginCall(__func__, port, list);
  if (call.isAccepted) {
    // Required: bdcom-pvid-not-stripped
    AddPvidFlow(call, pvid, priority);
    ForEachBuiltEntry(call, list, [&](const PortVlanStackEntry& entry) {
      AddStackedVlan(call, CustomerVid(entry), entry.svid);
    });
  }
  return call.result;
}

int32_t BCM6838X_DelUsBDCOMStacking(uint32_t port, uint32_t pvid, uint32_t /*priority*/,
                                    const PortVlanStackEntry* list) {
  UsCall call = BeginCall(__func__, port, list);
  if (call.isAccepted) {
    ForEachBuiltEntry(call, list, [&](const PortVlanStackEntry& entry) {
      DelStackedVlan(call, CustomerVid(entry), entry.svid);
    });
    DelPvidFlowAndSlots(call, pvid);
  }
  return call.result;
}
