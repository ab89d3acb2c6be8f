/// @file
/// Counts what became of frames: by port and outcome, by the ports they crossed, by queue, and in
/// the counter records of the chip.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "base/bytes.h"
#include "datapath/outcome.h"
#include "datapath/port_id.h"
#include "datapath/port_statistics.h"
#include "datapath/queue_counts.h"
#include "datapath/verdict.h"

namespace virtual_onu {

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

class FrameCounters {
 public:
  /// Counts a frame that was offered at a port.
  /// @param[in] entered  the port let it in
  void countOffered(PortId port, ByteView frame, bool entered, const Verdict& verdict);

  /// Counts a frame that the library sent by a port.
  void countTransmitted(PortId port, ByteView frame, const Transmittal& transmittal);

  /// Counts one outcome of a frame at a port.
  void countOutcome(PortId port, Outcome outcome, std::size_t octets);

  /// Counts what crosses the UNI ports in the chip's counters too.
  void countInto(PortStatistics statistics) { statistics_ = std::move(statistics); }

  /// What was counted so far, ordered by port (the WAN side first) and outcome; only what occurred.
  [[nodiscard]] std::vector<OutcomeCount> outcomes() const;
  [[nodiscard]] PortCount portCount(PortId port) const;
  /// The queues by which frames left: those that their flow named.
  [[nodiscard]] const QueueCounts& queues() const { return queues_; }

  /// Clears all but the chip's counters.
  void clear();

 private:
  void countCopies(const std::vector<MirrorCopy>& copies);
  void countDeparture(PortId by, std::size_t octets);

  std::map<std::pair<PortId, Outcome>, OutcomeCount> outcomes_;
  std::map<PortId, PortCount> ports_;
  QueueCounts queues_;
  std::optional<PortStatistics> statistics_;
};

}  // namespace virtual_onu
