/// @file
/// Downstream multicast: the ports that joined a group, their tag treatment, and the frames that
/// the group entries leave alone.
#include "datapath/group_table.h"

#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

#include "base/text.h"
#include "frame/words.h"
#include "ports_fixture.h"

namespace virtual_onu {
namespace {

constexpr PortId kWan = PortId::Wan();
const std::string kStream = "udp dip 233.252.0.1 vlan 100";

/// The frame that words describe.
Bytes FrameOf(const std::string& text) {
  std::istringstream stream(text);
  const std::vector<std::string> words(std::istream_iterator<std::string>(stream), {});
  const FrameOrError frame = BuildFrame(words);
  EXPECT_TRUE(std::holds_alternative<Bytes>(frame)) << text;
  return std::get<Bytes>(frame);
}

class GroupTest : public PortsTest {
 protected:
  GroupTest()
      : path(chip.tables, chip.ports(kUniPorts), std::nullopt,
             MacBridge(macs, chip.portTables, clock, kMacEntries), &groups) {}

  /// An entry as a join makes it.
  McastGroupEntry& join(std::uint32_t index, std::uint32_t uni, const std::string& address,
                        std::uint16_t vid = 100, std::uint32_t action = BRMGR_INDEX_NONE) {
    McastGroupEntry& entry = groups[index];
    entry = {};
    entry.vlanActionIndex = action;
    entry.channelIndex = index;
    entry.port = uni;
    entry.vlan = vid;
    const Bytes bytes = ParseIp(address).value();
    std::ranges::copy(
        bytes, bytes.size() == 4 ? std::begin(entry.groupIpv4) : std::begin(entry.groupIpv6));
    return entry;
  }

  PortIds streamTo(const std::string& text) { return path.offer(kWan, FrameOf(text)).egress(); }

  Outcome outcome(const std::string& text) { return path.offer(kWan, FrameOf(text)).outcome; }

  McastGroups groups;
  DataPath path;
  const PortIds everyUni = {kUni1, kUni2, kUni3};
};

TEST_F(GroupTest, Stream_ReachesThePortsThatJoined) {
  EXPECT_EQ(outcome(kStream), Outcome::NoGroupMember);
  join(7, 3, "233.252.0.1");
  join(2, 1, "233.252.0.1");
  const Verdict verdict = path.offer(kWan, FrameOf(kStream));
  EXPECT_EQ(verdict.outcome, Outcome::GroupForward);
  EXPECT_EQ(verdict.egress(), (PortIds{kUni1, kUni3}));
  EXPECT_EQ(verdict.deliveries[0].frame, FrameOf(kStream));
  EXPECT_EQ(verdict.deliveries[0].rule, "joined 233.252.0.1 in VLAN 100 by group entry 2");
  ASSERT_TRUE(verdict.groupDecision);
  EXPECT_EQ(verdict.groupDecision->entries, (std::vector<std::uint32_t>{2, 7}));
  EXPECT_FALSE(verdict.flowIndex) << "the group entries decided";
  groups.erase(2);
  EXPECT_EQ(streamTo(kStream), PortIds{kUni3});
  groups.erase(7);
  EXPECT_EQ(outcome(kStream), Outcome::NoGroupMember);
}

TEST_F(GroupTest, OtherGroupOrVlan_IsNotJoined) {
  join(0, 1, "233.252.0.1");
  EXPECT_EQ(outcome("udp dip 233.252.0.2 vlan 100"), Outcome::NoGroupMember);
  // The MAC addresses of these two are the same.
  EXPECT_EQ(outcome("udp dip 232.124.0.1 vlan 100"), Outcome::NoGroupMember);
  EXPECT_EQ(outcome("udp dip 233.252.0.1 vlan 200"), Outcome::NoGroupMember);
  EXPECT_EQ(outcome("udp dip 233.252.0.1"), Outcome::NoGroupMember);
  EXPECT_EQ(outcome("udp dip ff0e::1 vlan 100"), Outcome::NoGroupMember);
  EXPECT_EQ(streamTo("udp dip 233.252.0.1 svlan 100 vlan 7"), PortIds{kUni1}) << "outer tag";
}

TEST_F(GroupTest, UntaggedGroup_IsThatOfVlan0) {
  join(0, 2, "233.252.0.1", 0);
  EXPECT_EQ(streamTo("udp dip 233.252.0.1"), PortIds{kUni2});
  EXPECT_EQ(outcome(kStream), Outcome::NoGroupMember);
}

TEST_F(GroupTest, Ipv6Group_IsKnownByAll16Bytes) {
  join(0, 2, "ff0e::db8:0:1");
  EXPECT_EQ(streamTo("udp dip ff0e::db8:0:1 vlan 100"), PortIds{kUni2});
  EXPECT_EQ(outcome("udp dip ff0e:1::db8:0:1 vlan 100"), Outcome::NoGroupMember);
}

TEST_F(GroupTest, Ipv4Address_HidesTheIpv6OneOfItsEntry) {
  McastGroupEntry& entry = join(0, 2, "233.252.0.1");
  entry.groupIpv6[0] = 0xFF;
  EXPECT_EQ(streamTo(kStream), PortIds{kUni2});
}

TEST_F(GroupTest, EntryWithoutIpAddresses_IsKnownByItsMacAddress) {
  McastGroupEntry& entry = join(0, 2, "0.0.0.0");
  const Bytes mac = Hex("01005e7c0001");
  std::ranges::copy(mac, std::begin(entry.groupMac));
  EXPECT_EQ(streamTo(kStream), PortIds{kUni2});
  EXPECT_EQ(streamTo("udp dip 232.124.0.1 vlan 100"), PortIds{kUni2});
  EXPECT_EQ(outcome("udp dip 233.252.0.2 vlan 100"), Outcome::NoGroupMember);
}

TEST_F(GroupTest, EachPort_HasTheTagTreatmentOfItsEntry) {
  chip.addAction(kDown, 4, BRMGR_TAG_POP);
  chip.addAction(kDown, 5, BRMGR_TAG_REPLACE_VID, {300, 0, 0, 0});
  join(0, 1, "233.252.0.1", 100, 4);
  join(1, 2, "233.252.0.1");
  join(2, 3, "233.252.0.1", 100, 5);
  const Verdict verdict = path.offer(kWan, FrameOf(kStream + " pcp 4"));
  ASSERT_EQ(verdict.egress(), everyUni);
  EXPECT_EQ(verdict.deliveries[0].vlanActionIndex, 4U);
  EXPECT_EQ(verdict.deliveries[0].steps, std::vector<std::string>{"pop the outer tag"});
  EXPECT_EQ(OuterVidOf(verdict.deliveries[0].frame), 0);
  EXPECT_FALSE(verdict.deliveries[1].vlanActionIndex);
  EXPECT_EQ(verdict.deliveries[1].frame, FrameOf(kStream + " pcp 4"));
  EXPECT_EQ(verdict.deliveries[2].frame, FrameOf("udp dip 233.252.0.1 vlan 300 pcp 4"));
}

TEST_F(GroupTest, ActionThatIsGone_LeavesTheFrameAsItIs) {
  join(0, 1, "233.252.0.1", 100, 9);
  const Verdict verdict = path.offer(kWan, FrameOf(kStream));
  ASSERT_EQ(verdict.egress(), PortIds{kUni1});
  EXPECT_EQ(verdict.deliveries[0].frame, FrameOf(kStream));
}

TEST_F(GroupTest, SecondEntryOfAPort_DoesNotCount) {
  chip.addAction(kDown, 4, BRMGR_TAG_POP);
  join(0, 1, "233.252.0.1");
  join(1, 1, "233.252.0.1", 100, 4);
  const Verdict verdict = path.offer(kWan, FrameOf(kStream));
  ASSERT_EQ(verdict.egress(), PortIds{kUni1});
  EXPECT_EQ(verdict.deliveries[0].frame, FrameOf(kStream));
}

TEST_F(GroupTest, GroupsOfTheLink_GoToEveryPort) {
  join(0, 1, "224.0.0.251");
  join(1, 1, "ff02::fb");
  for (const std::string frame :
       {"udp dip 224.0.0.251 vlan 100", "igmp dip 224.0.0.1", "udp dip ff02::fb vlan 100",
        "icmp dip ff02::1:ff00:1", "udp dip ff01::1", "udp dip ff12::5"}) {
    EXPECT_EQ(streamTo(frame), everyUni) << frame;
  }
  for (const std::string frame : {"udp dip 224.0.1.1", "udp dip ff03::1", "udp dip ff05::2"}) {
    EXPECT_EQ(outcome(frame), Outcome::NoGroupMember) << frame;
  }
}

TEST_F(GroupTest, FramesThatAreNoIpMulticast_GoToEveryPort) {
  for (const std::string frame :
       {"arp", "udp dip 192.0.2.7", "dhcp", "stp", "dst 01:00:5e:7c:00:01 ethertype 88b5",
        "udp dip 233.252.0.1 dst 02:00:00:00:00:77", "udp dip 233.252.0.1 dst ff:ff:ff:ff:ff:ff",
        "udp dip ff0e::1 dst 01:00:5e:00:00:01"}) {
    EXPECT_EQ(streamTo(frame), everyUni) << frame;
  }
}

TEST_F(GroupTest, CutOffIpHeader_IsNoIpMulticast) {
  Bytes frame = FrameOf(kStream);
  frame.resize(30);
  EXPECT_EQ(path.offer(kWan, frame).egress(), everyUni);
}

TEST_F(GroupTest, UpstreamFrame_GoesToTheWanSide) {
  EXPECT_EQ(path.offer(kUni1, FrameOf(kStream)).egress(), PortIds{kWan});
}

TEST_F(GroupTest, FlowThatTrapsOrDrops_ComesFirst) {
  join(0, 1, "233.252.0.1");
  IngressFlowRule& flow = chip.tables.downstream.classes.at(0).flows.at(0);
  flow.forward = BRMGR_FORWARD_TRAP;
  EXPECT_EQ(outcome(kStream), Outcome::FlowTrap);
  flow.forward = BRMGR_FORWARD_ACL;
  EXPECT_EQ(outcome(kStream), Outcome::FlowAccessControl);
  chip.tables.downstream.classes.clear();
  EXPECT_EQ(streamTo(kStream), PortIds{kUni1}) << "no flow is needed";
}

TEST_F(GroupTest, VlanConfigurationOfThePort_IsNotAsked) {
  chip.portTables.vlans.resize(32);
  for (PortVlanInfo& info : chip.portTables.vlans) {
    info.vlanMode = 255;
  }
  join(0, 1, "233.252.0.1");
  EXPECT_EQ(streamTo(kStream), PortIds{kUni1});
  EXPECT_EQ(outcome("arp vlan 100"), Outcome::NoEgress);
}

TEST_F(GroupTest, PortThatIsDown_GetsNothing) {
  join(0, 1, "233.252.0.1");
  join(1, 2, "233.252.0.1");
  chip.linksDown = {1};
  const Verdict verdict = path.offer(kWan, FrameOf(kStream));
  EXPECT_EQ(verdict.egress(), PortIds{kUni2});
  EXPECT_EQ(verdict.closed, (std::vector<ClosedPort>{{kUni1, Outcome::EgressLinkDown}}));
  setAdmin(2, false);
  EXPECT_EQ(outcome(kStream), Outcome::NoEgress);
}

TEST_F(GroupTest, MacTable_RefusesAndLearnsTheSource) {
  join(0, 1, "233.252.0.1");
  macs.binds[{{0x02, 0, 0, 0, 0, 0x01}, 100}] = 2;
  EXPECT_EQ(outcome(kStream), Outcome::MacBoundElsewhere);
  macs.binds.clear();
  EXPECT_EQ(streamTo(kStream), PortIds{kUni1});
  EXPECT_TRUE(macs.entries.contains({{0x02, 0, 0, 0, 0, 0x01}, 100}));
  groups.clear();
  outcome(kStream + " src 02:00:00:00:00:55");
  EXPECT_EQ(macs.entries.size(), 1U) << "a frame that nobody gets teaches nothing";
}

TEST_F(GroupTest, MirroredPort_IsCopiedAsTheFrameLeaves) {
  chip.addAction(kDown, 4, BRMGR_TAG_POP);
  join(0, 1, "233.252.0.1", 100, 4);
  mirrorTo(3, 0);
  const Verdict verdict = path.offer(kWan, FrameOf(kStream));
  ASSERT_EQ(verdict.copies.size(), 1U);
  EXPECT_EQ(verdict.copies[0].frame, verdict.deliveries.at(0).frame);
}

TEST_F(GroupTest, Explaining_SaysWhatBecomesOfTheFrame) {
  join(0, 1, "233.252.0.1");
  for (const std::string& frame : {kStream, kStream + " svlan 4"}) {
    const Verdict explained = path.explain(kWan, FrameOf(frame)).verdict;
    EXPECT_EQ(explained, path.offer(kWan, FrameOf(frame)));
  }
}

}  // namespace
}  // namespace virtual_onu
