/// @file
/// Writing of the chip's tables and of the shell's objects as lines.
#include "hal/vlan/chip_content.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>

#include <brmgr_record.h>

#include "device/records.h"

namespace hal_test {

namespace {

using virtual_onu::Bytes;
using virtual_onu::DirectionTables;

template <typename Record>
std::string Text(const char* name, const Record& record) {
  Bytes bytes(sizeof(record));
  std::memcpy(bytes.data(), &record, sizeof(record));
  std::string text = name;
  for (const auto& field : virtual_onu::DecodeRecord(*virtual_onu::FindRecord(name), bytes)) {
    text += field.zero ? "" : " " + field.name + "=" + field.value;
  }
  return text;
}

std::string ActionText(const DirectionTables& tables, std::uint32_t index) {
  const auto found = tables.actions.find(index);
  if (found == tables.actions.end()) {
    return "no action";
  }
  VlanActionRule action = found->second;
  action.vlanActionIndex = BRMGR_INDEX_NONE;
  return Text("VlanActionRule", action);
}

std::string FlowText(const DirectionTables& tables, IngressFlowRule flow) {
  const std::string action = ActionText(tables, flow.vlanActionIndex);
  flow.flowIndex = BRMGR_INDEX_NONE;
  flow.vlanActionIndex = BRMGR_INDEX_NONE;
  return Text("IngressFlowRule", flow) + " with " + action;
}

void AddDirection(const DirectionTables& tables, std::vector<std::string>& lines) {
  for (const auto& [icIndex, owner] : tables.classes) {
    for (const auto& [index, flow] : owner.flows) {
      lines.push_back(FlowText(tables, flow));
    }
    for (const auto& [key, action] : owner.portActions) {
      lines.push_back("port action of UNI " + std::to_string(key.uni) + " " +
                      ActionText(tables, action) + " on " +
                      FlowText(tables, owner.flows.at(key.flowIndex)));
    }
  }
  for (const auto& [index, action] : tables.actions) {
    lines.push_back(ActionText(tables, index));
  }
}

}  // namespace

std::vector<std::string> ChipContent(virtual_onu::Unit& unit) {
  std::vector<std::string> lines;
  AddDirection(unit.device().tables().upstream, lines);
  AddDirection(unit.device().tables().downstream, lines);
  const virtual_onu::PathObjects& objects = unit.shell().objects();
  for (const auto& [name, vlan] : objects.vlans) {
    std::string line = "VLAN object " + name + " on " + vlan.portObject + ":";
    for (const std::uint16_t vid : vlan.vids) {
      line += " " + std::to_string(vid);
    }
    lines.push_back(line);
  }
  std::ranges::transform(objects.transparentPorts, std::back_inserter(lines),
                         [](std::uint32_t uni) { return "transparent " + std::to_string(uni); });
  std::ranges::sort(lines);
  return lines;
}

}  // namespace hal_test
