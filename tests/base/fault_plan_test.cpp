/// @file
/// Tests of the fault rules on their own.
#include "base/fault_plan.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

namespace virtual_onu {
namespace {

/// Asks for each code in turn: 'x' where the command is refused, '.' where it is not.
std::string Ask(FaultPlan& plan, const std::vector<std::uint32_t>& codes) {
  std::string answers;
  for (const std::uint32_t code : codes) {
    answers += plan.refuses(code) ? 'x' : '.';
  }
  return answers;
}

std::string Ask(FaultPlan& plan, std::size_t count) {
  return Ask(plan, std::vector<std::uint32_t>(count, 100));
}

TEST(FaultPlan, WithoutRules_RefusesNothing) {
  FaultPlan plan;
  EXPECT_TRUE(plan.empty());
  EXPECT_EQ(Ask(plan, 5), ".....");
}

TEST(FaultPlan, RefuseNth_RefusesThatCommandAlone) {
  FaultPlan plan;
  plan.refuseNth(3);
  EXPECT_FALSE(plan.empty());
  EXPECT_EQ(Ask(plan, {98, 100, 102, 98, 100, 102}), "..x...");
}

TEST(FaultPlan, RefuseNth_First) {
  FaultPlan plan;
  plan.refuseNth(1);
  EXPECT_EQ(Ask(plan, 3), "x..");
}

TEST(FaultPlan, RefuseNth_OfACode_CountsThatCodeAlone) {
  FaultPlan plan;
  plan.refuseNth(2, 100);
  EXPECT_EQ(Ask(plan, {100, 98, 98, 100, 100, 98}), "...x..");
}

TEST(FaultPlan, RefuseNth_OfCodeZero_IsNotAnyCode) {
  FaultPlan plan;
  plan.refuseNth(1, 0);
  EXPECT_EQ(Ask(plan, {100, 0, 0}), ".x.");
}

TEST(FaultPlan, RequestWithoutACode_IsMetByRulesWithoutOne) {
  FaultPlan plan;
  plan.refuseFrom(1, 0);
  plan.refuseNth(2);
  EXPECT_FALSE(plan.refuses());
  EXPECT_TRUE(plan.refuses());
  EXPECT_FALSE(plan.refuses());
}

TEST(FaultPlan, RefuseFrom_RefusesAllThatFollow) {
  FaultPlan plan;
  plan.refuseFrom(3);
  EXPECT_EQ(Ask(plan, {98, 100, 102, 98, 0}), "..xxx");
}

TEST(FaultPlan, RefuseFrom_OfACode_LetsOthersThrough) {
  FaultPlan plan;
  plan.refuseFrom(2, 102);
  EXPECT_EQ(Ask(plan, {102, 98, 102, 98, 102, 100}), "..x.x.");
}

TEST(FaultPlan, Rules_CountFromTheirAdding) {
  FaultPlan plan;
  plan.refuseNth(4);
  EXPECT_EQ(Ask(plan, 2), "..");
  plan.refuseNth(1);
  EXPECT_EQ(Ask(plan, 3), "xx.");
}

TEST(FaultPlan, Rules_EachCountsCommandsThatAnotherRefuses) {
  FaultPlan plan;
  plan.refuseNth(2);
  plan.refuseNth(3);
  plan.refuseFrom(5, 100);
  EXPECT_EQ(Ask(plan, 7), ".xx.xxx");
}

TEST(FaultPlan, Rules_OfDifferentKinds_OneIsEnough) {
  FaultPlan plan;
  plan.refuseFraction(0.0, 1);
  plan.refuseNth(2, 98);
  EXPECT_EQ(Ask(plan, {98, 100, 98, 98}), "..x.");
}

TEST(FaultPlan, Clear_ForgetsRulesAndCounts) {
  FaultPlan plan;
  plan.refuseFrom(1);
  EXPECT_EQ(Ask(plan, 1), "x");
  plan.clear();
  EXPECT_TRUE(plan.empty());
  EXPECT_EQ(Ask(plan, 2), "..");
  plan.refuseNth(2);
  EXPECT_EQ(Ask(plan, 3), ".x.");
}

// The generator is the standard's MT19937; its first draws with seed 5489 are 3499211612,
// 581869302, 3890346734, 3586334585, 545404204, 4161255391, 3922919429, 949333985, 2715962298 and
// 1323567403, and half of the range is 2147483648.
TEST(FaultPlan, RefuseFraction_IsTheSameOnEveryMachine) {
  FaultPlan plan;
  plan.refuseFraction(0.5, 5489);
  EXPECT_EQ(Ask(plan, 10), ".x..x..x.x");
}

TEST(FaultPlan, RefuseFraction_DependsOnTheSeedAlone) {
  FaultPlan first;
  FaultPlan second;
  FaultPlan other;
  first.refuseFraction(0.3, 7);
  second.refuseFraction(0.3, 7);
  other.refuseFraction(0.3, 8);
  const std::string answers = Ask(first, 100);
  EXPECT_EQ(Ask(second, 100), answers);
  EXPECT_NE(Ask(other, 100), answers);
}

TEST(FaultPlan, RefuseFraction_RefusesAboutThatMany) {
  FaultPlan plan;
  plan.refuseFraction(0.25, 42);
  const std::string answers = Ask(plan, 10'000);
  const auto refused = std::ranges::count(answers, 'x');
  EXPECT_GT(refused, 2'350);
  EXPECT_LT(refused, 2'650);
}

TEST(FaultPlan, RefuseFraction_AtAndBeyondItsEnds) {
  FaultPlan none;
  none.refuseFraction(0.0, 1);
  none.refuseFraction(-1.0, 1);
  none.refuseFraction(std::numeric_limits<double>::quiet_NaN(), 1);
  EXPECT_EQ(Ask(none, 200), std::string(200, '.'));
  FaultPlan all;
  all.refuseFraction(1.0, 1);
  EXPECT_EQ(Ask(all, 200), std::string(200, 'x'));
}

TEST(FaultPlan, Rules_TellWhatWasAddedAndCounted) {
  FaultPlan plan;
  plan.refuseNth(3, 100);
  plan.refuseFraction(0.5, 7);
  Ask(plan, {100, 98});
  ASSERT_EQ(plan.rules().size(), 2U);
  const FaultPlan::Rule& nth = plan.rules()[0];
  EXPECT_EQ(nth.nth, 3U);
  EXPECT_EQ(nth.code, 100U);
  EXPECT_FALSE(nth.onwards);
  EXPECT_EQ(nth.seen, 1U) << "of its code";
  const FaultPlan::Rule& fraction = plan.rules()[1];
  ASSERT_TRUE(fraction.draw.has_value());
  EXPECT_EQ(fraction.draw->fraction, 0.5);
  EXPECT_EQ(fraction.draw->seed, 7U);
  EXPECT_EQ(fraction.seen, 2U);
}

}  // namespace
}  // namespace virtual_onu
