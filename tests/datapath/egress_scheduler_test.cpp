/// @file
/// The order in which waiting frames leave, frame by frame, and the shares of saturated queues.
#include "datapath/egress_scheduler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <vector>

namespace virtual_onu {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Queues = std::vector<EgressQueue>;

TEST(EgressScheduler, NothingWaiting_NothingLeaves) {
  EXPECT_THAT(DrainQueues({}), IsEmpty());
  EXPECT_THAT(DrainQueues({{7, 0, 0}, {15, 8, 0}}), IsEmpty());
}

TEST(EgressScheduler, StrictQueues_LeaveWholeTheHigherFirst) {
  EXPECT_THAT(DrainQueues({{0, 0, 3}, {7, 0, 2}, {5, 0, 1}}),
              ElementsAre(Departure{7, 2}, Departure{5, 1}, Departure{0, 3}));
}

TEST(EgressScheduler, StrictQueues_LeaveBeforeWeightedOnesOfHigherNumbers) {
  EXPECT_THAT(DrainQueues({{0, 0, 2}, {15, 8, 1}}), ElementsAre(Departure{0, 2}, Departure{15, 1}));
}

TEST(EgressScheduler, WeightedQueues_TakeTurnsByTheirWeights) {
  EXPECT_THAT(DrainQueues({{14, 2, 5}, {15, 3, 5}}),
              ElementsAre(Departure{15, 3}, Departure{14, 2}, Departure{15, 2}, Departure{14, 3}));
}

TEST(EgressScheduler, WeightedQueueThatRunsEmpty_LeavesItsTurnsToTheOthers) {
  EXPECT_THAT(DrainQueues({{8, 1, 3}, {9, 1, 1}, {10, 4, 2}}),
              ElementsAre(Departure{10, 2}, Departure{9, 1}, Departure{8, 3}));
}

TEST(EgressScheduler, EveryWaitingFrame_LeavesOnce) {
  const Queues queues = {{0, 0, 10}, {3, 0, 1},   {8, 1, 100}, {9, 1, 7},
                         {12, 4, 9}, {13, 4, 33}, {14, 8, 64}, {15, 255, 1000}};
  std::map<std::uint32_t, std::uint64_t> left;
  for (const Departure& departure : DrainQueues(queues)) {
    left[departure.queue] += departure.frames;
  }
  ASSERT_EQ(left.size(), queues.size());
  for (const EgressQueue& queue : queues) {
    EXPECT_EQ(left[queue.queue], queue.waiting) << queue.queue;
  }
}

TEST(EgressScheduler, SaturatedQueues_ShareByTheirWeights) {
  // 1000 frames wait in each; the first 600 of them, 20 rounds of 30, are shared 1:1:2:2:4:4:8:8.
  Queues queues;
  const std::vector<std::uint32_t> weights = {1, 1, 2, 2, 4, 4, 8, 8};
  for (std::uint32_t i = 0; i < weights.size(); ++i) {
    queues.push_back({8 + i, weights[i], 1000});
  }
  std::map<std::uint32_t, std::uint64_t> left;
  std::uint64_t sum = 0;
  for (const Departure& departure : DrainQueues(queues)) {
    if (sum == 600) {
      break;
    }
    left[departure.queue] += departure.frames;
    sum += departure.frames;
  }
  EXPECT_EQ(sum, 600U);
  for (std::uint32_t i = 0; i < weights.size(); ++i) {
    EXPECT_EQ(left[8 + i], 20U * weights[i]) << 8 + i;
  }
}

TEST(EgressScheduler, Share_IsThePartOfAllWeights) {
  const Queues queues = {{7, 0, 0}, {8, 1, 0}, {9, 2, 0}, {10, 5, 0}};
  EXPECT_DOUBLE_EQ(SaturatedShare(queues, 8), 12.5);
  EXPECT_DOUBLE_EQ(SaturatedShare(queues, 9), 25);
  EXPECT_DOUBLE_EQ(SaturatedShare(queues, 10), 62.5);
  EXPECT_DOUBLE_EQ(SaturatedShare(queues, 7), 0) << "a strict queue";
  EXPECT_DOUBLE_EQ(SaturatedShare(queues, 11), 0) << "no such queue";
  EXPECT_DOUBLE_EQ(SaturatedShare({{8, 255, 9}}, 8), 100);
  EXPECT_DOUBLE_EQ(SaturatedShare({}, 8), 0);
}

}  // namespace
}  // namespace virtual_onu
