/// @file
/// Calls of the operations of bcm6838x_vlan_port.h from C.
#include <bcm6838x_vlan_port.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>

#include "c_calls.h"

void call_BCM6838X_InitVlan(void) {
  OpenDevice();
  EXPECT(BCM6838X_InitVlan() == BCM6838X_OK);
  VlanActionRule record;
  LAST_RECORD(record);
  EXPECT(g_platform.cmd == BRMGR_CMD_VLAN_ACTION_ADD && record.cmd == BRMGR_TAG_POP);
}

/// Whether the configuration of all ports was the last command.
static int ConfigWasSent(void) {
  return g_platform.cmd == BRMGR_CMD_VLAN_REBUILD && g_platform.len == sizeof(PortVlanTable);
}

/// Expects a mode setter to refuse a port out of range and to switch port 2.
static void ExpectSetter(uint32_t (*set)(uint32_t port)) {
  EXPECT(set(0) == BCM6838X_FAILED);
  EXPECT(set(33) == BCM6838X_FAILED);
  OpenDevice();
  BCM6838X_InitVlan();
  EXPECT(set(0x102) == BCM6838X_OK);
  EXPECT(ConfigWasSent());
  const uint32_t sent = g_platform.count[BRMGR_CMD_VLAN_REBUILD];
  EXPECT(set(2) == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_VLAN_REBUILD] == sent);
}

void call_BCM6838X_SetVlanTransparent(void) {
  ExpectSetter(BCM6838X_SetVlanTransparent);
}

void call_BCM6838X_SetVlanTag(void) {
  ExpectSetter(BCM6838X_SetVlanTag);
}

void call_BCM6838X_SetVlanTranslation(void) {
  ExpectSetter(BCM6838X_SetVlanTranslation);
}

void call_BCM6838X_SetVlanTrunk(void) {
  ExpectSetter(BCM6838X_SetVlanTrunk);
}

void call_BCM6838X_SetZteVlanTrunk(void) {
  ExpectSetter(BCM6838X_SetZteVlanTrunk);
}

void call_BCM6838X_SetZteStacking(void) {
  ExpectSetter(BCM6838X_SetZteStacking);
}

void call_BCM6838X_SetBdcomStacking(void) {
  ExpectSetter(BCM6838X_SetBdcomStacking);
}

void call_BCM6838X_ApplyVlan(void) {
  EXPECT(BCM6838X_ApplyVlan(33) == BCM6838X_FAILED);
  OpenDevice();
  BCM6838X_InitVlan();
  EXPECT(BCM6838X_ApplyVlan(2) == BCM6838X_OK);
  PortAdminRecord record;
  LAST_RECORD(record);
  EXPECT(g_platform.cmd == BRMGR_CMD_PORT_ADMIN && record.port == 3 && record.enable == 1);
}

void call_BCM6838X_ClearVlanRule(void) {
  EXPECT(BCM6838X_ClearVlanRule(33) == BCM6838X_FAILED);
  BCM6838X_InitVlan();
  EXPECT(BCM6838X_ClearVlanRule(2) == BCM6838X_OK);
  EXPECT(g_platform.shells == 0);
}

void call_BCM6838X_RebuildVlanRule(void) {
  EXPECT(BCM6838X_RebuildVlanRule(33) == BCM6838X_FAILED);
  OpenDevice();
  BCM6838X_InitVlan();
  EXPECT(BCM6838X_RebuildVlanRule(2) == BCM6838X_OK);
  EXPECT(ConfigWasSent());
}

/// Expects the operations of the trunk list to refuse what they refuse, and to take an entry.
static void ExpectTrunkEdit(uint32_t (*edit)(const PortVlanTrunkEntry* req)) {
  const PortVlanTrunkEntry entry = {1, 0, 100};
  const PortVlanTrunkEntry nowhere = {33, 0, 100};
  EXPECT(edit(NULL) == BCM6838X_INVALID);
  EXPECT(edit(&nowhere) == BCM6838X_FAILED);
  EXPECT(edit(&entry) == BCM6838X_OK);
}

void call_BCM6838X_AddVlanTrunk(void) {
  ExpectTrunkEdit(BCM6838X_AddVlanTrunk);
}

void call_BCM6838X_DelVlanTrunk(void) {
  ExpectTrunkEdit(BCM6838X_DelVlanTrunk);
}

void call_BCM6838X_AddZteVlanTrunk(void) {
  ExpectTrunkEdit(BCM6838X_AddZteVlanTrunk);
}

void call_BCM6838X_DelZteVlanTrunk(void) {
  ExpectTrunkEdit(BCM6838X_DelZteVlanTrunk);
}

static void ExpectTranslationEdit(uint32_t (*edit)(const PortVlanTransEntry* req)) {
  const PortVlanTransEntry entry = {1, 0, 5, 10, 6, 100};
  const PortVlanTransEntry nowhere = {0, 0, 5, 10, 6, 100};
  EXPECT(edit(NULL) == BCM6838X_INVALID);
  EXPECT(edit(&nowhere) == BCM6838X_FAILED);
  EXPECT(edit(&entry) == BCM6838X_OK);
}

void call_BCM6838X_AddVlanTranslation(void) {
  ExpectTranslationEdit(BCM6838X_AddVlanTranslation);
}

void call_BCM6838X_DelVlanTranslation(void) {
  ExpectTranslationEdit(BCM6838X_DelVlanTranslation);
}

void call_BCM6838X_AddVlanStacking(void) {
  PortVlanStackRange range = {1, {0, 0, 0}, 2, 100, 103, 200};
  PortVlanStackRange nowhere = {5, {0, 0, 0}, 2, 100, 103, 200};
  OpenDevice();
  EXPECT(BCM6838X_AddVlanStacking(NULL) == BCM6838X_INVALID);
  EXPECT(BCM6838X_AddVlanStacking(&nowhere) == BCM6838X_INVALID && nowhere.cvidStart == 100);
  EXPECT(BCM6838X_AddVlanStacking(&range) == BCM6838X_OK && range.cvidStart == 104);
  EXPECT(ConfigWasSent());
}

void call_BCM6838X_DelVlanStacking(void) {
  PortVlanStackRange range = {1, {0, 0, 0}, 2, 100, 103, 200};
  PortVlanStackRange nowhere = {33, {0, 0, 0}, 2, 100, 103, 200};
  OpenDevice();
  EXPECT(BCM6838X_DelVlanStacking(NULL) == BCM6838X_INVALID);
  EXPECT(BCM6838X_DelVlanStacking(&nowhere) == BCM6838X_FAILED && nowhere.cvidStart == 100);
  EXPECT(BCM6838X_DelVlanStacking(&range) == BCM6838X_OK && range.cvidStart == 102);
  EXPECT(ConfigWasSent());
}

void call_BCM6838X_SetPortPvid(void) {
  EXPECT(BCM6838X_SetPortPvid(33, 100) == BCM6838X_FAILED);
  EXPECT(BCM6838X_SetPortPvid(1, 0x10064) == BCM6838X_OK);
  EXPECT(BCM6838X_SetPortPvid(0x101, 100) == BCM6838X_INVALID);
}

void call_BCM6838X_SetPortPriority(void) {
  EXPECT(BCM6838X_SetPortPriority(33, 5) == BCM6838X_FAILED);
  EXPECT(BCM6838X_SetPortPriority(1, 0x105) == BCM6838X_OK);
  EXPECT(BCM6838X_SetPortPriority(0x101, 5) == BCM6838X_INVALID);
}

void call_BCM6838X_SetPortCtcMode(void) {
  EXPECT(BCM6838X_SetPortCtcMode(33, 4) == BCM6838X_FAILED);
  EXPECT(BCM6838X_SetPortCtcMode(1, 7) == BCM6838X_NOT_OPEN);
  OpenDevice();
  EXPECT(BCM6838X_SetPortCtcMode(0x102, 4, 1, 2, 3) == BCM6838X_OK);
  CtcModeRecord record;
  LAST_RECORD(record);
  EXPECT(g_platform.cmd == BRMGR_CMD_CTC_MODE_A && record.port == 2);
}

void call_BCM6838X_SetVlanEntry(void) {
  EXPECT(BCM6838X_SetVlanEntry(0x103, 0x10064) == BCM6838X_OK);
  uint32_t ports = 0;
  uint32_t extra = 1;
  EXPECT(BCM6838X_GetVlanPorts(100, &ports, &extra) == BCM6838X_OK && ports == 4 && extra == 0);
}

void call_BCM6838X_GetVlanPorts(void) {
  uint32_t ports = 7;
  EXPECT(BCM6838X_GetVlanPorts(100, NULL, &ports) == BCM6838X_INVALID);
  EXPECT(BCM6838X_GetVlanPorts(100, &ports, NULL) == BCM6838X_INVALID);
  uint32_t extra = 8;
  EXPECT(BCM6838X_GetVlanPorts(100, &ports, &extra) == BCM6838X_OK && ports == 7 && extra == 8);
}

/// Expects a reader of the membership table to refuse null pointers and to find the table at its
/// end.
static void ExpectReader(uint32_t (*read)(uint16_t* vid, uint32_t* portMask, uint32_t* attr)) {
  uint16_t vid = 7;
  uint32_t ports = 8;
  uint32_t attr = 9;
  EXPECT(read(NULL, &ports, &attr) == BCM6838X_INVALID);
  EXPECT(read(&vid, NULL, &attr) == BCM6838X_INVALID);
  EXPECT(read(&vid, &ports, NULL) == BCM6838X_INVALID);
  EXPECT(read(&vid, &ports, &attr) == BCM6838X_END);
  EXPECT(vid == 7 && ports == 8 && attr == 9);
  BCM6838X_SetVlanEntry(1, 100);
  BCM6838X_SetVlanEntry(2, 200);
  EXPECT(read(&vid, &ports, &attr) == BCM6838X_OK && attr == 0);
}

void call_BCM6838X_GetFirstVlanEntry(void) {
  ExpectReader(BCM6838X_GetFirstVlanEntry);
}

void call_BCM6838X_GetNextVlanEntry(void) {
  ExpectReader(BCM6838X_GetNextVlanEntry);
}

/// Expects the operation to send its command with the tag of VID 100, and to log.
static void ExpectIphost(uint32_t (*operation)(uint32_t vid), uint32_t cmd) {
  OpenDevice();
  EXPECT(operation(100) == BCM6838X_OK);
  IphostVlanRecord record;
  LAST_RECORD(record);
  EXPECT(g_platform.cmd == cmd && record.tci == 0xE064);
  EXPECT(strstr(g_platform.logText, "Tci[e064],ret = 0 \r\n") != NULL);
}

void call_BCM6838X_AddIphostVlan(void) {
  ExpectIphost(BCM6838X_AddIphostVlan, BRMGR_CMD_IPHOST_VLAN_ADD);
}

void call_BCM6838X_DelIphostVlan(void) {
  ExpectIphost(BCM6838X_DelIphostVlan, BRMGR_CMD_IPHOST_VLAN_DEL);
}

void call_BCM6838X_AddVlan(void) {
  EXPECT(BCM6838X_AddVlan(100, 1, 2) == BCM6838X_OK && g_platform.logs == 0);
}

void call_BCM6838X_DelVlan(void) {
  EXPECT(BCM6838X_DelVlan(100) == BCM6838X_OK && g_platform.logs == 0);
}
