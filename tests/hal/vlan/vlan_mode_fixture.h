/// @file
/// The fixture of the VLAN mode tests: a started library, and what the device then holds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "hal/vlan/vlan_modes.h"
#include "support/library_test.h"

namespace hal_test {

/// The VLAN objects of the device that the start-up did not make, one line each, in a fixed order:
///   us flow CLASS.INDEX vid VID pbit P tags N action A
///   ds flow CLASS.INDEX vid VID tags N
///   us action INDEX vid VID pbit P, ds action ...
///   port action CLASS.FLOW uni PORT action A
std::vector<std::string> DeviceContent(virtual_onu::Unit& unit);

class VlanModeTest : public LibraryTest {
 protected:
  void SetUp() override;

  [[nodiscard]] std::vector<std::string> device() { return DeviceContent(unit); }

  /// The lines of `leftBriefly()` that begin with `prefix`.
  [[nodiscard]] std::vector<std::string> leftWith(const std::string& prefix) const;
};

}  // namespace hal_test
