/// @file
/// Tests of the stacking list as the driver sees it: validation, ranges, rebuilds, the word that is
/// advanced. That ranges leave what their rounds would leave is shown in
/// bcm6838x_vlan_stacking_state_test.cpp.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <bcm6838x_vlan.h>

#include "hal/vlan/chip_content.h"
#include "hal/vlan/vlan_port_test.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class StackingListTest : public VlanPortTest {
 protected:
  /// The configuration with the entries 100..103 of port 1.
  static Config withFour() {
    Config expected;
    expected.stackingEnable(1, 1);
    for (std::uint32_t i = 0; i < 4; ++i) {
      expected.stacking(1, i, 2, 100 + i, 200);
    }
    return expected;
  }
};

// Required: stacking-request-start-advanced
TEST_F(StackingListTest, Add_StoresAnEntryForEachVidAndSendsTheConfiguration) {
  PortVlanStackRange range = StackRange(1, 100, 103);
  EXPECT_EQ(BCM6838X_AddVlanStacking(&range), 0U);
  EXPECT_THAT(left(), ElementsAre(withFour().sent()));
  EXPECT_EQ(range.cvidStart, 104U);
  EXPECT_EQ(range.cvidEnd, 103);
}

TEST_F(StackingListTest, Add_TakesTheHighestVids) {
  PortVlanStackRange range = StackRange(1, 65534, 65535, 4095, 0xFFFFFFFF);
  EXPECT_EQ(BCM6838X_AddVlanStacking(&range), 0U);
  EXPECT_EQ(configNow(), Config()
                             .stackingEnable(1, 1)
                             .stacking(1, 0, 0xFFFFFFFF, 65534, 4095)
                             .stacking(1, 1, 0xFFFFFFFF, 65535, 4095)
                             .sent());
  EXPECT_EQ(range.cvidStart, 65536U);
}

TEST_F(StackingListTest, Add_BadRequest_ReturnsTwoAndChangesNothing) {
  int rounds = 0;
  for (const PortVlanStackRange& bad :
       {StackRange(0, 100, 103), StackRange(5, 100, 103), StackRange(255, 100, 103),
        StackRange(1, 100, 103, 0), StackRange(1, 100, 103, 4096),
        StackRange(1, 100, 103, 65535)}) {
    PortVlanStackRange range = bad;
    EXPECT_EQ(BCM6838X_AddVlanStacking(&range), 2U);
    EXPECT_EQ(range.cvidStart, 100U);
    ++rounds;
  }
  EXPECT_EQ(rounds, 6);
  EXPECT_THAT(left(), IsEmpty()) << "no line for any refusal";
  EXPECT_EQ(configNow(), Config().sent());
}

TEST_F(StackingListTest, Add_LowestAndHighestServiceVid_AreTaken) {
  EXPECT_EQ(AddStacking(StackRange(4, 1, 1, 1)), 0U);
  EXPECT_EQ(AddStacking(StackRange(4, 1, 1, 4095)), 0U);
  EXPECT_EQ(
      configNow(),
      Config().stackingEnable(4, 1).stacking(4, 0, 2, 1, 1).stacking(4, 1, 2, 1, 4095).sent());
}

TEST_F(StackingListTest, Add_PortBeyondTheTables_IsRefused) {
  unit.platform().config().ethPorts = 200;
  PortVlanStackRange range = StackRange(33, 100, 103);
  EXPECT_EQ(BCM6838X_AddVlanStacking(&range), 1U);
  EXPECT_THAT(left(), ElementsAre("log 4 hal/switch/bcm6838x/src/bcm6838x_vlan_config.cpp "
                                  "[BCM6838X_AddVlanStacking <line>] port 33 is out of range\r\n"));
  EXPECT_EQ(range.cvidStart, 100U);
}

TEST_F(StackingListTest, Delete_PortOutOfRange_IsRefused) {
  int rounds = 0;
  for (const std::uint8_t port : Ports({0, 33, 255})) {
    forget();
    PortVlanStackRange range = StackRange(port, 100, 103);
    EXPECT_EQ(BCM6838X_DelVlanStacking(&range), 1U);
    EXPECT_THAT(left(), ElementsAre(HasSubstr("[BCM6838X_DelVlanStacking <line>] port ")));
    EXPECT_EQ(range.cvidStart, 100U);
    ++rounds;
  }
  EXPECT_EQ(rounds, 3);
}

TEST_F(StackingListTest, Add_Null_IsRefusedWithoutALine) {
  EXPECT_EQ(BCM6838X_AddVlanStacking(nullptr), 2U);
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(StackingListTest, Delete_Null_IsRefusedWithALine) {
  EXPECT_EQ(BCM6838X_DelVlanStacking(nullptr), 2U);
  EXPECT_THAT(left(), ElementsAre("log 4 hal/switch/bcm6838x/src/bcm6838x_vlan_list_stacking.cpp "
                                  "BCM6838X_DelVlanStacking(<line>), null pointer\r\n"));
}

// Required: stacking-delete-takes-half
TEST_F(StackingListTest, Delete_OfARange_RemovesItsFirstHalf) {
  AddStacking(StackRange(1, 100, 103));
  PortVlanStackRange range = StackRange(1, 100, 103);
  EXPECT_EQ(BCM6838X_DelVlanStacking(&range), 0U);
  EXPECT_EQ(range.cvidStart, 102U);
  EXPECT_EQ(
      configNow(),
      Config().stackingEnable(1, 1).stacking(1, 2, 2, 102, 200).stacking(1, 3, 2, 103, 200).sent());
}

// Required: stacking-delete-of-one-wraps
TEST_F(StackingListTest, Delete_OfASingleVid_RemovesEveryVidFromItOn) {
  AddStacking(StackRange(1, 100, 103));
  PortVlanStackRange range = StackRange(1, 101, 101);
  EXPECT_EQ(BCM6838X_DelVlanStacking(&range), 0U);
  EXPECT_EQ(range.cvidStart, 101U + 0x80000001U);
  EXPECT_EQ(configNow(), Config().stackingEnable(1, 1).stacking(1, 0, 2, 100, 200).sent());
}

// Required: stacking-off-behind-rebuild
TEST_F(StackingListTest, Delete_OfTheLastEntry_DisablesStackingBehindTheRebuild) {
  AddStacking(StackRange(1, 100, 100));
  forget();
  EXPECT_EQ(DelStacking(StackRange(1, 100, 101)), 0U);
  EXPECT_EQ(commands().back(), Config().stackingEnable(1, 1).sent())
      << "the driver is told before the word is cleared";
  EXPECT_EQ(configNow(), Config().sent());
}

TEST_F(StackingListTest, Delete_OfEntriesThatAreNotThere_ReturnsZero) {
  AddStacking(StackRange(1, 100, 103));
  forget();
  int rounds = 0;
  for (const PortVlanStackRange& other :
       {StackRange(2, 100, 107), StackRange(1, 100, 107, 201), StackRange(1, 100, 107, 200, 1),
        StackRange(1, 100, 107, 200, 0x102), StackRange(1, 100, 107, 200, 0x10002),
        StackRange(1, 104, 107), StackRange(1, 96, 103, 0)}) {
    EXPECT_EQ(DelStacking(other), 0U);
    ++rounds;
  }
  EXPECT_EQ(rounds, 7);
  EXPECT_EQ(configNow(), withFour().sent());
}

TEST_F(StackingListTest, Add_AgainWithOtherParameterOrServiceVid_IsAnotherEntry) {
  AddStacking(StackRange(1, 100, 100));
  AddStacking(StackRange(1, 100, 100));
  AddStacking(StackRange(1, 100, 100, 201));
  AddStacking(StackRange(1, 100, 100, 200, 1));
  AddStacking(StackRange(1, 100, 100, 200, 0x102));
  AddStacking(StackRange(1, 100, 100, 200, 0x10002));
  AddStacking(StackRange(2, 100, 100));
  EXPECT_EQ(configNow(), Config()
                             .stackingEnable(1, 1)
                             .stacking(1, 0, 2, 100, 200)
                             .stacking(1, 1, 2, 100, 201)
                             .stacking(1, 2, 1, 100, 200)
                             .stacking(1, 3, 0x102, 100, 200)
                             .stacking(1, 4, 0x10002, 100, 200)
                             .stackingEnable(2, 1)
                             .stacking(2, 0, 2, 100, 200)
                             .sent());
}

TEST_F(StackingListTest, Add_SkipsHeldVidsAndFillsHoles) {
  AddStacking(StackRange(1, 100, 103));
  DelStacking(StackRange(1, 100, 103));
  AddStacking(StackRange(1, 101, 104));
  EXPECT_EQ(configNow(), Config()
                             .stackingEnable(1, 1)
                             .stacking(1, 0, 2, 101, 200)
                             .stacking(1, 1, 2, 104, 200)
                             .stacking(1, 2, 2, 102, 200)
                             .stacking(1, 3, 2, 103, 200)
                             .sent());
}

TEST_F(StackingListTest, Add_MoreThanTheListHolds_StoresTheFirst512) {
  PortVlanStackRange range = StackRange(1, 1, 4094);
  EXPECT_EQ(BCM6838X_AddVlanStacking(&range), 0U);
  Config expected;
  expected.stackingEnable(1, 1);
  for (std::uint32_t i = 0; i < 512; ++i) {
    expected.stacking(1, i, 2, 1 + i, 200);
  }
  EXPECT_EQ(configNow(), expected.sent());
  EXPECT_EQ(range.cvidStart, 4095U);
}

// Required: stacking-add-without-clear
TEST_F(StackingListTest, InBdcomMode_AddCreatesTheRulesOfEarlierEntriesASecondTime) {
  BCM6838X_SetPortPvid(1, 50);
  BCM6838X_SetBdcomStacking(1);
  AddStacking(StackRange(1, 100, 100));
  forget();
  AddStacking(StackRange(1, 101, 101));
  EXPECT_THAT(commandNames(), ElementsAre("FLOW_ADD", "FLOW_ADD", "FLOW_ADD", "VLAN_REBUILD"))
      << "the flow of untagged frames and that of 100 again, and that of 101";
}

TEST_F(StackingListTest, InBdcomMode_DeleteClearsThenBuildsWhatIsLeft) {
  BCM6838X_SetPortPvid(1, 50);
  AddStacking(StackRange(1, 100, 103));
  BCM6838X_SetBdcomStacking(1);
  forget();
  DelStacking(StackRange(1, 100, 103));
  const std::vector<std::string> names = commandNames();
  EXPECT_EQ(names.front(), "FLOW_DEL");
  EXPECT_EQ(names.back(), "VLAN_REBUILD");
  EXPECT_EQ(CountOf(commands(), "FLOW_DEL"), 4 + 1 + 1 + 1)
      << "four customer VLANs, their downstream flow, the untagged flow and its downstream flow";
  EXPECT_EQ(CountOf(commands(), "FLOW_ADD"), 2 + 1 + 1 + 1);
}

TEST_F(StackingListTest, InTagMode_AddBuildsThatModeAgain) {
  BCM6838X_SetPortPvid(1, 50);
  BCM6838X_SetVlanTag(1);
  forget();
  AddStacking(StackRange(1, 100, 100));
  EXPECT_THAT(commandNames(), ElementsAre("FLOW_ADD", "VLAN_REBUILD"));
  forget();
  DelStacking(StackRange(1, 100, 101));
  EXPECT_EQ(commandNames().front(), "FLOW_DEL");
  EXPECT_EQ(commandNames().back(), "VLAN_REBUILD");
}

TEST_F(StackingListTest, EveryCommandRefused_ChangesTheListAllTheSame) {
  unit.device().faults().refuseFrom(1);
  EXPECT_EQ(AddStacking(StackRange(1, 100, 107)), 0U);
  EXPECT_EQ(DelStacking(StackRange(1, 104, 111)), 0U);
  unit.device().faults().clear();
  EXPECT_EQ(configNow(), withFour().sent());
}

}  // namespace
}  // namespace hal_test
