/// @file
/// Tests that ranges of the stacking list leave exactly what a round for each VID would leave:
/// against a model that makes the rounds, on small ranges, and by reasoning where a range wraps.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include <bcm6838x_vlan.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>

#include "support/library_tables.h"
#include "unit/unit.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t kEntries = 512;
constexpr std::uint32_t kPort = 1;

struct Entry {
  std::uint32_t port = 0;
  std::uint32_t stackParam = 0;
  std::uint32_t cvid = 0;
  std::uint32_t svid = 0;
  bool operator==(const Entry&) const = default;
};

struct Model {
  std::array<Entry, kEntries> list = {};
  std::uint32_t stackingEnable = 0;
};

Entry EntryOf(const PortVlanStackRange& range, std::uint32_t cvid) {
  return {range.port, range.stackParam, cvid, range.svid};
}

/// Adds a range one VID after the other.
void AddByRounds(Model& model, PortVlanStackRange& range) {
  const std::uint32_t difference = range.cvidEnd - range.cvidStart;
  for (std::uint32_t k = 0;; ++k, ++range.cvidStart) {
    const Entry wanted = EntryOf(range, range.cvidStart);
    if (std::ranges::find(model.list, wanted) == model.list.end()) {
      Entry* const free = std::ranges::find(model.list, Entry{});
      if (free != model.list.end()) {
        model.stackingEnable = 1;
        *free = wanted;
      }
    }
    if (k == difference) {
      ++range.cvidStart;
      return;
    }
  }
}

/// Deletes a range one VID after the other, and stops where the difference falls below the number
/// of rounds.
void DeleteByRounds(Model& model, PortVlanStackRange& range) {
  const std::uint32_t first = range.cvidStart;
  for (std::uint32_t k = 0;; ++k) {
    Entry* const found = std::ranges::find(model.list, EntryOf(range, first + k));
    if (found != model.list.end()) {
      *found = {};
    }
    range.cvidStart = first + k + 1;
    if (range.cvidEnd - range.cvidStart < k + 1) {
      break;
    }
  }
  if (std::ranges::all_of(model.list, [](const Entry& entry) { return entry.port == 0; })) {
    model.stackingEnable = 0;
  }
}

std::vector<Entry> ListOfLibrary() {
  std::vector<Entry> list;
  for (const PortVlanStackEntry& entry : g_PortVlanInfo[kPort - 1].stackingList) {
    list.push_back({entry.port, entry.stackParam, entry.cvid, entry.svid});
  }
  return list;
}

/// Puts the model's list into the library.
void Load(const Model& model) {
  PortVlanInfo& info = g_PortVlanInfo[kPort - 1];
  info.stackingEnable = model.stackingEnable;
  for (std::size_t i = 0; i < kEntries; ++i) {
    const Entry& entry = model.list.at(i);
    info.stackingList[i] = {};
    info.stackingList[i].port = static_cast<std::uint8_t>(entry.port);
    info.stackingList[i].stackParam = entry.stackParam;
    info.stackingList[i].cvid = entry.cvid;
    info.stackingList[i].svid = static_cast<std::uint16_t>(entry.svid);
  }
}

void ExpectAgreement(const Model& model, const std::string& what) {
  ASSERT_TRUE(std::ranges::equal(ListOfLibrary(), model.list)) << what;
  ASSERT_EQ(g_PortVlanInfo[kPort - 1].stackingEnable, model.stackingEnable) << what;
  ASSERT_EQ(std::memcmp(static_cast<const void*>(g_oldPortVlanInfo), g_PortVlanInfo,
                        sizeof(g_PortVlanInfo)),
            0)
      << what << ": not committed";
}

std::string ToText(const char* operation, const PortVlanStackRange& range) {
  return std::string(operation) + " " + std::to_string(range.cvidStart) + ".." +
         std::to_string(range.cvidEnd) + " param " + std::to_string(range.stackParam) + " svid " +
         std::to_string(range.svid);
}

PortVlanStackRange Range(std::uint32_t cvidStart, std::uint16_t cvidEnd, std::uint16_t svid = 200,
                         std::uint32_t stackParam = 2) {
  return {kPort, {0, 0, 0}, stackParam, cvidStart, cvidEnd, svid};
}

/// The library with a unit that does not record, and no mode at any port.
class Fresh {
 public:
  Fresh() {
    unit_.trace().setRecording(false);
    BCM6838X_InitDrv();
    BCM6838X_InitVlan();
  }

 private:
  virtual_onu::Unit unit_;
};

// How often the rounds of a delete are made, in words of few bits: the stop test by itself.

std::uint32_t RoundsByLoop(std::uint32_t difference, std::uint32_t mask) {
  std::uint32_t rounds = 1;
  while (((difference - rounds) & mask) >= rounds) {
    ++rounds;
  }
  return rounds;
}

std::uint32_t RoundsByArithmetic(std::uint32_t difference, std::uint32_t mask) {
  return (difference == 0 ? mask / 2 + 1 : difference / 2) + 1;
}

// Required: stacking-delete-takes-half
TEST(StackingRounds, OfADelete_AreHalfTheDifferenceAndOneMore) {
  std::size_t cases = 0;
  for (const std::uint32_t bits : {1U, 2U, 3U, 8U, 11U}) {
    const std::uint32_t mask = (1U << bits) - 1;
    for (std::uint32_t difference = 0; difference <= mask; ++difference) {
      ASSERT_EQ(RoundsByLoop(difference, mask), RoundsByArithmetic(difference, mask))
          << difference << " in words of " << bits << " bits";
      ++cases;
    }
  }
  EXPECT_EQ(cases, 2U + 4U + 8U + 256U + 2048U);
}

/// Random operations on few VIDs, so that ranges meet, and lists with entries that stand twice.
class StackingModelTest : public testing::TestWithParam<std::uint32_t> {
 protected:
  std::uint32_t below(std::uint32_t limit) { return static_cast<std::uint32_t>(random_() % limit); }

  /// A range that does not wrap, for which the rounds can be made.
  PortVlanStackRange range() {
    const std::uint32_t start = below(40);
    const std::uint32_t length = 1 + below(30);
    return Range(start, static_cast<std::uint16_t>(start + length),
                 static_cast<std::uint16_t>(200 + below(2)), 2 + below(2));
  }

  /// A list in which a good part of the entries is taken, some of them more than once.
  Model crowded() {
    Model model;
    model.stackingEnable = below(2);
    const std::uint32_t percent = 100 - below(3) * below(50);
    for (Entry& entry : model.list) {
      if (below(100) < percent) {
        entry = {kPort, 2 + below(2), below(64), 200 + below(2)};
      }
    }
    return model;
  }

  std::mt19937 random_{GetParam()};
};

TEST_P(StackingModelTest, RandomSequences_LeaveWhatTheRoundsLeave) {
  const Fresh library;
  Model model;
  int steps = 0;
  for (; steps < 200; ++steps) {
    if (steps % 40 == 20) {
      model = crowded();
      Load(model);
    }
    PortVlanStackRange expected = range();
    PortVlanStackRange range = expected;
    const bool adds = below(100) < 55;
    const std::string what = ToText(adds ? "add" : "delete", range);
    if (adds) {
      AddByRounds(model, expected);
      ASSERT_EQ(BCM6838X_AddVlanStacking(&range), 0U);
    } else {
      DeleteByRounds(model, expected);
      ASSERT_EQ(BCM6838X_DelVlanStacking(&range), 0U);
    }
    ASSERT_EQ(range.cvidStart, expected.cvidStart) << what;
    ASSERT_NO_FATAL_FAILURE(ExpectAgreement(model, what));
  }
  EXPECT_EQ(steps, 200);
}

INSTANTIATE_TEST_SUITE_P(Seeds, StackingModelTest, testing::Range(1U, 13U));

TEST(StackingSmallRanges, EveryStartAndEnd_LeaveWhatTheRoundsLeave) {
  const Fresh library;
  int cases = 0;
  for (std::uint32_t start = 0; start <= 12; ++start) {
    for (std::uint32_t end = start + 1; end <= 13; ++end, ++cases) {
      Model model;
      model.stackingEnable = 1;
      for (std::uint32_t i = 0; i < 28; ++i) {
        model.list.at(std::size_t{3} * i) = {kPort, 2, (5 * i) % 14,
                                             200};  // every VID stands twice
      }
      Load(model);
      PortVlanStackRange expected = Range(start, static_cast<std::uint16_t>(end));
      PortVlanStackRange range = expected;
      DeleteByRounds(model, expected);
      BCM6838X_DelVlanStacking(&range);
      ASSERT_EQ(range.cvidStart, expected.cvidStart);
      ASSERT_NO_FATAL_FAILURE(ExpectAgreement(model, ToText("delete", expected)));
      expected = Range(start, static_cast<std::uint16_t>(end));
      range = expected;
      AddByRounds(model, expected);
      BCM6838X_AddVlanStacking(&range);
      ASSERT_EQ(range.cvidStart, expected.cvidStart);
      ASSERT_NO_FATAL_FAILURE(ExpectAgreement(model, ToText("add", expected)));
    }
  }
  EXPECT_EQ(cases, 13 * 14 / 2);
}

/// A delete whose range wraps: the difference is 0, or the start lies behind the end.
struct WrappedDelete {
  std::uint32_t start;
  std::uint16_t end;
  std::uint32_t rounds;  ///< by hand: the difference, as a word, halved, and one more
};

void PrintTo(const WrappedDelete& param, std::ostream* out) {
  *out << param.start << ".." << param.end;
}

class WrappedDeleteTest : public testing::TestWithParam<WrappedDelete> {
 protected:
  /// The VIDs that are left of those given.
  static std::vector<std::uint32_t> leftOf(const std::vector<std::uint32_t>& cvids) {
    const Fresh library;
    Model model;
    model.stackingEnable = 1;
    for (std::size_t i = 0; i < cvids.size(); ++i) {
      model.list.at(i) = {kPort, 2, cvids[i], 200};
    }
    Load(model);
    PortVlanStackRange range = Range(GetParam().start, GetParam().end);
    EXPECT_EQ(BCM6838X_DelVlanStacking(&range), 0U);
    EXPECT_EQ(range.cvidStart, GetParam().start + GetParam().rounds);
    std::vector<std::uint32_t> left;
    for (const Entry& entry : ListOfLibrary()) {
      if (entry.port != 0) {
        left.push_back(entry.cvid);
      }
    }
    return left;
  }
};

TEST_P(WrappedDeleteTest, TakesOutWhatTheRoundsMeet) {
  const auto [start, end, rounds] = GetParam();
  const std::uint32_t behind = start + rounds;
  EXPECT_THAT(leftOf({behind, start, start - 1, behind - 1, start + rounds / 2, behind + 1}),
              ElementsAre(behind, start - 1, behind + 1));
}

TEST_P(WrappedDeleteTest, OfEntriesThatStandTwice_TakesTheFirst) {
  const auto [start, end, rounds] = GetParam();
  const std::uint32_t outside = start - 1;
  const std::uint32_t last = start + rounds - 1;
  EXPECT_THAT(leftOf({outside, last, start, last, outside, start, last}),
              ElementsAre(outside, last, outside, start, last));
}

TEST_P(WrappedDeleteTest, OfAFullList_TakesOutAllInOnePass) {
  std::vector<std::uint32_t> cvids(kEntries);
  for (std::size_t i = 0; i < kEntries; ++i) {
    cvids[i] = GetParam().start + static_cast<std::uint32_t>(kEntries - 1 - i) * 4U;
  }
  EXPECT_THAT(leftOf(cvids), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Ranges, WrappedDeleteTest,
    testing::Values(WrappedDelete{100, 100, 0x80000001}, WrappedDelete{0, 0, 0x80000001},
                    WrappedDelete{65535, 65535, 0x80000001}, WrappedDelete{101, 100, 0x80000000},
                    WrappedDelete{102, 100, 0x80000000}, WrappedDelete{103, 100, 0x7FFFFFFF},
                    WrappedDelete{200, 100, 0x7FFFFFCF}, WrappedDelete{65536, 0, 0x7FFF8001},
                    WrappedDelete{0x80000000, 0, 0x40000001},
                    WrappedDelete{0x80000064, 100, 0x40000001},
                    WrappedDelete{0xFFFFF000, 100, 0x833}, WrappedDelete{0xFF000000, 5, 0x800003}));

/// An add whose range wraps: every VID is in it, or all but a few.
TEST(WrappedAdd, StoresTheFirstVidsThatAreNotHeld) {
  const Fresh library;
  Model model;
  for (std::uint32_t i = 0; i < kEntries; i += 2) {
    model.list.at(i) = {kPort, 2, 65000 + 3 * i, 200};  // 65000, 65006, ...
  }
  Load(model);
  PortVlanStackRange range = Range(65000, 64999);
  EXPECT_EQ(BCM6838X_AddVlanStacking(&range), 0U);
  EXPECT_EQ(range.cvidStart, 65000U) << "the VID behind the last one";
  std::uint32_t next = 65000;
  for (std::uint32_t i = 1; i < kEntries; i += 2) {
    while ((next - 65000) % 6 == 0) {
      ++next;
    }
    model.list.at(i) = {kPort, 2, next, 200};
    ++next;
  }
  model.stackingEnable = 1;
  ExpectAgreement(model, "add of all VIDs");
}

TEST(WrappedAdd, PassesTheHighestVid) {
  const Fresh library;
  PortVlanStackRange range = Range(0xFFFFFFFE, 1);
  EXPECT_EQ(BCM6838X_AddVlanStacking(&range), 0U);
  EXPECT_EQ(range.cvidStart, 2U);
  Model model;
  model.stackingEnable = 1;
  const std::array<std::uint32_t, 4> cvids = {0xFFFFFFFE, 0xFFFFFFFF, 0, 1};
  for (std::size_t i = 0; i < cvids.size(); ++i) {
    model.list.at(i) = {kPort, 2, cvids.at(i), 200};
  }
  ExpectAgreement(model, "add across the highest VID");
}

TEST(WrappedAdd, ToAFullList_StoresNothing) {
  const Fresh library;
  Model model;
  for (std::uint32_t i = 0; i < kEntries; ++i) {
    model.list.at(i) = {kPort, 2, 5 * i, 200};
  }
  Load(model);
  PortVlanStackRange range = Range(7, 6);
  EXPECT_EQ(BCM6838X_AddVlanStacking(&range), 0U);
  EXPECT_EQ(range.cvidStart, 7U);
  ExpectAgreement(model, "a full list leaves stackingEnable alone too");
}

/// An entry is free when its four fields are zero, whatever the bytes between them hold; one of
/// which a field is set is not.
TEST(StackingEntries, FreeAndTaken) {
  const Fresh library;
  PortVlanStackEntry(&list)[kEntries] = g_PortVlanInfo[kPort - 1].stackingList;
  list[0].svid = 1;
  list[1].cvid = 0x10000;
  list[2].stackParam = 0x100;
  list[3].port = 9;
  list[4].reserved12 = 7;
  list[4].reserved1[2] = 7;
  PortVlanStackRange range = Range(100, 101);
  BCM6838X_AddVlanStacking(&range);
  EXPECT_EQ(list[0].cvid, 0U);
  EXPECT_EQ(list[1].port, 0);
  EXPECT_EQ(list[2].port, 0);
  EXPECT_EQ(list[3].cvid, 0U);
  EXPECT_EQ(list[4].cvid, 100U);
  EXPECT_EQ(list[5].cvid, 101U);
  EXPECT_EQ(list[4].reserved12, 7);
}

TEST(StackingEntries, AnotherPortsEntry_KeepsStackingEnabled) {
  const Fresh library;
  g_PortVlanInfo[kPort - 1].stackingList[7].port = 9;
  PortVlanStackRange range = Range(100, 101);
  BCM6838X_AddVlanStacking(&range);
  range = Range(100, 103);
  BCM6838X_DelVlanStacking(&range);
  EXPECT_EQ(g_PortVlanInfo[kPort - 1].stackingEnable, 1U);
  g_PortVlanInfo[kPort - 1].stackingList[7] = {0, {0, 0, 0}, 2, 3, 0, 4};
  range = Range(100, 103);
  BCM6838X_DelVlanStacking(&range);
  EXPECT_EQ(g_PortVlanInfo[kPort - 1].stackingEnable, 0U) << "only the port is looked at";
}

}  // namespace
}  // namespace hal_test
