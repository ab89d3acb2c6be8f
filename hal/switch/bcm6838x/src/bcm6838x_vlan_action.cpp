/// @file
/// The pool of VLAN actions: shared by content, counted by reference. Actions that are not shared
/// (the downstream default, multicast, QoS) are not in it.
#include <cstdint>

#include <bcm6838x_vlan.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <platform_log.h>

#include "bcm6838x_vlan_internal.h"
#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_find.h"
#include "hal_bcm6838x_log.h"

using namespace hal;

VlanActionEntry hal::g_vlanAction[kVlanActions] = {};

namespace {

constexpr int32_t kNoAction = -1;

/// An action without a TPID is not pooled; in the table it marks a free slot.
bool HasTpid(const VlanActionRule& rule) {
  return rule.tag[0].tpid != 0 || rule.tag[1].tpid != 0;
}

bool SameTag(const VlanTagSpec& a, const VlanTagSpec& b) {
  return a.vid == b.vid && a.pbit == b.pbit && a.tpid == b.tpid;
}

bool SameContent(const VlanActionRule& a, const VlanActionRule& b) {
  return a.cmd == b.cmd && a.dir == b.dir && SameTag(a.tag[0], b.tag[0]) &&
         SameTag(a.tag[1], b.tag[1]);
}

VlanActionEntry* FindContent(const VlanActionRule& rule) {
  return FirstOf(g_vlanAction,
                 [&](const VlanActionEntry& entry) { return SameContent(entry.rule, rule); });
}

VlanActionEntry* FindFree() {
  return FirstOf(g_vlanAction, [](const VlanActionEntry& entry) { return !HasTpid(entry.rule); });
}

VlanTagSpec KeyOf(const VlanTagSpec& tag) {
  return {tag.vid, tag.pbit, 0, tag.tpid};
}

/// The rule's content with reserved bytes zero and no index yet.
VlanActionRule KeyOf(const VlanActionRule& rule) {
  return {rule.cmd, {KeyOf(rule.tag[0]), KeyOf(rule.tag[1])}, rule.dir, BRMGR_INDEX_NONE};
}

void DeleteFromDevice(VlanActionEntry& entry, const char* function) {
  VlanActionDel record = {};
  record.dir = entry.rule.dir;
  record.vlanActionIndex = entry.rule.vlanActionIndex;
  if (Send<BRMGR_CMD_VLAN_ACTION_DEL>(record) == BCM6838X_OK) {
    entry = {};
    return;
  }
  // Required: action-refused-delete-stays
  HAL_LOG_AS(function, LOG_LEVEL_TRACE, "[%s %d] delete %s vlanAction %d error\r\n",
             DirectionName(entry.rule.dir), AsInt(entry.rule.vlanActionIndex));
}

}  // namespace

int32_t BCM6838X_AddVlanAction(VlanActionRule rule, uint32_t count) {
  const auto references = static_cast<uint16_t>(count);
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "%s,%d, add vlan action cmd %u vid[0]=%lu vid[1]=%lu  dir=%s\r\n",
               rule.cmd, AsUnsignedLong(rule.tag[0].vid), AsUnsignedLong(rule.tag[1].vid),
               DirectionName(rule.dir));
  // Required: action-needs-tpid
  if (!HasTpid(rule)) {
    HAL_LOG_HERE(LOG_LEVEL_TRACE, "[%s %d] tpid is 0\r\n");
    return kNoAction;
  }
  if (VlanActionEntry* pooled = FindContent(rule)) {
    pooled->refCount += references;
    HAL_LOG_HERE(LOG_LEVEL_TRACE, "%s,%d, add vlan action num %d\r\n", AsInt(pooled->refCount));
    return AsInt(pooled->rule.vlanActionIndex);
  }
  VlanActionEntry* free = FindFree();
  // Required: action-pool-full-silent
  if (free == nullptr) {
    return kNoAction;
  }
  VlanActionRule record = KeyOf(rule);
  if (Send<BRMGR_CMD_VLAN_ACTION_ADD>(record) != BCM6838X_OK) {
    HAL_LOG(LOG_LEVEL_TRACE, "Create vlan action error\r\n");
    return kNoAction;
  }
  free->rule = KeyOf(rule);
  free->rule.vlanActionIndex = record.vlanActionIndex;
  free->refCount = references;
  return AsInt(record.vlanActionIndex);
}

int32_t BCM6838X_GetVlanAction(VlanActionRule rule) {
  if (!HasTpid(rule)) {
    HAL_LOG_HERE(LOG_LEVEL_TRACE, "[%s %d] tpid is 0\r\n");
    return kNoAction;
  }
  const VlanActionEntry* pooled = FindContent(rule);
  return pooled == nullptr ? kNoAction : AsInt(pooled->rule.vlanActionIndex);
}

uint32_t BCM6838X_DelVlanAction(VlanActionRule rule) {
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "%s,%d, del vlan action cmd %u vid[0]=%lu vid[1]=%lu  dir=%s\r\n",
               rule.cmd, AsUnsignedLong(rule.tag[0].vid), AsUnsignedLong(rule.tag[1].vid),
               DirectionName(rule.dir));
  VlanActionEntry* entry = FirstOf(g_vlanAction, [&](const VlanActionEntry& candidate) {
    // Required: action-free-slot-hides-index-0
    return candidate.rule.dir == rule.dir && candidate.rule.vlanActionIndex == rule.vlanActionIndex;
  });
  if (entry == nullptr) {
    return BCM6838X_OK;
  }
  // The entry may be a free slot.
  // Required: action-count-wraps
  --entry->refCount;
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "%s,%d, del vlan action num %d\r\n", AsInt(entry->refCount));
  if (HasTpid(entry->rule) && entry->refCount == 0 &&
      entry->rule.vlanActionIndex != BRMGR_INDEX_NONE) {
    DeleteFromDevice(*entry, __func__);
  }
  return BCM6838X_OK;
}
