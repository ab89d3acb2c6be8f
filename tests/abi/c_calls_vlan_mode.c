/// @file
/// Calls of the operations of bcm6838x_vlan_mode.h from C.
#include <bcm6838x_vlan.h>
#include <bcm6838x_vlan_mode.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>

#include "c_calls.h"

/// The entries that a builder of a VLAN mode reads.
enum { LIST_ENTRIES = 512 };

void call_BCM6838X_AddUsTransparent(void) {
  OpenDevice();
  EXPECT(BCM6838X_AddUsTransparent(33) == BCM6838X_FAILED);
  EXPECT(g_platform.shells == 0);
  EXPECT(BCM6838X_AddUsTransparent(2) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText, "bs /b/c port/index=lan1 transparent=yes") == 0);
  EXPECT(g_platform.count[BRMGR_CMD_FLOW_ADD] == 17 + 3);
}

void call_BCM6838X_AddUsTransparent_Perf(void) {
  OpenDevice();
  EXPECT(BCM6838X_AddUsTransparent_Perf(0) == BCM6838X_FAILED);
  EXPECT(BCM6838X_AddUsTransparent_Perf(2) == BCM6838X_OK);
  IngressFlowRule record;
  LAST_RECORD(record);
  EXPECT(g_platform.count[BRMGR_CMD_FLOW_ADD] == 2);
  EXPECT(record.dir == BRMGR_DIR_DOWNSTREAM && record.result108 == 2);
}

void call_BCM6838X_DelUsTransparent(void) {
  EXPECT(BCM6838X_DelUsTransparent(33) == BCM6838X_FAILED);
  EXPECT(BCM6838X_DelUsTransparent(2) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText, "bs /b/c port/index=lan1 transparent=no") == 0);
}

void call_BCM6838X_AddUsTag(void) {
  EXPECT(BCM6838X_AddUsTag(1, 100, 3) == BCM6838X_NOT_OPEN);
  OpenDevice();
  EXPECT(BCM6838X_AddUsTag(33, 100, 3) == BCM6838X_FAILED);
  EXPECT(BCM6838X_AddUsTag(1, 100, 3) == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_VLAN_ACTION_ADD] == 1);
  EXPECT(g_platform.count[BRMGR_CMD_FLOW_ADD] == 2);
}

void call_BCM6838X_DelUsTag(void) {
  EXPECT(BCM6838X_DelUsTag(33, 100, 3) == BCM6838X_FAILED);
  EXPECT(BCM6838X_DelUsTag(1, 100, 3) == BCM6838X_OK);
  EXPECT(g_platform.shells == 0);
  OpenDevice();
  BCM6838X_AddUsTag(1, 100, 3);
  EXPECT(BCM6838X_DelUsTag(1, 100, 3) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText, "bs /b/d vlan/name=wan0_100") == 0);
}

void call_BCM6838X_AddUsZTETrunk(void) {
  static const PortVlanTrunkEntry list[LIST_ENTRIES] = {{1, 0, 100}};
  OpenDevice();
  EXPECT(BCM6838X_AddUsZTETrunk(1, NULL) == BCM6838X_INVALID);
  EXPECT(BCM6838X_AddUsZTETrunk(33, list) == BCM6838X_FAILED);
  EXPECT(BCM6838X_AddUsZTETrunk(1, list) == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_FLOW_ADD] == 8 + 1);
}

void call_BCM6838X_DelUsZTETrunk(void) {
  static const PortVlanTrunkEntry list[LIST_ENTRIES] = {{1, 0, 100}};
  EXPECT(BCM6838X_DelUsZTETrunk(1, NULL) == BCM6838X_INVALID);
  EXPECT(BCM6838X_DelUsZTETrunk(33, list) == BCM6838X_FAILED);
  EXPECT(BCM6838X_DelUsZTETrunk(1, list) == BCM6838X_OK);
  EXPECT(g_platform.shells == 0);
}

void call_BCM6838X_AddUsHybrid(void) {
  static const PortVlanTrunkEntry list[LIST_ENTRIES] = {{1, 0, 100}};
  OpenDevice();
  EXPECT(BCM6838X_AddUsHybrid(1, 10, 3, NULL) == BCM6838X_INVALID);
  EXPECT(BCM6838X_AddUsHybrid(33, 10, 3, list) == BCM6838X_FAILED);
  EXPECT(BCM6838X_AddUsHybrid(1, 10, 3, list) == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_VLAN_ACTION_ADD] == 1);
  EXPECT(g_platform.count[BRMGR_CMD_FLOW_ADD] == 2 + 8 + 1);
}

void call_BCM6838X_DelUsHybrid(void) {
  static const PortVlanTrunkEntry list[LIST_ENTRIES] = {{1, 0, 100}};
  EXPECT(BCM6838X_DelUsHybrid(1, 10, 3, NULL) == BCM6838X_INVALID);
  EXPECT(BCM6838X_DelUsHybrid(33, 10, 3, list) == BCM6838X_FAILED);
  OpenDevice();
  BCM6838X_AddUsHybrid(1, 10, 3, list);
  EXPECT(BCM6838X_DelUsHybrid(1, 10, 3, list) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText, "bs /b/d vlan/name=wan0_10") == 0);
}

void call_BCM6838X_AddUsTranslation(void) {
  static const PortVlanTransEntry list[LIST_ENTRIES] = {{1, 0, 5, 100, 6, 200}};
  OpenDevice();
  EXPECT(BCM6838X_AddUsTranslation(1, 10, 3, NULL) == BCM6838X_INVALID);
  EXPECT(BCM6838X_AddUsTranslation(33, 10, 3, list) == BCM6838X_FAILED);
  EXPECT(BCM6838X_AddUsTranslation(1, 10, 3, list) == BCM6838X_OK);
  // The platform's driver returns no index, so that nothing has a downstream action; and the pool
  // holds one action of each content.
  EXPECT(g_platform.count[BRMGR_CMD_VLAN_ACTION_ADD] == 2);
  EXPECT(g_platform.count[BRMGR_CMD_FLOW_ADD] == 2 + 8 + 1);
}

void call_BCM6838X_DelUsTranslation(void) {
  static const PortVlanTransEntry list[LIST_ENTRIES] = {{1, 0, 5, 100, 6, 200}};
  EXPECT(BCM6838X_DelUsTranslation(1, 10, 3, NULL) == BCM6838X_INVALID);
  EXPECT(BCM6838X_DelUsTranslation(33, 10, 3, list) == BCM6838X_FAILED);
  OpenDevice();
  BCM6838X_AddUsTranslation(1, 10, 3, list);
  EXPECT(BCM6838X_DelUsTranslation(1, 10, 3, list) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText, "bs /b/d vlan/name=wan0_10") == 0);
}

void call_BCM6838X_AddUsZTEStacking(void) {
  OpenDevice();
  EXPECT(BCM6838X_AddUsZTEStacking(33, 10, 3) == BCM6838X_FAILED);
  EXPECT(BCM6838X_AddUsZTEStacking(1, 10, 3) == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_VLAN_ACTION_ADD] == 1);
  EXPECT(g_platform.count[BRMGR_CMD_FLOW_ADD] == 1 + 1 + 8 + 1);
}

void call_BCM6838X_DelUsZTEStacking(void) {
  EXPECT(BCM6838X_DelUsZTEStacking(33, 10, 3) == BCM6838X_FAILED);
  EXPECT(BCM6838X_DelUsZTEStacking(1, 10, 3) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText, "bs /b/c port/index=lan0 transparent=no") == 0);
}

void call_BCM6838X_AddUsBDCOMStacking(void) {
  static const PortVlanStackEntry list[LIST_ENTRIES] = {{1, {0}, 2, 100, 0, 200}};
  OpenDevice();
  EXPECT(BCM6838X_AddUsBDCOMStacking(1, 10, 3, NULL) == BCM6838X_INVALID);
  EXPECT(BCM6838X_AddUsBDCOMStacking(33, 10, 3, list) == BCM6838X_FAILED);
  EXPECT(BCM6838X_AddUsBDCOMStacking(1, 10, 3, list) == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_VLAN_ACTION_ADD] == 2);
  EXPECT(g_platform.count[BRMGR_CMD_FLOW_ADD] == 2 + 2);
}

void call_BCM6838X_DelUsBDCOMStacking(void) {
  static const PortVlanStackEntry list[LIST_ENTRIES] = {{1, {0}, 2, 100, 0, 200}};
  EXPECT(BCM6838X_DelUsBDCOMStacking(1, 10, 3, NULL) == BCM6838X_INVALID);
  EXPECT(BCM6838X_DelUsBDCOMStacking(33, 10, 3, list) == BCM6838X_FAILED);
  OpenDevice();
  BCM6838X_AddUsBDCOMStacking(1, 10, 3, list);
  EXPECT(BCM6838X_DelUsBDCOMStacking(1, 10, 3, list) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText, "bs /b/d vlan/name=wan0_10") == 0);
}
