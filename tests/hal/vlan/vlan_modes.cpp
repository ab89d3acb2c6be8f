/// @file
/// Lists and calls of the VLAN modes.
#include "hal/vlan/vlan_modes.h"

#include <algorithm>
#include <ostream>
#include <stdexcept>

namespace hal_test {

VlanList<PortVlanTrunkEntry> TrunkList(std::uint32_t port, std::uint32_t entries) {
  VlanList<PortVlanTrunkEntry> list = {};
  for (std::uint32_t v = 0; v < entries; ++v) {
    list.at(v) = {static_cast<std::uint8_t>(port), 0, static_cast<std::uint16_t>(100 + v)};
  }
  return list;
}

VlanList<PortVlanTransEntry> TranslationList(std::uint32_t port, std::uint32_t entries) {
  VlanList<PortVlanTransEntry> list = {};
  for (std::uint32_t v = 0; v < entries; ++v) {
    list.at(v) = {static_cast<std::uint8_t>(port),     0, 6,
                  static_cast<std::uint16_t>(100 + v), 5, static_cast<std::uint16_t>(300 + v)};
  }
  return list;
}

VlanList<PortVlanStackEntry> StackingList(std::uint32_t port, std::uint32_t entries) {
  VlanList<PortVlanStackEntry> list = {};
  for (std::uint32_t v = 0; v < entries; ++v) {
    list.at(v) = {static_cast<std::uint8_t>(port),    {}, 2, 100 + v, 0,
                  static_cast<std::uint16_t>(300 + v)};
  }
  return list;
}

void PrintTo(const VlanMode& mode, std::ostream* out) {
  *out << mode.name;
}

const std::vector<VlanMode>& VlanModes() {
  using Number = std::uint32_t;
  static const std::vector<VlanMode> modes = {
      {"Transparent", [](Number port, Number /*n*/) { return BCM6838X_AddUsTransparent(port); },
       [](Number port, Number /*n*/) { return BCM6838X_DelUsTransparent(port); }},
      {"Tag", [](Number port, Number /*n*/) { return BCM6838X_AddUsTag(port, kPvid, kPriority); },
       [](Number port, Number /*n*/) { return BCM6838X_DelUsTag(port, kPvid, kPriority); }},
      {"ZteTrunk",
       [](Number port, Number n) {
         return BCM6838X_AddUsZTETrunk(port, TrunkList(port, n).data());
       },
       [](Number port, Number n) {
         return BCM6838X_DelUsZTETrunk(port, TrunkList(port, n).data());
       }},
      {"Hybrid",
       [](Number port, Number n) {
         return BCM6838X_AddUsHybrid(port, kPvid, kPriority, TrunkList(port, n).data());
       },
       [](Number port, Number n) {
         return BCM6838X_DelUsHybrid(port, kPvid, kPriority, TrunkList(port, n).data());
       }},
      {"Translation",
       [](Number port, Number n) {
         return BCM6838X_AddUsTranslation(port, kPvid, kPriority, TranslationList(port, n).data());
       },
       [](Number port, Number n) {
         return BCM6838X_DelUsTranslation(port, kPvid, kPriority, TranslationList(port, n).data());
       }},
      {"ZteStacking",
       [](Number port, Number /*n*/) { return BCM6838X_AddUsZTEStacking(port, kPvid, kPriority); },
       [](Number port, Number /*n*/) { return BCM6838X_DelUsZTEStacking(port, kPvid, kPriority); }},
      {"BdcomStacking",
       [](Number port, Number n) {
         return BCM6838X_AddUsBDCOMStacking(port, kPvid, kPriority, StackingList(port, n).data());
       },
       [](Number port, Number n) {
         return BCM6838X_DelUsBDCOMStacking(port, kPvid, kPriority, StackingList(port, n).data());
       }},
  };
  return modes;
}

const VlanMode& ModeOf(const std::string& name) {
  const auto found = std::ranges::find(VlanModes(), name, &VlanMode::name);
  if (found == VlanModes().end()) {
    throw std::out_of_range("no VLAN mode " + name);
  }
  return *found;
}

}  // namespace hal_test
