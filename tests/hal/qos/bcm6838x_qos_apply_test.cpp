/// @file
/// Tests of applying a rule set: the listing, the removal of what was installed, the installing of
/// every rule, hostile sets, and every device command failing in turn.
#include <cstdint>
#include <cstring>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <vector>

#include <bcm6838x_qos.h>
#include <brmgr_cmd.h>
#include <hal_bcm6838x.h>

#include "qos_rules.h"
#include "support/library_test.h"
#include "support/refusal.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const std::string kListing = "log 1 hal/switch/bcm6838x/src/bcm6838x_qos_listing.cpp ";
const std::string kTrace = "log 1 hal/switch/bcm6838x/src/bcm6838x_qos_classify.cpp ";
const std::string kInvalid = "log 4 hal/switch/bcm6838x/src/bcm6838x_qos_classify.cpp ";

constexpr std::uint32_t kRules = 8;
constexpr std::uint32_t kCommandsPerRule = 3;

/// Joins lists of lines.
std::vector<std::string> operator+(std::vector<std::string> first,
                                   const std::vector<std::string>& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

/// The commands that install RemarkRule().
std::vector<std::string> Installed(std::uint32_t port, std::uint32_t precedence,
                                   std::uint32_t index) {
  return {ActionSent(8 - precedence), ClassSent(0x48080, 8 * port + 7 - precedence),
          RemarkFlowSent(port, precedence, index, index)};
}

/// The commands that remove it.
std::vector<std::string> Removed(std::uint32_t index) {
  return {FlowDeleteSent(index, 0), ClassDeleteSent(index), ActionDeleteSent(index)};
}

std::uint32_t Apply(const QosClassRuleSet& set) {
  return BCM6838X_ApplyQosClassification(&set);
}

class QosApplyTest : public LibraryTest {
 protected:
  QosApplyTest() : LibraryTest(RoomForOrphans()) {}

  void SetUp() override {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    ASSERT_EQ(BCM6838X_InitQoS(), 0U);
    forget();
  }

  /// Objects whose delete is refused stay in the device.
  static virtual_onu::UnitConfig RoomForOrphans() {
    virtual_onu::UnitConfig config;
    config.chip.classes = 512;
    return config;
  }

  /// What was logged apart from the listing.
  [[nodiscard]] std::vector<std::string> messages() const {
    std::vector<std::string> lines = logLines();
    std::erase_if(lines, [](const std::string& line) { return line.starts_with(kListing); });
    return lines;
  }

  /// The listing as it appears in the log.
  [[nodiscard]] std::string listing() const {
    std::string text;
    for (const std::string& line : logLines()) {
      if (line.starts_with(kListing)) {
        text += line.substr(kListing.size());
      }
    }
    return text;
  }

  /// The commands of applying a set anew.
  std::vector<std::string> applied(const QosClassRuleSet& set) {
    forget();
    EXPECT_EQ(Apply(set), 0U);
    return commands();
  }
};

// The listing

/// A file with the line ends of a log.
std::string ReadGolden(const std::string& name) {
  std::ifstream file(std::string(HAL_GOLDEN) + "/" + name);
  std::string text;
  for (std::string line; std::getline(file, line);) {
    text += line + "\r\n";
  }
  return text;
}

QosClassRuleSet ListedSet() {
  QosClassRuleSet set = SetOf(3, {});
  set.ruleType = 1;
  std::uint32_t code = 0;
  for (std::uint32_t i = 0; i < kRules; ++i) {
    QosClassRule rule = EmptyRule(3, i, kIpv4Remark, 7 - i);
    rule.queue = static_cast<std::uint8_t>(10 * i);
    for (; rule.fieldCount < 3 && code < 24; ++code) {
      rule = With(rule, code, NumberValue(static_cast<std::uint16_t>(code)), code % 9);
    }
    set.rule[i] = rule;
  }
  return set;
}

TEST_F(QosApplyTest, Listing_EveryFieldAndOperator_IsTheGoldenFile) {
  EXPECT_EQ(Apply(ListedSet()), 0U);
  const std::string expected = ReadGolden("qos_listing.golden");
  EXPECT_THAT(expected, SizeIs(testing::Gt(2000U)));
  EXPECT_EQ(listing(), expected);
}

TEST_F(QosApplyTest, Listing_IsLoggedPieceByPieceBeforeAnythingElse) {
  RuleValue value = {};
  value[13] = 1;
  value[15] = 0xAB;
  QosClassRuleSet set = SetOf(1, {With(EmptyRule(1, 1, kAcl, 6), 9, value)});
  set.rule[0].queue = 4;
  set.ruleType = 2;
  EXPECT_EQ(Apply(set), 0U);
  const std::vector<std::string> lines = left();
  const std::vector<std::string> expected = {
      kListing + "\r\n1 -------------------------------------------------------------\r\n",
      kListing + "    RULETYPE:   ACL\r\n\r\n",
      kListing + "    + PRECEDENCE: 1\r\n",
      kListing + "    + QUEUE:      4\r\n",
      kListing + "    + PRIORITY:   6\r\n",
      kListing + "    + _________________________________________________________\r\n",
      kListing + "    + FIELD             OPERATOR              VALUE\r\n",
      kListing + "    + Ipv6Precedence    Equal                 ",
      kListing + ":01",
      kListing + ":00",
      kListing + ":ab",
      kListing + "\r\n",
      kListing + "\r\n",
      kListing + "    + PRECEDENCE: 0\r\n",
  };
  ASSERT_GT(lines.size(), expected.size());
  EXPECT_EQ(
      std::vector<std::string>(lines.begin(), lines.begin() + static_cast<long>(expected.size())),
      expected);
  // Two lines ahead, then six and a line end for each of the seven empty rules.
  EXPECT_THAT(lines, SizeIs(2 + 11 + 7 * 6 + 4));
  EXPECT_TRUE(lines.at(lines.size() - 4).starts_with(kTrace + "field does not support. "));
}

TEST_F(QosApplyTest, Listing_ValueOfZeros_PrintsNoBytes) {
  EXPECT_EQ(Apply(SetOf(1, {With(EmptyRule(1, 1, kAcl, 0), 0, {})})), 0U);
  EXPECT_THAT(listing(),
              testing::HasSubstr("    + DaMac             Equal                 \r\n\r\n"));
}

TEST_F(QosApplyTest, Listing_ValueWithoutALeadingZero_PrintsSixteenBytes) {
  EXPECT_EQ(Apply(SetOf(1, {With(EmptyRule(1, 1, kAcl, 0), 13, CountingValue())})), 0U);
  EXPECT_THAT(listing(), testing::HasSubstr("    + SaIPv6            Equal                 "
                                            ":10:11:12:13:14:15:16:17:18:19:1a:1b:1c:1d:1e:1f"
                                            "\r\n\r\n"));
}

TEST_F(QosApplyTest, Listing_UnknownCode_IsShownAsItsNumber) {
  QosClassRuleSet set =
      SetOf(255, {With(With(EmptyRule(1, 0, kAcl, 255), 0xFFFFFFFF, {}, 0xFFFFFFFE), 22, {}, 8)});
  set.ruleType = 0x80000000;
  EXPECT_EQ(Apply(set), 0U);
  EXPECT_THAT(listing(), testing::StartsWith("\r\n255 ---"));
  EXPECT_THAT(listing(), testing::HasSubstr("    RULETYPE:   2147483648\r\n\r\n"));
  EXPECT_THAT(listing(), testing::HasSubstr("    + PRIORITY:   255\r\n"));
  EXPECT_THAT(listing(), testing::HasSubstr("    + 4294967295        4294967294            \r\n"
                                            "    + 22                8                     \r\n"
                                            "\r\n"));
}

TEST_F(QosApplyTest, Listing_CountAboveEight_ShowsEightConditions) {
  for (const std::uint8_t count : {std::uint8_t{9}, std::uint8_t{255}}) {
    forget();
    QosClassRuleSet set = SetOf(1, {AclRule(1, 1)});
    set.rule[0].fieldCount = count;
    EXPECT_EQ(Apply(set), 0U);
    std::size_t shown = 0;
    for (const std::string& line : logLines()) {
      shown += line.starts_with(kListing + "    + VlanId  ") ? 1 : 0;
      shown += line.starts_with(kListing + "    + DaMac   ") ? 1 : 0;
    }
    EXPECT_EQ(shown, 8U);
    EXPECT_THAT(commands(), IsEmpty());
    EXPECT_THAT(messages(), ElementsAre(kInvalid + "Invalid parameter\r\n"));
  }
}

// Installing and removing

TEST_F(QosApplyTest, Apply_FirstSetOfAPort_RemovesNothing) {
  std::vector<std::string> expected;
  for (std::uint32_t precedence = 1; precedence <= kRules; ++precedence) {
    expected = expected + Installed(2, precedence, precedence - 1);
  }
  EXPECT_EQ(applied(FullSet(2)), expected);
}

TEST_F(QosApplyTest, Apply_SecondSet_RemovesEveryRuleByPrecedenceBeforeInstallingAny) {
  EXPECT_EQ(Apply(FullSet(2)), 0U);
  std::vector<std::string> expected;
  for (std::uint32_t index = 0; index < kRules; ++index) {
    expected = expected + Removed(index);
  }
  EXPECT_EQ(applied(SetOf(2, {RemarkRule(2, 5)})), expected + Installed(2, 5, 0));
}

TEST_F(QosApplyTest, Apply_RulesAreInstalledInTheirOrderNotThatOfPrecedence) {
  EXPECT_EQ(applied(SetOf(1, {RemarkRule(1, 7), RemarkRule(1, 2), RemarkRule(1, 4)})),
            Installed(1, 7, 0) + Installed(1, 2, 1) + Installed(1, 4, 2));
  EXPECT_EQ(applied(SetOf(1, {})), Removed(1) + Removed(2) + Removed(0));
}

TEST_F(QosApplyTest, Apply_EmptySlotsAreSkippedWhereverTheyAre) {
  QosClassRuleSet set = SetOf(1, {});
  set.rule[7] = RemarkRule(1, 3);
  set.rule[3] = RemarkRule(1, 1);
  EXPECT_EQ(applied(set), Installed(1, 1, 0) + Installed(1, 3, 1));
}

TEST_F(QosApplyTest, Apply_AllPrecedencesZero_OnlyRemoves) {
  EXPECT_EQ(Apply(SetOf(1, {RemarkRule(1, 1), AclRule(1, 2)})), 0U);
  const std::vector<std::string> aclRemoved = {FlowDeleteSent(1, 0), ClassDeleteSent(1)};
  EXPECT_EQ(applied(SetOf(1, {})), Removed(0) + aclRemoved);
  EXPECT_THAT(applied(SetOf(1, {})), IsEmpty());
}

TEST_F(QosApplyTest, Apply_OtherPorts_KeepTheirRules) {
  EXPECT_EQ(Apply(SetOf(1, {RemarkRule(1, 8)})), 0U);
  EXPECT_EQ(Apply(SetOf(3, {RemarkRule(3, 1)})), 0U);
  EXPECT_EQ(applied(SetOf(2, {RemarkRule(2, 1)})), Installed(2, 1, 2));
  EXPECT_EQ(applied(SetOf(1, {})), Removed(0));
  EXPECT_EQ(applied(SetOf(3, {})), Removed(1));
}

// Required: set-removes-by-its-port
TEST_F(QosApplyTest, Apply_RuleOfAnotherPort_IsInstalledThereAndTheEntryOverwritten) {
  EXPECT_EQ(Apply(SetOf(1, {RemarkRule(1, 1)})), 0U);
  EXPECT_EQ(Apply(SetOf(2, {RemarkRule(2, 1)})), 0U);
  EXPECT_EQ(applied(SetOf(1, {RemarkRule(2, 1)})), Removed(0) + Installed(2, 1, 0));
  EXPECT_THAT(applied(SetOf(1, {})), IsEmpty());
  // Port 2 knows the new rule only; the objects of the old one stay in the device.
  EXPECT_EQ(applied(SetOf(2, {})), Removed(0));
  EXPECT_THAT(unit.device().tables().upstream.classes, SizeIs(1));
}

TEST_F(QosApplyTest, Apply_SamePrecedenceTwice_TheLastIsKnown) {
  EXPECT_EQ(Apply(SetOf(1, {RemarkRule(1, 1), RemarkRule(1, 1)})), 0U);
  EXPECT_EQ(applied(SetOf(1, {})), Removed(1));
}

// Required: set-goes-on-and-succeeds
TEST_F(QosApplyTest, Apply_InvalidRules_AreRefusedAndTheOthersInstalled) {
  QosClassRule ninth = RemarkRule(1, 1);
  ninth.precedence = 9;
  EXPECT_EQ(applied(SetOf(1, {ninth, RemarkRule(0, 1), RemarkRule(33, 1), EmptyRule(1, 4, 0, 0),
                              RemarkRule(1, 2)})),
            Installed(1, 2, 0));
  const std::vector<std::string> all = messages();
  ASSERT_THAT(all, SizeIs(5));
  EXPECT_THAT(std::vector<std::string>(all.begin(), all.begin() + 4),
              testing::Each(kInvalid + "Invalid parameter\r\n"));
  EXPECT_EQ(applied(SetOf(1, {})), Removed(0));
}

TEST_F(QosApplyTest, Apply_SetOfAnInvalidPort_RemovesNothingAndInstallsItsRules) {
  EXPECT_EQ(Apply(SetOf(1, {RemarkRule(1, 1)})), 0U);
  std::uint32_t index = 1;
  for (const std::uint32_t port : {0U, 33U, 255U}) {
    EXPECT_EQ(applied(SetOf(port, {RemarkRule(2, 1)})), Installed(2, 1, index++)) << port;
    EXPECT_EQ(messages().front(), kInvalid + "Invalid parameter\r\n");
    EXPECT_THAT(messages(), SizeIs(2));
  }
  EXPECT_EQ(index, 4U);
  EXPECT_EQ(applied(SetOf(1, {})), Removed(0));
}

TEST_F(QosApplyTest, Apply_SetOfPort32_IsValid) {
  EXPECT_EQ(Apply(FullSet(32)), 0U);
  EXPECT_THAT(applied(SetOf(32, {})), SizeIs(24));
}

TEST_F(QosApplyTest, Apply_NullSet_IsLoggedAndChangesNothing) {
  EXPECT_EQ(BCM6838X_ApplyQosClassification(nullptr), 0U);
  EXPECT_THAT(left(),
              ElementsAre(kInvalid + "BCM6838X_ApplyQosClassification(<line>), null pointer\r\n"));
}

TEST_F(QosApplyTest, Apply_SetOfAllOnes_InstallsNothing) {
  QosClassRuleSet set;
  std::memset(&set, 0xFF, sizeof(set));
  EXPECT_EQ(Apply(set), 0U);
  EXPECT_THAT(commands(), IsEmpty());
  EXPECT_THAT(messages(), SizeIs(9));
}

// Failures

// Required: apply-forgets-what-stays, log-action-named-by-class
TEST_F(QosApplyTest, Apply_DeletesRefused_AreLoggedAndTheObjectsForgotten) {
  EXPECT_EQ(Apply(SetOf(1, {AclRule(1, 8), RemarkRule(1, 1)})), 0U);
  forget();
  unit.device().faults().refuseFrom(1);
  EXPECT_EQ(Apply(SetOf(1, {})), 0U);
  EXPECT_THAT(messages(),
              ElementsAre(RefusalLogged(101), kTrace + "Failed to delete ic 1 flow 0\r\n",
                          RefusalLogged(99), kTrace + "Failed to delete ic 1\r\n",
                          RefusalLogged(104), kTrace + "Failed to delete vlanaction 1\r\n",
                          RefusalLogged(101), kTrace + "Failed to delete ic 0 flow 0\r\n",
                          RefusalLogged(99), kTrace + "Failed to delete ic 0\r\n"));
  EXPECT_THAT(commands(), ElementsAre(FlowDeleteSent(1, 0), ClassDeleteSent(1), ActionDeleteSent(0),
                                      FlowDeleteSent(0, 0), ClassDeleteSent(0)));
  unit.device().faults().clear();
  EXPECT_THAT(applied(SetOf(1, {})), IsEmpty());
}

TEST_F(QosApplyTest, Apply_OneDeleteRefused_TheOthersAreSent) {
  for (const std::uint32_t code : {101U, 99U, 104U}) {
    EXPECT_EQ(Apply(SetOf(1, {RemarkRule(1, 1)})), 0U);
    unit.device().faults().refuseNth(1, code);
    EXPECT_THAT(applied(SetOf(1, {})), SizeIs(3)) << code;
    EXPECT_THAT(messages(), SizeIs(2));
    unit.device().faults().clear();
    EXPECT_THAT(applied(SetOf(1, {})), IsEmpty());
  }
}

// Required: set-goes-on-and-succeeds
TEST_F(QosApplyTest, Apply_ARuleThatFails_DoesNotStopTheOthers) {
  unit.device().faults().refuseNth(1, BRMGR_CMD_VLAN_ACTION_ADD);
  EXPECT_EQ(applied(SetOf(1, {RemarkRule(1, 1), RemarkRule(1, 2)})),
            std::vector<std::string>{ActionSent(7)} + Installed(1, 2, 0));
}

TEST_F(QosApplyTest, Apply_NthCommandRefused_ReturnsOkAndTheNextSetWorks) {
  std::uint32_t rounds = 0;
  for (std::uint32_t nth = 1; nth <= 2 * kRules * kCommandsPerRule; ++nth) {
    for (const bool onwards : {false, true}) {
      EXPECT_EQ(Apply(FullSet(1)), 0U);
      if (onwards) {
        unit.device().faults().refuseFrom(nth);
      } else {
        unit.device().faults().refuseNth(nth);
      }
      EXPECT_EQ(Apply(FullSet(1)), 0U);
      unit.device().faults().clear();
      EXPECT_EQ(Apply(SetOf(1, {})), 0U);
      EXPECT_THAT(applied(SetOf(1, {})), IsEmpty()) << nth;
      EXPECT_THAT(applied(FullSet(1)), SizeIs(kRules * kCommandsPerRule)) << nth;
      EXPECT_THAT(applied(SetOf(1, {})), SizeIs(kRules * kCommandsPerRule)) << nth;
      ++rounds;
    }
  }
  EXPECT_EQ(rounds, 96U);
}

class QosApplyClosedTest : public LibraryTest {};

TEST_F(QosApplyClosedTest, Apply_DeviceNotOpen_ReturnsOk) {
  BCM6838X_InitQoS();
  EXPECT_EQ(Apply(FullSet(1)), 0U);
  EXPECT_EQ(Apply(FullSet(1)), 0U);
  EXPECT_THAT(commands(), IsEmpty());
}

}  // namespace
}  // namespace hal_test
