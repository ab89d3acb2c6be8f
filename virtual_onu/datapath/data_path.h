/// @file
/// What the chip does to a frame: classification by ingress classes and flows, VLAN actions,
/// outcome. Of the chip's tables it changes only the MAC table, by learning; who fills the others
/// is the device's matter.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "base/bytes.h"
#include "datapath/egress.h"
#include "datapath/explanation.h"
#include "datapath/frame_counters.h"
#include "datapath/group_table.h"
#include "datapath/mac_bridge.h"
#include "datapath/port_id.h"
#include "datapath/port_statistics.h"
#include "datapath/ports.h"
#include "datapath/rate_limits.h"
#include "datapath/verdict.h"
#include "device/chip_tables.h"

namespace virtual_onu {

struct ReceivedFrame;

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
    counters_.countOutcome(port, outcome, octets);
  }

  /// Says what offer() would do and why, and changes nothing.
  [[nodiscard]] Explanation explain(PortId port, ByteView frame) const;

  /// What was counted since the start or the last clear.
  [[nodiscard]] const FrameCounters& counters() const { return counters_; }
  /// Clears what counters() tells.
  void clearCounters() { counters_.clear(); }
  /// Counts what crosses the UNI ports in the chip's counters too.
  void countInto(PortStatistics statistics) { counters_.countInto(std::move(statistics)); }

  /// What the policer of a UNI port holds now, in octets; nothing when it has none.
  [[nodiscard]] std::optional<std::uint64_t> policerTokens(std::uint32_t uni) const {
    return limits_ ? limits_->policerTokens(uni) : std::nullopt;
  }
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
  [[nodiscard]] std::vector<PortId> destinationsOf(std::uint32_t dir) const;
  /// The downstream flow that brings a frame to a UNI port, as if it came back from the WAN side.
  [[nodiscard]] std::optional<FlowId> wayBack(PortId to, ByteView frame) const;
  /// Holds a frame against the policer that its flow names, if any; says whether it passes.
  [[nodiscard]] bool police(const IngressFlowRule& flow, Verdict& verdict) const;
  /// Notes what a frame that passed takes of its limits. Frames that a limit held back take
  /// nothing.
  void chargeLimits(PortId port, std::size_t octets, const Verdict& verdict);
  [[nodiscard]] Egress egress() const;

  const ChipTables& tables_;
  Ports ports_;
  std::optional<Limits> limits_;
  std::optional<MacBridge> bridge_;
  const McastGroups* groups_;
  FrameCounters counters_;
};

}  // namespace virtual_onu
