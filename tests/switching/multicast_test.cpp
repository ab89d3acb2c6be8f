/// @file
/// Joins and leaves by the library's channel operations, and where the streams go.
#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

#include <bcm6838x_igmp.h>
#include <brmgr_cmd.h>

#include "base/text.h"
#include "switching_fixture.h"

namespace hal_test {
namespace {

using virtual_onu::Bytes;
using virtual_onu::Outcome;
using virtual_onu::Verdict;

constexpr std::uint16_t kMvlan = 100;
constexpr std::uint16_t kIptvVlan = 300;
constexpr std::uint32_t kKeep = 1;
constexpr std::uint32_t kTranslate = 2;

/// A group of either IP version, its stream and the report that joins it.
struct Channel {
  std::string name;
  std::string address;
  std::string mac;
  std::string report;

  [[nodiscard]] std::string stream(std::uint16_t vid) const {
    return "udp dip " + address + " vlan " + std::to_string(vid) + " pcp 4 dport 5000";
  }

  [[nodiscard]] McastGroupRequest request(std::uint32_t portMask) const {
    McastGroupRequest request = {};
    request.vlan = kMvlan;
    request.portMask = portMask;
    std::ranges::copy(virtual_onu::ParseMac(mac).value(), std::begin(request.groupMac));
    const Bytes bytes = virtual_onu::ParseIp(address).value();
    std::ranges::copy(bytes, bytes.size() == sizeof(request.groupIpv4)
                                 ? std::begin(request.groupIpv4)
                                 : std::begin(request.groupIpv6));
    return request;
  }
};

void PrintTo(const Channel& channel, std::ostream* out) {
  *out << channel.name;
}

class MulticastTest : public SwitchingTest, public testing::WithParamInterface<Channel> {
 protected:
  static std::string stream(std::uint16_t vid = kMvlan) { return GetParam().stream(vid); }

  static void add(std::uint32_t portMask) {
    const McastGroupRequest request = GetParam().request(portMask);
    EXPECT_EQ(BCM6838X_AddMulticastMacAddr(&request), 0U);
  }
  static void modify(std::uint32_t portMask) {
    const McastGroupRequest request = GetParam().request(portMask);
    EXPECT_EQ(BCM6838X_ModifyMulticastMacAddr(&request), 0U);
  }
  static void remove(std::uint32_t portMask) {
    const McastGroupRequest request = GetParam().request(portMask);
    EXPECT_EQ(BCM6838X_DelMulticastMacAddr(&request), 0U);
  }

  /// The stream reaches UNI port 2 alone, as this frame; it did not before the join, and no longer
  /// does behind the leave.
  void expectJoinedStream(const Bytes& received) {
    EXPECT_EQ(offer(kWan, stream()).outcome, Outcome::NoGroupMember);
    add(0x2);
    const Verdict verdict = offer(kWan, stream());
    EXPECT_EQ(verdict.outcome, Outcome::GroupForward);
    ASSERT_EQ(verdict.deliveries.size(), 1U);
    EXPECT_EQ(verdict.deliveries[0].port, Uni(2));
    EXPECT_EQ(verdict.deliveries[0].frame, received);
    remove(0x2);
    EXPECT_EQ(offer(kWan, stream()).outcome, Outcome::NoGroupMember);
  }
};

TEST_P(MulticastTest, PortThatStripsTheTag_GetsTheStreamUntagged) {
  EXPECT_EQ(BCM6838X_SetMulticastVlanMode(2, 0), 0U);
  Bytes untagged = FrameOf(stream());
  constexpr int kTagAt = 12;
  constexpr int kTagEnd = 16;
  untagged.erase(untagged.begin() + kTagAt, untagged.begin() + kTagEnd);
  expectJoinedStream(untagged);
}

TEST_P(MulticastTest, PortThatKeepsTheTag_GetsTheStreamAsItCame) {
  EXPECT_EQ(BCM6838X_SetMulticastVlanMode(2, kKeep), 0U);
  EXPECT_EQ(BCM6838X_AddIgmpVlan(2, kMvlan), 0U);
  expectJoinedStream(FrameOf(stream()));
}

TEST_P(MulticastTest, PortThatTranslates_GetsTheStreamInItsVlan) {
  EXPECT_EQ(BCM6838X_SetMulticastVlanMode(2, kTranslate), 0U);
  EXPECT_EQ(BCM6838X_AddMulticastVlanTrans(2, kMvlan, kIptvVlan), 0U);
  expectJoinedStream(FrameOf(stream(kIptvVlan)));
}

TEST_P(MulticastTest, PortsWithDifferentTreatments_GetTheirsEach) {
  EXPECT_EQ(BCM6838X_SetMulticastVlanMode(1, 0), 0U);
  EXPECT_EQ(BCM6838X_SetMulticastVlanMode(3, kTranslate), 0U);
  EXPECT_EQ(BCM6838X_AddMulticastVlanTrans(3, kMvlan, kIptvVlan), 0U);
  modify(0x7);
  const Verdict verdict = offer(kWan, stream());
  ASSERT_EQ(verdict.deliveries.size(), 3U);
  EXPECT_EQ(verdict.deliveries[0].frame.size(), FrameOf(stream()).size() - 4);
  EXPECT_EQ(verdict.deliveries[1].frame, FrameOf(stream()));
  EXPECT_EQ(verdict.deliveries[2].frame, FrameOf(stream(kIptvVlan)));
}

TEST_P(MulticastTest, Add_JoinsTheFirstPortOfTheMaskAndModifyTheOthers) {
  add(0x6);
  EXPECT_EQ(leavesBy(kWan, stream()), "uni2");
  modify(0x6);
  EXPECT_EQ(leavesBy(kWan, stream()), "uni2 uni3");
  modify(0x5);
  EXPECT_EQ(leavesBy(kWan, stream()), "uni1 uni3");
  remove(0x7);
  EXPECT_EQ(leavesBy(kWan, stream()), "uni3") << "one port a call";
  modify(0);
  EXPECT_EQ(offer(kWan, stream()).outcome, Outcome::NoGroupMember);
}

TEST_P(MulticastTest, StreamInAnotherVlan_IsNotJoined) {
  add(0x2);
  EXPECT_EQ(offer(kWan, stream(kMvlan + 1)).outcome, Outcome::NoGroupMember);
  EXPECT_EQ(leavesBy(kWan, stream()), "uni2");
}

TEST_P(MulticastTest, RefusedJoin_LetsNothingThrough) {
  unit.device().faults().refuseNth(1, BRMGR_CMD_MCAST_ADD);
  const McastGroupRequest request = GetParam().request(0x2);
  BCM6838X_AddMulticastMacAddr(&request);
  EXPECT_EQ(offer(kWan, stream()).outcome, Outcome::NoGroupMember);
}

TEST_P(MulticastTest, Report_GoesToTheUplinkAndTheJoinFollows) {
  const Bytes report = FrameOf(GetParam().report + " dip " + GetParam().address);
  const std::size_t before = commands().size();
  EXPECT_EQ(BCM6838X_DispatchIgmpPacket(report.data(), static_cast<std::uint32_t>(report.size()),
                                        kMvlan, 2),
            0U);
  EXPECT_EQ(commands().size(), before + 1) << "sent once, towards the uplink";
  add(0x2);
  EXPECT_EQ(leavesBy(kWan, stream()), "uni2");
}

INSTANTIATE_TEST_SUITE_P(
    Versions, MulticastTest,
    testing::Values(Channel{"Igmp", "233.252.0.1", "01:00:5e:7c:00:01", "igmp"},
                    Channel{"Mld", "ff0e::db8:0:1", "33:33:00:00:00:01", "mld"}),
    [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace hal_test
