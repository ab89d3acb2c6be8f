/// @file
/// Tests of the configuration: keys, values, what is fixed, what the library then sees.
#include "session/config_table.h"

#include <gmock/gmock.h>

#include "language/failure.h"
#include "run_lines.h"

namespace onu {
namespace {

using test::Ran;
using test::RunLines;
using test::RunLinesAsJson;
using testing::HasSubstr;

std::string ErrorOf(const std::string& key, const Words& values) {
  Settings settings;
  try {
    SetConfig(settings, key, values);
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.status(), ExitStatus::WrongUse);
    return failure.what();
  }
  return "set";
}

TEST(Config, Words_MakeTheSameSettingsAgain) {
  Settings changed;
  const std::vector<Words> lines = {{"eth", "2"},
                                    {"fe", "7"},
                                    {"ge", "0x10"},
                                    {"uplink", "9"},
                                    {"port-revert", "1"},
                                    {"factory-mode", "1"},
                                    {"board", "a board"},
                                    {"mac1", "00:11:22:33:44:55"},
                                    {"mac2", "00:11:22:33:44:66"},
                                    {"feature", "3", "5"},
                                    {"performance-marker", "on"},
                                    {"fail-mac", "on"},
                                    {"fail-log", "on"},
                                    {"fail-task", "on"},
                                    {"fail-device", "on"},
                                    {"fail-socket", "on"},
                                    {"run-tasks", "on"},
                                    {"max-classes", "1"},
                                    {"max-flows", "2"},
                                    {"max-actions", "3"}};
  ASSERT_EQ(lines.size(), ConfigTable().size()) << "every key is set here";
  for (const Words& words : lines) {
    SetConfig(changed, words.front(), {words.begin() + 1, words.end()});
  }
  const Json defaults = ConfigToJson(Settings());
  const Json config = ConfigToJson(changed);
  for (const auto& [key, value] : config.items()) {
    EXPECT_NE(value, defaults[key]) << key << " was set to another value than its default";
  }
  Settings again;
  for (const Words& words : ConfigToWords(changed)) {
    SetConfig(again, words.front(), {words.begin() + 1, words.end()});
  }
  EXPECT_EQ(ConfigToJson(again), ConfigToJson(changed));
}

TEST(Config, Set_SaysWhatWasExpected) {
  EXPECT_EQ(ErrorOf("eth", {"33"}), "eth: expected a number from 0 to 32, got \"33\"");
  EXPECT_EQ(ErrorOf("fail-mac", {"yes"}), "fail-mac: expected on or off, got \"yes\"");
  EXPECT_EQ(ErrorOf("mac1", {"1:2"}),
            "mac1: expected a MAC address (02:00:5e:10:00:01), got \"1:2\"");
  EXPECT_EQ(ErrorOf("feature", {"27"}),
            "feature: expected the number of a feature switch and its value (27 1), got \"27\"");
  EXPECT_EQ(ErrorOf("uplnk", {"1"}),
            "expected a key of the configuration, got \"uplnk\"; did you mean \"uplink\"? "
            "(show config lists the keys)");
}

TEST(Config, Change_IsWhatTheLibraryAsksFor) {
  const Json trace =
      RunLinesAsJson({"config fe 3", "config ge 1", "InitDrv", "show trace"}).lastDocument();
  const Json& command = trace["events"].at(1);
  EXPECT_EQ(command["name"], "BRMGR_CMD_INIT");
  EXPECT_EQ(command["sent"]["fePortNum"], 3);
  EXPECT_EQ(command["sent"]["gePortNum"], 1);
}

TEST(Config, Hardware_IsFixedOnceTheUnitWasUsed) {
  const Ran early = RunLines({"config eth 2", "config max-flows 9", "explain uni2 udp"});
  EXPECT_EQ(early.errors, "");
  const Ran late = RunLines({"send wan udp", "config eth 2"});
  EXPECT_EQ(late.status, ExitStatus::WorkFailed);
  EXPECT_EQ(late.errors,
            "test: config: the hardware is fixed once the unit was used; "
            "change it before the first operation, or with --config at the start\n");
}

TEST(Config, Hardware_ChangesKeepTheRest) {
  const Json config = RunLinesAsJson({"config board B", "config performance-marker on",
                                      "config eth 1", "show config"})
                          .lastDocument()["config"];
  EXPECT_EQ(config["board"], "B");
  EXPECT_EQ(config["performance-marker"], true);
  EXPECT_EQ(config["eth"], 1);
}

TEST(Config, Limits_AreTheChips) {
  const Ran ran = RunLinesAsJson({"config max-classes 2", "Init", "show classes"});
  EXPECT_EQ(ran.lastDocument()["classes"].size(), 4U) << "two in each direction";
}

TEST(Config, PerformanceMarker_IsConsumedByTheStart) {
  const Ran ran =
      RunLines({"config performance-marker on", "Init", "IsPerformance", "show config"});
  EXPECT_THAT(ran.out, HasSubstr("WARNING!!!  Hal enter performance mode"));
  EXPECT_THAT(ran.out, HasSubstr("BCM6838X_IsPerformance() = 1\n"));
  EXPECT_THAT(ran.out, HasSubstr("performance-marker off\n"));
}

}  // namespace
}  // namespace onu
