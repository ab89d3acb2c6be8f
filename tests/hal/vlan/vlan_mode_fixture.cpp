/// @file
/// Starting the library and listing the device.
#include "hal/vlan/vlan_mode_fixture.h"

#include <algorithm>
#include <iterator>

#include <brmgr_record.h>
#include <hal_bcm6838x.h>

namespace hal_test {

namespace {

using virtual_onu::DirectionTables;

using Lines = std::vector<std::string>;

/// Class of the unit's own traffic in both directions, and the default downstream action.
constexpr std::uint32_t kOwnTrafficClass = 2;
constexpr std::uint32_t kDefaultAction = 0;

std::string Number(std::uint32_t value) {
  return value == BRMGR_INDEX_NONE ? "none" : std::to_string(value);
}

std::string FlowLine(const std::string& dir, const IngressFlowRule& flow) {
  std::string line = dir + " flow " + Number(flow.icIndex) + "." + Number(flow.flowIndex) +
                     " vid " + Number(flow.outerVid);
  if (dir == "us") {
    line += " pbit " + Number(flow.outerPbit);
  }
  line += " tags " + Number(flow.vlanNum);
  return dir == "us" ? line + " action " + Number(flow.vlanActionIndex) : line;
}

void AddFlows(const std::string& dir, const DirectionTables& tables, Lines& lines) {
  for (const auto& [icIndex, content] : tables.classes) {
    for (const auto& [index, flow] : content.flows) {
      if (icIndex != kOwnTrafficClass) {
        lines.push_back(FlowLine(dir, flow));
      }
    }
  }
}

void AddActions(const std::string& dir, const DirectionTables& tables, Lines& lines) {
  for (const auto& [index, action] : tables.actions) {
    if (dir == "us" || index != kDefaultAction) {
      lines.push_back(dir + " action " + Number(index) + " vid " + Number(action.tag[0].vid) +
                      " pbit " + Number(action.tag[0].pbit));
    }
  }
}

void AddPortActions(const DirectionTables& tables, Lines& lines) {
  for (const auto& [icIndex, content] : tables.classes) {
    for (const auto& [key, action] : content.portActions) {
      lines.push_back("port action " + Number(icIndex) + "." + Number(key.flowIndex) + " uni " +
                      Number(key.uni) + " action " + Number(action));
    }
  }
}

}  // namespace

Lines DeviceContent(virtual_onu::Unit& unit) {
  const virtual_onu::ChipTables& tables = unit.device().tables();
  Lines lines;
  AddFlows("us", tables.upstream, lines);
  AddFlows("ds", tables.downstream, lines);
  AddActions("us", tables.upstream, lines);
  AddActions("ds", tables.downstream, lines);
  AddPortActions(tables.downstream, lines);
  return lines;
}

void VlanModeTest::SetUp() {
  ASSERT_EQ(BCM6838X_Init(), 0U);
  ASSERT_EQ(device(), Lines());
  forget();
}

Lines VlanModeTest::leftWith(const std::string& prefix) const {
  Lines found;
  std::ranges::copy_if(leftBriefly(), std::back_inserter(found),
                       [&prefix](const std::string& line) { return line.starts_with(prefix); });
  return found;
}

}  // namespace hal_test
