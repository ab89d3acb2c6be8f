/// @file
/// Rendering of VLAN configurations.
#include "report/vlan_config_report.h"

#include <algorithm>
#include <span>

#include "datapath/port_vlan_rule.h"
#include "language/words.h"
#include "report/chip_report.h"

namespace onu {

namespace {

constexpr std::uint16_t kVidMask = 0xFFF;

/// An entry is free when all its fields are zero.
template <typename Entry>
bool IsUsed(const Entry& entry) {
  return std::ranges::any_of(BytesOf(entry), [](std::uint8_t byte) { return byte != 0; });
}

/// What `render` makes of each used entry of a list.
template <typename Entry, std::size_t size, typename Render>
auto RenderUsed(const Entry (&list)[size], Render render) {
  std::vector<decltype(render(list[0]))> rendered;
  for (const Entry& entry : list) {
    if (IsUsed(entry)) {
      rendered.push_back(render(entry));
    }
  }
  return rendered;
}

Json ToJson(const PortVlanTransEntry& entry) {
  return {{"localVid", entry.localVid},
          {"netVid", entry.netVid},
          {"usPriority", entry.usPriority},
          {"dsPriority", entry.dsPriority}};
}

Json ToJson(const PortVlanStackEntry& entry) {
  return {{"cvid", entry.cvid}, {"svid", entry.svid}, {"stackParam", entry.stackParam}};
}

std::string ToText(const PortVlanTransEntry& entry) {
  return std::to_string(entry.localVid) + "<->" + std::to_string(entry.netVid) + " (up " +
         std::to_string(entry.usPriority) + ", down " + std::to_string(entry.dsPriority) + ")";
}

std::string ToText(const PortVlanStackEntry& entry) {
  return std::to_string(entry.cvid & kVidMask) + " in " + std::to_string(entry.svid) +
         (entry.stackParam == 2 ? "" : " (parameter " + std::to_string(entry.stackParam) + ")");
}

std::string Line(const std::string& name, const Words& entries) {
  return entries.empty() ? "" : name + " " + Join(entries, ", ") + "\n";
}

}  // namespace

Json VlanConfigToJson(const PortVlanInfo& info) {
  const auto toJson = [](const auto& entry) { return ToJson(entry); };
  return {{"mode", virtual_onu::VlanModeName(info.vlanMode)},
          {"vlanMode", info.vlanMode},
          {"pvid", info.pvid},
          {"priority", info.priority},
          {"tpid", info.tpid},
          {"stackingEnable", info.stackingEnable},
          {"trunkList",
           RenderUsed(info.trunkList, [](const PortVlanTrunkEntry& entry) { return entry.vid; })},
          {"translationList", RenderUsed(info.translationList, toJson)},
          {"stackingList", RenderUsed(info.stackingList, toJson)}};
}

std::string VlanConfigToText(const PortVlanInfo& info) {
  const auto toText = [](const auto& entry) { return ToText(entry); };
  return "mode " + virtual_onu::VlanModeName(info.vlanMode) + "\nPVID " +
         std::to_string(info.pvid) + " priority " + std::to_string(info.priority) + "\n" +
         Line("trunk list", RenderUsed(info.trunkList,
                                       [](const PortVlanTrunkEntry& entry) {
                                         return std::to_string(entry.vid);
                                       })) +
         Line("translation list", RenderUsed(info.translationList, toText)) +
         Line("stacking list", RenderUsed(info.stackingList, toText));
}

}  // namespace onu
