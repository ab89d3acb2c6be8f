/// @file
/// Multicast VLANs and joins of a port whose VLAN mode changes: in transparent and ZTE stacking
/// mode the multicast VLANs are out of its VLAN objects, and its groups reach it all the same.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

#include <bcm6838x_igmp.h>
#include <bcm6838x_vlan_port.h>

#include "switching_fixture.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t kPort = 2;
constexpr std::uint16_t kMvlan = 100;
const std::string kStream = "udp dip 233.252.0.1 vlan 100 length 104";

/// A VLAN mode in which every VLAN passes the port.
struct OpenMode {
  std::string name;
  std::uint32_t (*set)(std::uint32_t port);
};

void PrintTo(const OpenMode& mode, std::ostream* out) {
  *out << mode.name;
}

/// Port 2 is in tag mode with VLAN 500 when a test starts.
class MulticastModesTest : public SwitchingTest, public testing::WithParamInterface<OpenMode> {
 protected:
  MulticastModesTest() {
    EXPECT_EQ(BCM6838X_SetPortPvid(kPort, 500), 0U);
    enterTagMode();
  }

  static void enterTagMode() { EXPECT_EQ(BCM6838X_SetVlanTag(kPort), 0U); }
  static void enterOpenMode() { EXPECT_EQ(GetParam().set(kPort), 0U); }

  static McastGroupRequest request() {
    return {kMvlan, {0x01, 0, 0x5E, 0x7C, 0, 1}, {233, 252, 0, 1}, {}, 1U << (kPort - 1)};
  }
  static void join() {
    const McastGroupRequest group = request();
    EXPECT_EQ(BCM6838X_AddMulticastMacAddr(&group), 0U);
  }
  static void rejoin() {
    const McastGroupRequest group = request();
    EXPECT_EQ(BCM6838X_DelMulticastMacAddr(&group), 0U);
    join();
  }

  /// The VLAN objects that enable the multicast VLAN.
  std::vector<std::string> objects() {
    std::vector<std::string> names;
    for (const auto& [name, object] : unit.shell().objects().vlans) {
      if (object.vids.contains(kMvlan)) {
        names.push_back(name);
      }
    }
    return names;
  }

  /// The stream reaches the port alone, as this frame.
  void expectStream(const std::string& received) {
    const virtual_onu::Verdict verdict = offer(kWan, kStream);
    ASSERT_EQ(verdict.egress(), std::vector{Uni(kPort)});
    EXPECT_EQ(verdict.deliveries[0].frame, FrameOf(received));
  }
};

TEST_P(MulticastModesTest, KeptVlan_LeavesTheObjectsAndComesBack) {
  EXPECT_EQ(BCM6838X_AddIgmpVlan(kPort, kMvlan), 0U);
  join();
  EXPECT_THAT(objects(), ElementsAre("lan1_100", "wan0_100"));
  expectStream(kStream);
  enterOpenMode();
  EXPECT_THAT(objects(), IsEmpty());
  expectStream(kStream);
  enterTagMode();
  EXPECT_THAT(objects(), ElementsAre("lan1_100", "wan0_100"));
  expectStream(kStream);
}

TEST_P(MulticastModesTest, VlanAddedMeanwhile_ComesIntoTheObjectsBehindTheMode) {
  enterOpenMode();
  EXPECT_EQ(BCM6838X_AddIgmpVlan(kPort, kMvlan), 0U);
  EXPECT_THAT(objects(), IsEmpty());
  enterTagMode();
  EXPECT_THAT(objects(), ElementsAre("lan1_100", "wan0_100"));
}

TEST_P(MulticastModesTest, VlanDeletedMeanwhile_StaysOutOfTheObjects) {
  EXPECT_EQ(BCM6838X_AddIgmpVlan(kPort, kMvlan), 0U);
  enterOpenMode();
  EXPECT_EQ(BCM6838X_DelIgmpVlan(kPort, kMvlan), 0U);
  enterTagMode();
  EXPECT_THAT(objects(), IsEmpty());
}

TEST_P(MulticastModesTest, OtherTreatments_HoldInTheMode) {
  join();
  enterOpenMode();
  EXPECT_EQ(BCM6838X_SetMulticastVlanMode(kPort, 0), 0U);
  rejoin();
  expectStream("udp dip 233.252.0.1 length 100");
  EXPECT_EQ(BCM6838X_SetMulticastVlanMode(kPort, 2), 0U);
  EXPECT_EQ(BCM6838X_AddMulticastVlanTrans(kPort, kMvlan, 300), 0U);
  rejoin();
  expectStream("udp dip 233.252.0.1 vlan 300 length 104");
  enterTagMode();
  expectStream("udp dip 233.252.0.1 vlan 300 length 104");
}

INSTANTIATE_TEST_SUITE_P(Modes, MulticastModesTest,
                         testing::Values(OpenMode{"Transparent", BCM6838X_SetVlanTransparent},
                                         OpenMode{"ZteStacking", BCM6838X_SetZteStacking}),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace hal_test
