/// @file
/// Tests of the VLAN configuration of a port, as the driver was told it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "run_lines.h"

namespace onu {
namespace {

using test::Ran;
using test::RunLines;
using test::RunLinesAsJson;
using test::With;
using testing::EndsWith;
using testing::HasSubstr;

const Words kTrunk = {"Init", "SetPortPvid 1 100", "SetPortPriority 1 3", "AddVlanTrunk 1 200",
                      "SetVlanTrunk 1"};

TEST(ShowConfigOfAPort, ToldConfiguration_IsShownWithItsLists) {
  EXPECT_THAT(RunLines(With(kTrunk, {"show config 1"})).out,
              EndsWith("mode trunk\nPVID 100 priority 3\ntrunk list 200\n"));
  const Json document = RunLinesAsJson(With(kTrunk, {"show config 1"})).lastDocument();
  EXPECT_EQ(document["config"]["vlanMode"], 4);
  EXPECT_EQ(document["config"]["trunkList"], Json::array({200}));
  EXPECT_EQ(document["differences"], Json::array());
}

TEST(ShowConfigOfAPort, EveryList_IsWritten) {
  EXPECT_THAT(RunLines({"Init", "AddVlanTranslation 1 10 110 6 2", "AddVlanStacking 1 2 11 11 500",
                        "AddVlanStacking 1 7 12 12 501", "show config 1"})
                  .out,
              EndsWith("mode none\nPVID 0 priority 0\n"
                       "translation list 10<->110 (up 6, down 2)\n"
                       "stacking list 11 in 500, 12 in 501 (parameter 7)\n"));
}

TEST(ShowConfigOfAPort, NothingToldYet_IsSaid) {
  EXPECT_EQ(RunLines({"show config 1"}).out, "the driver was not told a VLAN configuration\n");
  EXPECT_EQ(RunLinesAsJson({"show config 1"}).lastDocument()["config"], nullptr);
}

TEST(ShowConfigOfAPort, PortThatDoesNotExist_IsWrongUse) {
  for (const char* const line : {"show config 5", "show port 0"}) {
    const Ran ran = RunLines({line});
    EXPECT_EQ(ran.status, ExitStatus::WrongUse);
    EXPECT_THAT(ran.errors, HasSubstr("expected a UNI port from 1 to 4, got "));
  }
}

}  // namespace
}  // namespace onu
