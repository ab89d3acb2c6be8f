/// @file
/// The stacking list of a port, edited by ranges of customer VIDs. The operations say what a round
/// for each VID would leave; a range may have 2^32 VIDs, the list has 512 entries, so the code runs
/// over the list and tells by arithmetic what the rounds would have met.
#include <cstddef>
#include <cstdint>

#include <bcm6838x_vlan_port.h>
#include <brmgr_record.h>

#include "bcm6838x_vlan_config.h"
#include "hal_bcm6838x_find.h"
#include "hal_bcm6838x_log.h"
#include "hal_bcm6838x_ports.h"

using namespace hal;

namespace {

/// The VIDs first, first + 1, ..., first + last, where they wrap at 2^32.
struct CvidRange {
  uint32_t first;
  uint32_t last;

  /// How far a VID stands behind the first; no more than `last` when it is in the range.
  [[nodiscard]] uint32_t offsetOf(uint32_t cvid) const { return cvid - first; }
  [[nodiscard]] bool holds(uint32_t cvid) const { return offsetOf(cvid) <= last; }
};

CvidRange RangeToAdd(const PortVlanStackRange& req) {
  return {req.cvidStart, req.cvidEnd - req.cvidStart};
}

/// A delete stops behind round r, counted from 1, when d - r < r, where d is the range's last
/// offset and the difference an unsigned word: after d / 2 + 1 rounds, and for d of 0, where the
/// difference wraps in the first round, after 2^31 + 1.
// Required: stacking-delete-of-one-wraps
CvidRange RangeToDelete(const PortVlanStackRange& req) {
  constexpr uint32_t kHalfOfAll = 0x80000000U;
  const uint32_t difference = req.cvidEnd - req.cvidStart;
  // Required: stacking-delete-takes-half
  return {req.cvidStart, difference == 0 ? kHalfOfAll : difference / 2};
}

/// Whether an entry is of the request's port, parameter and service VLAN.
bool IsOfRequest(const PortVlanStackEntry& entry, const PortVlanStackRange& req) {
  return entry.port == req.port && entry.stackParam == req.stackParam && entry.svid == req.svid;
}

bool IsFree(const PortVlanStackEntry& entry) {
  return entry.port == 0 && entry.stackParam == 0 && entry.cvid == 0 && entry.svid == 0;
}

/// Which of the first VIDs of a range the list holds already. No more are needed than the list has
/// entries: each of them is either held or takes a free entry.
struct HeldCvids {
  bool held[kVlanListEntries];
};

HeldCvids FindHeld(const PortVlanInfo& info, const PortVlanStackRange& req) {
  const CvidRange range = RangeToAdd(req);
  HeldCvids cvids = {};
  for (const PortVlanStackEntry& entry : info.stackingList) {
    if (IsOfRequest(entry, req) && range.offsetOf(entry.cvid) < kVlanListEntries) {
      cvids.held[range.offsetOf(entry.cvid)] = true;
    }
  }
  return cvids;
}

/// Gives each VID of the range that the list does not hold the next free entry.
void AddRange(PortVlanInfo& info, const PortVlanStackRange& req) {
  const CvidRange range = RangeToAdd(req);
  const HeldCvids cvids = FindHeld(info, req);
  uint32_t offset = 0;
  for (PortVlanStackEntry& entry : info.stackingList) {
    if (!IsFree(entry)) {
      continue;
    }
    while (offset < kVlanListEntries && cvids.held[offset]) {
      ++offset;
    }
    if (offset > range.last) {
      return;
    }
    info.stackingEnable = 1;
    entry.port = req.port;
    entry.stackParam = req.stackParam;
    entry.cvid = range.first + offset;
    entry.svid = req.svid;
    ++offset;
  }
}

/// Whether no earlier entry of the list is the request's with the same VID.
bool StandsFirst(const PortVlanInfo& info, const PortVlanStackEntry& entry,
                 const PortVlanStackRange& req) {
  const PortVlanStackEntry* const first =
      FirstOf(info.stackingList, [&](const PortVlanStackEntry& each) {
        return each.cvid == entry.cvid && IsOfRequest(each, req);
      });
  return first == &entry;
}

/// Takes each VID of the range out of the list where it stands first. Runs from the end, so that
/// what stands before an entry is still there.
void DeleteRange(PortVlanInfo& info, const PortVlanStackRange& req) {
  const CvidRange range = RangeToDelete(req);
  for (size_t i = kVlanListEntries; i-- > 0;) {
    PortVlanStackEntry& entry = info.stackingList[i];
    if (IsOfRequest(entry, req) && range.holds(entry.cvid) && StandsFirst(info, entry, req)) {
      entry.port = 0;
      entry.stackParam = 0;
      entry.cvid = 0;
      entry.svid = 0;
    }
  }
}

bool IsEmpty(const PortVlanInfo& info) {
  return FirstOf(info.stackingList,
                 [](const PortVlanStackEntry& entry) { return entry.port != 0; }) == nullptr;
}

/// Whether an add may be done at all: port and service VID.
bool IsValid(const PortVlanStackRange& req) {
  constexpr uint32_t kMaxVid = 4095;
  return req.port >= 1 && IsUpToLastEthPort(req.port) && req.svid >= 1 && req.svid <= kMaxVid;
}

}  // namespace

uint32_t BCM6838X_AddVlanStacking(PortVlanStackRange* req) {
  if (req == nullptr || !IsValid(*req)) {
    return BCM6838X_INVALID;
  }
  PortVlanInfo* info = FindVlanInfo(__func__, req->port);
  if (info == nullptr) {
    return BCM6838X_FAILED;
  }
  AddRange(*info, *req);
  // Required: stacking-request-start-advanced
  req->cvidStart = req->cvidEnd + 1U;
  // Required: stacking-add-without-clear
  BCM6838X_RebuildVlanRule(req->port);
  CommitVlanConfig();
  return BCM6838X_OK;
}

uint32_t BCM6838X_DelVlanStacking(PortVlanStackRange* req) {
  if (HAL_IS_NULL(req)) {
    return BCM6838X_INVALID;
  }
  PortVlanInfo* info = FindVlanInfo(__func__, req->port);
  if (info == nullptr) {
    return BCM6838X_FAILED;
  }
  BCM6838X_ClearVlanRule(req->port);
  DeleteRange(*info, *req);
  // Required: stacking-request-start-advanced
  req->cvidStart += RangeToDelete(*req).last + 1;
  BCM6838X_RebuildVlanRule(req->port);
  // Required: stacking-off-behind-rebuild
  if (IsEmpty(*info)) {
    info->stackingEnable = 0;
  }
  CommitVlanConfig();
  return BCM6838X_OK;
}
