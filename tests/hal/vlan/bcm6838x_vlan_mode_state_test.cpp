/// @file
/// Tests of the VLAN modes as a program sees them that links with the archive: what the port's
/// slots keep, slots that only such a program can make, the policers and the default downstream
/// action.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <bcm6838x_vlan.h>
#include <brmgr_record.h>

#include "hal/vlan/vlan_mode_fixture.h"
#include "support/library_tables.h"

namespace hal_test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

constexpr std::uint32_t kNone = 0xFFFFFFFF;

/// Slot i of a port.
IngressFlowRule& Slot(std::uint32_t port, std::size_t i) {
  return g_usIngressClass[port - 1][i];
}

/// A port's slots that are not all zero.
std::size_t SlotsInUse(std::uint32_t port) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < kChipObjects; ++i) {
    count += BytesOf(Slot(port, i)) == BytesOf(IngressFlowRule{}) ? 0U : 1U;
  }
  return count;
}

/// What every upstream flow of UNI port 2 has in common.
IngressFlowRule UsFlow(std::uint32_t icIndex, std::uint8_t vlanNum, std::uint32_t flowIndex) {
  IngressFlowRule flow = {};
  flow.ingressPort = 3;
  flow.vlanNum = vlanNum;
  flow.forward = 1;
  flow.result104 = 1;
  flow.dir = 1;
  flow.icIndex = icIndex;
  flow.flowIndex = flowIndex;
  flow.vlanActionIndex = kNone;
  flow.policer = kNone;
  return flow;
}

class VlanModeStateTest : public VlanModeTest {
 protected:
  void SetUp() override {
    firstDsVlanAction_ = g_dsVlanAction;
    VlanModeTest::SetUp();
  }

  [[nodiscard]] std::uint32_t firstDsVlanAction() const { return firstDsVlanAction_; }

 private:
  std::uint32_t firstDsVlanAction_ = 0;
};

TEST_F(VlanModeStateTest, DefaultDownstreamAction_IsNoneBeforeTheStart) {
  EXPECT_EQ(firstDsVlanAction(), kNone);
}

TEST_F(VlanModeStateTest, Stacking_AttachesTheDefaultDownstreamAction) {
  g_dsVlanAction = 7;
  BCM6838X_AddUsZTEStacking(2, 10, 3);
  BCM6838X_AddUsBDCOMStacking(3, 10, 3, StackingList(3, 1).data());
  const std::vector<std::string> lines = leftWith("shell bs /b/c ingress_class");
  EXPECT_THAT(lines, SizeIs(3));
  EXPECT_THAT(lines, Each(EndsWith("={{vlan_action={vlan_action/dir=ds,index=7},drop=no}}")));
}

TEST_F(VlanModeStateTest, Slots_KeepTheFlowWithItsIndexes) {
  BCM6838X_AddUsTag(1, 50, 1);
  BCM6838X_AddUsHybrid(2, 10, 3, TrunkList(2, 1).data());
  IngressFlowRule untagged = UsFlow(0, 0, 1);
  untagged.queue = 3;
  untagged.vlanActionIndex = 1;
  EXPECT_EQ(BytesOf(Slot(2, 0)), BytesOf(untagged));
  IngressFlowRule tagged = UsFlow(3, 1, 5);
  tagged.outerVid = 100;
  tagged.outerPbit = 5;
  tagged.queue = 5;
  EXPECT_EQ(BytesOf(Slot(2, 6)), BytesOf(tagged));
  EXPECT_EQ(SlotsInUse(1), 1U);
  EXPECT_EQ(SlotsInUse(2), 9U);
  EXPECT_EQ(SlotsInUse(3), 0U);
}

TEST_F(VlanModeStateTest, Slots_OfTheFirstAndTheLastPort) {
  BCM6838X_AddUsTransparent(1);
  BCM6838X_AddUsTransparent(32);
  EXPECT_EQ(SlotsInUse(1), 17U);
  EXPECT_EQ(SlotsInUse(32), 17U);
  EXPECT_EQ(Slot(32, 0).ingressPort, 33U);
  BCM6838X_DelUsTransparent(1);
  EXPECT_EQ(SlotsInUse(1), 0U);
  EXPECT_EQ(SlotsInUse(32), 17U);
}

TEST_F(VlanModeStateTest, Slots_TheFirstWithoutAnIngressPortIsTaken) {
  Slot(2, 0).ingressPort = 3;
  Slot(2, 1).flowIndex = 77;
  BCM6838X_AddUsTag(2, 100, 3);
  EXPECT_EQ(Slot(2, 0).flowIndex, 0U);
  EXPECT_EQ(Slot(2, 1).ingressPort, 3U);
  EXPECT_EQ(Slot(2, 1).flowIndex, 0U);
  EXPECT_EQ(Slot(2, 1).vlanActionIndex, 0U);
}

TEST_F(VlanModeStateTest, Slots_RefusedFlowsAreNotKept) {
  unit.device().faults().refuseFrom(1, 100);
  int modes = 0;
  for (const VlanMode& mode : VlanModes()) {
    mode.add(2, 2);
    EXPECT_EQ(SlotsInUse(2), 0U) << mode.name;
    ++modes;
  }
  EXPECT_EQ(modes, 7);
}

TEST_F(VlanModeStateTest, Slots_EveryDeleteClearsAllOfThePortEvenWhenRefused) {
  int modes = 0;
  for (const VlanMode& mode : VlanModes()) {
    mode.add(2, 2);
    mode.add(3, 2);
    const std::size_t others = SlotsInUse(3);
    ASSERT_GE(SlotsInUse(2), 1U) << mode.name;
    EXPECT_EQ(SlotsInUse(2), others) << mode.name;
    Slot(2, kChipObjects - 1).refCount = 1;
    unit.device().faults().refuseFrom(1);
    mode.del(2, 2);
    unit.device().faults().clear();
    EXPECT_EQ(SlotsInUse(2), 0U) << mode.name;
    EXPECT_EQ(SlotsInUse(3), others) << mode.name;
    mode.del(3, 2);
    ++modes;
  }
  EXPECT_EQ(modes, 7);
}

TEST_F(VlanModeStateTest, TransparentDelete_TakesUsedSlotsWithAFlow) {
  Slot(2, 0) = UsFlow(4, 1, kNone);
  Slot(2, 1) = UsFlow(4, 1, 5);
  Slot(2, 1).ingressPort = 0;
  EXPECT_EQ(BCM6838X_DelUsTransparent(2), 0);
  EXPECT_THAT(commands(), IsEmpty());
  Slot(2, 255) = UsFlow(4, 2, 6);
  EXPECT_EQ(BCM6838X_DelUsTransparent(2), 8) << "the device has no such flow";
  EXPECT_THAT(leftWith("FLOW_DEL"), ElementsAre("FLOW_DEL dir=us icIndex=4 flowIndex=6"));
}

TEST_F(VlanModeStateTest, TrunkDelete_SkipsSlotsWithoutAFlow) {
  Slot(2, 0) = UsFlow(3, 1, kNone);
  Slot(2, 0).outerVid = 100;
  Slot(2, 255) = UsFlow(3, 1, 6);
  Slot(2, 255).outerVid = 100;
  EXPECT_EQ(BCM6838X_DelUsZTETrunk(2, TrunkList(2, 1).data()), 8);
  EXPECT_THAT(leftWith("FLOW_DEL"), ElementsAre("FLOW_DEL dir=us icIndex=3 flowIndex=6"));
  EXPECT_THAT(leftWith("log BCM6838X_DelLanVlan"), SizeIs(1));
}

TEST_F(VlanModeStateTest, PvidDelete_OfASlotWithoutFlowAndAction_ReleasesTheRest) {
  int modes = 0;
  for (const std::string name : {"Tag", "Hybrid", "Translation", "BdcomStacking"}) {
    Slot(2, 200) = UsFlow(0, 0, kNone);
    forget();
    EXPECT_EQ(ModeOf(name).del(2, 0), 0) << name;
    EXPECT_THAT(commands(), IsEmpty()) << name;
    EXPECT_THAT(leftWith("log BCM6838X_DelVlanAction"), IsEmpty()) << name;
    EXPECT_THAT(leftWith("log BCM6838X_DelDsIngressClass,<line>, "
                         "del ds ingress class vid 10  vlanNum 1"),
                SizeIs(1))
        << name;
    EXPECT_THAT(leftWith("log BCM6838X_DelWanVlan,<line>, port=2,del wanVid=10 lanVid=4096"),
                SizeIs(1))
        << name;
    ++modes;
  }
  EXPECT_EQ(modes, 4);
}

TEST_F(VlanModeStateTest, PvidDelete_SeeksAUsedSlotWithoutTags) {
  Slot(2, 0) = UsFlow(0, 0, 5);
  Slot(2, 0).ingressPort = 0;
  Slot(2, 1) = UsFlow(4, 1, 6);
  Slot(2, 2) = UsFlow(0, 0, 7);
  for (const std::string name : {"Hybrid", "Translation", "BdcomStacking"}) {
    const auto slots = std::to_array({Slot(2, 0), Slot(2, 1), Slot(2, 2)});
    forget();
    ModeOf(name).del(2, 0);
    EXPECT_THAT(leftWith("FLOW_DEL"), ElementsAre("FLOW_DEL dir=us icIndex=0 flowIndex=7")) << name;
    EXPECT_EQ(SlotsInUse(2), 0U);
    std::ranges::copy(slots, &Slot(2, 0));
  }
  forget();
  BCM6838X_DelUsTag(2, 10, 3);
  EXPECT_THAT(leftWith("FLOW_DEL"), ElementsAre("FLOW_DEL dir=us icIndex=4 flowIndex=6"))
      << "tag mode asks for the ingress port alone";
}

TEST_F(VlanModeStateTest, ZteStackingDelete_OfSlotsWithoutFlowAndAction_ReleasesTheRest) {
  Slot(2, 0) = UsFlow(0, 0, kNone);
  Slot(2, 7) = UsFlow(4, 1, kNone);
  Slot(2, 8) = UsFlow(4, 2, 5);
  Slot(2, 9) = UsFlow(4, 1, 6);
  Slot(2, 9).ingressPort = 0;
  EXPECT_EQ(BCM6838X_DelUsZTEStacking(2, 10, 3), 0);
  EXPECT_THAT(commands(), IsEmpty());
  EXPECT_THAT(leftWith("log BCM6838X_DelVlanAction"), IsEmpty());
  EXPECT_THAT(leftWith("log BCM6838X_GetDsIngressClass"),
              ElementsAre("log BCM6838X_GetDsIngressClass,<line>, "
                          "get ds ingress class vid 10  vlanNum 1",
                          "log BCM6838X_GetDsIngressClass,<line>, "
                          "get ds ingress class vid 10  vlanNum 2"));
}

TEST_F(VlanModeStateTest, TranslationDelete_OfSlotsWithoutFlowAndAction_ReleasesTheRest) {
  Slot(2, 7) = UsFlow(3, 1, kNone);
  Slot(2, 7).outerVid = 100;
  EXPECT_EQ(BCM6838X_DelUsTranslation(2, 10, 3, TranslationList(2, 1).data()), 0);
  EXPECT_THAT(commands(), IsEmpty());
  EXPECT_THAT(leftWith("log BCM6838X_DelVlanAction"), IsEmpty());
  EXPECT_THAT(leftWith("log BCM6838X_GetDsIngressClass"), SizeIs(1));
  EXPECT_THAT(leftWith("log BCM6838X_DelDsIngressClass"), SizeIs(1));
  EXPECT_THAT(leftWith("log BCM6838X_DelLanVlan"), SizeIs(1));
}

TEST_F(VlanModeStateTest, BdcomDelete_OfASlotWithoutFlowAndAction_ReleasesTheRest) {
  Slot(2, 7) = UsFlow(3, 1, kNone);
  Slot(2, 7).outerVid = 100;
  EXPECT_EQ(BCM6838X_DelUsBDCOMStacking(2, 10, 3, StackingList(2, 1).data()), 0);
  EXPECT_THAT(commands(), IsEmpty());
  EXPECT_THAT(leftWith("log BCM6838X_DelVlanAction"), IsEmpty());
  EXPECT_THAT(leftWith("log BCM6838X_DelDsIngressClass"), SizeIs(1));
  EXPECT_THAT(leftWith("log BCM6838X_DelLanVlan"), SizeIs(1));
}

// Required: bdcom-any-slot-of-the-vid
TEST_F(VlanModeStateTest, BdcomDelete_CustomerVidZero_TakesAFreeSlotWhenThereIsNoOther) {
  VlanList<PortVlanStackEntry> list = {};
  list.at(0) = {2, {}, 2, 0x1000, 0, 300};
  EXPECT_EQ(BCM6838X_DelUsBDCOMStacking(2, 10, 3, list.data()), 8);
  EXPECT_THAT(leftWith("FLOW_DEL"), ElementsAre("FLOW_DEL dir=ds icIndex=0 flowIndex=0"));
}

// Required: policer-word-is-uni-port
TEST_F(VlanModeStateTest, Policer_StandsInEveryUpstreamFlowOfItsPort) {
  g_portPolicerCfg[1] = 0x80000000;
  int modes = 0;
  for (const VlanMode& mode : VlanModes()) {
    forget();
    mode.add(2, 2);
    EXPECT_THAT(leftWith("FLOW_ADD us"), SizeIs(testing::Ge(1U))) << mode.name;
    EXPECT_THAT(leftWith("FLOW_ADD us"), Each(EndsWith(" policer=2"))) << mode.name;
    EXPECT_THAT(leftWith("FLOW_ADD ds"), Each(Not(HasSubstr("policer")))) << mode.name;
    EXPECT_EQ(Slot(2, 0).policer, 2U) << mode.name;
    mode.del(2, 2);
    forget();
    mode.add(1, 2);
    mode.add(3, 2);
    EXPECT_THAT(leftWith("FLOW_ADD us"), Each(Not(HasSubstr("policer")))) << mode.name;
    mode.del(1, 2);
    mode.del(3, 2);
    ++modes;
  }
  EXPECT_EQ(modes, 7);
}

TEST_F(VlanModeStateTest, Policer_OfTheLastPort) {
  g_portPolicerCfg[31] = 1;
  BCM6838X_AddUsTransparent_Perf(32);
  EXPECT_THAT(leftWith("FLOW_ADD us"),
              ElementsAre("FLOW_ADD us outerVid=0 ingressPort=33 outerPbit=0 vlanNum=0 queue=0 "
                          "icIndex=0 policer=32"));
}

}  // namespace
}  // namespace hal_test
