/// @file
/// A port's configuration and its upstream flows, both as the set of frames that they let in.
#include <algorithm>
#include <array>
#include <compare>
#include <set>
#include <tuple>

#include <bcm6838x_vlan_port.h>

#include "consistency/consistency.h"
#include "consistency/vlan_flows.h"
#include "datapath/port_vlan_rule.h"
#include "device/port_tables.h"

namespace virtual_onu {
namespace {

/// Frames that an upstream flow of a port lets in.
struct Admitted {
  std::uint32_t tags = 0;
  std::uint32_t vid = kAnyVid;
  std::strong_ordering operator<=>(const Admitted& other) const {
    return std::tie(tags, vid) <=> std::tie(other.tags, other.vid);
  }
};

using AdmittedSet = std::set<Admitted>;

constexpr Admitted kUntagged = {0, kAnyVid};

AdmittedSet AnyFrame(const PortVlanInfo& /*info*/, std::uint32_t /*uni*/) {
  return {kUntagged, {1, kAnyVid}, {2, kAnyVid}};
}

AdmittedSet Untagged(const PortVlanInfo& /*info*/, std::uint32_t /*uni*/) {
  return {kUntagged};
}

AdmittedSet UpToOneTag(const PortVlanInfo& /*info*/, std::uint32_t /*uni*/) {
  return {kUntagged, {1, kAnyVid}};
}

AdmittedSet TrunkList(const PortVlanInfo& info, std::uint32_t /*uni*/) {
  AdmittedSet admitted;
  for (const PortVlanTrunkEntry& entry : info.trunkList) {
    if (entry.vid != 0) {
      admitted.insert({1, entry.vid});
    }
  }
  return admitted;
}

AdmittedSet UntaggedAndTrunkList(const PortVlanInfo& info, std::uint32_t uni) {
  AdmittedSet admitted = TrunkList(info, uni);
  admitted.insert(kUntagged);
  return admitted;
}

AdmittedSet UntaggedAndTranslations(const PortVlanInfo& info, std::uint32_t /*uni*/) {
  AdmittedSet admitted = {kUntagged};
  for (const PortVlanTransEntry& entry : info.translationList) {
    if (entry.localVid != 0 && entry.netVid != 0) {
      admitted.insert({1, entry.localVid});
    }
  }
  return admitted;
}

AdmittedSet UntaggedAndCustomers(const PortVlanInfo& info, std::uint32_t uni) {
  AdmittedSet admitted = {kUntagged};
  for (const PortVlanStackEntry& entry : info.stackingList) {
    if (IsBuilt(entry, uni)) {
      admitted.insert({1, VidOf(entry)});
    }
  }
  return admitted;
}

struct ModeRow {
  std::uint32_t mode;
  AdmittedSet (*admitted)(const PortVlanInfo& info, std::uint32_t uni);
};

constexpr std::array kModes = {
    ModeRow{BCM6838X_VLAN_MODE_TRANSPARENT, AnyFrame},
    ModeRow{BCM6838X_VLAN_MODE_TAG, Untagged},
    ModeRow{BCM6838X_VLAN_MODE_TRANSLATION, UntaggedAndTranslations},
    ModeRow{BCM6838X_VLAN_MODE_TRANSLATION_2, UntaggedAndTranslations},
    ModeRow{BCM6838X_VLAN_MODE_TRUNK, UntaggedAndTrunkList},
    ModeRow{BCM6838X_VLAN_MODE_ZTE_TRUNK, TrunkList},
    ModeRow{BCM6838X_VLAN_MODE_HYBRID, UntaggedAndTrunkList},
    ModeRow{BCM6838X_VLAN_MODE_ZTE_STACKING, UpToOneTag},
    ModeRow{BCM6838X_VLAN_MODE_BDCOM_STACKING, UntaggedAndCustomers},
};

AdmittedSet AdmittedByConfiguration(const PortVlanInfo& info, std::uint32_t uni) {
  const auto* const row = std::ranges::find(kModes, info.vlanMode, &ModeRow::mode);
  return row == kModes.end() ? AdmittedSet() : row->admitted(info, uni);
}

AdmittedSet AdmittedByFlows(std::uint32_t uni, const ChipTables& chip) {
  AdmittedSet admitted;
  for (const auto& [icIndex, ingressClass] : chip.upstream.classes) {
    const std::uint32_t mask = ingressClass.cfg.fieldMask;
    for (const auto& [flowIndex, flow] : ingressClass.flows) {
      if (!IsVlanFlow(flow) || flow.ingressPort != DevicePortOf(uni)) {
        continue;
      }
      const std::uint32_t vid = (mask & BRMGR_KEY_OUTER_VID) != 0 ? flow.outerVid : kAnyVid;
      if ((mask & BRMGR_KEY_VLAN_NUM) != 0) {
        admitted.insert({flow.vlanNum, vid});
      } else {
        admitted.insert({{0, vid}, {1, vid}, {2, vid}});
      }
    }
  }
  return admitted;
}

std::string Text(const Admitted& admitted) {
  return admitted.tags == 0 ? "untagged frames"
                            : "frames of " + VidText(admitted.vid) + " with " +
                                  std::to_string(admitted.tags) + " tags";
}

}  // namespace

std::vector<std::string> CompareWithConfiguration(const PortVlanInfo& info, std::uint32_t uni,
                                                  const ChipTables& chip) {
  const AdmittedSet configured = AdmittedByConfiguration(info, uni);
  const AdmittedSet flows = AdmittedByFlows(uni, chip);
  std::vector<std::string> differences;
  for (const Admitted& admitted : configured) {
    if (!flows.contains(admitted)) {
      differences.push_back(Text(admitted) + " are configured, but no flow lets them in");
    }
  }
  for (const Admitted& admitted : flows) {
    if (!configured.contains(admitted)) {
      differences.push_back("a flow lets " + Text(admitted) + " in, which are not configured");
    }
  }
  return differences;
}

}  // namespace virtual_onu
