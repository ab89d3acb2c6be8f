/// @file
/// Calls of the operations of bcm6838x_qos.h from C.
#include <bcm6838x_qos.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>

#include "c_calls.h"

/// A re-marking rule of UNI port 1 on the VLAN identifier 100.
static QosClassRule RemarkRule(void) {
  QosClassRule rule;
  memset(&rule, 0, sizeof(rule));
  rule.ruleType = BCM6838X_QOS_RULE_IPV4_REMARK;
  rule.port = 1;
  rule.precedence = 1;
  rule.fieldCount = 1;
  rule.field[0] = BCM6838X_QOS_FIELD_VLAN_ID;
  rule.op[0] = BCM6838X_QOS_OPERATOR_EQUAL;
  rule.value[0][5] = 100;
  rule.priority = 7;
  return rule;
}

/// Indexes that the driver returns are logged and kept, whatever they are.
static void ExpectReturnedIndexes(const QosClassRule* rule) {
  IngressFlowRule record;
  g_platform.readBack =
      (struct ReadBack){BRMGR_CMD_FLOW_ADD, offsetof(IngressFlowRule, flowIndex), 9};
  EXPECT(BCM6838X_AddQosClassificationRule(rule) == BCM6838X_OK);
  EXPECT(strcmp(g_platform.logText,
                "port = 1, ruleType = 0, precedunce = 1, icindex = 0, flowIndex = 9\r\n") == 0);
  g_platform.ioctlResult = -1;
  EXPECT(BCM6838X_SetQosSchedule(1) == BCM6838X_OK);
  EXPECT(g_platform.cmd == BRMGR_CMD_QUEUE_SCHEDULE);
  LAST_RECORD(record);
  EXPECT(record.icIndex == 0 && record.flowIndex == 9);
}

/// A class that is refused is named by the index that its record came back with.
static void ExpectIndexOfRefusedClass(QosClassRule rule) {
  rule.ruleType = BCM6838X_QOS_RULE_ACL;
  g_platform.ioctlResult = -1;
  g_platform.readBack =
      (struct ReadBack){BRMGR_CMD_IC_CREATE, offsetof(IngressClassCfg, icIndex), 5};
  EXPECT(BCM6838X_AddQosClassificationRule(&rule) == BCM6838X_REFUSED);
  EXPECT(strcmp(g_platform.logText, "Failed to Add ICIndex 5\r\n") == 0);
}

void call_BCM6838X_AddQosClassificationRule(void) {
  const QosClassRule rule = RemarkRule();
  IngressFlowRule record;
  EXPECT(BCM6838X_AddQosClassificationRule(NULL) == BCM6838X_INVALID);
  OpenDevice();
  EXPECT(BCM6838X_InitQoS() == BCM6838X_OK);
  EXPECT(BCM6838X_AddQosClassificationRule(&rule) == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_VLAN_ACTION_ADD] == 1);
  EXPECT(g_platform.count[BRMGR_CMD_IC_CREATE] == 1);
  EXPECT(g_platform.cmd == BRMGR_CMD_FLOW_ADD);
  LAST_RECORD(record);
  EXPECT(record.ingressPort == 2 && record.outerVid == 100 && record.queue == 7);
  ExpectReturnedIndexes(&rule);
  ExpectIndexOfRefusedClass(rule);
}

void call_BCM6838X_ApplyQosClassification(void) {
  QosClassRuleSet set;
  memset(&set, 0, sizeof(set));
  set.port = 1;
  set.rule[7] = RemarkRule();
  EXPECT(BCM6838X_ApplyQosClassification(NULL) == BCM6838X_OK);
  OpenDevice();
  EXPECT(BCM6838X_InitQoS() == BCM6838X_OK);
  EXPECT(BCM6838X_ApplyQosClassification(&set) == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_FLOW_ADD] == 1);
  EXPECT(g_platform.count[BRMGR_CMD_IC_DEL] == 0);
  EXPECT(BCM6838X_ApplyQosClassification(&set) == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_FLOW_ADD] == 2);
  EXPECT(g_platform.count[BRMGR_CMD_IC_DEL] == 1);
  EXPECT(g_platform.count[BRMGR_CMD_VLAN_ACTION_DEL] == 1);
  EXPECT(strcmp(g_platform.logFile, "hal/switch/bcm6838x/src/bcm6838x_qos_classify.cpp") == 0);
}

void call_BCM6838X_GetRuleTypeIndex(void) {
  EXPECT(BCM6838X_GetRuleTypeIndex(0) == 0);
  EXPECT(BCM6838X_GetRuleTypeIndex(2) == 2);
}

void call_BCM6838X_SetQosUsPolicer(void) {
  const QosUsPolicerCfg cfg = {4, 64, 0, 0};
  PolicerCfg record;
  EXPECT(BCM6838X_SetQosUsPolicer(NULL) == BCM6838X_OK);
  OpenDevice();
  EXPECT(BCM6838X_SetQosUsPolicer(&cfg) == BCM6838X_OK);
  EXPECT(g_platform.cmd == BRMGR_CMD_POLICER_ADD);
  LAST_RECORD(record);
  EXPECT(record.rate == 64000 && record.port == 4);
}

void call_BCM6838X_SetQosDsRateLimit(void) {
  const QosDsRateLimitCfg cfg = {0, 100};
  DsRateLimitRecord record;
  EXPECT(BCM6838X_SetQosDsRateLimit(NULL) == BCM6838X_OK);
  OpenDevice();
  EXPECT(BCM6838X_SetQosDsRateLimit(&cfg) == BCM6838X_OK);
  EXPECT(g_platform.cmd == BRMGR_CMD_DS_RATE_LIMIT);
  LAST_RECORD(record);
  EXPECT(record.port == 1 && record.rate == 100000);
}

void call_BCM6838X_StreamSetDscpMap(void) {
  uint8_t map[64];
  DscpMapRecord record;
  memset(map, 5, sizeof(map));
  EXPECT(BCM6838X_StreamSetDscpMap(1, NULL) == BCM6838X_OK);
  OpenDevice();
  EXPECT(BCM6838X_StreamSetDscpMap(1, map) == BCM6838X_OK);
  EXPECT(g_platform.cmd == BRMGR_CMD_DSCP_MAP);
  LAST_RECORD(record);
  EXPECT(record.port == 2 && record.priority[0] == 5 && record.priority[63] == 5);
}

void call_BCM6838X_SetQosWrrWeight(void) {
  const uint8_t weight[8] = {1, 2, 3, 4, 5, 6, 7, 8};
  EXPECT(BCM6838X_SetQosWrrWeight(NULL) == BCM6838X_INVALID);
  EXPECT(BCM6838X_SetQosWrrWeight(weight) == BCM6838X_OK);
  EXPECT(g_platform.shells == 8);
  EXPECT(strcmp(g_platform.shellText,
                "bs /b/c egress_tm/dir=us,index=18 rl={af=0}, queue_cfg[0]={queue_id=15,weight=0,"
                "drop_alg=dt,drop_threshold=700,red_high_threshold=0,red_low_threshold=0}, "
                "weight=8") == 0);
}

void call_BCM6838X_SetQosSchedule(void) {
  OpenDevice();
  EXPECT(BCM6838X_InitQoS() == BCM6838X_OK);
  EXPECT(BCM6838X_SetQosSchedule(0) == BCM6838X_OK);
  EXPECT(BCM6838X_SetQosSchedule(2) == BCM6838X_UNSUPPORTED);
  EXPECT(BCM6838X_SetQosSchedule(1) == BCM6838X_OK);
  EXPECT(g_platform.count[BRMGR_CMD_QUEUE_SCHEDULE] == 0);
}

void call_BCM6838X_InitQoS(void) {
  EXPECT(BCM6838X_InitQoS() == BCM6838X_OK);
}
