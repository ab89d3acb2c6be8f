/// @file
/// Reading the headers of Ethernet frames, and editing their VLAN tags. All reads stay inside the
/// frame.
#pragma once

#include <cstdint>

#include "base/bytes.h"
#include "frame/headers.h"

namespace virtual_onu {

enum class FrameFault : std::uint8_t { None, Runt, TruncatedTag };

/// Parses a frame. On a fault the headers hold what stood before it.
FrameFault ParseFrame(ByteView frame, FrameHeaders& headers);

/// Puts a tag in front of all others; of its numbers count the low 3 bits of `pcp` and the low 12
/// of `vid`. A frame without two whole addresses is left alone.
void PushTag(Bytes& frame, const VlanTag& tag);

/// Edits of the outer tag; each returns false, and leaves the frame alone, when there is no whole
/// tag with an EtherType behind it. The setters keep the tag's other fields.
bool PopTag(Bytes& frame);
bool SetOuterVid(Bytes& frame, std::uint16_t vid);
bool SetOuterPcp(Bytes& frame, std::uint8_t pcp);

}  // namespace virtual_onu
