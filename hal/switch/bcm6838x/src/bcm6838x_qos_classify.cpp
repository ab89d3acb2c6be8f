/// @file
/// Classification rules: each becomes an ingress class, a flow in it and, when it re-marks, a VLAN
/// action. Moving the flows between the queues is in bcm6838x_qos_schedule.cpp.
#include <cstddef>
#include <cstdint>

#include <bcm6838x_qos.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>
#include <platform_log.h>

#include "bcm6838x_qos_field.h"
#include "bcm6838x_qos_internal.h"
#include "hal_bcm6838x_channel.h"
#include "hal_bcm6838x_log.h"
#include "hal_bcm6838x_object.h"
#include "hal_bcm6838x_ports.h"

using namespace hal;

namespace {

/// Whether the tables have room for the rule and its conditions lie in the record.
bool IsInstallable(const QosClassRule& rule) {
  return IsInTables(rule.port) && IsQosPrecedence(rule.precedence) && rule.fieldCount >= 1 &&
         rule.fieldCount <= BCM6838X_QOS_CONDITIONS;
}

bool Remarks(const QosClassRule& rule) {
  // Required: unknown-rule-type-remarks
  return rule.ruleType != BCM6838X_QOS_RULE_ACL;
}

size_t EntryOf(const QosClassRule& rule) {
  return QosRuleEntry(rule.port, rule.precedence);
}

IngressClassCfg MakeClass(const QosClassRule& rule) {
  constexpr uint32_t kLowestPriority = 7;
  // Required: rule-priorities-follow-ports
  const uint32_t priority =
      static_cast<uint32_t>(rule.port) * BCM6838X_QOS_RULES - rule.precedence + kLowestPriority;
  return BeginClass(BRMGR_DIR_UPSTREAM, BRMGR_KEY_INGRESS_PORT | BRMGR_KEY_VLAN_NUM, priority);
}

/// A flow whose class and forwarding decision are not known yet.
IngressFlowRule MakeFlow(const QosClassRule& rule) {
  IngressFlowRule record = BeginFlow(BRMGR_DIR_UPSTREAM, 0, 0);
  record.ingressPort = BCM6838X_StreamPortIndexUniToRdpa(rule.port);
  // Required: rules-take-single-tagged-frames
  record.vlanNum = 1;
  return record;
}

/// Apart from the call, so that the call is on one line and the line's number is the same twice.
constexpr char kFieldIgnored[] =
    "field does not support. field = %lu will be ignored. line = %d\r\n";

/// Adds the keys of the rule's conditions to its class and flow.
void AddKeys(const QosClassRule& rule, IngressClassCfg& ingressClass, IngressFlowRule& flow) {
  for (size_t i = 0; i < rule.fieldCount; ++i) {
    // Required: other-operators-skipped
    if (rule.op[i] != BCM6838X_QOS_OPERATOR_EQUAL) {
      continue;
    }
    const QosFieldKey* key = FindQosFieldKey(rule.field[i]);
    if (key == nullptr) {
      HAL_LOG(LOG_LEVEL_TRACE, kFieldIgnored, AsUnsignedLong(rule.field[i]), __LINE__);
      continue;
    }
    ingressClass.fieldMask |= key->keyBit;
    key->set(flow, rule.value[i]);
  }
}

uint32_t CreateAction(const QosClassRule& rule) {
  VlanActionRule record = BeginAction(BRMGR_DIR_UPSTREAM, BRMGR_TAG_REPLACE_PRIORITY);
  record.tag[0].pbit = rule.priority;
  // Required: remark-action-sent-with-index-0
  record.vlanActionIndex = 0;
  const uint32_t result = Send<BRMGR_CMD_VLAN_ACTION_ADD>(record);
  if (result == BCM6838X_OK) {
    sg_QosClassificationVlanEntry[EntryOf(rule)] = AsInt(record.vlanActionIndex);
  } else {
    HAL_LOG(LOG_LEVEL_INVALID, "Failed to Add vlanaction ret %d\r\n", AsInt(result));
  }
  return result;
}

/// Gives the flow its result: access control, or re-marking by the rule's VLAN action.
uint32_t AddResult(const QosClassRule& rule, IngressFlowRule& flow) {
  if (!Remarks(rule)) {
    flow.forward = BRMGR_FORWARD_ACL;
    return BCM6838X_OK;
  }
  const uint32_t result = CreateAction(rule);
  if (result == BCM6838X_OK) {
    flow.vlanActionIndex = static_cast<uint32_t>(sg_QosClassificationVlanEntry[EntryOf(rule)]);
    flow.remark = 1;
    flow.remarkPriority = rule.priority;
    flow.forward = BRMGR_FORWARD_PASS;
    // Required: rule-queue-is-its-priority
    flow.queue = rule.priority;
  }
  return result;
}

uint32_t DeleteAction(size_t entry) {
  VlanActionDel record = {BRMGR_DIR_UPSTREAM,
                          static_cast<uint32_t>(sg_QosClassificationVlanEntry[entry])};
  // Required: rule-deletes-read-back
  return Send<BRMGR_CMD_VLAN_ACTION_DEL, BRMGR_FLAG_READ_BACK>(record);
}

uint32_t DeleteClass(size_t entry) {
  IngressClassDel record = {BRMGR_DIR_UPSTREAM,
                            static_cast<uint32_t>(sg_QosClassificationICEntry[entry])};
  return Send<BRMGR_CMD_IC_DEL>(record);
}

uint32_t DeleteFlow(size_t entry) {
  IngressFlowDel record = {BRMGR_DIR_UPSTREAM,
                           static_cast<uint32_t>(sg_QosClassificationICEntry[entry]),
                           static_cast<uint32_t>(sg_QosClassificationFlowEntry[entry])};
  return Send<BRMGR_CMD_FLOW_DEL, BRMGR_FLAG_READ_BACK>(record);
}

/// Undoes the rule's VLAN action, if it has one. What the device does not delete stays on record.
/// Returns the result of the last command, which is `result` when none was needed.
uint32_t UndoAction(const QosClassRule& rule, uint32_t result) {
  if (!Remarks(rule)) {
    return result;
  }
  const size_t entry = EntryOf(rule);
  const uint32_t deleted = DeleteAction(entry);
  if (deleted == BCM6838X_OK) {
    sg_QosClassificationVlanEntry[entry] = kNoQosObject;
  }
  return deleted;
}

/// Undoes the rule's class, then its VLAN action, in the same way.
uint32_t UndoClass(const QosClassRule& rule) {
  const size_t entry = EntryOf(rule);
  // Required: failed-undo-stays-on-record
  const uint32_t deleted = DeleteClass(entry);
  if (deleted == BCM6838X_OK) {
    sg_QosClassificationICEntry[entry] = kNoQosObject;
  }
  return UndoAction(rule, deleted);
}

/// Creates the class and then the flow in it.
uint32_t Install(const QosClassRule& rule, IngressClassCfg& ingressClass, IngressFlowRule& flow) {
  const size_t entry = EntryOf(rule);
  uint32_t result = Send<BRMGR_CMD_IC_CREATE>(ingressClass);
  if (result != BCM6838X_OK) {
    result = UndoAction(rule, result);
    HAL_LOG(LOG_LEVEL_INVALID, "Failed to Add ICIndex %d\r\n", AsInt(ingressClass.icIndex));
    return result;
  }
  sg_QosClassificationICEntry[entry] = AsInt(ingressClass.icIndex);
  flow.icIndex = ingressClass.icIndex;
  if (Send<BRMGR_CMD_FLOW_ADD>(flow) != BCM6838X_OK) {
    // Required: failed-rule-returns-last-delete
    result = UndoClass(rule);
    HAL_LOG(LOG_LEVEL_INVALID, "Failed to Add flow %d\r\n", AsInt(flow.flowIndex));
    return result;
  }
  sg_QosClassificationFlowEntry[entry] = AsInt(flow.flowIndex);
  // Required: log-precedunce
  HAL_LOG(LOG_LEVEL_TRACE,
          "port = %d, ruleType = %d, precedunce = %d, icindex = %d, flowIndex = %d\r\n", rule.port,
          AsInt(rule.ruleType), rule.precedence, AsInt(flow.icIndex), AsInt(flow.flowIndex));
  return BCM6838X_OK;
}

/// Removes what an entry has in the device, and forgets it also where the device refuses.
void RemoveRule(size_t entry) {
  int32_t& action = sg_QosClassificationVlanEntry[entry];
  int32_t& ingressClass = sg_QosClassificationICEntry[entry];
  int32_t& flow = sg_QosClassificationFlowEntry[entry];
  const int32_t icIndex = ingressClass;
  if (flow >= 0 && ingressClass >= 0 && DeleteFlow(entry) != BCM6838X_OK) {
    HAL_LOG(LOG_LEVEL_TRACE, "Failed to delete ic %d flow %d\r\n", icIndex, flow);
  }
  flow = kNoQosObject;
  if (ingressClass >= 0 && DeleteClass(entry) != BCM6838X_OK) {
    HAL_LOG(LOG_LEVEL_TRACE, "Failed to delete ic %d\r\n", icIndex);
  }
  ingressClass = kNoQosObject;
  if (action >= 0 && DeleteAction(entry) != BCM6838X_OK) {
    // Required: log-action-named-by-class
    HAL_LOG(LOG_LEVEL_TRACE, "Failed to delete vlanaction %d\r\n", icIndex);
  }
  // Required: apply-forgets-what-stays
  action = kNoQosObject;
}

void RemoveRules(uint32_t port) {
  if (!IsInTables(port)) {
    HAL_LOG(LOG_LEVEL_INVALID, "Invalid parameter\r\n");
    return;
  }
  for (uint32_t precedence = 1; IsQosPrecedence(precedence); ++precedence) {
    RemoveRule(QosRuleEntry(port, precedence));
  }
}

}  // namespace

uint32_t BCM6838X_AddQosClassificationRule(const QosClassRule* rule) {
  if (rule == nullptr || !IsInstallable(*rule)) {
    HAL_LOG(LOG_LEVEL_INVALID, "Invalid parameter\r\n");
    return BCM6838X_INVALID;
  }
  IngressClassCfg ingressClass = MakeClass(*rule);
  IngressFlowRule flow = MakeFlow(*rule);
  AddKeys(*rule, ingressClass, flow);
  const uint32_t result = AddResult(*rule, flow);
  return result == BCM6838X_OK ? Install(*rule, ingressClass, flow) : result;
}

uint32_t BCM6838X_ApplyQosClassification(const QosClassRuleSet* set) {
  if (HAL_IS_NULL(set)) {
    return BCM6838X_OK;
  }
  ListQosRules(*set);
  // Required: set-removes-by-its-port
  RemoveRules(set->port);
  for (const QosClassRule& rule : set->rule) {
    // Required: set-goes-on-and-succeeds
    if (rule.precedence != 0) {
      BCM6838X_AddQosClassificationRule(&rule);
    }
  }
  return BCM6838X_OK;
}

uint32_t BCM6838X_GetRuleTypeIndex(uint32_t type) {
  constexpr uint8_t kIndexes[] = {1, 2};
  constexpr uint32_t kTypes = sizeof(kIndexes);
  return type - 1 < kTypes ? kIndexes[type - 1] : 0;
}
