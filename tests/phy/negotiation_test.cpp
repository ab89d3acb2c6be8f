/// @file
/// Tests of what two advertisements agree on.
#include "phy/negotiation.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>

namespace virtual_onu {
namespace {

constexpr Advertisement kNothing = {kSelector8023, 0};

Advertisement Base(unsigned bits) {
  return {static_cast<std::uint16_t>(kSelector8023 | bits), 0};
}

TEST(BestCommonMode, IsTheFirstOfThePriorityListThatBothHave) {
  struct Step {
    Advertisement partner;
    LinkMode expected;
  };
  const Advertisement all = {0x03E1, 0x0300};
  // The partner loses its best ability at each step.
  const std::array<Step, 7> steps = {{
      {{0x03E1, 0x0300}, {1000, true}},
      {{0x03E1, 0x0100}, {1000, false}},
      {{0x03E1, 0}, {100, true}},
      {{0x02E1, 0}, {100, false}},  // 100BASE-T4
      {{0x00E1, 0}, {100, false}},
      {{0x0061, 0}, {10, true}},
      {{0x0021, 0}, {10, false}},
  }};
  for (const Step& step : steps) {
    EXPECT_EQ(BestCommonMode(all, step.partner), step.expected) << std::hex << step.partner.base;
    EXPECT_EQ(BestCommonMode(step.partner, all), step.expected) << std::hex << step.partner.base;
  }
}

TEST(BestCommonMode, AbilityOfOneEndAlone_DoesNotCount) {
  EXPECT_EQ(BestCommonMode(Base(kAbility100Full | kAbility10Half), Base(kAbility10Half)),
            (LinkMode{10, false}));
  EXPECT_EQ(BestCommonMode(Base(kAbility100Full), Base(kAbility10Half)), std::nullopt);
  EXPECT_EQ(BestCommonMode(kNothing, kNothing), std::nullopt);
}

TEST(BestCommonMode, SelectorPauseAndReservedBits_AreNoModes) {
  const Advertisement others = {static_cast<std::uint16_t>(~0x03E0), 0xFCFF};
  EXPECT_EQ(BestCommonMode(others, others), std::nullopt);
}

/// One row of the pause table: what both ends advertise, and what this end uses.
struct PauseRow {
  unsigned local;
  unsigned partner;
  PauseUse expected;
};

constexpr unsigned kP = kAbilityPause;
constexpr unsigned kA = kAbilityAsymmetricPause;

constexpr std::array<PauseRow, 16> kPauseRows = {{
    {0, 0, {false, false}},
    {0, kA, {false, false}},
    {0, kP, {false, false}},
    {0, kP | kA, {false, false}},
    {kA, 0, {false, false}},
    {kA, kA, {false, false}},
    {kA, kP, {false, false}},
    {kA, kP | kA, {true, false}},
    {kP, 0, {false, false}},
    {kP, kA, {false, false}},
    {kP, kP, {true, true}},
    {kP, kP | kA, {true, true}},
    {kP | kA, 0, {false, false}},
    {kP | kA, kA, {false, true}},
    {kP | kA, kP, {true, true}},
    {kP | kA, kP | kA, {true, true}},
}};

TEST(CommonPause, FollowsTheTable) {
  for (const PauseRow& row : kPauseRows) {
    EXPECT_EQ(CommonPause(Base(row.local), Base(row.partner)), row.expected)
        << std::hex << row.local << " " << row.partner;
  }
}

TEST(CommonPause, TheOtherEndUsesTheOppositeDirections) {
  for (const PauseRow& row : kPauseRows) {
    const PauseUse opposite = CommonPause(Base(row.partner), Base(row.local));
    EXPECT_EQ(opposite, (PauseUse{row.expected.receive, row.expected.transmit}))
        << std::hex << row.local << " " << row.partner;
  }
}

}  // namespace
}  // namespace virtual_onu
