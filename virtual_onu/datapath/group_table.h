/// @file
/// The multicast group entries at work: which downstream frames they decide about, and the ports
/// that joined a frame's group.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/bytes.h"
#include "datapath/port_id.h"
#include "device/chip_tables.h"
#include "device/mac_tables.h"
#include "frame/headers.h"

namespace virtual_onu {

/// A group as its entries name it.
struct GroupId {
  Bytes address;  ///< 4 or 16 bytes
  MacBytes mac = {};
  std::uint16_t vid = 0;
  bool operator==(const GroupId&) const = default;

  /// "233.252.0.1 in VLAN 100".
  [[nodiscard]] std::string text() const;
};

/// What the group entries said of a frame.
struct GroupDecision {
  GroupId group;
  std::vector<std::uint32_t> entries;  ///< channel indexes of those that forward it, by port
  bool operator==(const GroupDecision&) const = default;
};

/// A port that joined a group.
struct GroupMember {
  PortId port;
  std::uint32_t channelIndex = 0;
  std::uint32_t vlanActionIndex = BRMGR_INDEX_NONE;
};

/// The group of an IP multicast frame; nothing for any other frame, and for the groups of the link
/// itself: 224.0.0.0/24 (RFC 5771, 4) and the IPv6 scopes up to that of the link (RFC 4291, 2.7).
std::optional<GroupId> GroupOf(const FrameHeaders& headers);

/// The address that an entry names; nothing when it names its group by the MAC address alone.
Bytes GroupAddressOf(const McastGroupEntry& entry);

/// The ports that joined a group, in order. Of several entries of a port the first one counts.
std::vector<GroupMember> MembersOf(const McastGroups& groups, const GroupId& group);

}  // namespace virtual_onu
