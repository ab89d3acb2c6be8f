/// @file
/// Counts the frames that cross the UNI ports into the counter records of the chip. Who keeps and
/// reads the records is the device's matter.
#pragma once

#include <cstdint>
#include <functional>
#include <utility>

#include <brmgr_record.h>

#include "base/bytes.h"
#include "datapath/outcome.h"
#include "datapath/port.h"

namespace virtual_onu {

struct Verdict;

/// Lengths are those on the wire (RFC 2819, RFC 2863): they have the frame check sequence, and a
/// frame shorter than the shortest is padded. Counters have 32 bits and wrap.
class PortStatistics {
 public:
  using CountersOf = std::function<PortStatsRecord&(std::uint32_t uni)>;

  explicit PortStatistics(CountersOf countersOf) : countersOf_(std::move(countersOf)) {}

  /// Counts a frame at the port that it came to, and where it left or was held back by a limit.
  void count(PortId port, ByteView frame, const Verdict& verdict) const;

  /// Counts where a frame left or was held back by a limit, its mirrored copies too.
  void countDepartures(const Verdict& verdict) const;

 private:
  void countReceived(PortId port, ByteView frame, Outcome outcome) const;
  void countTransmitted(PortId port, ByteView frame) const;

  CountersOf countersOf_;
};

}  // namespace virtual_onu
