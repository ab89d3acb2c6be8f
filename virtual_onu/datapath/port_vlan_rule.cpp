/// @file
/// The modes as a table, and the rule of each.
#include "datapath/port_vlan_rule.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <vector>

#include <bcm6838x_vlan_port.h>

#include "frame/frame.h"

namespace virtual_onu {
namespace {

constexpr std::uint16_t kVidMask = 0xFFF;

/// The value of an entry's stackParam with which it is built.
constexpr std::uint32_t kBuiltStackParam = 2;

/// A frame that a rule is asked about.
struct Asked {
  const PortVlanInfo& info;
  std::uint32_t uni;
  const std::vector<VlanTag>& tags;

  [[nodiscard]] bool hasTags(std::size_t count) const { return tags.size() == count; }
  [[nodiscard]] std::uint16_t outerVid() const { return tags.front().vid; }
};

void RemoveOuterTag(Bytes& frame) {
  PopTag(frame);
}

constexpr PortVlanRule kNoRule = {false, "no rule for this frame", nullptr};

PortVlanRule Transparent(const Asked& /*asked*/) {
  return {true, "transparent", nullptr};
}

PortVlanRule Access(const Asked& asked) {
  if (asked.hasTags(1) && asked.outerVid() == asked.info.pvid) {
    return {true, "VID is the PVID", RemoveOuterTag};
  }
  return kNoRule;
}

PortVlanRule InTrunkList(const Asked& asked) {
  const auto listed = [&](const PortVlanTrunkEntry& entry) {
    // Required: egress-ignores-free-entries
    return entry.vid != 0 && entry.vid == asked.outerVid();
  };
  if (asked.hasTags(1) && std::ranges::any_of(asked.info.trunkList, listed)) {
    return {true, "VID is in the trunk list", nullptr};
  }
  return kNoRule;
}

PortVlanRule Hybrid(const Asked& asked) {
  const PortVlanRule access = Access(asked);
  return access.admits ? access : InTrunkList(asked);
}

/// The VID itself is the matter of the action that the port has on the flow.
PortVlanRule Translation(const Asked& asked) {
  const PortVlanRule access = Access(asked);
  if (access.admits || !asked.hasTags(1)) {
    return access;
  }
  const auto listed = [&](const PortVlanTransEntry& entry) {
    return entry.localVid != 0 && entry.netVid != 0 && entry.netVid == asked.outerVid();
  };
  if (std::ranges::any_of(asked.info.translationList, listed)) {
    return {true, "VID is the network side of a translation", nullptr};
  }
  return kNoRule;
}

PortVlanRule ZteStacking(const Asked& asked) {
  if ((asked.hasTags(1) || asked.hasTags(2)) && asked.outerVid() == asked.info.pvid) {
    return {true, "outer VID is the PVID", RemoveOuterTag};
  }
  return kNoRule;
}

PortVlanRule BdcomStacking(const Asked& asked) {
  const PortVlanRule access = Access(asked);
  if (access.admits || !asked.hasTags(2)) {
    return access;
  }
  const auto listed = [&](const PortVlanStackEntry& entry) {
    return IsBuilt(entry, asked.uni) && entry.svid == asked.outerVid() &&
           VidOf(entry) == asked.tags[1].vid;
  };
  if (std::ranges::any_of(asked.info.stackingList, listed)) {
    return {true, "VIDs are in the stacking list", RemoveOuterTag};
  }
  return kNoRule;
}

PortVlanRule NoMode(const Asked& /*asked*/) {
  return {false, "the port has no VLAN mode", nullptr};
}

struct ModeRow {
  std::uint32_t mode;
  PortVlanRule (*find)(const Asked& asked);
};

constexpr std::array kModes = {
    ModeRow{BCM6838X_VLAN_MODE_TRANSPARENT, Transparent},
    ModeRow{BCM6838X_VLAN_MODE_TAG, Access},
    ModeRow{BCM6838X_VLAN_MODE_TRANSLATION, Translation},
    ModeRow{BCM6838X_VLAN_MODE_TRANSLATION_2, Translation},
    ModeRow{BCM6838X_VLAN_MODE_TRUNK, Hybrid},
    ModeRow{BCM6838X_VLAN_MODE_ZTE_TRUNK, InTrunkList},
    ModeRow{BCM6838X_VLAN_MODE_HYBRID, Hybrid},
    ModeRow{BCM6838X_VLAN_MODE_ZTE_STACKING, ZteStacking},
    ModeRow{BCM6838X_VLAN_MODE_BDCOM_STACKING, BdcomStacking},
    ModeRow{BCM6838X_VLAN_MODE_NONE, NoMode},
};

const ModeRow* FindMode(std::uint32_t mode) {
  const auto* const found = std::ranges::find(kModes, mode, &ModeRow::mode);
  return found == kModes.end() ? nullptr : found;
}

}  // namespace

// A branch a mode: both of translation have one name.
// NOLINTBEGIN(bugprone-branch-clone)
std::string VlanModeName(std::uint32_t mode) {
  switch (mode) {
#define RETURN_NAME(code, name, text) \
  case code:                          \
    return text;
    BCM6838X_VLAN_MODE_LIST(RETURN_NAME)
#undef RETURN_NAME
    default:
      return "mode " + std::to_string(mode);
  }
}
// NOLINTEND(bugprone-branch-clone)

PortVlanRule FindPortVlanRule(const PortVlanInfo& info, std::uint32_t uni,
                              const FrameHeaders& headers) {
  const ModeRow* const row = FindMode(info.vlanMode);
  const Asked asked = {info, uni, headers.tags};
  return row != nullptr ? row->find(asked) : NoMode(asked);
}

bool IsBuilt(const PortVlanStackEntry& entry, std::uint32_t uni) {
  return entry.stackParam == kBuiltStackParam && entry.port == uni && entry.cvid != 0 &&
         entry.svid != 0;
}

std::uint16_t VidOf(const PortVlanStackEntry& entry) {
  return static_cast<std::uint16_t>(entry.cvid & kVidMask);
}

}  // namespace virtual_onu
