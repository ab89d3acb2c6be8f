/// @file
/// Tests of the VLAN lists as arguments: how words become entries, and which are refused.
#include "operations/vlan_list.h"

#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "run_lines.h"

namespace onu {
namespace {

using test::Ran;
using test::RunLines;
using testing::HasSubstr;

TEST(VlanList, TrunkEntry_IsItsVid) {
  PortVlanTrunkEntry entry = {};
  SetEntry(2, "0x64", entry);
  EXPECT_EQ(entry.port, 2);
  EXPECT_EQ(entry.vid, 100);
}

TEST(VlanList, TranslationEntry_TakesTwoToFourNumbers) {
  PortVlanTransEntry entry = {};
  SetEntry(2, "100:200:5:6", entry);
  EXPECT_EQ(entry.port, 2);
  EXPECT_EQ(entry.localVid, 100);
  EXPECT_EQ(entry.netVid, 200);
  EXPECT_EQ(entry.usPriority, 5);
  EXPECT_EQ(entry.dsPriority, 6);
  SetEntry(2, "100:200:5", entry);
  EXPECT_EQ(entry.usPriority, 5);
  EXPECT_EQ(entry.dsPriority, 0);
  SetEntry(2, "100:200", entry);
  EXPECT_EQ(entry.usPriority, 0);
}

TEST(VlanList, StackingEntry_IsBuiltUnlessItsParameterSaysOtherwise) {
  PortVlanStackEntry entry = {};
  SetEntry(2, "0x1001:200", entry);
  EXPECT_EQ(entry.port, 2);
  EXPECT_EQ(entry.cvid, 0x1001U);
  EXPECT_EQ(entry.svid, 200);
  EXPECT_EQ(entry.stackParam, 2U);
  SetEntry(2, "100:200:1", entry);
  EXPECT_EQ(entry.stackParam, 1U);
}

TEST(VlanList, Operations_PassTheListToTheLibrary) {
  const auto flows = [](const std::string& line) {
    return RunLines({"Init", line, "show flows"}).out;
  };
  EXPECT_THAT(flows("AddUsHybrid 1 10 3 100 200"),
              testing::AllOf(HasSubstr("outerVid=100"), HasSubstr("outerVid=200")));
  EXPECT_THAT(flows("AddUsTranslation 1 10 3 100:200"),
              testing::AllOf(HasSubstr("outerVid=100"), HasSubstr("outerVid=200")));
  EXPECT_THAT(flows("AddUsBDCOMStacking 1 10 3 100:200"),
              testing::AllOf(HasSubstr("outerVid=100"), HasSubstr("outerVid=200")));
  EXPECT_THAT(flows("AddUsZTETrunk 1"), testing::Not(HasSubstr("outerVid=100")));
}

TEST(VlanList, BadWords_AreWrongUse) {
  struct Case {
    std::string line;
    std::string expected;
  };
  const Case cases[] = {
      {"AddUsHybrid 1 10 3 x", "VID: expected a number from 0 to 4294967295, got \"x\""},
      {"AddUsTranslation 1 10 3 100",
       "PAIR: expected LOCAL:NET, LOCAL:NET:UP or LOCAL:NET:UP:DOWN, got \"100\""},
      {"AddUsTranslation 1 10 3 1:2:3:4:5", "got \"1:2:3:4:5\""},
      {"AddUsTranslation 1 10 3 1:", "got \"1:\""},
      {"AddUsTranslation 1 10 3 :2", "got \":2\""},
      {"AddUsBDCOMStacking 1 10 3 1:2:3:4",
       "PAIR: expected CVID:SVID or CVID:SVID:PARAM, got \"1:2:3:4\""},
      {"AddUsBDCOMStacking 1 10 3 a:b", "got \"a:b\""},
  };
  for (const Case& each : cases) {
    const Ran ran = RunLines({each.line});
    EXPECT_EQ(ran.status, ExitStatus::WrongUse) << each.line;
    EXPECT_THAT(ran.errors, HasSubstr(each.expected));
  }
}

TEST(VlanList, MoreWordsThanTheListHolds_AreWrongUse) {
  std::string line = "AddUsZTETrunk 1";
  for (int vid = 1; vid <= 513; ++vid) {
    line += " 0";
  }
  const Ran ran = RunLines({line});
  EXPECT_EQ(ran.status, ExitStatus::WrongUse);
  EXPECT_THAT(ran.errors, HasSubstr("expected at most 512 entries of the list, got 513"));
  EXPECT_EQ(RunLines({line.substr(0, line.size() - 2)}).status, ExitStatus::Done);
}

}  // namespace
}  // namespace onu
