/// @file
/// What the chip does to a frame: classification by ingress classes and flows, VLAN actions,
/// outcome. It only reads the chip's tables; who fills them is the device's matter.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/bytes.h"
#include "datapath/group_table.h"
#include "datapath/limits.h"
#include "datapath/mac_bridge.h"
#include "datapath/outcome.h"
#include "datapath/port.h"
#include "datapath/port_statistics.h"
#include "datapath/ports.h"
#include "datapath/queue_counts.h"
#include "datapath/remark.h"
#include "device/chip_tables.h"

namespace virtual_onu {

struct ReceivedFrame;

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

/// One key of a flow held against the frame.
struct KeyComparison {
  std::string key;  ///< field of the flow record, "outerVid"; or "unknown key"
  std::string flowValue;
  std::string frameValue;  ///< "none" when the frame has no such field
  bool equal = false;
};

struct FlowTrial {
  std::uint32_t flowIndex = 0;
  std::vector<KeyComparison> keys;
  bool matched = false;
};

struct ClassTrial {
  std::uint32_t icIndex = 0;
  std::uint32_t priority = 0;
  std::uint32_t fieldMask = 0;
  std::vector<FlowTrial> flows;  ///< up to and including the one that matched
};

struct Explanation {
  Verdict verdict;
  std::vector<ClassTrial> classes;       ///< in the order tried
  std::vector<std::string> actionSteps;  ///< the operations of the VLAN action, in words
};

/// Frames counted by where they were offered and what became of them. Copies that did not leave,
/// and those for the mirror port, are counted at the port that they were to leave by.
struct OutcomeCount {
  PortId port;
  Outcome outcome = Outcome::NoFlow;
  std::uint64_t frames = 0;
  std::uint64_t octets = 0;
};

/// Frames that crossed a port.
struct PortCount {
  std::uint64_t framesIn = 0;
  std::uint64_t octetsIn = 0;
  std::uint64_t framesOut = 0;  ///< mirrored copies too
  std::uint64_t octetsOut = 0;
  bool operator==(const PortCount&) const = default;
};

/// Names a flow of the direction at hand.
struct FlowId {
  std::uint32_t icIndex = 0;
  std::uint32_t flowIndex = 0;
};

class DataPath {
 public:
  /// @param[in] limits  without them nothing is policed or limited
  /// @param[in] bridge  without it nothing is learned, and every destination is unknown
  /// @param[in] groups  null: multicast frames take the way of others
  DataPath(const ChipTables& tables, Ports ports, std::optional<Limits> limits = std::nullopt,
           std::optional<MacBridge> bridge = std::nullopt, const McastGroups* groups = nullptr);

  /// Takes a frame in at a port and counts it.
  /// @param[in] port  any; a UNI port that the unit does not have gives the outcome unknown_port
  Verdict offer(PortId port, ByteView frame);

  /// Lets a frame that the library sends leave by a port, as it is, and counts it.
  /// @param[in] port  any; one that the unit does not have gives the outcome unknown_port
  Transmittal transmit(PortId port, ByteView frame);

  /// Counts what became of a trapped frame's event, at the port where the frame was offered.
  void countEvent(PortId port, Outcome outcome, std::size_t octets) {
    count(port, outcome, octets);
  }

  /// Says what offer() would do and why, and changes nothing.
  [[nodiscard]] Explanation explain(PortId port, ByteView frame) const;

  /// What was counted so far, ordered by port (the WAN side first) and outcome; only what occurred.
  [[nodiscard]] std::vector<OutcomeCount> counters() const;
  [[nodiscard]] PortCount portCount(PortId port) const;
  /// What the policer of a UNI port holds now, in octets; nothing when it has none.
  [[nodiscard]] std::optional<std::uint64_t> policerTokens(std::uint32_t uni) const {
    return limits_ ? limits_->policerTokens(uni) : std::nullopt;
  }
  /// The queues by which frames left: those that their flow named.
  [[nodiscard]] const QueueCounts& queueCounts() const { return queueCounts_; }
  /// Counts what crosses the UNI ports in the chip's counters too.
  void countInto(PortStatistics statistics) { statistics_ = std::move(statistics); }
  /// Clears what counters(), portCount() and queueCounts() tell.
  void clearCounters();

  [[nodiscard]] const Ports& ports() const { return ports_; }
  [[nodiscard]] std::uint32_t uniPorts() const { return ports_.uniPorts(); }

 private:
  [[nodiscard]] Verdict decide(PortId port, ByteView frame, Explanation* explanation) const;
  /// Returns the flow that decided, or null.
  const IngressFlowRule* classify(const ReceivedFrame& received, Verdict& verdict,
                                  Explanation* explanation) const;
  /// @param[in] frame  as it was offered
  void forward(PortId port, ByteView frame, const IngressFlowRule& flow, Verdict& verdict,
               Explanation* explanation) const;
  /// Holds the source of a frame behind its flow's action against the MAC table; says whether it
  /// passes.
  [[nodiscard]] bool admit(PortId port, ByteView frame, Verdict& verdict) const;
  /// Sends a frame where its destination is, or else where its direction leads.
  void route(PortId port, ByteView frame, Verdict& verdict, Explanation* explanation) const;
  void switchLocally(PortId port, PortId to, const FlowId& flow, Verdict& verdict) const;
  /// The group whose entries decide about a frame: of a downstream one that no flow traps or drops.
  [[nodiscard]] std::optional<GroupId> steeredGroup(PortId port, const FrameHeaders& headers,
                                                    const Verdict& verdict) const;
  /// Lets a frame leave by the ports that joined its group.
  void forwardGroup(PortId port, ByteView frame, const GroupId& group, Verdict& verdict) const;
  [[nodiscard]] Delivery treatGroup(const GroupMember& member, const GroupId& group,
                                    ByteView frame) const;
  [[nodiscard]] std::vector<PortId> destinationsOf(std::uint32_t dir) const;
  /// Lets the frame leave by those of the ports that are open to it and take it.
  /// @param[in] flow  the downstream flow that brings it to UNI ports
  void leave(PortId from, const std::vector<PortId>& destinations, const FlowId& flow,
             Verdict& verdict) const;
  /// Closes a port to a frame that it may not leave by; says whether it did.
  [[nodiscard]] bool close(PortId from, PortId to, Verdict& verdict) const;
  /// Delivers a frame as it leaves by a port, unless the port's limit holds it back.
  void deliver(PortId from, Delivery delivery, Verdict& verdict) const;
  /// The frame as a downstream flow and the port's VLAN configuration let it leave by a port;
  /// nothing when the port does not take it.
  [[nodiscard]] std::optional<Delivery> treat(PortId to, ByteView frame, const FlowId& flow) const;
  /// The downstream flow that brings a frame to a UNI port, as if it came back from the WAN side.
  [[nodiscard]] std::optional<FlowId> wayBack(PortId to, ByteView frame) const;
  /// Holds a frame against the policer that its flow names, if any; says whether it passes.
  [[nodiscard]] bool police(const IngressFlowRule& flow, Verdict& verdict) const;
  /// Holds a frame that came from the WAN side against the downstream limit of the port.
  [[nodiscard]] bool isWithinLimit(PortId from, const Delivery& delivery) const;
  void mirror(PortId port, bool received, ByteView frame, Verdict& verdict) const;
  void count(PortId port, Outcome outcome, std::size_t octets);
  void countLimits(PortId port, std::size_t octets, const Verdict& verdict);
  void countDepartures(const Verdict& verdict);
  void countCrossings(PortId port, std::size_t octets, const Verdict& verdict);

  const ChipTables& tables_;
  Ports ports_;
  std::optional<Limits> limits_;
  std::map<std::pair<PortId, Outcome>, OutcomeCount> counters_;
  std::map<PortId, PortCount> portCounts_;
  QueueCounts queueCounts_;
  std::optional<MacBridge> bridge_;
  std::optional<PortStatistics> statistics_;
  const McastGroups* groups_;
};

}  // namespace virtual_onu
