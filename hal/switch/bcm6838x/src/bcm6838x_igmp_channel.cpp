/// @file
/// The channel table: which multicast groups are forwarded to which ports, one slot and one entry
/// of the driver for each group and port.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include <bcm6838x_igmp.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <platform_log.h>

#include "bcm6838x_igmp_internal.h"
#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_find.h"
#include "hal_bcm6838x_log.h"
#include "hal_bcm6838x_ports.h"

using namespace hal;

namespace {

constexpr uint16_t kNoSlot = 0xFFFF;

/// What the log lines show in place of a slot when there is none.
constexpr uint32_t kNoSlotShown = 0xFFFFFFFF;

constexpr uint8_t kNoIpv4[sizeof(McastChannelInfo::ipv4)] = {};

// Macros, so that the compiler holds the arguments against each whole format.
#define LOG_CHANNEL(verb, entry, slot, result)                                                    \
  HAL_LOG(LOG_LEVEL_TRACE,                                                                        \
          verb                                                                                    \
          " IPTV group[%u.%u.%u.%u] Port[%d] vlanActionIndex %ld channelIndex %u  slot "          \
          "%u ret=%lu\r\n",                                                                       \
          (entry).groupIpv4[0], (entry).groupIpv4[1], (entry).groupIpv4[2], (entry).groupIpv4[3], \
          AsInt((entry).port), AsLong((entry).vlanActionIndex), (entry).channelIndex, slot,       \
          AsUnsignedLong(result))

void LogAdd(const McastGroupEntry& entry, uint32_t slot, uint32_t result) {
  LOG_CHANNEL("Add", entry, slot, result);
}

void LogDel(const McastGroupEntry& entry, uint32_t slot) {
  LOG_CHANNEL("del", entry, slot, static_cast<uint32_t>(BCM6838X_OK));
}

#undef LOG_CHANNEL

McastGroupEntry MakeEntry(const McastGroupRequest& request) {
  McastGroupEntry entry = {};
  entry.vlanActionIndex = BRMGR_INDEX_NONE;
  entry.channelIndex = BRMGR_INDEX_NONE;
  entry.portMask = request.portMask;
  entry.vlan = request.vlan;
  memcpy(entry.groupMac, request.groupMac, sizeof(entry.groupMac));
  memcpy(entry.groupIpv4, request.groupIpv4, sizeof(entry.groupIpv4));
  memcpy(entry.groupIpv6, request.groupIpv6, sizeof(entry.groupIpv6));
  return entry;
}

bool IsInMask(const McastGroupRequest& request, uint32_t uni) {
  return ((request.portMask >> (uni - 1)) & 1U) != 0;
}

uint16_t FindSlot(const McastGroupRequest& request, uint32_t uni) {
  return BCM6838X_FindTargetMcastChanSlot(request.groupIpv4, request.groupIpv6, uni);
}

/// The slot of a channel; none for null.
uint16_t SlotOf(const McastChannelInfo* channel) {
  return channel == nullptr ? kNoSlot : static_cast<uint16_t>(channel - g_mcastChannelInfo);
}

/// Directs the entry to a port, with the VLAN action that the port's multicast frames need.
// Required: group-modify-inherits-action
void DirectTo(uint32_t uni, const McastGroupRequest& request, McastGroupEntry& entry) {
  McastUniPortInfo& info = g_mcastUniPortInfo[uni - 1];
  entry.port = uni;
  if (info.mcastVlanMode != kMcastVlanTranslate) {
    entry.vlanActionIndex = info.stripActionIndex;
  } else if (const McastVlanTrans* rule = FindMcastRule(info, request.vlan)) {
    entry.vlanActionIndex = rule->vlanActionIndex;
  }
}

void FillSlot(uint16_t slot, const McastGroupRequest& request, const McastGroupEntry& entry) {
  McastChannelInfo& channel = g_mcastChannelInfo[slot];
  memcpy(channel.ipv4, request.groupIpv4, sizeof(channel.ipv4));
  memcpy(channel.ipv6, request.groupIpv6, sizeof(channel.ipv6));
  channel.port = static_cast<uint16_t>(entry.port);
  channel.inUse = 1;
  channel.channelIndex = entry.channelIndex;
}

/// Creates the group on the entry's port and keeps it in a slot, also when the driver refused. The
/// entry then has the index that the slot has: the one that the driver returned, or none.
uint32_t CreateInSlot(uint16_t slot, const McastGroupRequest& request, McastGroupEntry& entry) {
  McastGroupEntry record = entry;
  const uint32_t result = Send<BRMGR_CMD_MCAST_ADD>(record);
  entry.channelIndex = result == BCM6838X_OK ? record.channelIndex : BRMGR_INDEX_NONE;
  // Required: refused-group-takes-slot
  FillSlot(slot, request, entry);
  return result;
}

/// Removes the group from a port that has it in a slot.
void RemoveFrom(uint32_t uni, uint16_t slot, const McastGroupRequest& request,
                McastGroupEntry& entry) {
  DirectTo(uni, request, entry);
  // Required: group-modify-keeps-deleted-index
  entry.channelIndex = g_mcastChannelInfo[slot].channelIndex;
  McastGroupEntry record = entry;
  Send<BRMGR_CMD_MCAST_DEL>(record);
  // Required: group-refused-delete-frees-slot
  g_mcastChannelInfo[slot] = {};
  LogDel(entry, slot);
}

/// Adds the group to a port when there is a free slot; then `result` is the command's.
void AddIfRoom(uint32_t uni, const McastGroupRequest& request, McastGroupEntry& entry,
               uint32_t& result) {
  const uint16_t slot = BCM6838X_FindUnuseMcastChanSlot();
  if (slot == kNoSlot) {
    return;
  }
  DirectTo(uni, request, entry);
  McastGroupEntry created = entry;
  result = CreateInSlot(slot, request, created);
  LogAdd(created, slot, result);
}

/// The first Ethernet port of the mask, or 0.
uint32_t FirstPortOf(const McastGroupRequest& request) {
  for (const uint32_t uni : EthPortsInTables()) {
    // Required: group-add-takes-first-port
    if (IsInMask(request, uni)) {
      return uni;
    }
  }
  return 0;
}

}  // namespace

uint16_t BCM6838X_FindUnuseMcastChanSlot(void) {
  return SlotOf(FirstOf(g_mcastChannelInfo,
                        [](const McastChannelInfo& channel) { return channel.inUse == 0; }));
}

uint16_t BCM6838X_FindTargetMcastChanSlot(const uint8_t* ipv4, const uint8_t* ipv6, uint32_t port) {
  if (IsAnyNull(ipv4, ipv6)) {
    return kNoSlot;
  }
  const uint32_t uni = UniPort(port);
  // A search for each family, since one that asks for the family at each slot is slower.
  // Required: group-compares-one-family, group-search-ignores-in-use
  if (memcmp(ipv4, kNoIpv4, sizeof(kNoIpv4)) == 0) {
    return SlotOf(FirstOf(g_mcastChannelInfo, [uni, ipv6](const McastChannelInfo& channel) {
      return channel.port == uni && memcmp(channel.ipv6, ipv6, sizeof(channel.ipv6)) == 0;
    }));
  }
  return SlotOf(FirstOf(g_mcastChannelInfo, [uni, ipv4](const McastChannelInfo& channel) {
    return channel.port == uni && memcmp(channel.ipv4, ipv4, sizeof(channel.ipv4)) == 0;
  }));
}

uint32_t BCM6838X_AddMulticastMacAddr(const McastGroupRequest* request) {
  if (request == nullptr) {
    return BCM6838X_INVALID;
  }
  McastGroupEntry entry = MakeEntry(*request);
  // Required: group-add-twice-takes-two-slots
  const uint16_t slot = BCM6838X_FindUnuseMcastChanSlot();
  const uint32_t uni = FirstPortOf(*request);
  if (slot == kNoSlot || uni == 0) {
    LogAdd(entry, kNoSlotShown, BCM6838X_OK);
    return BCM6838X_OK;
  }
  DirectTo(uni, *request, entry);
  const uint32_t result = CreateInSlot(slot, *request, entry);
  if (result != BCM6838X_OK) {
    // Required: group-modify-silent-on-console
    printf("%s(%d) create igmp entry failed for port=%d \r\n", __func__, __LINE__, AsInt(uni));
  }
  LogAdd(entry, slot, result);
  return result;
}

uint32_t BCM6838X_ModifyMulticastMacAddr(const McastGroupRequest* request) {
  if (request == nullptr) {
    return BCM6838X_INVALID;
  }
  uint32_t result = BCM6838X_OK;
  // One record serves the whole walk.
  McastGroupEntry entry = MakeEntry(*request);
  for (const uint32_t uni : EthPortsInTables()) {
    const uint16_t slot = FindSlot(*request, uni);
    const bool wanted = IsInMask(*request, uni);
    if (!wanted && slot != kNoSlot) {
      RemoveFrom(uni, slot, *request, entry);
    }
    if (wanted && slot == kNoSlot) {
      AddIfRoom(uni, *request, entry, result);
    }
  }
  HAL_LOG(LOG_LEVEL_TRACE, "Modify IPTV group[%u.%u.%u.%u] PortMask[%d] ret=%lu\r\n",
          request->groupIpv4[0], request->groupIpv4[1], request->groupIpv4[2],
          request->groupIpv4[3], AsInt(request->portMask), AsUnsignedLong(result));
  return result;
}

uint32_t BCM6838X_DelMulticastMacAddr(const McastGroupRequest* request) {
  if (request == nullptr) {
    return BCM6838X_INVALID;
  }
  McastGroupEntry entry = MakeEntry(*request);
  for (const uint32_t uni : EthPortsInTables()) {
    const uint16_t slot = IsInMask(*request, uni) ? FindSlot(*request, uni) : kNoSlot;
    if (slot != kNoSlot) {
      RemoveFrom(uni, slot, *request, entry);
      return BCM6838X_OK;
    }
  }
  LogDel(entry, kNoSlotShown);
  return BCM6838X_OK;
}
