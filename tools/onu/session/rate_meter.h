/// @file
/// Rates of a port's counters between two readings.
#pragma once

#include <cstdint>
#include <map>

#include <brmgr_record.h>

namespace onu {

/// Per second of the unit's time. Lengths are those that the counters count.
struct PortRates {
  double rxFrames = 0;
  double rxOctets = 0;
  double rxDiscards = 0;
  double rxErrors = 0;  ///< damaged frames
  double txFrames = 0;
  double txOctets = 0;
  double txDiscards = 0;
};

/// Remembers the last reading of each port; before the first one everything is 0, as at the start
/// of the unit.
class RateMeter {
 public:
  /// The rates of a port since its last reading.
  /// @param[in] now  milliseconds, later than at that reading
  PortRates read(std::uint32_t uni, std::uint64_t now, const PortStatsRecord& counters);

 private:
  struct Reading {
    std::uint64_t time = 0;
    PortStatsRecord counters = {};
  };

  std::map<std::uint32_t, Reading> last_;
};

}  // namespace onu
