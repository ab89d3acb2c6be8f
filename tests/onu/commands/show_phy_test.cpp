/// @file
/// Tests of the registers of a port's PHY.
#include <gmock/gmock.h>

#include "run_lines.h"

namespace onu {
namespace {

using test::Ran;
using test::RunLines;
using test::RunLinesAsJson;
using testing::HasSubstr;

TEST(Phy, Show_ListsRegistersAndLooksWithoutEffect) {
  const Ran ran = RunLines({"link uni1 down", "link uni1 up", "show phy 1", "show phy 1"});
  EXPECT_EQ(ran.errors, "");
  EXPECT_THAT(ran.out, HasSubstr("register  name                value   set\n"
                                 "0         control             0x1140  negotiate full-duplex "
                                 "speed-1000\n"
                                 "1         status              0x7969  negotiated\n"))
      << "the link was down since the status was read last";
  EXPECT_EQ(ran.out.find("link\n"), std::string::npos) << "the second look shows the same";
  EXPECT_EQ(ran.out.find("\n16 "), std::string::npos);
  EXPECT_THAT(RunLines({"InitPort", "show phy 1"}).out,
              HasSubstr("\n24        -                   0xf077  -\n"));
}

TEST(Phy, Json_HasAllRegisters) {
  const Json document = RunLinesAsJson({"link uni2 up 100 half", "show phy 2"}).lastDocument();
  EXPECT_EQ(document["port"], "uni2");
  EXPECT_EQ(document["partner"], true);
  EXPECT_EQ(document["link"], Json({{"speed", 100}, {"duplex", "half"}, {"pause", "none"}}));
  ASSERT_EQ(document["registers"].size(), 32U);
  EXPECT_EQ(document["registers"][5]["value"], "0x4081") << "acknowledge, 100 half, IEEE 802.3";
  EXPECT_EQ(document["registers"][5]["set"], Json::array({"acknowledge", "100-half"}));
}

}  // namespace
}  // namespace onu
