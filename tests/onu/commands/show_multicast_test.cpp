/// @file
/// Tests of the command that lists the multicast groups.
#include <gmock/gmock.h>

#include "run_lines.h"

namespace onu {
namespace {

using test::RunLines;
using test::RunLinesAsJson;
using testing::EndsWith;

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
