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

/// Tells whether an entry of the list is built at the port. All bits of `cvid` count, although only
/// the low 12 are the VID: 0x1000 is built, with VID 0.
bool IsBuilt(const UsCall& call, const PortVlanStackEntry& entry) {
  return entry.stackParam == kBuiltStackParam && entry.port == call.port && entry.cvid != 0 &&
         entry.svid != 0;
}

template <typename Visit>
void ForEachBuiltEntry(const UsCall& call, const PortVlanStackEntry* list, Visit visit) {
  ForEachEntry(
      list, [&](const PortVlanStackEntry& entry) { return IsBuilt(call, entry); }, visit);
}

void AddStackedVlan(UsCall& call, uint16_t cvid, uint16_t svid) {
  BCM6838X_AddWanVlan(call.port, svid, cvid);
  BCM6838X_AddLanVlan(call.port, cvid);
  const VlanActionRule push = MakeVlanAction(BRMGR_TAG_PUSH, BRMGR_DIR_UPSTREAM, svid, 0);
  // One flow, of priority 0, not one for each priority: intended.
  if (AddUsFlow(call, {kUsClassVidPriority, 1, cvid, 0, 0}, push)) {
    AddStrippedFlow(call, svid, 1);
  }
}

void DelStackedVlan(UsCall& call, uint16_t cvid, uint16_t svid) {
  // Any slot will do, used or not: with VID 0 that is one that compares no VID.
  const IngressFlowEntry* slot =
      FindSlot(call, [&](const IngressFlowEntry& each) { return each.outerVid == cvid; });
  if (slot == nullptr) {
    return;
  }
  DelUsFlowAndAction(call, *slot);
  // Sought by the customer VID, although attached to the service VID's flow: intended, the port
  // action stays where the two differ.
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
  BCM6838X_DelWanVlan(call.port, pvid, kAnyVid);
  ClearSlots(call);
  return call.result;
}

int32_t BCM6838X_AddUsBDCOMStacking(uint32_t port, uint32_t pvid, uint32_t priority,
                                    const PortVlanStackEntry* list) {
  UsCall call = BeginCall(__func__, port, list);
  if (call.isAccepted) {
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
