/// @file
/// Tests of the way of a downstream frame to the UNI ports: which take it, and with which tags it
/// leaves each.
#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "ports_fixture.h"

namespace virtual_onu {
namespace {

constexpr std::uint32_t kModeTransparent = 0;
constexpr std::uint32_t kModeTag = 1;
constexpr std::uint32_t kModeNone = 255;

/// A downstream flow of VID 100 (kTagged); UNI ports 1 and 2 have PVID 100, UNI port 3 has 200.
class DeliveryTest : public PortsTest {
 protected:
  DeliveryTest() {
    chip.addMatchAll(kDown);
    chip.portTables.vlans.resize(32);
    for (PortVlanInfo& info : chip.portTables.vlans) {
      info.vlanMode = kModeNone;
    }
    setAccess(1, 100);
    setAccess(2, 100);
    setAccess(3, 200);
  }

  void setAccess(std::uint32_t uni, std::uint16_t pvid) {
    PortVlanInfo& info = chip.portTables.vlans.at(uni - 1);
    info.vlanMode = kModeTag;
    info.pvid = pvid;
  }

  Verdict offered() { return path.offer(PortId::Wan(), Hex(kTagged)); }
};

TEST_F(DeliveryTest, PortsWhoseRuleAdmitsTheFrame_GetItWithTheirTreatment) {
  const Verdict verdict = offered();
  EXPECT_EQ(verdict.outcome, Outcome::FlowForward);
  ASSERT_EQ(verdict.egress(), (PortIds{kUni1, kUni2}));
  for (const Delivery& delivery : verdict.deliveries) {
    EXPECT_EQ(delivery.frame, Hex(kUntagged));
    EXPECT_EQ(delivery.rule, "VID is the PVID");
    EXPECT_EQ(delivery.steps, std::vector<std::string>{"pop the outer tag"});
    EXPECT_FALSE(delivery.vlanActionIndex);
  }
  EXPECT_EQ(verdict.frame, Hex(kTagged)) << "before the treatment of the ports";
  EXPECT_EQ(verdict.closed, (std::vector<ClosedPort>{{kUni3, Outcome::EgressVlanFilter}}));
}

TEST_F(DeliveryTest, FrameThatNoPortTakes_DoesNotPass) {
  for (const std::uint32_t uni : {1U, 2U}) {
    setAccess(uni, 300);
  }
  const Verdict verdict = offered();
  EXPECT_EQ(verdict.outcome, Outcome::NoEgress);
  EXPECT_TRUE(verdict.deliveries.empty());
  EXPECT_EQ(verdict.closed.size(), 3U);
  setAccess(3, 100);
  EXPECT_EQ(offered().egress(), PortIds{kUni3});
}

TEST_F(DeliveryTest, ActionOfThePort_StandsInForItsMode) {
  chip.addAction(kDown, 4, BRMGR_TAG_REPLACE_VID, {77, 0, 0, 0x8100});
  chip.tables.downstream.classes.at(0).portActions[{0, 2}] = 4;
  chip.tables.downstream.classes.at(0).portActions[{0, 3}] = 4;
  const Verdict verdict = offered();
  ASSERT_EQ(verdict.egress(), (PortIds{kUni1, kUni2})) << "the action admits no frame";
  EXPECT_EQ(verdict.deliveries[0].frame, Hex(kUntagged));
  EXPECT_EQ(verdict.deliveries[1].vlanActionIndex, 4U);
  EXPECT_EQ(verdict.deliveries[1].steps, std::vector<std::string>{"set the outer vid to 77"});
  EXPECT_EQ(verdict.deliveries[1].frame[15], 77);
}

TEST_F(DeliveryTest, ActionOfThePortThatIsGone_LeavesTheTreatmentToTheMode) {
  chip.tables.downstream.classes.at(0).portActions[{0, 1}] = 9;
  EXPECT_EQ(offered().deliveries.at(0).frame, Hex(kUntagged));
}

TEST_F(DeliveryTest, ConfigurationNotToldYet_LetsEveryPortTakeTheFrameAsItIs) {
  chip.portTables.vlans.clear();
  const Verdict verdict = offered();
  EXPECT_EQ(verdict.egress(), (PortIds{kUni1, kUni2, kUni3}));
  EXPECT_EQ(verdict.deliveries[2].frame, Hex(kTagged));
  EXPECT_TRUE(verdict.deliveries[2].rule.empty());
}

TEST_F(DeliveryTest, PortThatIsDown_IsClosedWhateverItsConfiguration) {
  chip.linksDown.insert(1);
  const Verdict verdict = offered();
  EXPECT_EQ(verdict.egress(), PortIds{kUni2});
  EXPECT_EQ(verdict.closed.at(0), (ClosedPort{kUni1, Outcome::EgressLinkDown}));
}

TEST_F(DeliveryTest, MirroredPort_IsCopiedAsTheFrameLeaves) {
  chip.portTables.mirror = {.selector = 0, .destinationPort = 4, .enable = 1, .direction = 0};
  const Verdict verdict = offered();
  ASSERT_EQ(verdict.copies.size(), 2U);
  EXPECT_EQ(verdict.copies[0].frame, Hex(kUntagged));
}

/// UNI ports 1 and 2 push VID 100, UNI port 3 pushes 200; each has seen its station.
class SwitchingTest : public DeliveryTest {
 protected:
  SwitchingTest() {
    chip.addClass(kUp, 0, BRMGR_KEY_INGRESS_PORT, 1);
    for (std::uint32_t uni = 1; uni <= 3; ++uni) {
      const std::uint16_t vid = uni == 3 ? 200 : 100;
      chip.addAction(kUp, uni, BRMGR_TAG_PUSH, {vid, 0, 0, 0x8100});
      IngressFlowRule& flow = chip.addFlow(kUp, 0, uni);
      flow.ingressPort = uni + 1;
      flow.vlanActionIndex = uni;
    }
    path.offer(kUni1, Hex(kMacB + kMacA + kPlain));
    path.offer(kUni2, Hex(kMacA + kMacB + kPlain));
  }
};

TEST_F(SwitchingTest, StationInTheSameVlan_IsReachedLocally) {
  const Verdict verdict = path.offer(kUni1, Hex(kMacB + kMacA + kPlain));
  EXPECT_EQ(verdict.neighbour, kUni2);
  ASSERT_EQ(verdict.egress(), PortIds{kUni2});
  EXPECT_EQ(verdict.deliveries[0].frame, Hex(kMacB + kMacA + kPlain));
}

TEST_F(SwitchingTest, StationInAnotherVlan_IsNot) {
  const Verdict verdict = path.offer(kUni3, Hex(kMacB + "020000000033" + kPlain));
  EXPECT_FALSE(verdict.neighbour);
  EXPECT_EQ(verdict.egress(), PortIds{PortId::Wan()});
}

TEST_F(SwitchingTest, StationBehindAnIsolatedPort_IsNotReached) {
  chip.portTables.isolated.insert({1, 2});
  const Verdict verdict = path.offer(kUni1, Hex(kMacB + kMacA + kPlain));
  EXPECT_EQ(verdict.outcome, Outcome::NoEgress);
  EXPECT_EQ(verdict.closed, (std::vector<ClosedPort>{{kUni2, Outcome::EgressIsolated}}));
}

TEST_F(SwitchingTest, NoDownstreamFlow_LeavesTheFrameToTheWan) {
  chip.tables.downstream.classes.clear();
  EXPECT_EQ(path.offer(kUni1, Hex(kMacB + kMacA + kPlain)).egress(), PortIds{PortId::Wan()});
}

TEST_F(SwitchingTest, TransparentPorts_SwitchFramesUnchanged) {
  for (const std::uint32_t uni : {1U, 2U}) {
    chip.portTables.vlans.at(uni - 1).vlanMode = kModeTransparent;
    chip.tables.upstream.classes.at(0).flows.at(uni).vlanActionIndex = BRMGR_INDEX_NONE;
  }
  path.offer(kUni1, Hex(kMacB + kMacA + kPlain));
  const Verdict verdict = path.offer(kUni2, Hex(kMacA + kMacB + kPlain));
  ASSERT_EQ(verdict.egress(), PortIds{kUni1});
  EXPECT_EQ(verdict.deliveries[0].frame, Hex(kMacA + kMacB + kPlain));
}

}  // namespace
}  // namespace virtual_onu
