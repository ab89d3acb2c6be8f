/// @file
/// Size bins, casts and outcomes of frames in the words of the counter record.
#include "datapath/port_statistics.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "frame/headers.h"

namespace virtual_onu {
namespace {

using Word = std::uint32_t PortStatsRecord::*;

/// Frames of a length up to `last`, and longer than those of the bin before.
struct SizeBin {
  std::size_t last;
  Word received;
  Word transmitted;
};

constexpr std::array kSizeBins = {
    SizeBin{64, &PortStatsRecord::rx64, &PortStatsRecord::tx64},
    SizeBin{127, &PortStatsRecord::rx65to127, &PortStatsRecord::tx65to127},
    SizeBin{255, &PortStatsRecord::rx128to255, &PortStatsRecord::tx128to255},
    SizeBin{511, &PortStatsRecord::rx256to511, &PortStatsRecord::tx256to511},
    SizeBin{1023, &PortStatsRecord::rx512to1023, &PortStatsRecord::tx512to1023},
    SizeBin{1518, &PortStatsRecord::rx1024to1518, &PortStatsRecord::tx1024to1518},
};

/// The words of one direction.
struct Side {
  Word octets;
  Word SizeBin::*bin;
  Word unicast;
  Word multicast;
  Word broadcast;
};

constexpr Side kReceived = {&PortStatsRecord::rxOctets, &SizeBin::received,
                            &PortStatsRecord::rxUnicast, &PortStatsRecord::rxMulticast,
                            &PortStatsRecord::rxBroadcast};
constexpr Side kTransmitted = {&PortStatsRecord::txOctets, &SizeBin::transmitted,
                               &PortStatsRecord::txUnicast, &PortStatsRecord::txMulticast,
                               &PortStatsRecord::txBroadcast};

std::size_t LengthOnTheWire(ByteView frame) {
  constexpr std::size_t kShortest = 60;
  constexpr std::size_t kCheckSequence = 4;
  return std::max(frame.size(), kShortest) + kCheckSequence;
}

/// By the group bit of the destination address (IEEE 802.3 clause 3.2.3).
Word CastOf(const Side& side, ByteView frame) {
  constexpr std::uint8_t kGroupBit = 1;
  constexpr std::uint8_t kAllOnes = 0xFF;
  const ByteView destination = frame.first(kMacSize);
  if (std::ranges::all_of(destination, [](std::uint8_t byte) { return byte == kAllOnes; })) {
    return side.broadcast;
  }
  return (destination.front() & kGroupBit) != 0 ? side.multicast : side.unicast;
}

void Count(const Side& side, ByteView frame, PortStatsRecord& counters) {
  const std::size_t length = LengthOnTheWire(frame);
  counters.*side.octets += static_cast<std::uint32_t>(length);
  ++(counters.*CastOf(side, frame));
  const auto* const bin = std::ranges::find_if(
      kSizeBins, [length](const SizeBin& candidate) { return length <= candidate.last; });
  if (bin != kSizeBins.end()) {
    ++(counters.*(bin->*side.bin));
  }
}

bool IsDamaged(Outcome outcome) {
  return outcome == Outcome::RuntFrame || outcome == Outcome::TruncatedTag;
}

bool NeverCame(Outcome outcome) {
  return outcome == Outcome::UnknownPort || outcome == Outcome::PortAdminDown ||
         outcome == Outcome::PortLinkDown;
}

}  // namespace

void PortStatistics::count(PortId port, ByteView frame, const Verdict& verdict) const {
  countReceived(port, frame, verdict.outcome);
  for (const Delivery& delivery : verdict.deliveries) {
    countDeparture(delivery.port, delivery.frame);
  }
  countCopies(verdict.copies);
  for (const ClosedPort& closed : verdict.closed) {
    if (closed.outcome == Outcome::EgressRateLimited) {
      ++countersOf_(closed.port.uni).txDiscard;
    }
  }
}

void PortStatistics::countTransmitted(PortId port, ByteView frame,
                                      const std::vector<MirrorCopy>& copies) const {
  countDeparture(port, frame);
  countCopies(copies);
}

void PortStatistics::countCopies(const std::vector<MirrorCopy>& copies) const {
  for (const MirrorCopy& copy : copies) {
    if (copy.outcome == Outcome::Mirrored) {
      countDeparture(copy.port, copy.frame);
    }
  }
}

void PortStatistics::countReceived(PortId port, ByteView frame, Outcome outcome) const {
  if (port.isWan() || NeverCame(outcome)) {
    return;
  }
  PortStatsRecord& counters = countersOf_(port.uni);
  if (IsDamaged(outcome)) {
    ++counters.rxError23;
    return;
  }
  Count(kReceived, frame, counters);
  if (Describe(outcome).disposition == Disposition::Drop) {
    ++counters.rxDiscard;
  }
}

void PortStatistics::countDeparture(PortId port, ByteView frame) const {
  if (!port.isWan()) {
    Count(kTransmitted, frame, countersOf_(port.uni));
  }
}

}  // namespace virtual_onu
