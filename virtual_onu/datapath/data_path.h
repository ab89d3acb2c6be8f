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
#include "datapath/outcome.h"
#include "datapath/port.h"
#include "device/chip_tables.h"

namespace virtual_onu {

struct ReceivedFrame;

/// What becomes of one frame.
struct Verdict {
  Outcome outcome = Outcome::NoFlow;
  std::uint32_t dir = 0;                   ///< direction word: 0 downstream, 1 upstream
  std::optional<std::uint32_t> icIndex;    ///< the class that decided
  std::optional<std::uint32_t> flowIndex;  ///< the flow that decided
  /// The action applied; with the outcome unknown_vlan_action the one that does not exist.
  std::optional<std::uint32_t> vlanActionIndex;
  std::optional<std::uint32_t> queue;  ///< of a forwarded frame
  Bytes frame;  ///< the frame as it leaves or is trapped; the frame as offered when dropped
  std::vector<PortId> egress;  ///< where it leaves; empty when trapped or dropped
  bool operator==(const Verdict&) const = default;
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

/// Frames counted by where they were offered and what became of them.
struct OutcomeCount {
  PortId port;
  Outcome outcome = Outcome::NoFlow;
  std::uint64_t frames = 0;
  std::uint64_t octets = 0;
};

class DataPath {
 public:
  DataPath(const ChipTables& tables, std::uint32_t uniPorts);

  /// Takes a frame in at a port and counts it.
  /// @param[in] port  any; a UNI port that the unit does not have gives the outcome unknown_port
  Verdict offer(PortId port, ByteView frame);

  /// Says what offer() would do and why, and changes nothing.
  [[nodiscard]] Explanation explain(PortId port, ByteView frame) const;

  /// What was counted so far, ordered by port (the WAN side first) and outcome; only what occurred.
  [[nodiscard]] std::vector<OutcomeCount> counters() const;
  void clearCounters();

  [[nodiscard]] std::uint32_t uniPorts() const { return uniPorts_; }

 private:
  [[nodiscard]] Verdict decide(PortId port, ByteView frame, Explanation* explanation) const;
  void classify(const ReceivedFrame& received, Verdict& verdict, Explanation* explanation) const;
  void forward(const DirectionTables& tables, const IngressFlowRule& flow, Verdict& verdict,
               Explanation* explanation) const;
  [[nodiscard]] std::vector<PortId> egressOf(std::uint32_t dir) const;

  const ChipTables& tables_;
  std::uint32_t uniPorts_;
  std::map<std::pair<PortId, Outcome>, OutcomeCount> counters_;
};

}  // namespace virtual_onu
