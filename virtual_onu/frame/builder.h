/// @file
/// Puts a frame together from its parts, with the lengths and checksums that belong to it. Reading
/// the words of a person is not done here.
#pragma once

#include "base/bytes.h"
#include "frame/parts.h"

namespace virtual_onu {

/// The frame, without padding.
Bytes AssembleFrame(FrameParts parts);

}  // namespace virtual_onu
