/// @file
/// Tests of the command that lists the ingress classes, and of tables without rows.
#include <gtest/gtest.h>

#include "run_lines.h"

namespace onu {
namespace {

using test::Shown;

TEST(Show, Classes_InTheOrderInWhichTheyAreTried) {
  EXPECT_EQ(Shown({"Init", "show classes"}),
            "dir  class  priority  flows  keys\n"
            "us   4      5         0      ingressPort|outerPbit|vlanNum\n"
            "us   3      4         0      outerVid|ingressPort|outerPbit|vlanNum\n"
            "us   2      3         4      dstMac\n"
            "us   1      2         0      outerVid|ingressPort|vlanNum\n"
            "us   0      1         0      ingressPort|vlanNum\n"
            "ds   2      3         2      dstMac\n"
            "ds   1      2         0      outerVid|ingressPort|vlanNum\n"
            "ds   0      1         0      ingressPort|vlanNum\n");
}

TEST(Show, EmptyTables_SaySo) {
  EXPECT_EQ(Shown({"show classes"}, ""), "no classes\n");
  EXPECT_EQ(Shown({"show flows"}, ""), "no flows\n");
  EXPECT_EQ(Shown({"show actions"}, ""), "no actions\n");
  EXPECT_EQ(Shown({"show counters"}, ""), "no frames\n");
  EXPECT_EQ(Shown({"show vlans"}, ""), "no VLAN objects\n");
  EXPECT_EQ(Shown({"fault show"}, ""), "no faults\n");
  EXPECT_EQ(Shown({"show log"}, ""), "");
}

}  // namespace
}  // namespace onu
