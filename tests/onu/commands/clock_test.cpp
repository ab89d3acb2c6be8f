/// @file
/// Tests of the unit's time.
#include <gmock/gmock.h>
#include <string>

#include "run_lines.h"

namespace onu {
namespace {

using test::Ran;
using test::RunLines;
using test::RunLinesAsJson;
using test::With;
using testing::EndsWith;

const Words kStart = {"Init", "SetPortAdminState 1 1", "SetVlanTransparent 1"};

TEST(MoveClock, Steps_AddUpToTheMillisecond) {
  EXPECT_EQ(RunLines({"clock", "clock +0.005", "clock +12", "clock +0.5", "clock"}).out,
            "0.000 s\n0.005 s\n12.005 s\n12.505 s\n12.505 s\n");
  EXPECT_EQ(RunLinesAsJson({"clock +31536000"}).lastDocument()["milliseconds"], 31'536'000'000);
}

TEST(MoveClock, WordThatIsNoStep_IsRefusedAndMovesNothing) {
  const Words wrong = {"5", "+", "+x", "-5", "+1.2345", "+1.", "+.5", "+31536001", "+1.-5", "+ 1"};
  for (const std::string& word : wrong) {
    const Ran ran = RunLines({"clock " + JoinWords({word})});
    EXPECT_EQ(ran.status, ExitStatus::WrongUse) << word;
    EXPECT_EQ(ran.out, "");
  }
  EXPECT_EQ(
      RunLines({"clock 5"}).errors,
      "test: clock: +SECONDS: expected + and a number of seconds up to 31536000 such as +300 or "
      "+0.5, got \"5\"\n");
}

TEST(MoveClock, Aging_FollowsIt) {
  EXPECT_THAT(RunLines(With(kStart, {"send uni1 udp vlan 100", "clock +300", "show mac"})).out,
              EndsWith("no addresses\naging after 300 s, learning on, no limit\n"));
}

}  // namespace
}  // namespace onu
