/// @file
/// Everything that leaves the library in the add and in the delete of each VLAN mode, in order, for
/// lists that are empty, short, and as long as fills the port's slots and beyond. The sequences
/// stand in golden/vlan_mode_*.golden.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

#include <bcm6838x_vlan.h>
#include <hal_bcm6838x.h>

#include "hal/vlan/vlan_mode_fixture.h"
#include "hal/vlan/vlan_modes.h"
#include "support/golden.h"
#include "support/library_test.h"

namespace hal_test {
namespace {

using Lines = std::vector<std::string>;

const std::filesystem::path kGolden = HAL_GOLDEN;

Lines Golden(const std::string& mode, const std::string& section,
             const GoldenNumbers& numbers = {}) {
  return GoldenLines(kGolden / ("vlan_mode_" + mode + ".golden"), section, numbers);
}

struct Section {
  std::string name;
  GoldenNumbers numbers = {};
};

/// A mode with that many entries: its sequences, and the upstream flows that the delete does not
/// reach because no slot holds them.
struct Case {
  std::string name;
  std::string mode;
  std::uint32_t entries;
  std::string file;
  std::vector<Section> add;
  Section del;
  std::size_t unreached;

  [[nodiscard]] Lines added() const {
    Lines lines;
    for (const Section& section : add) {
      const Lines more = Golden(file, section.name, section.numbers);
      lines.insert(lines.end(), more.begin(), more.end());
    }
    return lines;
  }

  [[nodiscard]] Lines deleted() const { return Golden(file, del.name, del.numbers); }
};

void PrintTo(const Case& each, std::ostream* out) {
  *out << each.name;
}

/// A mode without a list.
Case PlainCase(const std::string& mode, const std::string& file) {
  return {mode, mode, 0, file, {{"add"}}, {"delete"}, 0};
}

Case TrunkCase(std::int64_t n) {
  constexpr std::int64_t kRecorded = 32;
  return {"ZteTrunk" + std::to_string(n),
          "ZteTrunk",
          static_cast<std::uint32_t>(n),
          "zte_trunk",
          {{"add n entries", {{"n", n}}}},
          {"delete n recorded entries", {{"n", std::min(n, kRecorded)}}},
          n > kRecorded ? 8U : 0U};
}

/// Hybrid and translation, which need a slot more than ZTE trunk.
Case PvidCase(const std::string& mode, const std::string& file, std::int64_t n) {
  constexpr std::int64_t kWhole = 31;
  const GoldenNumbers recorded = {{"whole", std::min(n, kWhole)}, {"cut", n > kWhole ? 1 : 0}};
  return {mode + std::to_string(n),        mode,
          static_cast<std::uint32_t>(n),   file,
          {{"add n entries", {{"n", n}}}}, {"delete whole and cut entries", recorded},
          n == 33 ? 9U : n == 32 ? 1U : 0U};
}

Case BdcomCase(std::int64_t n) {
  constexpr std::int64_t kRecorded = 255;
  const GoldenNumbers recorded = {{"n", std::min(n, kRecorded)}};
  Case bdcom = {"BdcomStacking" + std::to_string(n),
                "BdcomStacking",
                static_cast<std::uint32_t>(n),
                "bdcom_stacking",
                {{"add n entries", recorded}},
                {"delete n recorded entries", recorded},
                0};
  if (n > kRecorded) {
    bdcom.add.push_back({"add entry 256"});
    bdcom.unreached = 1;
  }
  return bdcom;
}

std::vector<Case> Cases() {
  std::vector<Case> cases = {PlainCase("Transparent", "transparent"), PlainCase("Tag", "tag"),
                             PlainCase("ZteStacking", "zte_stacking")};
  for (const std::int64_t n : {0, 2, 31, 32, 33}) {
    cases.push_back(TrunkCase(n));
    cases.push_back(PvidCase("Hybrid", "hybrid", n));
    cases.push_back(PvidCase("Translation", "translation", n));
    cases.push_back(BdcomCase(n));
  }
  for (const std::int64_t n : {254, 255, 256}) {
    cases.push_back(BdcomCase(n));
  }
  return cases;
}

class VlanModeSequence : public VlanModeTest, public testing::WithParamInterface<Case> {
 protected:
  [[nodiscard]] std::size_t upstreamFlows() {
    return static_cast<std::size_t>(std::ranges::count_if(
        device(), [](const std::string& line) { return line.starts_with("us flow"); }));
  }
};

// Required: objects-added-with-each-priority, translation-detaches-each-time
// Required: bdcom-one-flow-an-entry, bdcom-pvid-not-stripped, zte-stacking-one-outer-priority
// Required: pvid-lan-vid-is-4096
TEST_P(VlanModeSequence, AddThenDelete) {
  const VlanMode& mode = ModeOf(GetParam().mode);
  EXPECT_EQ(mode.add(2, GetParam().entries), 0);
  EXPECT_EQ(leftBriefly(), GetParam().added());
  forget();
  EXPECT_EQ(mode.del(2, GetParam().entries), 0);
  EXPECT_EQ(leftBriefly(), GetParam().deleted());
  EXPECT_EQ(upstreamFlows(), GetParam().unreached);
}

INSTANTIATE_TEST_SUITE_P(Modes, VlanModeSequence, testing::ValuesIn(Cases()),
                         [](const auto& test) { return test.param.name; });

/// The cases whose delete frees all that the add took, so that the same sequences follow.
std::vector<Case> CasesWithoutRest() {
  std::vector<Case> cases = Cases();
  std::erase_if(cases, [](const Case& each) { return each.unreached != 0; });
  return cases;
}

class VlanModeTwice : public VlanModeSequence {};

TEST_P(VlanModeTwice, AddThenDelete) {
  const VlanMode& mode = ModeOf(GetParam().mode);
  mode.add(2, GetParam().entries);
  mode.del(2, GetParam().entries);
  forget();
  EXPECT_EQ(mode.add(2, GetParam().entries), 0);
  EXPECT_EQ(leftBriefly(), GetParam().added());
  forget();
  EXPECT_EQ(mode.del(2, GetParam().entries), 0);
  EXPECT_EQ(leftBriefly(), GetParam().deleted());
}

INSTANTIATE_TEST_SUITE_P(Modes, VlanModeTwice, testing::ValuesIn(CasesWithoutRest()),
                         [](const auto& test) { return test.param.name; });

class VlanModePerformanceTest : public LibraryTest {
 protected:
  void SetUp() override {
    unit.platform().setPerformanceMarker(true);
    ASSERT_EQ(BCM6838X_Init(), 0U);
    ASSERT_EQ(BCM6838X_IsPerformance(), 1U);
    forget();
  }
};

// Required: performance-transparent-one-flow
TEST_F(VlanModePerformanceTest, Transparent_AddThenDelete) {
  EXPECT_EQ(BCM6838X_AddUsTransparent_Perf(2), 0);
  EXPECT_EQ(leftBriefly(), Golden("transparent", "add in performance mode"));
  forget();
  EXPECT_EQ(BCM6838X_DelUsTransparent(2), 0);
  EXPECT_EQ(leftBriefly(), Golden("transparent", "delete in performance mode"));
}

TEST_F(VlanModeTest, DelUsTransparent_EmptySlots_SendsTheShellLineAlone) {
  EXPECT_EQ(BCM6838X_DelUsTransparent(2), 0);
  EXPECT_EQ(leftBriefly(), Golden("transparent", "delete with empty slots"));
}

TEST_F(VlanModeTest, DelUsTag_EmptySlots_SendsNothing) {
  EXPECT_EQ(BCM6838X_DelUsTag(2, kPvid, kPriority), 0);
  EXPECT_EQ(leftBriefly(), Golden("tag", "delete with empty slots"));
}

// Required: pvid-without-slot-keeps-wan
TEST_F(VlanModeTest, DelUsHybrid_EmptySlots_ReleasesNothing) {
  EXPECT_EQ(ModeOf("Hybrid").del(2, 2), 0);
  EXPECT_EQ(leftBriefly(), Golden("hybrid", "delete with empty slots"));
}

// Required: zte-stacking-always-releases-wan
TEST_F(VlanModeTest, DelUsZTEStacking_EmptySlots_ReleasesTheWanVlanAlone) {
  EXPECT_EQ(ModeOf("ZteStacking").del(2, 0), 0);
  EXPECT_EQ(leftBriefly(), Golden("zte_stacking", "delete with empty slots"));
}

// Required: tag-refusal-gives-action-back-by-index
TEST_F(VlanModeTest, AddUsTag_DriverRefuses_GivesTheActionBackByItsIndexAlone) {
  unit.device().faults().refuseNth(1, 100);
  EXPECT_EQ(BCM6838X_AddUsTag(2, kPvid, kPriority), 8);
  EXPECT_EQ(leftBriefly(), Golden("tag", "add refused"));
}

}  // namespace
}  // namespace hal_test
