/// @file
/// What the driver keeps of MAC addresses: the entries that commands add and those that frames
/// make, and the blocked and bound addresses. The device and the data path write it.
#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <tuple>

namespace virtual_onu {

using MacBytes = std::array<std::uint8_t, 6>;

/// Values of a MacEntryRecord's entryType.
constexpr std::uint32_t kMacEntryDynamic = 0;
constexpr std::uint32_t kMacEntryStatic = 1;

/// Seconds for which a dynamic entry outlives its last frame: the recommended ageing time of IEEE
/// 802.1Q, 8.8.3 and table 8-6.
constexpr std::uint16_t kDefaultAgeTime = 300;

/// An address is known in each VLAN on its own. The order is that of the addresses.
struct MacKey {
  MacBytes mac = {};
  std::uint16_t vid = 0;
  bool operator==(const MacKey&) const = default;
  std::strong_ordering operator<=>(const MacKey& other) const {
    return std::tie(mac, vid) <=> std::tie(other.mac, other.vid);
  }
};

struct MacEntry {
  std::uint32_t uni = 0;  ///< 0 is the WAN side, of which only frames make entries
  std::uint32_t type = kMacEntryDynamic;
  /// Of a dynamic entry: when the last frame came from its address, in milliseconds of the unit.
  std::uint64_t seen = 0;
};

/// Addresses, each with a UNI port.
using MacPorts = std::map<MacKey, std::uint32_t>;

/// Ports are named by their UNI port number. Times are in milliseconds of the unit.
struct MacTables {
  /// Those whose time has run out may still be here: find() and isLive() leave them out.
  std::map<MacKey, MacEntry> entries;
  MacPorts filters;                      ///< blocked addresses
  MacPorts binds;                        ///< addresses bound to a port
  std::optional<std::uint16_t> ageTime;  ///< in seconds; nothing until told
  bool ages = true;                      ///< false while the aging is another process's

  /// Seconds for which a dynamic entry outlives its last frame; nothing when it stays.
  [[nodiscard]] std::optional<std::uint16_t> agingTime() const;

  /// Tells whether an entry's time has not run out.
  [[nodiscard]] bool isLive(const MacEntry& entry, std::uint64_t now) const;

  /// The live entry of an address, or null.
  [[nodiscard]] const MacEntry* find(const MacKey& key, std::uint64_t now) const;

  /// How many live dynamic entries a port has.
  [[nodiscard]] std::size_t learnedAt(std::uint32_t uni, std::uint64_t now) const;

  void removeAged(std::uint64_t now);
  void removeDynamic();
};

}  // namespace virtual_onu
