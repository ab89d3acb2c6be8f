/// @file
/// Tests of the default ingress classes and trap flows: every row of their tables, byte for byte.
#include <algorithm>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>

#include "support/library_test.h"
#include "support/wire_record.h"

namespace hal_test {
namespace {

using virtual_onu::Bytes;
using virtual_onu::CommandEvent;

struct ClassRow {
  std::uint32_t fieldMask;
  std::uint32_t priority;
  std::uint32_t dir;
  std::uint32_t icIndex;
};

const std::vector<ClassRow> kNormalRows = {
    {0x48000, 1, 1, 0}, {0x48080, 2, 1, 1}, {0x200, 3, 1, 2},   {0x58080, 4, 1, 3},
    {0x58000, 5, 1, 4}, {0x48000, 1, 0, 0}, {0x48080, 2, 0, 1}, {0x200, 3, 0, 2},
};

const std::vector<ClassRow> kPerformanceRows = {{0x8000, 6, 1, 0}, {0x8000, 3, 0, 0}};

std::string ClassSent(const ClassRow& row) {
  return Sent("IC_CREATE", 1,
              WireRecord(32)
                  .u32(0, 2)
                  .u32(4, row.fieldMask)
                  .u32(8, row.priority)
                  .u32(24, row.dir)
                  .u32(28, row.icIndex));
}

std::vector<std::string> ClassesSent(const std::vector<ClassRow>& rows) {
  std::vector<std::string> lines;
  std::ranges::transform(rows, std::back_inserter(lines), ClassSent);
  return lines;
}

std::string TrapSent(std::uint32_t dir, const Bytes& mac) {
  return Sent("FLOW_ADD", 1,
              WireRecord(164)
                  .bytes(50, mac)
                  .u32(96, 2)
                  .u32(140, dir)
                  .u32(144, 2)
                  .u32(148, 0xFFFFFFFF)
                  .u32(152, 0xFFFFFFFF)
                  .u32(156, 0xFFFFFFFF));
}

const Bytes kFirstMac = {0x02, 0x11, 0x22, 0x33, 0x44, 0x55};
const Bytes kSecondMac = {0x02, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE};
const Bytes kBridgeGroup = {0x01, 0x80, 0xC2, 0x00, 0x00, 0x00};
const Bytes kSecondGroup = {0x01, 0x80, 0xC2, 0x00, 0x00, 0x23};

class ClassTest : public LibraryTest {
 protected:
  void SetUp() override {
    std::ranges::copy(kFirstMac, unit.platform().config().firstMac.begin());
    std::ranges::copy(kSecondMac, unit.platform().config().secondMac.begin());
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    forget();
  }
};

// Required: trap-second-group-23, trap-flows-downstream-first
TEST_F(ClassTest, RdpaIcInit_CreatesEightClassesThenSixTrapFlows) {
  EXPECT_EQ(BCM6838X_RdpaIcInit(), 0U);
  std::vector<std::string> expected = ClassesSent(kNormalRows);
  expected.push_back(TrapSent(0, kFirstMac));
  expected.push_back(TrapSent(0, kSecondMac));
  expected.push_back(TrapSent(1, kFirstMac));
  expected.push_back(TrapSent(1, kSecondMac));
  expected.push_back(TrapSent(1, kBridgeGroup));
  expected.push_back(TrapSent(1, kSecondGroup));
  EXPECT_EQ(commands(), expected);
}

TEST_F(ClassTest, RdpaIcInit_AsksForTheAddressesAfterTheClasses) {
  BCM6838X_RdpaIcInit();
  const std::vector<std::string> lines = left();
  ASSERT_EQ(lines.size(), 15U);
  EXPECT_EQ(lines[8], "call VOS_OntInfoGetMac()");
}

// Required: trap-second-group-23
TEST_F(ClassTest, RdpaIcInit_AddressesUnknown_AddsOnlyTheReservedAddresses) {
  unit.platform().config().macQueryFails = true;
  EXPECT_EQ(BCM6838X_RdpaIcInit(), 0U);
  std::vector<std::string> expected = ClassesSent(kNormalRows);
  expected.push_back(TrapSent(1, kBridgeGroup));
  expected.push_back(TrapSent(1, kSecondGroup));
  EXPECT_EQ(commands(), expected);
}

// Required: classes-return-last-result
TEST_F(ClassTest, RdpaIcInit_ReturnsTheResultOfTheEighthClassAlone) {
  unit.device().faults().refuseNth(8, BRMGR_CMD_IC_CREATE);
  EXPECT_EQ(BCM6838X_RdpaIcInit(), 8U);
  EXPECT_EQ(commands().size(), 14U) << "a refused class stops nothing";
}

// Required: classes-return-last-result
TEST_F(ClassTest, RdpaIcInit_EarlierClassesAndFlowsRefused_ReturnsSuccess) {
  for (std::uint32_t nth = 1; nth <= 7; ++nth) {
    unit.device().faults().refuseNth(nth, BRMGR_CMD_IC_CREATE);
  }
  unit.device().faults().refuseFrom(1, BRMGR_CMD_FLOW_ADD);
  EXPECT_EQ(BCM6838X_RdpaIcInit(), 0U);
  EXPECT_EQ(commands().size(), 14U);
}

TEST_F(ClassTest, RdpaIcInit_LeavesTheChipWithTheTables) {
  BCM6838X_RdpaIcInit();
  const virtual_onu::ChipTables& tables = unit.device().tables();
  EXPECT_EQ(tables.upstream.classes.size(), 5U);
  EXPECT_EQ(tables.downstream.classes.size(), 3U);
  EXPECT_EQ(tables.upstream.classes.at(2).flows.size(), 4U);
  EXPECT_EQ(tables.downstream.classes.at(2).flows.size(), 2U);
}

TEST_F(ClassTest, RdpaIcInitPerf_CreatesTwoClassesAndNoFlow) {
  EXPECT_EQ(BCM6838X_RdpaIcInit_Perf(), 0U);
  EXPECT_EQ(left(), ClassesSent(kPerformanceRows));
}

TEST_F(ClassTest, RdpaIcInitPerf_ReturnsTheResultOfTheSecondClass) {
  unit.device().faults().refuseNth(1);
  EXPECT_EQ(BCM6838X_RdpaIcInit_Perf(), 0U);
  unit.device().faults().clear();
  unit.device().faults().refuseNth(2);
  EXPECT_EQ(BCM6838X_RdpaIcInit_Perf(), 8U);
}

// Required: data-path-port-is-low-byte-plus-1
TEST_F(ClassTest, StreamPortIndexUniToRdpa_AddsOneToTheLowByte) {
  EXPECT_EQ(BCM6838X_StreamPortIndexUniToRdpa(1), 2U);
  EXPECT_EQ(BCM6838X_StreamPortIndexUniToRdpa(0), 1U);
  EXPECT_EQ(BCM6838X_StreamPortIndexUniToRdpa(0x1FF), 0x100U);
  EXPECT_EQ(BCM6838X_StreamPortIndexUniToRdpa(0xFFFFFF01), 2U);
}

TEST_F(ClassTest, RecordsAreSentInTheProcessorsByteOrder) {
  BCM6838X_RdpaIcInit_Perf();
  const std::vector<CommandEvent> sent = virtual_onu::EventsOf<CommandEvent>(unit.trace().events());
  std::uint32_t fieldMask = 0;
  ASSERT_EQ(sent.back().before.size(), 32U);
  std::copy_n(sent.back().before.begin() + 4, sizeof(fieldMask),
              reinterpret_cast<std::uint8_t*>(&fieldMask));
  EXPECT_EQ(fieldMask, 0x8000U);
}

}  // namespace
}  // namespace hal_test
