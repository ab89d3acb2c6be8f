/// @file
/// Counts the frames that cross the UNI ports into the counter records of the chip. Who keeps and
/// reads the records is the device's matter.
#pragma once

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include <brmgr_record.h>

#include "base/bytes.h"
#include "datapath/outcome.h"
#include "datapath/port_id.h"
#include "datapath/verdict.h"

namespace virtual_onu {

/// Lengths are those on the wire (RFC 2819, RFC 2863): they have the frame check sequence, and a
/// frame shorter than the shortest is padded. Counters have 32 bits and wrap.
class PortStatistics {
 public:
  using CountersOf = std::function<PortStatsRecord&(std::uint32_t uni)>;

  explicit PortStatistics(CountersOf countersOf) : countersOf_(std::move(countersOf)) {}

  /// Counts a frame at the port that it came to, and where it left or was held back by a limit.
  void count(PortId port, ByteView frame, const Verdict& verdict) const;

  /// Counts a frame that the library sent by a port, and its copies for the mirror port.
  void countTransmitted(PortId port, ByteView frame, const std::vector<MirrorCopy>& copies) const;

 private:
  void countReceived(PortId port, ByteView frame, Outcome outcome) const;
  void countDeparture(PortId port, ByteView frame) const;
  void countCopies(const std::vector<MirrorCopy>& copies) const;

  CountersOf countersOf_;
};

}  // namespace virtual_onu
