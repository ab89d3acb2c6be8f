/// @file
/// The ports' VLAN configuration as a program sees it that links with the archive, for tests that
/// need modes and lists which no operation makes.
#pragma once

#include <cstddef>
#include <cstdint>

#include <bcm6838x_vlan.h>

namespace hal_test {

constexpr std::size_t kListEntries = 512;

/// One port's configuration.
struct VlanConfig {
  std::uint16_t pvid;
  std::uint16_t priority;
  std::uint16_t tpid;
  std::uint16_t tagAttr;
  std::uint32_t vlanMode;
  std::uint32_t stackingEnable;
  PortVlanTrunkEntry trunkList[kListEntries];
  PortVlanTransEntry translationList[kListEntries];
  PortVlanStackEntry stackingList[kListEntries];
};

}  // namespace hal_test

extern "C" hal_test::VlanConfig g_PortVlanInfo[32];
