/// @file
/// The table of VLAN membership, which is the library's own, and the VLAN of the unit's own IP
/// traffic.
#include "bcm6838x_vlan_entry.h"

#include <cstddef>
#include <cstdint>

#include <bcm6838x_vlan_port.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <platform_log.h>

#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_log.h"
#include "hal_bcm6838x_ports.h"

using namespace hal;

VlanEntry hal::g_vlanEntry[kVlanEntries] = {};
uint16_t hal::g_vlanEntryCnt = 0;
uint16_t hal::g_vlanEntryGetCnt = 0;

namespace {

/// The bit of a port in a mask; ports beyond 32 share the bits of the first ones.
uint32_t PortBit(uint32_t port) {
  return 1U << ((port - 1) & 31U);
}

// Required: vlan-attributes-stay
void Move(const VlanEntry& from, VlanEntry& to) {
  to.vid = from.vid;
  to.portMask = from.portMask;
}

void RemoveEntry(size_t index) {
  --g_vlanEntryCnt;
  for (size_t i = index; i < g_vlanEntryCnt; ++i) {
    Move(g_vlanEntry[i + 1], g_vlanEntry[i]);
  }
}

void InsertEntry(size_t index, uint16_t vid, uint32_t portMask) {
  for (size_t i = g_vlanEntryCnt; i > index; --i) {
    Move(g_vlanEntry[i - 1], g_vlanEntry[i]);
  }
  ++g_vlanEntryCnt;
  g_vlanEntry[index].vid = vid;
  g_vlanEntry[index].portMask = portMask;
}

/// Takes a port out of the VLAN whose member it is.
void LeaveVlan(uint32_t portBit) {
  for (size_t i = 0; i < g_vlanEntryCnt; ++i) {
    VlanEntry& entry = g_vlanEntry[i];
    if ((entry.portMask & portBit) == 0) {
      continue;
    }
    entry.portMask &= ~portBit;
    if (entry.portMask == 0) {
      // Required: moved-vlan-entry-skipped
      RemoveEntry(i);
    }
  }
}

/// Makes a port a member of a VLAN, in the order of the VIDs.
void JoinVlan(uint16_t vid, uint32_t portBit) {
  size_t i = 0;
  while (i < g_vlanEntryCnt && g_vlanEntry[i].vid < vid) {
    ++i;
  }
  if (i < g_vlanEntryCnt && g_vlanEntry[i].vid == vid) {
    g_vlanEntry[i].portMask |= portBit;
  } else {
    InsertEntry(i, vid, portBit);
  }
}

void Report(const VlanEntry& entry, uint16_t* vid, uint32_t* portMask, uint32_t* attr) {
  *vid = entry.vid;
  *portMask = entry.portMask;
  *attr = entry.vlanAttr;
}

/// Priority 7 and a VID, as the driver takes the tag of the unit's own traffic.
uint16_t IphostTci(uint32_t vid) {
  constexpr uint32_t kHighestPriority = 0xE000;
  // Required: iphost-tag-takes-16-bits
  return static_cast<uint16_t>(vid | kHighestPriority);
}

uint32_t SendIphostTci(Command<IphostVlanRecord> command, uint16_t tci) {
  IphostVlanRecord record = {};
  record.tci = tci;
  return Send(command, record);
}

}  // namespace

uint32_t BCM6838X_SetVlanEntry(uint32_t port, uint32_t vid) {
  // Required: full-vlan-table-refuses-moves
  if (g_vlanEntryCnt >= kVlanEntries) {
    return BCM6838X_FAILED;
  }
  const uint32_t portBit = PortBit(UniPort(port));
  LeaveVlan(portBit);
  JoinVlan(static_cast<uint16_t>(vid), portBit);
  return BCM6838X_OK;
}

// Required: unknown-vlan-leaves-outputs
uint32_t BCM6838X_GetVlanPorts(uint32_t vid, uint32_t* portMask, uint32_t* extra) {
  if (IsAnyNull(portMask, extra)) {
    return BCM6838X_INVALID;
  }
  for (size_t i = 0; i < g_vlanEntryCnt; ++i) {
    if (g_vlanEntry[i].vid == static_cast<uint16_t>(vid)) {
      *portMask = g_vlanEntry[i].portMask;
      *extra = 0;
      break;
    }
  }
  return BCM6838X_OK;
}

uint32_t BCM6838X_GetFirstVlanEntry(uint16_t* vid, uint32_t* portMask, uint32_t* attr) {
  if (IsAnyNull(vid, portMask, attr)) {
    return BCM6838X_INVALID;
  }
  if (g_vlanEntryCnt == 0) {
    return BCM6838X_END;
  }
  // Required: vlan-walk-keeps-its-place
  Report(g_vlanEntry[0], vid, portMask, attr);
  return BCM6838X_OK;
}

uint32_t BCM6838X_GetNextVlanEntry(uint16_t* vid, uint32_t* portMask, uint32_t* attr) {
  if (IsAnyNull(vid, portMask, attr)) {
    return BCM6838X_INVALID;
  }
  ++g_vlanEntryGetCnt;
  if (g_vlanEntryGetCnt >= g_vlanEntryCnt) {
    // Required: vlan-walk-restarts-at-the-second
    g_vlanEntryGetCnt = 0;
    return BCM6838X_END;
  }
  Report(g_vlanEntry[g_vlanEntryGetCnt], vid, portMask, attr);
  return BCM6838X_OK;
}

uint32_t BCM6838X_AddIphostVlan(uint32_t vid) {
  const uint16_t tci = IphostTci(vid);
  const uint32_t result = SendIphostTci(CommandOf<BRMGR_CMD_IPHOST_VLAN_ADD>(), tci);
  HAL_LOG(LOG_LEVEL_TRACE, "Upstream ip host packets Tci[%04x],ret = %lu \r\n", tci,
          AsUnsignedLong(result));
  return BCM6838X_OK;
}

uint32_t BCM6838X_DelIphostVlan(uint32_t vid) {
  const uint16_t tci = IphostTci(vid);
  const uint32_t result = SendIphostTci(CommandOf<BRMGR_CMD_IPHOST_VLAN_DEL>(), tci);
  HAL_LOG(LOG_LEVEL_TRACE, "Upstream ip host packets remove Tci[%04x],ret = %lu \r\n", tci,
          AsUnsignedLong(result));
  return BCM6838X_OK;
}

// Required: add-vlan-does-nothing
uint32_t BCM6838X_AddVlan(uint32_t /*vid*/, ...) {
  return BCM6838X_OK;
}

uint32_t BCM6838X_DelVlan(uint32_t /*vid*/, ...) {
  return BCM6838X_OK;
}
