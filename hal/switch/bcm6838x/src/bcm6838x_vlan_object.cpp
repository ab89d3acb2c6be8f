/// @file
/// WAN and LAN VLAN objects of the data path: two tables of what exists, and the shell lines that
/// make, toggle and remove the objects.
#include <cstdint>

#include <bcm6838x_vlan.h>
#include <platform_log.h>
#include <platform_vos.h>

#include "bcm6838x_vlan_internal.h"
#include "hal_bcm6838x_find.h"
#include "hal_bcm6838x_log.h"

using namespace hal;

WanVlanEntry hal::g_wanVlan[kWanVlans] = {};
LanVlanEntry hal::g_lanVlan[kLanVlans] = {};

namespace {

/// Highest VID of a WAN or LAN object, and highest LAN VID of a WAN object.
// Required: vid-bounds-above-their-texts
constexpr uint32_t kMaxVid = 4095;
constexpr uint32_t kMaxLanVid = 4096;

bool IsWithin(uint32_t value, uint32_t max) {
  return value >= 1 && value <= max;
}

/// The arguments of a WAN operation as they are used.
struct WanRequest {
  uint16_t port;
  uint16_t wanVid;
  uint16_t lanVid;
};

WanRequest MakeWanRequest(uint32_t port, uint32_t wanVid, uint32_t lanVid) {
  return {static_cast<uint16_t>(port), static_cast<uint16_t>(wanVid),
          static_cast<uint16_t>(lanVid)};
}

bool IsValid(const char* function, const WanRequest& request) {
  if (!IsWithin(request.wanVid, kMaxVid)) {
    HAL_LOG_AS(function, LOG_LEVEL_TRACE, "[%s %d] wanVid is 0 or 4095\r\n");
    return false;
  }
  if (!IsWithin(request.lanVid, kMaxLanVid)) {
    HAL_LOG_AS(function, LOG_LEVEL_TRACE, "[%s %d] lanVid is 0 or 4096\r\n");
    return false;
  }
  if (!IsInTables(request.port)) {
    HAL_LOG_AS(function, LOG_LEVEL_INVALID, "[%s %d] port %u is out of range\r\n", request.port);
    return false;
  }
  return true;
}

int32_t EnableWanVid(uint32_t wanVid, bool enable) {
  return VOS_System("bs /b/c vlan/name=wan0_%u vid_enable[%u]=%s", wanVid, wanVid,
                    enable ? "yes" : "no");
}

int32_t EnableLanVid(uint32_t lan, uint32_t vid, bool enable) {
  return VOS_System("bs /b/c vlan/name=lan%u_%u vid_enable[%u]=%s", lan, vid, vid,
                    enable ? "yes" : "no");
}

void LogWanAdd(const char* function, const WanRequest& request) {
  // Required: log-double-blanks
  HAL_LOG_AS(function, LOG_LEVEL_TRACE, "%s,%d, add wan vlan  %u  wanVid=%lu lanVid=%lu\r\n",
             request.port, AsUnsignedLong(request.wanVid), AsUnsignedLong(request.lanVid));
}

void LogWanDel(const char* function, const WanRequest& request) {
  HAL_LOG_AS(function, LOG_LEVEL_TRACE, "%s,%d, port=%u,del wanVid=%lu lanVid=%lu\r\n",
             request.port, AsUnsignedLong(request.wanVid), AsUnsignedLong(request.lanVid));
}

/// The first entry with that WAN VID, or null; 0 finds a free entry. The entries lie 32 kB apart,
/// so that every step misses the cache; the shell lines of an operation cost far more.
WanVlanEntry* FindWanEntry(uint16_t wanVid) {
  return FirstOf(g_wanVlan, [wanVid](const WanVlanEntry& entry) { return entry.wanVid == wanVid; });
}

/// The first slot of a port's list that holds `vid`, or null; 0 finds a free slot.
uint16_t* FindLanVid(WanVlanEntry& entry, uint32_t port, uint32_t vid) {
  return FirstOf(entry.lanVid[port - 1], [vid](uint16_t slot) { return slot == vid; });
}

void RemoveLanVid(WanVlanEntry& entry, uint32_t port, uint32_t vid) {
  for (uint16_t& slot : entry.lanVid[port - 1]) {
    if (slot == vid) {
      slot = 0;
    }
  }
}

/// Tells whether any slot of any port is used. It combines whole lists, because that costs less
/// than a branch for each of the 16384 slots.
bool HasLanVid(const WanVlanEntry& entry) {
  for (const auto& list : entry.lanVid) {
    uint32_t bits = 0;
    for (const uint16_t slot : list) {
      bits |= slot;
    }
    if (bits != 0) {
      return true;
    }
  }
  return false;
}

/// Takes a free entry and makes its object; nothing happens when all are in use.
void CreateWanObject(const char* function, const WanRequest& request) {
  WanVlanEntry* free = FindWanEntry(0);
  if (free == nullptr) {
    return;
  }
  free->wanVid = request.wanVid;
  free->lanVid[request.port - 1][0] = request.lanVid;
  VOS_System("bs /b/n vlan/name=wan0_%u port/index=wan0", request.wanVid);
  const int32_t result = EnableWanVid(request.wanVid, true);
  HAL_LOG_AS(function, LOG_LEVEL_TRACE, "%s,%d, add wan vlan  %u  wanVid=%lu lanVid=%lu ret=%u\r\n",
             request.port, AsUnsignedLong(request.wanVid), AsUnsignedLong(request.lanVid),
             static_cast<uint32_t>(result));
}

/// Adds a LAN VID to an object that exists; the VID is dropped when the port's list is full.
void ExtendWanObject(const char* function, WanVlanEntry& entry, const WanRequest& request) {
  // Required: wan-object-repeat-runs-nothing
  if (FindLanVid(entry, request.port, request.lanVid) != nullptr) {
    return;
  }
  // Required: wan-list-full-toggles
  if (uint16_t* free = FindLanVid(entry, request.port, 0)) {
    *free = request.lanVid;
  }
  LogWanAdd(function, request);
  // Required: wan-object-toggled
  EnableWanVid(request.wanVid, false);
  EnableWanVid(request.wanVid, true);
}

LanVlanEntry* FindLanEntry(uint32_t port, uint32_t vid) {
  return FirstOf(g_lanVlan, [port, vid](const LanVlanEntry& entry) {
    return entry.port == port && entry.vid == vid;
  });
}

bool IsValidVid(const char* function, uint32_t vid) {
  if (IsWithin(vid, kMaxVid)) {
    return true;
  }
  HAL_LOG_AS(function, LOG_LEVEL_TRACE, "[%s %d] vid is 0 or 4095\r\n");
  return false;
}

}  // namespace

uint32_t BCM6838X_AddWanVlan(uint32_t port, uint32_t wanVid, uint32_t lanVid) {
  const WanRequest request = MakeWanRequest(port, wanVid, lanVid);
  LogWanAdd(__func__, request);
  if (!IsValid(__func__, request)) {
    return BCM6838X_FAILED;
  }
  if (WanVlanEntry* entry = FindWanEntry(request.wanVid)) {
    ExtendWanObject(__func__, *entry, request);
  } else {
    CreateWanObject(__func__, request);
  }
  return BCM6838X_OK;
}

uint32_t BCM6838X_DelWanVlan(uint32_t port, uint32_t wanVid, uint32_t lanVid) {
  const WanRequest request = MakeWanRequest(port, wanVid, lanVid);
  LogWanDel(__func__, request);
  if (!IsValid(__func__, request)) {
    return BCM6838X_FAILED;
  }
  WanVlanEntry* entry = FindWanEntry(request.wanVid);
  if (entry == nullptr) {
    return BCM6838X_OK;
  }
  RemoveLanVid(*entry, request.port, request.lanVid);
  if (HasLanVid(*entry)) {
    LogWanDel(__func__, request);
    return BCM6838X_OK;
  }
  entry->wanVid = 0;  // the lists are empty, so that this frees the entry
  EnableWanVid(request.wanVid, false);
  const int32_t result = VOS_System("bs /b/d vlan/name=wan0_%u", request.wanVid);
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "%s,%d, port=%u, del wanVid=%lu lanVid=%lu ret=%d\r\n",
               request.port, AsUnsignedLong(request.wanVid), AsUnsignedLong(request.lanVid),
               result);
  // Required: wan-delete-returns-shell-result
  return static_cast<uint32_t>(result);
}

uint32_t BCM6838X_AddLanVlan(uint32_t port, uint32_t vid) {
  const WanRequest request = MakeWanRequest(port, 0, vid);
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "%s,%d, add lan vlan  %u  vid=%lu\r\n", request.port,
               AsUnsignedLong(request.lanVid));
  if (!IsValidVid(__func__, request.lanVid)) {
    return BCM6838X_FAILED;
  }
  const uint32_t lan = LanIndex(request.port);
  if (LanVlanEntry* entry = FindLanEntry(request.port, request.lanVid)) {
    // Required: lan-objects-counted
    ++entry->refCount;
    EnableLanVid(lan, request.lanVid, false);
  } else {
    // Required: object-table-full-succeeds
    LanVlanEntry* free = FindLanEntry(0, 0);
    if (free == nullptr) {
      return BCM6838X_OK;
    }
    *free = {request.port, request.lanVid, 1};
    VOS_System("bs /b/n vlan/name=lan%u_%u port/index=lan%d", lan, request.lanVid, AsInt(lan));
  }
  EnableLanVid(lan, request.lanVid, true);
  return BCM6838X_OK;
}

uint32_t BCM6838X_DelLanVlan(uint32_t port, uint32_t vid) {
  const WanRequest request = MakeWanRequest(port, 0, vid);
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "%s,%d, del lan vlan  %u  vid=%lu\r\n", request.port,
               AsUnsignedLong(request.lanVid));
  if (!IsValidVid(__func__, request.lanVid)) {
    return BCM6838X_FAILED;
  }
  LanVlanEntry* entry = FindLanEntry(request.port, request.lanVid);
  if (entry == nullptr || --entry->refCount != 0) {
    return BCM6838X_OK;
  }
  *entry = {};
  const uint32_t lan = LanIndex(request.port);
  EnableLanVid(lan, request.lanVid, false);
  VOS_System("bs /b/d vlan/name=lan%u_%u", lan, request.lanVid);
  return BCM6838X_OK;
}
