/// @file
/// Tests of the comparison of a port's VLAN configuration with its upstream flows.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include <bcm6838x_vlan_port.h>

#include "consistency/consistency.h"

namespace virtual_onu {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t kUni = 2;
constexpr std::uint32_t kIngressPort = 3;
constexpr std::uint32_t kPortAndTags = BRMGR_KEY_INGRESS_PORT | BRMGR_KEY_VLAN_NUM;
constexpr std::uint32_t kPortTagsAndVid = kPortAndTags | BRMGR_KEY_OUTER_VID;

/// Frames that a flow lets in: number of tags, and the VID or 0 where no VID is compared.
struct Lets {
  std::uint8_t tags;
  std::uint16_t vid;
};

ChipTables ChipWith(const std::vector<Lets>& flows) {
  ChipTables chip;
  chip.upstream.classes[0].cfg.fieldMask = kPortAndTags;
  chip.upstream.classes[3].cfg.fieldMask = kPortTagsAndVid;
  std::uint32_t index = 0;
  for (const Lets& lets : flows) {
    IngressFlowRule flow = {};
    flow.forward = BRMGR_FORWARD_PASS;
    flow.dir = BRMGR_DIR_UPSTREAM;
    flow.icIndex = lets.vid == 0 ? 0 : 3;
    flow.ingressPort = kIngressPort;
    flow.vlanNum = lets.tags;
    flow.outerVid = lets.vid;
    chip.upstream.classes[flow.icIndex].flows[index++] = flow;
  }
  return chip;
}

struct Case {
  std::uint32_t mode;
  std::vector<Lets> flows;
};

/// Trunk list 200, translation of 10, customer 11.
std::unique_ptr<PortVlanInfo> Configured(std::uint32_t mode) {
  auto info = std::make_unique<PortVlanInfo>();
  info->vlanMode = mode;
  info->trunkList[0].vid = 200;
  info->translationList[0].localVid = 10;
  info->translationList[0].netVid = 110;
  info->translationList[1].localVid = 12;
  info->stackingList[0].port = kUni;
  info->stackingList[0].stackParam = 2;
  info->stackingList[0].cvid = 11;
  info->stackingList[0].svid = 500;
  info->stackingList[1].cvid = 13;
  return info;
}

TEST(ConfigurationCheck, FlowsOfEachMode_AreItsConfiguration) {
  const std::vector<Case> cases = {
      {BCM6838X_VLAN_MODE_TRANSPARENT, {{0, 0}, {1, 0}, {2, 0}}},
      {BCM6838X_VLAN_MODE_TAG, {{0, 0}}},
      {BCM6838X_VLAN_MODE_TRANSLATION, {{0, 0}, {1, 10}}},
      {BCM6838X_VLAN_MODE_TRANSLATION_2, {{0, 0}, {1, 10}}},
      {BCM6838X_VLAN_MODE_TRUNK, {{0, 0}, {1, 200}}},
      {BCM6838X_VLAN_MODE_ZTE_TRUNK, {{1, 200}}},
      {BCM6838X_VLAN_MODE_HYBRID, {{0, 0}, {1, 200}}},
      {BCM6838X_VLAN_MODE_ZTE_STACKING, {{0, 0}, {1, 0}}},
      {BCM6838X_VLAN_MODE_BDCOM_STACKING, {{0, 0}, {1, 11}}},
      {BCM6838X_VLAN_MODE_NONE, {}},
  };
  for (const Case& row : cases) {
    EXPECT_THAT(CompareWithConfiguration(*Configured(row.mode), kUni, ChipWith(row.flows)),
                IsEmpty())
        << "mode " << row.mode;
  }
}

TEST(ConfigurationCheck, Differences_AreNamedBothWays) {
  EXPECT_THAT(
      CompareWithConfiguration(*Configured(4), kUni, ChipWith({{1, 300}, {2, 0}})),
      ElementsAre("untagged frames are configured, but no flow lets them in",
                  "frames of VID 200 with 1 tags are configured, but no flow lets them in",
                  "a flow lets frames of VID 300 with 1 tags in, which are not configured",
                  "a flow lets frames of any VID with 2 tags in, which are not configured"));
}

TEST(ConfigurationCheck, FlowsOfOtherPorts_DoNotCount) {
  EXPECT_THAT(CompareWithConfiguration(*Configured(1), kUni + 1, ChipWith({{0, 0}})),
              ElementsAre("untagged frames are configured, but no flow lets them in"));
}

TEST(ConfigurationCheck, ClassThatComparesThePortAlone_LetsUpToTwoTagsIn) {
  ChipTables chip = ChipWith({{0, 0}});
  chip.upstream.classes[0].cfg.fieldMask = BRMGR_KEY_INGRESS_PORT;
  EXPECT_THAT(CompareWithConfiguration(*Configured(0), kUni, chip), IsEmpty());
}

}  // namespace
}  // namespace virtual_onu
