/// @file
/// Tests of the command that lists the flows.
#include <gtest/gtest.h>

#include "run_lines.h"

namespace onu {
namespace {

using test::Shown;

TEST(Show, Flows_WithTheirKeysAndResults) {
  EXPECT_EQ(Shown({"Init", "show flows"}),
            "dir  class  flow  forward  queue  action  policer  keys\n"
            "us   2      0     trap     0      none    none     dstMac=02:00:5e:10:00:01\n"
            "us   2      1     trap     0      none    none     dstMac=02:00:5e:10:00:02\n"
            "us   2      2     trap     0      none    none     dstMac=01:80:c2:00:00:00\n"
            "us   2      3     trap     0      none    none     dstMac=01:80:c2:00:00:23\n"
            "ds   2      0     trap     0      none    none     dstMac=02:00:5e:10:00:01\n"
            "ds   2      1     trap     0      none    none     dstMac=02:00:5e:10:00:02\n");
}

}  // namespace
}  // namespace onu
