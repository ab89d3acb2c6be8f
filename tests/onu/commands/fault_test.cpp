/// @file
/// Tests of the fault commands through the library's results.
#include <gmock/gmock.h>

#include "run_lines.h"

namespace onu {
namespace {

using test::Ran;
using test::RunLines;
using test::RunLinesAsJson;

/// The results of three commands behind the opening one, with a fault set in between.
std::vector<int> ResultsWith(const std::string& fault) {
  std::vector<int> results;
  const Words sent = {"SFInit", "Ioctl LASER_ON", "SFInit"};
  const Ran ran = RunLinesAsJson({"InitDrv", fault, sent[0], sent[1], sent[2]});
  std::istringstream lines(ran.out);
  int number = 0;
  for (std::string line; std::getline(lines, line); ++number) {
    if (number >= 2) {
      results.push_back(Json::parse(line).value()["result"].get<int>());
    }
  }
  return results;
}

TEST(Fault, Nth_RefusesThatCommandAlone) {
  EXPECT_EQ(ResultsWith("fault nth 2"), (std::vector<int>{0, 8, 0}));
  EXPECT_EQ(ResultsWith("fault nth 2 FEATURE"), (std::vector<int>{0, 0, 8}));
}

TEST(Fault, From_RefusesAllBehind) {
  EXPECT_EQ(ResultsWith("fault from 2"), (std::vector<int>{0, 8, 8}));
  EXPECT_EQ(ResultsWith("fault from 1 127"), (std::vector<int>{8, 0, 8}));
}

TEST(Fault, Fraction_RefusesThatShare) {
  EXPECT_EQ(ResultsWith("fault fraction 1 seed 1"), (std::vector<int>{8, 8, 8}));
  EXPECT_EQ(ResultsWith("fault fraction 0 seed 1"), (std::vector<int>{0, 0, 0}));
}

TEST(Fault, Clear_EndsAll) {
  const Ran ran = RunLines({"InitDrv", "fault from 1", "fault clear", "SFInit", "fault show"});
  EXPECT_THAT(ran.out, testing::EndsWith("BCM6838X_SFInit() = 0 (ok)\nno faults\n"));
}

TEST(Fault, Show_ListsRulesAndWhatTheySaw) {
  const Ran ran = RunLines({"InitDrv", "fault nth 3 FLOW_ADD", "fault from 9",
                            "fault fraction 0.5 seed 7", "SFInit", "fault show"});
  EXPECT_THAT(ran.out, testing::EndsWith("refuses                   commands seen\n"
                                         "nth 3 BRMGR_CMD_FLOW_ADD  0\n"
                                         "from 9                    1\n"
                                         "fraction 0.5 seed 7       1\n"));
}

TEST(Fault, Zeroth_IsWrongUse) {
  EXPECT_EQ(RunLines({"fault nth 0"}).errors,
            "test: fault nth: N: expected a number from 1, got \"0\"\n");
  EXPECT_EQ(RunLines({"fault fraction 2 seed 1"}).status, ExitStatus::WrongUse);
}

}  // namespace
}  // namespace onu
