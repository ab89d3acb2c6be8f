/// @file
/// Entries that commands made, blocked and bound addresses, and the learning limit.
#include "datapath/mac_bridge.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <string_view>
#include <utility>
#include <vector>

#include "mac_fixture.h"

namespace virtual_onu {
namespace {

TEST_F(MacTest, StaticEntry_StaysAtItsPortAndForEver) {
  macs.entries[Station(1, 100)] = {2, kMacEntryStatic};
  clock.advance(1'000'000 * kSecond);
  const Verdict verdict = path.offer(kWan, FrameOf(1, 9));
  EXPECT_EQ(verdict.egress(), PortIds{kUni2});
  EXPECT_EQ(verdict.macDecision, (MacDecision{MacRule::Static, Station(1, 100), kUni2}));
  hear(kUni3, 1);
  EXPECT_EQ(wouldLeave(kWan, 1), PortIds{kUni2}) << "a frame does not move it";
  EXPECT_EQ(wouldLeave(kWan, 1, 200), everyUni) << "another VLAN";
}

TEST_F(MacTest, DynamicEntryOfACommand_AgesAndMovesAsALearnedOne) {
  macs.entries[Station(1, 100)] = {2, kMacEntryDynamic, 0};
  EXPECT_EQ(wouldLeave(kWan, 1), PortIds{kUni2});
  hear(kUni3, 1);
  EXPECT_EQ(wouldLeave(kWan, 1), PortIds{kUni3});
  clock.advance(300 * kSecond);
  EXPECT_EQ(wouldLeave(kWan, 1), everyUni);
}

TEST_F(MacTest, BlockedAddress_SendsNothingAtItsPort) {
  macs.filters[Station(1, 100)] = 2;
  const Verdict verdict = path.offer(kUni2, FrameOf(kBroadcast, 1));
  EXPECT_EQ(verdict.outcome, Outcome::MacFiltered);
  EXPECT_TRUE(verdict.egress().empty());
  EXPECT_FALSE(verdict.queue);
  EXPECT_EQ(verdict.macDecision, (MacDecision{MacRule::Filter, Station(1, 100), kUni2}));
  EXPECT_TRUE(macs.entries.empty()) << "not learned";
  EXPECT_EQ(outcome(kUni2, kBroadcast, 1, 200), Outcome::FlowForward) << "another VLAN";
  EXPECT_EQ(outcome(kUni3, kBroadcast, 1), Outcome::FlowForward) << "another port";
  EXPECT_EQ(outcome(kUni2, kBroadcast, 3), Outcome::FlowForward) << "another address";
  macs.filters.clear();
  EXPECT_EQ(outcome(kUni2, kBroadcast, 1), Outcome::FlowForward);
}

TEST_F(MacTest, BlockedAddress_GetsNothingAtItsPort) {
  macs.filters[Station(1, 100)] = 2;
  const Verdict flooded = path.offer(kWan, FrameOf(1, 9));
  EXPECT_EQ(flooded.egress(), (PortIds{kUni1, kUni3}));
  EXPECT_EQ(flooded.closed, (std::vector<ClosedPort>{{kUni2, Outcome::EgressMacFiltered}}));
  macs.entries[Station(1, 100)] = {2, kMacEntryStatic};
  EXPECT_EQ(outcome(kWan, 1, 9), Outcome::NoEgress);
  EXPECT_EQ(outcome(kUni1, 1, 3), Outcome::NoEgress) << "switched locally";
  EXPECT_EQ(sent(kWan, 1, 9, 200), everyUni) << "another VLAN";
  macs.filters.clear();
  EXPECT_EQ(sent(kWan, 1, 9), PortIds{kUni2});
}

TEST_F(MacTest, BoundAddress_SendsFromItsPortAlone) {
  macs.binds[Station(1, 100)] = 2;
  for (const PortId port : {kUni1, kWan}) {
    const Verdict verdict = path.offer(port, FrameOf(kBroadcast, 1));
    EXPECT_EQ(verdict.outcome, Outcome::MacBoundElsewhere) << port.name();
    EXPECT_EQ(verdict.macDecision, (MacDecision{MacRule::Bind, Station(1, 100), kUni2}));
  }
  EXPECT_TRUE(macs.entries.empty()) << "not learned";
  EXPECT_EQ(outcome(kUni1, kBroadcast, 1, 200), Outcome::FlowForward) << "another VLAN";
  hear(kUni2, 1);
  EXPECT_EQ(wouldLeave(kWan, 1), PortIds{kUni2});
  hear(kUni2, 3);
  macs.binds.clear();
  EXPECT_EQ(outcome(kUni1, kBroadcast, 1), Outcome::FlowForward);
}

TEST_F(MacTest, Limit_DropsFramesOfFurtherStationsOfThePort) {
  chip.portTables.macLimit = 2;
  hear(kUni1, 1);
  hear(kUni1, 2);
  const Verdict verdict = path.offer(kUni1, FrameOf(kBroadcast, 3));
  EXPECT_EQ(verdict.outcome, Outcome::MacLimitReached);
  EXPECT_EQ(verdict.macDecision, (MacDecision{MacRule::Limit, Station(3, 100), kUni1}));
  EXPECT_EQ(wouldLeave(kWan, 3), everyUni) << "not learned";
  hear(kUni1, 2);
  EXPECT_EQ(outcome(kUni1, kBroadcast, 2, 200), Outcome::MacLimitReached) << "another VLAN";
  hear(kUni2, 3);
  chip.portTables.macLimit = 3;
  hear(kUni1, 4);
}

TEST_F(MacTest, Limit_CountsWhatMovesToThePort) {
  chip.portTables.macLimit = 1;
  hear(kUni1, 1);
  hear(kUni2, 2);
  EXPECT_EQ(outcome(kUni1, kBroadcast, 2), Outcome::MacLimitReached);
  EXPECT_EQ(wouldLeave(kWan, 2), PortIds{kUni2});
  hear(kWan, 1);
  hear(kUni1, 2);
  EXPECT_EQ(wouldLeave(kWan, 2), PortIds{kUni1});
}

TEST_F(MacTest, Limit_LeavesOutStaticAndAgedEntries) {
  chip.portTables.macLimit = 1;
  macs.entries[Station(1, 100)] = {1, kMacEntryStatic};
  hear(kUni1, 2);
  hear(kUni1, 1);
  EXPECT_EQ(outcome(kUni1, kBroadcast, 3), Outcome::MacLimitReached);
  clock.advance(300 * kSecond);
  hear(kUni1, 3);
  EXPECT_EQ(outcome(kUni1, kBroadcast, 2), Outcome::MacLimitReached);
}

TEST_F(MacTest, Limit_DoesNotHoldWhereNothingIsLearned) {
  chip.portTables.macLimit = 1;
  hear(kWan, 8);
  hear(kWan, 9);
  hear(kUni1, 1);
  EXPECT_EQ(path.offer(kUni1, Hex(kMacB + "030000000033" + kPlain)).outcome, Outcome::FlowForward)
      << "a group address";
  chip.portTables.macLearn = 0;
  hear(kUni1, 2);
  chip.portTables.macLearn = 1;
  EXPECT_EQ(outcome(kUni1, kBroadcast, 2), Outcome::MacLimitReached);
  chip.portTables.macLimit = 0;
  hear(kUni1, 2);
}

TEST_F(MacTest, Explaining_SaysWhatBecomesOfTheFrame) {
  hear(kUni2, 1);
  chip.portTables.macLimit = 1;
  macs.filters[Station(4, 100)] = 1;
  macs.binds[Station(5, 100)] = 1;
  int compared = 0;
  for (const PortId from : {kWan, kUni1, kUni2}) {
    for (std::uint8_t source = 3; source <= 5; ++source) {
      const Bytes frame = FrameOf(1, source);
      const Explanation explanation = path.explain(from, frame);
      EXPECT_EQ(explanation.verdict, DataPath(path).offer(from, frame)) << from.name();
      macs.entries.erase(Station(source, 100));
      ++compared;
    }
  }
  EXPECT_EQ(compared, 9);
}

TEST(MacRule, Names_AreStable) {
  const std::vector<std::pair<MacRule, std::string_view>> expected = {{MacRule::Dynamic, "dynamic"},
                                                                      {MacRule::Static, "static"},
                                                                      {MacRule::Filter, "filter"},
                                                                      {MacRule::Bind, "bind"},
                                                                      {MacRule::Limit, "limit"}};
  for (const auto& [rule, name] : expected) {
    EXPECT_EQ(Name(rule), name);
  }
}

}  // namespace
}  // namespace virtual_onu
