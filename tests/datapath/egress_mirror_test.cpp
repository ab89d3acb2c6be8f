/// @file
/// Mirrored ports, and what is counted at the ports.
#include <gtest/gtest.h>
#include <vector>

#include "ports_fixture.h"

namespace virtual_onu {
namespace {

using MirrorTest = PortsTest;

constexpr std::uint32_t kTransmitted = 0;
constexpr std::uint32_t kReceived = 1;
constexpr std::uint32_t kBoth = 2;

TEST_F(MirrorTest, MirrorOfReceivedFrames_ShowsThemAsTheyCame) {
  chip.tables.upstream.classes.at(0).flows.at(0).vlanActionIndex = 0;
  chip.addAction(kUp, 0, BRMGR_TAG_POP);
  mirrorTo(3, kReceived);
  const Verdict up = path.offer(kUni1, Hex(kTagged));
  EXPECT_EQ(up.egress(), PortIds{PortId::Wan()});
  EXPECT_EQ(up.frame, Hex(kUntagged));
  EXPECT_EQ(up.copies,
            (std::vector<MirrorCopy>{{kUni3, kUni1, true, Outcome::Mirrored, Hex(kTagged)}}));
  EXPECT_TRUE(path.offer(PortId::Wan(), Hex(kTagged)).copies.empty()) << "not of the WAN side";
}

TEST_F(MirrorTest, MirrorOfTransmittedFrames_ShowsThemAsTheyLeave) {
  chip.tables.downstream.classes.at(0).flows.at(0).vlanActionIndex = 0;
  chip.addAction(kDown, 0, BRMGR_TAG_POP);
  mirrorTo(3, kTransmitted);
  const Verdict down = path.offer(PortId::Wan(), Hex(kTagged));
  EXPECT_EQ(down.egress(), (PortIds{kUni1, kUni2, kUni3}));
  EXPECT_EQ(down.copies,
            (std::vector<MirrorCopy>{{kUni3, kUni1, false, Outcome::Mirrored, Hex(kUntagged)},
                                     {kUni3, kUni2, false, Outcome::Mirrored, Hex(kUntagged)}}))
      << "the mirror port's own frame is not copied";
  EXPECT_TRUE(path.offer(kUni1, Hex(kTagged)).copies.empty()) << "received, and sent at the WAN";
}

TEST_F(MirrorTest, MirrorOfBoth_ShowsALocallySwitchedFrameTwice) {
  path.offer(kUni2, Hex(kMacB + kMacA + kPlain));
  mirrorTo(3, kBoth);
  const Bytes frame = Hex(kMacA + kMacB + kPlain);
  EXPECT_EQ(path.offer(kUni1, frame).copies,
            (std::vector<MirrorCopy>{{kUni3, kUni1, true, Outcome::Mirrored, frame},
                                     {kUni3, kUni2, false, Outcome::Mirrored, frame}}));
}

TEST_F(MirrorTest, MirrorOff_MakesNoCopies) {
  mirrorTo(3, kBoth);
  chip.portTables.mirror.enable = 0;
  EXPECT_TRUE(path.offer(kUni1, Hex(kTagged)).copies.empty());
  EXPECT_TRUE(path.offer(PortId::Wan(), Hex(kTagged)).copies.empty());
}

TEST_F(MirrorTest, MirrorPort_IsNotItselfMirrored) {
  mirrorTo(1, kBoth);
  EXPECT_TRUE(path.offer(kUni1, Hex(kTagged)).copies.empty());
  EXPECT_EQ(path.offer(kUni2, Hex(kTagged)).copies.size(), 1U);
}

TEST_F(MirrorTest, MirroredFrame_MayBeTrappedOrDropped) {
  mirrorTo(3, kReceived);
  for (const std::uint32_t forward : {BRMGR_FORWARD_TRAP, BRMGR_FORWARD_ACL}) {
    chip.tables.upstream.classes.at(0).flows.at(0).forward = forward;
    EXPECT_EQ(path.offer(kUni1, Hex(kTagged)).copies.size(), 1U) << forward;
  }
  EXPECT_TRUE(path.offer(kUni1, Hex("02")).copies.empty()) << "a damaged frame is none";
  setAdmin(1, false);
  EXPECT_TRUE(path.offer(kUni1, Hex(kTagged)).copies.empty()) << "it never entered";
}

TEST_F(MirrorTest, MirrorPortThatIsDown_LosesTheCopyAndNotTheFrame) {
  mirrorTo(3, kReceived);
  chip.linksDown = {3};
  const Verdict verdict = path.offer(kUni1, Hex(kTagged));
  EXPECT_EQ(verdict.egress(), PortIds{PortId::Wan()});
  ASSERT_EQ(verdict.copies.size(), 1U);
  EXPECT_EQ(verdict.copies[0].outcome, Outcome::EgressLinkDown);
  EXPECT_EQ(path.counters().portCount(kUni3), PortCount());
  EXPECT_EQ(counted(), (Names{"uni1 flow_forward 1 20", "uni3 egress_link_down 1 20"}));
}

TEST_F(MirrorTest, MirrorPortIsolatedFromTheMirrored_GetsTheCopy) {
  mirrorTo(3, kReceived);
  isolate(1, 3);
  isolate(3, 3);
  EXPECT_EQ(path.offer(kUni1, Hex(kTagged)).copies.at(0).outcome, Outcome::Mirrored);
}

TEST_F(MirrorTest, PortCounts_AreOfFramesThatCrossedThePort) {
  mirrorTo(3, kReceived);
  setAdmin(2, false);
  path.offer(kUni1, Hex(kTagged));
  path.offer(kUni1, Hex("02"));
  path.offer(kUni2, Hex(kTagged));
  path.offer(PortId::Wan(), Hex(kUntagged));
  EXPECT_EQ(path.counters().portCount(PortId::Wan()), (PortCount{1, 16, 1, 20}));
  EXPECT_EQ(path.counters().portCount(kUni1), (PortCount{2, 21, 1, 16}));
  EXPECT_EQ(path.counters().portCount(kUni2), PortCount()) << "down: nothing crossed";
  EXPECT_EQ(path.counters().portCount(kUni3), (PortCount{0, 0, 2, 36}))
      << "a copy and a frame of its own";
  path.clearCounters();
  EXPECT_EQ(path.counters().portCount(kUni1), PortCount());
}

TEST_F(MirrorTest, Explain_TellsTheSameAndLearnsNothing) {
  mirrorTo(3, kBoth);
  chip.linksDown = {2};
  const Bytes up = Hex(kMacB + kMacA + kPlain);
  const Bytes down = Hex(kMacA + kMacB + kPlain);
  const Verdict explainedUp = path.explain(kUni1, up).verdict;
  EXPECT_FALSE(path.explain(kUni3, down).verdict.neighbour) << "kMacA was explained, not offered";
  EXPECT_TRUE(path.counters().outcomes().empty());
  EXPECT_TRUE(macs.entries.empty());
  EXPECT_EQ(path.offer(kUni1, up), explainedUp);
  const Verdict explainedDown = path.explain(PortId::Wan(), down).verdict;
  EXPECT_EQ(path.offer(PortId::Wan(), down), explainedDown);
}

}  // namespace
}  // namespace virtual_onu
