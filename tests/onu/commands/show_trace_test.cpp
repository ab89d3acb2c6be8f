/// @file
/// Tests of the command that lists what left the library.
#include <gmock/gmock.h>

#include "run_lines.h"

namespace onu {
namespace {

using test::RunLinesAsJson;
using test::Shown;
using testing::HasSubstr;

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

}  // namespace
}  // namespace onu
