/// @file
/// The multicast VLANs of the ports: their places, the treatment of their tags, and the translation
/// rules, with the VLAN objects and VLAN actions that these need.
#include <cstdint>
#include <cstdio>

#include <bcm6838x_igmp.h>
#include <bcm6838x_vlan.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <platform_log.h>

#include "bcm6838x_igmp_internal.h"
#include "bcm6838x_vlan_mcast.h"
#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_find.h"
#include "hal_bcm6838x_log.h"
#include "hal_bcm6838x_object.h"
#include "hal_bcm6838x_ports.h"

using namespace hal;

namespace {

/// The settings of a port; without them a log line under the operation's name, and null.
McastUniPortInfo* FindPortOrLog(const char* function, uint32_t uni) {
  McastUniPortInfo* info = FindMcastPort(uni);
  if (info == nullptr) {
    HAL_LOG_AS(function, LOG_LEVEL_INVALID, "[%s %d] port %u is out of range\r\n", uni);
  }
  return info;
}

/// The first place that holds `vid`, or null; kNoMcastVlan finds an empty place.
uint16_t* FindPlace(McastUniPortInfo& info, uint16_t vid) {
  return FirstOf(info.mcastVlan, [vid](uint16_t place) { return place == vid; });
}

/// What the operations on translation rules are called with.
struct TransCall {
  uint32_t uni;
  uint16_t mvlan;
  uint16_t iptvVlan;
};

/// Takes the bits that count, and logs them under the operation's name.
TransCall ReadAndLogTrans(const char* function, uint32_t port, uint32_t mvlan, uint32_t iptvVlan) {
  const TransCall call = {UniPort(port), static_cast<uint16_t>(mvlan),
                          static_cast<uint16_t>(iptvVlan)};
  HAL_LOG_AS(function, LOG_LEVEL_TRACE, "###### %s,%d, port=%d mvlan=%lu, iptvVlan=%lu\r\n",
             AsInt(call.uni), AsUnsignedLong(call.mvlan), AsUnsignedLong(call.iptvVlan));
  return call;
}

McastVlanTrans* FindFreeRule(McastUniPortInfo& info) {
  return FirstOf(info.mcastVlanTrans,
                 [](const McastVlanTrans& rule) { return rule.mvlan == kNoMcastVlan; });
}

/// Whether the multicast VLANs of a port are members of its VLAN objects.
bool IsInVlanObjects(uint32_t uni, const McastUniPortInfo& info) {
  return info.mcastVlanMode == kMcastVlanKeep && !CarriesEveryVlan(uni);
}

void AddToVlanObjects(uint32_t uni, uint16_t vid) {
  BCM6838X_AddWanVlan(uni, vid, vid);
  BCM6838X_AddLanVlan(uni, vid);
}

void RemoveFromVlanObjects(uint32_t uni, uint16_t vid) {
  BCM6838X_DelWanVlan(uni, vid, vid);
  BCM6838X_DelLanVlan(uni, vid);
}

/// Does something for every multicast VLAN of a port.
void ForEachVlan(uint32_t uni, const McastUniPortInfo& info, void (*change)(uint32_t, uint16_t)) {
  for (const uint16_t vid : info.mcastVlan) {
    if (vid != kNoMcastVlan) {
      change(uni, vid);
    }
  }
}

/// The same for a port that keeps their tags.
void ForEachKeptVlan(uint32_t uni, void (*change)(uint32_t, uint16_t)) {
  const McastUniPortInfo& info = g_mcastUniPortInfo[uni - 1];
  if (info.mcastVlanMode == kMcastVlanKeep) {
    ForEachVlan(uni, info, change);
  }
}

/// Creates a downstream VLAN action outside the pool. `index` is what the record then holds, none
/// when the driver refused.
// Required: mcast-actions-without-tpid
uint32_t CreateAction(uint32_t cmd, uint16_t vid, uint32_t& index) {
  VlanActionRule record = BeginAction(BRMGR_DIR_DOWNSTREAM, cmd);
  record.tag[0].vid = vid;
  const uint32_t result = Send<BRMGR_CMD_VLAN_ACTION_ADD>(record);
  index = record.vlanActionIndex;
  return result;
}

/// Deletes a VLAN action, whatever the driver answers, and forgets its index.
void DeleteAction(uint32_t& index) {
  VlanActionDel record = {BRMGR_DIR_DOWNSTREAM, index};
  Send<BRMGR_CMD_VLAN_ACTION_DEL>(record);
  index = BRMGR_INDEX_NONE;
}

void LeaveMode(uint32_t uni, McastUniPortInfo& info) {
  if (info.mcastVlanMode == kMcastVlanStrip) {
    // Required: mcast-leaving-strip-always-deletes
    DeleteAction(info.stripActionIndex);
  }
  if (IsInVlanObjects(uni, info)) {
    ForEachVlan(uni, info, RemoveFromVlanObjects);
  }
}

/// Done also when the port was in the mode already.
// Required: strip-mode-again-adds-action
uint32_t EnterMode(uint32_t uni, McastUniPortInfo& info) {
  if (info.mcastVlanMode == kMcastVlanStrip) {
    uint32_t index = BRMGR_INDEX_NONE;
    if (CreateAction(BRMGR_TAG_POP, 0, index) != BCM6838X_OK) {
      HAL_LOG(LOG_LEVEL_TRACE, "Create vlan action error\r\n");
      return BCM6838X_FAILED;
    }
    info.stripActionIndex = index;
  }
  if (IsInVlanObjects(uni, info)) {
    ForEachVlan(uni, info, AddToVlanObjects);
  }
  return BCM6838X_OK;
}

}  // namespace

void hal::WithdrawMcastVlans(uint32_t uni) {
  ForEachKeptVlan(uni, RemoveFromVlanObjects);
}

void hal::RestoreMcastVlans(uint32_t uni) {
  ForEachKeptVlan(uni, AddToVlanObjects);
}

uint32_t BCM6838X_AddIgmpVlan(uint32_t port, uint32_t vid) {
  const uint32_t uni = UniPort(port);
  const auto mcastVlan = static_cast<uint16_t>(vid);
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "###### %s,%d, add igmp vlan  %u  vid=%lu\r\n", uni,
               AsUnsignedLong(mcastVlan));
  McastUniPortInfo* info = FindPortOrLog(__func__, uni);
  if (info == nullptr) {
    return BCM6838X_FAILED;
  }
  // Required: mcast-vlan-twice-takes-two-places
  uint16_t* place = FindPlace(*info, kNoMcastVlan);
  // Required: mcast-ninth-vlan-silent
  if (place == nullptr) {
    return BCM6838X_OK;
  }
  *place = mcastVlan;
  if (IsInVlanObjects(uni, *info)) {
    AddToVlanObjects(uni, mcastVlan);
  }
  return BCM6838X_OK;
}

uint32_t BCM6838X_DelIgmpVlan(uint32_t port, uint32_t vid) {
  const uint32_t uni = UniPort(port);
  const auto mcastVlan = static_cast<uint16_t>(vid);
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "###### %s,%d, del igmp vlan  %u  vid=%lu\r\n", uni,
               AsUnsignedLong(mcastVlan));
  McastUniPortInfo* info = FindPortOrLog(__func__, uni);
  if (info == nullptr) {
    return BCM6838X_FAILED;
  }
  uint16_t* place = mcastVlan == kNoMcastVlan ? nullptr : FindPlace(*info, mcastVlan);
  if (place == nullptr) {
    printf("%s(%d) no igmp vlan=%d in the port=%d\r\n", __func__, __LINE__, mcastVlan, AsInt(uni));
    return BCM6838X_OK;
  }
  if (IsInVlanObjects(uni, *info)) {
    RemoveFromVlanObjects(uni, mcastVlan);
  }
  *place = kNoMcastVlan;
  return BCM6838X_OK;
}

uint32_t BCM6838X_SetMulticastVlanMode(uint32_t port, uint32_t mode) {
  const uint32_t uni = UniPort(port);
  const auto newMode = static_cast<uint16_t>(mode);
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "###### %s,%d, set igmp vlan mode  %u  vlanMode=%lu\r\n", uni,
               AsUnsignedLong(newMode));
  McastUniPortInfo* info = FindPortOrLog(__func__, uni);
  if (info == nullptr) {
    return BCM6838X_FAILED;
  }
  if (info->mcastVlanMode != newMode) {
    LeaveMode(uni, *info);
  }
  info->mcastVlanMode = newMode;
  return EnterMode(uni, *info);
}

uint32_t BCM6838X_AddMulticastVlanTrans(uint32_t port, uint32_t mvlan, uint32_t iptvVlan) {
  const TransCall call = ReadAndLogTrans(__func__, port, mvlan, iptvVlan);
  McastUniPortInfo* info = FindPortOrLog(__func__, call.uni);
  if (info == nullptr) {
    return BCM6838X_FAILED;
  }
  McastVlanTrans* rule = FindFreeRule(*info);
  if (rule == nullptr) {
    printf("%s(%d) add igmp vlan translation rule more than %d for the port %d\r\n", __func__,
           __LINE__, static_cast<int>(kMcastVlansPerPort), AsInt(call.uni));
    return BCM6838X_OK;
  }
  rule->mvlan = call.mvlan;
  rule->iptvVlan = call.iptvVlan;
  BCM6838X_AddWanVlan(call.uni, call.mvlan, call.iptvVlan);
  BCM6838X_AddLanVlan(call.uni, call.iptvVlan);
  // Required: mcast-rule-kept-without-action
  CreateAction(BRMGR_TAG_REPLACE_VID, call.iptvVlan, rule->vlanActionIndex);
  return BCM6838X_OK;
}

uint32_t BCM6838X_DelMulticastVlanTrans(uint32_t port, uint32_t mvlan, uint32_t iptvVlan) {
  const TransCall call = ReadAndLogTrans(__func__, port, mvlan, iptvVlan);
  McastUniPortInfo* info = FindPortOrLog(__func__, call.uni);
  if (info == nullptr) {
    return BCM6838X_FAILED;
  }
  // Required: mcast-rule-found-by-mvlan
  McastVlanTrans* rule = FindMcastRule(*info, call.mvlan);
  if (rule == nullptr) {
    printf("%s(%d) igmp vlan translation rule(port=%d, %d->%d) not appear\r\n", __func__, __LINE__,
           AsInt(call.uni), call.mvlan, call.iptvVlan);
    return BCM6838X_OK;
  }
  rule->mvlan = kNoMcastVlan;
  rule->iptvVlan = kNoMcastVlan;
  BCM6838X_DelWanVlan(call.uni, call.mvlan, call.iptvVlan);
  BCM6838X_DelLanVlan(call.uni, call.iptvVlan);
  if (rule->vlanActionIndex != BRMGR_INDEX_NONE) {
    DeleteAction(rule->vlanActionIndex);
  }
  return BCM6838X_OK;
}
