/// @file
/// The compact copy of the WAN VIDs. The table remains the truth: programs that link with the
/// archive may clear or fill it, and the copy is then made anew.
#include "bcm6838x_vlan_wan_index.h"

#include <cstddef>
#include <cstdint>

#include "bcm6838x_vlan_internal.h"

namespace {

constexpr size_t kNoEntry = kWanVlans;

uint16_t sg_wanVid[kWanVlans] = {};

size_t FindInCopy(uint16_t wanVid) {
  for (size_t index = 0; index < kWanVlans; ++index) {
    if (sg_wanVid[index] == wanVid) {
      return index;
    }
  }
  return kNoEntry;
}

bool AgreesAt(size_t index) {
  return index == kNoEntry || sg_wanVid[index] == g_wanVlan[index].wanVid;
}

/// Tells whether the outcome of a search holds in the table. That nothing was found is believed
/// when the copy agrees at the first entry and at the first free one: the places that differ when
/// somebody has cleared or filled the table.
bool Holds(size_t found) {
  return found != kNoEntry ? AgreesAt(found) : AgreesAt(0) && AgreesAt(FindInCopy(0));
}

void CopyTable() {
  for (size_t index = 0; index < kWanVlans; ++index) {
    sg_wanVid[index] = g_wanVlan[index].wanVid;
  }
}

}  // namespace

WanVlanEntry* FindWanEntry(uint16_t wanVid) {
  size_t found = FindInCopy(wanVid);
  if (!Holds(found)) {
    CopyTable();
    found = FindInCopy(wanVid);
  }
  return found == kNoEntry ? nullptr : &g_wanVlan[found];
}

void SetWanVid(WanVlanEntry& entry, uint16_t wanVid) {
  entry.wanVid = wanVid;
  sg_wanVid[&entry - g_wanVlan] = wanVid;
}
