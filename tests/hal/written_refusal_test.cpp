/// @file
/// Tests with a driver that writes into a record and refuses it all the same: where the library
/// reads the record regardless, and that it never takes what it finds there for an object.
#include <array>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <bcm6838x_mac.h>
#include <bcm6838x_port.h>
#include <bcm6838x_qos.h>
#include <bcm6838x_vlan.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>

#include "hal/qos/qos_rules.h"
#include "support/library_test.h"
#include "support/refusal.h"

namespace hal_test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class WrittenRefusalTest : public LibraryTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(BCM6838X_Init(), 0U);
    forget();
  }

  /// From now on the driver is itself again.
  void refuseNothing() { unit.device().onRequest({}); }
};

/// An entry as a reader of the MAC table gives it back.
struct MacEntry {
  std::uint32_t port = 0xAAAAAAAA;
  std::uint16_t vid = 0xAAAA;
  std::array<std::uint8_t, 6> mac = {0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA};
  std::uint8_t flag = 0xAA;
  bool operator==(const MacEntry&) const = default;
};

TEST_F(WrittenRefusalTest, MacReaders_HandOnWhatTheDriverWrote) {
  AnswerWritten<MacEntryRecord>(unit, BRMGR_CMD_MAC_GET_NEXT, kRefused, [](MacEntryRecord& record) {
    record.mac[5] = static_cast<std::uint8_t>(record.mac[5] + 1);
    record.port = 0x80000003;
    record.vid = 0x8FA1;
    record.entryType = 0x100;
  });
  int readers = 0;
  for (const auto read : {BCM6838X_GetFirstMacEntry, BCM6838X_GetNextMacEntry}) {
    MacEntry entry;
    entry.mac = {2, 0, 0x5E, 1, 2, 3};
    const bool first = readers == 0;
    EXPECT_EQ(read(&entry.port, &entry.vid, entry.mac.data(), &entry.flag), 0U);
    const std::array<std::uint8_t, 6> mac = {2, 0, 0x5E, 1, 2, 4};
    EXPECT_EQ(entry, (MacEntry{0x80000003, 0x8FA1,
                               first ? std::array<std::uint8_t, 6>{0, 0, 0, 0, 0, 1} : mac, 1}));
    ++readers;
  }
  EXPECT_EQ(readers, 2);
  EXPECT_THAT(logLines(), ElementsAre(RefusalLogged(73), RefusalLogged(73)));
}

TEST_F(WrittenRefusalTest, PortTable_HoldsWhatTheDriverWrote) {
  AnswerWritten<PortStatsRecord>(unit, BRMGR_CMD_PORT_STATS, kRefused, [](PortStatsRecord& record) {
    record.rxOctets = 100 + record.port;
    record.txError47 = 200;
  });
  std::array<PortStatisticsEntry, 4> entries = {};
  EXPECT_EQ(BCM6838X_GetPortStatistics(entries.data()), 0U);
  for (std::uint32_t i = 0; i < entries.size(); ++i) {
    EXPECT_EQ(entries.at(i).rxOctets, 100 + i);
    EXPECT_EQ(entries.at(i).txErrors, 200U);
    EXPECT_EQ(entries.at(i).txOctets, 0U);
  }
}

TEST_F(WrittenRefusalTest, Counter_LeavesTheCallersValueAlone) {
  AnswerWritten<PortStatsRecord>(unit, BRMGR_CMD_PORT_STATS, kRefused,
                                 [](PortStatsRecord& record) { record.rxUnicast = 100; });
  std::uint32_t value = 7;
  EXPECT_EQ(BCM6838X_GetPortStatisticsRxUnicastPackets(1, &value), 1U);
  EXPECT_EQ(value, 7U);
}

TEST_F(WrittenRefusalTest, Clear_KeepsWhatTheDriverWrote) {
  unit.device().counters(1).rxUnicast = 1000;
  AnswerWritten<PortStatsRecord>(unit, BRMGR_CMD_PORT_STATS, kRefused,
                                 [](PortStatsRecord& record) { record.rxUnicast = 100; });
  EXPECT_EQ(BCM6838X_SetPortStatisticsClear(1), 8U);
  refuseNothing();
  std::uint32_t value = 0;
  EXPECT_EQ(BCM6838X_GetPortStatisticsRxUnicastPackets(1, &value), 0U);
  EXPECT_EQ(value, 900U);
}

TEST_F(WrittenRefusalTest, DefaultAction_StaysTheEarlierOne) {
  AnswerWritten<VlanActionRule>(unit, BRMGR_CMD_VLAN_ACTION_ADD, kRefused,
                                [](VlanActionRule& record) { record.vlanActionIndex = 99; });
  EXPECT_EQ(BCM6838X_InitVlan(), 0U);
  refuseNothing();
  forget();
  BCM6838X_SetZteStacking(1);
  const std::string attached = "={{vlan_action={vlan_action/dir=ds,index=";
  EXPECT_THAT(OfKind(left(), "shell"), Contains(HasSubstr(attached + "0}")).Times(2));
  EXPECT_THAT(OfKind(left(), "shell"), Not(Contains(HasSubstr(attached + "99}"))));
}

TEST_F(WrittenRefusalTest, PooledAction_IsNone) {
  VlanActionRule push = {};
  push.cmd = BRMGR_TAG_PUSH;
  push.tag[0] = {100, 0, 0, 0x8100};
  push.dir = BRMGR_DIR_UPSTREAM;
  AnswerWritten<VlanActionRule>(unit, BRMGR_CMD_VLAN_ACTION_ADD, kRefused,
                                [](VlanActionRule& record) { record.vlanActionIndex = 99; });
  EXPECT_EQ(BCM6838X_AddVlanAction(push, 1), -1);
  EXPECT_EQ(BCM6838X_GetVlanAction(push), -1);
}

void WriteFlowIndex(IngressFlowRule& record) {
  record.flowIndex = 99;
}

TEST_F(WrittenRefusalTest, DownstreamFlow_IsLoggedByItsWrittenIndexAndNotPooled) {
  AnswerWritten<IngressFlowRule>(unit, BRMGR_CMD_FLOW_ADD, kRefused, WriteFlowIndex);
  EXPECT_EQ(BCM6838X_AddDsIngressClass(100, 1, 1), -1);
  EXPECT_EQ(BCM6838X_AddDsIngressClass_Perf(100, 1, 1), -1);
  EXPECT_THAT(logLines(),
              Contains(EndsWith(",<line>, add ds icIndex=1 flowIndex=99 error\r\n")).Times(2));
  EXPECT_EQ(BCM6838X_GetDsIngressClass(100, 1), -1);
}

TEST_F(WrittenRefusalTest, UpstreamFlow_IsLoggedByItsWrittenIndexAndNotRemembered) {
  AnswerWritten<IngressFlowRule>(unit, BRMGR_CMD_FLOW_ADD, kRefused, WriteFlowIndex);
  EXPECT_EQ(BCM6838X_AddUsTag(1, 100, 3), 8);
  EXPECT_THAT(logLines(),
              Contains("log 1 hal/switch/bcm6838x/src/bcm6838x_vlan_us.cpp "
                       "BCM6838X_AddUsTag,<line>, add us icIndex=0 flowIndex=99 error\r\n"));
  refuseNothing();
  forget();
  BCM6838X_DelUsTag(1, 100, 3);
  EXPECT_THAT(commands(), IsEmpty());
}

class WrittenQosRefusalTest : public WrittenRefusalTest {
 protected:
  static std::uint32_t addRule() {
    const QosClassRule rule = RemarkRule(1, 1);
    return BCM6838X_AddQosClassificationRule(&rule);
  }

  static std::string logged(const std::string& text) {
    return "log 4 hal/switch/bcm6838x/src/bcm6838x_qos_classify.cpp " + text + "\r\n";
  }

  /// What the next set of port 1 has to remove.
  std::vector<std::string> onRecord() {
    refuseNothing();
    forget();
    const QosClassRuleSet empty = SetOf(1, {});
    EXPECT_EQ(BCM6838X_ApplyQosClassification(&empty), 0U);
    return commands();
  }
};

TEST_F(WrittenQosRefusalTest, Rule_ActionRefused_IsNotOnRecord) {
  AnswerWritten<VlanActionRule>(unit, BRMGR_CMD_VLAN_ACTION_ADD, kRefused,
                                [](VlanActionRule& record) { record.vlanActionIndex = 99; });
  EXPECT_EQ(addRule(), 8U);
  EXPECT_EQ(logLines().back(), logged("Failed to Add vlanaction ret 8"));
  EXPECT_THAT(onRecord(), IsEmpty());
}

TEST_F(WrittenQosRefusalTest, Rule_ClassRefused_IsLoggedByItsWrittenIndexAndNotOnRecord) {
  AnswerWritten<IngressClassCfg>(unit, BRMGR_CMD_IC_CREATE, kRefused,
                                 [](IngressClassCfg& record) { record.icIndex = 99; });
  EXPECT_EQ(addRule(), 0U) << "the result of the undoing";
  EXPECT_EQ(logLines().back(), logged("Failed to Add ICIndex 99"));
  EXPECT_THAT(onRecord(), IsEmpty());
}

TEST_F(WrittenQosRefusalTest, Rule_FlowRefused_IsLoggedByItsWrittenIndexAndNotOnRecord) {
  AnswerWritten<IngressFlowRule>(unit, BRMGR_CMD_FLOW_ADD, kRefused, WriteFlowIndex);
  EXPECT_EQ(addRule(), 0U) << "the result of the undoing";
  EXPECT_EQ(logLines().back(), logged("Failed to Add flow 99"));
  EXPECT_THAT(onRecord(), IsEmpty());
}

}  // namespace
}  // namespace hal_test
