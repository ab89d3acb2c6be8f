/// @file
/// Tests of the signals that end a run.
#include "live/stop_signals.h"

#include <csignal>
#include <gtest/gtest.h>
#include <poll.h>

namespace virtual_onu {
namespace {

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

}  // namespace
}  // namespace virtual_onu
