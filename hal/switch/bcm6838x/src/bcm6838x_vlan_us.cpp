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

#include "bcm6838x_qos_internal.h"
#include "bcm6838x_vlan_mcast.h"
#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_log.h"
#include "hal_bcm6838x_object.h"
#include "hal_bcm6838x_ports.h"

using namespace hal;

uint32_t hal::g_dsVlanAction = BRMGR_INDEX_NONE;

namespace {

IngressFlowRule MakeRule(const UsCall& call, const UsFlow& flow, uint32_t vlanActionIndex) {
  IngressFlowRule rule = BeginFlow(BRMGR_DIR_UPSTREAM, flow.icIndex, BRMGR_FORWARD_PASS);
  rule.outerVid = flow.outerVid;
  rule.ingressPort = BCM6838X_StreamPortIndexUniToRdpa(call.port);
  rule.outerPbit = flow.outerPbit;
  rule.vlanNum = flow.vlanNum;
  // Required: upstream-flow-word-104
  rule.result104 = 1;
  rule.queue = flow.queue;
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

/// Lets every VLAN through a port, or ends that; returns the shell's result.
int32_t SetPortTransparent(const UsCall& call, bool transparent) {
  return VOS_System("bs /b/c port/index=lan%d transparent=%s", AsInt(LanIndex(call.port)),
                    transparent ? "yes" : "no");
}

/// A call whose port is checked, with a log line when there is none.
UsCall MakeUsCall(const char* name, uint32_t port) {
  // Required: builders-port-has-16-bits
  UsCall call = {name, static_cast<uint16_t>(port), true, BCM6838X_OK};
  if (!IsInTables(call.port)) {
    HAL_LOG_AS(name, LOG_LEVEL_INVALID, "[%s %d] port %u is out of range\r\n", call.port);
    call.isAccepted = false;
    call.result = BCM6838X_FAILED;
  }
  return call;
}

void LogEntry(const char* name) {
  HAL_LOG_AS(name, LOG_LEVEL_TRACE, "++++++%s,%d\r\n");
}

}  // namespace

UsCall hal::BeginCall(const char* name, uint32_t port) {
  LogEntry(name);
  return MakeUsCall(name, port);
}

UsCall hal::BeginCall(const char* name, uint32_t port, const void* list) {
  UsCall call = BeginCall(name, port);
  if (call.isAccepted && HAL_IS_NULL_AS(name, list)) {
    call.isAccepted = false;
    call.result = BCM6838X_INVALID;
  }
  return call;
}

UsCall hal::BeginOpeningCall(const char* name, uint32_t port) {
  UsCall call = MakeUsCall(name, port);
  if (call.isAccepted) {
    OpenPort(call);
    // Required: zte-stacking-logs-entry-late
    LogEntry(name);
  }
  return call;
}

UsCall hal::BeginClosingCall(const char* name, uint32_t port) {
  UsCall call = MakeUsCall(name, port);
  if (call.isAccepted) {
    ClosePort(call);
    // Required: zte-stacking-logs-entry-late
    LogEntry(name);
  }
  return call;
}

VlanActionRule hal::MakeVlanAction(uint32_t cmd, uint32_t dir, uint32_t vid, uint32_t pbit) {
  VlanActionRule rule = BeginAction(dir, cmd);
  rule.tag[0] = {static_cast<uint16_t>(vid), static_cast<uint8_t>(pbit), 0, kTpid};
  return rule;
}

VlanActionRule hal::UsVlanActionOf(uint32_t index) {
  return {0, {}, BRMGR_DIR_UPSTREAM, index};
}

bool hal::CreateUsFlow(UsCall& call, const UsFlow& flow, const VlanActionRule& held) {
  IngressFlowRule rule = MakeRule(call, flow, held.vlanActionIndex);
  // Required: builders-return-last-result
  call.result = AsInt(Send<BRMGR_CMD_FLOW_ADD>(rule));
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

bool hal::AddUsFlow(UsCall& call, const UsFlow& flow) {
  return CreateUsFlow(call, flow, UsVlanActionOf(BRMGR_INDEX_NONE));
}

bool hal::AddUsFlow(UsCall& call, const UsFlow& flow, const VlanActionRule& action) {
  VlanActionRule held = action;
  // Required: flow-without-refused-action
  held.vlanActionIndex = static_cast<uint32_t>(BCM6838X_AddVlanAction(action, 1));
  return CreateUsFlow(call, flow, held);
}

bool hal::DelUsFlow(UsCall& call, const IngressFlowEntry& slot) {
  IngressFlowDel record = {slot.dir, slot.icIndex, slot.flowIndex};
  call.result = AsInt(Send<BRMGR_CMD_FLOW_DEL>(record));
  if (call.result == BCM6838X_OK) {
    return true;
  }
  HAL_LOG_AS(call.name, LOG_LEVEL_TRACE, "%s,%d, del us icIndex=%ld flowIndex=%ld error\r\n",
             AsLong(slot.icIndex), AsLong(slot.flowIndex));
  return false;
}

void hal::DelUsFlowAndAction(UsCall& call, const IngressFlowEntry& slot) {
  if (HasFlow(slot)) {
    // Required: refused-delete-gives-rest-back
    DelUsFlow(call, slot);
  }
  if (slot.vlanActionIndex != BRMGR_INDEX_NONE) {
    BCM6838X_DelVlanAction(UsVlanActionOf(slot.vlanActionIndex));
  }
}

uint32_t hal::AddPvidFlow(UsCall& call, uint32_t pvid, uint32_t priority) {
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

void hal::DelPvidFlow(UsCall& call, const IngressFlowEntry& slot, uint32_t pvid) {
  DelUsFlowAndAction(call, slot);
  BCM6838X_DelDsIngressClass(pvid, 1);
  BCM6838X_DelWanVlan(call.port, pvid, kAnyVid);
}

const IngressFlowEntry* hal::FindUntaggedSlot(const UsCall& call) {
  return FindSlot(call,
                  [](const IngressFlowEntry& each) { return IsUsed(each) && each.vlanNum == 0; });
}

void hal::DelPvidFlowAndSlots(UsCall& call, uint32_t pvid) {
  // Required: pvid-without-slot-keeps-wan
  if (const IngressFlowEntry* slot = FindUntaggedSlot(call)) {
    DelPvidFlow(call, *slot, pvid);
  }
  ClearSlots(call);
}

void hal::DetachPortAction(const UsCall& call, uint32_t vid, uint32_t vlanNum) {
  const auto flow = static_cast<uint32_t>(BCM6838X_GetDsIngressClass(vid, vlanNum));
  if (flow != BRMGR_INDEX_NONE) {
    BCM6838X_DelPortAction(call.port, flow, kDsClassVid);
  }
}

void hal::OpenPort(const UsCall& call) {
  SetPortTransparent(call, true);
  // Required: open-port-withdraws-mcast
  WithdrawMcastVlans(call.port);
}

void hal::ClosePort(UsCall& call) {
  // Required: transparent-delete-returns-shell-result
  call.result = SetPortTransparent(call, false);
  RestoreMcastVlans(call.port);
}

void hal::ClearSlots(const UsCall& call) {
  memset(SlotsOf(call), 0, sizeof(SlotsOf(call)));
}
