/// @file
/// The trunk and translation lists of a port, edited entry by entry. The rules follow with the next
/// BCM6838X_ApplyVlan or change of mode; the stacking list is in bcm6838x_vlan_list_stacking.cpp.
#include <cstdint>

#include <bcm6838x_vlan_port.h>
#include <brmgr_record.h>
#include <platform_log.h>

#include "bcm6838x_vlan_config.h"
#include "hal_bcm6838x_find.h"
#include "hal_bcm6838x_log.h"

using namespace hal;

namespace {

// What is compared of an entry; the reserved bytes are not.

bool Same(const PortVlanTrunkEntry& a, const PortVlanTrunkEntry& b) {
  return a.port == b.port && a.vid == b.vid;
}

// Required: translation-compares-all-fields
bool Same(const PortVlanTransEntry& a, const PortVlanTransEntry& b) {
  return a.port == b.port && a.dsPriority == b.dsPriority && a.localVid == b.localVid &&
         a.usPriority == b.usPriority && a.netVid == b.netVid;
}

// What is stored of an entry: its fields without the reserved bytes.

PortVlanTrunkEntry FieldsOf(const PortVlanTrunkEntry& entry) {
  // Required: list-reserved-bytes-zero
  return {entry.port, 0, entry.vid};
}

PortVlanTransEntry FieldsOf(const PortVlanTransEntry& entry) {
  return {entry.port, 0, entry.dsPriority, entry.localVid, entry.usPriority, entry.netVid};
}

// The list in which the entries of a type stand.

PortVlanTrunkEntry (&ListOf(PortVlanInfo& info,
                            const PortVlanTrunkEntry& /*entry*/))[kVlanListEntries] {
  return info.trunkList;
}

PortVlanTransEntry (&ListOf(PortVlanInfo& info,
                            const PortVlanTransEntry& /*entry*/))[kVlanListEntries] {
  return info.translationList;
}

/// The first entry like `wanted`, or null; a free one is like an entry of zeros.
template <typename Entry>
Entry* Find(Entry (&list)[kVlanListEntries], const Entry& wanted) {
  return FirstOf(list, [&](const Entry& entry) { return Same(entry, wanted); });
}

/// Adds an entry, unless it is in the list, and commits.
template <typename Entry>
uint32_t Add(const char* function, const Entry& req) {
  PortVlanInfo* info = FindVlanInfo(function, req.port);
  if (info == nullptr) {
    return BCM6838X_FAILED;
  }
  auto& list = ListOf(*info, req);
  if (Find(list, req) != nullptr) {
    return BCM6838X_OK;
  }
  // Required: list-full-drops-and-commits
  if (Entry* free = Find(list, Entry{})) {
    *free = FieldsOf(req);
  }
  CommitVlanConfig();
  return BCM6838X_OK;
}

/// Deletes the first entry like the request.
template <typename Entry>
// Required: list-delete-no-commit
uint32_t Delete(const char* function, const Entry& req) {
  PortVlanInfo* info = FindVlanInfo(function, req.port);
  if (info == nullptr) {
    return BCM6838X_FAILED;
  }
  if (Entry* found = Find(ListOf(*info, req), req)) {
    // Required: list-keeps-its-holes
    *found = {};
  }
  return BCM6838X_OK;
}

}  // namespace

uint32_t BCM6838X_AddVlanTrunk(const PortVlanTrunkEntry* req) {
  if (HAL_IS_NULL(req)) {
    return BCM6838X_INVALID;
  }
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "###### %s(%d), port=%u, vid=%d\r\n", req->port, req->vid);
  return Add(__func__, *req);
}

uint32_t BCM6838X_DelVlanTrunk(const PortVlanTrunkEntry* req) {
  if (HAL_IS_NULL(req)) {
    return BCM6838X_INVALID;
  }
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "###### %s(%d), port=%u, vid=%u\r\n", req->port, req->vid);
  return Delete(__func__, *req);
}

uint32_t BCM6838X_AddZteVlanTrunk(const PortVlanTrunkEntry* req) {
  if (HAL_IS_NULL(req)) {
    return BCM6838X_INVALID;
  }
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "###### %s(%d) port=%d, vid=%d\r\n", req->port, req->vid);
  return Add(__func__, *req);
}

uint32_t BCM6838X_DelZteVlanTrunk(const PortVlanTrunkEntry* req) {
  if (HAL_IS_NULL(req)) {
    return BCM6838X_INVALID;
  }
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "###### %s(%d) port=%d, vid=%d\r\n", req->port, req->vid);
  return Delete(__func__, *req);
}

uint32_t BCM6838X_AddVlanTranslation(const PortVlanTransEntry* req) {
  if (HAL_IS_NULL(req)) {
    return BCM6838X_INVALID;
  }
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "###### %s(%d) port=%d, vid(%d->%d)\r\n", req->port, req->localVid,
               req->netVid);
  return Add(__func__, *req);
}

uint32_t BCM6838X_DelVlanTranslation(const PortVlanTransEntry* req) {
  if (HAL_IS_NULL(req)) {
    return BCM6838X_INVALID;
  }
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "###### %s(%d) port=%d, vid(%d->%d)\r\n", req->port, req->localVid,
               req->netVid);
  return Delete(__func__, *req);
}
