/// @file
/// Tests of the commands that show the chip's objects, trace, log and counters.
#include <gmock/gmock.h>

#include "run_lines.h"

namespace onu {
namespace {

using test::Ran;
using test::RunLines;
using test::RunLinesAsJson;
using testing::HasSubstr;

/// What the last of the lines printed, when those before it print `before`.
std::string Shown(const Words& lines, const std::string& before = "BCM6838X_Init() = 0 (ok)\n") {
  const Ran ran = RunLines(lines);
  EXPECT_EQ(ran.errors, "");
  EXPECT_EQ(ran.out.substr(0, before.size()), before);
  return ran.out.substr(before.size());
}

TEST(Show, Classes_InTheOrderInWhichTheyAreTried) {
  EXPECT_EQ(Shown({"Init", "show classes"}),
            "dir  class  priority  flows  keys\n"
            "us   4      5         0      ingressPort|outerPbit|vlanNum\n"
            "us   3      4         0      outerVid|ingressPort|outerPbit|vlanNum\n"
            "us   2      3         4      dstMac\n"
            "us   1      2         0      outerVid|ingressPort|vlanNum\n"
            "us   0      1         0      ingressPort|vlanNum\n"
            "ds   2      3         2      dstMac\n"
            "ds   1      2         0      outerVid|ingressPort|vlanNum\n"
            "ds   0      1         0      ingressPort|vlanNum\n");
}

TEST(Show, Flows_WithTheirKeysAndResults) {
  EXPECT_EQ(Shown({"Init", "show flows"}),
            "dir  class  flow  forward  queue  action  policer  keys\n"
            "us   2      0     trap     0      none    none     dstMac=02:00:5e:10:00:01\n"
            "us   2      1     trap     0      none    none     dstMac=02:00:5e:10:00:02\n"
            "us   2      2     trap     0      none    none     dstMac=01:80:c2:00:00:00\n"
            "us   2      3     trap     0      none    none     dstMac=01:80:c2:00:00:23\n"
            "ds   2      0     trap     0      none    none     dstMac=02:00:5e:10:00:01\n"
            "ds   2      1     trap     0      none    none     dstMac=02:00:5e:10:00:02\n");
}

TEST(Show, Actions_WithTheirOperations) {
  const Json actions =
      RunLinesAsJson({"InitDrv",
                      "Ioctl VLAN_ACTION_ADD cmd=0x101 dir=us tag[0].vid=100 tag[0].pbit=5 "
                      "tag[0].tpid=0x8100",
                      "show actions"})
          .lastDocument()["actions"];
  ASSERT_EQ(actions.size(), 1U);
  EXPECT_EQ(actions[0]["tag[0].vid"], 100);
  EXPECT_EQ(actions[0]["dir"], "us");
}

TEST(Show, EmptyTables_SaySo) {
  EXPECT_EQ(Shown({"show classes"}, ""), "no classes\n");
  EXPECT_EQ(Shown({"show flows"}, ""), "no flows\n");
  EXPECT_EQ(Shown({"show actions"}, ""), "no actions\n");
  EXPECT_EQ(Shown({"show counters"}, ""), "no frames\n");
  EXPECT_EQ(Shown({"show vlans"}, ""), "no VLAN objects\n");
  EXPECT_EQ(Shown({"fault show"}, ""), "no faults\n");
  EXPECT_EQ(Shown({"show log"}, ""), "");
}

TEST(Show, Trace_DecodesRecordsBeforeAndAfter) {
  const Json events =
      RunLinesAsJson({"InitDrv", "RdpaIcInit", "show trace"}).lastDocument()["events"];
  const auto* const created = std::ranges::find_if(
      events, [](const Json& event) { return event["kind"] == "command" && event["code"] == 98; });
  ASSERT_NE(created, events.end());
  EXPECT_EQ((*created)["record"], "IngressClassCfg");
  EXPECT_EQ((*created)["sent"]["fieldMask"], "ingressPort|vlanNum");
  EXPECT_EQ((*created)["returned"]["icIndex"], 0);
}

TEST(Show, Trace_CanBeCutToTheNewestAndToASequenceNumber) {
  const auto sequences = [](const std::string& line) {
    std::vector<int> numbers;
    const Json document = RunLinesAsJson({"InitDrv", "SFInit", line}).lastDocument();
    for (const Json& event : document["events"]) {
      numbers.push_back(event["sequence"].get<int>());
    }
    return numbers;
  };
  const std::vector<int> all = sequences("show trace");
  ASSERT_EQ(all, (std::vector<int>{1, 2, 3, 4}));
  EXPECT_EQ(sequences("show trace 2"), (std::vector<int>{3, 4}));
  EXPECT_EQ(sequences("show trace since 4"), (std::vector<int>{4}));
  EXPECT_EQ(sequences("show trace 1 since 2"), (std::vector<int>{4}));
  EXPECT_EQ(sequences("show trace 99"), all);
  EXPECT_EQ(sequences("show trace 0"), std::vector<int>{});
}

TEST(Show, Trace_TextNamesCommandsCallsAndRefusals) {
  const std::string text = Shown({"fault nth 2", "InitDrv", "SFInit", "show trace"},
                                 "BCM6838X_InitDrv() = 0 (ok)\nBCM6838X_SFInit() = 8 (refused)\n");
  EXPECT_THAT(text, HasSubstr("call VOS_OpenDevice(\"BrmgrDev\") = 0\n"));
  EXPECT_THAT(text, HasSubstr("command 0 BRMGR_CMD_INIT, length 32, flag 0 = 0\n"
                              "       sent     DrvInitRecord fePortNum=0 gePortNum=4\n"));
  EXPECT_THAT(text, HasSubstr("command 127 BRMGR_CMD_FEATURE, length 4, flag 0 = -1 ("));
  EXPECT_THAT(text, HasSubstr("log level 1 hal/switch/bcm6838x/src/hal_bcm6838x.cpp:"));
}

TEST(Show, Log_CanBeCutToALevel) {
  const auto count = [](const std::string& line) {
    return RunLinesAsJson({"fault from 1", "InitDrv", "SFInit", line}).lastDocument()["log"].size();
  };
  EXPECT_EQ(count("show log"), 2U);
  EXPECT_EQ(count("show log level 1"), 2U);
  EXPECT_EQ(count("show log level 4"), 0U);
}

TEST(Show, Counters_ByPortAndOutcome) {
  const Json counters =
      RunLinesAsJson({"Init", "SetPortAdminState 1 1", "send uni1 dst 01:80:c2:00:00:00",
                      "send uni1 dst 01:80:c2:00:00:00", "send wan dst 00:00:00:00:00:09",
                      "show counters"})
          .lastDocument()["counters"];
  ASSERT_EQ(counters.size(), 2U);
  for (const Json& count : counters) {
    const bool uni = count["port"] == "uni1";
    EXPECT_EQ(count["frames"], uni ? 2 : 1);
    EXPECT_EQ(count["outcome"], uni ? "flow_trap" : "no_flow");
    EXPECT_EQ(count["disposition"], uni ? "trap" : "drop");
  }
}

TEST(Show, Clear_EmptiesCountersTraceAndLog) {
  EXPECT_EQ(Shown({"Init", "send wan udp", "clear counters", "show counters"},
                  RunLines({"Init", "send wan udp"}).out),
            "no frames\n");
  EXPECT_EQ(Shown({"InitDrv", "clear trace", "show trace"}, "BCM6838X_InitDrv() = 0 (ok)\n"), "");
}

}  // namespace
}  // namespace onu
