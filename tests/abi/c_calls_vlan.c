/// @file
/// Calls of the operations of bcm6838x_vlan.h from C.
#include <bcm6838x_vlan.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>

#include "c_calls.h"

/// An upstream action that pushes VID 100.
static VlanActionRule PushAction(void) {
  VlanActionRule rule;
  memset(&rule, 0, sizeof(rule));
  rule.cmd = 0x101;
  rule.tag[0].vid = 100;
  rule.tag[0].tpid = 0x8100;
  rule.dir = BRMGR_DIR_UPSTREAM;
  return rule;
}

void call_BCM6838X_AddVlanAction(void) {
  OpenDevice();
  // The platform's driver returns no index of its own.
  EXPECT(BCM6838X_AddVlanAction(PushAction(), 1) == -1);
  VlanActionRule record;
  LAST_RECORD(record);
  EXPECT(g_platform.cmd == BRMGR_CMD_VLAN_ACTION_ADD && record.tag[0].vid == 100);
  EXPECT(record.vlanActionIndex == BRMGR_INDEX_NONE);
}

void call_BCM6838X_GetVlanAction(void) {
  EXPECT(BCM6838X_GetVlanAction(PushAction()) == -1);
  EXPECT(g_platform.logs == 0);
}

void call_BCM6838X_DelVlanAction(void) {
  OpenDevice();
  EXPECT(BCM6838X_DelVlanAction(PushAction()) == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_VLAN_ACTION_DEL] == 0);
}

void call_BCM6838X_AddWanVlan(void) {
  EXPECT(BCM6838X_AddWanVlan(1, 4096, 10) == BCM6838X_FAILED);
  EXPECT(BCM6838X_AddWanVlan(1, 100, 10) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText, "bs /b/c vlan/name=wan0_100 vid_enable[100]=yes") == 0);
}

void call_BCM6838X_DelWanVlan(void) {
  BCM6838X_AddWanVlan(1, 100, 10);
  EXPECT(BCM6838X_DelWanVlan(1, 100, 10) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText, "bs /b/d vlan/name=wan0_100") == 0);
}

void call_BCM6838X_AddLanVlan(void) {
  EXPECT(BCM6838X_AddLanVlan(2, 0) == BCM6838X_FAILED);
  EXPECT(BCM6838X_AddLanVlan(2, 100) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText, "bs /b/c vlan/name=lan1_100 vid_enable[100]=yes") == 0);
}

void call_BCM6838X_DelLanVlan(void) {
  BCM6838X_AddLanVlan(2, 100);
  EXPECT(BCM6838X_DelLanVlan(2, 100) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText, "bs /b/d vlan/name=lan1_100") == 0);
}

void call_BCM6838X_AddDsIngressClass(void) {
  OpenDevice();
  EXPECT(BCM6838X_AddDsIngressClass(100, 1, 2) == -1);
  IngressFlowRule record;
  LAST_RECORD(record);
  EXPECT(g_platform.cmd == BRMGR_CMD_FLOW_ADD && record.outerVid == 100 && record.vlanNum == 1);
}

void call_BCM6838X_AddDsIngressClass_Perf(void) {
  OpenDevice();
  EXPECT(BCM6838X_AddDsIngressClass_Perf(4096, 1, 1) == -1);
  IngressFlowRule record;
  LAST_RECORD(record);
  EXPECT(record.outerVid == 0 && record.result104 == 1 && record.result108 == 2);
}

void call_BCM6838X_DelDsIngressClass(void) {
  OpenDevice();
  EXPECT(BCM6838X_DelDsIngressClass(100, 1) == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_FLOW_DEL] == 0);
}

void call_BCM6838X_GetDsIngressClass(void) {
  EXPECT(BCM6838X_GetDsIngressClass(100, 1) == -1);
}

void call_BCM6838X_AddPortAction(void) {
  EXPECT(BCM6838X_AddPortAction(1, 5, 1, 7) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText,
                "bs /b/c ingress_class/dir=ds,index=1 port_action[{flow=5,port=lan0}]="
                "{{vlan_action={vlan_action/dir=ds,index=7},drop=no}}") == 0);
}

void call_BCM6838X_DelPortAction(void) {
  EXPECT(BCM6838X_DelPortAction(1, 5, 1) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.shellText,
                "bs /b/c ingress_class/dir=ds,index=1 port_action[{flow=5,port=lan0}]="
                "{{vlan_action=null,drop=no}}") == 0);
}
