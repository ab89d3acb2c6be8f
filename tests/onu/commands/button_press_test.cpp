/// @file
/// Tests of the reset button: what the library's task does about a press.
#include <gmock/gmock.h>
#include <string>
#include <vector>

#include "run_lines.h"

namespace onu {
namespace {

using test::Doings;
using test::Last;
using test::Ran;
using test::RunLines;
using test::With;
using testing::ElementsAre;
using testing::HasSubstr;

const Words kStart = {"config run-tasks on", "Init"};

struct PressRow {
  std::string press;
  std::vector<std::string> doings;
};

void PrintTo(const PressRow& row, std::ostream* out) {
  *out << row.press;
}

class PacketPathPress : public testing::TestWithParam<PressRow> {};

TEST_P(PacketPathPress, IsMeasuredOnTheUnitsTime) {
  const Json pressed = Last(With(kStart, {GetParam().press}));
  EXPECT_EQ(pressed["listening"], true);
  EXPECT_EQ(Doings(pressed["left"]), GetParam().doings);
}

const std::vector<std::string> kReset = {"VOS_ResetDefaultCfg()", "VOS_TaskDelay(500)",
                                         "VOS_Reboot(11)"};
INSTANTIATE_TEST_SUITE_P(Durations, PacketPathPress,
                         testing::Values(PressRow{"button press", {"VOS_Reboot(11)"}},
                                         PressRow{"button press 4999", {"VOS_Reboot(11)"}},
                                         PressRow{"button press 5000", kReset},
                                         PressRow{"button press 60000", kReset}));

TEST(PacketPath, InFactoryMode_APressIsAnnouncedOnly) {
  const Json pressed = Last(With({"config factory-mode 1"}, With(kStart, {"button press 5000"})));
  const std::string announced =
      "/usr/local/bin/msgall.sh \"RST button press 250 milliseconds, restart system now\"";
  const std::string restart = "/usr/local/bin/msgall.sh \"[RST PRESS]Reboot System now ......\"";
  EXPECT_THAT(Doings(pressed["left"]), ElementsAre(announced, restart, announced, restart));
}

TEST(PacketPath, APressThatNobodyHears_SaysHowToListen) {
  const Ran ran = RunLines({"Init", "button press 5000"});
  EXPECT_THAT(ran.out, HasSubstr("button pressed for 5000 ms\nno task of the library listens: "
                                 "config run-tasks on, then Init\n"));
}

}  // namespace
}  // namespace onu
