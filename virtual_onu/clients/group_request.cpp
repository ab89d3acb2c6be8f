/// @file
/// Requests for multicast channels.
#include "clients/group_request.h"

#include <algorithm>
#include <iterator>

#include "clients/membership.h"

namespace virtual_onu {

McastGroupRequest GroupRequest(ByteView group) {
  McastGroupRequest request = {};
  std::ranges::copy(GroupMac(group), std::begin(request.groupMac));
  std::ranges::copy(group, group.size() == sizeof(request.groupIpv4)
                               ? std::begin(request.groupIpv4)
                               : std::begin(request.groupIpv6));
  return request;
}

}  // namespace virtual_onu
