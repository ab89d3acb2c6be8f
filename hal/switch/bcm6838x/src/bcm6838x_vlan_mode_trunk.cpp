/// @file
/// The modes that carry a list of VLANs unchanged: ZTE trunk, which carries nothing else, and
/// hybrid, where the port is an access port of its PVID besides.
#include <cstdint>

#include <bcm6838x_vlan.h>

#include "bcm6838x_vlan_us.h"

using namespace hal;

namespace {

bool TakesPart(const PortVlanTrunkEntry& entry) {
  return entry.vid != 0;
}

bool AddTrunkFlow(UsCall& call, uint16_t vid, uint8_t pbit) {
  if (!AddUsFlow(call, {kUsClassVidPriority, 1, vid, pbit, pbit})) {
    return false;
  }
  // Required: objects-added-with-each-priority
  BCM6838X_AddWanVlan(call.port, vid, vid);
  BCM6838X_AddLanVlan(call.port, vid);
  return true;
}

// Required: list-duplicates-built-twice
void AddTrunkVlans(UsCall& call, const PortVlanTrunkEntry* list) {
  ForEachEntry(list, TakesPart, [&](const PortVlanTrunkEntry& entry) {
    const bool added =
        AddForEachPriority([&](uint8_t pbit) { return AddTrunkFlow(call, entry.vid, pbit); });
    if (added) {
      BCM6838X_AddDsIngressClass(entry.vid, 1, kPriorities);
    }
  });
}

void DelTrunkVlans(UsCall& call, const PortVlanTrunkEntry* list) {
  ForEachEntry(list, TakesPart, [&](const PortVlanTrunkEntry& entry) {
    const uint16_t vid = entry.vid;
    const auto isOfVid = [vid](const IngressFlowEntry& slot) {
      return slot.outerVid == vid && HasFlow(slot);
    };
    ForEachSlot(call, isOfVid, [&](const IngressFlowEntry& slot) {
      // Required: refused-delete-keeps-reference
      if (DelUsFlow(call, slot)) {
        BCM6838X_DelDsIngressClass(vid, 1);
      }
      BCM6838X_DelWanVlan(call.port, vid, vid);
      // Required: slots-cleared-at-the-end
      BCM6838X_DelLanVlan(call.port, vid);
    });
  });
}

}  // namespace

int32_t BCM6838X_AddUsZTETrunk(uint32_t port, const PortVlanTrunkEntry* list) {
  UsCall call = BeginCall(__func__, port, list);
  if (call.isAccepted) {
    AddTrunkVlans(call, list);
  }
  return call.result;
}

int32_t BCM6838X_DelUsZTETrunk(uint32_t port, const PortVlanTrunkEntry* list) {
  UsCall call = BeginCall(__func__, port, list);
  if (call.isAccepted) {
    DelTrunkVlans(call, list);
    ClearSlots(call);
  }
  return call.result;
}

int32_t BCM6838X_AddUsHybrid(uint32_t port, uint32_t pvid, uint32_t priority,
                             const PortVlanTrunkEntry* list) {
  UsCall call = BeginCall(__func__, port, list);
  if (call.isAccepted) {
    // Required: untagged-refusal-goes-on
    AddPvidFlow(call, pvid, priority);
    AddTrunkVlans(call, list);
  }
  return call.result;
}

int32_t BCM6838X_DelUsHybrid(uint32_t port, uint32_t pvid, uint32_t /*priority*/,
                             const PortVlanTrunkEntry* list) {
  UsCall call = BeginCall(__func__, port, list);
  if (call.isAccepted) {
    DelTrunkVlans(call, list);
    DelPvidFlowAndSlots(call, pvid);
  }
  return call.result;
}
