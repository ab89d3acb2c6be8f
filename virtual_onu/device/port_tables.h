/// @file
/// What the driver keeps of the UNI ports and of MAC learning. The device writes it; the data path
/// reads it, and counts into the counters.
#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include <brmgr_record.h>

namespace virtual_onu {

/// The device numbers its ports from the WAN side, and leaves one number out before UNI 1.
constexpr std::uint32_t DevicePortOf(std::uint32_t uni) {
  return uni + 1;
}

struct PortSettings {
  bool adminUp = true;  ///< until told otherwise
  bool loopback = false;
  std::uint32_t spanningTree = 0;  ///< as the command gave it
};

/// Two UNI ports, the lower number first.
using PortPair = std::pair<std::uint32_t, std::uint32_t>;

constexpr PortPair MakePortPair(std::uint32_t uni, std::uint32_t peer) {
  return {std::min(uni, peer), std::max(uni, peer)};
}

/// What the driver hands to the library by itself, whatever the flows say.
struct TrapTables {
  bool multicastControl = false;  ///< IGMP and MLD: while the capture feature is on
  std::set<std::uint32_t> dhcp;   ///< UNI ports whose DHCP trap is on
  std::set<std::uint32_t> pppoe;
};

/// Ports are named by their UNI port number.
struct PortTables {
  std::map<std::uint32_t, PortSettings> settings;  ///< of the ports that a command has named
  /// Ports that may not exchange traffic. A port may be paired with itself, which means nothing.
  std::set<PortPair> isolated;
  std::map<std::uint32_t, PortStatsRecord> counters;
  PortMirrorRecord mirror = {};           ///< as the last command gave it
  std::vector<PortVlanInfo> vlans;        ///< of UNI port 1 and up; empty until told
  std::optional<std::uint16_t> macLimit;  ///< nothing until told
  std::optional<std::uint32_t> macLearn;  ///< nothing until told
  TrapTables traps;

  [[nodiscard]] PortSettings of(std::uint32_t uni) const {
    const auto found = settings.find(uni);
    return found == settings.end() ? PortSettings{} : found->second;
  }

  /// Tells whether two ports may not exchange traffic; the order does not matter.
  [[nodiscard]] bool areIsolated(std::uint32_t uni, std::uint32_t peer) const {
    return isolated.contains(MakePortPair(uni, peer));
  }
};

}  // namespace virtual_onu
