/// @file
/// How the records of the chip's objects begin: all zero but for the direction and the indexes that
/// name nothing yet. What a flow or an action is for is set by who builds it.
#ifndef HAL_BCM6838X_OBJECT_H
#define HAL_BCM6838X_OBJECT_H

#include <cstdint>

#include <brmgr_record.h>

namespace hal {

/// An ingress class whose flows compare the keys of `fieldMask`.
constexpr IngressClassCfg BeginClass(uint32_t dir, uint32_t fieldMask, uint32_t priority) {
  constexpr uint32_t kClassType = 2;
  IngressClassCfg record = {};
  record.type = kClassType;
  record.fieldMask = fieldMask;
  record.priority = priority;
  record.dir = dir;
  return record;
}

/// A flow of a class, without a VLAN action and a policer.
constexpr IngressFlowRule BeginFlow(uint32_t dir, uint32_t icIndex, uint32_t forward) {
  IngressFlowRule record = {};
  record.forward = forward;
  record.dir = dir;
  record.icIndex = icIndex;
  record.flowIndex = BRMGR_INDEX_NONE;
  record.vlanActionIndex = BRMGR_INDEX_NONE;
  record.policer = BRMGR_INDEX_NONE;
  return record;
}

/// A VLAN action that does the tag operations of `cmd`.
constexpr VlanActionRule BeginAction(uint32_t dir, uint32_t cmd) {
  VlanActionRule record = {};
  record.cmd = cmd;
  record.dir = dir;
  record.vlanActionIndex = BRMGR_INDEX_NONE;
  return record;
}

}  // namespace hal

#endif
