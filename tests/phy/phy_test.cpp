/// @file
/// Tests of a PHY's registers: initial values, what can be written, bits that clear themselves, and
/// latched bits.
#include "phy/phy.h"

#include <gtest/gtest.h>
#include <vector>

namespace virtual_onu {
namespace {

TEST(PhyRegisters, PowerOn_HaveTheirInitialValues) {
  Phy phy;
  EXPECT_EQ(phy.read(0), 0x1140);
  EXPECT_EQ(phy.read(1) & ~(kStatusLink | kStatusNegotiated), 0x7949);
  EXPECT_NE(phy.read(2), 0);
  EXPECT_NE(phy.read(3), 0);
  EXPECT_EQ(phy.read(4), 0x01E1);
  EXPECT_EQ(phy.read(7), 0x2001);
  EXPECT_EQ(phy.read(8), 0);
  EXPECT_EQ(phy.read(9), 0x0300);
  EXPECT_EQ(phy.read(15), 0x3000);
  for (std::uint32_t reg = 16; reg < kMiiRegisters; ++reg) {
    EXPECT_EQ(phy.read(reg), 0) << reg;
  }
}

TEST(PhyRegisters, ReadOnlyOnes_Stay) {
  for (const std::uint32_t reg : {1U, 2U, 3U, 5U, 6U, 8U, 10U, 15U}) {
    Phy phy;
    const std::uint16_t before = phy.peek(reg);
    phy.write(reg, static_cast<std::uint16_t>(~before));
    EXPECT_EQ(phy.peek(reg), before) << reg;
  }
}

TEST(PhyRegisters, WritableBits_AreStoredAndOthersStay) {
  struct Row {
    std::uint32_t reg;
    std::uint16_t written;
    std::uint16_t read;
  };
  const std::vector<Row> rows = {
      {4, 0xFFFF, 0xBFFF},  {4, 0, 0},
      {9, 0xFFFF, 0xFF00},  {9, 0x0055, 0},
      {11, 0xA5C3, 0xA5C3}, {14, 0xFFFF, 0xFFFF},
      {24, 0xF077, 0xF077}, {28, 0x9000, 0x9000},
      {31, 0xFFFF, 0xFFFF},
  };
  for (const Row& row : rows) {
    Phy phy;
    phy.write(row.reg, row.written);
    EXPECT_EQ(phy.read(row.reg), row.read) << row.reg;
  }
}

TEST(PhyRegisters, NumberAboveThirtyOne_ReadsAsNoAnswerAndIgnoresWrites) {
  Phy phy;
  phy.write(32, 0);
  phy.write(0xFFFFFFFF, 0);
  EXPECT_EQ(phy.read(32), 0xFFFF);
  EXPECT_EQ(phy.read(0xFFFFFFFF), 0xFFFF);
}

TEST(PhyControl, ReservedAndSelfClearingBits_ReadZero) {
  Phy phy;
  phy.write(kMiiControl, 0x7FFF);
  EXPECT_EQ(phy.read(kMiiControl), 0x7DC0);
}

TEST(PhyControl, Reset_RestoresEveryRegisterAndTheLink) {
  Phy phy;
  phy.write(kMiiControl, kControlPowerDown);
  phy.write(kMiiAdvertisement, kSelector8023);
  phy.write(24, 0xF077);
  ASSERT_FALSE(phy.link());
  phy.write(kMiiControl, kControlReset | kControlPowerDown);
  EXPECT_EQ(phy.read(kMiiControl), 0x1140);
  EXPECT_EQ(phy.read(kMiiAdvertisement), 0x01E1);
  EXPECT_EQ(phy.read(24), 0);
  EXPECT_EQ(phy.link(), (Link{{1000, true}, {}}));
}

TEST(PhyStatus, LinkThatWasDown_ReadsDownOnceThenUp) {
  Phy phy;
  EXPECT_EQ(phy.read(kMiiStatus) & kStatusLink, 0) << "it was down before it came up";
  EXPECT_EQ(phy.read(kMiiStatus) & kStatusLink, kStatusLink);
  EXPECT_EQ(phy.read(kMiiStatus) & kStatusLink, kStatusLink);

  phy.setPartner({.present = false});
  phy.setPartner({});
  EXPECT_EQ(phy.read(kMiiStatus) & kStatusLink, 0) << "a short loss must be seen";
  EXPECT_EQ(phy.read(kMiiStatus) & kStatusLink, kStatusLink);
}

TEST(PhyStatus, LinkThatIsDown_ReadsDownHoweverOften) {
  Phy phy;
  phy.setPartner({.present = false});
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(phy.read(kMiiStatus) & kStatusLink, 0);
  }
}

TEST(PhyStatus, Peek_LeavesTheLatchedBits) {
  Phy phy;
  EXPECT_EQ(phy.peek(kMiiStatus) & kStatusLink, 0);
  EXPECT_EQ(phy.peek(kMiiStatus) & kStatusLink, 0);
  EXPECT_EQ(phy.peek(kMiiExpansion) & kPageReceived, kPageReceived);
  EXPECT_EQ(phy.peek(kMiiExpansion) & kPageReceived, kPageReceived);
}

TEST(PhyExpansion, PageReceived_IsClearedByReading) {
  Phy phy;
  EXPECT_EQ(phy.read(kMiiExpansion), 0x000F);
  EXPECT_EQ(phy.read(kMiiExpansion), 0x000D);
  phy.write(kMiiControl, kControlNegotiate | kControlRestart);
  EXPECT_EQ(phy.read(kMiiExpansion), 0x000F);
}

TEST(PhyNotResponding, ReadsAsOnesAndKeepsItsRegisters) {
  Phy phy;
  phy.setResponding(false);
  EXPECT_EQ(phy.read(kMiiControl), 0xFFFF);
  EXPECT_EQ(phy.read(kMiiStatus), 0xFFFF);
  phy.write(kMiiControl, kControlPowerDown);
  phy.setResponding(true);
  EXPECT_EQ(phy.read(kMiiControl), 0x1140);
  EXPECT_EQ(phy.read(kMiiStatus) & kStatusLink, 0) << "no read reached the latch";
}

}  // namespace
}  // namespace virtual_onu
