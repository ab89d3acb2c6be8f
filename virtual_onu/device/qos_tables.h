/// @file
/// What the driver keeps of policing and rates. The device writes it; the data path reads it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>

#include <brmgr_record.h>

namespace virtual_onu {

/// Number of values of the DSCP field.
constexpr std::size_t kDscps = 64;

/// Priority of each DSCP.
using DscpMap = std::array<std::uint8_t, kDscps>;

struct Policer {
  PolicerCfg cfg = {};       ///< as the command gave it
  std::uint64_t serial = 0;  ///< tells a policer from the one that it replaced
};

struct DownstreamLimit {
  std::uint32_t rate = 0;    ///< bit/s
  std::uint64_t serial = 0;  ///< tells a limit from the one that it replaced
};

/// The tables are by UNI port number; ports without an entry are not limited, or not told of.
struct QosTables {
  std::map<std::uint32_t, Policer> policers;
  std::map<std::uint32_t, std::uint32_t> lineRates;  ///< bit/s
  std::map<std::uint32_t, DownstreamLimit> dsLimits;
  std::map<std::uint32_t, DscpMap> dscpMaps;
  std::uint64_t made = 0;  ///< policers and limits so far: the last serial
};

}  // namespace virtual_onu
