/// @file
/// What the MAC table learns from frames, how it steers them by it, and how it forgets.
#include <cstdint>
#include <gtest/gtest.h>

#include "mac_fixture.h"

namespace virtual_onu {
namespace {

TEST_F(MacTest, UnknownDestination_GoesToEveryPortOfItsDirection) {
  EXPECT_EQ(sent(kWan, 1, 9), everyUni);
  EXPECT_EQ(sent(kUni1, 1, 8), PortIds{kWan});
}

TEST_F(MacTest, KnownDestination_GoesToItsPortAlone) {
  hear(kUni2, 1);
  const Verdict verdict = path.offer(kWan, FrameOf(1, 9));
  EXPECT_EQ(verdict.egress(), PortIds{kUni2});
  EXPECT_EQ(verdict.macDecision, (MacDecision{MacRule::Dynamic, Station(1, 100), kUni2}));
  EXPECT_FALSE(verdict.neighbour);
  EXPECT_EQ(sent(kUni1, 1, 3), PortIds{kUni2}) << "switched locally";
}

TEST_F(MacTest, BroadcastAndGroupFrames_GoToEveryPort) {
  hear(kUni2, 1);
  EXPECT_EQ(sent(kWan, kBroadcast, 9), everyUni);
  path.offer(kUni2, Hex("020000000001 030000000033" + kPlain));
  EXPECT_EQ(path.offer(kWan, Hex("030000000033 020000000009" + kPlain)).egress(), everyUni)
      << "a group address is no source";
  EXPECT_FALSE(macs.entries.contains({{0x03, 0, 0, 0, 0, 0x33}, 0}));
}

TEST_F(MacTest, Address_IsKnownInEachVlanOnItsOwn) {
  hear(kUni2, 1, 100);
  hear(kUni3, 1, 200);
  EXPECT_EQ(wouldLeave(kWan, 1, 100), PortIds{kUni2});
  EXPECT_EQ(wouldLeave(kWan, 1, 200), PortIds{kUni3});
  EXPECT_EQ(wouldLeave(kWan, 1, 300), everyUni);
  EXPECT_EQ(wouldLeave(kWan, 1, 0), everyUni);
  hear(kUni1, 1, 0);
  EXPECT_EQ(wouldLeave(kWan, 1, 0), PortIds{kUni1}) << "untagged frames are in VLAN 0";
}

TEST_F(MacTest, Vlan_IsTheOneOfTheNetworkSide) {
  chip.addAction(kUp, 0, BRMGR_TAG_PUSH, {100, 0, 0, 0x8100});
  chip.tables.upstream.classes.at(0).flows.at(0).vlanActionIndex = 0;
  chip.addAction(kDown, 0, BRMGR_TAG_POP);
  chip.tables.downstream.classes.at(0).flows.at(0).vlanActionIndex = 0;
  hear(kUni2, 1, 0);
  EXPECT_EQ(wouldLeave(kWan, 1, 100), PortIds{kUni2});
  EXPECT_EQ(wouldLeave(kWan, 1, 0), everyUni);
  EXPECT_TRUE(macs.entries.contains(Station(1, 100)));
}

TEST_F(MacTest, WanSide_IsAPortToo) {
  hear(kUni2, 1);
  hear(kWan, 1);
  const Verdict verdict = path.offer(kUni1, FrameOf(1, 3));
  EXPECT_EQ(verdict.egress(), PortIds{kWan});
  EXPECT_EQ(verdict.macDecision, (MacDecision{MacRule::Dynamic, Station(1, 100), kWan}));
  EXPECT_FALSE(verdict.neighbour);
}

TEST_F(MacTest, DestinationAtThePortOfTheFrame_IsAsIfUnknown) {
  hear(kUni2, 1);
  hear(kWan, 9);
  const Verdict up = path.offer(kUni2, FrameOf(1, 3));
  EXPECT_EQ(up.egress(), PortIds{kWan});
  EXPECT_FALSE(up.macDecision);
  EXPECT_EQ(sent(kWan, 9, 8), everyUni);
}

TEST_F(MacTest, Station_MovesToTheNextPortThatHearsIt) {
  hear(kUni2, 1);
  hear(kUni3, 1);
  EXPECT_EQ(wouldLeave(kWan, 1), PortIds{kUni3});
}

TEST_F(MacTest, FrameThatIsNotForwarded_TeachesNothing) {
  IngressFlowRule& flow = chip.tables.upstream.classes.at(0).flows.at(0);
  for (const std::uint32_t decision : {BRMGR_FORWARD_TRAP, BRMGR_FORWARD_ACL}) {
    flow.forward = decision;
    path.offer(kUni2, FrameOf(kBroadcast, 1));
  }
  EXPECT_TRUE(macs.entries.empty());
  flow.forward = BRMGR_FORWARD_PASS;
  hear(kUni2, 1);
  EXPECT_EQ(macs.entries.size(), 1U);
}

TEST_F(MacTest, Explaining_TeachesNothing) {
  EXPECT_EQ(path.explain(kUni2, FrameOf(kBroadcast, 1)).verdict.egress(), PortIds{kWan});
  EXPECT_TRUE(macs.entries.empty());
}

TEST_F(MacTest, LearningSwitchedOff_KeepsWhatIsKnownAndAddsNothing) {
  hear(kUni2, 1);
  chip.portTables.macLearn = 0;
  hear(kUni3, 2);
  hear(kUni3, 1);
  EXPECT_EQ(wouldLeave(kWan, 2), everyUni);
  EXPECT_EQ(wouldLeave(kWan, 1), PortIds{kUni2});
  chip.portTables.macLearn = 0x80000001;
  hear(kUni3, 2);
  EXPECT_EQ(wouldLeave(kWan, 2), PortIds{kUni3});
}

TEST_F(MacTest, DynamicEntry_Outlives300SecondsWithoutAFrame) {
  hear(kUni2, 1);
  clock.advance(300 * kSecond - 1);
  EXPECT_EQ(wouldLeave(kWan, 1), PortIds{kUni2});
  clock.advance(1);
  EXPECT_EQ(wouldLeave(kWan, 1), everyUni);
}

TEST_F(MacTest, Frame_KeepsItsStationAlive) {
  hear(kUni2, 1);
  clock.advance(200 * kSecond);
  hear(kUni2, 1);
  clock.advance(299 * kSecond);
  EXPECT_EQ(wouldLeave(kWan, 1), PortIds{kUni2});
  clock.advance(kSecond);
  EXPECT_EQ(wouldLeave(kWan, 1), everyUni);
  hear(kUni3, 1);
  EXPECT_EQ(wouldLeave(kWan, 1), PortIds{kUni3}) << "heard again";
}

TEST_F(MacTest, AgingTime_IsTheOneThatWasTold) {
  macs.ageTime = 10;
  hear(kUni2, 1);
  clock.advance(10 * kSecond - 1);
  EXPECT_EQ(wouldLeave(kWan, 1), PortIds{kUni2});
  clock.advance(1);
  EXPECT_EQ(wouldLeave(kWan, 1), everyUni);
  macs.ageTime = 0xFFFF;
  EXPECT_EQ(wouldLeave(kWan, 1), PortIds{kUni2}) << "no frame came in between";
}

TEST_F(MacTest, AgingTimeOfZero_AndAgingOfAnotherProcess_LetEntriesStay) {
  hear(kUni2, 1);
  clock.advance(1'000'000 * kSecond);
  EXPECT_EQ(wouldLeave(kWan, 1), everyUni);
  macs.ageTime = 0;
  EXPECT_EQ(wouldLeave(kWan, 1), PortIds{kUni2});
  macs.ageTime.reset();
  macs.ages = false;
  EXPECT_EQ(wouldLeave(kWan, 1), PortIds{kUni2});
}

TEST_F(MacTest, FullTable_LearnsNothingUntilAnEntryAges) {
  for (std::uint8_t number = 1; number <= kMacEntries; ++number) {
    hear(kUni2, number);
    clock.advance(kSecond);
  }
  hear(kUni3, 0x50);
  EXPECT_EQ(wouldLeave(kWan, 0x50), everyUni);
  hear(kUni3, 2);
  EXPECT_EQ(wouldLeave(kWan, 2), PortIds{kUni3}) << "known already";
  clock.advance((300 - kMacEntries) * kSecond);
  hear(kUni3, 0x50);
  EXPECT_EQ(wouldLeave(kWan, 0x50), PortIds{kUni3}) << "the first one's time has run out";
  EXPECT_EQ(macs.entries.size(), kMacEntries);
}

}  // namespace
}  // namespace virtual_onu
