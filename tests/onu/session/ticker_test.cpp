/// @file
/// Tests of the seconds of a watch.
#include "session/ticker.h"

#include <csignal>
#include <gmock/gmock.h>
#include <memory>

namespace onu {
namespace {

TEST(Ticker, Interrupt_EndsTheSecondAndNotTheProgram) {
  const std::unique_ptr<Ticker> ticker = MakeRealTicker();
  raise(SIGINT);
  EXPECT_FALSE(ticker->second());
}

}  // namespace
}  // namespace onu
