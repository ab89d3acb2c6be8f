/// @file
/// Tests of the command that lists the VLAN objects.
#include <gmock/gmock.h>

#include "run_lines.h"

namespace onu {
namespace {

using test::Ran;
using test::RunLines;
using test::RunLinesAsJson;
using testing::EndsWith;

TEST(Vlans, Show_WanObjectsThenThoseOfThePorts) {
  const Ran ran = RunLines({"AddLanVlan 2 300", "AddWanVlan 2 200 10", "AddLanVlan 1 30",
                            "AddWanVlan 1 100 4096", "show vlans"});
  EXPECT_EQ(ran.errors, "");
  EXPECT_THAT(ran.out, EndsWith("port  object  vlan      vids\n"
                                "wan   wan0    wan0_100  100\n"
                                "wan   wan0    wan0_200  200\n"
                                "uni1  lan0    lan0_30   30\n"
                                "uni2  lan1    lan1_300  300\n"));
}

TEST(Vlans, Json_HasTheVidsAsNumbers) {
  const Json vlans = RunLinesAsJson({"AddWanVlan 2 200 10", "show vlans"}).lastDocument()["vlans"];
  EXPECT_EQ(vlans.dump(), R"([{"port":"wan","object":"wan0","vlan":"wan0_200","vids":[200]}])");
}

}  // namespace
}  // namespace onu
