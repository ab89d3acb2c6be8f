/// @file
/// Tests of the scheduling scheme, with read-back, delete and adding again failing in turn, and of
/// the weights of the queues.
#include <array>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <bcm6838x_qos.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>

#include "qos_rules.h"
#include "qos_schedule_fixture.h"
#include "support/refusal.h"
#include "support/wire_record.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Upwards to the second bank, and the same number wrapped for the way down from the first.
constexpr std::uint32_t kUp = 8;
constexpr std::uint32_t kDownFromTheFirstBank = 0xFFFFFFF8;

class QosScheduleTest : public QosScheduleFixture {
 protected:
  void add(const QosClassRule& rule) {
    ASSERT_EQ(BCM6838X_AddQosClassificationRule(&rule), 0U);
    forget();
  }
};

TEST_F(QosScheduleTest, Schedule_Unchanged_SendsNothing) {
  add(RemarkRule(1, 1));
  EXPECT_THAT(changed(0), IsEmpty());
  EXPECT_THAT(changed(1), SizeIs(3));
  EXPECT_THAT(changed(1), IsEmpty());
  EXPECT_THAT(changed(0), SizeIs(3));
  EXPECT_THAT(changed(0), IsEmpty());
}

TEST_F(QosScheduleTest, Schedule_UnknownScheme_IsUnsupportedAndChangesNothing) {
  add(RemarkRule(1, 1));
  for (const std::uint32_t scheme : {2U, 3U, 0x101U, 0x80000000U, 0xFFFFFFFFU}) {
    EXPECT_EQ(BCM6838X_SetQosSchedule(scheme), 3U) << scheme;
  }
  EXPECT_THAT(left(), IsEmpty());
  EXPECT_THAT(changed(0), IsEmpty());
  EXPECT_THAT(changed(1), SizeIs(3));
  EXPECT_EQ(BCM6838X_SetQosSchedule(2), 3U);
  EXPECT_THAT(changed(1), IsEmpty());
}

TEST_F(QosScheduleTest, Schedule_ThereAndBack_MovesEveryFlowByPortThenPrecedence) {
  add(RemarkRule(32, 8));
  add(RemarkRule(2, 1));
  add(RemarkRule(1, 7));
  add(RemarkRule(1, 2));
  std::vector<std::string> up;
  std::vector<std::string> down;
  for (const auto& [offset, lines] : {std::pair{kUp, &up}, std::pair{0U, &down}}) {
    Append(*lines, Moved(1, 2, 3, offset));
    Append(*lines, Moved(1, 7, 2, offset));
    Append(*lines, Moved(2, 1, 1, offset));
    Append(*lines, Moved(32, 8, 0, offset));
  }
  EXPECT_EQ(changed(1), up);
  EXPECT_THAT(logLines(), IsEmpty());
  EXPECT_EQ(changed(0), down);
  EXPECT_THAT(logLines(), IsEmpty());
  EXPECT_EQ(up.size(), 12U);
}

TEST_F(QosScheduleTest, Schedule_AllRulesOfAllPorts_AreMoved) {
  int rules = 0;
  for (std::uint32_t port = 1; port <= 7; ++port) {
    const QosClassRuleSet set = FullSet(port);
    EXPECT_EQ(BCM6838X_ApplyQosClassification(&set), 0U);
    rules += 8;
  }
  EXPECT_THAT(changed(1), SizeIs(3 * rules));
  for (const auto& [icIndex, ingressClass] : unit.device().tables().upstream.classes) {
    ASSERT_THAT(ingressClass.flows, SizeIs(1));
    const IngressFlowRule& flow = ingressClass.flows.at(0);
    EXPECT_EQ(flow.queue, flow.remarkPriority + 8U);
  }
  EXPECT_EQ(rules, 56);
}

TEST_F(QosScheduleTest, Schedule_KeysOfTheFlow_ArePreserved) {
  QosClassRule rule = EmptyRule(1, 1, kIpv4Remark, 7);
  for (const std::uint32_t field : {0U, 1U, 2U, 4U, 7U, 8U, 12U, 13U}) {
    rule = With(rule, field, CountingValue());
  }
  add(rule);
  const std::vector<std::uint8_t> ip = {0x10, 0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17,
                                        0x18, 0x19, 0x1a, 0x1b, 0x1c, 0x1d, 0x1e, 0x1f};
  const virtual_onu::ByteView mac = virtual_onu::ByteView(ip).first(6);
  EXPECT_EQ(changed(1).back(), Sent("FLOW_ADD", 1,
                                    RemarkFlow(1, 0, 0, 7)
                                        .u32(112, 15)
                                        .u32(0, 1)
                                        .bytes(4, ip)
                                        .u32(20, 1)
                                        .bytes(24, ip)
                                        .u8(44, 0x15)
                                        .bytes(50, mac)
                                        .bytes(56, mac)
                                        .u16(62, 0x1415)
                                        .u8(64, 0x15)
                                        .u8(72, 0x15)));
}

// Required: schedule-sends-result-anew
TEST_F(QosScheduleTest, Schedule_ResultOfTheFlow_IsSetAnewButForItsPriority) {
  add(RemarkRule(2, 1));
  // In place of the rule's flow, one that differs in everything that is not a key.
  IngressFlowDel taken = {1, 0, 0};
  ASSERT_EQ(BCM6838X_Ioctl(BRMGR_CMD_FLOW_DEL, &taken, sizeof(taken), 1), 0U);
  IngressFlowRule other = {};
  other.ingressPort = 9;
  other.vlanNum = 1;
  other.result88 = 88;
  other.result92 = 92;
  other.forward = BRMGR_FORWARD_TRAP;
  other.result104 = 104;
  other.result108 = 108;
  other.queue = 5;
  other.remarkPriority = 3;
  other.result128 = 128;
  other.dir = 1;
  other.vlanActionIndex = kNoIndex;
  other.policer = 2;
  ASSERT_EQ(BCM6838X_Ioctl(BRMGR_CMD_FLOW_ADD, &other, sizeof(other), 1), 0U);
  EXPECT_THAT(
      changed(1),
      ElementsAre(
          ReadSent(0, 0), FlowDeleteSent(0, 0),
          Sent("FLOW_ADD", 1,
               FlowRecord(2, 0, 0).u32(88, 88).u32(96, 1).u32(104, 104).u32(112, 13).u8(120, 1).u8(
                   121, 3))));
}

// Required: schedule-moves-remarking-alone
TEST_F(QosScheduleTest, Schedule_AclRules_AreNotMoved) {
  add(AclRule(1, 1));
  add(RemarkRule(1, 2));
  add(AclRule(1, 3));
  EXPECT_THAT(changed(1), SizeIs(3));
  EXPECT_EQ(unit.device().tables().upstream.classes.at(0).flows.at(0).queue, 0U);
}

// Required: schedule-stored-whatever-failed
TEST_F(QosScheduleTest, Schedule_WithoutRules_IsStored) {
  EXPECT_THAT(changed(1), IsEmpty());
  add(RemarkRule(1, 1));
  EXPECT_THAT(changed(1), IsEmpty());
}

// Required: rule-queue-is-its-priority
TEST_F(QosScheduleTest, Schedule_RuleAddedUnderScheme1_HasTheQueueOfItsPriorityAndWraps) {
  EXPECT_THAT(changed(1), IsEmpty());
  const QosClassRule rule = RemarkRule(1, 1);
  EXPECT_EQ(BCM6838X_AddQosClassificationRule(&rule), 0U);
  EXPECT_EQ(commands().back(), RemarkFlowSent(1, 1, 0, 0));
  EXPECT_EQ(changed(0), Moved(1, 1, 0, kDownFromTheFirstBank));
}

TEST_F(QosScheduleTest, Schedule_ReadBackRefused_TheFlowStaysInItsQueue) {
  add(RemarkRule(1, 1));
  add(RemarkRule(2, 1));
  unit.device().faults().refuseNth(1, BRMGR_CMD_QUEUE_SCHEDULE);
  std::vector<std::string> expected = {ReadSent(0, 0)};
  Append(expected, Moved(2, 1, 1, kUp));
  EXPECT_EQ(changed(1), expected);
  EXPECT_THAT(logLines(), ElementsAre(RefusalLogged(124)));
  EXPECT_EQ(unit.device().tables().upstream.classes.at(0).flows.at(0).queue, 7U);
  EXPECT_THAT(changed(1), IsEmpty());
  EXPECT_THAT(removed(1),
              ElementsAre(FlowDeleteSent(0, 0), ClassDeleteSent(0), ActionDeleteSent(0)));
}

TEST_F(QosScheduleTest, Schedule_DeleteRefused_TheFlowStaysInItsQueue) {
  add(RemarkRule(1, 1));
  add(RemarkRule(2, 1));
  unit.device().faults().refuseNth(1, BRMGR_CMD_FLOW_DEL);
  std::vector<std::string> expected = {ReadSent(0, 0), FlowDeleteSent(0, 0)};
  Append(expected, Moved(2, 1, 1, kUp));
  EXPECT_EQ(changed(1), expected);
  EXPECT_THAT(logLines(), ElementsAre(RefusalLogged(101)));
  EXPECT_EQ(unit.device().tables().upstream.classes.at(0).flows.at(0).queue, 7U);
  EXPECT_THAT(changed(1), IsEmpty());
  EXPECT_THAT(removed(1),
              ElementsAre(FlowDeleteSent(0, 0), ClassDeleteSent(0), ActionDeleteSent(0)));
}

// Required: schedule-loses-refused-flow
TEST_F(QosScheduleTest, Schedule_AddRefused_TheFlowIsLost) {
  add(RemarkRule(1, 1));
  add(RemarkRule(2, 1));
  unit.device().faults().refuseNth(1, BRMGR_CMD_FLOW_ADD);
  std::vector<std::string> expected = Moved(1, 1, 0, kUp);
  Append(expected, Moved(2, 1, 1, kUp));
  EXPECT_EQ(changed(1), expected);
  EXPECT_THAT(logLines(), ElementsAre(RefusalLogged(100)));
  EXPECT_EQ(changed(0), Moved(2, 1, 1, 0));
  EXPECT_THAT(removed(1), ElementsAre(ClassDeleteSent(0), ActionDeleteSent(0)));
}

TEST_F(QosScheduleTest, Schedule_NthCommandRefused_ReturnsOkAndLosesAtMostThatFlow) {
  const QosClassRuleSet set = SetOf(1, {RemarkRule(1, 1), RemarkRule(1, 2), RemarkRule(1, 3)});
  std::uint32_t rounds = 0;
  for (std::uint32_t nth = 1; nth <= 9; ++nth) {
    EXPECT_EQ(BCM6838X_ApplyQosClassification(&set), 0U);
    unit.device().faults().refuseNth(nth);
    // A read-back that is refused leaves the delete and the add out, a delete the add.
    EXPECT_THAT(changed(1), SizeIs(nth % 3 == 1 ? 7 : nth % 3 == 2 ? 8 : 9)) << nth;
    unit.device().faults().clear();
    EXPECT_THAT(changed(0), SizeIs(nth % 3 == 0 ? 6 : 9));
    EXPECT_THAT(removed(1), SizeIs(nth % 3 == 0 ? 8 : 9));
    EXPECT_THAT(unit.device().tables().upstream.classes, IsEmpty());
    ++rounds;
  }
  EXPECT_EQ(rounds, 9U);
}

TEST_F(QosScheduleTest, Schedule_AllCommandsRefusedFromTheNth_ReturnsOk) {
  const QosClassRuleSet set = SetOf(1, {RemarkRule(1, 1), RemarkRule(1, 2)});
  std::uint32_t rounds = 0;
  for (std::uint32_t nth = 1; nth <= 6; ++nth) {
    EXPECT_EQ(BCM6838X_ApplyQosClassification(&set), 0U);
    unit.device().faults().refuseFrom(nth);
    EXPECT_EQ(BCM6838X_SetQosSchedule(1), 0U);
    unit.device().faults().clear();
    EXPECT_EQ(BCM6838X_SetQosSchedule(0), 0U);
    // The third and the sixth command add a flow; without it the flow is lost.
    EXPECT_THAT(removed(1), SizeIs(nth % 3 == 0 ? 5 : 6)) << nth;
    EXPECT_THAT(unit.device().tables().upstream.classes, IsEmpty());
    ++rounds;
  }
  EXPECT_EQ(rounds, 6U);
}

// The weights

std::string WeightLine(std::uint32_t index, std::uint32_t weight) {
  return "shell bs /b/c egress_tm/dir=us,index=" + std::to_string(index) +
         " rl={af=0}, queue_cfg[0]={queue_id=" + std::to_string(index - 3) +
         ",weight=0,drop_alg=dt,drop_threshold=700,red_high_threshold=0,red_low_threshold=0}, "
         "weight=" +
         std::to_string(weight);
}

TEST_F(QosScheduleTest, Weights_OneLineForEachScheduler) {
  const std::array<std::uint8_t, 8> weights = {1, 2, 4, 8, 16, 0, 127, 255};
  EXPECT_EQ(BCM6838X_SetQosWrrWeight(weights.data()), 0U);
  EXPECT_THAT(left(), ElementsAre(WeightLine(11, 1), WeightLine(12, 2), WeightLine(13, 4),
                                  WeightLine(14, 8), WeightLine(15, 16), WeightLine(16, 0),
                                  WeightLine(17, 127), WeightLine(18, 255)));
  EXPECT_THAT(unit.shell().objects().schedulers, SizeIs(8));
}

TEST_F(QosScheduleTest, Weights_LinesThatFail_AreNotChecked) {
  const std::array<std::uint8_t, 8> weights = {};
  unit.shell().faults().refuseFrom(1);
  EXPECT_EQ(BCM6838X_SetQosWrrWeight(weights.data()), 0U);
  EXPECT_THAT(left(), SizeIs(8));
}

TEST_F(QosScheduleTest, Weights_NullArray_IsRefusedWithoutALogLine) {
  EXPECT_EQ(BCM6838X_SetQosWrrWeight(nullptr), 2U);
  EXPECT_THAT(left(), IsEmpty());
}

}  // namespace
}  // namespace hal_test
