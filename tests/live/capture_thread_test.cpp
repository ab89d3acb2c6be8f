/// @file
/// Tests of the thread on which the library takes trapped frames.
#include "live/capture_thread.h"

#include <atomic>
#include <gtest/gtest.h>
#include <unistd.h>

#include "base/clock.h"
#include "base/trace.h"

namespace virtual_onu {
namespace {

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

}  // namespace
}  // namespace virtual_onu
