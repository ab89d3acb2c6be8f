/// @file
/// What the builders of the port VLAN modes share: the upstream flows of a UNI port with the slots
/// that remember them, the flow of untagged frames, and what the modes that pass every VLAN do to
/// the port and its multicast VLANs. Which flows a mode has is told in bcm6838x_vlan_mode_*.cpp.
#ifndef BCM6838X_VLAN_US_H
#define BCM6838X_VLAN_US_H

#include <cstddef>
#include <cstdint>

#include <brmgr_record.h>

#include "bcm6838x_vlan_config.h"
#include "bcm6838x_vlan_internal.h"
#include "hal_bcm6838x_find.h"

namespace hal {

/// Upstream classes made at start-up, by what their flows compare besides the port and the number
/// of tags.
enum UsClass : uint32_t {
  kUsClassPort = 0,         ///< nothing more
  kUsClassVidPriority = 3,  ///< outer VID and priority
  kUsClassPriority = 4,     ///< outer priority
};

/// Downstream class whose flows compare the VID; port actions are attached to its flows.
constexpr uint32_t kDsClassVid = 1;

constexpr uint32_t kPriorities = 8;

/// Tag operations of the modes' VLAN actions.
constexpr uint32_t kPushTagWithPriority = BRMGR_TAG_PUSH | BRMGR_TAG_REPLACE_PRIORITY;
constexpr uint32_t kReplaceVidAndPriority = BRMGR_TAG_REPLACE_VID | BRMGR_TAG_REPLACE_PRIORITY;

/// One call of a builder.
struct UsCall {
  const char* name;  ///< under which it logs
  uint16_t port;     ///< UNI port
  bool isAccepted;   ///< whether there are such a port and the list that the builder needs
  int32_t result;    ///< what the builder returns: that of the last flow command that it sent
};

/// An upstream flow: what tells it from the others of its port.
struct UsFlow {
  uint32_t icIndex;
  uint8_t vlanNum;
  uint16_t outerVid;
  uint8_t outerPbit;
  uint32_t queue;
};

/// Begins a builder: logs the entry and checks the port, which is in the low 16 bits of the caller's
/// number. A call that is not accepted has its result and its log line.
UsCall BeginCall(const char* name, uint32_t port);

/// The same for a builder that needs a list.
UsCall BeginCall(const char* name, uint32_t port, const void* list);

/// The same for a builder that opens the port, or closes it, before it logs the entry.
UsCall BeginOpeningCall(const char* name, uint32_t port);
UsCall BeginClosingCall(const char* name, uint32_t port);

/// A VLAN action with one tag.
VlanActionRule MakeVlanAction(uint32_t cmd, uint32_t dir, uint32_t vid, uint32_t pbit);

/// Names an upstream VLAN action by its index alone.
VlanActionRule UsVlanActionOf(uint32_t index);

/// Creates a flow with the action that `held` names, or without one, and records it in the port's
/// first free slot; the flow stays unrecorded when there is none. When the driver refuses, gives
/// the reference on `held` back, logs, and returns false.
bool CreateUsFlow(UsCall& call, const UsFlow& flow, const VlanActionRule& held);

/// Creates a flow without an action.
bool AddUsFlow(UsCall& call, const UsFlow& flow);

/// Creates a flow with one reference on a pooled action; without an action when the pool refuses.
bool AddUsFlow(UsCall& call, const UsFlow& flow, const VlanActionRule& action);

/// The flow of untagged frames.
constexpr UsFlow UntaggedFlow(uint32_t queue) {
  return {kUsClassPort, 0, 0, 0, queue};
}

/// Deletes the flow of a slot, which has one; logs and returns false when the driver refuses.
bool DelUsFlow(UsCall& call, const IngressFlowEntry& slot);

/// Deletes the flow of a slot and gives its reference on a VLAN action back, as far as it has them.
void DelUsFlowAndAction(UsCall& call, const IngressFlowEntry& slot);

/// Makes a port an access port of its PVID: untagged frames get the PVID's tag. Returns the shared
/// downstream flow of the PVID, on which it took a reference, or BRMGR_INDEX_NONE.
uint32_t AddPvidFlow(UsCall& call, uint32_t pvid, uint32_t priority);

/// Undoes AddPvidFlow: the flow of untagged frames is the one in `slot`.
void DelPvidFlow(UsCall& call, const IngressFlowEntry& slot, uint32_t pvid);

/// The port's first slot of a flow of untagged frames, or null.
const IngressFlowEntry* FindUntaggedSlot(const UsCall& call);

/// Ends a delete: undoes AddPvidFlow by the slot of the untagged flow, does nothing without one,
/// and frees all slots of the port.
void DelPvidFlowAndSlots(UsCall& call, uint32_t pvid);

/// Detaches the port's action from the shared downstream flow of a VID and tag count, if it exists.
void DetachPortAction(const UsCall& call, uint32_t vid, uint32_t vlanNum);

/// Lets every VLAN through a port, by a shell line, and takes the multicast VLANs that it keeps out of
/// the VLAN objects.
void OpenPort(const UsCall& call);

/// Undoes OpenPort. The shell's result becomes that of the call.
void ClosePort(UsCall& call);

/// The slots that remember the upstream flows of a port.
inline IngressFlowEntry (&SlotsOf(const UsCall& call))[kFlowsPerTable] {
  return g_usIngressClass[call.port - 1];
}

inline bool IsUsed(const IngressFlowEntry& slot) {
  return slot.ingressPort != 0;
}

inline bool HasFlow(const IngressFlowEntry& slot) {
  return slot.flowIndex != BRMGR_INDEX_NONE;
}

/// Frees all slots of a port.
void ClearSlots(const UsCall& call);

/// The first slot of a port for which `accepts` holds, or null.
template <typename Predicate>
IngressFlowEntry* FindSlot(const UsCall& call, Predicate accepts) {
  return FirstOf(SlotsOf(call), accepts);
}

/// Visits, in order, the slots of a port for which `accepts` holds.
template <typename Predicate, typename Visit>
void ForEachSlot(const UsCall& call, Predicate accepts, Visit visit) {
  for (const IngressFlowEntry& slot : SlotsOf(call)) {
    if (accepts(slot)) {
      visit(slot);
    }
  }
}

/// Visits the entries of a port's list for which `takesPart` holds.
template <typename Entry, typename Predicate, typename Visit>
void ForEachEntry(const Entry* list, Predicate takesPart, Visit visit) {
  for (const Entry* entry = list; entry != list + kVlanListEntries; ++entry) {
    if (takesPart(*entry)) {
      visit(*entry);
    }
  }
}

/// Adds a flow for each priority and tells whether the last one succeeded, whatever became of the
/// others.
template <typename Add>
bool AddForEachPriority(Add add) {
  bool added = false;
  for (uint32_t pbit = 0; pbit < kPriorities; ++pbit) {
    // Required: last-priority-takes-references
    added = add(static_cast<uint8_t>(pbit));
  }
  return added;
}

}  // namespace hal

#endif
