/// @file
/// The two simplest modes of a UNI port: transparent, where every frame passes unchanged, and tag,
/// where the port is an access port of one VLAN.
#include <cstdint>

#include <bcm6838x_vlan.h>

#include "bcm6838x_vlan_us.h"

using namespace hal;

namespace {

bool IsRecorded(const IngressFlowEntry& slot) {
  return IsUsed(slot) && HasFlow(slot);
}

/// The flows of tagged frames, by their priority, with their references on the downstream flow.
void AddTaggedFlows(UsCall& call, uint8_t vlanNum) {
  const bool added = AddForEachPriority([&](uint8_t pbit) {
    return AddUsFlow(call, {kUsClassPriority, vlanNum, 0, pbit, pbit});
  });
  if (added) {
    BCM6838X_AddDsIngressClass(kAnyVid, vlanNum, kPriorities);
  }
}

}  // namespace

int32_t BCM6838X_AddUsTransparent(uint32_t port) {
  UsCall call = BeginCall(__func__, port);
  if (!call.isAccepted) {
    return call.result;
  }
  OpenPort(call);
  if (AddUsFlow(call, UntaggedFlow(0))) {
    BCM6838X_AddDsIngressClass(kAnyVid, 0, 1);
  }
  AddTaggedFlows(call, 1);
  AddTaggedFlows(call, 2);
  return call.result;
}

int32_t BCM6838X_AddUsTransparent_Perf(uint32_t port) {
  UsCall call = BeginCall(__func__, port);
  if (!call.isAccepted) {
    return call.result;
  }
  OpenPort(call);
  // Required: performance-transparent-one-flow
  if (AddUsFlow(call, UntaggedFlow(0))) {
    BCM6838X_AddDsIngressClass_Perf(kAnyVid, 0, 1);
  }
  return call.result;
}

int32_t BCM6838X_DelUsTransparent(uint32_t port) {
  UsCall call = BeginCall(__func__, port);
  if (!call.isAccepted) {
    return call.result;
  }
  ClosePort(call);
  ForEachSlot(call, IsRecorded, [&](const IngressFlowEntry& slot) {
    if (DelUsFlow(call, slot)) {
      // Required: reference-back-for-each-flow
      BCM6838X_DelDsIngressClass(kAnyVid, slot.vlanNum);
    }
  });
  ClearSlots(call);
  return call.result;
}

int32_t BCM6838X_AddUsTag(uint32_t port, uint32_t vid, uint32_t pbit) {
  UsCall call = BeginCall(__func__, port);
  if (!call.isAccepted) {
    return call.result;
  }
  BCM6838X_AddWanVlan(call.port, vid, kAnyVid);
  const VlanActionRule action = MakeVlanAction(kPushTagWithPriority, BRMGR_DIR_UPSTREAM, vid, pbit);
  const auto index = static_cast<uint32_t>(BCM6838X_AddVlanAction(action, 1));
  // Required: tag-refusal-gives-action-back-by-index
  if (CreateUsFlow(call, UntaggedFlow(static_cast<uint16_t>(pbit)), UsVlanActionOf(index))) {
    BCM6838X_AddDsIngressClass(vid, 1, 1);
  }
  return call.result;
}

int32_t BCM6838X_DelUsTag(uint32_t port, uint32_t vid, uint32_t /*pbit*/) {
  UsCall call = BeginCall(__func__, port);
  if (!call.isAccepted) {
    return call.result;
  }
  // Required: tag-delete-takes-first-slot
  if (const IngressFlowEntry* slot = FindSlot(call, IsUsed)) {
    DelPvidFlow(call, *slot, vid);
  }
  ClearSlots(call);
  return call.result;
}
