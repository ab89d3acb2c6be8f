/// @file
/// Tests of the commands about the upstream queues: weights, frames, the order of departure.
#include <gmock/gmock.h>

#include "run_lines.h"

namespace onu {
namespace {

using test::Last;
using test::RunLines;
using test::Text;
using test::With;
using testing::EndsWith;

const Words kRules = {"Init", "SetPortAdminState 1 1",
                      "ApplyQosClassification 1 0 1,7,VlanId=200,Ipv4TosDscp=184 8,0,VlanId=100"};

TEST(ShowQueues, Weights_AreThoseOfTheLines) {
  const Json queues = Last({"Init", "SetQosWrrWeight 1 1 2 2 4 4 8 0", "show queues"})["queues"];
  ASSERT_EQ(queues.size(), 16U);
  EXPECT_EQ(queues[7]["scheduling"], "strict");
  EXPECT_EQ(queues[7]["weight"], nullptr);
  EXPECT_EQ(queues[14], Json({{"port", "wan"},
                              {"queue", 14},
                              {"scheduling", "weighted"},
                              {"scheduler", 17},
                              {"weight", 8},
                              {"sharePercent", 100.0 * 8 / 22},
                              {"dropThreshold", 700},
                              {"frames", 0},
                              {"octets", 0}}));
  EXPECT_EQ(queues[15]["scheduling"], "strict") << "weight 0";
  EXPECT_EQ(queues[15]["weight"], 0);
  EXPECT_EQ(queues[15]["sharePercent"], nullptr);
}

TEST(ShowQueues, Frames_AreThoseThatLeft) {
  const Json queues =
      Last(With(kRules, {"send uni1 udp vlan 200 dscp 46", "SetQosSchedule 1",
                         "send uni1 udp vlan 200 dscp 46 length 100",
                         "send uni1 udp vlan 200 dscp 46", "show queues"}))["queues"];
  ASSERT_EQ(queues.size(), 16U);
  EXPECT_EQ(queues[7]["frames"], 1);
  EXPECT_EQ(queues[7]["octets"], 60);
  EXPECT_EQ(queues[15]["frames"], 2);
  EXPECT_EQ(queues[15]["octets"], 160);
}

TEST(ShowQueues, ClearCounters_StartsOver) {
  const Words sent =
      With(kRules, {"send uni1 udp vlan 200 dscp 46", "clear counters", "show queues"});
  EXPECT_EQ(Last(sent)["queues"][7]["frames"], 0);
}

TEST(ShowQueues, OtherPorts_AreListedOnceAFrameLeft) {
  const Json queues =
      Last({"InitDrv", "Ioctl IC_CREATE dir=ds icIndex=0 type=2",
            "Ioctl FLOW_ADD dir=ds icIndex=0 forward=pass queue=3", "link uni1 down",
            "link uni3 down", "link uni4 down", "send wan udp", "show queues"})["queues"];
  ASSERT_EQ(queues.size(), 17U);
  EXPECT_EQ(queues[16]["port"], "uni2");
  EXPECT_EQ(queues[16]["queue"], 3);
  EXPECT_EQ(queues[16]["scheduling"], nullptr);
  EXPECT_EQ(queues[16]["frames"], 1);
}

TEST(ShowQueues, QueueOfNoBank_IsListed) {
  const Json queues = Last({"InitDrv", "Ioctl IC_CREATE dir=us icIndex=0 type=2",
                            "Ioctl FLOW_ADD dir=us icIndex=0 forward=pass queue=16",
                            "send uni1 udp", "show queues"})["queues"];
  ASSERT_EQ(queues.size(), 17U);
  EXPECT_EQ(queues[16]["port"], "wan");
  EXPECT_EQ(queues[16]["queue"], 16);
}

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
