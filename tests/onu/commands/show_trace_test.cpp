/// @file
/// Tests of the commands that list what left the library: trace and log.
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

}  // namespace
}  // namespace onu
