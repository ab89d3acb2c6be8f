/// @file
/// What the tests of port control by the PHY's registers share: a unit of five ports, link
/// partners, and what an operation answers.
#pragma once

#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "phy/phy.h"
#include "support/library_test.h"

namespace hal_test::port_link {

using virtual_onu::LinkPartner;

inline constexpr std::uint32_t kPorts = 5;
inline constexpr std::uint32_t kUntouched = 77;

/// Advertised by the PHY after its reset: 10 and 100 Mbit/s in both duplex modes.
inline constexpr std::uint16_t kDefaultAbilities = 0x01E1;
inline constexpr std::uint16_t kSelector = 0x0001;

inline virtual_onu::UnitConfig FivePorts() {
  virtual_onu::UnitConfig config;
  config.platform.ethPorts = kPorts;
  return config;
}

/// A partner that negotiates, with these advertisement and 1000BASE-T control registers.
inline LinkPartner Advertising(std::uint16_t base, std::uint16_t gigabit) {
  LinkPartner partner;
  partner.advertisement = {static_cast<std::uint16_t>(base | kSelector), gigabit};
  return partner;
}

inline LinkPartner ForcedTo(std::uint32_t speed, bool fullDuplex) {
  LinkPartner partner;
  partner.negotiates = false;
  partner.forced = {speed, fullDuplex};
  return partner;
}

/// What an operation returns and what it writes through its pointer.
using Answer = std::pair<std::uint32_t, std::uint32_t>;

inline Answer Ask(std::uint32_t (*operation)(std::uint32_t, std::uint32_t*), std::uint32_t port) {
  std::uint32_t value = kUntouched;
  const std::uint32_t result = operation(port, &value);
  return {result, value};
}

class PortLinkTest : public LibraryTest {
 protected:
  PortLinkTest() : LibraryTest(FivePorts()) {}

  [[nodiscard]] std::vector<std::string> shellLines() const { return OfKind(left(), "shell"); }

  /// Makes the local end advertise that, and negotiate anew.
  void advertise(std::uint16_t base, std::uint16_t gigabit) {
    unit.phy(1).write(4, base | kSelector);
    unit.phy(1).write(9, gigabit);
    unit.phy(1).write(0, 0x1340);
  }

  /// Runs an operation and returns what it wrote on standard error.
  template <typename Operation>
  std::string console(Operation operation) {
    testing::internal::CaptureStderr();
    operation();
    return testing::internal::GetCapturedStderr();
  }
};

}  // namespace hal_test::port_link
