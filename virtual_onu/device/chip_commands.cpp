/// @file
/// The handlers of the chip's objects: classes, flows, VLAN actions, and what start-up tells.
#include "device/chip_commands.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <map>
#include <string>

#include <brmgr_cmd.h>

#include "device/free_index.h"

namespace virtual_onu {
namespace {

std::string DirName(std::uint32_t dir) {
  return dir == BRMGR_DIR_DOWNSTREAM ? "ds" : "us";
}

std::string ClassName(std::uint32_t dir, std::uint32_t icIndex) {
  return DirName(dir) + " class " + std::to_string(icIndex);
}

CommandResult NoClass(std::uint32_t dir, std::uint32_t icIndex) {
  return {ENOENT, "no " + ClassName(dir, icIndex)};
}

CommandResult NoFlow(std::uint32_t dir, std::uint32_t icIndex, std::uint32_t flowIndex) {
  return {ENOENT, "no flow " + std::to_string(flowIndex) + " in " + ClassName(dir, icIndex)};
}

CommandResult NoAction(std::uint32_t dir, std::uint32_t index) {
  return {ENOENT, "no " + DirName(dir) + " VLAN action " + std::to_string(index)};
}

/// Classes and flows know two directions; only VLAN actions take any other value as upstream.
bool IsDirection(std::uint32_t dir) {
  return dir == BRMGR_DIR_DOWNSTREAM || dir == BRMGR_DIR_UPSTREAM;
}

CommandResult BadDirection(std::uint32_t dir) {
  return {EINVAL, "direction " + std::to_string(dir) + " is neither 0 (ds) nor 1 (us)"};
}

IngressClass* FindClass(DriverState& state, std::uint32_t dir, std::uint32_t icIndex) {
  auto& classes = state.tables.of(dir).classes;
  const auto found = classes.find(icIndex);
  return found == classes.end() ? nullptr : &found->second;
}

CommandResult TellPorts(DriverState& state, DrvInitRecord& record) {
  state.ports = record;
  return {};
}

/// The value of feature switch 27 with which the aging of the MAC table is the driver's.
constexpr std::uint32_t kOwnAging = 1;

CommandResult TellFeature(DriverState& state, FeatureRecord& record) {
  state.feature = record.value;
  state.macTables.ages = record.value == kOwnAging;
  state.portTables.traps.multicastControl = record.value == 1;
  return {};
}

CommandResult CreateClass(DriverState& state, IngressClassCfg& record) {
  if (!IsDirection(record.dir)) {
    return BadDirection(record.dir);
  }
  auto& classes = state.tables.of(record.dir).classes;
  const auto index = FreeIndex(classes, state.limits.classes, record.icIndex);
  if (!index) {
    return {ENOSPC, "all " + std::to_string(state.limits.classes) + " " + DirName(record.dir) +
                        " classes are in use"};
  }
  record.icIndex = *index;
  classes[*index].cfg = record;
  return {};
}

CommandResult DeleteClass(DriverState& state, IngressClassDel& record) {
  if (!IsDirection(record.dir)) {
    return BadDirection(record.dir);
  }
  if (state.tables.of(record.dir).classes.erase(record.icIndex) == 0) {
    return NoClass(record.dir, record.icIndex);
  }
  return {};
}

CommandResult AddFlow(DriverState& state, IngressFlowRule& record) {
  if (!IsDirection(record.dir)) {
    return BadDirection(record.dir);
  }
  IngressClass* const owner = FindClass(state, record.dir, record.icIndex);
  if (owner == nullptr) {
    return NoClass(record.dir, record.icIndex);
  }
  if (record.vlanActionIndex != BRMGR_INDEX_NONE &&
      !state.tables.of(record.dir).actions.contains(record.vlanActionIndex)) {
    return NoAction(record.dir, record.vlanActionIndex);
  }
  const auto index = FreeIndex(owner->flows, state.limits.flowsPerClass);
  if (!index) {
    return {ENOSPC, ClassName(record.dir, record.icIndex) + " already holds " +
                        std::to_string(state.limits.flowsPerClass) + " flows"};
  }
  record.flowIndex = *index;
  owner->flows[*index] = record;
  return {};
}

CommandResult DeleteFlow(DriverState& state, IngressFlowDel& record) {
  if (!IsDirection(record.dir)) {
    return BadDirection(record.dir);
  }
  IngressClass* const owner = FindClass(state, record.dir, record.icIndex);
  if (owner == nullptr) {
    return NoClass(record.dir, record.icIndex);
  }
  if (owner->flows.erase(record.flowIndex) == 0) {
    return NoFlow(record.dir, record.icIndex, record.flowIndex);
  }
  std::erase_if(owner->portActions, [&record](const auto& action) {
    return action.first.flowIndex == record.flowIndex;
  });
  return {};
}

CommandResult ReadFlow(DriverState& state, IngressFlowRule& record) {
  if (!IsDirection(record.dir)) {
    return BadDirection(record.dir);
  }
  const IngressClass* const owner = FindClass(state, record.dir, record.icIndex);
  if (owner == nullptr) {
    return NoClass(record.dir, record.icIndex);
  }
  const auto flow = owner->flows.find(record.flowIndex);
  if (flow == owner->flows.end()) {
    return NoFlow(record.dir, record.icIndex, record.flowIndex);
  }
  record = flow->second;
  return {};
}

CommandResult CreateAction(DriverState& state, VlanActionRule& record) {
  auto& actions = state.tables.of(record.dir).actions;
  const auto index = FreeIndex(actions, state.limits.vlanActions);
  if (!index) {
    return {ENOSPC, "all " + std::to_string(state.limits.vlanActions) + " " + DirName(record.dir) +
                        " VLAN actions are in use"};
  }
  record.vlanActionIndex = *index;
  actions[*index] = record;
  return {};
}

/// Deletes an action even while flows name it: the driver keeps no reference counts.
// Required: named-action-may-be-deleted
CommandResult DeleteAction(DriverState& state, VlanActionDel& record) {
  if (state.tables.of(record.dir).actions.erase(record.vlanActionIndex) == 0) {
    return NoAction(record.dir, record.vlanActionIndex);
  }
  return {};
}

constexpr std::array kChipCommands = {
    kRow<BRMGR_CMD_INIT, TellPorts>,
    kRow<BRMGR_CMD_IC_CREATE, CreateClass>,
    kRow<BRMGR_CMD_IC_DEL, DeleteClass>,
    kRow<BRMGR_CMD_FLOW_ADD, AddFlow>,
    kRow<BRMGR_CMD_FLOW_DEL, DeleteFlow>,
    kRow<BRMGR_CMD_VLAN_ACTION_ADD, CreateAction>,
    kRow<BRMGR_CMD_VLAN_ACTION_DEL, DeleteAction>,
    kRow<BRMGR_CMD_QUEUE_SCHEDULE, ReadFlow>,
    kRow<BRMGR_CMD_FEATURE, TellFeature>,
};

}  // namespace

std::span<const CommandRow> ChipCommands() {
  return kChipCommands;
}

CommandResult SetPortAction(DriverState& state, std::uint32_t icIndex, const PortActionKey& key,
                            std::uint32_t vlanActionIndex) {
  IngressClass* const owner = FindClass(state, BRMGR_DIR_DOWNSTREAM, icIndex);
  if (owner == nullptr) {
    return NoClass(BRMGR_DIR_DOWNSTREAM, icIndex);
  }
  if (!owner->flows.contains(key.flowIndex)) {
    return NoFlow(BRMGR_DIR_DOWNSTREAM, icIndex, key.flowIndex);
  }
  if (vlanActionIndex == BRMGR_INDEX_NONE) {
    owner->portActions.erase(key);
    return {};
  }
  if (!state.tables.downstream.actions.contains(vlanActionIndex)) {
    return NoAction(BRMGR_DIR_DOWNSTREAM, vlanActionIndex);
  }
  owner->portActions[key] = vlanActionIndex;
  return {};
}

}  // namespace virtual_onu
