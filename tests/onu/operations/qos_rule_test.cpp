/// @file
/// Tests of classification rules from words, and of the QoS operations' arguments.
#include "operations/qos_rule.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "language/failure.h"
#include "run_lines.h"

namespace onu {
namespace {

using test::RunLines;
using Value = std::vector<std::uint8_t>;

Value ValueOf(const QosClassRule& rule, std::size_t condition) {
  return {std::begin(rule.value[condition]), std::end(rule.value[condition])};
}

/// Sixteen bytes with some at a place.
Value At(std::size_t at, const Value& bytes) {
  Value value(16);
  std::ranges::copy(bytes, value.begin() + static_cast<std::ptrdiff_t>(at));
  return value;
}

struct ConditionRow {
  std::string word;
  std::uint32_t field;
  std::uint32_t op;
  Value value;
};

TEST(QosRule, Conditions_FieldsOperatorsAndValues) {
  const std::vector<ConditionRow> rows = {
      {"DaMac=02:00:00:00:00:01", 0, 1, At(0, {2, 0, 0, 0, 0, 1})},
      {"samac=ff:ee:dd:cc:bb:aa", 1, 1, At(0, {0xff, 0xee, 0xdd, 0xcc, 0xbb, 0xaa})},
      {"EtherPri=7", 2, 1, At(5, {7})},
      {"VlanId=4094", 3, 1, At(4, {0x0f, 0xfe})},
      {"EtherType=0x86dd", 4, 1, At(4, {0x86, 0xdd})},
      {"DaIp=10.1.2.3", 5, 1, At(2, {10, 1, 2, 3})},
      {"SaIp=255.255.255.255", 6, 1, At(2, {255, 255, 255, 255})},
      {"IpProtocolType=17", 7, 1, At(5, {17})},
      {"Ipv4TosDscp=255", 8, 1, At(5, {255})},
      {"Ipv6Precedence=1", 9, 1, At(5, {1})},
      {"L4SrcPort=5060", 10, 1, At(4, {0x13, 0xc4})},
      {"L4DestPort=65535", 11, 1, At(4, {0xff, 0xff})},
      {"DaIPv6=2001:db8::1", 12, 1, {0x20, 1, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}},
      {"SaIPv6=::2", 13, 1, At(15, {2})},
      {"IPv6SrcIPPrefix=3", 21, 1, At(5, {3})},
      {"22=3", 22, 1, At(5, {3})},
      {"0xffffffff:99=3", 0xffffffff, 99, At(5, {3})},
      {"VlanId:NotEqual=1", 3, 2, At(5, {1})},
      {"VlanId:alwaysmatch=0", 3, 7, At(0, {})},
  };
  for (const ConditionRow& row : rows) {
    const QosClassRule rule = ParseQosRule(1, 0, "1,0," + row.word);
    EXPECT_EQ(rule.fieldCount, 1) << row.word;
    EXPECT_EQ(rule.field[0], row.field) << row.word;
    EXPECT_EQ(rule.op[0], row.op) << row.word;
    EXPECT_EQ(ValueOf(rule, 0), row.value) << row.word;
  }
  EXPECT_EQ(rows.size(), 19U);
}

TEST(QosRule, Rule_HeadAndSeveralConditions) {
  const QosClassRule rule = ParseQosRule(0x103, 2,
                                         "8,7,VlanId=1,VlanId=2,VlanId=3,VlanId=4,"
                                         "VlanId=5,VlanId=6,VlanId=7,VlanId=8");
  EXPECT_EQ(rule.port, 3);
  EXPECT_EQ(rule.ruleType, 2U);
  EXPECT_EQ(rule.precedence, 8);
  EXPECT_EQ(rule.priority, 7);
  EXPECT_EQ(rule.queue, 7);
  ASSERT_EQ(rule.fieldCount, 8);
  EXPECT_EQ(ValueOf(rule, 7), At(5, {8}));
  EXPECT_EQ(ParseQosRule(1, 0, "0,255").fieldCount, 0);
}

TEST(QosRule, Port_IsTheRulesOwnWhereItNamesOne) {
  const QosClassRule rule = ParseQosRule(1, 0, "5@33,2,VlanId=1");
  EXPECT_EQ(rule.port, 33);
  EXPECT_EQ(rule.precedence, 5);
  EXPECT_EQ(rule.priority, 2);
}

TEST(QosRule, WrongWords_AreRefusedWithWhatWasExpected) {
  struct Row {
    std::string word;
    std::string error;
  };
  const std::vector<Row> rows = {
      {"", "expected PRECEDENCE[@PORT],PRIORITY[,CONDITION]..., got \"\""},
      {"1", "expected PRECEDENCE[@PORT],PRIORITY[,CONDITION]..., got \"1\""},
      {"x,1", "precedence: expected a number from 0 to 255, got \"x\""},
      {"256,1", "precedence: expected a number from 0 to 255, got \"256\""},
      {"1@,1", "port: expected a number from 0 to 255, got \"\""},
      {"1@256,1", "port: expected a number from 0 to 255, got \"256\""},
      {"@1,1", "precedence: expected a number from 0 to 255, got \"\""},
      {"1,-1", "priority: expected a number from 0 to 255, got \"-1\""},
      {"1,1,VlanId", "expected FIELD=VALUE or FIELD:OPERATOR=VALUE, got \"VlanId\""},
      {"1,1,VlanId=65536", "VlanId: expected a number from 0 to 65535, got \"65536\""},
      {"1,1,EtherPri=256", "EtherPri: expected a number from 0 to 255, got \"256\""},
      {"1,1,DaMac=1", "DaMac: expected a MAC address, got \"1\""},
      {"1,1,DaIp=::1", "DaIp: expected an IPv4 address, got \"::1\""},
      {"1,1,SaIPv6=1.2.3.4", "SaIPv6: expected an IPv6 address, got \"1.2.3.4\""},
      {"1,1,VlanId:Equal=x", "VlanId:Equal: expected a number from 0 to 65535, got \"x\""},
  };
  for (const Row& row : rows) {
    try {
      ParseQosRule(1, 0, row.word);
      ADD_FAILURE() << row.word;
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.what(), row.error);
      EXPECT_EQ(failure.status(), ExitStatus::WrongUse);
    }
  }
  EXPECT_EQ(rows.size(), 15U);
}

TEST(QosRule, UnknownNames_SuggestTheNearest) {
  EXPECT_THAT(
      RunLines({"AddQosClassificationRule 1 0 1,1,VlanIds=1"}).errors,
      testing::HasSubstr("no field \"VlanIds\"; did you mean \"VlanId\"? (they are DaMac, "));
  EXPECT_THAT(RunLines({"AddQosClassificationRule 1 0 1,1,VlanId:Equals=1"}).errors,
              testing::HasSubstr("no operator \"Equals\"; did you mean \"Equal\"? (they are "));
}

TEST(QosRule, NinthConditionOrRule_IsRefused) {
  std::string word = "1,1";
  std::string line = "ApplyQosClassification 1 0";
  for (int i = 0; i < 9; ++i) {
    word += ",VlanId=1";
    line += " 1,1,VlanId=1";
  }
  EXPECT_THAT(RunLines({"AddQosClassificationRule 1 0 " + word}).errors,
              testing::HasSubstr("expected at most 8 conditions, got another: \"VlanId=1\""));
  EXPECT_THAT(RunLines({line}).errors, testing::HasSubstr("rules: expected at most 8, got 9"));
}

TEST(QosOperations, Rules_ReachTheLibrary) {
  EXPECT_THAT(RunLines({"Init", "AddQosClassificationRule 1 0 1,7,VlanId=100"}).out,
              testing::HasSubstr("BCM6838X_AddQosClassificationRule(1, 0, 1,7,VlanId=100) = 0"));
}

TEST(QosOperations, SetWithRulesOfAnotherPort_InstallsThemThere) {
  const Words lines = {"Init", "ApplyQosClassification 1 0 1,7,VlanId=100 1@2,6,VlanId=100"};
  const auto rulesOf = [&lines](const std::string& port) {
    Words shown = lines;
    shown.push_back("show qos " + port);
    return test::RunLinesAsJson(shown).lastDocument()["rules"];
  };
  ASSERT_EQ(rulesOf("1").size(), 1U);
  ASSERT_EQ(rulesOf("2").size(), 1U);
  EXPECT_EQ(rulesOf("1")[0]["queue"], 7);
  EXPECT_EQ(rulesOf("2")[0]["queue"], 6);
}

TEST(QosOperations, InvalidRules_ReachTheLibraryToo) {
  EXPECT_EQ(RunLines({"AddQosClassificationRule 1 0 0,7,VlanId=100"}).out,
            "BCM6838X_AddQosClassificationRule(1, 0, 0,7,VlanId=100) = 2 (invalid)\n");
}

TEST(QosOperations, DscpMap_TakesPairs) {
  EXPECT_THAT(RunLines({"Init", "StreamSetDscpMap 1 46=7 0=1"}).out,
              testing::HasSubstr("BCM6838X_StreamSetDscpMap(1, 46=7, 0=1) = 0 (ok)"));
}

TEST(QosOperations, DscpMap_WrongPairs_AreRefused) {
  for (const std::string word : {"64=1", "1=256", "x=1", "1=x"}) {
    EXPECT_THAT(RunLines({"StreamSetDscpMap 1 " + word}).errors,
                testing::HasSubstr("expected DSCP=PRIORITY with numbers from 0 to 63 "
                                   "and from 0 to 255, got \"" +
                                   word + "\""));
  }
}

}  // namespace
}  // namespace onu
