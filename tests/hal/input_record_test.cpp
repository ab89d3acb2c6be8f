/// @file
/// Tests with a driver that writes into records which it is only to read: the library logs and goes
/// on with what it sent.
#include <cstdint>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include <bcm6838x_igmp.h>
#include <bcm6838x_vlan.h>
#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>

#include "support/library_test.h"
#include "support/refusal.h"

namespace hal_test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;

class InputRecordTest : public LibraryTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    ASSERT_EQ(BCM6838X_RdpaIcInit(), 0U);
    ASSERT_EQ(BCM6838X_InitIgmp(), 0U);
    forget();
  }

  /// From now on the driver overwrites every record of a command that it is to read, and the ioctl
  /// returns `result`.
  template <typename Record>
  void overwrite(std::uint32_t code, int result) {
    AnswerWritten<Record>(unit, code, result,
                          [](Record& record) { std::memset(&record, 0xA5, sizeof(record)); });
  }

  /// The record that was sent last by a command.
  template <typename Record>
  [[nodiscard]] Record lastSent(std::uint32_t code) const {
    Record record = {};
    int found = 0;
    for (const auto& event :
         virtual_onu::EventsOf<virtual_onu::CommandEvent>(unit.trace().events())) {
      if (event.code == code && event.before.size() == sizeof(record)) {
        std::memcpy(&record, event.before.data(), sizeof(record));
        ++found;
      }
    }
    EXPECT_GT(found, 0);
    return record;
  }
};

TEST_F(InputRecordTest, IphostVlan_LogsTheTagThatWasSent) {
  overwrite<IphostVlanRecord>(BRMGR_CMD_IPHOST_VLAN_ADD, 0);
  BCM6838X_AddIphostVlan(100);
  overwrite<IphostVlanRecord>(BRMGR_CMD_IPHOST_VLAN_DEL, 0);
  BCM6838X_DelIphostVlan(101);
  EXPECT_THAT(logLines(),
              ElementsAre(EndsWith(" Upstream ip host packets Tci[e064],ret = 0 \r\n"),
                          EndsWith(" Upstream ip host packets remove Tci[e065],ret = 0 \r\n")));
}

TEST_F(InputRecordTest, IphostVlanRefused_LogsTheTagThatWasSent) {
  overwrite<IphostVlanRecord>(BRMGR_CMD_IPHOST_VLAN_ADD, -1);
  BCM6838X_AddIphostVlan(100);
  EXPECT_THAT(logLines().back(), EndsWith(" Upstream ip host packets Tci[e064],ret = 8 \r\n"));
}

TEST_F(InputRecordTest, UpstreamFlow_RefusedDelete_LogsTheIndexesThatWereSent) {
  BCM6838X_AddUsTag(1, 100, 3);
  overwrite<IngressFlowDel>(BRMGR_CMD_FLOW_DEL, -1);
  forget();
  EXPECT_EQ(BCM6838X_DelUsTag(1, 200, 3), 8);
  const auto sent = lastSent<IngressFlowDel>(BRMGR_CMD_FLOW_DEL);
  EXPECT_THAT(logLines(), Contains(EndsWith(" BCM6838X_DelUsTag,<line>, del us icIndex=" +
                                            std::to_string(sent.icIndex) + " flowIndex=" +
                                            std::to_string(sent.flowIndex) + " error\r\n")));
}

TEST_F(InputRecordTest, DownstreamFlow_RefusedDelete_LogsTheIndexesThatWereSent) {
  BCM6838X_AddDsIngressClass(100, 1, 1);
  overwrite<IngressFlowDel>(BRMGR_CMD_FLOW_DEL, -1);
  EXPECT_EQ(BCM6838X_DelDsIngressClass(100, 1), 0U);
  const auto sent = lastSent<IngressFlowDel>(BRMGR_CMD_FLOW_DEL);
  EXPECT_EQ(sent.icIndex, 1U);
  EXPECT_THAT(logLines().back(),
              EndsWith(" BCM6838X_DelDsIngressClass,<line>, delete ds icIndex=1 flowIndex=" +
                       std::to_string(sent.flowIndex) + " error\r\n"));
}

TEST_F(InputRecordTest, VlanAction_RefusedDelete_LogsTheIndexThatWasSent) {
  int rounds = 0;
  for (const std::uint32_t dir : {BRMGR_DIR_UPSTREAM, BRMGR_DIR_DOWNSTREAM}) {
    const VlanActionRule push = {BRMGR_TAG_PUSH, {{100, 0, 0, 0x8100}, {}}, dir, 0};
    const auto index = static_cast<std::uint32_t>(BCM6838X_AddVlanAction(push, 1));
    overwrite<VlanActionDel>(BRMGR_CMD_VLAN_ACTION_DEL, -1);
    BCM6838X_DelVlanAction({0, {}, dir, index});
    EXPECT_THAT(logLines().back(), EndsWith(" [BCM6838X_DelVlanAction <line>] delete " +
                                            std::string(dir == 0 ? "ds" : "us") + " vlanAction " +
                                            std::to_string(index) + " error\r\n"));
    ++rounds;
  }
  EXPECT_EQ(rounds, 2);
}

TEST_F(InputRecordTest, MulticastGroup_Delete_LogsAndGoesOnWithWhatWasSent) {
  McastGroupRequest request = {100, {1, 0, 0x5E, 1, 2, 3}, {239, 1, 2, 3}, {}, 1};
  BCM6838X_AddMulticastMacAddr(&request);
  overwrite<McastGroupEntry>(BRMGR_CMD_MCAST_DEL, 0);
  request.portMask = 2;
  forget();
  EXPECT_EQ(BCM6838X_ModifyMulticastMacAddr(&request), 0U);
  EXPECT_THAT(logLines().front(), EndsWith(" del IPTV group[239.1.2.3] Port[1] vlanActionIndex -1 "
                                           "channelIndex 0  slot 0 ret=0\r\n"));
  const auto sent = lastSent<McastGroupEntry>(BRMGR_CMD_MCAST_ADD);
  EXPECT_EQ(sent.channelIndex, 0U) << "of the delete";
  EXPECT_EQ(sent.vlanActionIndex, BRMGR_INDEX_NONE);
  EXPECT_EQ(sent.port, 2U);
  EXPECT_EQ(sent.portMask, 2U);
  EXPECT_EQ(sent.vlan, 100);
  EXPECT_EQ(std::memcmp(sent.groupMac, request.groupMac, sizeof(sent.groupMac)), 0);
  EXPECT_EQ(std::memcmp(sent.groupIpv4, request.groupIpv4, sizeof(sent.groupIpv4)), 0);
}

}  // namespace
}  // namespace hal_test
