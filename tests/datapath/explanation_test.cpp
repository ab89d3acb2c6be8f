/// @file
/// Explanations: the trials in words, the same verdict as the real thing, no side effects.
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

#include "chip_builder.h"
#include "datapath/data_path.h"
#include "frame/headers.h"
#include "support/sample_frames.h"

namespace virtual_onu {
namespace {

constexpr std::uint32_t kUniPorts = 2;
constexpr PortId kUni1 = PortId::Uni(1);

/// The trials as lines: "class INDEX", "flow INDEX matched", "KEY FLOW FRAME equal".
std::vector<std::string> Lines(const Explanation& explanation) {
  std::vector<std::string> lines;
  for (const ClassTrial& trial : explanation.classes) {
    lines.push_back("class " + std::to_string(trial.icIndex) + " priority " +
                    std::to_string(trial.priority) + " mask " + HexNumber(trial.fieldMask));
    for (const FlowTrial& flow : trial.flows) {
      lines.push_back("flow " + std::to_string(flow.flowIndex) + (flow.matched ? " matched" : ""));
      for (const KeyComparison& key : flow.keys) {
        lines.push_back(key.key + " " + key.flowValue + " " + key.frameValue +
                        (key.equal ? " equal" : ""));
      }
    }
  }
  return lines;
}

TEST(Explain, ShowsEveryClassFlowAndKeyUpToTheMatch) {
  ChipBuilder chip;
  chip.addClass(kUp, 2, BRMGR_KEY_DESTINATION_MAC, 3);
  chip.addFlow(kUp, 2, 0);
  chip.addClass(kUp, 4, 0x8000, 2);
  chip.addClass(kUp, 1, BRMGR_KEY_OUTER_VID | BRMGR_KEY_VLAN_NUM, 1);
  for (std::uint16_t vid = 99; vid <= 101; ++vid) {
    IngressFlowRule& flow = chip.addFlow(kUp, 1, vid);
    flow.outerVid = vid;
    flow.vlanNum = 1;
  }
  EXPECT_EQ(Lines(DataPath(chip.tables, chip.ports(kUniPorts)).explain(kUni1, Hex(kTagged))),
            (std::vector<std::string>{
                "class 2 priority 3 mask 0x0200",
                "flow 0",
                "dstMac 00:00:00:00:00:00 02:00:00:00:00:02",
                "class 4 priority 2 mask 0x8000",
                "class 1 priority 1 mask 0x40080",
                "flow 99",
                "outerVid 99 100",
                "vlanNum 1 1 equal",
                "flow 100 matched",
                "outerVid 100 100 equal",
                "vlanNum 1 1 equal",
            }));
}

TEST(Explain, WritesEachKeyInItsNotation) {
  ChipBuilder chip;
  std::uint32_t all = 0;
#define ADD_KEY(bit, name, field) all |= (bit);
  BRMGR_KEY_LIST(ADD_KEY)
#undef ADD_KEY
  chip.addClass(kUp, 0, all, 1);
  IngressFlowRule& flow = chip.addFlow(kUp, 0, 0);
  flow.srcIpVersion = 1;
  flow.srcIp[15] = 1;
  flow.dstIpVersion = 2;
  flow.etherType = 0x86DD;
  flow.srcMac[0] = 0xFE;
  EXPECT_EQ(Lines(DataPath(chip.tables, chip.ports(kUniPorts)).explain(kUni1, Hex(kUdp4))),
            (std::vector<std::string>{
                "class 0 priority 1 mask 0x5bee3",
                "flow 0",
                "srcIp ::1 192.0.2.1",
                "dstIp IP version code 2 192.0.2.2",
                "l4SrcPort 0 68",
                "l4DstPort 0 67",
                "outerVid 0 none",
                "dstMac 00:00:00:00:00:00 02:00:00:00:00:02",
                "srcMac fe:00:00:00:00:00 02:00:00:00:00:01",
                "etherType 0x86dd 0x0800",
                "ipProtocol 0 17",
                "dscp 0 184",
                "ingressPort 0 2",
                "outerPbit 0 none",
                "vlanNum 0 0 equal",
            }));
}

TEST(Explain, UnknownKey_IsNamed) {
  ChipBuilder chip;
  chip.addClass(kUp, 0, BRMGR_KEY_VLAN_NUM | 0x80000100U, 1);
  chip.addFlow(kUp, 0, 0);
  EXPECT_EQ(Lines(DataPath(chip.tables, chip.ports(kUniPorts)).explain(kUni1, Hex(kUntagged))),
            (std::vector<std::string>{"class 0 priority 1 mask 0x80040100", "flow 0",
                                      "vlanNum 0 0 equal", "unknown key 0x80000100 none"}));
}

TEST(Explain, VlanAction_ItsStepsAreListed) {
  ChipBuilder chip;
  chip.addMatchAll(kUp).vlanActionIndex = 1;
  chip.addAction(kUp, 1, BRMGR_TAG_POP);
  EXPECT_EQ(DataPath(chip.tables, chip.ports(kUniPorts)).explain(kUni1, Hex(kTagged)).actionSteps,
            std::vector<std::string>{"pop the outer tag"});
}

TEST(Explain, LeavesTheCountersAlone) {
  ChipBuilder chip;
  chip.addMatchAll(kUp);
  DataPath path(chip.tables, chip.ports(kUniPorts));
  EXPECT_EQ(path.explain(kUni1, Hex(kTagged)).verdict.outcome, Outcome::FlowForward);
  EXPECT_TRUE(path.counters().outcomes().empty());
  path.offer(kUni1, Hex(kTagged));
  EXPECT_EQ(path.counters().outcomes().size(), 1U);
}

/// Classes and flows of both directions that lead to every outcome that a flow can give.
ChipBuilder MixedChip() {
  ChipBuilder chip;
  for (const std::uint32_t dir : {kUp, kDown}) {
    chip.addClass(dir, 0, BRMGR_KEY_DESTINATION_MAC, 3);
    IngressFlowRule& trap = chip.addFlow(dir, 0, 0);
    trap.dstMac[0] = 0x01;
    trap.dstMac[1] = 0x80;
    trap.dstMac[2] = 0xC2;
    trap.forward = BRMGR_FORWARD_TRAP;
    chip.addClass(dir, 1, BRMGR_KEY_ETHERTYPE, 2);
    chip.addFlow(dir, 1, 0).etherType = kEtherTypeArp;
    IngressFlowRule& acl = chip.addFlow(dir, 1, 1);
    acl.etherType = kEtherTypeIpv6;
    acl.forward = BRMGR_FORWARD_ACL;
    chip.addClass(dir, 2, BRMGR_KEY_OUTER_VID, 1);
    IngressFlowRule& edit = chip.addFlow(dir, 2, 0);
    edit.outerVid = 100;
    edit.vlanActionIndex = 5;
    chip.addFlow(dir, 2, 1).outerVid = 200;
    chip.addAction(dir, 5, BRMGR_TAG_REPLACE_VID, {7, 0, 0, 0});
  }
  return chip;
}

TEST(Explain, VerdictIsThatOfOffer) {
  const ChipBuilder chip = MixedChip();
  DataPath path(chip.tables, chip.ports(kUniPorts));
  std::vector<std::string> frames(kSamples.begin(), kSamples.end());
  frames.insert(frames.end(), {"", kMacs + "8100 a064"});
  std::set<Outcome> outcomes;
  for (const std::string& text : frames) {
    for (const PortId port : {PortId::Wan(), kUni1, PortId::Uni(3)}) {
      const Explanation explanation = path.explain(port, Hex(text));
      const Verdict verdict = path.offer(port, Hex(text));
      SCOPED_TRACE(port.name() + " " + text);
      EXPECT_EQ(explanation.verdict, verdict);
      outcomes.insert(verdict.outcome);
    }
  }
  EXPECT_EQ(outcomes,
            (std::set<Outcome>{Outcome::FlowForward, Outcome::FlowTrap, Outcome::FlowAccessControl,
                               Outcome::NoFlow, Outcome::RuntFrame, Outcome::TruncatedTag,
                               Outcome::UnknownPort}));
}

}  // namespace
}  // namespace virtual_onu
