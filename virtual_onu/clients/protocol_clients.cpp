/// @file
/// The clients, one function for each.
#include "clients/protocol_clients.h"

#include <array>
#include <cstddef>

#include <bcm6838x_igmp.h>
#include <hal_bcm6838x.h>

#include "clients/group_request.h"
#include "clients/membership.h"
#include "frame/group_address.h"

namespace virtual_onu {
namespace {

constexpr std::uint32_t kWanSide = 0;
constexpr std::uint16_t kNoSlot = 0xFFFF;

std::uint32_t LengthOf(const ClientCall& call) {
  return static_cast<std::uint32_t>(call.frame.size());
}

McastGroupRequest RequestOf(const MembershipChange& change, const ClientCall& call) {
  McastGroupRequest request = GroupRequest(change.group);
  request.vlan = static_cast<std::uint16_t>(call.vid);
  request.portMask = 1U << (call.port - 1);
  return request;
}

void Change(const MembershipChange& change, const ClientCall& call) {
  const McastGroupRequest request = RequestOf(change, call);
  const bool has =
      BCM6838X_FindTargetMcastChanSlot(request.groupIpv4, request.groupIpv6, call.port) != kNoSlot;
  if (change.joins && !has) {
    BCM6838X_AddMulticastMacAddr(&request);
  } else if (!change.joins && has) {
    BCM6838X_DelMulticastMacAddr(&request);
  }
}

void ServeMulticast(const ClientCall& call) {
  constexpr std::uint32_t kMaxPort = 32;
  if (call.port >= 1 && call.port <= kMaxPort) {
    for (const MembershipChange& change : MembershipChanges(call.frame)) {
      // A group that does not leave its link needs no channel.
      if (!IsLinkLocalGroup(change.group)) {
        Change(change, call);
      }
    }
  }
  BCM6838X_DispatchIgmpPacket(call.frame.data(), LengthOf(call), call.vid, call.port);
}

void ServeSpanningTree(const ClientCall& call) {
  BCM6838X_SendPacket(call.frame.data(), LengthOf(call), 0, call.port, kWanSide);
}

/// The driver knows by the frame that it is for the WAN side; the port is the one it concerns.
void ServeRelay(const ClientCall& call) {
  BCM6838X_SendPacket(call.frame.data(), LengthOf(call), call.vid, call.port, call.port);
}

using Serve = void (*)(const ClientCall& call);
constexpr std::array<Serve, 5> kClients = {ServeMulticast, ServeMulticast, ServeSpanningTree,
                                           ServeRelay, ServeRelay};

}  // namespace

std::uint32_t ServeClient(const ClientCall& call) {
  kClients.at(static_cast<std::size_t>(call.client))(call);
  return 0;
}

}  // namespace virtual_onu
