/// @file
/// Tests of the scopes of groups.
#include "frame/group_address.h"

#include <gtest/gtest.h>

#include "support/sample_frames.h"

namespace virtual_onu {
namespace {

TEST(Membership, LinkLocalGroups_AreThoseOfTheLink) {
  EXPECT_TRUE(IsLinkLocalGroup(Hex("e0000016")));
  EXPECT_FALSE(IsLinkLocalGroup(Hex("e0000116")));
  EXPECT_FALSE(IsLinkLocalGroup(Hex("ef010101")));
  EXPECT_TRUE(IsLinkLocalGroup(Hex("ff020000000000000000000000010003")));
  EXPECT_TRUE(IsLinkLocalGroup(Hex("ff110000000000000000000000010003")));
  EXPECT_FALSE(IsLinkLocalGroup(Hex("ff150000000000000000000000010003")));
}

}  // namespace
}  // namespace virtual_onu
