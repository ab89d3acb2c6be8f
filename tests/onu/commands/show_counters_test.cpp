/// @file
/// Tests of the counters of frames, and of what clears them.
#include <gtest/gtest.h>

#include "run_lines.h"

namespace onu {
namespace {

using test::RunLines;
using test::RunLinesAsJson;
using test::Shown;

TEST(Show, Counters_ByPortAndOutcome) {
  const Json counters =
      RunLinesAsJson({"Init", "SetPortAdminState 1 1", "send uni1 dst 01:80:c2:00:00:00",
                      "send uni1 dst 01:80:c2:00:00:00", "send wan dst 00:00:00:00:00:09",
                      "show counters"})
          .lastDocument()["counters"];
  ASSERT_EQ(counters.size(), 2U);
  for (const Json& count : counters) {
    const bool uni = count["port"] == "uni1";
    EXPECT_EQ(count["frames"], uni ? 2 : 1);
    EXPECT_EQ(count["outcome"], uni ? "flow_trap" : "no_flow");
    EXPECT_EQ(count["disposition"], uni ? "trap" : "drop");
  }
}

TEST(Show, Clear_EmptiesCountersTraceAndLog) {
  EXPECT_EQ(Shown({"Init", "send wan udp", "clear counters", "show counters"},
                  RunLines({"Init", "send wan udp"}).out),
            "no frames\n");
  EXPECT_EQ(Shown({"InitDrv", "clear trace", "show trace"}, "BCM6838X_InitDrv() = 0 (ok)\n"), "");
}

}  // namespace
}  // namespace onu
