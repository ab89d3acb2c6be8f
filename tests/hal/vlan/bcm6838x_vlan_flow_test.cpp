/// @file
/// Tests of the shared downstream flows, their reference counts and capacity, and of the port
/// actions on them.
#include <array>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include <bcm6838x_vlan.h>
#include <brmgr_cmd.h>
#include <hal_bcm6838x.h>
#include <platform_config.h>

#include "support/library_test.h"
#include "support/refusal.h"
#include "support/wire_record.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t kCapacity = 256;
constexpr std::uint32_t kNone = 0xFFFFFFFF;
const std::string kPlace = "log 1 hal/switch/bcm6838x/src/bcm6838x_vlan_flow.cpp ";

/// A downstream flow as it is sent.
WireRecord Flow(std::uint16_t vid, std::uint8_t vlanNum, std::uint32_t icIndex) {
  WireRecord record(164);
  record.u16(46, vid).u8(74, vlanNum).u32(96, 1).u32(144, icIndex);
  record.u32(148, kNone).u32(152, kNone).u32(156, kNone);
  return record;
}

std::string FlowSent(const WireRecord& record) {
  return Sent("FLOW_ADD", 1, record);
}

std::string DeleteSent(std::uint32_t icIndex, std::uint32_t flowIndex) {
  return Sent("FLOW_DEL", 0, WireRecord(12).u32(4, icIndex).u32(8, flowIndex));
}

std::string Logged(const std::string& operation, const std::string& text) {
  return kPlace + "BCM6838X_" + operation + ",<line>, " + text + "\r\n";
}

std::string AddLogged(const std::string& key) {
  return Logged("AddDsIngressClass", "add ds ingress class " + key);
}

std::string DelLogged(const std::string& key) {
  return Logged("DelDsIngressClass", "del ds ingress class " + key);
}

class VlanFlowTest : public LibraryTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    ASSERT_EQ(BCM6838X_RdpaIcInit(), 0U);
    forget();
  }

  [[nodiscard]] std::size_t flowsInClass(std::uint32_t icIndex) {
    return unit.device().tables().downstream.classes.at(icIndex).flows.size();
  }

  void fillTable() {
    for (std::uint32_t vid = 1; vid <= kCapacity; ++vid) {
      ASSERT_EQ(BCM6838X_AddDsIngressClass(vid, 1, 1), static_cast<std::int32_t>(vid - 1));
    }
    forget();
  }
};

TEST_F(VlanFlowTest, Add_NewVid_CreatesAFlowOfClassOne) {
  EXPECT_EQ(BCM6838X_AddDsIngressClass(100, 1, 1), 0);
  EXPECT_THAT(left(), ElementsAre(AddLogged("vid 100  vlanNum 1"), FlowSent(Flow(100, 1, 1))));
}

// Required: any-vid-is-4096
TEST_F(VlanFlowTest, Add_AnyVid_CreatesAFlowOfClassZeroWithoutVid) {
  EXPECT_EQ(BCM6838X_AddDsIngressClass(4096, 2, 1), 0);
  EXPECT_THAT(left(), ElementsAre(AddLogged("vid 4096  vlanNum 2"), FlowSent(Flow(0, 2, 0))));
}

TEST_F(VlanFlowTest, AddPerf_CarriesTwoResultWordsMoreAndLogsUnderItsOwnName) {
  EXPECT_EQ(BCM6838X_AddDsIngressClass_Perf(100, 1, 2), 0);
  EXPECT_EQ(BCM6838X_AddDsIngressClass_Perf(4096, 0, 1), 0);
  forget();
  EXPECT_EQ(BCM6838X_AddDsIngressClass_Perf(100, 1, 2), 0);
  EXPECT_THAT(left(), ElementsAre(Logged("AddDsIngressClass_Perf",
                                         "add ds ingress class vid 100  vlanNum 1"),
                                  Logged("AddDsIngressClass_Perf", "add IC num 4")));
}

// Required: performance-flow-words
TEST_F(VlanFlowTest, AddPerf_NewFlows_AreSentWithTheWords) {
  BCM6838X_AddDsIngressClass_Perf(100, 1, 1);
  BCM6838X_AddDsIngressClass_Perf(4096, 0, 1);
  EXPECT_THAT(commands(), ElementsAre(FlowSent(Flow(100, 1, 1).u32(104, 1).u32(108, 2)),
                                      FlowSent(Flow(0, 0, 0).u32(104, 1).u32(108, 2))));
}

TEST_F(VlanFlowTest, Add_PooledFlow_TakesReferencesWithoutTheDriver) {
  const std::int32_t index = BCM6838X_AddDsIngressClass(100, 1, 8);
  forget();
  EXPECT_EQ(BCM6838X_AddDsIngressClass(100, 1, 3), index);
  EXPECT_THAT(left(), ElementsAre(AddLogged("vid 100  vlanNum 1"),
                                  Logged("AddDsIngressClass", "add IC num 11")));
  EXPECT_EQ(BCM6838X_AddDsIngressClass_Perf(100, 1, 1), index) << "both modes share one table";
  EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(VlanFlowTest, Add_VidAndTagCountAreTheKey) {
  const std::vector<std::pair<std::uint32_t, std::uint32_t>> keys = {{4096, 1}, {100, 1}, {100, 2},
                                                                     {4096, 0}, {100, 0}, {101, 1}};
  for (const auto& [vid, vlanNum] : keys) {
    EXPECT_EQ(BCM6838X_GetDsIngressClass(vid, vlanNum), -1);
    EXPECT_GE(BCM6838X_AddDsIngressClass(vid, vlanNum, 1), 0);
  }
  EXPECT_THAT(commands(), ElementsAre(FlowSent(Flow(0, 1, 0)), FlowSent(Flow(100, 1, 1)),
                                      FlowSent(Flow(100, 2, 1)), FlowSent(Flow(0, 0, 0)),
                                      FlowSent(Flow(100, 0, 1)), FlowSent(Flow(101, 1, 1))));
}

TEST_F(VlanFlowTest, Add_ArgumentsAreTheirLowBits) {
  EXPECT_EQ(BCM6838X_AddDsIngressClass(0xABCD0064, 0xFF01, 0x10002), 0);
  EXPECT_THAT(left(), ElementsAre(AddLogged("vid 100  vlanNum 1"), FlowSent(Flow(100, 1, 1))));
  BCM6838X_AddDsIngressClass(100, 1, 0xFFFF);
  EXPECT_EQ(left().back(), Logged("AddDsIngressClass", "add IC num 65537"));
  EXPECT_EQ(BCM6838X_GetDsIngressClass(0x10064, 0x101), 0);
  forget();
  BCM6838X_DelDsIngressClass(0x10064, 0x101);
  EXPECT_THAT(left(), ElementsAre(DelLogged("vid 100  vlanNum 1"),
                                  Logged("DelDsIngressClass", "del IC num 65536")));
}

TEST_F(VlanFlowTest, Add_DriverRefuses_LogsAndRecordsNothing) {
  unit.device().faults().refuseFrom(1);
  EXPECT_EQ(BCM6838X_AddDsIngressClass(100, 1, 1), -1);
  EXPECT_EQ(BCM6838X_AddDsIngressClass_Perf(4096, 1, 1), -1);
  EXPECT_THAT(
      left(),
      ElementsAre(AddLogged("vid 100  vlanNum 1"), FlowSent(Flow(100, 1, 1)), RefusalLogged(100),
                  Logged("AddDsIngressClass", "add ds icIndex=1 flowIndex=-1 error"),
                  Logged("AddDsIngressClass_Perf", "add ds ingress class vid 4096  vlanNum 1"),
                  FlowSent(Flow(0, 1, 0).u32(104, 1).u32(108, 2)), RefusalLogged(100),
                  Logged("AddDsIngressClass_Perf", "add ds icIndex=0 flowIndex=-1 error")));
  unit.device().faults().clear();
  EXPECT_EQ(BCM6838X_GetDsIngressClass(100, 1), -1);
  EXPECT_EQ(BCM6838X_AddDsIngressClass(100, 1, 1), 0) << "the next add creates it";
}

// Required: flow-table-full-unrecorded
TEST_F(VlanFlowTest, Add_TableFull_CreatesTheFlowWithoutRecordingIt) {
  fillTable();
  EXPECT_EQ(BCM6838X_AddDsIngressClass(1000, 1, 1), -1);
  EXPECT_THAT(left(), ElementsAre(AddLogged("vid 1000  vlanNum 1"), FlowSent(Flow(1000, 1, 1))));
  EXPECT_EQ(flowsInClass(1), kCapacity + 1);
  EXPECT_EQ(BCM6838X_GetDsIngressClass(1000, 1), -1);
  EXPECT_EQ(BCM6838X_AddDsIngressClass(1000, 1, 1), -1);
  EXPECT_EQ(flowsInClass(1), kCapacity + 2) << "unrecorded flows are not shared";
  forget();
  BCM6838X_DelDsIngressClass(1000, 1);
  EXPECT_THAT(left(), ElementsAre(DelLogged("vid 1000  vlanNum 1")));
}

TEST_F(VlanFlowTest, Add_TableFull_StillSharesAndTakesAFreedEntry) {
  fillTable();
  EXPECT_EQ(BCM6838X_AddDsIngressClass(kCapacity, 1, 1), kCapacity - 1);
  EXPECT_THAT(commands(), IsEmpty());
  BCM6838X_DelDsIngressClass(7, 1);
  EXPECT_EQ(BCM6838X_AddDsIngressClass(1000, 1, 1), 6) << "the device's lowest free index";
  EXPECT_EQ(BCM6838X_GetDsIngressClass(1000, 1), 6);
  EXPECT_EQ(BCM6838X_AddDsIngressClass(1001, 1, 1), -1);
}

TEST_F(VlanFlowTest, Add_VidZero_IsNotKeptBecauseItMarksAFreeEntry) {
  EXPECT_EQ(BCM6838X_AddDsIngressClass(0, 1, 1), 0);
  EXPECT_THAT(commands(), ElementsAre(FlowSent(Flow(0, 1, 1))));
  EXPECT_EQ(BCM6838X_AddDsIngressClass(100, 1, 1), 1);
  EXPECT_EQ(BCM6838X_GetDsIngressClass(0, 1), -1) << "the next flow took its entry";
  EXPECT_EQ(BCM6838X_GetDsIngressClass(100, 1), 1);
}

TEST_F(VlanFlowTest, Del_LastReference_RemovesTheFlow) {
  BCM6838X_AddDsIngressClass(50, 1, 1);
  BCM6838X_AddDsIngressClass(100, 1, 1);
  BCM6838X_AddDsIngressClass(4096, 1, 1);
  forget();
  EXPECT_EQ(BCM6838X_DelDsIngressClass(100, 1), 0U);
  EXPECT_EQ(BCM6838X_DelDsIngressClass(4096, 1), 0U);
  EXPECT_THAT(left(), ElementsAre(DelLogged("vid 100  vlanNum 1"),
                                  Logged("DelDsIngressClass", "del IC num 0"), DeleteSent(1, 1),
                                  DelLogged("vid 4096  vlanNum 1"),
                                  Logged("DelDsIngressClass", "del IC num 0"), DeleteSent(0, 0)));
  EXPECT_EQ(flowsInClass(0), 0U);
  EXPECT_EQ(flowsInClass(1), 1U);
}

TEST_F(VlanFlowTest, Del_EightReferences_TheEighthRemovesTheFlow) {
  const std::int32_t index = BCM6838X_AddDsIngressClass(100, 1, 8);
  forget();
  int deletes = 0;
  for (; deletes < 7; ++deletes) {
    EXPECT_EQ(BCM6838X_DelDsIngressClass(100, 1), 0U);
    EXPECT_EQ(left().back(),
              Logged("DelDsIngressClass", "del IC num " + std::to_string(7 - deletes)));
  }
  EXPECT_EQ(deletes, 7);
  EXPECT_THAT(commands(), IsEmpty());
  EXPECT_EQ(BCM6838X_GetDsIngressClass(100, 1), index);
  BCM6838X_DelDsIngressClass(100, 1);
  EXPECT_THAT(commands(), ElementsAre(DeleteSent(1, 0)));
  EXPECT_EQ(BCM6838X_GetDsIngressClass(100, 1), -1);
}

TEST_F(VlanFlowTest, Del_NeverAdded_SendsNothing) {
  BCM6838X_AddDsIngressClass(100, 1, 1);
  forget();
  EXPECT_EQ(BCM6838X_DelDsIngressClass(100, 2), 0U);
  EXPECT_EQ(BCM6838X_DelDsIngressClass(101, 1), 0U);
  EXPECT_THAT(left(),
              ElementsAre(DelLogged("vid 100  vlanNum 2"), DelLogged("vid 101  vlanNum 1")));
}

// Required: flow-refused-delete-forgotten
TEST_F(VlanFlowTest, Del_DriverRefuses_ForgetsTheFlowAllTheSame) {
  BCM6838X_AddDsIngressClass(100, 1, 1);
  unit.device().faults().refuseNth(1);
  forget();
  EXPECT_EQ(BCM6838X_DelDsIngressClass(100, 1), 0U);
  EXPECT_THAT(
      left(),
      ElementsAre(DelLogged("vid 100  vlanNum 1"), Logged("DelDsIngressClass", "del IC num 0"),
                  DeleteSent(1, 0), RefusalLogged(101),
                  Logged("DelDsIngressClass", "delete ds icIndex=1 flowIndex=0 error")));
  EXPECT_EQ(BCM6838X_GetDsIngressClass(100, 1), -1);
  EXPECT_EQ(BCM6838X_AddDsIngressClass(100, 1, 1), 1) << "a new flow beside the forgotten one";
  EXPECT_EQ(flowsInClass(1), 2U);
}

// Required: flow-count-wraps
TEST_F(VlanFlowTest, Del_CountAlreadyZero_WrapsAndTheFlowStays) {
  const std::int32_t index = BCM6838X_AddDsIngressClass(100, 1, 0);
  forget();
  BCM6838X_DelDsIngressClass(100, 1);
  EXPECT_THAT(left(), ElementsAre(DelLogged("vid 100  vlanNum 1"),
                                  Logged("DelDsIngressClass", "del IC num -1")));
  EXPECT_EQ(BCM6838X_GetDsIngressClass(100, 1), index);
}

TEST_F(VlanFlowTest, Get_LogsAndTellsTheIndex) {
  BCM6838X_AddDsIngressClass(50, 1, 1);
  BCM6838X_AddDsIngressClass(100, 1, 1);
  forget();
  EXPECT_EQ(BCM6838X_GetDsIngressClass(100, 1), 1);
  EXPECT_EQ(BCM6838X_GetDsIngressClass(4096, 1), -1);
  EXPECT_THAT(left(),
              ElementsAre(Logged("GetDsIngressClass", "get ds ingress class vid 100  vlanNum 1"),
                          Logged("GetDsIngressClass", "get ds ingress class vid 4096  vlanNum 1")));
}

// Required: lan-number-wraps
TEST_F(VlanFlowTest, PortAction_EveryPort_NamesItsLanObject) {
  constexpr std::array kNormal = {"lan0", "lan1", "lan2", "lan3"};
  constexpr std::array kReversed = {"lan3", "lan2", "lan1", "lan0"};
  int lines = 0;
  for (const std::uint32_t revert : {0U, 1U, 2U}) {
    g_PortRevert = revert;
    for (std::uint32_t port = 1; port <= 4; ++port, ++lines) {
      const std::string lan = revert == 0 ? kNormal.at(port - 1) : kReversed.at(port - 1);
      forget();
      EXPECT_EQ(BCM6838X_AddPortAction(port, 17, 1, 3), 0U);
      EXPECT_EQ(BCM6838X_DelPortAction(port, 17, 1), 0U);
      EXPECT_THAT(
          left(),
          ElementsAre(
              Logged("AddPortAction",
                     "add port action port " + std::to_string(port) + " icIndex=1 flowIndex=17"),
              "shell bs /b/c ingress_class/dir=ds,index=1 port_action[{flow=17,port=" + lan +
                  "}]={{vlan_action={vlan_action/dir=ds,index=3},drop=no}}",
              Logged("DelPortAction",
                     "del port action port " + std::to_string(port) + " icIndex=1 flowIndex=17"),
              "shell bs /b/c ingress_class/dir=ds,index=1 port_action[{flow=17,port=" + lan +
                  "}]={{vlan_action=null,drop=no}}"));
    }
  }
  EXPECT_EQ(lines, 12);
}

TEST_F(VlanFlowTest, PortAction_IndexesAreSignedAndThePortHasSixteenBits) {
  EXPECT_EQ(BCM6838X_AddPortAction(0x10002, kNone, 0x80000000, kNone), 0U);
  EXPECT_EQ(BCM6838X_DelPortAction(0x10002, kNone, 0x80000000), 0U);
  EXPECT_THAT(
      left(),
      ElementsAre(
          Logged("AddPortAction", "add port action port 2 icIndex=-2147483648 flowIndex=-1"),
          "shell bs /b/c ingress_class/dir=ds,index=-2147483648 "
          "port_action[{flow=-1,port=lan1}]={{vlan_action={vlan_action/dir=ds,index=-1},drop=no}}",
          Logged("DelPortAction", "del port action port 2 icIndex=-2147483648 flowIndex=-1"),
          "shell bs /b/c ingress_class/dir=ds,index=-2147483648 "
          "port_action[{flow=-1,port=lan1}]={{vlan_action=null,drop=no}}"));
}

TEST_F(VlanFlowTest, PortAction_ShellRefuses_Succeeds) {
  unit.shell().faults().refuseFrom(1);
  EXPECT_EQ(BCM6838X_AddPortAction(1, 0, 1, 0), 0U);
  EXPECT_EQ(BCM6838X_DelPortAction(1, 0, 1), 0U);
  EXPECT_EQ(OfKind(left(), "shell").size(), 2U);
}

class VlanFlowClosedTest : public LibraryTest {};

TEST_F(VlanFlowClosedTest, Add_DeviceNotOpen_LogsAndReturnsNoFlow) {
  EXPECT_EQ(BCM6838X_AddDsIngressClass(100, 1, 1), -1);
  EXPECT_THAT(left(),
              ElementsAre(AddLogged("vid 100  vlanNum 1"),
                          Logged("AddDsIngressClass", "add ds icIndex=1 flowIndex=-1 error")));
}

}  // namespace
}  // namespace hal_test
