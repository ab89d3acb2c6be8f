/// @file
/// The VLAN rules of the UNI ports as they apply to one frame: which frames of which port and
/// direction are forwarded, and with which tag.
#include <cstddef>
#include <cstdint>

#include <hal_bcm6838x.h>

#include "bcm6838x_vlan_config.h"
#include "hal_bcm6838x_find.h"
#include "hal_bcm6838x_frame.h"
#include "hal_bcm6838x_log.h"
#include "hal_bcm6838x_ports.h"

using namespace hal;

namespace {

constexpr uint32_t kForward = 0;
constexpr uint32_t kDrop = 1;

/// A frame in front of its port's rule.
struct RuledFrame {
  uint8_t* data;
  uint32_t* size;
  TagRead tag;
  const PortVlanInfo& port;
};

/// The first entry of a list with a match, or null.
// Required: frame-rules-visit-free-entries
template <typename Entry, typename Matches>
const Entry* FirstMatch(const Entry (&list)[kVlanListEntries], Matches matches) {
  constexpr size_t kBlock = 64;
  static_assert(kVlanListEntries % kBlock == 0);
  for (size_t start = 0; start < kVlanListEntries; start += kBlock) {
    // Without an exit inside the block, so that the compiler compares several entries at once.
    uint32_t hits = 0;
    for (size_t i = 0; i < kBlock; ++i) {
      hits |= matches(list[start + i]) ? 1U : 0U;
    }
    for (size_t i = start; hits != 0 && i < start + kBlock; ++i) {
      if (matches(list[i])) {
        return &list[i];
      }
    }
  }
  return nullptr;
}

uint32_t Forward(const RuledFrame& /*frame*/) {
  return kForward;
}

uint32_t Drop(const RuledFrame& /*frame*/) {
  return kDrop;
}

uint32_t Push(const RuledFrame& frame, uint32_t vid, uint32_t priority) {
  const uint32_t before = *frame.size;
  BCM6838X_AddVlanTag(frame.data, frame.size, vid, priority);
  return *frame.size != before ? kForward : kDrop;
}

uint32_t PushPvid(const RuledFrame& frame) {
  return Push(frame, frame.port.pvid, frame.port.priority);
}

// Required: unremovable-tag-forwards
uint32_t Pop(const RuledFrame& frame) {
  BCM6838X_RemoveVlanTag(frame.data, frame.size);
  return kForward;
}

uint32_t ForwardTrunkMember(const RuledFrame& frame) {
  const auto* const entry = FirstMatch(frame.port.trunkList, [&](const PortVlanTrunkEntry& one) {
    return one.vid == frame.tag.vid;
  });
  return entry != nullptr ? kForward : kDrop;
}

// Required: untranslated-frame-forwards
uint32_t Rewrite(const RuledFrame& frame, uint32_t vid, uint32_t priority) {
  if (frame.tag.count != 0) {
    BCM6838X_TranslateVlanTag(frame.data, vid, priority);
  }
  return kForward;
}

uint32_t TranslateUpstream(const RuledFrame& frame) {
  const auto* const entry =
      FirstMatch(frame.port.translationList,
                 [&](const PortVlanTransEntry& one) { return one.localVid == frame.tag.vid; });
  return entry != nullptr ? Rewrite(frame, entry->netVid, entry->usPriority) : kDrop;
}

uint32_t TranslateDownstream(const RuledFrame& frame) {
  const auto* const entry =
      FirstMatch(frame.port.translationList,
                 [&](const PortVlanTransEntry& one) { return one.netVid == frame.tag.vid; });
  return entry != nullptr ? Rewrite(frame, entry->localVid, entry->dsPriority) : kDrop;
}

uint32_t PushServiceTag(const RuledFrame& frame) {
  constexpr uint32_t kStacked = 2;
  const auto* const entry = FirstMatch(frame.port.stackingList, [&](const PortVlanStackEntry& one) {
    // Required: frame-rules-ignore-list-port
    return one.cvid == frame.tag.vid && one.stackParam == kStacked;
  });
  return entry != nullptr ? Push(frame, entry->svid, 0) : kDrop;
}

uint32_t PopServiceTag(const RuledFrame& frame) {
  const auto* const entry = FirstMatch(frame.port.stackingList, [&](const PortVlanStackEntry& one) {
    return one.svid == frame.tag.vid;
  });
  return entry != nullptr ? Pop(frame) : kDrop;
}

using Treatment = uint32_t (*)(const RuledFrame& frame);

/// What happens in one mode to the frames of one kind and to all others. The kind is, upstream,
/// a tagged frame and, downstream, one tagged with the port's PVID.
struct ModeRule {
  uint32_t mode;
  Treatment ofKind;
  Treatment other;
};

constexpr ModeRule kUpstreamRules[] = {
    {BCM6838X_VLAN_MODE_TRANSPARENT, Forward, Forward},
    {BCM6838X_VLAN_MODE_TAG, Drop, PushPvid},
    {BCM6838X_VLAN_MODE_TRANSLATION, TranslateUpstream, PushPvid},
    {BCM6838X_VLAN_MODE_TRANSLATION_2, TranslateUpstream, PushPvid},
    {BCM6838X_VLAN_MODE_TRUNK, ForwardTrunkMember, PushPvid},
    {BCM6838X_VLAN_MODE_ZTE_TRUNK, ForwardTrunkMember, ForwardTrunkMember},
    {BCM6838X_VLAN_MODE_HYBRID, ForwardTrunkMember, PushPvid},
    {BCM6838X_VLAN_MODE_ZTE_STACKING, PushPvid, PushPvid},
    {BCM6838X_VLAN_MODE_BDCOM_STACKING, PushServiceTag, PushPvid},
};

constexpr ModeRule kDownstreamRules[] = {
    {BCM6838X_VLAN_MODE_TRANSPARENT, Forward, Forward},
    {BCM6838X_VLAN_MODE_TAG, Pop, Drop},
    {BCM6838X_VLAN_MODE_TRANSLATION, Pop, TranslateDownstream},
    {BCM6838X_VLAN_MODE_TRANSLATION_2, Pop, TranslateDownstream},
    {BCM6838X_VLAN_MODE_TRUNK, Pop, ForwardTrunkMember},
    {BCM6838X_VLAN_MODE_ZTE_TRUNK, ForwardTrunkMember, ForwardTrunkMember},
    {BCM6838X_VLAN_MODE_HYBRID, Pop, ForwardTrunkMember},
    {BCM6838X_VLAN_MODE_ZTE_STACKING, Pop, Drop},
    {BCM6838X_VLAN_MODE_BDCOM_STACKING, Pop, PopServiceTag},
};

template <size_t count>
uint32_t Apply(const ModeRule (&rules)[count], const RuledFrame& frame, bool ofKind) {
  const ModeRule* const found =
      FirstOf(rules, [&frame](const ModeRule& rule) { return rule.mode == frame.port.vlanMode; });
  if (found != nullptr) {
    return (ofKind ? found->ofKind : found->other)(frame);
  }
  HAL_LOG(LOG_LEVEL_TRACE, "CTC mode : PORTCFG_CTCMODE_NONE\r\n");
  return kDrop;
}

/// Whether the unit has the port on one side of a frame that has no port on its other side.
bool UnitHasPort(uint32_t port, uint32_t other) {
  return other != 0 || IsUpToLastEthPort(port);
}

}  // namespace

// The rules write through both pointers.
// NOLINTNEXTLINE(readability-non-const-parameter)
uint32_t hal::AccordFrame(uint8_t* frame, uint32_t* size, uint32_t srcPort, uint32_t desPort) {
  const uint32_t source = UniPort(srcPort);
  const uint32_t destination = UniPort(desPort);
  if (!UnitHasPort(destination, source) || !UnitHasPort(source, destination)) {
    return kDrop;
  }
  const uint32_t port = source != 0 ? source : destination;
  if (!IsInTables(port)) {
    HAL_LOG_AS("BCM6838X_AccordVlan", LOG_LEVEL_INVALID, "%s(%d), port %u is out of range\r\n",
               port);
    return kDrop;
  }
  if (*size > kFrameCapacity) {
    HAL_LOG_AS("BCM6838X_AccordVlan", LOG_LEVEL_INVALID,
               "%s(%d), frame of %u bytes is too long\r\n", *size);
    return kDrop;
  }
  const RuledFrame ruled = {frame, size, ReadTag({frame, *size}), g_PortVlanInfo[port - 1]};
  if (source != 0) {
    return Apply(kUpstreamRules, ruled, ruled.tag.count != 0);
  }
  return Apply(kDownstreamRules, ruled, ruled.tag.count != 0 && ruled.tag.vid == ruled.port.pvid);
}

uint32_t BCM6838X_AccordVlan(uint8_t* frame, RdpaPkt* desc, uint32_t srcPort, uint32_t desPort) {
  if (HAL_IS_NULL(frame, desc)) {
    return BCM6838X_INVALID;
  }
  return AccordFrame(frame, &desc->size, srcPort, desPort);
}
