/// @file
/// Tests of the command that lists the MAC table.
#include <gmock/gmock.h>

#include "run_lines.h"

namespace onu {
namespace {

using test::Ran;
using test::RunLines;
using test::RunLinesAsJson;
using test::With;
using testing::EndsWith;

const Words kStart = {"Init", "SetPortAdminState 1 1", "SetVlanTransparent 1"};

TEST(ShowMac, EmptyTable_SaysSoAndTellsTheSettings) {
  EXPECT_EQ(RunLines({"show mac"}).out, "no addresses\naging after 300 s, learning on, no limit\n");
  EXPECT_EQ(RunLinesAsJson({"show mac"}).lastDocument(), Json({{"version", 1},
                                                               {"command", "show mac"},
                                                               {"entries", Json::array()},
                                                               {"agingTime", 300},
                                                               {"learning", true},
                                                               {"limit", nullptr}}));
}

TEST(ShowMac, Rows_AreInTheOrderOfTheAddresses) {
  const Ran ran = RunLines(
      With(kStart, {"AddMacBind 3 7 02:00:00:00:00:44", "AddMacFilter 2 100 02:00:00:00:00:01",
                    "AddMacStatic 2 4095 02:00:00:00:00:03", "send uni1 udp vlan 100",
                    "send wan udp vlan 100 src 02:00:00:00:00:09", "clock +12.999", "show mac"}));
  EXPECT_THAT(ran.out, EndsWith("mac                vlan  port  type     age\n"
                                "02:00:00:00:00:01  100   uni1  dynamic  12\n"
                                "02:00:00:00:00:01  100   uni2  filter   -\n"
                                "02:00:00:00:00:03  4095  uni2  static   -\n"
                                "02:00:00:00:00:09  100   wan   dynamic  12\n"
                                "02:00:00:00:00:44  7     uni3  bind     -\n"
                                "aging after 300 s, learning on, no limit\n"));
}

TEST(ShowMac, Settings_AreThoseOfTheCommands) {
  EXPECT_THAT(RunLines(With(kStart, {"SetMacLimitMacNum 8", "SetMacAgingTime 20", "SetMacClear 0",
                                     "show mac"}))
                  .out,
              EndsWith("aging after 20 s, learning off, at most 8 addresses a UNI port\n"));
}

TEST(ShowMac, AgingOfAnotherProcess_IsNoAging) {
  EXPECT_THAT(RunLines({"config feature 27 0", "Init", "show mac"}).out,
              EndsWith("no aging, learning on, no limit\n"));
}

}  // namespace
}  // namespace onu
