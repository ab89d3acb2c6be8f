/// @file
/// Tests of the command that lists the queues: weights and frames.
#include <gmock/gmock.h>

#include "run_lines.h"

namespace onu {
namespace {

using test::Last;
using test::With;

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

}  // namespace
}  // namespace onu
