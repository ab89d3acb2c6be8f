/// @file
/// The configuration that the driver is to receive, written down by offset. It shares nothing with
/// the library's structures.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include <bcm6838x_vlan_port.h>

#include "support/wire_record.h"

namespace hal_test {

/// The table of 32 records, all zero but for the mode of the first ports. Ports count from 1,
/// places in the lists from 0.
class ExpectedVlanConfig {
 public:
  static constexpr std::uint32_t kTransparent = BCM6838X_VLAN_MODE_TRANSPARENT;
  static constexpr std::uint32_t kTag = BCM6838X_VLAN_MODE_TAG;
  static constexpr std::uint32_t kTranslation = BCM6838X_VLAN_MODE_TRANSLATION;
  static constexpr std::uint32_t kTrunk = BCM6838X_VLAN_MODE_TRUNK;
  static constexpr std::uint32_t kZteTrunk = BCM6838X_VLAN_MODE_ZTE_TRUNK;
  static constexpr std::uint32_t kZteStacking = BCM6838X_VLAN_MODE_ZTE_STACKING;
  static constexpr std::uint32_t kBdcomStacking = BCM6838X_VLAN_MODE_BDCOM_STACKING;
  static constexpr std::uint32_t kNone = BCM6838X_VLAN_MODE_NONE;

  /// As after the start of a unit with that number of ports.
  explicit ExpectedVlanConfig(std::uint32_t ethPorts = 4);

  ExpectedVlanConfig& pvid(std::uint32_t port, std::uint16_t pvid);  ///< with its TPID
  ExpectedVlanConfig& priority(std::uint32_t port, std::uint16_t priority);
  ExpectedVlanConfig& mode(std::uint32_t port, std::uint32_t mode);
  ExpectedVlanConfig& stackingEnable(std::uint32_t port, std::uint32_t on);
  ExpectedVlanConfig& trunk(std::uint32_t port, std::size_t place, std::uint16_t vid);
  ExpectedVlanConfig& translation(std::uint32_t port, std::size_t place, std::uint16_t localVid,
                                  std::uint16_t netVid, std::uint16_t usPriority,
                                  std::uint16_t dsPriority);
  ExpectedVlanConfig& stacking(std::uint32_t port, std::size_t place, std::uint32_t stackParam,
                               std::uint32_t cvid, std::uint16_t svid);

  /// The line of the command that hands it to the driver.
  [[nodiscard]] std::string sent() const;

  [[nodiscard]] const virtual_onu::Bytes& wire() const { return record_.wire(); }

 private:
  WireRecord record_;
};

}  // namespace hal_test
