/// @file
/// Fills the chip's tables in a test, one object a call, and has the ports' links in its hand.
#pragma once

#include <cstdint>
#include <set>

#include <brmgr_record.h>

#include "datapath/ports.h"
#include "device/chip_tables.h"
#include "device/port_tables.h"

namespace virtual_onu {

constexpr std::uint32_t kUp = BRMGR_DIR_UPSTREAM;
constexpr std::uint32_t kDown = BRMGR_DIR_DOWNSTREAM;

struct ChipBuilder {
  ChipTables tables;
  PortTables portTables;
  std::set<std::uint32_t> linksDown;  ///< UNI port numbers

  [[nodiscard]] Ports ports(std::uint32_t uniPorts) const {
    return {portTables, uniPorts, [this](std::uint32_t uni) { return !linksDown.contains(uni); }};
  }

  void addClass(std::uint32_t dir, std::uint32_t icIndex, std::uint32_t fieldMask,
                std::uint32_t priority) {
    IngressClassCfg cfg = {};
    cfg.type = 2;
    cfg.fieldMask = fieldMask;
    cfg.priority = priority;
    cfg.dir = dir;
    cfg.icIndex = icIndex;
    tables.of(dir).classes[icIndex].cfg = cfg;
  }

  /// A flow that passes every frame with key values of 0; the test edits what it needs.
  IngressFlowRule& addFlow(std::uint32_t dir, std::uint32_t icIndex, std::uint32_t flowIndex) {
    IngressFlowRule flow = {};
    flow.forward = BRMGR_FORWARD_PASS;
    flow.dir = dir;
    flow.icIndex = icIndex;
    flow.flowIndex = flowIndex;
    flow.vlanActionIndex = BRMGR_INDEX_NONE;
    flow.policer = BRMGR_INDEX_NONE;
    return tables.of(dir).classes.at(icIndex).flows[flowIndex] = flow;
  }

  /// One class without keys and one flow in it: every frame of the direction matches.
  IngressFlowRule& addMatchAll(std::uint32_t dir) {
    addClass(dir, 0, 0, 1);
    return addFlow(dir, 0, 0);
  }

  VlanActionRule& addAction(std::uint32_t dir, std::uint32_t index, std::uint32_t cmd,
                            VlanTagSpec tag = {}) {
    VlanActionRule action = {};
    action.cmd = cmd;
    action.tag[0] = tag;
    action.dir = dir;
    action.vlanActionIndex = index;
    return tables.of(dir).actions[index] = action;
  }
};

}  // namespace virtual_onu
