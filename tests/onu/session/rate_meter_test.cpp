/// @file
/// Tests of the rates of counters.
#include "session/rate_meter.h"

#include <gtest/gtest.h>

namespace onu {
namespace {

TEST(RateMeter, Counters_ThatWrap_StillRise) {
  RateMeter meter;
  PortStatsRecord counters = {};
  counters.rxOctets = 0xFFFFFFF0;
  meter.read(1, 1000, counters);
  counters.rxOctets = 0x10;
  EXPECT_DOUBLE_EQ(meter.read(1, 3000, counters).rxOctets, 16);
}

TEST(RateMeter, EveryCounter_IsPartOfItsRate) {
  PortStatsRecord counters = {};
  counters.rxUnicast = 1;
  counters.rxMulticast = 10;
  counters.rxBroadcast = 100;
  counters.rxOctets = 7000;
  counters.rxDiscard = 3;
  counters.rxError23 = 20;
  counters.rxError24 = 4;
  counters.txUnicast = 2;
  counters.txMulticast = 20;
  counters.txBroadcast = 200;
  counters.txOctets = 9000;
  counters.txDiscard = 5;
  const PortRates rates = RateMeter().read(1, 2000, counters);
  EXPECT_DOUBLE_EQ(rates.rxFrames, 55.5);
  EXPECT_DOUBLE_EQ(rates.rxOctets, 3500);
  EXPECT_DOUBLE_EQ(rates.rxDiscards, 1.5);
  EXPECT_DOUBLE_EQ(rates.rxErrors, 12);
  EXPECT_DOUBLE_EQ(rates.txFrames, 111);
  EXPECT_DOUBLE_EQ(rates.txOctets, 4500);
  EXPECT_DOUBLE_EQ(rates.txDiscards, 2.5);
}

}  // namespace
}  // namespace onu
