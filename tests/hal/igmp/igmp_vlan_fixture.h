/// @file
/// What the tests of the ports' multicast VLANs share: a started unit whose ports are in tag mode,
/// and the lines that its operations leave.
#pragma once

#include <array>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <bcm6838x_igmp.h>
#include <bcm6838x_vlan.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>

#include "support/library_tables.h"
#include "support/library_test.h"
#include "support/wire_record.h"

namespace hal_test::igmp_vlan {

inline constexpr std::uint16_t kEmpty = 0xFFFF;
inline constexpr std::uint32_t kNone = 0xFFFFFFFF;
inline const std::string kSource = " hal/switch/bcm6838x/src/bcm6838x_igmp_vlan.cpp ";
inline const std::string kPlace = "log 1" + kSource;

inline std::string Number(std::uint32_t number) {
  return std::to_string(number);
}

inline std::string VlanLogged(const std::string& operation, const std::string& text) {
  return kPlace + "###### BCM6838X_" + operation + ",<line>, " + text + "\r\n";
}

inline std::string ActionSent(std::uint32_t cmd, std::uint16_t vid) {
  return Sent("VLAN_ACTION_ADD", 1, WireRecord(24).u32(0, cmd).u16(4, vid).u32(20, kNone));
}

inline std::string ActionDeleted(std::uint32_t index) {
  return Sent("VLAN_ACTION_DEL", 0, WireRecord(8).u32(4, index));
}

/// The shell lines that make the objects of a VLAN on a port whose LAN object is lan(port - 1).
inline std::vector<std::string> ObjectsMade(std::uint32_t port, std::uint32_t wanVid,
                                            std::uint32_t lanVid) {
  const std::string wan = "vlan/name=wan0_" + Number(wanVid);
  const std::string lan = "lan" + Number(port - 1);
  const std::string object = "vlan/name=" + lan + "_" + Number(lanVid);
  return {"shell bs /b/n " + wan + " port/index=wan0",
          "shell bs /b/c " + wan + " vid_enable[" + Number(wanVid) + "]=yes",
          "shell bs /b/n " + object + " port/index=" + lan,
          "shell bs /b/c " + object + " vid_enable[" + Number(lanVid) + "]=yes"};
}

inline std::vector<std::string> ObjectsDestroyed(std::uint32_t port, std::uint32_t wanVid,
                                                 std::uint32_t lanVid) {
  const std::string wan = "vlan/name=wan0_" + Number(wanVid);
  const std::string object = "vlan/name=lan" + Number(port - 1) + "_" + Number(lanVid);
  return {"shell bs /b/c " + wan + " vid_enable[" + Number(wanVid) + "]=no", "shell bs /b/d " + wan,
          "shell bs /b/c " + object + " vid_enable[" + Number(lanVid) + "]=no",
          "shell bs /b/d " + object};
}

inline std::vector<std::string> Joined(std::vector<std::string> first,
                                       const std::vector<std::string>& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

inline constexpr std::uint32_t kTagMode = 1;

class McastVlanTest : public LibraryTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    ASSERT_EQ(BCM6838X_InitIgmp(), 0U);
    for (PortVlanInfo& port : g_PortVlanInfo) {
      port.vlanMode = kTagMode;
    }
    forget();
  }

  static McastPort& port(std::uint32_t uni) { return g_mcastUniPortInfo[uni - 1]; }
  [[nodiscard]] std::vector<std::string> shellLines() const { return OfKind(left(), "shell"); }
  /// Commands and shell lines.
  [[nodiscard]] std::vector<std::string> doneInOrder() const {
    std::vector<std::string> lines = left();
    std::erase_if(lines, [](const std::string& line) { return line.starts_with("log "); });
    return lines;
  }
};

/// Modes of a port, and whether its multicast VLANs are in its VLAN objects.
struct ModeRow {
  std::uint32_t vlanMode;
  std::uint16_t mcastMode;
  bool inObjects;
};

inline constexpr std::array<ModeRow, 13> kModes = {{
    {BCM6838X_VLAN_MODE_TRANSPARENT, 1, false},
    {BCM6838X_VLAN_MODE_TAG, 1, true},
    {BCM6838X_VLAN_MODE_TRANSLATION, 1, true},
    {BCM6838X_VLAN_MODE_TRANSLATION_2, 1, true},
    {BCM6838X_VLAN_MODE_TRUNK, 1, true},
    {BCM6838X_VLAN_MODE_ZTE_TRUNK, 1, true},
    {BCM6838X_VLAN_MODE_HYBRID, 1, true},
    {BCM6838X_VLAN_MODE_ZTE_STACKING, 1, false},
    {BCM6838X_VLAN_MODE_BDCOM_STACKING, 1, true},
    {BCM6838X_VLAN_MODE_NONE, 1, true},
    {BCM6838X_VLAN_MODE_TAG, 0, false},
    {BCM6838X_VLAN_MODE_TAG, 2, false},
    {BCM6838X_VLAN_MODE_TAG, 7, false},
}};

}  // namespace hal_test::igmp_vlan
