/// @file
/// Finding groups and members.
#include "datapath/group_table.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <span>

#include "base/text.h"
#include "frame/group_address.h"

namespace virtual_onu {
namespace {

constexpr std::size_t kIpv4Size = 4;

/// The first octets of the MAC addresses of groups (RFC 1112, 6.4; RFC 2464, 7).
constexpr std::array<std::uint8_t, 3> kIpv4MacPrefix = {0x01, 0x00, 0x5E};
constexpr std::array<std::uint8_t, 2> kIpv6MacPrefix = {0x33, 0x33};

bool StartsWith(std::span<const std::uint8_t> bytes, std::span<const std::uint8_t> prefix) {
  return std::ranges::equal(bytes.first(prefix.size()), prefix);
}

bool IsIpv4Group(const FrameHeaders& headers) {
  constexpr std::uint8_t kClassMask = 0xF0;
  constexpr std::uint8_t kClassD = 0xE0;
  return StartsWith(headers.dstMac, kIpv4MacPrefix) && (headers.dstIp[0] & kClassMask) == kClassD;
}

bool IsIpv6Group(const FrameHeaders& headers) {
  constexpr std::uint8_t kGroup = 0xFF;
  return StartsWith(headers.dstMac, kIpv6MacPrefix) && headers.dstIp[0] == kGroup;
}

bool IsRoutedGroup(const FrameHeaders& headers) {
  if (headers.dstIp.empty()) {
    return false;
  }
  const bool isGroup =
      headers.dstIp.size() == kIpv4Size ? IsIpv4Group(headers) : IsIpv6Group(headers);
  return isGroup && !IsLinkLocalGroup(headers.dstIp);
}

bool Names(const McastGroupEntry& entry, const GroupId& group) {
  if (entry.vlan != group.vid) {
    return false;
  }
  const Bytes address = GroupAddressOf(entry);
  return address.empty() ? std::ranges::equal(entry.groupMac, group.mac) : address == group.address;
}

bool IsZero(std::span<const std::uint8_t> bytes) {
  return std::ranges::all_of(bytes, [](std::uint8_t byte) { return byte == 0; });
}

}  // namespace

std::string GroupId::text() const {
  return FormatIp(address) + " in VLAN " + std::to_string(vid);
}

std::optional<GroupId> GroupOf(const FrameHeaders& headers) {
  if (!IsRoutedGroup(headers)) {
    return std::nullopt;
  }
  const std::uint16_t vid = headers.tags.empty() ? std::uint16_t{0} : headers.tags.front().vid;
  return GroupId{headers.dstIp, headers.dstMac, vid};
}

Bytes GroupAddressOf(const McastGroupEntry& entry) {
  if (!IsZero(entry.groupIpv4)) {
    return {std::begin(entry.groupIpv4), std::end(entry.groupIpv4)};
  }
  if (!IsZero(entry.groupIpv6)) {
    return {std::begin(entry.groupIpv6), std::end(entry.groupIpv6)};
  }
  return {};
}

std::vector<GroupMember> MembersOf(const McastGroups& groups, const GroupId& group) {
  std::map<PortId, GroupMember> members;
  for (const auto& [index, entry] : groups) {
    if (Names(entry, group)) {
      const PortId port = PortId::Uni(entry.port);
      members.try_emplace(port, GroupMember{port, index, entry.vlanActionIndex});
    }
  }
  std::vector<GroupMember> list;
  std::ranges::transform(members, std::back_inserter(list),
                         [](const auto& member) { return member.second; });
  return list;
}

}  // namespace virtual_onu
