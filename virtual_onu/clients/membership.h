/// @file
/// What a membership message says: the groups that its sender joins and leaves. IGMPv1 to IGMPv3
/// (RFC 1112, 2236, 3376) and MLDv1 and MLDv2 (RFC 2710, 3810).
#pragma once

#include <vector>

#include "base/bytes.h"

namespace virtual_onu {

struct MembershipChange {
  Bytes group;  ///< 4 or 16 bytes
  bool joins = false;
  bool operator==(const MembershipChange&) const = default;
};

/// The changes that a frame asks for, in its order; none when it is no report, done or leave, or is
/// damaged. Of a report that is cut off those before the cut.
std::vector<MembershipChange> MembershipChanges(ByteView frame);

/// The MAC address of a group.
Bytes GroupMac(ByteView group);

}  // namespace virtual_onu
