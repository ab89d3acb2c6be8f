/// @file
/// Frames as the tables write them, "500.0+10.3", made and read by the packet library.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vlan_modes {

/// A UDP frame with the tags, outermost first; "untagged" has none. The innermost tag has TPID
/// 8100, one around it may have 88a8.
std::vector<std::uint8_t> MakeFrame(const std::string& tags);

/// The tags of a frame, written the same way; "damaged" when what is behind them is not the UDP
/// datagram of MakeFrame, or a TPID is none.
std::string ReadTags(const std::vector<std::uint8_t>& bytes);

}  // namespace vlan_modes
