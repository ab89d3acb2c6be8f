/// @file
/// Tests of the QoS tables as a program sees them that links with the archive: what start-up, the
/// classification and the scheduling keep in them, and entries that only such a program can make.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include <bcm6838x_qos.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>

#include "qos_rules.h"
#include "support/library_tables.h"
#include "support/library_test.h"
#include "support/wire_record.h"

namespace hal_test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

class QosStateTest : public LibraryTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    ASSERT_EQ(BCM6838X_InitQoS(), 0U);
    forget();
  }

  /// The objects of an entry: VLAN action, class, flow.
  static std::vector<std::int32_t> entry(std::size_t at) {
    return {sg_QosClassificationVlanEntry[at], sg_QosClassificationICEntry[at],
            sg_QosClassificationFlowEntry[at]};
  }

  static void setEntry(std::size_t at, std::int32_t action, std::int32_t icIndex,
                       std::int32_t flow) {
    sg_QosClassificationVlanEntry[at] = action;
    sg_QosClassificationICEntry[at] = icIndex;
    sg_QosClassificationFlowEntry[at] = flow;
  }

  static std::uint32_t applyEmpty(std::uint32_t port) {
    const QosClassRuleSet set = SetOf(port, {});
    return BCM6838X_ApplyQosClassification(&set);
  }
};

TEST_F(QosStateTest, InitQoS_SetsEveryEntryToNone) {
  std::ranges::fill(sg_QosClassificationVlanEntry, 1);
  std::ranges::fill(sg_QosClassificationICEntry, 2);
  std::ranges::fill(sg_QosClassificationFlowEntry, 3);
  std::ranges::fill(g_portPolicerCfg, 1);
  EXPECT_EQ(BCM6838X_InitQoS(), 0U);
  EXPECT_THAT(sg_QosClassificationVlanEntry, Each(-1));
  EXPECT_THAT(sg_QosClassificationICEntry, Each(-1));
  EXPECT_THAT(sg_QosClassificationFlowEntry, Each(-1));
  EXPECT_THAT(g_portPolicerCfg, Each(1U)) << "the policers are kept";
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(QosStateTest, Add_KeepsTheIndexesUnderPortAndPrecedence) {
  const QosClassRule acl = AclRule(1, 1);
  const QosClassRule remark = RemarkRule(32, 8);
  EXPECT_EQ(BCM6838X_AddQosClassificationRule(&acl), 0U);
  EXPECT_EQ(BCM6838X_AddQosClassificationRule(&remark), 0U);
  EXPECT_THAT(entry(0), ElementsAre(-1, 0, 0));
  EXPECT_THAT(entry(255), ElementsAre(0, 1, 0));
  for (std::size_t at = 1; at < 255; ++at) {
    EXPECT_THAT(entry(at), Each(-1)) << at;
  }
}

TEST_F(QosStateTest, Add_InvalidRule_TouchesNoEntry) {
  for (const auto& [port, precedence] : {std::pair{0U, 1U}, {33U, 1U}, {1U, 0U}, {1U, 9U}}) {
    const QosClassRule rule = RemarkRule(port, precedence);
    EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 2U);
  }
  EXPECT_THAT(sg_QosClassificationVlanEntry, Each(-1));
  EXPECT_THAT(sg_QosClassificationICEntry, Each(-1));
  EXPECT_THAT(sg_QosClassificationFlowEntry, Each(-1));
}

TEST_F(QosStateTest, Apply_RemovesWhatTheEntriesSay) {
  setEntry(8, 300, 50, 2000);
  EXPECT_EQ(applyEmpty(2), 0U);
  EXPECT_THAT(commands(),
              ElementsAre(FlowDeleteSent(50, 2000), ClassDeleteSent(50), ActionDeleteSent(300)));
  EXPECT_THAT(entry(8), Each(-1));
}

TEST_F(QosStateTest, Apply_FlowWithoutAClass_IsForgottenWithoutADelete) {
  setEntry(8, -1, -1, 4);
  setEntry(9, 7, -1, 4);
  EXPECT_EQ(applyEmpty(2), 0U);
  EXPECT_THAT(commands(), ElementsAre(ActionDeleteSent(7)));
  EXPECT_EQ(logLines().back(),
            "log 1 hal/switch/bcm6838x/src/bcm6838x_qos_classify.cpp "
            "Failed to delete vlanaction -1\r\n");
  EXPECT_THAT(entry(8), Each(-1));
  EXPECT_THAT(entry(9), Each(-1));
}

TEST_F(QosStateTest, Apply_AnyNegativeEntry_CountsAsNone) {
  setEntry(0, -2, -3, -4);
  EXPECT_EQ(applyEmpty(1), 0U);
  EXPECT_THAT(commands(), IsEmpty());
  EXPECT_THAT(entry(0), Each(-1));
}

TEST_F(QosStateTest, Schedule_ReadsAndDeletesTheFlowOfTheEntryAndKeepsTheNewIndex) {
  const QosClassRule rule = RemarkRule(1, 1);
  EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 0U);
  // A second flow of the class, with the index 1, takes the place of the rule's own in the entry;
  // the device gives the next flow the index that is free then.
  IngressFlowRule second = {};
  second.queue = 3;
  second.dir = 1;
  second.vlanActionIndex = kNoIndex;
  ASSERT_EQ(BCM6838X_Ioctl(BRMGR_CMD_FLOW_ADD, &second, sizeof(second), 1), 0U);
  ASSERT_EQ(second.flowIndex, 1U);
  sg_QosClassificationFlowEntry[0] = 1;
  forget();
  EXPECT_EQ(BCM6838X_SetQosSchedule(1), 0U);
  EXPECT_EQ(commands().front(), Sent("QUEUE_SCHEDULE", 1, WireRecord(164).u32(140, 1).u32(148, 1)));
  EXPECT_EQ(commands().at(1), FlowDeleteSent(0, 1));
  EXPECT_THAT(entry(0), ElementsAre(0, 0, 1));
  EXPECT_EQ(unit.device().tables().upstream.classes.at(0).flows.at(1).queue, 11U);
}

TEST_F(QosStateTest, Schedule_AnEntryWithoutOneOfItsObjects_IsLeftAlone) {
  setEntry(0, -1, 1, 1);
  setEntry(1, 1, -1, 1);
  setEntry(2, 1, 1, -1);
  EXPECT_EQ(BCM6838X_SetQosSchedule(1), 0U);
  EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(QosStateTest, Schedule_AnyEntryButNone_IsRead) {
  // The test is for none alone, so that other negative entries are sent to the device.
  setEntry(255, -2, -3, -4);
  EXPECT_EQ(BCM6838X_SetQosSchedule(1), 0U);
  EXPECT_THAT(
      commands(),
      ElementsAre(Sent("QUEUE_SCHEDULE", 1,
                       WireRecord(164).u32(140, 1).u32(144, 0xFFFFFFFD).u32(148, 0xFFFFFFFC))));
  EXPECT_THAT(entry(255), ElementsAre(-2, -3, -4));
}

TEST_F(QosStateTest, Schedule_AddRefused_TheFlowEntryIsNone) {
  const QosClassRule rule = RemarkRule(1, 1);
  EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 0U);
  unit.device().faults().refuseNth(1, BRMGR_CMD_FLOW_ADD);
  EXPECT_EQ(BCM6838X_SetQosSchedule(1), 0U);
  EXPECT_THAT(entry(0), ElementsAre(0, 0, -1));
}

TEST_F(QosStateTest, Policer_EntryOfThePort_TellsWhetherItHasOne) {
  EXPECT_THAT(g_portPolicerCfg, Each(0U));
  for (const std::uint32_t port : {1U, 32U}) {
    QosUsPolicerCfg cfg = {port, 64, 0, 0};
    EXPECT_EQ(BCM6838X_SetQosUsPolicer(&cfg), 0U);
    EXPECT_EQ(g_portPolicerCfg[port - 1], 1U);
    EXPECT_EQ(std::ranges::count(g_portPolicerCfg, 1U), 1);
    cfg.cir = 63;
    EXPECT_EQ(BCM6838X_SetQosUsPolicer(&cfg), 0U);
    EXPECT_EQ(g_portPolicerCfg[port - 1], 1U) << "a rate out of range changes nothing";
    cfg.cir = 0;
    unit.device().faults().refuseFrom(1);
    EXPECT_EQ(BCM6838X_SetQosUsPolicer(&cfg), 0U);
    unit.device().faults().clear();
    EXPECT_THAT(g_portPolicerCfg, Each(0U)) << "the answer of the device does not count";
  }
}

TEST_F(QosStateTest, InitQoS_KeepsTheScheme) {
  EXPECT_EQ(BCM6838X_SetQosSchedule(1), 0U);
  EXPECT_EQ(BCM6838X_InitQoS(), 0U);
  setEntry(0, 1, 1, 1);
  EXPECT_EQ(BCM6838X_SetQosSchedule(1), 0U);
  EXPECT_THAT(commands(), IsEmpty()) << "it is the scheme already";
  EXPECT_EQ(BCM6838X_SetQosSchedule(0), 0U);
  EXPECT_THAT(commands(), testing::SizeIs(1)) << "the read-back, which the device refuses";
}

/// No device is open.
class QosClosedStateTest : public QosStateTest {
 protected:
  void SetUp() override { ASSERT_EQ(BCM6838X_InitQoS(), 0U); }
};

TEST_F(QosClosedStateTest, StartUp_KnowsNoRule) {
  setEntry(0, 1, 2, 3);
  setEntry(255, 4, 5, 6);
  EXPECT_EQ(BCM6838X_Init(), 0U);
  EXPECT_THAT(sg_QosClassificationVlanEntry, Each(-1));
  EXPECT_THAT(sg_QosClassificationICEntry, Each(-1));
  EXPECT_THAT(sg_QosClassificationFlowEntry, Each(-1));
}

// Required: apply-forgets-what-stays
TEST_F(QosClosedStateTest, Apply_LogsEveryDeleteAndForgetsTheRule) {
  setEntry(0, 5, 6, 7);
  EXPECT_EQ(applyEmpty(1), 0U);
  const std::string trace = "log 1 hal/switch/bcm6838x/src/bcm6838x_qos_classify.cpp ";
  const std::vector<std::string> lines = logLines();
  ASSERT_GE(lines.size(), 3U);
  EXPECT_THAT(
      std::vector<std::string>(lines.end() - 3, lines.end()),
      ElementsAre(trace + "Failed to delete ic 6 flow 7\r\n", trace + "Failed to delete ic 6\r\n",
                  trace + "Failed to delete vlanaction 6\r\n"));
  EXPECT_THAT(entry(0), Each(-1));
  EXPECT_THAT(commands(), IsEmpty());
}

// Required: schedule-stored-whatever-failed
TEST_F(QosClosedStateTest, Schedule_KeepsTheRuleAndStoresTheScheme) {
  setEntry(0, 5, 6, 7);
  EXPECT_EQ(BCM6838X_SetQosSchedule(1), 0U);
  EXPECT_THAT(entry(0), ElementsAre(5, 6, 7));
  ASSERT_EQ(BCM6838X_InitDrv(), 0U);
  forget();
  EXPECT_EQ(BCM6838X_SetQosSchedule(1), 0U);
  EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(QosClosedStateTest, Policer_FlagFollowsTheCall) {
  QosUsPolicerCfg cfg = {1, 64, 0, 0};
  EXPECT_EQ(BCM6838X_SetQosUsPolicer(&cfg), 0U);
  EXPECT_EQ(g_portPolicerCfg[0], 1U);
  cfg.cir = 0;
  EXPECT_EQ(BCM6838X_SetQosUsPolicer(&cfg), 0U);
  EXPECT_EQ(g_portPolicerCfg[0], 0U);
  EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(QosStateTest, Policer_PortOutOfRange_TouchesNoEntry) {
  for (const std::uint32_t port : {0U, 33U, 0x101U, 0xFFFFFFFFU}) {
    const QosUsPolicerCfg cfg = {port, 64, 0, 0};
    EXPECT_EQ(BCM6838X_SetQosUsPolicer(&cfg), 0U);
  }
  EXPECT_THAT(g_portPolicerCfg, Each(0U));
}

}  // namespace
}  // namespace hal_test
