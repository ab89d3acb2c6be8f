/// @file
/// Calls of the operations of bcm6838x_mac.h from C.
#include <bcm6838x_mac.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>

#include "c_calls.h"

static const MacAddress kMac = {{0x02, 0, 0, 0, 0, 0x0A}};
static const MacStaticEntry kStaticEntry = {100, {0x02, 0, 0, 0, 0, 0x0A}, 3};
static const MacDynamicEntry kDynamicEntry = {100, {0x02, 0, 0, 0, 0, 0x0A}, 99, 3};

/// The last command carried the entry.
static void ExpectEntry(uint32_t cmd) {
  MacEntryRecord record;
  LAST_RECORD(record);
  EXPECT(g_platform.cmd == cmd && record.port == 3 && record.vid == 100);
  EXPECT(memcmp(record.mac, kMac.octet, sizeof(record.mac)) == 0);
}

/// The last command carried the address, of port 3 and VLAN 100.
static void ExpectFilter(uint32_t cmd) {
  MacFilterRecord record;
  LAST_RECORD(record);
  EXPECT(g_platform.cmd == cmd && record.port == 3 && record.vid == 100);
  EXPECT(memcmp(record.mac, kMac.octet, sizeof(record.mac)) == 0);
}

void call_BCM6838X_AddMacStatic(void) {
  OpenDevice();
  EXPECT(BCM6838X_AddMacStatic(NULL) == BCM6838X_INVALID);
  EXPECT(BCM6838X_AddMacStatic(&kStaticEntry) == BCM6838X_OK);
  ExpectEntry(BRMGR_CMD_MAC_STATIC_ADD);
}

void call_BCM6838X_DelMacStatic(void) {
  OpenDevice();
  EXPECT(BCM6838X_DelMacStatic(&kStaticEntry) == BCM6838X_OK);
  ExpectEntry(BRMGR_CMD_MAC_STATIC_DEL);
}

void call_BCM6838X_AddMacDynamic(void) {
  OpenDevice();
  EXPECT(BCM6838X_AddMacDynamic(&kDynamicEntry) == BCM6838X_OK);
  ExpectEntry(BRMGR_CMD_MAC_DYNAMIC_ADD);
}

void call_BCM6838X_DelMacDynamic(void) {
  OpenDevice();
  EXPECT(BCM6838X_DelMacDynamic(&kDynamicEntry) == BCM6838X_OK);
  ExpectEntry(BRMGR_CMD_MAC_DYNAMIC_DEL);
}

void call_BCM6838X_AddMacFilter(void) {
  OpenDevice();
  EXPECT(BCM6838X_AddMacFilter(0x103, 100, kMac) == BCM6838X_OK);
  ExpectFilter(BRMGR_CMD_MAC_FILTER_ADD);
}

void call_BCM6838X_DelMacFilter(void) {
  OpenDevice();
  EXPECT(BCM6838X_DelMacFilter(3, 100, kMac) == BCM6838X_OK);
  ExpectFilter(BRMGR_CMD_MAC_FILTER_DEL);
}

void call_BCM6838X_AddMacBind(void) {
  OpenDevice();
  EXPECT(BCM6838X_AddMacBind(3, 100, kMac) == BCM6838X_OK);
  ExpectFilter(BRMGR_CMD_MAC_BIND_ADD);
}

void call_BCM6838X_DelMacBind(void) {
  OpenDevice();
  EXPECT(BCM6838X_DelMacBind(3, 100, kMac) == BCM6838X_OK);
  ExpectFilter(BRMGR_CMD_MAC_BIND_DEL);
}

void call_BCM6838X_SetMacLimitMacNum(void) {
  OpenDevice();
  EXPECT(BCM6838X_SetMacLimitMacNum(70000) == BCM6838X_OK);
  MacLimitRecord record;
  LAST_RECORD(record);
  EXPECT(g_platform.cmd == BRMGR_CMD_MAC_LIMIT && record.limit == 4464);
}

void call_BCM6838X_SetMacAgingTime(void) {
  OpenDevice();
  EXPECT(BCM6838X_SetMacAgingTime(300) == BCM6838X_OK);
  // The platform's feature switch is not 1.
  EXPECT(g_platform.count[BRMGR_CMD_MAC_AGING] == 0 && g_platform.messages == 1);
  EXPECT(g_platform.messageModule == 0xA440 && g_platform.messageCode == 0x443);
}

void call_BCM6838X_SetMacClear(void) {
  OpenDevice();
  EXPECT(BCM6838X_SetMacClear(9) == BCM6838X_OK);
  MacLearnRecord record;
  LAST_RECORD(record);
  EXPECT(g_platform.cmd == BRMGR_CMD_MAC_LEARN && record.value == 9);
}

void call_BCM6838X_GetFirstMacEntry(void) {
  uint32_t port = 9;
  uint16_t vid = 9;
  uint8_t mac[6] = {9};
  uint8_t flag = 9;
  OpenDevice();
  EXPECT(BCM6838X_GetFirstMacEntry(&port, &vid, mac, NULL) == BCM6838X_INVALID && port == 9);
  EXPECT(BCM6838X_GetFirstMacEntry(&port, &vid, mac, &flag) == BCM6838X_OK);
  EXPECT(g_platform.cmd == BRMGR_CMD_MAC_GET_NEXT && g_platform.flag == BRMGR_FLAG_READ_BACK);
  EXPECT(port == 0 && vid == 0 && mac[0] == 0 && flag == 0);
}

void call_BCM6838X_GetNextMacEntry(void) {
  uint32_t port = 9;
  uint16_t vid = 9;
  uint8_t mac[6] = {0x02, 0, 0, 0, 0, 0x0A};
  uint8_t flag = 9;
  OpenDevice();
  EXPECT(BCM6838X_GetNextMacEntry(&port, &vid, mac, &flag) == BCM6838X_OK);
  MacEntryRecord record;
  LAST_RECORD(record);
  EXPECT(memcmp(record.mac, kMac.octet, sizeof(record.mac)) == 0);
  EXPECT(port == 0 && vid == 0 && memcmp(mac, kMac.octet, sizeof(mac)) == 0 && flag == 0);
}
