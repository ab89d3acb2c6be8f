/// @file
/// Calls of the operations of bcm6838x_igmp.h from C.
#include <bcm6838x_igmp.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>

#include "c_calls.h"

/// The group 239.1.2.3 on UNI port 2.
static const McastGroupRequest kRequest = {
    100, {0x01, 0x00, 0x5E, 0x01, 0x02, 0x03}, {239, 1, 2, 3}, {0}, 0x2};

static void InitIgmp(void) {
  OpenDevice();
  EXPECT(BCM6838X_InitIgmp() == BCM6838X_OK);
}

/// The last command carried the group, on UNI port 2.
static void ExpectGroup(uint32_t cmd) {
  McastGroupEntry record;
  LAST_RECORD(record);
  EXPECT(g_platform.cmd == cmd && record.port == 2 && record.portMask == 0x2);
  EXPECT(record.vlan == 100);
  EXPECT(memcmp(record.groupIpv4, kRequest.groupIpv4, sizeof(record.groupIpv4)) == 0);
}

void call_BCM6838X_InitIgmp(void) {
  EXPECT(BCM6838X_InitIgmp() == BCM6838X_OK);
}

void call_BCM6838X_AddIgmpVlan(void) {
  InitIgmp();
  EXPECT(BCM6838X_AddIgmpVlan(1, 100) == BCM6838X_OK);
  EXPECT(BCM6838X_AddIgmpVlan(33, 100) == BCM6838X_FAILED);
}

void call_BCM6838X_DelIgmpVlan(void) {
  InitIgmp();
  EXPECT(BCM6838X_AddIgmpVlan(1, 100) == BCM6838X_OK);
  EXPECT(BCM6838X_DelIgmpVlan(1, 100) == BCM6838X_OK);
  EXPECT(BCM6838X_DelIgmpVlan(0, 100) == BCM6838X_FAILED);
}

void call_BCM6838X_SetMulticastVlanMode(void) {
  InitIgmp();
  EXPECT(BCM6838X_SetMulticastVlanMode(1, 0) == BCM6838X_OK);
  VlanActionRule record;
  LAST_RECORD(record);
  EXPECT(g_platform.cmd == BRMGR_CMD_VLAN_ACTION_ADD && record.cmd == BRMGR_TAG_POP);
  EXPECT(BCM6838X_SetMulticastVlanMode(1, 2) == BCM6838X_OK);
  EXPECT(g_platform.cmd == BRMGR_CMD_VLAN_ACTION_DEL);
}

void call_BCM6838X_AddMulticastVlanTrans(void) {
  InitIgmp();
  EXPECT(BCM6838X_AddMulticastVlanTrans(1, 100, 200) == BCM6838X_OK);
  VlanActionRule record;
  LAST_RECORD(record);
  EXPECT(record.cmd == BRMGR_TAG_REPLACE_VID && record.tag[0].vid == 200);
}

void call_BCM6838X_DelMulticastVlanTrans(void) {
  InitIgmp();
  EXPECT(BCM6838X_AddMulticastVlanTrans(1, 100, 200) == BCM6838X_OK);
  EXPECT(BCM6838X_DelMulticastVlanTrans(1, 100, 200) == BCM6838X_OK);
  // The platform's driver returns no index, so that there is no action to delete.
  EXPECT(g_platform.count[BRMGR_CMD_VLAN_ACTION_DEL] == 0);
  EXPECT(strcmp(g_platform.shellText, "bs /b/d vlan/name=lan0_200") == 0);
}

void call_BCM6838X_FindUnuseMcastChanSlot(void) {
  InitIgmp();
  EXPECT(BCM6838X_FindUnuseMcastChanSlot() == 0);
}

void call_BCM6838X_FindTargetMcastChanSlot(void) {
  InitIgmp();
  EXPECT(BCM6838X_FindTargetMcastChanSlot(kRequest.groupIpv4, kRequest.groupIpv6, 2) == 0xFFFF);
  EXPECT(BCM6838X_AddMulticastMacAddr(&kRequest) == BCM6838X_OK);
  EXPECT(BCM6838X_FindTargetMcastChanSlot(kRequest.groupIpv4, kRequest.groupIpv6, 2) == 0);
  EXPECT(BCM6838X_FindTargetMcastChanSlot(NULL, kRequest.groupIpv6, 2) == 0xFFFF);
}

void call_BCM6838X_AddMulticastMacAddr(void) {
  InitIgmp();
  EXPECT(BCM6838X_AddMulticastMacAddr(NULL) == BCM6838X_INVALID);
  EXPECT(BCM6838X_AddMulticastMacAddr(&kRequest) == BCM6838X_OK);
  ExpectGroup(BRMGR_CMD_MCAST_ADD);
}

void call_BCM6838X_ModifyMulticastMacAddr(void) {
  InitIgmp();
  EXPECT(BCM6838X_ModifyMulticastMacAddr(&kRequest) == BCM6838X_OK);
  ExpectGroup(BRMGR_CMD_MCAST_ADD);
}

void call_BCM6838X_DelMulticastMacAddr(void) {
  InitIgmp();
  EXPECT(BCM6838X_AddMulticastMacAddr(&kRequest) == BCM6838X_OK);
  EXPECT(BCM6838X_DelMulticastMacAddr(&kRequest) == BCM6838X_OK);
  ExpectGroup(BRMGR_CMD_MCAST_DEL);
}

void call_BCM6838X_PrintHex(void) {
  BCM6838X_PrintHex(kRequest.groupMac, sizeof(kRequest.groupMac));
}

void call_BCM6838X_DispatchIgmpPacket(void) {
  const uint8_t frame[64] = {0x01, 0x00, 0x5E, 0x01, 0x02, 0x03};
  InitIgmp();
  EXPECT(BCM6838X_DispatchIgmpPacket(NULL, sizeof(frame), 100, 1) == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_SEND_PKT] == 0);
  EXPECT(BCM6838X_DispatchIgmpPacket(frame, sizeof(frame), 100, 1) == BCM6838X_OK);
  EXPECT(g_platform.cmd == BRMGR_CMD_SEND_PKT && g_platform.len == 64 + 18);
}
