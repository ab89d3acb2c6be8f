/// @file
/// Tests of the ports' VLAN configuration as a program sees it that links with the archive: what is
/// committed when, what each mode code does in either copy, and tables that only such a program can
/// make.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

#include <bcm6838x_vlan.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>

#include "hal/vlan/chip_content.h"
#include "hal/vlan/vlan_port_test.h"
#include "support/in_child.h"
#include "support/library_tables.h"

namespace hal_test {
namespace {

bool IsCommitted() {
  return std::memcmp(static_cast<const void*>(g_oldPortVlanInfo), g_PortVlanInfo,
                     sizeof(g_PortVlanInfo)) == 0;
}

class VlanPortStateTest : public VlanPortTest {};

TEST_F(VlanPortStateTest, AfterTheStart_TheCopiesAgreeAndTheDefaultActionIsTheFirst) {
  EXPECT_TRUE(IsCommitted());
  EXPECT_EQ(g_dsVlanAction, 0U);
}

TEST(VlanPortTables, BeforeTheStart_AreZeroAndThereIsNoDefaultAction) {
  const auto isZero = [](std::uint8_t byte) { return byte == 0; };
  EXPECT_TRUE(std::ranges::all_of(BytesOf(g_PortVlanInfo), isZero));
  EXPECT_TRUE(std::ranges::all_of(BytesOf(g_oldPortVlanInfo), isZero));
  EXPECT_TRUE(std::ranges::all_of(BytesOf(g_vlanEntry), isZero));
  EXPECT_EQ(g_vlanEntryCnt, 0);
  EXPECT_EQ(g_vlanEntryGetCnt, 0);
  EXPECT_EQ(g_dsVlanAction, 0xFFFFFFFFU);
}

// Required: commit-copies-all-ports
TEST_F(VlanPortStateTest, Commit_CopiesEveryByteOfEveryPort) {
  auto* const bytes = reinterpret_cast<std::uint8_t*>(g_PortVlanInfo);
  for (std::size_t i = 0; i < sizeof(g_PortVlanInfo); ++i) {
    bytes[i] = static_cast<std::uint8_t>(i % 251);
  }
  g_PortVlanInfo[1].vlanMode = BCM6838X_VLAN_MODE_NONE;
  g_oldPortVlanInfo[1].vlanMode = BCM6838X_VLAN_MODE_NONE;
  BCM6838X_SetPortPriority(2, 5);
  EXPECT_TRUE(IsCommitted());
}

TEST_F(VlanPortStateTest, Rebuild_SendsEveryByteOfTheTable) {
  // Bytes that the records do not name are sent as they are: every byte of the table is distinct
  // from its neighbours, and the table itself is the record.
  auto* const bytes = reinterpret_cast<std::uint8_t*>(g_PortVlanInfo);
  for (std::size_t i = 0; i < sizeof(g_PortVlanInfo); ++i) {
    bytes[i] = static_cast<std::uint8_t>(i % 251);
  }
  g_PortVlanInfo[0].vlanMode = BCM6838X_VLAN_MODE_NONE;
  const std::vector<std::uint8_t> table = BytesOf(g_PortVlanInfo);
  forget();
  BCM6838X_RebuildVlanRule(1);
  const auto sent = virtual_onu::EventsOf<virtual_onu::CommandEvent>(unit.trace().events()).back();
  EXPECT_EQ(sent.code, 158U);
  EXPECT_EQ(sent.flag, 0U);
  EXPECT_EQ(sent.length, 492032U);
  EXPECT_TRUE(std::ranges::equal(sent.before, table));
}

TEST_F(VlanPortStateTest, Setters_Commit) {
  int rounds = 0;
  for (const ModeSetter& setter : kModeSetters) {
    g_oldPortVlanInfo[31].tagAttr = 9;  // lost by the commit
    setter.set(1);
    EXPECT_TRUE(IsCommitted()) << setter.name;
    ++rounds;
  }
  EXPECT_EQ(rounds, 7);
}

/// Which calls copy the whole table over the applied one; the mark in it is lost then.
// Required: rebuild-does-not-commit, list-delete-no-commit
TEST_F(VlanPortStateTest, EachOperation_CommitsOrDoesNot) {
  struct Case {
    const char* name;
    std::function<void()> run;
    bool commits;
  };
  const std::vector<Case> cases = {
      {"SetVlanTag", [] { BCM6838X_SetVlanTag(1); }, true},
      {"SetVlanTag again", [] { BCM6838X_SetVlanTag(1); }, false},
      {"ApplyVlan", [] { BCM6838X_ApplyVlan(1); }, true},
      {"ClearVlanRule", [] { BCM6838X_ClearVlanRule(1); }, false},
      {"RebuildVlanRule", [] { BCM6838X_RebuildVlanRule(1); }, false},
      {"AddVlanTrunk", [] { AddTrunk(1, 100); }, true},
      {"AddVlanTrunk again", [] { AddTrunk(1, 100); }, false},
      {"DelVlanTrunk", [] { DelTrunk(1, 100); }, false},
      {"DelVlanTrunk again", [] { DelTrunk(1, 100); }, false},
      {"AddZteVlanTrunk", [] { AddZteTrunk(1, 100); }, true},
      {"AddZteVlanTrunk again", [] { AddZteTrunk(1, 100); }, false},
      {"AddZteVlanTrunk of another port", [] { AddZteTrunk(2, 100); }, true},
      {"DelZteVlanTrunk", [] { DelZteTrunk(1, 100); }, false},
      {"DelZteVlanTrunk again", [] { DelZteTrunk(1, 100); }, false},
      {"AddVlanTranslation", [] { AddTranslation(1, 10, 20); }, true},
      {"AddVlanTranslation again", [] { AddTranslation(1, 10, 20); }, false},
      {"DelVlanTranslation", [] { DelTranslation(1, 10, 20); }, false},
      {"AddVlanStacking", [] { AddStacking(StackRange(1, 10, 10)); }, true},
      {"AddVlanStacking again", [] { AddStacking(StackRange(1, 10, 10)); }, true},
      {"AddVlanStacking refused", [] { AddStacking(StackRange(1, 10, 10, 0)); }, false},
      {"DelVlanStacking", [] { DelStacking(StackRange(1, 10, 11)); }, true},
      {"SetPortPvid", [] { BCM6838X_SetPortPvid(1, 7); }, true},
      {"SetPortPvid again", [] { BCM6838X_SetPortPvid(1, 7); }, false},
      {"SetPortPriority", [] { BCM6838X_SetPortPriority(1, 7); }, true},
      {"SetPortPriority again", [] { BCM6838X_SetPortPriority(1, 7); }, false},
      {"SetPortCtcMode unknown", [] { BCM6838X_SetPortCtcMode(1, 7); }, false},
      {"SetVlanTransparent", [] { BCM6838X_SetVlanTransparent(1); }, true},
      {"SetPortPvid transparent", [] { BCM6838X_SetPortPvid(1, 8); }, true},
      {"SetPortPriority transparent", [] { BCM6838X_SetPortPriority(1, 6); }, true},
      {"InitVlan", [] { BCM6838X_InitVlan(); }, true},
  };
  int rounds = 0;
  for (const Case& one : cases) {
    g_oldPortVlanInfo[31].tagAttr = 9;
    one.run();
    EXPECT_EQ(g_oldPortVlanInfo[31].tagAttr == 0, one.commits) << one.name;
    ++rounds;
  }
  EXPECT_EQ(rounds, 30);
}

// Required: list-full-drops-and-commits
TEST_F(VlanPortStateTest, FullList_CommitsThoughNothingIsStored) {
  for (std::uint16_t vid = 1; vid <= 512; ++vid) {
    AddTrunk(1, vid);
    AddTranslation(1, vid, vid);
  }
  g_oldPortVlanInfo[31].tagAttr = 9;
  AddTrunk(1, 1000);
  EXPECT_TRUE(IsCommitted());
  g_oldPortVlanInfo[31].tagAttr = 9;
  AddZteTrunk(1, 1000);
  EXPECT_TRUE(IsCommitted());
  g_oldPortVlanInfo[31].tagAttr = 9;
  AddTranslation(1, 1000, 1000);
  EXPECT_TRUE(IsCommitted());
}

TEST_F(VlanPortStateTest, SetPvid_ClearsTheTagAttribute) {
  g_PortVlanInfo[0].tagAttr = 5;
  BCM6838X_SetPortPriority(1, 3);
  EXPECT_EQ(g_PortVlanInfo[0].tagAttr, 5) << "the priority does not touch it";
  EXPECT_EQ(g_PortVlanInfo[0].tpid, 0);
  BCM6838X_SetPortPvid(1, 100);
  EXPECT_EQ(g_PortVlanInfo[0].tagAttr, 0);
  EXPECT_EQ(g_PortVlanInfo[0].tpid, 0x8100);
}

TEST_F(VlanPortStateTest, SetPvidAndPriority_ClearByTheAppliedAndBuildByTheNewConfiguration) {
  BCM6838X_SetPortPvid(1, 100);
  BCM6838X_SetVlanTag(1);
  g_PortVlanInfo[0].pvid = 7;  // changed behind the library's back
  forget();
  BCM6838X_SetPortPvid(1, 200);
  EXPECT_THAT(shellLines(), testing::Contains("shell bs /b/d vlan/name=wan0_100"));
  EXPECT_THAT(shellLines(), testing::Contains("shell bs /b/n vlan/name=wan0_200 port/index=wan0"));
}

/// A mode code: what is called with the port and the record when its rules are removed and created.
struct ModeRow {
  const char* name;
  std::uint32_t code;
  void (*add)(std::uint32_t port, const PortVlanInfo& info);
  void (*del)(std::uint32_t port, const PortVlanInfo& info);
};

void PrintTo(const ModeRow& row, std::ostream* out) {
  *out << row.name;
}

void Nothing(std::uint32_t /*port*/, const PortVlanInfo& /*info*/) {}

void AddTranslationMode(std::uint32_t port, const PortVlanInfo& info) {
  BCM6838X_AddUsTranslation(port, info.pvid, info.priority, info.translationList);
}

void DelTranslationMode(std::uint32_t port, const PortVlanInfo& info) {
  BCM6838X_DelUsTranslation(port, info.pvid, info.priority, info.translationList);
}

void AddHybridMode(std::uint32_t port, const PortVlanInfo& info) {
  BCM6838X_AddUsHybrid(port, info.pvid, info.priority, info.trunkList);
}

void DelHybridMode(std::uint32_t port, const PortVlanInfo& info) {
  BCM6838X_DelUsHybrid(port, info.pvid, info.priority, info.trunkList);
}

const std::array kModeRows = {
    ModeRow{"Transparent", BCM6838X_VLAN_MODE_TRANSPARENT,
            [](std::uint32_t port, const PortVlanInfo&) { BCM6838X_AddUsTransparent(port); },
            [](std::uint32_t port, const PortVlanInfo&) { BCM6838X_DelUsTransparent(port); }},
    ModeRow{"Tag", BCM6838X_VLAN_MODE_TAG,
            [](std::uint32_t port, const PortVlanInfo& info) {
              BCM6838X_AddUsTag(port, info.pvid, info.priority);
            },
            [](std::uint32_t port, const PortVlanInfo& info) {
              BCM6838X_DelUsTag(port, info.pvid, info.priority);
            }},
    ModeRow{"Translation", BCM6838X_VLAN_MODE_TRANSLATION, AddTranslationMode, DelTranslationMode},
    ModeRow{"SecondTranslation", BCM6838X_VLAN_MODE_TRANSLATION_2, AddTranslationMode,
            DelTranslationMode},
    ModeRow{"Trunk", BCM6838X_VLAN_MODE_TRUNK, AddHybridMode, DelHybridMode},
    ModeRow{"Hybrid", BCM6838X_VLAN_MODE_HYBRID, AddHybridMode, DelHybridMode},
    ModeRow{"ZteTrunk", BCM6838X_VLAN_MODE_ZTE_TRUNK,
            [](std::uint32_t port, const PortVlanInfo& info) {
              BCM6838X_AddUsZTETrunk(port, info.trunkList);
            },
            [](std::uint32_t port, const PortVlanInfo& info) {
              BCM6838X_DelUsZTETrunk(port, info.trunkList);
            }},
    ModeRow{"ZteStacking", BCM6838X_VLAN_MODE_ZTE_STACKING,
            [](std::uint32_t port, const PortVlanInfo& info) {
              BCM6838X_AddUsZTEStacking(port, info.pvid, info.priority);
            },
            [](std::uint32_t port, const PortVlanInfo& info) {
              BCM6838X_DelUsZTEStacking(port, info.pvid, info.priority);
            }},
    ModeRow{"BdcomStacking", BCM6838X_VLAN_MODE_BDCOM_STACKING,
            [](std::uint32_t port, const PortVlanInfo& info) {
              BCM6838X_AddUsBDCOMStacking(port, info.pvid, info.priority, info.stackingList);
            },
            [](std::uint32_t port, const PortVlanInfo& info) {
              BCM6838X_DelUsBDCOMStacking(port, info.pvid, info.priority, info.stackingList);
            }},
    ModeRow{"None", BCM6838X_VLAN_MODE_NONE, Nothing, Nothing},
    ModeRow{"Unknown5", 5, Nothing, Nothing},
    ModeRow{"Unknown256", 256, Nothing, Nothing},
    ModeRow{"UnknownWord", 0x04000000, Nothing, Nothing},
};

/// A configuration whose every number says whose it is.
PortVlanInfo Filled(std::uint32_t code, std::uint16_t base) {
  PortVlanInfo info = {};
  info.vlanMode = code;
  info.pvid = base;
  info.priority = static_cast<std::uint16_t>(base / 100);
  const auto vid = [base](int offset) { return static_cast<std::uint16_t>(base + offset); };
  info.trunkList[3] = {2, 0, vid(1)};
  info.translationList[511] = {2, 0, 1, vid(2), 3, vid(3)};
  info.stackingList[7] = {2, {0, 0, 0}, 2, vid(4), 0, vid(5)};
  return info;
}

class ModeRowTest : public testing::TestWithParam<ModeRow> {
 protected:
  /// What leaves the library during `act`, in a fresh process, behind `arrange`.
  template <typename Arrange, typename Act>
  static std::vector<std::string> leaves(Arrange arrange, Act act) {
    const ChildReport report = InChild([&] {
      virtual_onu::Unit unit;
      BCM6838X_Init();
      g_PortVlanInfo[1] = Filled(GetParam().code, 300);
      g_oldPortVlanInfo[1] = Filled(GetParam().code, 500);
      arrange();
      const std::uint64_t from = unit.trace().next();
      act();
      std::vector<std::string> lines = Left(unit, from);
      for (std::string& line : lines) {
        line.erase(line.find_last_not_of("\r\n") + 1);
      }
      return lines;
    });
    EXPECT_TRUE(report.finished);
    return report.lines;
  }
};

TEST_P(ModeRowTest, Rebuild_CallsTheAddOfTheCurrentConfiguration) {
  const std::vector<std::string> expected =
      leaves([] {}, [] { GetParam().add(2, g_PortVlanInfo[1]); });
  std::vector<std::string> got = leaves([] {}, [] { BCM6838X_RebuildVlanRule(2); });
  ASSERT_FALSE(got.empty());
  EXPECT_TRUE(got.back().starts_with("command BRMGR_CMD_VLAN_REBUILD len 492032 flag 0 "));
  got.pop_back();
  EXPECT_EQ(got, expected);
  EXPECT_EQ(expected.empty(), GetParam().add == Nothing);
}

// Required: clear-by-applied-copy
TEST_P(ModeRowTest, Clear_CallsTheDeleteOfTheAppliedConfiguration) {
  const auto build = [] { GetParam().add(2, g_oldPortVlanInfo[1]); };
  const std::vector<std::string> expected =
      leaves(build, [] { GetParam().del(2, g_oldPortVlanInfo[1]); });
  EXPECT_EQ(leaves(build, [] { BCM6838X_ClearVlanRule(2); }), expected);
  EXPECT_EQ(expected.empty(), GetParam().del == Nothing);
}

// Required: clear-by-applied-copy
TEST_P(ModeRowTest, Apply_ClearsByTheAppliedAndBuildsByTheCurrentConfiguration) {
  const auto build = [] { GetParam().add(2, g_oldPortVlanInfo[1]); };
  const auto changes = [](std::vector<std::string> lines) {
    std::erase_if(
        lines, [](const std::string& line) { return line.find("###### ") != std::string::npos; });
    return lines;
  };
  std::vector<std::string> got = changes(leaves(build, [] { BCM6838X_ApplyVlan(2); }));
  const std::vector<std::string> expected = leaves(build, [] {
    GetParam().del(2, g_oldPortVlanInfo[1]);
    GetParam().add(2, g_PortVlanInfo[1]);
  });
  // Around them: port down and its PHY, the configuration, port up and its PHY.
  ASSERT_EQ(got.size(), expected.size() + 5);
  EXPECT_TRUE(std::equal(expected.begin(), expected.end(), got.begin() + 2));
}

INSTANTIATE_TEST_SUITE_P(Codes, ModeRowTest, testing::ValuesIn(kModeRows),
                         [](const testing::TestParamInfo<ModeRow>& test) {
                           return test.param.name;
                         });

class VlanEntryStateTest : public LibraryTest {};

// Required: full-vlan-table-refuses-moves
TEST_F(VlanEntryStateTest, FullTable_RefusesEverySetAndChangesNothing) {
  for (std::size_t i = 0; i < kVlanEntries; ++i) {
    g_vlanEntry[i].vid = static_cast<std::uint16_t>(i);
    g_vlanEntry[i].portMask = i == 100 ? 1 : 2;
  }
  g_vlanEntryCnt = kVlanEntries;
  const std::vector<std::uint8_t> before = BytesOf(g_vlanEntry);
  EXPECT_EQ(BCM6838X_SetVlanEntry(1, 200), 1U) << "a move between existing VLANs";
  EXPECT_EQ(BCM6838X_SetVlanEntry(1, 100), 1U) << "no change at all";
  EXPECT_EQ(BCM6838X_SetVlanEntry(9, 5000), 1U);
  EXPECT_EQ(g_vlanEntryCnt, kVlanEntries);
  EXPECT_TRUE(BytesOf(g_vlanEntry) == before);
}

TEST_F(VlanEntryStateTest, LastFreeEntry_IsUsed) {
  for (std::size_t i = 0; i + 1 < kVlanEntries; ++i) {
    g_vlanEntry[i].vid = static_cast<std::uint16_t>(2 * i + 1);
    g_vlanEntry[i].portMask = 2;
  }
  g_vlanEntryCnt = kVlanEntries - 1;
  EXPECT_EQ(BCM6838X_SetVlanEntry(1, 0), 0U);
  EXPECT_EQ(g_vlanEntryCnt, kVlanEntries);
  EXPECT_EQ(g_vlanEntry[0].vid, 0);
  EXPECT_EQ(g_vlanEntry[kVlanEntries - 1].vid, 2 * (kVlanEntries - 2) + 1);
  EXPECT_EQ(BCM6838X_SetVlanEntry(1, 1), 1U);
}

// Required: vlan-attributes-stay
TEST_F(VlanEntryStateTest, OnlyVidAndMembersMove_AttributesStayInTheirPlace) {
  BCM6838X_SetVlanEntry(1, 10);
  BCM6838X_SetVlanEntry(2, 20);
  BCM6838X_SetVlanEntry(3, 30);
  for (std::size_t i = 0; i < 4; ++i) {
    g_vlanEntry[i].vlanAttr = static_cast<std::uint32_t>(100 + i);
    g_vlanEntry[i].unused.fill(static_cast<std::uint8_t>(i + 1));
  }
  BCM6838X_SetVlanEntry(1, 25);  // the first record goes, one is put between the others
  BCM6838X_SetVlanEntry(4, 5);
  EXPECT_EQ(g_vlanEntryCnt, 4);
  const std::array<std::uint16_t, 4> vids = {5, 20, 25, 30};
  const std::array<std::uint32_t, 4> masks = {8, 2, 1, 4};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(g_vlanEntry[i].vid, vids.at(i));
    EXPECT_EQ(g_vlanEntry[i].portMask, masks.at(i));
    EXPECT_EQ(g_vlanEntry[i].vlanAttr, 100 + i);
    EXPECT_THAT(g_vlanEntry[i].unused, testing::Each(i + 1));
  }
  std::uint16_t vid = 0;
  std::uint32_t ports = 0;
  std::uint32_t attr = 0;
  BCM6838X_GetFirstVlanEntry(&vid, &ports, &attr);
  EXPECT_EQ(attr, 100U);
  BCM6838X_GetNextVlanEntry(&vid, &ports, &attr);
  EXPECT_EQ(attr, 101U);
  EXPECT_EQ(g_vlanEntryGetCnt, 1);
}

// Required: moved-vlan-entry-skipped
TEST_F(VlanEntryStateTest, RecordThatMovesIntoAFreedPlace_IsNotLookedAtAgain) {
  g_vlanEntry[0] = {10, 1, 0, {}};
  g_vlanEntry[1] = {20, 1, 0, {}};
  g_vlanEntry[2] = {30, 3, 0, {}};
  g_vlanEntryCnt = 3;
  BCM6838X_SetVlanEntry(1, 40);
  // 10 is removed, 20 moves into its place and keeps the port, 30 loses it.
  ASSERT_EQ(g_vlanEntryCnt, 3);
  EXPECT_EQ(g_vlanEntry[0].vid, 20);
  EXPECT_EQ(g_vlanEntry[0].portMask, 1U);
  EXPECT_EQ(g_vlanEntry[1].vid, 30);
  EXPECT_EQ(g_vlanEntry[1].portMask, 2U);
  EXPECT_EQ(g_vlanEntry[2].vid, 40);
  EXPECT_EQ(g_vlanEntry[2].portMask, 1U);
}

TEST_F(VlanEntryStateTest, WalkPosition_HasSixteenBits) {
  BCM6838X_SetVlanEntry(1, 10);
  g_vlanEntryGetCnt = 0xFFFF;
  std::uint16_t vid = 0;
  std::uint32_t ports = 0;
  std::uint32_t attr = 0;
  EXPECT_EQ(BCM6838X_GetNextVlanEntry(&vid, &ports, &attr), 0U);
  EXPECT_EQ(vid, 10) << "it wraps to the first";
  g_vlanEntryGetCnt = 500;
  EXPECT_EQ(BCM6838X_GetNextVlanEntry(&vid, &ports, &attr), 12U);
  EXPECT_EQ(g_vlanEntryGetCnt, 0);
}

}  // namespace
}  // namespace hal_test
