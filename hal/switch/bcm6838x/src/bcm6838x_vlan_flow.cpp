/// @file
/// The shared downstream flows, counted by reference, and the table of the upstream flows of each
/// port. Which flows a port needs is the matter of its VLAN mode.
#include <cstdint>

#include <bcm6838x_vlan.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <platform_log.h>
#include <platform_vos.h>

#include "bcm6838x_vlan_internal.h"
#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_find.h"
#include "hal_bcm6838x_log.h"
#include "hal_bcm6838x_object.h"

using namespace hal;

IngressFlowEntry hal::g_dsIngressClass[kFlowsPerTable] = {};
IngressFlowEntry hal::g_usIngressClass[kUniPorts][kFlowsPerTable] = {};

namespace {

constexpr int32_t kNoFlow = -1;

/// What a shared flow is found by.
struct FlowKey {
  uint16_t vid;
  uint8_t vlanNum;
};

FlowKey KeyOf(uint32_t vid, uint32_t vlanNum) {
  return {static_cast<uint16_t>(vid), static_cast<uint8_t>(vlanNum)};
}

/// Downstream class of a key: 0 compares the tag count alone, 1 the VID too.
uint32_t ClassOf(const FlowKey& key) {
  return key.vid == kAnyVid ? 0 : 1;
}

bool HasKey(const IngressFlowEntry& entry, const FlowKey& key) {
  return entry.vlanNum == key.vlanNum && entry.outerVid == key.vid;
}

/// The entry of a key whose flow is in the device, or null.
IngressFlowEntry* FindInDevice(const FlowKey& key) {
  return FirstOf(g_dsIngressClass, [&](const IngressFlowEntry& entry) {
    return HasKey(entry, key) && entry.flowIndex != BRMGR_INDEX_NONE;
  });
}

/// Result words that performance mode adds to a downstream flow.
struct ResultWords {
  uint32_t word104;
  uint32_t word108;
};

constexpr ResultWords kNormalWords = {0, 0};
// Required: performance-flow-words
constexpr ResultWords kPerformanceWords = {1, 2};

IngressFlowRule MakeFlow(const FlowKey& key, const ResultWords& words) {
  IngressFlowRule flow = BeginFlow(BRMGR_DIR_DOWNSTREAM, ClassOf(key), BRMGR_FORWARD_PASS);
  // Required: any-vid-is-4096
  flow.outerVid = key.vid == kAnyVid ? 0 : key.vid;
  flow.vlanNum = key.vlanNum;
  flow.result104 = words.word104;
  flow.result108 = words.word108;
  return flow;
}

/// Keeps a created flow: its key, class and indexes, and of the results those that the table knows.
int32_t RecordFlow(const IngressFlowRule& flow, const FlowKey& key, uint16_t references) {
  IngressFlowEntry* entry = FirstOf(
      g_dsIngressClass, [](const IngressFlowEntry& candidate) { return candidate.outerVid == 0; });
  // Required: flow-table-full-unrecorded
  if (entry == nullptr) {
    return kNoFlow;
  }
  *entry = {};
  entry->ingressPort = flow.ingressPort;
  entry->outerVid = key.vid;  // 4096 stays 4096 here
  entry->vlanNum = flow.vlanNum;
  entry->result88 = flow.result88;
  entry->forward = flow.forward;
  entry->result104 = flow.result104;
  entry->dir = flow.dir;
  entry->icIndex = flow.icIndex;
  entry->flowIndex = flow.flowIndex;
  entry->vlanActionIndex = flow.vlanActionIndex;
  entry->policer = flow.policer;
  entry->refCount = references;
  return AsInt(flow.flowIndex);
}

/// The steps of both adds, which differ in the result words and in the name under which they log.
int32_t AddFlow(const char* function, const FlowKey& key, uint16_t references,
                const ResultWords& words) {
  HAL_LOG_AS(function, LOG_LEVEL_TRACE, "%s,%d, add ds ingress class vid %u  vlanNum %u\r\n",
             key.vid, key.vlanNum);
  IngressFlowEntry* pooled =
      FirstOf(g_dsIngressClass, [&](const IngressFlowEntry& entry) { return HasKey(entry, key); });
  if (pooled != nullptr) {
    pooled->refCount += references;
    HAL_LOG_AS(function, LOG_LEVEL_TRACE, "%s,%d, add IC num %d\r\n", AsInt(pooled->refCount));
    return AsInt(pooled->flowIndex);
  }
  IngressFlowRule flow = MakeFlow(key, words);
  if (Send<BRMGR_CMD_FLOW_ADD>(flow) != BCM6838X_OK) {
    HAL_LOG_AS(function, LOG_LEVEL_TRACE, "%s,%d, add ds icIndex=%ld flowIndex=%ld error\r\n",
               AsLong(flow.icIndex), AsLong(flow.flowIndex));
    return kNoFlow;
  }
  return RecordFlow(flow, key, references);
}

}  // namespace

int32_t BCM6838X_AddDsIngressClass(uint32_t vid, uint32_t vlanNum, uint32_t count) {
  return AddFlow(__func__, KeyOf(vid, vlanNum), static_cast<uint16_t>(count), kNormalWords);
}

int32_t BCM6838X_AddDsIngressClass_Perf(uint32_t vid, uint32_t vlanNum, uint32_t count) {
  return AddFlow(__func__, KeyOf(vid, vlanNum), static_cast<uint16_t>(count), kPerformanceWords);
}

uint32_t BCM6838X_DelDsIngressClass(uint32_t vid, uint32_t vlanNum) {
  const FlowKey key = KeyOf(vid, vlanNum);
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "%s,%d, del ds ingress class vid %u  vlanNum %u\r\n", key.vid,
               key.vlanNum);
  IngressFlowEntry* entry = FindInDevice(key);
  if (entry == nullptr) {
    return BCM6838X_OK;
  }
  // Required: flow-count-wraps
  --entry->refCount;
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "%s,%d, del IC num %d\r\n", AsInt(entry->refCount));
  if (entry->refCount != 0) {
    return BCM6838X_OK;
  }
  IngressFlowDel record = {BRMGR_DIR_DOWNSTREAM, ClassOf(key), entry->flowIndex};
  if (Send<BRMGR_CMD_FLOW_DEL>(record) != BCM6838X_OK) {
    HAL_LOG_HERE(LOG_LEVEL_TRACE, "%s,%d, delete ds icIndex=%ld flowIndex=%ld error\r\n",
                 AsLong(ClassOf(key)), AsLong(entry->flowIndex));
  }
  // Required: flow-refused-delete-forgotten
  *entry = {};
  return BCM6838X_OK;
}

int32_t BCM6838X_GetDsIngressClass(uint32_t vid, uint32_t vlanNum) {
  const FlowKey key = KeyOf(vid, vlanNum);
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "%s,%d, get ds ingress class vid %u  vlanNum %u\r\n", key.vid,
               key.vlanNum);
  const IngressFlowEntry* entry = FindInDevice(key);
  return entry == nullptr ? kNoFlow : AsInt(entry->flowIndex);
}

uint32_t BCM6838X_AddPortAction(uint32_t port, uint32_t flowIndex, uint32_t icIndex,
                                uint32_t vlanActionIndex) {
  const auto uni = static_cast<uint16_t>(port);
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "%s,%d, add port action port %u icIndex=%ld flowIndex=%ld\r\n", uni,
               AsLong(icIndex), AsLong(flowIndex));
  VOS_System(
      "bs /b/c ingress_class/dir=ds,index=%ld port_action[{flow=%ld,port=lan%u}]="
      "{{vlan_action={vlan_action/dir=ds,index=%ld},drop=no}}",
      AsLong(icIndex), AsLong(flowIndex), LanIndex(uni), AsLong(vlanActionIndex));
  return BCM6838X_OK;
}

uint32_t BCM6838X_DelPortAction(uint32_t port, uint32_t flowIndex, uint32_t icIndex) {
  const auto uni = static_cast<uint16_t>(port);
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "%s,%d, del port action port %u icIndex=%ld flowIndex=%ld\r\n", uni,
               AsLong(icIndex), AsLong(flowIndex));
  VOS_System(
      "bs /b/c ingress_class/dir=ds,index=%ld port_action[{flow=%ld,port=lan%u}]="
      "{{vlan_action=null,drop=no}}",
      AsLong(icIndex), AsLong(flowIndex), LanIndex(uni));
  return BCM6838X_OK;
}
