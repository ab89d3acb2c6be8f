/// @file
/// Rules and sets of arbitrary bytes: those that can be installed are, with all of their objects
/// and no other, and the rest is refused without a trace.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <type_traits>

#include <bcm6838x_qos.h>
#include <hal_bcm6838x.h>

#include "qos_rules.h"
#include "support/library_test.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Room for the objects that the library forgets when a set names a place twice.
virtual_onu::UnitConfig RoomForOrphans() {
  virtual_onu::UnitConfig config;
  config.chip.classes = 2048;
  config.chip.vlanActions = 2048;
  return config;
}

bool IsInstallable(const QosClassRule& rule) {
  return rule.port >= 1 && rule.port <= 32 && rule.precedence >= 1 && rule.precedence <= 8 &&
         rule.fieldCount >= 1 && rule.fieldCount <= 8;
}

class QosHostileTest : public LibraryTest {
 protected:
  QosHostileTest() : LibraryTest(RoomForOrphans()) {}

  void SetUp() override {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    ASSERT_EQ(BCM6838X_InitQoS(), 0U);
    forget();
  }

  std::uint32_t draw() { return static_cast<std::uint32_t>(generator_()); }

  /// One of these values, one time in four any other.
  template <std::size_t count>
  std::uint32_t oneOf(const std::array<std::uint32_t, count>& values) {
    return draw() % 4 == 0 ? draw() : values.at(draw() % count);
  }

  /// Any bytes, in which every check of the library is as often met as not.
  QosClassRule arbitraryRule() {
    std::array<std::uint8_t, sizeof(QosClassRule)> bytes = {};
    for (std::uint8_t& byte : bytes) {
      byte = static_cast<std::uint8_t>(draw());
    }
    QosClassRule rule;
    static_assert(std::is_trivially_copyable_v<QosClassRule>);
    std::memcpy(&rule, bytes.data(), sizeof(rule));
    rule.ruleType = oneOf<4>({0, 1, 2, 3});
    rule.port = static_cast<std::uint8_t>(oneOf<6>({1, 2, 31, 32, 0, 33}));
    rule.precedence = static_cast<std::uint8_t>(oneOf<6>({1, 2, 7, 8, 0, 9}));
    rule.fieldCount = static_cast<std::uint8_t>(oneOf<6>({1, 2, 7, 8, 0, 9}));
    for (std::size_t i = 0; i < 8; ++i) {
      rule.field[i] = draw() % 24;
      rule.op[i] = oneOf<4>({1, 1, 2, 8});
    }
    return rule;
  }

  [[nodiscard]] const virtual_onu::DirectionTables& chip() {
    return unit.device().tables().upstream;
  }

  static void remove(std::uint32_t port) {
    const QosClassRuleSet empty = SetOf(port, {});
    EXPECT_EQ(BCM6838X_ApplyQosClassification(&empty), 0U);
  }

  void expectInstalled(const QosClassRule& rule) {
    EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 0U);
    ASSERT_THAT(chip().classes, SizeIs(1));
    const virtual_onu::IngressClass& made = chip().classes.begin()->second;
    EXPECT_EQ(made.cfg.priority, 8U * rule.port + 7 - rule.precedence);
    EXPECT_THAT(made.flows, SizeIs(1));
    EXPECT_THAT(chip().actions, SizeIs(rule.ruleType == kAcl ? 0 : 1));
    remove(rule.port);
    EXPECT_THAT(chip().classes, IsEmpty());
    EXPECT_THAT(chip().actions, IsEmpty());
  }

  void expectRefused(const QosClassRule& rule) {
    forget();
    EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 2U);
    EXPECT_THAT(left(), ElementsAre("log 4 hal/switch/bcm6838x/src/bcm6838x_qos_classify.cpp "
                                    "Invalid parameter\r\n"));
  }

 private:
  std::mt19937 generator_{20};  // the same rules on every machine
};

TEST_F(QosHostileTest, ArbitraryRules_AreInstalledWholeOrRefused) {
  int installed = 0;
  int refused = 0;
  for (int i = 0; i < 2000; ++i) {
    SCOPED_TRACE(i);
    const QosClassRule rule = arbitraryRule();
    if (IsInstallable(rule)) {
      expectInstalled(rule);
      ++installed;
    } else {
      expectRefused(rule);
      ++refused;
    }
  }
  EXPECT_GT(installed, 100);
  EXPECT_GT(refused, 1000);
}

TEST_F(QosHostileTest, ArbitrarySets_InstallTheirInstallableRulesAndNoOther) {
  std::size_t wanted = 0;
  for (int i = 0; i < 40; ++i) {
    QosClassRuleSet set = SetOf(0, {});
    std::size_t remarking = 0;
    std::size_t installable = 0;
    for (QosClassRule& rule : set.rule) {
      rule = arbitraryRule();
      installable += IsInstallable(rule) ? 1 : 0;
      remarking += IsInstallable(rule) && rule.ruleType != kAcl ? 1 : 0;
    }
    set.ruleType = arbitraryRule().ruleType;
    forget();
    EXPECT_EQ(BCM6838X_ApplyQosClassification(&set), 0U);
    EXPECT_THAT(commands(), SizeIs(2 * installable + remarking)) << i;
    wanted += installable;
  }
  EXPECT_THAT(chip().classes, SizeIs(wanted)) << "the sets' port removes none";
  EXPECT_GT(wanted, 20U);
}

}  // namespace
}  // namespace hal_test
