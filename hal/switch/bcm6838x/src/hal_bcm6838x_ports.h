/// @file
/// UNI ports: how an argument names one, how many the tables have room for, and the loops over those
/// that the unit has.
#ifndef HAL_BCM6838X_PORTS_H
#define HAL_BCM6838X_PORTS_H

#include <cstdint>

#include <bcm6838x_api.h>
#include <platform_config.h>

namespace hal {

/// UNI ports for which every table of ports has room.
constexpr uint32_t kUniPorts = BCM6838X_UNI_PORTS;

/// The UNI port number that a port argument names.
constexpr uint32_t UniPort(uint32_t port) {
  return port & 0xFF;
}

/// Whether the tables have room for a UNI port; it stands in them at its number - 1.
constexpr bool IsInTables(uint32_t uni) {
  return uni - 1 < kUniPorts;
}

/// The device port number of a UNI port.
constexpr uint32_t DevicePort(uint32_t uni) {
  return uni + 1;
}

/// Whether a port number is at most that of the unit's last Ethernet port.
inline bool IsUpToLastEthPort(uint32_t uni) {
  return uni <= HC_GetEthPortNum();
}

inline bool IsUpToLastEthPortInTables(uint32_t uni) {
  return IsUpToLastEthPort(uni) && uni <= kUniPorts;
}

constexpr bool IsUpToLastPortInTables(uint32_t uni) {
  return uni <= kUniPorts;
}

/// The UNI ports from 1 on that are within a bound, for a loop over them. The bound is asked anew for
/// each port: the platform may change its mind.
template <bool (*isWithin)(uint32_t uni)>
struct UniPortsWithin {
  struct End {};

  struct Iterator {
    uint32_t uni;

    constexpr uint32_t operator*() const { return uni; }
    constexpr Iterator& operator++() {
      ++uni;
      return *this;
    }
    constexpr bool operator!=(End /*end*/) const { return isWithin(uni); }
  };

  [[nodiscard]] constexpr Iterator begin() const { return {1}; }
  [[nodiscard]] constexpr End end() const { return {}; }
};

/// Every Ethernet port of the unit.
using EthPorts = UniPortsWithin<IsUpToLastEthPort>;

/// Every Ethernet port of the unit for which the tables have room.
using EthPortsInTables = UniPortsWithin<IsUpToLastEthPortInTables>;

/// Every port for which the tables have room, whether the unit has it or not.
using PortsInTables = UniPortsWithin<IsUpToLastPortInTables>;

}  // namespace hal

#endif
