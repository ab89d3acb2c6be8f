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

/// Everything by UNI port number; ports without an entry are not limited, or not told of.
struct QosTables {
  std::map<std::uint32_t, PolicerCfg> policers;      ///< as the commands gave them
  std::map<std::uint32_t, std::uint32_t> lineRates;  ///< bit/s
  std::map<std::uint32_t, std::uint32_t> dsLimits;   ///< bit/s
  std::map<std::uint32_t, DscpMap> dscpMaps;
};

}  // namespace virtual_onu
