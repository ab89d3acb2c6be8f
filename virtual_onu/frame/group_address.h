/// @file
/// IP multicast group addresses.
#pragma once

#include "base/bytes.h"

namespace virtual_onu {

/// Tells whether routers keep a group on its link: 224.0.0.0/24 (RFC 5771, 4) and the IPv6 scopes
/// up to that of the link (RFC 4291, 2.7).
/// @param[in] group  4 or 16 bytes, a group address
bool IsLinkLocalGroup(ByteView group);

}  // namespace virtual_onu
