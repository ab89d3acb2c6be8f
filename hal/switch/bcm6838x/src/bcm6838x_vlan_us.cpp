/// @file
/// The common upstream flow with its slot and action, the access port of a PVID, and the port-wide
/// switches of the modes that pass every VLAN.
#include "bcm6838x_vlan_us.h"

#include <cstring>

#include <bcm6838x_vlan.h>
#include <brmgr_cmd.h>
#include <hal_bcm6838x.h>
#include <platform_log.h>
#include <platform_vos.h>

#include "bcm6838x_igmp_internal.h"
#include "bcm6838x_qos_internal.h"
#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_log.h"

uint32_t g_dsVlanAction = BRMGR_INDEX_NONE;

namespace {

constexpr uint16_t kTpid = 0x8100;

IngressFlowRule MakeRule(const UsCall& call, const UsFlow& flow, uint32_t vlanActionIndex) {
  IngressFlowRule rule = {};
  rule.outerVid = flow.outerVid;
  rule.ingressPort = BCM6838X_StreamPortIndexUniToRdpa(call.port);
  rule.outerPbit = flow.outerPbit;
  rule.vlanNum = flow.vlanNum;
  rule.forward = BRMGR_FORWARD_PASS;
  // Required: upstream-flow-word-104
  rule.result104 = 1;
  rule.queue = flow.queue;
  rule.dir = BRMGR_DIR_UPSTREAM;
  rule.icIndex = flow.icIndex;
  rule.flowIndex = BRMGR_INDEX_NONE;
  rule.vlanActionIndex = vlanActionIndex;
  // Required: policer-word-is-uni-port
  rule.policer = g_portPolicerCfg[call.port - 1] != 0 ? call.port : BRMGR_INDEX_NONE;
  return rule;
}

void RecordFlow(const UsCall& call, const IngressFlowRule& rule) {
  IngressFlowEntry* free =
      FindSlot(call, [](const IngressFlowEntry& slot) { return !IsUsed(slot); });
  // Required: full-slots-unrecorded
  if (free != nullptr) {
    *free = rule;
  }
}

/// Calls `visit` with each multicast VLAN of a port that keeps them.
template <typename Visit>
void ForEachMcastVlan(const UsCall& call, Visit visit) {
  const McastUniPortInfo& info = g_mcastUniPortInfo[call.port - 1];
  if (info.mcastVlanMode != kMcastVlanKeep) {
    return;
  }
  for (const uint16_t vid : info.mcastVlan) {
    if (vid != kNoMcastVlan) {
      visit(vid);
    }
  }
}

}  // namespace

UsCall MakeUsCall(const char* name, uint32_t port) {
  // Required: builders-port-has-16-bits
  return {name, static_cast<uint16_t>(port), BCM6838X_OK};
}

void LogEntry(const UsCall& call) {
  HAL_LOG_AS(call.name, LOG_LEVEL_TRACE, "++++++%s,%d\r\n");
}

bool IsAccepted(UsCall& call) {
  if (call.port >= 1 && call.port <= kUniPorts) {
    return true;
  }
  HAL_LOG_AS(call.name, LOG_LEVEL_INVALID, "[%s %d] port %u is out of range\r\n", call.port);
  call.result = BCM6838X_FAILED;
  return false;
}

bool IsAccepted(UsCall& call, const void* list) {
  if (!IsAccepted(call)) {
    return false;
  }
  if (list == nullptr) {
    HAL_LOG_NULL_POINTER_AS(call.name);
    call.result = BCM6838X_INVALID;
    return false;
  }
  return true;
}

VlanActionRule MakeVlanAction(uint32_t cmd, uint32_t dir, uint32_t vid, uint32_t pbit) {
  const VlanTagSpec tag = {static_cast<uint16_t>(vid), static_cast<uint8_t>(pbit), 0, kTpid};
  return {cmd, {tag, {}}, dir, BRMGR_INDEX_NONE};
}

VlanActionRule UsVlanActionOf(uint32_t index) {
  return {0, {}, BRMGR_DIR_UPSTREAM, index};
}

bool CreateUsFlow(UsCall& call, const UsFlow& flow, const VlanActionRule& held) {
  IngressFlowRule rule = MakeRule(call, flow, held.vlanActionIndex);
  // Required: builders-return-last-result
  call.result = AsInt(SendCommand(BRMGR_CMD_FLOW_ADD, rule, BRMGR_FLAG_READ_BACK));
  if (call.result == BCM6838X_OK) {
    RecordFlow(call, rule);
    return true;
  }
  if (held.vlanActionIndex != BRMGR_INDEX_NONE) {
    BCM6838X_DelVlanAction(held);
  }
  HAL_LOG_AS(call.name, LOG_LEVEL_TRACE, "%s,%d, add us icIndex=%ld flowIndex=%ld error\r\n",
             AsLong(rule.icIndex), AsLong(rule.flowIndex));
  return false;
}

bool AddUsFlow(UsCall& call, const UsFlow& flow) {
  return CreateUsFlow(call, flow, UsVlanActionOf(BRMGR_INDEX_NONE));
}

bool AddUsFlow(UsCall& call, const UsFlow& flow, const VlanActionRule& action) {
  VlanActionRule held = action;
  // Required: flow-without-refused-action
  held.vlanActionIndex = static_cast<uint32_t>(BCM6838X_AddVlanAction(action, 1));
  return CreateUsFlow(call, flow, held);
}

bool DelUsFlow(UsCall& call, const IngressFlowEntry& slot) {
  IngressFlowDel record = {slot.dir, slot.icIndex, slot.flowIndex};
  call.result = AsInt(SendCommand(BRMGR_CMD_FLOW_DEL, record, BRMGR_FLAG_INPUT));
  if (call.result == BCM6838X_OK) {
    return true;
  }
  HAL_LOG_AS(call.name, LOG_LEVEL_TRACE, "%s,%d, del us icIndex=%ld flowIndex=%ld error\r\n",
             AsLong(slot.icIndex), AsLong(slot.flowIndex));
  return false;
}

void DelUsFlowAndAction(UsCall& call, const IngressFlowEntry& slot) {
  if (HasFlow(slot)) {
    // Required: refused-delete-gives-rest-back
    DelUsFlow(call, slot);
  }
  if (slot.vlanActionIndex != BRMGR_INDEX_NONE) {
    BCM6838X_DelVlanAction(UsVlanActionOf(slot.vlanActionIndex));
  }
}

uint32_t AddPvidFlow(UsCall& call, uint32_t pvid, uint32_t priority) {
  const auto pbit = static_cast<uint8_t>(priority);
  // Required: pvid-lan-vid-is-4096
  BCM6838X_AddWanVlan(call.port, pvid, kAnyVid);
  const VlanActionRule action =
      MakeVlanAction(kPushTagWithPriority, BRMGR_DIR_UPSTREAM, pvid, pbit);
  if (!AddUsFlow(call, UntaggedFlow(pbit), action)) {
    return BRMGR_INDEX_NONE;
  }
  return static_cast<uint32_t>(BCM6838X_AddDsIngressClass(pvid, 1, 1));
}

void DelPvidFlow(UsCall& call, const IngressFlowEntry& slot, uint32_t pvid) {
  DelUsFlowAndAction(call, slot);
  BCM6838X_DelDsIngressClass(pvid, 1);
  BCM6838X_DelWanVlan(call.port, pvid, kAnyVid);
}

const IngressFlowEntry* FindUntaggedSlot(const UsCall& call) {
  return FindSlot(call,
                  [](const IngressFlowEntry& each) { return IsUsed(each) && each.vlanNum == 0; });
}

void DelPvidFlowAndSlots(UsCall& call, uint32_t pvid) {
  // Required: pvid-without-slot-keeps-wan
  if (const IngressFlowEntry* slot = FindUntaggedSlot(call)) {
    DelPvidFlow(call, *slot, pvid);
  }
  ClearSlots(call);
}

void DetachPortAction(const UsCall& call, uint32_t vid, uint32_t vlanNum) {
  const auto flow = static_cast<uint32_t>(BCM6838X_GetDsIngressClass(vid, vlanNum));
  if (flow != BRMGR_INDEX_NONE) {
    BCM6838X_DelPortAction(call.port, flow, kDsClassVid);
  }
}

int32_t SetPortTransparent(const UsCall& call, bool transparent) {
  return VOS_System("bs /b/c port/index=lan%d transparent=%s", AsInt(LanIndex(call.port)),
                    transparent ? "yes" : "no");
}

void WithdrawMcastVlans(const UsCall& call) {
  ForEachMcastVlan(call, [&](uint32_t vid) {
    BCM6838X_DelWanVlan(call.port, vid, vid);
    BCM6838X_DelLanVlan(call.port, vid);
  });
}

void RestoreMcastVlans(const UsCall& call) {
  ForEachMcastVlan(call, [&](uint32_t vid) {
    BCM6838X_AddWanVlan(call.port, vid, vid);
    BCM6838X_AddLanVlan(call.port, vid);
  });
}

void ClearSlots(const UsCall& call) {
  memset(SlotsOf(call), 0, sizeof(SlotsOf(call)));
}
