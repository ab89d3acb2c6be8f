/// @file
/// The table of outcomes.
#include "datapath/outcome.h"

#include <array>
#include <cstddef>

namespace virtual_onu {
namespace {

constexpr std::array kOutcomes = {
    OutcomeInfo{Outcome::FlowForward, "flow_forward", Disposition::Forward,
                "a flow matched and forwards the frame"},
    OutcomeInfo{Outcome::FlowTrap, "flow_trap", Disposition::Trap,
                "a flow matched and hands the frame to the unit itself"},
    OutcomeInfo{Outcome::FlowAccessControl, "flow_access_control", Disposition::Drop,
                "an access-control flow matched"},
    OutcomeInfo{Outcome::GroupForward, "group_forward", Disposition::Forward,
                "ports have joined the frame's multicast group in its VLAN"},
    OutcomeInfo{Outcome::NoClass, "no_class", Disposition::Drop,
                "the direction has no ingress class"},
    OutcomeInfo{Outcome::NoFlow, "no_flow", Disposition::Drop,
                "no flow of any class of the direction matched"},
    OutcomeInfo{Outcome::UnknownDecision, "unknown_decision", Disposition::Drop,
                "the matching flow's forwarding decision is none of pass, trap and access control"},
    OutcomeInfo{Outcome::UnknownVlanAction, "unknown_vlan_action", Disposition::Drop,
                "the matching flow names a VLAN action that does not exist"},
    OutcomeInfo{Outcome::RuntFrame, "runt_frame", Disposition::Drop,
                "the frame is shorter than an Ethernet header"},
    OutcomeInfo{Outcome::TruncatedTag, "truncated_tag", Disposition::Drop,
                "the frame ends inside a VLAN tag or before the EtherType behind it"},
    OutcomeInfo{Outcome::UnknownPort, "unknown_port", Disposition::Drop,
                "the unit has no such UNI port"},
    OutcomeInfo{Outcome::PortAdminDown, "port_admin_down", Disposition::Drop,
                "the UNI port that the frame came to is administratively down"},
    OutcomeInfo{Outcome::PortLinkDown, "port_link_down", Disposition::Drop,
                "the UNI port that the frame came to has no link"},
    OutcomeInfo{Outcome::Policed, "policed", Disposition::Drop,
                "the matching flow's policer has not enough tokens for the frame"},
    OutcomeInfo{Outcome::MacFiltered, "mac_filtered", Disposition::Drop,
                "the source address is blocked at the UNI port that the frame came to"},
    OutcomeInfo{Outcome::MacBoundElsewhere, "mac_bound_elsewhere", Disposition::Drop,
                "the source address is bound to another port"},
    OutcomeInfo{Outcome::MacLimitReached, "mac_limit_reached", Disposition::Drop,
                "the source address is new, and the UNI port has as many as it may learn"},
    OutcomeInfo{Outcome::NoGroupMember, "no_group_member", Disposition::Drop,
                "no port has joined the frame's multicast group in its VLAN"},
    OutcomeInfo{Outcome::NoEgress, "no_egress", Disposition::Drop,
                "every port that the frame was to leave by is closed to it"},
    OutcomeInfo{Outcome::EgressAdminDown, "egress_admin_down", Disposition::Drop,
                "of a copy: the UNI port that it was to leave by is administratively down"},
    OutcomeInfo{Outcome::EgressLinkDown, "egress_link_down", Disposition::Drop,
                "of a copy: the UNI port that it was to leave by has no link"},
    OutcomeInfo{Outcome::EgressIsolated, "egress_isolated", Disposition::Drop,
                "of a copy: the UNI port that it was to leave by is isolated "
                "from the one it came to"},
    OutcomeInfo{
        Outcome::EgressMacFiltered, "egress_mac_filtered", Disposition::Drop,
        "of a copy: the destination address is blocked at the UNI port that it was to leave by"},
    OutcomeInfo{Outcome::EgressVlanFilter, "egress_vlan_filter", Disposition::Drop,
                "of a copy: the VLAN configuration of the UNI port that it was to leave by "
                "has no rule for it"},
    OutcomeInfo{Outcome::EgressRateLimited, "egress_rate_limited", Disposition::Drop,
                "of a copy: the downstream rate limit of the UNI port that it was to leave by "
                "has not enough tokens"},
    OutcomeInfo{Outcome::Mirrored, "mirrored", Disposition::Forward,
                "of a copy: it left by the mirror port"},
    OutcomeInfo{Outcome::ProtocolTrap, "protocol_trap", Disposition::Trap,
                "the driver traps frames of its protocol and hands the frame to the library"},
    OutcomeInfo{Outcome::EventTooLong, "event_too_long", Disposition::Drop,
                "of a trapped frame's event: the frame is longer than an event holds"},
    OutcomeInfo{Outcome::EventQueueFull, "event_queue_full", Disposition::Drop,
                "of a trapped frame's event: too many events wait for the library"},
    OutcomeInfo{Outcome::EventNoReader, "event_no_reader", Disposition::Drop,
                "of a trapped frame's event: the library has not opened the device"},
    OutcomeInfo{Outcome::Transmitted, "transmitted", Disposition::Forward,
                "of a frame that the library sends: it left by the port"},
};

constexpr bool InOrderOfTheEnumeration() {
  for (std::size_t i = 0; i < kOutcomes.size(); ++i) {
    if (static_cast<std::size_t>(kOutcomes.at(i).outcome) != i) {
      return false;
    }
  }
  return true;
}
static_assert(InOrderOfTheEnumeration(), "Describe() finds an outcome by its number");

constexpr std::array<std::string_view, 3> kDispositions = {"forward", "trap", "drop"};

}  // namespace

std::span<const OutcomeInfo> AllOutcomes() {
  return kOutcomes;
}

const OutcomeInfo& Describe(Outcome outcome) {
  return kOutcomes.at(static_cast<std::size_t>(outcome));
}

std::string_view Name(Disposition disposition) {
  return kDispositions.at(static_cast<std::size_t>(disposition));
}

}  // namespace virtual_onu
