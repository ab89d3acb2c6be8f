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

/// The UNI ports from 1 to `last`, for a loop over them.
struct UniPorts {
  uint32_t last;

  struct Iterator {
    uint32_t uni;

    constexpr uint32_t operator*() const { return uni; }
    constexpr Iterator& operator++() {
      ++uni;
      return *this;
    }
    constexpr bool operator!=(const Iterator& other) const { return uni != other.uni; }
  };

  [[nodiscard]] constexpr Iterator begin() const { return {1}; }
  [[nodiscard]] constexpr Iterator end() const { return {last + 1}; }
};

/// Every Ethernet port of the unit.
inline UniPorts EthPorts() {
  return {HC_GetEthPortNum()};
}

/// Every Ethernet port of the unit for which the tables have room.
inline UniPorts EthPortsInTables() {
  const uint32_t ports = HC_GetEthPortNum();
  return {ports < kUniPorts ? ports : kUniPorts};
}

/// Every port for which the tables have room, whether the unit has it or not.
constexpr UniPorts PortsInTables() {
  return {kUniPorts};
}

}  // namespace hal

#endif
