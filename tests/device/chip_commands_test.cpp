/// @file
/// Tests of the command handlers: tables, index allotment, refusals.
#include <array>
#include <string>

#include "device_fixture.h"

namespace virtual_onu {
namespace {

using testing::Values;

class Commands : public DeviceTest {
 protected:
  /// Sends a record that must be refused; neither the record nor the tables may change.
  template <typename Record>
  void expectRefusal(std::uint32_t code, Record record, int error, const std::string& reason) {
    const Bytes before = BytesOf(record);
    const std::string tables = dumpTables();
    EXPECT_EQ(send(code, record), error);
    EXPECT_EQ(BytesOf(record), before);
    EXPECT_EQ(dumpTables(), tables);
    EXPECT_EQ(lastCommand().reason, reason);
    EXPECT_EQ(lastCommand().result, -1);
    EXPECT_EQ(lastCommand().after, before);
  }

  /// Every object of the chip, byte for byte.
  [[nodiscard]] std::string dumpTables() const {
    std::string text;
    for (const std::uint32_t dir : {kDs, kUs}) {
      for (const auto& [index, ic] : device_.tables().of(dir).classes) {
        text += "class " + std::to_string(index) + " " + ToHex(BytesOf(ic.cfg)) + "\n";
        for (const auto& [flowIndex, flow] : ic.flows) {
          text += "flow " + std::to_string(flowIndex) + " " + ToHex(BytesOf(flow)) + "\n";
        }
      }
      for (const auto& [index, action] : device_.tables().of(dir).actions) {
        text += "action " + std::to_string(index) + " " + ToHex(BytesOf(action)) + "\n";
      }
    }
    return text;
  }
};

TEST_F(Commands, Init_RemembersThePortCounts) {
  EXPECT_FALSE(device_.ports());
  DrvInitRecord record = {};
  record.fePortNum = 3;
  record.gePortNum = 4;
  EXPECT_EQ(send(BRMGR_CMD_INIT, record, BRMGR_FLAG_INPUT), 0);
  ASSERT_TRUE(device_.ports());
  EXPECT_EQ(device_.ports()->fePortNum, 3U);
  EXPECT_EQ(device_.ports()->gePortNum, 4U);
}

TEST_F(Commands, Feature_RemembersTheValue) {
  EXPECT_FALSE(device_.feature());
  FeatureRecord record = {0x12345678};
  EXPECT_EQ(send(BRMGR_CMD_FEATURE, record, BRMGR_FLAG_INPUT), 0);
  EXPECT_EQ(device_.feature(), 0x12345678U);
}

TEST_F(Commands, IcCreate_StoresTheClassInItsDirection) {
  IngressClassCfg cfg = {};
  cfg.type = 2;
  cfg.fieldMask = 0x48080;
  cfg.priority = 5;
  cfg.dir = kUs;
  cfg.icIndex = 3;
  EXPECT_EQ(send(BRMGR_CMD_IC_CREATE, cfg), 0);
  EXPECT_EQ(cfg.icIndex, 3U);
  EXPECT_TRUE(device_.tables().downstream.classes.empty());
  ASSERT_EQ(device_.tables().upstream.classes.size(), 1U);
  EXPECT_EQ(BytesOf(device_.tables().upstream.classes.at(3).cfg), BytesOf(cfg));
}

TEST_F(Commands, IcCreate_SameIndexInBothDirections_KeepsBoth) {
  EXPECT_EQ(addClass(kUs, 2), 2U);
  EXPECT_EQ(addClass(kDs, 2), 2U);
}

TEST_F(Commands, IcCreate_TakenIndex_GivesTheNextFreeOneAbove) {
  EXPECT_EQ(addClass(kUs, 1), 1U);
  EXPECT_EQ(addClass(kUs, 1), 2U);
  EXPECT_EQ(device_.tables().upstream.classes.at(2).cfg.icIndex, 2U);
}

TEST_F(Commands, IcCreate_TakenIndexAtTheEnd_StartsOverAtZero) {
  EXPECT_EQ(addClass(kUs, 3), 3U);
  EXPECT_EQ(addClass(kUs, 3), 0U);
  EXPECT_EQ(addClass(kUs, 3), 1U);
}

TEST_F(Commands, IcCreate_IndexBehindTheTable_StartsOverAtZero) {
  EXPECT_EQ(addClass(kUs, 4), 0U);
  EXPECT_EQ(addClass(kUs, BRMGR_INDEX_NONE), 1U);
}

TEST_F(Commands, IcCreate_FullTable_IsRefused) {
  for (std::uint32_t i = 0; i < kLimits.classes; ++i) {
    EXPECT_EQ(addClass(kUs), i);
  }
  IngressClassCfg cfg = {};
  cfg.dir = kUs;
  expectRefusal(BRMGR_CMD_IC_CREATE, cfg, ENOSPC, "all 4 us classes are in use");
  EXPECT_EQ(addClass(kDs), 0U);
}

TEST_F(Commands, IcCreate_WithoutReadBack_LeavesTheRecord) {
  addClass(kUs, 1);
  IngressClassCfg cfg = {};
  cfg.dir = kUs;
  cfg.icIndex = 1;
  EXPECT_EQ(send(BRMGR_CMD_IC_CREATE, cfg, BRMGR_FLAG_INPUT), 0);
  EXPECT_EQ(cfg.icIndex, 1U);
  EXPECT_EQ(device_.tables().upstream.classes.count(2), 1U);
}

TEST_F(Commands, IcDel_DeletesTheClassWithItsFlows) {
  const std::uint32_t index = addClass(kUs);
  addFlow(kUs, index);
  IngressClassDel record = {kUs, index};
  EXPECT_EQ(send(BRMGR_CMD_IC_DEL, record), 0);
  EXPECT_TRUE(device_.tables().upstream.classes.empty());
  EXPECT_EQ(addClass(kUs, index), index);
  EXPECT_TRUE(device_.tables().upstream.classes.at(index).flows.empty());
}

TEST_F(Commands, IcDel_UnknownClass_IsRefused) {
  addClass(kDs, 1);
  expectRefusal(BRMGR_CMD_IC_DEL, IngressClassDel{kUs, 1}, ENOENT, "no us class 1");
  expectRefusal(BRMGR_CMD_IC_DEL, IngressClassDel{kDs, 0}, ENOENT, "no ds class 0");
}

TEST_F(Commands, IcDel_OfAFullTable_FreesTheIndex) {
  for (std::uint32_t i = 0; i < kLimits.classes; ++i) {
    addClass(kUs);
  }
  IngressClassDel record = {kUs, 2};
  EXPECT_EQ(send(BRMGR_CMD_IC_DEL, record), 0);
  EXPECT_EQ(addClass(kUs, 0), 2U);
}

TEST_F(Commands, FlowAdd_StoresTheFlowAndReturnsTheLowestFreeIndex) {
  const std::uint32_t index = addClass(kDs, 1);
  IngressFlowRule flow = FlowOf(kDs, index);
  EXPECT_EQ(send(BRMGR_CMD_FLOW_ADD, flow), 0);
  EXPECT_EQ(flow.flowIndex, 0U);
  EXPECT_EQ(BytesOf(device_.tables().downstream.classes.at(index).flows.at(0)), BytesOf(flow));
  EXPECT_EQ(addFlow(kDs, index), 1U);
}

TEST_F(Commands, FlowAdd_SameKeyTwice_KeepsBothFlows) {
  const std::uint32_t index = addClass(kUs);
  EXPECT_EQ(addFlow(kUs, index), 0U);
  EXPECT_EQ(addFlow(kUs, index), 1U);
  EXPECT_EQ(device_.tables().upstream.classes.at(index).flows.size(), 2U);
}

TEST_F(Commands, FlowAdd_CountsIndexesPerClass) {
  EXPECT_EQ(addFlow(kUs, addClass(kUs, 0)), 0U);
  EXPECT_EQ(addFlow(kUs, addClass(kUs, 1)), 0U);
}

TEST_F(Commands, FlowAdd_AfterADelete_ReusesTheIndex) {
  const std::uint32_t index = addClass(kUs);
  for (std::uint32_t i = 0; i < kLimits.flowsPerClass; ++i) {
    EXPECT_EQ(addFlow(kUs, index), i);
  }
  IngressFlowDel record = {kUs, index, 1};
  EXPECT_EQ(send(BRMGR_CMD_FLOW_DEL, record, BRMGR_FLAG_INPUT), 0);
  EXPECT_EQ(addFlow(kUs, index), 1U);
}

TEST_F(Commands, FlowAdd_FullClass_IsRefused) {
  const std::uint32_t index = addClass(kUs);
  for (std::uint32_t i = 0; i < kLimits.flowsPerClass; ++i) {
    addFlow(kUs, index);
  }
  expectRefusal(BRMGR_CMD_FLOW_ADD, FlowOf(kUs, index), ENOSPC, "us class 0 already holds 3 flows");
}

TEST_F(Commands, FlowAdd_UnknownClass_IsRefused) {
  addClass(kDs, 2);
  expectRefusal(BRMGR_CMD_FLOW_ADD, FlowOf(kUs, 2), ENOENT, "no us class 2");
}

TEST_F(Commands, FlowAdd_UnknownAction_IsRefused) {
  const std::uint32_t index = addClass(kUs);
  addAction(kDs);
  IngressFlowRule flow = FlowOf(kUs, index);
  flow.vlanActionIndex = 0;
  expectRefusal(BRMGR_CMD_FLOW_ADD, flow, ENOENT, "no us VLAN action 0");
  flow.vlanActionIndex = addAction(kUs);
  EXPECT_EQ(send(BRMGR_CMD_FLOW_ADD, flow), 0);
}

TEST_F(Commands, FlowAdd_WithoutReadBack_LeavesTheRecordButAddsTheFlow) {
  IngressFlowRule flow = FlowOf(kUs, addClass(kUs));
  EXPECT_EQ(send(BRMGR_CMD_FLOW_ADD, flow, BRMGR_FLAG_INPUT), 0);
  EXPECT_EQ(flow.flowIndex, BRMGR_INDEX_NONE);
  EXPECT_EQ(device_.tables().upstream.classes.at(0).flows.at(0).flowIndex, 0U);
}

TEST_F(Commands, FlowDel_DeletesOneFlow) {
  const std::uint32_t index = addClass(kUs);
  addFlow(kUs, index);
  addFlow(kUs, index);
  IngressFlowDel record = {kUs, index, 0};
  EXPECT_EQ(send(BRMGR_CMD_FLOW_DEL, record, BRMGR_FLAG_INPUT), 0);
  const auto& flows = device_.tables().upstream.classes.at(index).flows;
  EXPECT_EQ(flows.size(), 1U);
  EXPECT_EQ(flows.count(1), 1U);
}

TEST_F(Commands, FlowDel_UnknownFlowOrClass_IsRefused) {
  const std::uint32_t index = addClass(kUs);
  addFlow(kUs, index);
  expectRefusal(BRMGR_CMD_FLOW_DEL, IngressFlowDel{kUs, index, 1}, ENOENT,
                "no flow 1 in us class 0");
  expectRefusal(BRMGR_CMD_FLOW_DEL, IngressFlowDel{kDs, index, 0}, ENOENT, "no ds class 0");
}

TEST_F(Commands, QueueSchedule_ReturnsTheStoredFlow) {
  const std::uint32_t index = addClass(kUs);
  IngressFlowRule flow = FlowOf(kUs, index);
  flow.queue = 6;
  flow.ingressPort = 2;
  ASSERT_EQ(send(BRMGR_CMD_FLOW_ADD, flow), 0);
  IngressFlowRule read = {};
  read.dir = kUs;
  read.icIndex = index;
  read.flowIndex = flow.flowIndex;
  EXPECT_EQ(send(BRMGR_CMD_QUEUE_SCHEDULE, read), 0);
  EXPECT_EQ(BytesOf(read), BytesOf(flow));
}

TEST_F(Commands, QueueSchedule_UnknownFlowOrClass_IsRefused) {
  addFlow(kUs, addClass(kUs));
  IngressFlowRule read = {};
  read.dir = kUs;
  read.flowIndex = 7;
  expectRefusal(BRMGR_CMD_QUEUE_SCHEDULE, read, ENOENT, "no flow 7 in us class 0");
  read.icIndex = 1;
  expectRefusal(BRMGR_CMD_QUEUE_SCHEDULE, read, ENOENT, "no us class 1");
}

TEST_F(Commands, VlanActionAdd_StoresTheActionAndReturnsTheLowestFreeIndex) {
  VlanActionRule action = {};
  action.cmd = BRMGR_TAG_PUSH | BRMGR_TAG_REPLACE_PRIORITY;
  action.tag[0] = {100, 5, 0, 0x8100};
  action.dir = kUs;
  action.vlanActionIndex = BRMGR_INDEX_NONE;
  EXPECT_EQ(send(BRMGR_CMD_VLAN_ACTION_ADD, action), 0);
  EXPECT_EQ(action.vlanActionIndex, 0U);
  EXPECT_EQ(BytesOf(device_.tables().upstream.actions.at(0)), BytesOf(action));
  EXPECT_EQ(addAction(kUs), 1U);
  EXPECT_EQ(addAction(kDs), 0U);
}

TEST_F(Commands, VlanActionAdd_TakesAnyOtherDirectionAsUpstream) {
  EXPECT_EQ(addAction(7), 0U);
  ASSERT_EQ(device_.tables().upstream.actions.size(), 1U);
  EXPECT_EQ(device_.tables().upstream.actions.at(0).dir, 7U);
  VlanActionDel record = {kUs, 0};
  EXPECT_EQ(send(BRMGR_CMD_VLAN_ACTION_DEL, record), 0);
}

TEST_F(Commands, VlanActionAdd_WithoutTpids_IsAccepted) {
  EXPECT_EQ(addAction(kDs), 0U);
  EXPECT_EQ(device_.tables().downstream.actions.at(0).tag[0].tpid, 0U);
  EXPECT_EQ(device_.tables().downstream.actions.at(0).tag[1].tpid, 0U);
}

TEST_F(Commands, VlanActionAdd_FullTable_IsRefused) {
  addAction(kUs);
  addAction(kUs);
  VlanActionRule action = {};
  action.dir = kUs;
  expectRefusal(BRMGR_CMD_VLAN_ACTION_ADD, action, ENOSPC, "all 2 us VLAN actions are in use");
}

TEST_F(Commands, VlanActionDel_FreesTheIndex) {
  addAction(kUs);
  addAction(kUs);
  VlanActionDel record = {kUs, 0};
  EXPECT_EQ(send(BRMGR_CMD_VLAN_ACTION_DEL, record, BRMGR_FLAG_INPUT), 0);
  EXPECT_EQ(addAction(kUs), 0U);
}

TEST_F(Commands, VlanActionDel_UnknownAction_IsRefused) {
  addAction(kDs);
  expectRefusal(BRMGR_CMD_VLAN_ACTION_DEL, VlanActionDel{kUs, 0}, ENOENT, "no us VLAN action 0");
  expectRefusal(BRMGR_CMD_VLAN_ACTION_DEL, VlanActionDel{kDs, 1}, ENOENT, "no ds VLAN action 1");
}

// Required: named-action-may-be-deleted
TEST_F(Commands, VlanActionDel_WhileAFlowNamesIt_IsDone) {
  IngressFlowRule flow = FlowOf(kUs, addClass(kUs));
  flow.vlanActionIndex = addAction(kUs);
  ASSERT_EQ(send(BRMGR_CMD_FLOW_ADD, flow), 0);
  VlanActionDel record = {kUs, flow.vlanActionIndex};
  EXPECT_EQ(send(BRMGR_CMD_VLAN_ACTION_DEL, record), 0);
  EXPECT_EQ(device_.tables().upstream.classes.at(0).flows.at(0).vlanActionIndex, 0U);
}

TEST_F(Commands, ClassesAndFlows_RefuseADirectionThatIsNone) {
  addFlow(kUs, addClass(kUs));
  const std::string reason = "direction 2 is neither 0 (ds) nor 1 (us)";
  IngressClassCfg cfg = {};
  cfg.dir = 2;
  expectRefusal(BRMGR_CMD_IC_CREATE, cfg, EINVAL, reason);
  expectRefusal(BRMGR_CMD_IC_DEL, IngressClassDel{2, 0}, EINVAL, reason);
  expectRefusal(BRMGR_CMD_FLOW_ADD, FlowOf(2, 0), EINVAL, reason);
  expectRefusal(BRMGR_CMD_FLOW_DEL, IngressFlowDel{2, 0, 0}, EINVAL, reason);
  IngressFlowRule read = FlowOf(2, 0);
  read.flowIndex = 0;
  expectRefusal(BRMGR_CMD_QUEUE_SCHEDULE, read, EINVAL, reason);
}

/// A command that carries a described record, and the record's size.
struct RecordLength {
  std::uint32_t code;
  std::uint32_t size;
};

class RecordLengths : public Commands, public testing::WithParamInterface<RecordLength> {};

TEST_P(RecordLengths, AShortRecord_IsRefused) {
  std::array<std::uint8_t, sizeof(IngressFlowRule)> record = {};
  const auto [code, size] = GetParam();
  EXPECT_EQ(request(code, record.data(), size - 1, BRMGR_FLAG_READ_BACK), EINVAL);
  EXPECT_EQ(lastCommand().reason, "short record");
  EXPECT_EQ(request(code, nullptr, 0, BRMGR_FLAG_READ_BACK), EINVAL);
  EXPECT_EQ(lastCommand().reason, "short record");
  EXPECT_EQ(dumpTables(), "");
  EXPECT_FALSE(device_.ports());
  EXPECT_FALSE(device_.feature());
}

TEST_F(Commands, Transmits_TakeRecordsOfAnyLength) {
  std::array<std::uint8_t, 20> record = {};
  std::size_t taken = 0;
  for (const std::uint32_t code : {33U, 118U, 141U, 143U}) {
    EXPECT_EQ(request(code, record.data(), record.size(), BRMGR_FLAG_INPUT), 0) << code;
    EXPECT_EQ(lastCommand().before.size(), record.size());
    ++taken;
  }
  EXPECT_EQ(taken, 4U);
}

TEST_P(RecordLengths, ALongerRecord_IsTakenAndItsTailLeftAlone) {
  addFlow(kDs, addClass(kDs));
  addAction(kDs);
  std::array<std::uint8_t, sizeof(IngressFlowRule) + 8> record = {};
  const auto [code, size] = GetParam();
  record.at(size) = 0xAA;
  EXPECT_EQ(request(code, record.data(), size + 8, BRMGR_FLAG_READ_BACK), 0);
  EXPECT_EQ(lastCommand().after.size(), size + 8);
  EXPECT_EQ(record.at(size), 0xAA);
}

INSTANTIATE_TEST_SUITE_P(Described, RecordLengths,
                         Values(RecordLength{0, 32}, RecordLength{98, 32}, RecordLength{99, 8},
                                RecordLength{100, 164}, RecordLength{101, 12},
                                RecordLength{102, 24}, RecordLength{104, 8}, RecordLength{124, 164},
                                RecordLength{127, 4}),
                         [](const auto& row) {
                           return "Command" + std::to_string(row.param.code);
                         });

}  // namespace
}  // namespace virtual_onu
