/// @file
/// What the driver keeps of MAC addresses. The device writes it; the data path reads it.
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

/// An address is known in each VLAN on its own. The order is that of the addresses.
struct MacKey {
  MacBytes mac = {};
  std::uint16_t vid = 0;
  std::strong_ordering operator<=>(const MacKey& other) const {
    return std::tie(mac, vid) <=> std::tie(other.mac, other.vid);
  }
};

struct MacEntry {
  std::uint32_t uni = 0;
  std::uint32_t type = kMacEntryDynamic;
};

/// Addresses, each with a UNI port.
using MacPorts = std::map<MacKey, std::uint32_t>;

/// Ports are named by their UNI port number.
struct MacTables {
  std::map<MacKey, MacEntry> entries;
  MacPorts filters;                      ///< blocked addresses
  MacPorts binds;                        ///< addresses bound to a port
  std::optional<std::uint16_t> ageTime;  ///< nothing until told
};

}  // namespace virtual_onu
