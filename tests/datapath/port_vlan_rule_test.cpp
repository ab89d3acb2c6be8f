/// @file
/// Tests of the rule that a port's VLAN configuration has for a downstream frame: every mode with
/// frames inside and outside its lists.
#include "datapath/port_vlan_rule.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <bcm6838x_vlan_port.h>

namespace virtual_onu {
namespace {

constexpr std::uint32_t kUni = 2;
constexpr std::uint32_t kModeNone = 255;

/// PVID 100; trunk 200; 10 on the line is 110 in the network; 500 around 10.
std::unique_ptr<PortVlanInfo> Configured(std::uint32_t mode) {
  auto info = std::make_unique<PortVlanInfo>();
  info->pvid = 100;
  info->vlanMode = mode;
  info->trunkList[7] = {.port = kUni, .reserved1 = 0, .vid = 200};
  info->translationList[511] = {.port = kUni,
                                .reserved1 = 0,
                                .dsPriority = 2,
                                .localVid = 10,
                                .usPriority = 6,
                                .netVid = 110};
  info->stackingList[3] = {
      .port = kUni, .reserved1 = {}, .stackParam = 2, .cvid = 0x500A, .reserved12 = 0, .svid = 500};
  return info;
}

using Vids = std::vector<std::uint16_t>;

FrameHeaders Tagged(const Vids& vids) {
  FrameHeaders headers;
  for (const std::uint16_t vid : vids) {
    headers.tags.push_back({.vid = vid});
  }
  return headers;
}

/// "drop", "pass" or "pop".
std::string RuleOf(const PortVlanInfo& info, const Vids& vids) {
  const PortVlanRule rule = FindPortVlanRule(info, kUni, Tagged(vids));
  EXPECT_FALSE(rule.reason.empty());
  if (!rule.admits) {
    return "drop";
  }
  return rule.edit == nullptr ? "pass" : "pop";
}

struct Case {
  std::uint32_t mode;
  Vids vids;
  std::string rule;
};

const std::vector<Case> kCases = {
    {BCM6838X_VLAN_MODE_TRANSPARENT, {}, "pass"},
    {BCM6838X_VLAN_MODE_TRANSPARENT, {999}, "pass"},
    {BCM6838X_VLAN_MODE_TRANSPARENT, {500, 11}, "pass"},
    {BCM6838X_VLAN_MODE_TAG, {}, "drop"},
    {BCM6838X_VLAN_MODE_TAG, {100}, "pop"},
    {BCM6838X_VLAN_MODE_TAG, {200}, "drop"},
    {BCM6838X_VLAN_MODE_TAG, {100, 10}, "drop"},
    {BCM6838X_VLAN_MODE_TRANSLATION, {}, "drop"},
    {BCM6838X_VLAN_MODE_TRANSLATION, {100}, "pop"},
    {BCM6838X_VLAN_MODE_TRANSLATION, {110}, "pass"},
    {BCM6838X_VLAN_MODE_TRANSLATION, {10}, "drop"},
    {BCM6838X_VLAN_MODE_TRANSLATION, {110, 10}, "drop"},
    {BCM6838X_VLAN_MODE_TRANSLATION_2, {110}, "pass"},
    {BCM6838X_VLAN_MODE_TRANSLATION_2, {10}, "drop"},
    {BCM6838X_VLAN_MODE_TRUNK, {}, "drop"},
    {BCM6838X_VLAN_MODE_TRUNK, {100}, "pop"},
    {BCM6838X_VLAN_MODE_TRUNK, {200}, "pass"},
    {BCM6838X_VLAN_MODE_TRUNK, {300}, "drop"},
    {BCM6838X_VLAN_MODE_TRUNK, {200, 10}, "drop"},
    {BCM6838X_VLAN_MODE_ZTE_TRUNK, {}, "drop"},
    {BCM6838X_VLAN_MODE_ZTE_TRUNK, {100}, "drop"},
    {BCM6838X_VLAN_MODE_ZTE_TRUNK, {200}, "pass"},
    {BCM6838X_VLAN_MODE_ZTE_TRUNK, {200, 10}, "drop"},
    {BCM6838X_VLAN_MODE_HYBRID, {100}, "pop"},
    {BCM6838X_VLAN_MODE_HYBRID, {200}, "pass"},
    {BCM6838X_VLAN_MODE_HYBRID, {300}, "drop"},
    {BCM6838X_VLAN_MODE_ZTE_STACKING, {}, "drop"},
    {BCM6838X_VLAN_MODE_ZTE_STACKING, {100}, "pop"},
    {BCM6838X_VLAN_MODE_ZTE_STACKING, {100, 10}, "pop"},
    {BCM6838X_VLAN_MODE_ZTE_STACKING, {200}, "drop"},
    {BCM6838X_VLAN_MODE_ZTE_STACKING, {100, 1, 2}, "drop"},
    {BCM6838X_VLAN_MODE_BDCOM_STACKING, {}, "drop"},
    {BCM6838X_VLAN_MODE_BDCOM_STACKING, {100}, "pop"},
    {BCM6838X_VLAN_MODE_BDCOM_STACKING, {500}, "drop"},
    {BCM6838X_VLAN_MODE_BDCOM_STACKING, {500, 10}, "pop"},
    {BCM6838X_VLAN_MODE_BDCOM_STACKING, {500, 11}, "drop"},
    {BCM6838X_VLAN_MODE_BDCOM_STACKING, {501, 10}, "drop"},
    {BCM6838X_VLAN_MODE_NONE, {}, "drop"},
    {BCM6838X_VLAN_MODE_NONE, {100}, "drop"},
    {7, {100}, "drop"},
};

TEST(PortVlanRule, EveryMode_AdmitsWhatItsListsHold) {
  for (const Case& row : kCases) {
    std::string vids;
    for (const std::uint16_t vid : row.vids) {
      vids += " " + std::to_string(vid);
    }
    EXPECT_EQ(RuleOf(*Configured(row.mode), row.vids), row.rule) << "mode " << row.mode << vids;
  }
}

TEST(PortVlanRule, PvidInTheTrunkList_StaysTheAccessVlan) {
  const auto info = Configured(4);
  info->trunkList[0].vid = 100;
  EXPECT_EQ(RuleOf(*info, {100}), "pop");
}

// Required: egress-ignores-free-entries
TEST(PortVlanRule, FreeEntries_AdmitNoFrame) {
  for (const std::uint32_t mode : {4U, 19U}) {
    EXPECT_EQ(RuleOf(*Configured(mode), {0}), "drop");
  }
  const auto info = Configured(2);
  info->translationList[511].localVid = 0;
  EXPECT_EQ(RuleOf(*info, {110}), "drop");
}

TEST(PortVlanRule, StackingEntry_CountsOnlyWhereItsPortBuildsIt) {
  const auto change = [](void (*edit)(PortVlanStackEntry&)) {
    const auto info = Configured(253);
    edit(info->stackingList[3]);
    return RuleOf(*info, {500, 10});
  };
  EXPECT_EQ(change([](PortVlanStackEntry& /*entry*/) {}), "pop");
  EXPECT_EQ(change([](PortVlanStackEntry& entry) { entry.stackParam = 1; }), "drop");
  EXPECT_EQ(change([](PortVlanStackEntry& entry) { entry.port = 1; }), "drop");
  EXPECT_EQ(change([](PortVlanStackEntry& entry) { entry.cvid = 0; }), "drop");
  EXPECT_EQ(change([](PortVlanStackEntry& entry) { entry.svid = 0; }), "drop");
}

TEST(PortVlanRule, ModeNames_AreWords) {
  EXPECT_EQ(VlanModeName(BCM6838X_VLAN_MODE_TRANSPARENT), "transparent");
  EXPECT_EQ(VlanModeName(BCM6838X_VLAN_MODE_ZTE_STACKING), "ZTE stacking");
  EXPECT_EQ(VlanModeName(kModeNone), "none");
  EXPECT_EQ(VlanModeName(7), "mode 7");
}

}  // namespace
}  // namespace virtual_onu
