/// @file
/// Changes of the MAC table and its settings. The walk over its entries is in
/// bcm6838x_mac_iterate.cpp.
#include <cstdint>
#include <cstring>

#include <bcm6838x_mac.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <platform_log.h>
#include <platform_vos.h>

#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_log.h"
#include "hal_bcm6838x_platform.h"
#include "hal_bcm6838x_ports.h"

using namespace hal;

namespace {

/// Sends a static or a dynamic entry, which differ in the width of their port.
template <typename Entry>
uint32_t SendEntry(Command<MacEntryRecord> command, const Entry* entry) {
  if (entry == nullptr) {
    return BCM6838X_INVALID;
  }
  MacEntryRecord record = {};
  memcpy(record.mac, entry->mac, sizeof(record.mac));
  record.port = entry->port;
  record.vid = entry->vid;
  // Required: mac-changes-succeed
  Send(command, record);
  return BCM6838X_OK;
}

/// Logs and sends a blocked or a bound address.
uint32_t SendFilter(const char* function, Command<MacFilterRecord> command, uint32_t port,
                    uint32_t vid, const MacAddress& mac) {
  MacFilterRecord record = {};
  memcpy(record.mac, mac.octet, sizeof(record.mac));
  // Required: mac-filter-sends-low-byte
  record.port = UniPort(port);
  record.vid = static_cast<uint16_t>(vid);
  HAL_LOG_AS(function, LOG_LEVEL_TRACE, "%s(%d), port=%d, vid=%d, macAddr:%x:%x:%x:%x:%x:%x\r\n",
             AsInt(port), record.vid, mac.octet[0], mac.octet[1], mac.octet[2], mac.octet[3],
             mac.octet[4], mac.octet[5]);
  Send(command, record);
  return BCM6838X_OK;
}

}  // namespace

uint32_t BCM6838X_AddMacStatic(const MacStaticEntry* entry) {
  return SendEntry(CommandOf<BRMGR_CMD_MAC_STATIC_ADD>(), entry);
}

uint32_t BCM6838X_DelMacStatic(const MacStaticEntry* entry) {
  return SendEntry(CommandOf<BRMGR_CMD_MAC_STATIC_DEL>(), entry);
}

uint32_t BCM6838X_AddMacDynamic(const MacDynamicEntry* entry) {
  return SendEntry(CommandOf<BRMGR_CMD_MAC_DYNAMIC_ADD>(), entry);
}

uint32_t BCM6838X_DelMacDynamic(const MacDynamicEntry* entry) {
  return SendEntry(CommandOf<BRMGR_CMD_MAC_DYNAMIC_DEL>(), entry);
}

uint32_t BCM6838X_AddMacFilter(uint32_t port, uint32_t vid, MacAddress mac) {
  return SendFilter(__func__, CommandOf<BRMGR_CMD_MAC_FILTER_ADD>(), port, vid, mac);
}

uint32_t BCM6838X_DelMacFilter(uint32_t port, uint32_t vid, MacAddress mac) {
  return SendFilter(__func__, CommandOf<BRMGR_CMD_MAC_FILTER_DEL>(), port, vid, mac);
}

uint32_t BCM6838X_AddMacBind(uint32_t port, uint32_t vid, MacAddress mac) {
  return SendFilter(__func__, CommandOf<BRMGR_CMD_MAC_BIND_ADD>(), port, vid, mac);
}

uint32_t BCM6838X_DelMacBind(uint32_t port, uint32_t vid, MacAddress mac) {
  return SendFilter(__func__, CommandOf<BRMGR_CMD_MAC_BIND_DEL>(), port, vid, mac);
}

uint32_t BCM6838X_SetMacLimitMacNum(uint32_t limit) {
  // Required: mac-limit-logs-what-was-given
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "%s(%d), limit=%d\r\n", AsInt(limit));
  MacLimitRecord record = {};
  record.limit = static_cast<uint16_t>(limit);
  Send<BRMGR_CMD_MAC_LIMIT>(record);
  return BCM6838X_OK;
}

uint32_t BCM6838X_SetMacAgingTime(uint32_t ageTime) {
  MacAgingRecord record = {};
  record.ageTime = static_cast<uint16_t>(ageTime);
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "%s(%d), ageTime=%d\r\n", record.ageTime);
  // Required: mac-aging-by-feature-27
  if (IsCaptureEnabled()) {
    Send<BRMGR_CMD_MAC_AGING>(record);
    return BCM6838X_OK;
  }
  uint32_t message = record.ageTime;
  VOS_MsgSend(kMacAgingModule, kMacAgingTime, &message, sizeof(message));
  return BCM6838X_OK;
}

uint32_t BCM6838X_SetMacClear(uint32_t clear) {
  HAL_LOG_HERE(LOG_LEVEL_TRACE, "%s(%d), clear=%d\r\n", AsInt(clear));
  MacLearnRecord record = {};
  record.value = clear;
  // Required: mac-clear-is-learn-command
  Send<BRMGR_CMD_MAC_LEARN>(record);
  return BCM6838X_OK;
}
