/// @file
/// From the text that names the end of a link to the end.
#pragma once

#include <string>

#include "live/frame_end.h"

namespace virtual_onu {

/// Opens what a text names: "tap:NAME", "tap:NAME@NETNS" or "fd:N". Throws a LiveError that begins
/// with the text.
FrameEnd OpenFrameEnd(const std::string& text);

}  // namespace virtual_onu
