/// @file
/// Differences of counters over time.
#include "session/rate_meter.h"

namespace onu {

namespace {

/// How much counters rose between two readings, with what they are a part of.
class Rise {
 public:
  Rise(const PortStatsRecord& from, const PortStatsRecord& to, std::uint64_t milliseconds)
      : from_(from), to_(to), seconds_(static_cast<double>(milliseconds) / kMilliseconds) {}

  /// The counters wrap, and so does their difference.
  [[nodiscard]] double of(std::uint32_t PortStatsRecord::*counter) const {
    return static_cast<double>(static_cast<std::uint32_t>(to_.*counter - from_.*counter)) /
           seconds_;
  }

 private:
  static constexpr double kMilliseconds = 1000;

  const PortStatsRecord& from_;
  const PortStatsRecord& to_;
  double seconds_;
};

}  // namespace

PortRates RateMeter::read(std::uint32_t uni, std::uint64_t now, const PortStatsRecord& counters) {
  Reading& last = last_[uni];
  const Rise rise(last.counters, counters, now - last.time);
  using Record = PortStatsRecord;
  const PortRates rates = {
      .rxFrames = rise.of(&Record::rxUnicast) + rise.of(&Record::rxMulticast) +
                  rise.of(&Record::rxBroadcast),
      .rxOctets = rise.of(&Record::rxOctets),
      .rxDiscards = rise.of(&Record::rxDiscard),
      .rxErrors = rise.of(&Record::rxError23) + rise.of(&Record::rxError24),
      .txFrames = rise.of(&Record::txUnicast) + rise.of(&Record::txMulticast) +
                  rise.of(&Record::txBroadcast),
      .txOctets = rise.of(&Record::txOctets),
      .txDiscards = rise.of(&Record::txDiscard),
  };
  last = {now, counters};
  return rates;
}

}  // namespace onu
