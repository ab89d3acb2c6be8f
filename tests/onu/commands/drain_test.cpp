/// @file
/// Tests of the order in which waiting frames would leave.
#include <gmock/gmock.h>

#include "run_lines.h"

namespace onu {
namespace {

using test::Last;
using test::RunLines;
using test::Text;
using testing::EndsWith;

TEST(Drain, Order_FollowsTheWeights) {
  EXPECT_THAT(Text({"Init", "SetQosWrrWeight 1 1 2 2 4 4 8 8", "drain 15=10 14=9 8=3 7=2"}),
              EndsWith("queue  frames\n"
                       "7      2\n"
                       "15     8\n"
                       "14     8\n"
                       "8      1\n"
                       "15     2\n"
                       "14     1\n"
                       "8      2\n"));
  EXPECT_EQ(Last({"drain 0=5 7=3"})["departures"],
            Json::array({{{"queue", 7}, {"frames", 3}}, {{"queue", 0}, {"frames", 5}}}));
  EXPECT_EQ(Text({"drain 0=0"}), "no frames\n");
  EXPECT_EQ(Text({"drain 3=1000"}), "queue  frames\n3      1000\n");
}

TEST(Drain, WrongWords_AreRefused) {
  const auto error = [](const std::string& word) { return RunLines({"drain " + word}).errors; };
  const std::string start = "test: drain: QUEUE=FRAMES: expected ";
  EXPECT_EQ(error("7"), start + "a queue and a number of frames, as 15=100, got \"7\"\n");
  EXPECT_EQ(error("=7"), start + "a queue and a number of frames, as 15=100, got \"=7\"\n");
  EXPECT_EQ(error("7="), start + "a queue and a number of frames, as 15=100, got \"7=\"\n");
  EXPECT_EQ(error("16=1"), start + "an upstream queue of show queues, got \"16=1\"\n");
  EXPECT_EQ(error("7=1001"), start + "at most 1000 frames, got \"7=1001\"\n");
  EXPECT_EQ(RunLines({"drain 7=x"}).status, ExitStatus::WrongUse);
}

}  // namespace
}  // namespace onu
