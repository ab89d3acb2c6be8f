/// @file
/// Tests of explaining a frame: completeness and no side effects.
#include <gmock/gmock.h>

#include "run_lines.h"
#include "scratch.h"

namespace onu {
namespace {

using test::Ran;
using test::RunLines;
using test::RunLinesAsJson;
using testing::HasSubstr;

TEST(Explain, ClassesAndKeys_AreShownInTheOrderTried) {
  const Json document =
      RunLinesAsJson({"Init", "SetPortAdminState 1 1", "explain uni1 dst 01:80:c2:00:00:00"})
          .lastDocument();
  std::vector<int> classes;
  for (const Json& trial : document["classes"]) {
    classes.push_back(trial["icIndex"].get<int>());
  }
  EXPECT_EQ(classes, (std::vector<int>{4, 3, 2})) << "up to the class that matched";
  const Json& matching = document["classes"].back();
  EXPECT_EQ(matching["keys"], "dstMac");
  ASSERT_EQ(matching["flows"].size(), 3U);
  EXPECT_EQ(matching["flows"][0]["keys"][0], Json({{"key", "dstMac"},
                                                   {"flow", "02:00:5e:10:00:01"},
                                                   {"frame", "01:80:c2:00:00:00"},
                                                   {"equal", false}}));
  EXPECT_EQ(matching["flows"][2]["matched"], true);
  EXPECT_EQ(document["verdict"]["outcome"], "flow_trap");
}

TEST(Explain, Action_IsShownWithTheFrameBeforeAndAfter) {
  const std::string flow =
      "Ioctl FLOW_ADD dir=us icIndex=0 ingressPort=2 vlanNum=0 forward=1 vlanActionIndex=0";
  const Json document =
      RunLinesAsJson({"Init", "SetPortAdminState 1 1",
                      "Ioctl VLAN_ACTION_ADD cmd=0x1 dir=us tag[0].vid=100 tag[0].tpid=0x8100",
                      flow, "explain uni1 udp"})
          .lastDocument();
  EXPECT_EQ(document["verdict"]["vlanActionIndex"], 0);
  EXPECT_EQ(document["verdict"]["egress"], Json::array({"wan"}));
  EXPECT_EQ(document["action"]["tag[0].vid"], 100);
  EXPECT_EQ(document["after"]["length"].get<int>(), document["before"]["length"].get<int>() + 4);
  EXPECT_THAT(document["after"]["bytes"].get<std::string>(), HasSubstr("81000064"));
}

TEST(Explain, MacEntryThatDecided_IsNamed) {
  const Words lines = {"Init",
                       "SetPortAdminState 1 1",
                       "SetPortAdminState 2 1",
                       "SetVlanTransparent 1",
                       "SetVlanTransparent 2",
                       "AddMacStatic 2 100 02:00:00:00:00:07"};
  const auto with = [&](const std::string& line) {
    Words all = lines;
    all.push_back(line);
    return all;
  };
  const std::string known = "explain wan vlan 100 dst 02:00:00:00:00:07";
  EXPECT_EQ(
      RunLinesAsJson(with(known)).lastDocument()["verdict"]["mac"],
      Json({{"rule", "static"}, {"mac", "02:00:00:00:00:07"}, {"vlan", 100}, {"port", "uni2"}}));
  EXPECT_THAT(RunLines(with(known)).out,
              HasSubstr("MAC table: 02:00:00:00:00:07 in VLAN 100 is at uni2 (static)\n"));
  EXPECT_EQ(RunLinesAsJson(with("explain wan vlan 200 dst 02:00:00:00:00:07"))
                .lastDocument()["verdict"]["mac"],
            nullptr);
}

TEST(Explain, RefusalOfTheMacTable_IsNamed) {
  struct Row {
    std::string line;
    std::string text;
  };
  const std::string mac = "02:00:00:00:00:07";
  const std::vector<Row> rows = {
      {"AddMacFilter 1 100 " + mac, "is blocked at uni1"},
      {"AddMacBind 2 100 " + mac, "is bound to uni2"},
      {"SetMacLimitMacNum 1", "is new, and uni1 has as many addresses as it may"}};
  for (const Row& row : rows) {
    const Ran ran = RunLines({"Init", "SetPortAdminState 1 1", "SetVlanTransparent 1",
                              "send uni1 vlan 100", row.line, "explain uni1 vlan 100 src " + mac});
    EXPECT_THAT(ran.out, HasSubstr("MAC table: " + mac + " in VLAN 100 " + row.text + "\n"));
  }
}

TEST(Explain, Text_ComparesBothValues) {
  const Ran ran = RunLines({"Init", "SetPortAdminState 1 1", "explain uni1 dst 01:80:c2:00:00:00"});
  EXPECT_THAT(ran.out, HasSubstr("offered at uni1, upstream\n"
                                 "class 4, priority 5, compares ingressPort|outerPbit|vlanNum\n"
                                 "  no flows\n"));
  EXPECT_THAT(
      ran.out,
      HasSubstr("  flow 0: does not match\n"
                "    dstMac: flow 02:00:5e:10:00:01, frame 01:80:c2:00:00:00, different\n"));
  EXPECT_THAT(ran.out,
              HasSubstr("  flow 2: matches\n"
                        "    dstMac: flow 01:80:c2:00:00:00, frame 01:80:c2:00:00:00, equal\n"));
  EXPECT_THAT(ran.out, HasSubstr("\noutcome: flow_trap, trapped ("));
}

TEST(Explain, Changes_Nothing) {
  const Ran ran = RunLines(
      {"clear trace", "explain uni1 udp", "explain wan udp", "show counters", "show trace"});
  EXPECT_THAT(ran.out, testing::EndsWith("no frames\n"));
}

TEST(Explain, SeveralFrames_AreRefused) {
  const test::Scratch scratch;
  const std::string capture = scratch.write(
      "in.pcap",
      test::CaptureOf({test::FrameTo("00:00:00:00:00:09"), test::FrameTo("00:00:00:00:00:09")}));
  const Ran ran = RunLines({"explain uni1 " + capture});
  EXPECT_EQ(ran.status, ExitStatus::WrongUse);
  EXPECT_EQ(ran.errors,
            "test: explain: FRAME: expected one frame, got 2; choose one with " + capture + "#N\n");
}

}  // namespace
}  // namespace onu
