/// @file
/// Tests of the consistency check.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "run_lines.h"

namespace onu {
namespace {

using test::RunLines;
using test::RunLinesAsJson;
using test::With;
using testing::EndsWith;
using testing::HasSubstr;

const Words kTrunk = {"Init", "SetPortPvid 1 100", "SetPortPriority 1 3", "AddVlanTrunk 1 200",
                      "SetVlanTrunk 1"};

TEST(Check, UnitThatAddsUp_HasNoFindings) {
  EXPECT_THAT(RunLines(With(kTrunk, {"check"})).out, EndsWith("everything adds up\n"));
}

TEST(Check, UnitBeforeItsStart_HasNoFindings) {
  EXPECT_EQ(RunLinesAsJson({"check"}).lastDocument()["findings"], Json::array());
}

TEST(Check, FlowMadeBehindTheLibrarysBack_IsFound) {
  const Words lines = With(
      kTrunk, {"Ioctl FLOW_ADD dir=us icIndex=0 ingressPort=3 vlanNum=0 forward=pass", "check"});
  EXPECT_THAT(RunLines(lines).out,
              EndsWith("upstream flow 1 of class 0 exists, but the library does not know it\n"));
}

TEST(Check, RefusedDelete_LeavesAFinding) {
  const Words lines =
      With(kTrunk, {"fault nth 1 FLOW_DEL", "SetVlanTag 1", "fault clear", "check"});
  EXPECT_THAT(RunLines(lines).out, HasSubstr("exists, but the library does not know it\n"));
}

}  // namespace
}  // namespace onu
