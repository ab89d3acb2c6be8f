/// @file
/// Which VLAN actions re-mark, and the priorities before and behind them.
#include "datapath/remark.h"

#include <gtest/gtest.h>
#include <string>

#include "datapath/vlan_action.h"
#include "frame/frame.h"
#include "support/sample_frames.h"

namespace virtual_onu {
namespace {

std::optional<Remark> Remarked(std::uint32_t cmd, const std::string& frame, std::uint8_t pbit) {
  VlanActionRule action = {};
  action.cmd = cmd;
  action.tag[0].pbit = pbit;
  const Bytes before = Hex(frame);
  Bytes after = before;
  ApplyVlanAction(action, after, nullptr);
  return RemarkOf(action, before, after);
}

TEST(RemarkOf, ReplacedPriority_TellsBothPriorities) {
  EXPECT_EQ(Remarked(BRMGR_TAG_REPLACE_PRIORITY, kTagged, 7), (Remark{5, 7, {}}));
  EXPECT_EQ(Remarked(BRMGR_TAG_REPLACE_PRIORITY, kTagged, 5), (Remark{5, 5, {}}));
  EXPECT_EQ(Remarked(BRMGR_TAG_REPLACE_PRIORITY, kDoubleTagged, 0), (Remark{3, 0, {}}))
      << "the outer tag";
}

TEST(RemarkOf, IpPacket_TellsTheDscpThatStays) {
  Bytes frame = Hex(kUdp4);  // TOS 0xb8
  PushTag(frame, {.pcp = 1, .vid = 100});
  EXPECT_EQ(Remarked(BRMGR_TAG_REPLACE_PRIORITY, ToHex(frame), 6), (Remark{1, 6, 46}));
}

TEST(RemarkOf, OtherOperations_AreNoRemark) {
  EXPECT_EQ(Remarked(0, kTagged, 7), std::nullopt);
  EXPECT_EQ(Remarked(BRMGR_TAG_PUSH, kTagged, 7), std::nullopt);
  EXPECT_EQ(Remarked(BRMGR_TAG_REPLACE_VID, kTagged, 7), std::nullopt);
  EXPECT_EQ(Remarked(BRMGR_TAG_POP, kDoubleTagged, 7), std::nullopt);
}

TEST(RemarkOf, FrameWithoutATagBeforeOrBehind_IsNotRemarked) {
  EXPECT_EQ(Remarked(BRMGR_TAG_REPLACE_PRIORITY, kUntagged, 7), std::nullopt);
  EXPECT_EQ(Remarked(BRMGR_TAG_PUSH | BRMGR_TAG_REPLACE_PRIORITY, kUntagged, 7), std::nullopt);
  EXPECT_EQ(Remarked(BRMGR_TAG_POP | BRMGR_TAG_REPLACE_PRIORITY, kTagged, 7), std::nullopt);
}

}  // namespace
}  // namespace virtual_onu
