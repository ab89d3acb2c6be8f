/// @file
/// Tests of the commands that list the MAC table and the multicast groups.
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

TEST(ShowMulticast, NoEntries_SaysSo) {
  EXPECT_EQ(RunLines({"show multicast"}).out, "no group entries\n");
}

TEST(ShowMulticast, Entry_IsShownWithItsTreatment) {
  const Words joined = {"Init",
                        "SetMulticastVlanMode 1 0",
                        "SetMulticastVlanMode 3 2",
                        "AddMulticastVlanTrans 3 100 300",
                        "ModifyMulticastMacAddr 239.129.2.3 7 100",
                        "Ioctl VLAN_ACTION_DEL dir=ds vlanActionIndex=1",
                        "show multicast"};
  EXPECT_THAT(RunLines(joined).out,
              EndsWith("entry  group        mac                vlan  port  action\n"
                       "0      239.129.2.3  01:00:5e:01:02:03  100   uni1  1: absent\n"
                       "1      239.129.2.3  01:00:5e:01:02:03  100   uni2  -\n"
                       "2      239.129.2.3  01:00:5e:01:02:03  100   uni3  2: replace_vid 300\n"));
}

TEST(ShowMulticast, EntryWithoutAnAddress_IsShownByItsMacAddress) {
  const Json groups = RunLinesAsJson({"Init",
                                      "Ioctl MCAST_ADD port=2 vlan=5 vlanActionIndex=none "
                                      "groupMac=01:00:5e:00:00:07",
                                      "show multicast"})
                          .lastDocument()["groups"];
  ASSERT_EQ(groups.size(), 1U);
  EXPECT_EQ(groups[0], Json({{"entry", 0},
                             {"group", nullptr},
                             {"mac", "01:00:5e:00:00:07"},
                             {"vlan", 5},
                             {"port", "uni2"},
                             {"vlanActionIndex", nullptr}}));
}

}  // namespace
}  // namespace onu
