/// @file
/// Tests of what surrounds the pump: the capture thread, the signals that end a run, and the time.
#include <atomic>
#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <optional>
#include <poll.h>
#include <unistd.h>

#include "base/clock.h"
#include "base/trace.h"
#include "live/capture_thread.h"
#include "live/real_time.h"
#include "live/stop_signals.h"

namespace virtual_onu {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;

constexpr std::size_t kEventSize = 2068;

/// The device whose events the operation below reads, and how many it read with data.
int g_device = -1;
std::atomic<int> g_taken = 0;

std::uint32_t TakeEvent() {
  Bytes event(kEventSize);
  const ssize_t size = read(g_device, event.data(), event.size());
  if (size == static_cast<ssize_t>(kEventSize) && event.back() != 0) {
    ++g_taken;
  }
  return 0;
}

class CaptureThreadTest : public testing::Test {
 protected:
  CaptureThreadTest() {
    g_device = device.open();
    g_taken = 0;
  }

  bool sendEvent() { return device.sendEvent(Bytes(kEventSize, 1)); }

  Clock clock;
  Trace trace{clock};
  Device device{trace, {}};
};

TEST_F(CaptureThreadTest, EndsWhileNothingComes) {
  { const CaptureThread thread(device, TakeEvent); }
  EXPECT_EQ(g_taken, 0);
}

TEST_F(CaptureThreadTest, TakesOneEventAfterTheOther) {
  const CaptureThread thread(device, TakeEvent);
  for (int i = 1; i <= 3; ++i) {
    ASSERT_TRUE(sendEvent());
    while (g_taken < i) {
      std::this_thread::yield();
    }
  }
  EXPECT_EQ(g_taken, 3);
}

TEST_F(CaptureThreadTest, EndsBehindTheEventsThatArePendingToTheLimit) {
  int sent = 0;
  while (sent < 100'000 && sendEvent()) {
    ++sent;
  }
  EXPECT_GT(sent, 0);
  EXPECT_LT(sent, 100'000);
  { const CaptureThread thread(device, TakeEvent); }
  EXPECT_EQ(g_taken, sent);
}

bool IsReadable(int fd) {
  pollfd polled = {fd, POLLIN, 0};
  return poll(&polled, 1, 0) == 1;
}

bool IsBlocked(int number) {
  sigset_t blocked = {};
  pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
  return sigismember(&blocked, number) == 1;
}

TEST(StopSignals, EachSignal_MakesTheDescriptorReadable) {
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    const StopSignals stop;
    EXPECT_FALSE(IsReadable(stop.fd()));
    raise(number);
    EXPECT_TRUE(IsReadable(stop.fd())) << number;
  }
}

TEST(StopSignals, End_TakesTheSignalsThatCameAndRestoresTheOthers) {
  {
    const StopSignals stop;
    EXPECT_TRUE(IsBlocked(SIGTERM));
    EXPECT_FALSE(IsBlocked(SIGUSR1));
    raise(SIGTERM);
    raise(SIGINT);
  }
  EXPECT_FALSE(IsBlocked(SIGTERM));
}

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
