/// @file
/// What a VLAN action does to the priority with which a frame came.
#pragma once

#include <cstdint>
#include <optional>

#include <brmgr_record.h>

#include "base/bytes.h"

namespace virtual_onu {

/// A frame's priority was replaced, perhaps by the same. The DSCP is never changed.
struct Remark {
  std::uint8_t pcpFrom = 0;          ///< of the outer tag as the frame came
  std::uint8_t pcpTo = 0;            ///< of the outer tag behind the action
  std::optional<std::uint8_t> dscp;  ///< of an IP packet
  bool operator==(const Remark&) const = default;
};

/// The re-mark that turned a frame into another; nothing when the action has no such operation, or
/// one of the frames no tag.
std::optional<Remark> RemarkOf(const VlanActionRule& action, ByteView before, ByteView after);

}  // namespace virtual_onu
