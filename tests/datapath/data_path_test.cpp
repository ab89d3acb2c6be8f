/// @file
/// Verdicts: every outcome, the order of classes and flows, where frames leave, counters.
#include "datapath/data_path.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "chip_builder.h"
#include "support/sample_frames.h"

namespace virtual_onu {
namespace {

constexpr std::uint32_t kUniPorts = 2;
constexpr PortId kUni1 = PortId::Uni(1);

void ExpectDropped(const Verdict& verdict, Outcome outcome, const std::string& offered) {
  EXPECT_EQ(Describe(verdict.outcome).name, Describe(outcome).name);
  EXPECT_EQ(verdict.frame, Hex(offered));
  EXPECT_TRUE(verdict.egress().empty());
  EXPECT_FALSE(verdict.queue);
}

TEST(DataPath, Offer_UpstreamFlowForwards_LeavesAtTheWan) {
  ChipBuilder chip;
  chip.addMatchAll(kUp).queue = 5;
  const Verdict verdict = DataPath(chip.tables, chip.ports(kUniPorts)).offer(kUni1, Hex(kTagged));
  EXPECT_EQ(verdict.outcome, Outcome::FlowForward);
  EXPECT_EQ(verdict.dir, 1U);
  EXPECT_EQ(verdict.egress(), std::vector<PortId>{PortId::Wan()});
  EXPECT_EQ(verdict.frame, Hex(kTagged));
  EXPECT_EQ(verdict.icIndex, 0U);
  EXPECT_EQ(verdict.flowIndex, 0U);
  EXPECT_EQ(verdict.queue, 5U);
  EXPECT_FALSE(verdict.vlanActionIndex);
}

TEST(DataPath, Offer_DownstreamFlowForwards_LeavesAtEveryUniPort) {
  ChipBuilder chip;
  chip.addMatchAll(kDown);
  const Verdict verdict =
      DataPath(chip.tables, chip.ports(kUniPorts)).offer(PortId::Wan(), Hex(kTagged));
  EXPECT_EQ(verdict.outcome, Outcome::FlowForward);
  EXPECT_EQ(verdict.dir, 0U);
  EXPECT_EQ(verdict.egress(), (std::vector<PortId>{PortId::Uni(1), PortId::Uni(2)}));
}

TEST(DataPath, Offer_FlowTraps_HandsTheFrameOverUnchanged) {
  ChipBuilder chip;
  IngressFlowRule& flow = chip.addMatchAll(kUp);
  flow.forward = BRMGR_FORWARD_TRAP;
  flow.vlanActionIndex = 3;
  chip.addAction(kUp, 3, BRMGR_TAG_POP);
  const Verdict verdict = DataPath(chip.tables, chip.ports(kUniPorts)).offer(kUni1, Hex(kTagged));
  EXPECT_EQ(verdict.outcome, Outcome::FlowTrap);
  EXPECT_EQ(verdict.frame, Hex(kTagged));
  EXPECT_TRUE(verdict.egress().empty());
  EXPECT_FALSE(verdict.vlanActionIndex);
  EXPECT_FALSE(verdict.queue);
}

TEST(DataPath, Offer_AccessControlFlow_Drops) {
  ChipBuilder chip;
  IngressFlowRule& flow = chip.addMatchAll(kUp);
  flow.forward = BRMGR_FORWARD_ACL;
  DataPath path(chip.tables, chip.ports(kUniPorts));
  const Verdict verdict = path.offer(kUni1, Hex(kTagged));
  ExpectDropped(verdict, Outcome::FlowAccessControl, kTagged);
  EXPECT_EQ(verdict.flowIndex, 0U);

  chip.tables.upstream.classes.at(0).flows.at(0).forward = BRMGR_FORWARD_PASS;
  EXPECT_EQ(path.offer(kUni1, Hex(kTagged)).outcome, Outcome::FlowForward);
}

TEST(DataPath, Offer_DirectionWithoutClasses_DropsWithNoClass) {
  ChipBuilder chip;
  chip.addMatchAll(kDown);
  DataPath path(chip.tables, chip.ports(kUniPorts));
  ExpectDropped(path.offer(kUni1, Hex(kTagged)), Outcome::NoClass, kTagged);
  EXPECT_EQ(path.offer(PortId::Wan(), Hex(kTagged)).outcome, Outcome::FlowForward);
}

TEST(DataPath, Offer_NoFlowMatches_DropsWithNoFlow) {
  ChipBuilder chip;
  chip.addClass(kUp, 0, BRMGR_KEY_OUTER_VID, 1);
  DataPath path(chip.tables, chip.ports(kUniPorts));
  ExpectDropped(path.offer(kUni1, Hex(kTagged)), Outcome::NoFlow, kTagged);

  chip.addFlow(kUp, 0, 7).outerVid = 101;
  const Verdict missed = path.offer(kUni1, Hex(kTagged));
  ExpectDropped(missed, Outcome::NoFlow, kTagged);
  EXPECT_FALSE(missed.icIndex);
  EXPECT_FALSE(missed.flowIndex);

  chip.addFlow(kUp, 0, 8).outerVid = 100;
  EXPECT_EQ(path.offer(kUni1, Hex(kTagged)).flowIndex, 8U);
}

TEST(DataPath, Offer_UnknownForwardWord_Drops) {
  ChipBuilder chip;
  IngressFlowRule& flow = chip.addMatchAll(kUp);
  DataPath path(chip.tables, chip.ports(kUniPorts));
  for (const std::uint32_t forward : {0U, 3U, 5U, 0xFFFFFFFFU}) {
    flow.forward = forward;
    chip.tables.upstream.classes.at(0).flows.at(0) = flow;
    ExpectDropped(path.offer(kUni1, Hex(kTagged)), Outcome::UnknownDecision, kTagged);
  }
}

TEST(DataPath, Offer_VlanActionMissing_DropsAndNamesIt) {
  ChipBuilder chip;
  chip.addMatchAll(kUp).vlanActionIndex = 9;
  chip.addAction(kDown, 9, BRMGR_TAG_POP);
  DataPath path(chip.tables, chip.ports(kUniPorts));
  const Verdict verdict = path.offer(kUni1, Hex(kTagged));
  ExpectDropped(verdict, Outcome::UnknownVlanAction, kTagged);
  EXPECT_EQ(verdict.vlanActionIndex, 9U);

  chip.addAction(kUp, 9, BRMGR_TAG_POP);
  EXPECT_EQ(path.offer(kUni1, Hex(kTagged)).outcome, Outcome::FlowForward);
}

TEST(DataPath, Offer_FlowWithVlanAction_EditsTheFrameThatLeaves) {
  ChipBuilder chip;
  chip.addMatchAll(kUp).vlanActionIndex = 0;
  chip.addAction(kUp, 0, BRMGR_TAG_PUSH | BRMGR_TAG_REPLACE_PRIORITY, {300, 6, 0, 0x8100});
  const Verdict verdict = DataPath(chip.tables, chip.ports(kUniPorts)).offer(kUni1, Hex(kUntagged));
  EXPECT_EQ(verdict.vlanActionIndex, 0U);
  EXPECT_EQ(verdict.frame, Hex(kMacs + "8100 c12c " + kPlain));
}

TEST(DataPath, Offer_DamagedFrames_DropBeforeAnyClass) {
  ChipBuilder chip;
  chip.addMatchAll(kUp);
  DataPath path(chip.tables, chip.ports(kUniPorts));
  ExpectDropped(path.offer(kUni1, Hex(kMacs + "88")), Outcome::RuntFrame, kMacs + "88");
  ExpectDropped(path.offer(kUni1, {}), Outcome::RuntFrame, "");
  ExpectDropped(path.offer(kUni1, Hex(kMacs + "8100 a064")), Outcome::TruncatedTag,
                kMacs + "8100 a064");
  EXPECT_EQ(path.offer(kUni1, Hex(kMacs + "8100 a064 88b5")).outcome, Outcome::FlowForward);
}

TEST(DataPath, Offer_PortThatTheUnitDoesNotHave_Drops) {
  ChipBuilder chip;
  chip.addMatchAll(kUp);
  DataPath path(chip.tables, chip.ports(kUniPorts));
  EXPECT_EQ(path.offer(PortId::Uni(2), Hex(kTagged)).outcome, Outcome::FlowForward);
  ExpectDropped(path.offer(PortId::Uni(3), Hex(kTagged)), Outcome::UnknownPort, kTagged);
  ExpectDropped(path.offer(PortId::Uni(0xFFFFFFFF), Hex(kTagged)), Outcome::UnknownPort, kTagged);
}

TEST(DataPath, Classes_AreTriedFromTheHighestPriority) {
  ChipBuilder chip;
  const std::vector<std::pair<std::uint32_t, std::uint32_t>> indexAndPriority = {
      {0, 1}, {1, 7}, {2, 0x80000000U}, {3, 7}};
  for (const auto& [index, priority] : indexAndPriority) {
    chip.addClass(kUp, index, 0, priority);
    chip.addFlow(kUp, index, 0);
  }
  DataPath path(chip.tables, chip.ports(kUniPorts));
  // Classes 1 and 3 have the same priority: the lower index goes first.
  for (const std::uint32_t expected : {2U, 1U, 3U, 0U}) {
    EXPECT_EQ(path.offer(kUni1, Hex(kTagged)).icIndex, expected);
    chip.tables.upstream.classes.erase(expected);
  }
  EXPECT_EQ(path.offer(kUni1, Hex(kTagged)).outcome, Outcome::NoClass);
}

TEST(DataPath, ClassWithoutAMatchingFlow_LeavesTheFrameToTheNextClass) {
  ChipBuilder chip;
  chip.addClass(kUp, 0, BRMGR_KEY_OUTER_VID, 9);
  chip.addFlow(kUp, 0, 0).outerVid = 101;
  chip.addClass(kUp, 1, 0, 1);
  chip.addFlow(kUp, 1, 4);
  const Verdict verdict = DataPath(chip.tables, chip.ports(kUniPorts)).offer(kUni1, Hex(kTagged));
  EXPECT_EQ(verdict.icIndex, 1U);
  EXPECT_EQ(verdict.flowIndex, 4U);
}

TEST(DataPath, Flows_AreTriedFromTheLowestIndex) {
  ChipBuilder chip;
  chip.addClass(kUp, 0, BRMGR_KEY_OUTER_VID, 1);
  for (const std::uint32_t index : {30U, 2U, 11U}) {
    chip.addFlow(kUp, 0, index).outerVid = 100;
  }
  DataPath path(chip.tables, chip.ports(kUniPorts));
  for (const std::uint32_t expected : {2U, 11U, 30U}) {
    EXPECT_EQ(path.offer(kUni1, Hex(kTagged)).flowIndex, expected);
    chip.tables.upstream.classes.at(0).flows.erase(expected);
  }
}

TEST(DataPath, Counters_CountFramesAndOctetsByPortAndOutcome) {
  ChipBuilder chip;
  chip.addClass(kUp, 0, BRMGR_KEY_OUTER_VID, 1);
  chip.addFlow(kUp, 0, 0).outerVid = 100;
  DataPath path(chip.tables, chip.ports(kUniPorts));
  path.offer(PortId::Uni(2), Hex(kTagged));
  path.offer(PortId::Uni(2), Hex(kTagged));
  path.offer(PortId::Uni(2), Hex(kUntagged));
  path.offer(kUni1, Hex("02"));
  path.offer(PortId::Wan(), Hex(kTagged));

  const auto text = [&path] {
    std::vector<std::string> lines;
    for (const OutcomeCount& count : path.counters().outcomes()) {
      lines.push_back(count.port.name() + " " + std::string(Describe(count.outcome).name) + " " +
                      std::to_string(count.frames) + " " + std::to_string(count.octets));
    }
    return lines;
  };
  EXPECT_EQ(text(), (std::vector<std::string>{"wan no_class 1 20", "uni1 runt_frame 1 1",
                                              "uni2 flow_forward 2 40", "uni2 no_flow 1 16"}));
  path.clearCounters();
  EXPECT_TRUE(path.counters().outcomes().empty());
  path.offer(kUni1, Hex("02"));
  EXPECT_EQ(text(), std::vector<std::string>{"uni1 runt_frame 1 1"});
}

}  // namespace
}  // namespace virtual_onu
