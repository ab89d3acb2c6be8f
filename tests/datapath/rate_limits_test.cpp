/// @file
/// Policers and downstream limits, to the frame and to the millisecond.
#include "datapath/rate_limits.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <string>

#include "ports_fixture.h"

namespace virtual_onu {
namespace {

constexpr std::size_t kFrameLength = 1000;
constexpr std::uint32_t kBurst = 501536;

/// A data path whose upstream flow names the policer of UNI port 1.
class LimitsTest : public testing::Test {
 protected:
  LimitsTest()
      : path(chip.tables, chip.ports(kUniPorts), Limits(qos, clock),
             MacBridge(macs, chip.portTables, clock, 8)) {
    chip.addMatchAll(kUp).policer = 1;
    chip.addMatchAll(kDown);
  }

  void setPolicer(std::uint32_t uni, std::uint32_t rate) {
    qos.policers[uni] = {{0, rate, kBurst, 1, 1, uni}, ++qos.made};
  }

  void setLimit(std::uint32_t uni, std::uint32_t rate) { qos.dsLimits[uni] = {rate, ++qos.made}; }

  static Bytes FrameOf(std::size_t length) {
    Bytes frame = Hex(kUntagged);
    frame.resize(length);
    return frame;
  }

  Outcome send(PortId port, std::size_t length = kFrameLength) {
    return path.offer(port, FrameOf(length)).outcome;
  }

  /// Frames of 1000 octets that pass at once; the next one does not.
  int burst(PortId port) {
    int passed = 0;
    while (send(port) == Outcome::FlowForward) {
      ++passed;
    }
    return passed;
  }

  QosTables qos;
  Clock clock;
  ChipBuilder chip;
  MacTables macs;
  DataPath path;
};

TEST_F(LimitsTest, PortWithoutAPolicer_PassesEverything) {
  for (int i = 0; i < 2000; ++i) {
    ASSERT_EQ(send(kUni1), Outcome::FlowForward);
  }
}

TEST_F(LimitsTest, Policer_64KilobitsPerSecond_PassesItsBurstAndThenItsRate) {
  setPolicer(1, 64000);
  // 501 x 1000 of 501536 octets; 536 are left.
  EXPECT_EQ(burst(kUni1), 501);
  EXPECT_EQ(send(kUni1, 536), Outcome::FlowForward);
  EXPECT_EQ(send(kUni1, 14), Outcome::Policed);
  // 8 octets in a millisecond.
  clock.advance(1);
  EXPECT_EQ(send(kUni1, 14), Outcome::Policed);
  clock.advance(1);
  EXPECT_EQ(send(kUni1, 17), Outcome::Policed);
  EXPECT_EQ(send(kUni1, 16), Outcome::FlowForward);
  // 125 ms give 1000 octets.
  clock.advance(124);
  EXPECT_EQ(send(kUni1), Outcome::Policed);
  clock.advance(1);
  EXPECT_EQ(send(kUni1), Outcome::FlowForward);
  EXPECT_EQ(send(kUni1, 14), Outcome::Policed);
}

TEST_F(LimitsTest, Policer_OverTenSeconds_PassesItsBurstAndTenSecondsOfItsRate) {
  setPolicer(1, 64000);
  int passed = 0;
  for (int tick = 0; tick < 10000; ++tick) {
    passed += send(kUni1) == Outcome::FlowForward ? 1 : 0;
    clock.advance(1);
  }
  // 501536 octets, and 8 in each of the 9999 ms up to the last frame: 581528.
  EXPECT_EQ(passed, 581);
}

TEST_F(LimitsTest, Policer_AtRest_FillsUpToItsBurstAndNoFurther) {
  setPolicer(1, 64000);
  EXPECT_EQ(burst(kUni1), 501);
  clock.advance(std::uint64_t{1000} * 3600 * 24 * 365 * 100);
  EXPECT_EQ(burst(kUni1), 501);
  clock.advance(62692);  // 501536 octets
  EXPECT_EQ(burst(kUni1), 501);
}

TEST_F(LimitsTest, Policer_RateZero_NeverFills) {
  setPolicer(1, 0);
  EXPECT_EQ(burst(kUni1), 501);
  clock.advance(1000000);
  EXPECT_EQ(send(kUni1), Outcome::Policed);
}

TEST_F(LimitsTest, Policer_MadeAgain_BeginsFull) {
  setPolicer(1, 64000);
  EXPECT_EQ(burst(kUni1), 501);
  setPolicer(1, 64000);
  EXPECT_EQ(burst(kUni1), 501);
  qos.policers.erase(1);
  EXPECT_EQ(send(kUni1), Outcome::FlowForward);
}

TEST_F(LimitsTest, Policer_IsThatOfTheFlowNotOfThePort) {
  setPolicer(2, 64000);
  EXPECT_EQ(path.offer(kUni2, FrameOf(kBurst + 1)).outcome, Outcome::FlowForward);
  setPolicer(1, 64000);
  EXPECT_EQ(path.offer(kUni2, FrameOf(kBurst + 1)).outcome, Outcome::Policed);
}

TEST_F(LimitsTest, Policer_FlowWithoutOne_PassesEverything) {
  setPolicer(1, 64000);
  chip.tables.upstream.classes.at(0).flows.at(0).policer = BRMGR_INDEX_NONE;
  EXPECT_EQ(send(kUni1, kBurst + 1), Outcome::FlowForward);
  EXPECT_FALSE(path.offer(kUni1, FrameOf(kFrameLength)).policer);
}

TEST_F(LimitsTest, PolicedFrame_IsNamedCountedAndGoesNowhere) {
  setPolicer(1, 64000);
  const Verdict verdict = path.offer(kUni1, FrameOf(kBurst + 1));
  EXPECT_EQ(verdict.outcome, Outcome::Policed);
  EXPECT_EQ(verdict.policer, 1U);
  EXPECT_EQ(verdict.flowIndex, 0U);
  EXPECT_FALSE(verdict.queue);
  EXPECT_TRUE(verdict.egress().empty());
  EXPECT_EQ(path.counters().portCount(PortId::Wan()).framesOut, 0U);
  EXPECT_EQ(burst(kUni1), 501) << "it took no tokens";
}

TEST_F(LimitsTest, Explain_TakesNoTokens) {
  setPolicer(1, 64000);
  for (int i = 0; i < 1000; ++i) {
    ASSERT_EQ(path.explain(kUni1, FrameOf(kFrameLength)).verdict.outcome, Outcome::FlowForward);
  }
  EXPECT_EQ(burst(kUni1), 501);
  EXPECT_EQ(path.explain(kUni1, FrameOf(kFrameLength)).verdict.outcome, Outcome::Policed);
}

TEST_F(LimitsTest, DownstreamLimit_HoldsTheCopyOfItsPortBackAlone) {
  setLimit(2, 64000);
  for (int i = 0; i < 501; ++i) {
    ASSERT_EQ(path.offer(PortId::Wan(), FrameOf(kFrameLength)).egress(),
              (PortIds{kUni1, kUni2, kUni3}));
  }
  const Verdict verdict = path.offer(PortId::Wan(), FrameOf(kFrameLength));
  EXPECT_EQ(verdict.outcome, Outcome::FlowForward);
  EXPECT_EQ(verdict.egress(), (PortIds{kUni1, kUni3}));
  EXPECT_EQ(verdict.closed, (std::vector<ClosedPort>{{kUni2, Outcome::EgressRateLimited}}));
  clock.advance(57);  // 456 octets; 536 are left
  EXPECT_EQ(path.offer(PortId::Wan(), FrameOf(kFrameLength)).egress(), (PortIds{kUni1, kUni3}));
  clock.advance(1);
  EXPECT_EQ(path.offer(PortId::Wan(), FrameOf(kFrameLength)).egress(),
            (PortIds{kUni1, kUni2, kUni3}));
}

TEST_F(LimitsTest, DownstreamLimit_SetAgainOrAnew_BeginsFull) {
  const auto fills = [this] { return path.offer(PortId::Wan(), FrameOf(kBurst)).egress(); };
  setLimit(2, 64000);
  EXPECT_EQ(fills(), (PortIds{kUni1, kUni2, kUni3}));
  EXPECT_EQ(fills(), (PortIds{kUni1, kUni3}));
  setLimit(2, 64000);
  EXPECT_EQ(fills(), (PortIds{kUni1, kUni2, kUni3}));
  qos.dsLimits.erase(2);
  EXPECT_EQ(fills(), (PortIds{kUni1, kUni2, kUni3}));
  setLimit(2, 64000);
  EXPECT_EQ(fills(), (PortIds{kUni1, kUni2, kUni3}));
  EXPECT_EQ(fills(), (PortIds{kUni1, kUni3}));
}

TEST_F(LimitsTest, DownstreamLimit_OfAnotherRate_FillsFromThenOn) {
  setLimit(2, 8000000);
  clock.advance(10000);
  setLimit(2, 64000);
  EXPECT_EQ(path.offer(PortId::Wan(), FrameOf(kBurst)).egress().size(), 3U);
  clock.advance(1);  // 8 octets, and 1000 at the rate before
  EXPECT_EQ(path.offer(PortId::Wan(), FrameOf(14)).egress().size(), 2U);
  clock.advance(1);
  EXPECT_EQ(path.offer(PortId::Wan(), FrameOf(14)).egress().size(), 3U);
}

TEST_F(LimitsTest, DownstreamLimit_DoesNotCountUpstreamFrames) {
  for (const std::uint32_t uni : {1U, 2U, 3U}) {
    setLimit(uni, 1);
  }
  EXPECT_EQ(send(kUni1, kBurst + 1), Outcome::FlowForward);
  EXPECT_EQ(path.offer(PortId::Wan(), FrameOf(kBurst)).egress().size(), 3U);
  EXPECT_EQ(path.offer(PortId::Wan(), FrameOf(14)).outcome, Outcome::NoEgress);
}

TEST_F(LimitsTest, LocallySwitchedFrame_IsPolicedAndNotLimited) {
  setLimit(1, 0);
  setLimit(2, 0);
  const auto between = [](const std::string& to, const std::string& from) {
    Bytes frame = Hex(to + from + kPlain);
    frame.resize(kFrameLength);
    return frame;
  };
  EXPECT_EQ(path.offer(kUni1, between(kMacB, kMacA)).neighbour, std::nullopt);
  for (int i = 0; i < 600; ++i) {
    ASSERT_EQ(path.offer(kUni2, between(kMacA, kMacB)).neighbour, kUni1);
  }
  setPolicer(1, 64000);
  EXPECT_EQ(path.offer(kUni2, between(kMacA, kMacB)).neighbour, kUni1);
  EXPECT_EQ(burst(kUni1), 500);
}

}  // namespace
}  // namespace virtual_onu
