/// @file
/// What the tests of the ports' VLAN configuration share: a started unit, the commands by their
/// names, and the configuration as the driver would receive it now.
#pragma once

#include <algorithm>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <initializer_list>
#include <iterator>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <bcm6838x_vlan.h>
#include <hal_bcm6838x.h>

#include "hal/vlan/expected_vlan_config.h"
#include "support/library_test.h"

namespace hal_test {

using Config = ExpectedVlanConfig;

/// The setters of the modes, by the code that they store.
struct ModeSetter {
  const char* name;
  std::uint32_t (*set)(std::uint32_t port);
  std::uint32_t code;
};

inline void PrintTo(const ModeSetter& setter, std::ostream* out) {
  *out << setter.name;
}

inline constexpr ModeSetter kModeSetters[] = {
    {"BCM6838X_SetVlanTransparent", BCM6838X_SetVlanTransparent, BCM6838X_VLAN_MODE_TRANSPARENT},
    {"BCM6838X_SetVlanTag", BCM6838X_SetVlanTag, BCM6838X_VLAN_MODE_TAG},
    {"BCM6838X_SetVlanTranslation", BCM6838X_SetVlanTranslation, BCM6838X_VLAN_MODE_TRANSLATION},
    {"BCM6838X_SetVlanTrunk", BCM6838X_SetVlanTrunk, BCM6838X_VLAN_MODE_TRUNK},
    {"BCM6838X_SetZteVlanTrunk", BCM6838X_SetZteVlanTrunk, BCM6838X_VLAN_MODE_ZTE_TRUNK},
    {"BCM6838X_SetZteStacking", BCM6838X_SetZteStacking, BCM6838X_VLAN_MODE_ZTE_STACKING},
    {"BCM6838X_SetBdcomStacking", BCM6838X_SetBdcomStacking, BCM6838X_VLAN_MODE_BDCOM_STACKING},
};

/// Port numbers as the requests hold them.
inline std::vector<std::uint8_t> Ports(std::initializer_list<int> ports) {
  std::vector<std::uint8_t> bytes;
  std::ranges::transform(ports, std::back_inserter(bytes),
                         [](int port) { return static_cast<std::uint8_t>(port); });
  return bytes;
}

/// "VLAN_REBUILD" of each command line.
inline std::vector<std::string> NamesOf(const std::vector<std::string>& commands) {
  const std::string prefix = "command BRMGR_CMD_";
  std::vector<std::string> names;
  std::ranges::transform(commands, std::back_inserter(names), [&](const std::string& line) {
    return line.substr(prefix.size(), line.find(' ', prefix.size()) - prefix.size());
  });
  return names;
}

/// How often a command was sent.
inline std::ptrdiff_t CountOf(const std::vector<std::string>& commands, const std::string& name) {
  return std::ranges::count(NamesOf(commands), name);
}

/// Calls an operation that takes an entry of a trunk list.
inline std::uint32_t CallWithTrunk(std::uint32_t (*operation)(const PortVlanTrunkEntry* entry),
                                   std::uint8_t port, std::uint16_t vid) {
  const PortVlanTrunkEntry entry = {port, 0, vid};
  return operation(&entry);
}

inline std::uint32_t AddTrunk(std::uint8_t port, std::uint16_t vid) {
  return CallWithTrunk(BCM6838X_AddVlanTrunk, port, vid);
}

inline std::uint32_t DelTrunk(std::uint8_t port, std::uint16_t vid) {
  return CallWithTrunk(BCM6838X_DelVlanTrunk, port, vid);
}

inline std::uint32_t AddZteTrunk(std::uint8_t port, std::uint16_t vid) {
  return CallWithTrunk(BCM6838X_AddZteVlanTrunk, port, vid);
}

inline std::uint32_t DelZteTrunk(std::uint8_t port, std::uint16_t vid) {
  return CallWithTrunk(BCM6838X_DelZteVlanTrunk, port, vid);
}

inline std::uint32_t AddTranslation(std::uint8_t port, std::uint16_t localVid, std::uint16_t netVid,
                                    std::uint16_t usPriority = 0, std::uint16_t dsPriority = 0) {
  const PortVlanTransEntry entry = {port, 0, dsPriority, localVid, usPriority, netVid};
  return BCM6838X_AddVlanTranslation(&entry);
}

inline std::uint32_t DelTranslation(std::uint8_t port, std::uint16_t localVid, std::uint16_t netVid,
                                    std::uint16_t usPriority = 0, std::uint16_t dsPriority = 0) {
  const PortVlanTransEntry entry = {port, 0, dsPriority, localVid, usPriority, netVid};
  return BCM6838X_DelVlanTranslation(&entry);
}

inline PortVlanStackRange StackRange(std::uint8_t port, std::uint32_t cvidStart,
                                     std::uint16_t cvidEnd, std::uint16_t svid = 200,
                                     std::uint32_t stackParam = 2) {
  return {port, {0, 0, 0}, stackParam, cvidStart, cvidEnd, svid};
}

inline std::uint32_t AddStacking(PortVlanStackRange range) {
  return BCM6838X_AddVlanStacking(&range);
}

inline std::uint32_t DelStacking(PortVlanStackRange range) {
  return BCM6838X_DelVlanStacking(&range);
}

class VlanPortTest : public LibraryTest {
 protected:
  explicit VlanPortTest(virtual_onu::UnitConfig config = {}) : LibraryTest(std::move(config)) {}

  void SetUp() override {
    ASSERT_EQ(BCM6838X_Init(), 0U);
    forget();
  }

  [[nodiscard]] std::vector<std::string> commandNames() const { return NamesOf(commands()); }
  [[nodiscard]] std::vector<std::string> shellLines() const { return OfKind(left(), "shell"); }

  /// The line of the command that a rebuild of a port without rules sends; earlier lines are
  /// forgotten.
  std::string configNow(std::uint32_t port = 4) {
    forget();
    EXPECT_EQ(BCM6838X_RebuildVlanRule(port), 0U);
    const std::vector<std::string> sent = commands();
    EXPECT_EQ(sent.size(), 1U) << "port " << port << " has rules";
    return sent.back();
  }
};

}  // namespace hal_test
