/// @file
/// Tests of the link: auto-negotiation, parallel detection, forced modes, and what takes the link
/// away.
#include <gtest/gtest.h>
#include <optional>
#include <vector>

#include "phy/phy.h"

namespace virtual_onu {
namespace {

constexpr std::uint16_t kForced100Full = kControlSpeedLow | kControlFullDuplex;
constexpr std::uint16_t kForced1000Full = kControlSpeedHigh | kControlFullDuplex;

LinkPartner Negotiating(std::uint16_t base, std::uint16_t gigabit) {
  return {.advertisement = {base, gigabit}};
}

LinkPartner Forced(std::uint32_t speed, bool fullDuplex) {
  return {.negotiates = false, .forced = {speed, fullDuplex}};
}

/// The mode of the link, or nothing while it is down.
std::optional<LinkMode> ModeOf(const Phy& phy) {
  const std::optional<Link> link = phy.link();
  return link ? std::optional(link->mode) : std::nullopt;
}

constexpr std::optional<LinkMode> kDown;

TEST(PhyNegotiation, DefaultPartner_GivesGigabitFullDuplex) {
  Phy phy;
  EXPECT_EQ(phy.link(), (Link{{1000, true}, {false, false}}));
  EXPECT_TRUE(phy.passesFrames());
  phy.read(kMiiStatus);
  EXPECT_EQ(phy.read(kMiiStatus), 0x796D);
  EXPECT_EQ(phy.read(kMiiPartnerAbility), 0xC1E1);
  EXPECT_EQ(phy.read(kMiiGigabitStatus), 0x3C00);
}

TEST(PhyNegotiation, PartnerWithoutGigabit_ShowsItsBasePageAlone) {
  Phy phy;
  phy.setPartner(Negotiating(0x0581, 0));
  EXPECT_EQ(ModeOf(phy), (LinkMode{100, true}));
  EXPECT_EQ(phy.read(kMiiPartnerAbility), 0x4581);
  EXPECT_EQ(phy.read(kMiiGigabitStatus), 0);
  EXPECT_EQ(phy.read(kMiiExpansion), 0x0007) << "the partner has no next pages";
}

TEST(PhyNegotiation, GigabitStatus_NamesThePartnersModes) {
  Phy phy;
  phy.setPartner(Negotiating(0x01E1, kAdvertise1000Half));
  EXPECT_EQ(ModeOf(phy), (LinkMode{1000, false}));
  EXPECT_EQ(phy.read(kMiiGigabitStatus), 0x3400);
}

TEST(PhyNegotiation, NoGigabitOnThisEnd_LearnsNothingOfThePartners) {
  Phy phy;
  phy.write(kMiiGigabitControl, 0);
  phy.write(kMiiControl, kControlNegotiate | kControlRestart);
  EXPECT_EQ(ModeOf(phy), (LinkMode{100, true}));
  EXPECT_EQ(phy.read(kMiiGigabitStatus), 0);
}

TEST(PhyNegotiation, NothingInCommon_GivesNoLinkButShowsThePartner) {
  Phy phy;
  phy.setPartner(Negotiating(kSelector8023, 0));
  EXPECT_EQ(ModeOf(phy), kDown);
  EXPECT_EQ(phy.read(kMiiPartnerAbility), 0x4001);
  EXPECT_EQ(phy.read(kMiiStatus) & (kStatusLink | kStatusNegotiated), 0);
}

TEST(PhyNegotiation, NewAdvertisement_WaitsForTheRestart) {
  Phy phy;
  phy.write(kMiiGigabitControl, 0);
  phy.write(kMiiAdvertisement, kSelector8023 | kAbility10Full);
  EXPECT_EQ(ModeOf(phy), (LinkMode{1000, true}));
  phy.write(kMiiControl, phy.read(kMiiControl));
  EXPECT_EQ(ModeOf(phy), (LinkMode{1000, true}))
      << "an unchanged control register restarts nothing";
  phy.write(kMiiControl, phy.read(kMiiControl) | kControlRestart);
  EXPECT_EQ(ModeOf(phy), (LinkMode{10, true}));
}

TEST(PhyNegotiation, Restart_DropsTheLinkForAMoment) {
  Phy phy;
  phy.read(kMiiStatus);
  ASSERT_NE(phy.read(kMiiStatus) & kStatusLink, 0);
  phy.write(kMiiControl, kControlNegotiate | kControlRestart);
  EXPECT_EQ(phy.read(kMiiStatus) & kStatusLink, 0);
  EXPECT_NE(phy.read(kMiiStatus) & kStatusLink, 0);
}

TEST(PhyNegotiation, RestartWithoutNegotiation_DoesNothing) {
  Phy phy;
  phy.setPartner(Forced(100, true));
  phy.write(kMiiControl, kForced100Full);
  phy.read(kMiiStatus);
  phy.write(kMiiControl, kForced100Full | kControlRestart);
  EXPECT_NE(phy.read(kMiiStatus) & kStatusLink, 0);
}

TEST(PhyNegotiation, Pause_IsResolvedInFullDuplexOnly) {
  Phy phy;
  phy.write(kMiiAdvertisement, 0x01E1 | kAbilityPause);
  phy.setPartner(Negotiating(0x01E1 | kAbilityPause, 0));
  EXPECT_EQ(phy.link(), (Link{{100, true}, {true, true}}));
  phy.setPartner(Negotiating(kSelector8023 | kAbility100Half | kAbilityPause, 0));
  EXPECT_EQ(phy.link(), (Link{{100, false}, {false, false}}));
  phy.setPartner(Negotiating(0x01E1, 0));
  EXPECT_EQ(phy.link(), (Link{{100, true}, {false, false}}));
}

TEST(PhyParallelDetection, FindsTheSpeedAndTakesHalfDuplex) {
  Phy phy;
  phy.setPartner(Forced(100, true));
  EXPECT_EQ(ModeOf(phy), (LinkMode{100, false}));
  EXPECT_EQ(phy.read(kMiiPartnerAbility), kAbility100Half);
  EXPECT_EQ(phy.read(kMiiExpansion), kNextPageAble) << "the partner does not negotiate";
  EXPECT_NE(phy.read(kMiiStatus) & kStatusNegotiated, 0);
  phy.setPartner(Forced(10, true));
  EXPECT_EQ(ModeOf(phy), (LinkMode{10, false}));
  EXPECT_EQ(phy.read(kMiiPartnerAbility), kAbility10Half);
}

TEST(PhyParallelDetection, ModeNotAdvertised_GivesNoLink) {
  Phy phy;
  phy.write(kMiiAdvertisement, kSelector8023 | kAbility100Full | kAbility10Half);
  phy.setPartner(Forced(100, false));
  EXPECT_EQ(ModeOf(phy), kDown);
  phy.setPartner(Forced(10, false));
  EXPECT_EQ(ModeOf(phy), (LinkMode{10, false}));
}

TEST(PhyParallelDetection, GigabitPartner_CannotBeFound) {
  Phy phy;
  phy.setPartner(Forced(1000, true));
  EXPECT_EQ(ModeOf(phy), kDown);
}

/// Control register of this end, the partner, and the link that comes of it.
struct ForcedRow {
  std::uint16_t control;
  LinkPartner partner;
  std::optional<LinkMode> expected;
};

TEST(PhyForced, LinksAtTheSameSpeedWithItsOwnDuplexMode) {
  const std::vector<ForcedRow> rows = {
      {kForced100Full, Forced(100, true), LinkMode{100, true}},
      {kForced100Full, Forced(100, false), LinkMode{100, true}},  // a duplex mismatch
      {kControlSpeedLow, Forced(100, false), LinkMode{100, false}},
      {kControlFullDuplex, Forced(10, true), LinkMode{10, true}},
      {0, Forced(10, false), LinkMode{10, false}},
      {kForced100Full, Forced(10, true), kDown},
      {0, Forced(100, true), kDown},
      {0, Forced(1000, true), kDown},
      {kForced1000Full, Forced(1000, true), kDown},  // needs auto-negotiation
      {kForced1000Full, {}, kDown},
      {kControlSpeedLow | kControlSpeedHigh, {}, kDown},  // a reserved speed
      // A partner that negotiates finds this end by parallel detection.
      {kForced100Full, {}, LinkMode{100, true}},
      {0, {}, LinkMode{10, false}},
      {kForced100Full, Negotiating(kSelector8023 | kAbility100Full, 0), kDown},
      {kForced100Full, Negotiating(kSelector8023 | kAbility100Half, 0), LinkMode{100, true}},
      {0, Negotiating(kSelector8023 | kAbility100Half, 0), kDown},
  };
  for (std::size_t i = 0; i < rows.size(); ++i) {
    Phy phy;
    phy.setPartner(rows[i].partner);
    phy.write(kMiiControl, rows[i].control);
    EXPECT_EQ(ModeOf(phy), rows[i].expected) << "row " << i;
    EXPECT_EQ(phy.read(kMiiStatus) & kStatusNegotiated, 0) << "row " << i;
    EXPECT_EQ(phy.read(kMiiPartnerAbility), 0) << "row " << i;
  }
}

TEST(PhyForced, ChangedSpeedOrDuplexMode_TakesEffectAtOnce) {
  Phy phy;
  phy.write(kMiiControl, kControlSpeedLow);
  EXPECT_EQ(ModeOf(phy), (LinkMode{100, false}));
  phy.write(kMiiControl, kForced100Full);
  EXPECT_EQ(ModeOf(phy), (LinkMode{100, true}));
  phy.write(kMiiControl, kControlFullDuplex);
  EXPECT_EQ(ModeOf(phy), (LinkMode{10, true}));
}

TEST(PhyLink, SpeedBitsWhileNegotiating_ChangeNothing) {
  Phy phy;
  phy.read(kMiiStatus);
  phy.write(kMiiControl, kControlNegotiate | kControlSpeedLow);
  EXPECT_EQ(ModeOf(phy), (LinkMode{1000, true}));
  EXPECT_NE(phy.read(kMiiStatus) & kStatusLink, 0) << "the link was never lost";
}

TEST(PhyLink, PowerDown_TakesTheLinkAwayUntilPowerUp) {
  Phy phy;
  const std::uint16_t control = phy.read(kMiiControl);
  phy.write(kMiiControl, control | kControlPowerDown);
  EXPECT_EQ(ModeOf(phy), kDown);
  EXPECT_FALSE(phy.passesFrames());
  EXPECT_EQ(phy.read(kMiiPartnerAbility), 0);
  EXPECT_EQ(phy.read(kMiiGigabitStatus), 0);
  EXPECT_EQ(phy.read(kMiiStatus), 0x7949) << "it answers all the same";
  phy.setPartner({});
  EXPECT_EQ(ModeOf(phy), kDown);
  phy.write(kMiiControl, control);
  EXPECT_EQ(ModeOf(phy), (LinkMode{1000, true}));
}

TEST(PhyLink, Loopback_CutsThePhyOffTheMedium) {
  Phy phy;
  phy.write(kMiiControl, kControlNegotiate | kControlLoopback);
  EXPECT_EQ(ModeOf(phy), kDown);
  phy.write(kMiiControl, kControlNegotiate);
  EXPECT_EQ(ModeOf(phy), (LinkMode{1000, true}));
}

TEST(PhyLink, Isolate_KeepsTheLinkButPassesNoFrame) {
  Phy phy;
  phy.write(kMiiControl, kControlNegotiate | kControlIsolate);
  EXPECT_EQ(ModeOf(phy), (LinkMode{1000, true}));
  EXPECT_FALSE(phy.passesFrames());
  phy.write(kMiiControl, kControlNegotiate);
  EXPECT_TRUE(phy.passesFrames());
}

TEST(PhyLink, NothingPluggedIn_HasNoLink) {
  Phy phy;
  phy.setPartner({.present = false});
  EXPECT_EQ(ModeOf(phy), kDown);
  EXPECT_FALSE(phy.passesFrames());
  EXPECT_EQ(phy.read(kMiiPartnerAbility), 0);
  EXPECT_FALSE(phy.partner().present);
}

}  // namespace
}  // namespace virtual_onu
