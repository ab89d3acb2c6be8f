/// @file
/// Tests of the multicast VLANs of a port in transparent and stacking mode: a port that keeps them
/// has them in its VLAN objects unless every VLAN passes it. The multicast table is set up by the
/// test, which therefore links with the archive.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <bcm6838x_vlan.h>

#include "hal/vlan/vlan_mode_fixture.h"
#include "support/library_tables.h"

namespace hal_test {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

constexpr std::uint16_t kNoVlan = 0xFFFF;

class VlanModeMcastTest : public VlanModeTest {
 protected:
  /// UNI port 2 has the VLANs 500 and 600 at the first and the last of its eight places.
  void SetUp() override {
    VlanModeTest::SetUp();
    McastPort& port = g_mcastUniPortInfo[1];
    port.mode = 1;
    port.vlans.fill(kNoVlan);
    port.vlans.front() = 500;
    port.vlans.back() = 600;
    for (const std::uint32_t vid : {500U, 600U}) {
      BCM6838X_AddWanVlan(2, vid, vid);
      BCM6838X_AddLanVlan(2, vid);
    }
    forget();
  }

  /// The first lines that left.
  [[nodiscard]] std::vector<std::string> first(std::size_t count) const {
    std::vector<std::string> lines = leftBriefly();
    lines.resize(std::min(lines.size(), count));
    return lines;
  }

  /// The lines about the multicast VLANs.
  [[nodiscard]] std::vector<std::string> aboutMcast() const {
    std::vector<std::string> lines = leftBriefly();
    std::erase_if(lines, [](const std::string& line) {
      return line.find("500") == std::string::npos && line.find("600") == std::string::npos;
    });
    return lines;
  }
};

std::vector<std::string> Withdrawn(const std::string& vid) {
  return {"log BCM6838X_DelWanVlan,<line>, port=2,del wanVid=" + vid + " lanVid=" + vid,
          "shell bs /b/c vlan/name=wan0_" + vid + " vid_enable[" + vid + "]=no",
          "shell bs /b/d vlan/name=wan0_" + vid,
          "log BCM6838X_DelWanVlan,<line>, port=2, del wanVid=" + vid + " lanVid=" + vid + " ret=0",
          "log BCM6838X_DelLanVlan,<line>, del lan vlan  2  vid=" + vid,
          "shell bs /b/c vlan/name=lan1_" + vid + " vid_enable[" + vid + "]=no",
          "shell bs /b/d vlan/name=lan1_" + vid};
}

std::vector<std::string> Restored(const std::string& vid) {
  return {"log BCM6838X_AddWanVlan,<line>, add wan vlan  2  wanVid=" + vid + " lanVid=" + vid,
          "shell bs /b/n vlan/name=wan0_" + vid + " port/index=wan0",
          "shell bs /b/c vlan/name=wan0_" + vid + " vid_enable[" + vid + "]=yes",
          "log BCM6838X_AddWanVlan,<line>, add wan vlan  2  wanVid=" + vid + " lanVid=" + vid +
              " ret=0",
          "log BCM6838X_AddLanVlan,<line>, add lan vlan  2  vid=" + vid,
          "shell bs /b/n vlan/name=lan1_" + vid + " port/index=lan1",
          "shell bs /b/c vlan/name=lan1_" + vid + " vid_enable[" + vid + "]=yes"};
}

std::vector<std::string> operator+(std::vector<std::string> first,
                                   const std::vector<std::string>& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

using Lines = std::vector<std::string>;

std::string WanVlanWithdrawn(const std::string& vid) {
  return "log BCM6838X_DelWanVlan,<line>, port=2,del wanVid=" + vid + " lanVid=" + vid;
}

// Required: open-port-withdraws-mcast
TEST_F(VlanModeMcastTest, Transparent_WithdrawsAndRestoresBehindTheShellLine) {
  BCM6838X_AddUsTransparent(2);
  EXPECT_EQ(first(17), (Lines{"log ++++++BCM6838X_AddUsTransparent,<line>",
                              "shell bs /b/c port/index=lan1 transparent=yes"} +
                        Withdrawn("500") + Withdrawn("600") +
                        Lines{"FLOW_ADD us outerVid=0 ingressPort=3 outerPbit=0 vlanNum=0 queue=0 "
                              "icIndex=0"}));
  forget();
  BCM6838X_DelUsTransparent(2);
  EXPECT_EQ(first(17),
            (Lines{"log ++++++BCM6838X_DelUsTransparent,<line>",
                   "shell bs /b/c port/index=lan1 transparent=no"} +
             Restored("500") + Restored("600") + Lines{"FLOW_DEL dir=us icIndex=0 flowIndex=0"}));
}

TEST_F(VlanModeMcastTest, TransparentPerf_WithdrawsBehindTheShellLine) {
  BCM6838X_AddUsTransparent_Perf(2);
  EXPECT_EQ(first(17), (Lines{"log ++++++BCM6838X_AddUsTransparent_Perf,<line>",
                              "shell bs /b/c port/index=lan1 transparent=yes"} +
                        Withdrawn("500") + Withdrawn("600") +
                        Lines{"FLOW_ADD us outerVid=0 ingressPort=3 outerPbit=0 vlanNum=0 queue=0 "
                              "icIndex=0"}));
}

// Required: zte-stacking-logs-entry-late
TEST_F(VlanModeMcastTest, ZteStacking_WithdrawsAndRestoresBeforeItLogsItsEntry) {
  BCM6838X_AddUsZTEStacking(2, 10, 3);
  EXPECT_EQ(first(16), (Lines{"shell bs /b/c port/index=lan1 transparent=yes"} + Withdrawn("500") +
                        Withdrawn("600") + Lines{"log ++++++BCM6838X_AddUsZTEStacking,<line>"}));
  forget();
  BCM6838X_DelUsZTEStacking(2, 10, 3);
  EXPECT_EQ(first(16), (Lines{"shell bs /b/c port/index=lan1 transparent=no"} + Restored("500") +
                        Restored("600") + Lines{"log ++++++BCM6838X_DelUsZTEStacking,<line>"}));
}

TEST_F(VlanModeMcastTest, OtherModes_LeaveThemAlone) {
  int modes = 0;
  for (const std::string name : {"Tag", "ZteTrunk", "Hybrid", "Translation", "BdcomStacking"}) {
    ModeOf(name).add(2, 2);
    ModeOf(name).del(2, 2);
    EXPECT_THAT(aboutMcast(), IsEmpty()) << name;
    ++modes;
  }
  EXPECT_EQ(modes, 5);
}

TEST_F(VlanModeMcastTest, OtherMulticastModes_LeaveThemAlone) {
  int rounds = 0;
  for (const std::uint16_t mode : std::to_array<std::uint16_t>({0, 2, 3, 0x101})) {
    g_mcastUniPortInfo[1].mode = mode;
    for (const std::string name : {"Transparent", "ZteStacking"}) {
      ModeOf(name).add(2, 0);
      ModeOf(name).del(2, 0);
      EXPECT_THAT(aboutMcast(), IsEmpty()) << name << " " << mode;
      ++rounds;
    }
  }
  EXPECT_EQ(rounds, 8);
}

TEST_F(VlanModeMcastTest, OtherPortsMulticastVlans_AreLeftAlone) {
  BCM6838X_AddUsTransparent(1);
  BCM6838X_AddUsZTEStacking(3, 10, 3);
  EXPECT_THAT(aboutMcast(), IsEmpty());
}

TEST_F(VlanModeMcastTest, AllEightPlacesInOrder) {
  g_mcastUniPortInfo[1].vlans = {507, 506, 505, 504, 503, 502, 501, 500};
  BCM6838X_AddUsTransparent(2);
  Lines expected;
  for (const std::string vid : {"507", "506", "505", "504", "503", "502", "501", "500"}) {
    expected.push_back(WanVlanWithdrawn(vid));
  }
  EXPECT_EQ(leftWith("log BCM6838X_DelWanVlan,<line>, port=2,del"), expected);
  EXPECT_THAT(leftWith("log BCM6838X_DelLanVlan"), SizeIs(8));
}

}  // namespace
}  // namespace hal_test
