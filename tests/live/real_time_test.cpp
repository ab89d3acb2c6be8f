/// @file
/// Tests of the unit's time that follows real time.
#include "live/real_time.h"

#include <chrono>
#include <gtest/gtest.h>

#include "base/clock.h"

namespace virtual_onu {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;

TEST(RealTime, Follow_MovesTheClockByWholeMillisecondsAndLosesNone) {
  Clock clock;
  const RealTime::Now start{std::chrono::seconds(1000)};
  RealTime time(clock, start);
  time.follow(start + microseconds(999));
  EXPECT_EQ(clock.milliseconds(), 0);
  time.follow(start + microseconds(1999));
  EXPECT_EQ(clock.milliseconds(), 1);
  time.follow(start + microseconds(2000));
  EXPECT_EQ(clock.milliseconds(), 2);
  time.follow(start + milliseconds(5000));
  EXPECT_EQ(clock.milliseconds(), 5000);
}

TEST(RealTime, Follow_NothingPassed_LeavesTheClock) {
  Clock clock;
  const RealTime::Now start{std::chrono::seconds(1000)};
  RealTime time(clock, start);
  clock.advance(7);
  time.follow(start);
  time.follow(start - milliseconds(10));
  EXPECT_EQ(clock.milliseconds(), 7);
}

}  // namespace
}  // namespace virtual_onu
