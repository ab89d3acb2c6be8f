/// @file
/// What a UNI port's VLAN configuration says of a downstream frame: whether the port takes it, and
/// with which tags it leaves.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <brmgr_record.h>

#include "base/bytes.h"
#include "frame/headers.h"

namespace virtual_onu {

/// "trunk" for 4, "none" for 255; "mode 7" for a code that is none.
std::string VlanModeName(std::uint32_t mode);

/// A port's rule for one frame.
struct PortVlanRule {
  bool admits = false;
  std::string_view reason;         ///< "VID is the PVID", "no rule for this frame", ...
  void (*edit)(Bytes&) = nullptr;  ///< the port's tag treatment; null: the frame stays as it is
};

/// Finds the rule of a port for a frame with these tags.
/// @param[in] uni  number of the port, from 1; entries of the stacking list carry it
PortVlanRule FindPortVlanRule(const PortVlanInfo& info, std::uint32_t uni,
                              const FrameHeaders& headers);

/// Tells whether an entry of the stacking list is one that its port builds.
bool IsBuilt(const PortVlanStackEntry& entry, std::uint32_t uni);

/// The customer VID of an entry of the stacking list.
std::uint16_t VidOf(const PortVlanStackEntry& entry);

}  // namespace virtual_onu
