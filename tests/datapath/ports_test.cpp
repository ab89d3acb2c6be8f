/// @file
/// Ports that are down or isolated from each other, and local switching.
#include "datapath/ports.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "ports_fixture.h"

namespace virtual_onu {
namespace {

TEST_F(PortsTest, UnitThatNobodyTold_PassesFramesAtEveryPort) {
  for (const PortId port : {PortId::Wan(), kUni1, kUni2, kUni3}) {
    EXPECT_EQ(outcomeOf(port), "flow_forward") << port.name();
  }
}

TEST_F(PortsTest, PortAdministrativelyDown_TakesNoFrame) {
  setAdmin(2, false);
  const Verdict verdict = path.offer(kUni2, Hex(kTagged));
  EXPECT_EQ(verdict.outcome, Outcome::PortAdminDown);
  EXPECT_EQ(verdict.frame, Hex(kTagged));
  EXPECT_TRUE(verdict.egress().empty());
  EXPECT_FALSE(verdict.icIndex);
  EXPECT_EQ(outcomeOf(kUni1), "flow_forward");
  setAdmin(2, true);
  EXPECT_EQ(outcomeOf(kUni2), "flow_forward");
}

TEST_F(PortsTest, PortWithoutLink_TakesNoFrame) {
  chip.linksDown = {1};
  EXPECT_EQ(outcomeOf(kUni1), "port_link_down");
  EXPECT_EQ(outcomeOf(kUni2), "flow_forward");
  chip.linksDown.clear();
  EXPECT_EQ(outcomeOf(kUni1), "flow_forward");
}

TEST_F(PortsTest, PortDownInBothWays_NamesTheAdministrativeState) {
  setAdmin(1, false);
  chip.linksDown = {1};
  EXPECT_EQ(outcomeOf(kUni1), "port_admin_down");
}

TEST_F(PortsTest, DamagedFrameAtAPortThatIsDown_IsTheSameToo) {
  chip.linksDown = {1};
  EXPECT_EQ(outcomeOf(kUni1, "02"), "port_link_down");
}

TEST_F(PortsTest, PortsDown_AreLeftOutDownstream) {
  setAdmin(1, false);
  chip.linksDown = {3};
  const Verdict verdict = path.offer(PortId::Wan(), Hex(kTagged));
  EXPECT_EQ(verdict.outcome, Outcome::FlowForward);
  EXPECT_EQ(verdict.egress(), PortIds{kUni2});
  EXPECT_EQ(verdict.closed, (std::vector<ClosedPort>{{kUni1, Outcome::EgressAdminDown},
                                                     {kUni3, Outcome::EgressLinkDown}}));
  EXPECT_EQ(counted(), (Names{"wan flow_forward 1 20", "uni1 egress_admin_down 1 20",
                              "uni3 egress_link_down 1 20"}));
}

TEST_F(PortsTest, AllPortsDown_DropTheDownstreamFrame) {
  setAdmin(1, false);
  chip.linksDown = {1, 2, 3};
  const Verdict verdict = path.offer(PortId::Wan(), Hex(kTagged));
  EXPECT_EQ(verdict.outcome, Outcome::NoEgress);
  EXPECT_TRUE(verdict.egress().empty());
  ASSERT_EQ(verdict.closed.size(), 3U);
  EXPECT_EQ(verdict.closed[0].outcome, Outcome::EgressAdminDown) << "named first";
  EXPECT_EQ(verdict.flowIndex, 0U) << "the flow that forwards is told all the same";
  chip.linksDown = {1, 2};
  EXPECT_EQ(outcomeOf(PortId::Wan()), "flow_forward");
}

TEST_F(PortsTest, TrappedFrame_NeedsNoPortToLeaveBy) {
  chip.tables.downstream.classes.at(0).flows.at(0).forward = BRMGR_FORWARD_TRAP;
  chip.linksDown = {1, 2, 3};
  EXPECT_EQ(outcomeOf(PortId::Wan()), "flow_trap");
}

TEST_F(PortsTest, ClosedCopies_AreCountedWithTheOctetsThatWereToLeave) {
  chip.tables.downstream.classes.at(0).flows.at(0).vlanActionIndex = 0;
  chip.addAction(kDown, 0, BRMGR_TAG_POP);
  chip.linksDown = {1};
  path.offer(PortId::Wan(), Hex(kTagged));
  EXPECT_EQ(counted(), (Names{"wan flow_forward 1 20", "uni1 egress_link_down 1 16"}));
}

TEST_F(PortsTest, FrameForAStationAtAnotherUniPort_GoesThereAsItCame) {
  chip.tables.upstream.classes.at(0).flows.at(0).vlanActionIndex = 0;
  chip.addAction(kUp, 0, BRMGR_TAG_POP);
  path.offer(kUni2, Hex(kMacB + kMacA + "8100 a064 88b5"));
  const Verdict verdict = path.offer(kUni1, Hex(kMacA + kMacB + "8100 a064 88b5"));
  EXPECT_EQ(verdict.outcome, Outcome::FlowForward);
  EXPECT_EQ(verdict.egress(), PortIds{kUni2});
  EXPECT_EQ(verdict.neighbour, kUni2);
  EXPECT_EQ(verdict.frame, Hex(kMacA + kMacB + "8100 a064 88b5"));
  EXPECT_FALSE(verdict.vlanActionIndex);
  EXPECT_FALSE(verdict.queue);
}

TEST_F(PortsTest, FrameForAnyOtherStation_GoesUp) {
  path.offer(kUni2, Hex(kMacB + kMacA + kPlain));
  EXPECT_EQ(path.offer(kUni1, Hex(kMacB + kMacB + kPlain)).egress(), PortIds{PortId::Wan()})
      << "never seen before this frame";
  EXPECT_EQ(path.offer(kUni2, Hex(kMacA + kMacA + kPlain)).egress(), PortIds{PortId::Wan()})
      << "a station at the same port";
}

TEST_F(PortsTest, Station_MovesWithItsLastFrame) {
  path.offer(kUni2, Hex(kMacB + kMacA + kPlain));
  path.offer(kUni3, Hex(kMacB + kMacA + kPlain));
  EXPECT_EQ(path.offer(kUni1, Hex(kMacA + kMacB + kPlain)).egress(), PortIds{kUni3});
}

TEST_F(PortsTest, Station_AtTheWanSideOrOfADroppedFrame_IsNoNeighbour) {
  path.offer(PortId::Wan(), Hex(kMacB + kMacA + kPlain));
  EXPECT_FALSE(path.explain(kUni1, Hex(kMacA + kMacB + kPlain)).verdict.neighbour) << "WAN side";

  chip.tables.upstream.classes.at(0).flows.at(0).forward = BRMGR_FORWARD_ACL;
  path.offer(kUni2, Hex(kMacB + kMacA + kPlain));
  chip.tables.upstream.classes.at(0).flows.at(0).forward = BRMGR_FORWARD_PASS;
  EXPECT_FALSE(path.explain(kUni1, Hex(kMacA + kMacB + kPlain)).verdict.neighbour) << "dropped";

  const std::string group = "030000000033 ";
  path.offer(kUni2, Hex(kMacB + group + kPlain));
  EXPECT_FALSE(path.explain(kUni1, Hex(group + kMacB + kPlain)).verdict.neighbour) << "group";

  path.offer(kUni2, Hex(kMacB + kMacA + kPlain));
  EXPECT_EQ(path.explain(kUni1, Hex(kMacA + kMacB + kPlain)).verdict.neighbour, kUni2);
}

TEST_F(PortsTest, IsolatedPorts_ExchangeNoFramesInEitherDirection) {
  path.offer(kUni1, Hex(kMacB + kMacA + kPlain));
  path.offer(kUni2, Hex(kMacA + kMacB + kPlain));
  path.clearCounters();
  isolate(2, 1);
  const Verdict there = path.offer(kUni1, Hex(kMacB + kMacA + kPlain));
  EXPECT_EQ(there.outcome, Outcome::NoEgress);
  EXPECT_EQ(there.closed, (std::vector<ClosedPort>{{kUni2, Outcome::EgressIsolated}}));
  const Verdict back = path.offer(kUni2, Hex(kMacA + kMacB + kPlain));
  EXPECT_EQ(back.closed, (std::vector<ClosedPort>{{kUni1, Outcome::EgressIsolated}}));
  EXPECT_EQ(counted(), (Names{"uni1 no_egress 1 16", "uni1 egress_isolated 1 16",
                              "uni2 no_egress 1 16", "uni2 egress_isolated 1 16"}));

  chip.portTables.isolated.clear();
  EXPECT_EQ(path.offer(kUni1, Hex(kMacB + kMacA + kPlain)).egress(), PortIds{kUni2});
}

TEST_F(PortsTest, IsolatedPorts_StillReachOthersAndTheWan) {
  isolate(1, 2);
  path.offer(kUni3, Hex(kMacB + kMacA + kPlain));
  EXPECT_EQ(path.offer(kUni1, Hex(kMacA + kMacB + kPlain)).egress(), PortIds{kUni3});
  EXPECT_EQ(path.offer(kUni1, Hex("020000000099 " + kMacB + kPlain)).egress(),
            PortIds{PortId::Wan()});
  EXPECT_EQ(path.offer(PortId::Wan(), Hex(kTagged)).egress(), (PortIds{kUni1, kUni2, kUni3}));
}

TEST_F(PortsTest, NeighbourAtAPortThatIsDown_GetsNothing) {
  path.offer(kUni2, Hex(kMacB + kMacA + kPlain));
  chip.linksDown = {2};
  const Verdict verdict = path.offer(kUni1, Hex(kMacA + kMacB + kPlain));
  EXPECT_EQ(verdict.outcome, Outcome::NoEgress);
  EXPECT_EQ(verdict.closed, (std::vector<ClosedPort>{{kUni2, Outcome::EgressLinkDown}}));
}

}  // namespace
}  // namespace virtual_onu
