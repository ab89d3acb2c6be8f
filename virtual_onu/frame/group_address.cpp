/// @file
/// The scopes of groups.
#include "frame/group_address.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace virtual_onu {

bool IsLinkLocalGroup(ByteView group) {
  constexpr std::size_t kIpv4Size = 4;
  constexpr std::array<std::uint8_t, 3> kLocalControl = {224, 0, 0};
  constexpr unsigned kScopeMask = 0x0F;
  constexpr unsigned kLinkScope = 2;
  return group.size() == kIpv4Size
             ? std::ranges::equal(group.first(kLocalControl.size()), kLocalControl)
             : (group[1] & kScopeMask) <= kLinkScope;
}

}  // namespace virtual_onu
