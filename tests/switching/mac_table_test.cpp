/// @file
/// The MAC table from the library's operations to the ports: the walk over learned entries, limit,
/// aging, blocked and bound addresses.
#include "mac_fixture.h"

namespace hal_test {
namespace {

using virtual_onu::Outcome;
using Walk = std::vector<std::string>;

TEST_F(MacTableTest, Walk_ShowsLearnedAndConfiguredEntriesInOrder) {
  EXPECT_EQ(walk(), Walk());
  const MacStaticEntry entry = StaticEntry(2, 7, 3);
  EXPECT_EQ(BCM6838X_AddMacStatic(&entry), 0U);
  offer(Uni(2), Between(9, 0x50, 100));
  offer(kWan, Between(4, 0x50, 100));
  offer(Uni(1), Between(1, 0x50, 200));
  EXPECT_EQ(walk(), (Walk{"1/200@1", "2/7@3s", "4/100@0", "9/100@2"}));
}

TEST_F(MacTableTest, LearnedEntry_SteersIsDeletedAndIsCleared) {
  offer(Uni(2), Between(9, 0x50, 100));
  EXPECT_EQ(leavesBy(kWan, Between(4, 9, 100)), "uni2");
  const MacDynamicEntry entry = DynamicEntry(9, 100, 2);
  EXPECT_EQ(BCM6838X_DelMacDynamic(&entry), 0U);
  EXPECT_EQ(leavesBy(kWan, Between(4, 9, 100)), "uni1 uni2 uni3");
  offer(Uni(2), Between(9, 0x50, 100));
  EXPECT_EQ(BCM6838X_SetMacClear(1), 0U);
  EXPECT_EQ(walk(), Walk());
  offer(Uni(2), Between(9, 0x50, 100));
  EXPECT_EQ(walk(), Walk{"9/100@2"}) << "learning goes on";
}

TEST_F(MacTableTest, Aging_FollowsTheTimeThatTheLibrarySets) {
  offer(Uni(2), Between(9, 0x50, 100));
  unit.clock().advance(299'999);
  EXPECT_EQ(walk(), Walk{"9/100@2"});
  unit.clock().advance(1);
  EXPECT_EQ(walk(), Walk());
  EXPECT_EQ(BCM6838X_SetMacAgingTime(20), 0U);
  offer(Uni(2), Between(9, 0x50, 100));
  unit.clock().advance(20'000);
  EXPECT_EQ(leavesBy(kWan, Between(4, 9, 100)), "uni1 uni2 uni3");
}

TEST_F(MacTableTest, Limit_HoldsBackFurtherStations) {
  EXPECT_EQ(BCM6838X_SetMacLimitMacNum(1), 0U);
  EXPECT_EQ(leavesBy(Uni(1), Between(1, 0x50, 100)), "wan");
  EXPECT_EQ(offer(Uni(1), Between(2, 0x50, 100)).outcome, Outcome::MacLimitReached);
  EXPECT_EQ(leavesBy(Uni(2), Between(2, 0x50, 100)), "wan");
  EXPECT_EQ(BCM6838X_SetMacLimitMacNum(0), 0U);
  EXPECT_EQ(leavesBy(Uni(1), Between(3, 0x50, 100)), "wan");
}

TEST_F(MacTableTest, BlockedAddress_PassesOnceUnblocked) {
  EXPECT_EQ(BCM6838X_AddMacFilter(1, 100, AddressOf(1)), 0U);
  EXPECT_EQ(offer(Uni(1), Between(1, 0x50, 100)).outcome, Outcome::MacFiltered);
  EXPECT_EQ(leavesBy(kWan, Between(4, 1, 100)), "uni2 uni3");
  EXPECT_EQ(BCM6838X_DelMacFilter(1, 100, AddressOf(1)), 0U);
  EXPECT_EQ(leavesBy(Uni(1), Between(1, 0x50, 100)), "wan");
}

TEST_F(MacTableTest, BoundAddress_PassesAtItsPortAndOnceUnbound) {
  EXPECT_EQ(BCM6838X_AddMacBind(2, 100, AddressOf(1)), 0U);
  EXPECT_EQ(offer(Uni(1), Between(1, 0x50, 100)).outcome, Outcome::MacBoundElsewhere);
  EXPECT_EQ(leavesBy(Uni(2), Between(1, 0x50, 100)), "wan");
  EXPECT_EQ(BCM6838X_DelMacBind(2, 100, AddressOf(1)), 0U);
  EXPECT_EQ(leavesBy(Uni(1), Between(1, 0x50, 100)), "wan");
}

}  // namespace
}  // namespace hal_test
