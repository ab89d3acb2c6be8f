/// @file
/// What the tests of single classification rules share: a started unit with room for all rules, and
/// what the next set of a port removes.
#pragma once

#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <bcm6838x_qos.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>

#include "qos_rules.h"
#include "support/library_test.h"

namespace hal_test::qos_rule {

inline const std::string kTrace = "log 1 hal/switch/bcm6838x/src/bcm6838x_qos_classify.cpp ";
inline const std::string kInvalid = "log 4 hal/switch/bcm6838x/src/bcm6838x_qos_classify.cpp ";

inline std::string InstalledLogged(std::uint32_t port, std::int32_t type, std::uint32_t precedence,
                                   std::uint32_t icIndex) {
  return kTrace + "port = " + std::to_string(port) + ", ruleType = " + std::to_string(type) +
         ", precedunce = " + std::to_string(precedence) + ", icindex = " + std::to_string(icIndex) +
         ", flowIndex = 0\r\n";
}

/// Room for a class, a flow and an action of every rule.
inline virtual_onu::UnitConfig RoomForAllRules() {
  virtual_onu::UnitConfig config;
  config.chip.classes = 512;
  return config;
}

class QosRuleTest : public LibraryTest {
 protected:
  QosRuleTest() : LibraryTest(RoomForAllRules()) {}

  void SetUp() override {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    ASSERT_EQ(BCM6838X_InitQoS(), 0U);
    forget();
  }

  /// Takes index 0 of the upstream classes and the indexes 0 and 1 of the upstream actions, so that
  /// the next rule has the class 1 and the action 2.
  void shiftIndexes() {
    IngressClassCfg taken = {};
    taken.dir = BRMGR_DIR_UPSTREAM;
    ASSERT_EQ(BCM6838X_Ioctl(BRMGR_CMD_IC_CREATE, &taken, sizeof(taken), 1), 0U);
    for (int i = 0; i < 2; ++i) {
      VlanActionRule action = {4, {}, BRMGR_DIR_UPSTREAM, kNoIndex};
      ASSERT_EQ(BCM6838X_Ioctl(BRMGR_CMD_VLAN_ACTION_ADD, &action, sizeof(action), 1), 0U);
    }
    forget();
  }

  /// What the next set of the port has to remove, without the listing.
  std::vector<std::string> removed(std::uint32_t port) {
    unit.device().faults().clear();
    forget();
    const QosClassRuleSet empty = SetOf(port, {});
    EXPECT_EQ(BCM6838X_ApplyQosClassification(&empty), 0U);
    return commands();
  }
};

}  // namespace hal_test::qos_rule
