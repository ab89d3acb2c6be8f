/// @file
/// Tests of the comparison of the library's tables with what exists: a unit in which everything
/// adds up, and then one thing wrong at a time.
#include "consistency/consistency.h"

#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

namespace virtual_onu {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr std::uint32_t kTranslate = BRMGR_TAG_REPLACE_VID | BRMGR_TAG_REPLACE_PRIORITY;

IngressFlowRule Flow(std::uint32_t dir, std::uint32_t icIndex, std::uint32_t flowIndex) {
  IngressFlowRule flow = {};
  flow.forward = BRMGR_FORWARD_PASS;
  flow.dir = dir;
  flow.icIndex = icIndex;
  flow.flowIndex = flowIndex;
  flow.vlanActionIndex = BRMGR_INDEX_NONE;
  return flow;
}

VlanActionRule Action(std::uint32_t dir, std::uint32_t cmd, std::uint16_t vid,
                      std::uint32_t index) {
  VlanActionRule rule = {};
  rule.cmd = cmd;
  rule.tag[0] = {vid, 0, 0, 0x8100};
  rule.dir = dir;
  rule.vlanActionIndex = index;
  return rule;
}

/// UNI port 1 translates VID 10 into VID 100 and has PVID 200; UNI port 2 is transparent to single
/// tags; the downstream default action has index 0.
class ConsistencyTest : public ::testing::Test {
 protected:
  ConsistencyTest() {
    for (const std::uint32_t dir : {BRMGR_DIR_DOWNSTREAM, BRMGR_DIR_UPSTREAM}) {
      for (std::uint32_t icIndex = 0; icIndex < 6; ++icIndex) {
        chip.of(dir).classes[icIndex] = {};
      }
    }
    AddDefaultAction();
    AddTranslation();
    AddAccess();
    AddTransparent();
  }

  std::vector<std::string> check() const { return CheckConsistency(library, {chip, objects}); }

  void exists(const IngressFlowRule& flow) {
    chip.of(flow.dir).classes[flow.icIndex].flows[flow.flowIndex] = flow;
  }
  void exists(const VlanActionRule& rule) {
    chip.of(rule.dir).actions[rule.vlanActionIndex] = rule;
  }
  void pooled(const VlanActionRule& rule, std::uint32_t references) {
    exists(rule);
    library.actions.push_back({rule, references});
  }
  void recorded(std::uint32_t uni, IngressFlowRule flow, std::uint16_t vid, std::uint8_t tags,
                std::uint32_t action = BRMGR_INDEX_NONE) {
    flow.outerVid = vid;
    flow.vlanNum = tags;
    flow.vlanActionIndex = action;
    exists(flow);
    library.upstreamFlows.push_back({uni, flow});
  }
  void shared(IngressFlowRule flow, std::uint16_t vid, std::uint8_t tags,
              std::uint32_t references) {
    flow.outerVid = vid == 4096 ? 0 : vid;
    flow.vlanNum = tags;
    exists(flow);
    flow.outerVid = vid;
    flow.refCount = references;
    library.downstreamFlows.push_back(flow);
  }

  void AddDefaultAction() {
    exists(Action(BRMGR_DIR_DOWNSTREAM, BRMGR_TAG_POP, 0, 0));
    library.directActions.push_back(0);
  }
  void AddTranslation() {
    pooled(Action(BRMGR_DIR_UPSTREAM, kTranslate, 100, 0), 2);
    pooled(Action(BRMGR_DIR_DOWNSTREAM, kTranslate, 100, 1), 2);
    recorded(1, Flow(BRMGR_DIR_UPSTREAM, 3, 0), 10, 1, 0);
    recorded(1, Flow(BRMGR_DIR_UPSTREAM, 3, 1), 10, 1, 0);
    shared(Flow(BRMGR_DIR_DOWNSTREAM, 1, 0), 100, 1, 2);
    chip.downstream.classes[1].portActions[{0, 1}] = 1;
    library.wanVids.push_back(100);
    objects.vlans["wan0_100"] = {"wan0", 0, {100}};
    library.lanVlans.push_back({1, 10, 2});
    objects.vlans["lan0_10"] = {"lan0", 1, {10}};
  }
  void AddAccess() {
    pooled(Action(BRMGR_DIR_UPSTREAM, BRMGR_TAG_PUSH | BRMGR_TAG_REPLACE_PRIORITY, 200, 1), 1);
    recorded(1, Flow(BRMGR_DIR_UPSTREAM, 0, 0), 0, 0, 1);
    shared(Flow(BRMGR_DIR_DOWNSTREAM, 1, 1), 200, 1, 1);
    library.wanVids.push_back(200);
    objects.vlans["wan0_200"] = {"wan0", 0, {200}};
  }
  void AddTransparent() {
    recorded(2, Flow(BRMGR_DIR_UPSTREAM, 4, 0), 0, 1);
    shared(Flow(BRMGR_DIR_DOWNSTREAM, 0, 0), 4096, 1, 1);
  }

  LibraryTables library;
  ChipTables chip;
  PathObjects objects;
};

TEST_F(ConsistencyTest, Everything_AddsUp) {
  EXPECT_THAT(check(), IsEmpty());
}

TEST_F(ConsistencyTest, NothingAtAll_AddsUp) {
  EXPECT_THAT(CheckConsistency({}, {ChipTables{}, PathObjects{}}), IsEmpty());
}

TEST_F(ConsistencyTest, FlowsOfTheUnitItselfAndOfQos_AreLeftAlone) {
  IngressFlowRule trap = Flow(BRMGR_DIR_UPSTREAM, 2, 0);
  trap.forward = BRMGR_FORWARD_TRAP;
  exists(trap);
  IngressFlowRule remark = Flow(BRMGR_DIR_UPSTREAM, 5, 0);
  remark.vlanActionIndex = 7;
  exists(remark);
  exists(Action(BRMGR_DIR_UPSTREAM, BRMGR_TAG_REPLACE_PRIORITY, 0, 7));
  EXPECT_THAT(check(), IsEmpty());
}

TEST_F(ConsistencyTest, FlowThatTheLibraryForgot_IsFound) {
  exists(Flow(BRMGR_DIR_UPSTREAM, 3, 9));
  EXPECT_THAT(check(),
              ElementsAre("upstream flow 9 of class 3 exists, but the library does not know it"));
}

TEST_F(ConsistencyTest, FlowThatIsGone_IsFound) {
  chip.downstream.classes[0].flows.clear();
  EXPECT_THAT(check(), ElementsAre("downstream flow 0 of class 0 is in the library's tables, "
                                   "but does not exist"));
}

TEST_F(ConsistencyTest, ActionThatTheLibraryForgot_IsFound) {
  exists(Action(BRMGR_DIR_DOWNSTREAM, BRMGR_TAG_POP, 0, 5));
  EXPECT_THAT(check(), ElementsAre("downstream VLAN action 5 exists, "
                                   "but the library does not know it"));
}

TEST_F(ConsistencyTest, ActionThatIsGone_IsFoundWithThePortActionThatNamesIt) {
  chip.downstream.actions.erase(1);
  EXPECT_THAT(check(),
              UnorderedElementsAre(
                  "downstream VLAN action 1 is in the library's tables, but does not exist",
                  "the port action of UNI port 1 on downstream flow 0 "
                  "of class 1 names VLAN action 1, which does not exist"));
}

TEST_F(ConsistencyTest, ReferencesOfASharedFlow_AreCountedByVidAndTags) {
  library.downstreamFlows[0].refCount = 8;
  library.downstreamFlows[2].refCount = 0;
  EXPECT_THAT(check(), UnorderedElementsAre(
                           "downstream flow of VID 100 with 1 tags has 8 references, but 2 users",
                           "downstream flow of any VID with 1 tags has 0 references, but 1 users"));
}

TEST_F(ConsistencyTest, PushedTag_LeadsToTheFlowWithOneTagMore) {
  library.upstreamFlows[2].flow.vlanNum = 1;
  EXPECT_THAT(check(), UnorderedElementsAre(
                           "downstream flow of VID 200 with 1 tags has 1 references, but 0 users",
                           "downstream flow of VID 200 with 2 tags has 0 references, but 1 users"));
}

TEST_F(ConsistencyTest, ReferencesOfActions_AreCountedPerDirection) {
  library.actions[0].references = 3;
  library.actions[1].references = 1;
  EXPECT_THAT(check(), UnorderedElementsAre(
                           "upstream VLAN action 0 has 3 references, but 2 users",
                           "the pool of downstream VLAN actions of VID 100 has 1 references, "
                           "but 2 users"));
}

TEST_F(ConsistencyTest, VlanObjects_AreComparedBothWays) {
  objects.vlans.erase("wan0_200");
  objects.vlans["lan1_30"] = {"lan1", 2, {30}};
  EXPECT_THAT(check(), UnorderedElementsAre(
                           "the VLAN object of VID 200 on the WAN side is in the library's tables, "
                           "but does not exist",
                           "the VLAN object of VID 30 on UNI port 2 exists, "
                           "but the library does not know it"));
}

TEST_F(ConsistencyTest, VlanObjectWithoutVid_IsFound) {
  objects.vlans["lan1_30"] = {"lan1", 2, {}};
  EXPECT_THAT(check(), ElementsAre("VLAN object lan1_30 enables no VID"));
}

TEST_F(ConsistencyTest, ReferencesOfLanObjects_CountFlowsAndMulticastVlans) {
  library.multicastVlans.push_back({1, 10});
  EXPECT_THAT(check(), ElementsAre("the VLAN object of VID 10 on UNI port 1 has 2 references, "
                                   "but 3 users"));
  library.lanVlans[0].references = 3;
  EXPECT_THAT(check(), IsEmpty());
}

}  // namespace
}  // namespace virtual_onu
