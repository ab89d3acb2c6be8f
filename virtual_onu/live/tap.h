/// @file
/// TAP interfaces of Linux: creation or attachment, in this network namespace or in a named one.
#pragma once

#include <string>
#include <string_view>

#include "live/frame_end.h"

namespace virtual_onu {

/// Attaches to a TAP interface, creates it when there is none of that name, and sets it up. One
/// that was created goes with the end.
/// @param[in] text   how messages and reports call the interface
/// @param[in] place  "NAME", or "NAME@NETNS" for a network namespace as `ip netns` names them
FrameEnd OpenTap(const std::string& text, std::string_view place);

}  // namespace virtual_onu
