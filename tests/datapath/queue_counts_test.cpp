/// @file
/// Frames by queue, and what a verdict says of policer and re-mark.
#include <gtest/gtest.h>
#include <string>
#include <utility>

#include "datapath/rate_limits.h"
#include "ports_fixture.h"

namespace virtual_onu {
namespace {

constexpr std::uint32_t kBurst = 1000;

/// Upstream frames go to queue 5 by policer 1 and priority 7, downstream frames to queue 2.
class QueueTest : public testing::Test {
 protected:
  QueueTest()
      : path(chip.tables, chip.ports(kUniPorts), Limits(qos, clock),
             MacBridge(macs, chip.portTables, clock, 8)) {
    IngressFlowRule& flow = chip.addMatchAll(kUp);
    flow.queue = 5;
    flow.policer = 1;
    flow.vlanActionIndex = 0;
    chip.addAction(kUp, 0, BRMGR_TAG_REPLACE_PRIORITY, {0, 7, 0, 0});
    chip.addMatchAll(kDown).queue = 2;
  }

  Verdict send(PortId port, const std::string& frame = kTagged) {
    return path.offer(port, Hex(frame));
  }

  [[nodiscard]] Names counted() const {
    Names lines;
    for (const auto& [place, count] : path.counters().queues().all()) {
      lines.push_back(place.first.name() + " " + std::to_string(place.second) + " " +
                      std::to_string(count.frames) + " " + std::to_string(count.octets));
    }
    return lines;
  }

  QosTables qos;
  Clock clock;
  ChipBuilder chip;
  MacTables macs;
  DataPath path;
};

TEST_F(QueueTest, ForwardedFrames_AreCountedByPortAndQueue) {
  EXPECT_TRUE(counted().empty());
  send(kUni1);
  send(kUni2);
  EXPECT_EQ(counted(), Names{"wan 5 2 40"});  // 20 octets each
  send(PortId::Wan());
  EXPECT_EQ(counted(), (Names{"wan 5 2 40", "uni1 2 1 20", "uni2 2 1 20", "uni3 2 1 20"}));
  path.clearCounters();
  EXPECT_TRUE(counted().empty());
}

TEST_F(QueueTest, FrameThatDoesNotLeave_IsInNoQueue) {
  qos.policers[1] = {{0, 64000, 19, 1, 1, 1}, 1};
  EXPECT_EQ(send(kUni1).outcome, Outcome::Policed);
  chip.tables.upstream.classes.at(0).flows.at(0).forward = BRMGR_FORWARD_TRAP;
  send(kUni1);
  chip.tables.upstream.classes.at(0).flows.at(0).forward = BRMGR_FORWARD_ACL;
  send(kUni1);
  EXPECT_TRUE(counted().empty());
}

TEST_F(QueueTest, LocallySwitchedFrame_IsInNoQueue) {
  const auto between = [](const std::string& to, const std::string& from) {
    return to + from + "8100 a064 " + kPlain;
  };
  send(kUni1, between(kMacB, kMacA));
  path.clearCounters();
  EXPECT_EQ(send(kUni2, between(kMacA, kMacB)).neighbour, kUni1);
  EXPECT_TRUE(counted().empty());
}

TEST_F(QueueTest, Explain_CountsNothing) {
  EXPECT_EQ(path.explain(kUni1, Hex(kTagged)).verdict.queue, 5U);
  EXPECT_TRUE(counted().empty());
}

TEST_F(QueueTest, Verdict_TellsTheRemark) {
  EXPECT_EQ(send(kUni1).remark, (Remark{5, 7, {}}));
  EXPECT_EQ(send(kUni1, kUntagged).remark, std::nullopt);
  EXPECT_EQ(send(PortId::Wan()).remark, std::nullopt) << "the flow has no action";
}

TEST_F(QueueTest, Verdict_TellsWhatThePolicerHoldsBehindTheFrame) {
  EXPECT_EQ(send(kUni1).policerTokens, std::nullopt) << "the port has none";
  EXPECT_EQ(path.policerTokens(1), std::nullopt);
  qos.policers[1] = {{0, 64000, kBurst, 1, 1, 1}, 1};
  EXPECT_EQ(path.explain(kUni1, Hex(kTagged)).verdict.policerTokens, 980U);
  EXPECT_EQ(path.policerTokens(1), 1000U) << "explaining takes none";
  EXPECT_EQ(send(kUni1).policerTokens, 980U);
  EXPECT_EQ(path.policerTokens(1), 980U);
  clock.advance(1);  // 8 octets
  EXPECT_EQ(path.policerTokens(1), 988U);
  clock.advance(1000);
  EXPECT_EQ(path.policerTokens(1), 1000U) << "no more than the burst";
  EXPECT_EQ(send(PortId::Wan()).policerTokens, std::nullopt) << "the flow names none";
}

TEST_F(QueueTest, PolicedFrame_TellsWhatThePolicerStillHolds) {
  qos.policers[1] = {{0, 0, 50, 1, 1, 1}, 1};
  EXPECT_EQ(send(kUni1).policerTokens, 30U);
  EXPECT_EQ(send(kUni1).policerTokens, 10U);
  const Verdict verdict = send(kUni1);
  EXPECT_EQ(verdict.outcome, Outcome::Policed);
  EXPECT_EQ(verdict.policerTokens, 10U);
  EXPECT_EQ(verdict.remark, std::nullopt);
}

TEST_F(QueueTest, Tokens_AreWholeOctets) {
  qos.policers[1] = {{0, 1, 50, 1, 1, 1}, 1};
  send(kUni1);
  clock.advance(7999);  // 7.999 bits
  EXPECT_EQ(path.policerTokens(1), 30U);
  clock.advance(1);
  EXPECT_EQ(path.policerTokens(1), 31U);
}

}  // namespace
}  // namespace virtual_onu
