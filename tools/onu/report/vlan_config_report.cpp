/// @file
/// Rendering of VLAN configurations.
#include "report/vlan_config_report.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include "datapath/port_vlan_rule.h"
#include "language/words.h"
#include "report/chip_report.h"
#include "report/report_table.h"

namespace onu {

namespace {

constexpr std::uint16_t kVidMask = 0xFFF;

/// An entry is free when all its fields are zero.
template <typename Entry>
bool IsUsed(const Entry& entry) {
  return std::ranges::any_of(BytesOf(entry), [](std::uint8_t byte) { return byte != 0; });
}

Cell CellOf(const PortVlanTrunkEntry& entry) {
  return entry.vid;
}

Cell CellOf(const PortVlanTransEntry& entry) {
  return {{{"localVid", entry.localVid},
           {"netVid", entry.netVid},
           {"usPriority", entry.usPriority},
           {"dsPriority", entry.dsPriority}},
          std::to_string(entry.localVid) + "<->" + std::to_string(entry.netVid) + " (up " +
              std::to_string(entry.usPriority) + ", down " + std::to_string(entry.dsPriority) +
              ")"};
}

Cell CellOf(const PortVlanStackEntry& entry) {
  return {
      {{"cvid", entry.cvid}, {"svid", entry.svid}, {"stackParam", entry.stackParam}},
      std::to_string(entry.cvid & kVidMask) + " in " + std::to_string(entry.svid) +
          (entry.stackParam == 2 ? "" : " (parameter " + std::to_string(entry.stackParam) + ")")};
}

/// The used entries of a list; people read nothing of a list without.
template <typename Entry, std::size_t size>
Result ReportList(const std::string& name, const Entry (&list)[size]) {
  Json values = Json::array();
  Words texts;
  for (const Entry& entry : list) {
    if (IsUsed(entry)) {
      const Cell cell = CellOf(entry);
      values.push_back(cell.json);
      texts.push_back(cell.text);
    }
  }
  return {values, texts.empty() ? "" : name + " " + Join(texts, ", ") + "\n"};
}

}  // namespace

Result ReportVlanConfig(const PortVlanInfo& info) {
  const std::string mode = virtual_onu::VlanModeName(info.vlanMode);
  return Result()
      .add("mode", mode, "mode " + mode + "\n")
      .add("vlanMode", info.vlanMode)
      .add("pvid", info.pvid, "PVID " + std::to_string(info.pvid))
      .add("priority", info.priority, " priority " + std::to_string(info.priority) + "\n")
      .add("tpid", info.tpid)
      .add("stackingEnable", info.stackingEnable)
      .add("trunkList", ReportList("trunk list", info.trunkList))
      .add("translationList", ReportList("translation list", info.translationList))
      .add("stackingList", ReportList("stacking list", info.stackingList));
}

}  // namespace onu
