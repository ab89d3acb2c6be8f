/// @file
/// The named outcomes of a frame. The names are stable: people, counters, JSON and tests rely on
/// them.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace virtual_onu {

enum class Disposition : std::uint8_t { Forward, Trap, Drop };

enum class Outcome : std::uint8_t {
  FlowForward,
  FlowTrap,
  FlowAccessControl,
  GroupForward,
  NoClass,
  NoFlow,
  UnknownDecision,
  UnknownVlanAction,
  RuntFrame,
  TruncatedTag,
  UnknownPort,
  PortAdminDown,
  PortLinkDown,
  Policed,
  MacFiltered,
  MacBoundElsewhere,
  MacLimitReached,
  NoGroupMember,
  NoEgress,
  EgressAdminDown,
  EgressLinkDown,
  EgressIsolated,
  EgressMacFiltered,
  EgressVlanFilter,
  EgressRateLimited,
  Mirrored,
  ProtocolTrap,
  EventTooLong,
  EventQueueFull,
  EventNoReader,
  Transmitted
};

struct OutcomeInfo {
  Outcome outcome;
  std::string_view name;  ///< "flow_forward", "no_flow", ...
  Disposition disposition;
  std::string_view text;
};

/// All outcomes, in the order of the enumeration.
std::span<const OutcomeInfo> AllOutcomes();

const OutcomeInfo& Describe(Outcome outcome);

/// "forward", "trap" or "drop".
std::string_view Name(Disposition disposition);

}  // namespace virtual_onu
