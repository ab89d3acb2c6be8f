/// @file
/// VLAN actions: each tag operation and the combinations in use, byte for byte.
#include "datapath/vlan_action.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/sample_frames.h"

namespace virtual_onu {
namespace {

VlanActionRule Action(std::uint32_t cmd, VlanTagSpec tag = {}) {
  VlanActionRule action = {};
  action.cmd = cmd;
  action.tag[0] = tag;
  return action;
}

std::string Applied(const VlanActionRule& action, const std::string& frame) {
  Bytes bytes = Hex(frame);
  ApplyVlanAction(action, bytes, nullptr);
  return ToHex(bytes);
}

std::string Plain(const std::string& text) {
  return ToHex(Hex(text));
}

// VID 300 = 0x12c, PCP 6: control information 0xc12c.
constexpr VlanTagSpec kTag = {300, 6, 0, 0x8100};

struct ActionCase {
  std::uint32_t cmd;
  std::string untagged;
  std::string tagged;
  std::string doubleTagged;
};

// Required: action-operations-in-order
TEST(VlanAction, EachOperationAndCombination_GivesTheseFrames) {
  const std::string tag100 = "8100 a064 ";  // PCP 5
  const std::string tag200 = "88a8 70c8 ";  // PCP 3, DEI
  const std::string pushed = "8100 c12c ";
  const std::vector<ActionCase> cases = {
      {0x0, kUntagged, kTagged, kDoubleTagged},
      {0x1, kMacs + pushed + kPlain, kMacs + pushed + tag100 + kPlain,
       kMacs + pushed + tag200 + tag100 + kPlain},
      {0x4, kUntagged, kUntagged, kTagged},
      {0x8, kUntagged, kMacs + "8100 a12c " + kPlain, kMacs + "88a8 712c " + tag100 + kPlain},
      {0x100, kUntagged, kMacs + "8100 c064 " + kPlain, kMacs + "88a8 d0c8 " + tag100 + kPlain},
      {0x101, kMacs + pushed + kPlain, kMacs + pushed + tag100 + kPlain,
       kMacs + pushed + tag200 + tag100 + kPlain},
      {0x108, kUntagged, kMacs + "8100 c12c " + kPlain, kMacs + "88a8 d12c " + tag100 + kPlain},
      {0x104, kUntagged, kUntagged, kMacs + "8100 c064 " + kPlain},
      {0x5, kMacs + pushed + kPlain, kMacs + pushed + kPlain, kMacs + pushed + tag100 + kPlain},
      {0xC, kUntagged, kUntagged, kMacs + "8100 a12c " + kPlain},
      {0x10D, kMacs + pushed + kPlain, kMacs + pushed + kPlain, kMacs + pushed + tag100 + kPlain},
  };
  for (const ActionCase& test : cases) {
    SCOPED_TRACE(HexNumber(test.cmd));
    EXPECT_EQ(Applied(Action(test.cmd, kTag), kUntagged), Plain(test.untagged));
    EXPECT_EQ(Applied(Action(test.cmd, kTag), kTagged), Plain(test.tagged));
    EXPECT_EQ(Applied(Action(test.cmd, kTag), kDoubleTagged), Plain(test.doubleTagged));
  }
}

TEST(VlanAction, PushWithoutTpid_PushesACustomerTag) {
  EXPECT_EQ(Applied(Action(0x1, {300, 6, 0, 0}), kUntagged), Plain(kMacs + "8100 c12c " + kPlain));
}

TEST(VlanAction, PushWithAnotherTpid_KeepsIt) {
  EXPECT_EQ(Applied(Action(0x1, {300, 6, 0, 0x88A8}), kTagged),
            Plain(kMacs + "88a8 c12c 8100 a064 " + kPlain));
  EXPECT_EQ(Applied(Action(0x101, {300, 6, 0, 0x9100}), kUntagged),
            Plain(kMacs + "9100 c12c " + kPlain));
}

TEST(VlanAction, NumbersThatDoNotFitTheTag_LoseTheirHighBits) {
  EXPECT_EQ(Applied(Action(0x1, {0x112C, 0x0E, 0, 0x8100}), kUntagged),
            Plain(kMacs + "8100 c12c " + kPlain));
  EXPECT_EQ(Applied(Action(0x108, {0x112C, 0x0E, 0, 0}), kTagged),
            Plain(kMacs + "8100 c12c " + kPlain));
}

TEST(VlanAction, SecondTagOfTheRecord_IsNotUsed) {
  VlanActionRule action = Action(0x1, kTag);
  action.tag[1] = {400, 1, 0, 0x88A8};
  EXPECT_EQ(Applied(action, kUntagged), Plain(kMacs + "8100 c12c " + kPlain));
}

TEST(VlanAction, Steps_SayWhatWasDoneInItsOrder) {
  Bytes frame = Hex(kUntagged);
  std::vector<std::string> steps;
  ApplyVlanAction(Action(0x10F, kTag), frame, &steps);
  EXPECT_EQ(steps, (std::vector<std::string>{
                       "pop the outer tag: no tag, nothing changed",
                       "push a tag with tpid 0x8100 vid 300 pcp 6",
                       "set the outer vid to 300",
                       "set the outer pcp to 6",
                       "unknown operation 0x0002: nothing changed",
                   }));
}

}  // namespace
}  // namespace virtual_onu
