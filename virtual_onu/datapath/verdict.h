/// @file
/// What becomes of a frame, port by port.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/bytes.h"
#include "datapath/group_table.h"
#include "datapath/mac_bridge.h"
#include "datapath/outcome.h"
#include "datapath/port_id.h"
#include "datapath/remark.h"

namespace virtual_onu {

/// A frame as it leaves by one port.
struct Delivery {
  PortId port;
  std::string rule;  ///< why the port takes it, "VID is the PVID"; empty when no rule was asked
  /// The port's own VLAN action on the deciding flow, or that of its group entry, which then edited
  /// the frame.
  std::optional<std::uint32_t> vlanActionIndex;
  std::vector<std::string> steps;  ///< what was done to the frame for this port, in words
  Bytes frame;
  bool operator==(const Delivery&) const = default;
};

/// A port that a frame was to leave by and did not.
struct ClosedPort {
  PortId port;
  Outcome outcome = Outcome::EgressLinkDown;
  bool operator==(const ClosedPort&) const = default;
};

/// A copy of a frame for the mirror port.
struct MirrorCopy {
  PortId port;            ///< the mirror port
  PortId of;              ///< the port that is mirrored
  bool received = false;  ///< the frame came to that port; else it left by it
  Outcome outcome = Outcome::Mirrored;
  Bytes frame;
  bool operator==(const MirrorCopy&) const = default;
};

/// What becomes of one frame.
struct Verdict {
  Outcome outcome = Outcome::NoFlow;
  std::uint32_t dir = 0;                   ///< direction word: 0 downstream, 1 upstream
  std::optional<std::uint32_t> icIndex;    ///< the class that decided
  std::optional<std::uint32_t> flowIndex;  ///< the flow that decided
  /// The action applied; with the outcome unknown_vlan_action the one that does not exist.
  std::optional<std::uint32_t> vlanActionIndex;
  std::optional<std::uint32_t> queue;  ///< of a forwarded frame
  /// The UNI port whose policer the flow names; that port may have none.
  std::optional<std::uint32_t> policer;
  /// What that policer holds behind the frame, in octets; nothing when the port has none.
  std::optional<std::uint64_t> policerTokens;
  /// What the flow's VLAN action did to the frame's priority, if it re-marks.
  std::optional<Remark> remark;
  /// The addresses as the MAC table knows them, of a frame that it was asked about.
  std::optional<FrameAddresses> addresses;
  /// What of the MAC table sent the frame to its port, or refused it.
  std::optional<MacDecision> macDecision;
  /// What the group entries said of a multicast frame.
  std::optional<GroupDecision> groupDecision;
  /// The UNI port that the frame is switched to locally, as it came.
  std::optional<PortId> neighbour;
  /// The frame behind the flow's action, before the treatment of the ports; the frame as offered
  /// when it was trapped or dropped before that.
  Bytes frame;
  /// The type of the event that a trapped frame becomes.
  std::optional<std::uint32_t> eventType;
  /// Why that event did not reach the library; nothing when it did, or when none was to.
  std::optional<Outcome> eventLoss;
  std::vector<Delivery> deliveries;  ///< where it leaves; empty when trapped or dropped
  std::vector<ClosedPort> closed;    ///< where it was to leave and did not
  std::vector<MirrorCopy> copies;
  bool operator==(const Verdict&) const = default;

  /// The ports of the deliveries.
  [[nodiscard]] std::vector<PortId> egress() const;
};

/// What becomes of a frame that the library sends.
struct Transmittal {
  Outcome outcome = Outcome::Transmitted;
  std::vector<MirrorCopy> copies;
};

}  // namespace virtual_onu
