/// @file
/// Tests of the trunk and translation lists: what is logged, what is stored and where, and what
/// the next apply makes of it.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

#include <bcm6838x_vlan.h>

#include "hal/vlan/chip_content.h"
#include "hal/vlan/vlan_port_test.h"

namespace hal_test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr std::uint32_t kCapacity = 512;
const std::string kPlace = "log 1 hal/switch/bcm6838x/src/bcm6838x_vlan_list.cpp ###### BCM6838X_";

std::string Refused(const std::string& operation, std::uint32_t port) {
  return "log 4 hal/switch/bcm6838x/src/bcm6838x_vlan_config.cpp [" + operation + " <line>] port " +
         std::to_string(port) + " is out of range\r\n";
}

/// An operation on the trunk list, and the form of its log line.
struct TrunkOperation {
  const char* name;
  std::uint32_t (*run)(const PortVlanTrunkEntry* req);
  const char* comma;
};

void PrintTo(const TrunkOperation& operation, std::ostream* out) {
  *out << operation.name;
}

constexpr TrunkOperation kTrunkOperations[] = {
    {"AddVlanTrunk", BCM6838X_AddVlanTrunk, ","},
    {"DelVlanTrunk", BCM6838X_DelVlanTrunk, ","},
    {"AddZteVlanTrunk", BCM6838X_AddZteVlanTrunk, ""},
    {"DelZteVlanTrunk", BCM6838X_DelZteVlanTrunk, ""},
};

class TrunkOperationTest : public VlanPortTest,
                           public testing::WithParamInterface<TrunkOperation> {};

TEST_P(TrunkOperationTest, LogsPortAndVidAndSendsNothing) {
  const PortVlanTrunkEntry request = {32, 0xAA, 65535};
  EXPECT_EQ(GetParam().run(&request), 0U);
  EXPECT_THAT(left(), ElementsAre(kPlace + GetParam().name + "(<line>)" + GetParam().comma +
                                  " port=32, vid=65535\r\n"));
}

TEST_P(TrunkOperationTest, Null_IsRefused) {
  EXPECT_EQ(GetParam().run(nullptr), 2U);
  EXPECT_THAT(left(), ElementsAre("log 4 hal/switch/bcm6838x/src/bcm6838x_vlan_list.cpp BCM6838X_" +
                                  std::string(GetParam().name) + "(<line>), null pointer\r\n"));
}

TEST_P(TrunkOperationTest, PortOutOfRange_IsRefused) {
  int rounds = 0;
  for (const std::uint8_t port : Ports({0, 33, 255})) {
    forget();
    const PortVlanTrunkEntry request = {port, 0, 100};
    EXPECT_EQ(GetParam().run(&request), 1U);
    EXPECT_EQ(left().back(), Refused(std::string("BCM6838X_") + GetParam().name, port));
    ++rounds;
  }
  EXPECT_EQ(rounds, 3);
  EXPECT_EQ(configNow(), Config().sent());
}

INSTANTIATE_TEST_SUITE_P(Operations, TrunkOperationTest, testing::ValuesIn(kTrunkOperations),
                         [](const testing::TestParamInfo<TrunkOperation>& test) {
                           return test.param.name;
                         });

/// Both pairs of operations edit one list in the same way.
struct TrunkPair {
  const char* name;
  std::uint32_t (*add)(const PortVlanTrunkEntry* req);
  std::uint32_t (*del)(const PortVlanTrunkEntry* req);
};

void PrintTo(const TrunkPair& pair, std::ostream* out) {
  *out << pair.name;
}

class TrunkListTest : public VlanPortTest, public testing::WithParamInterface<TrunkPair> {
 protected:
  static std::uint32_t add(std::uint8_t port, std::uint16_t vid) {
    const PortVlanTrunkEntry request = {port, 0, vid};
    return GetParam().add(&request);
  }

  static std::uint32_t del(std::uint8_t port, std::uint16_t vid) {
    const PortVlanTrunkEntry request = {port, 0, vid};
    return GetParam().del(&request);
  }
};

TEST_P(TrunkListTest, Add_TakesTheFirstFreeEntry) {
  add(1, 100);
  add(1, 300);
  add(1, 200);
  EXPECT_EQ(configNow(), Config().trunk(1, 0, 100).trunk(1, 1, 300).trunk(1, 2, 200).sent());
}

TEST_P(TrunkListTest, Add_PresentVid_ChangesNothing) {
  add(1, 100);
  EXPECT_EQ(add(1, 100), 0U);
  EXPECT_EQ(configNow(), Config().trunk(1, 0, 100).sent());
}

// Required: list-reserved-bytes-zero
TEST_P(TrunkListTest, Add_ReservedByteOfTheRequest_IsNotStored) {
  const PortVlanTrunkEntry request = {1, 0xAA, 100};
  GetParam().add(&request);
  EXPECT_EQ(configNow(), Config().trunk(1, 0, 100).sent());
  const PortVlanTrunkEntry again = {1, 0xBB, 100};
  GetParam().add(&again);
  EXPECT_EQ(configNow(), Config().trunk(1, 0, 100).sent()) << "nor compared";
  GetParam().del(&again);
  EXPECT_EQ(configNow(), Config().sent());
}

// Required: list-keeps-its-holes
TEST_P(TrunkListTest, Delete_FreesTheEntryWhereItStandsAndTheNextAddTakesIt) {
  add(1, 100);
  add(1, 200);
  add(1, 300);
  EXPECT_EQ(del(1, 200), 0U);
  EXPECT_EQ(configNow(), Config().trunk(1, 0, 100).trunk(1, 2, 300).sent());
  add(1, 400);
  add(1, 500);
  EXPECT_EQ(configNow(),
            Config().trunk(1, 0, 100).trunk(1, 1, 400).trunk(1, 2, 300).trunk(1, 3, 500).sent());
}

TEST_P(TrunkListTest, Delete_UnknownVid_ReturnsZeroAndChangesNothing) {
  add(1, 100);
  EXPECT_EQ(del(1, 101), 0U);
  EXPECT_EQ(del(2, 100), 0U);
  EXPECT_EQ(configNow(), Config().trunk(1, 0, 100).sent());
}

TEST_P(TrunkListTest, PortsHaveListsOfTheirOwn) {
  add(1, 100);
  add(3, 100);
  add(32, 4095);
  EXPECT_EQ(configNow(), Config().trunk(1, 0, 100).trunk(3, 0, 100).trunk(32, 0, 4095).sent());
  del(1, 100);
  EXPECT_EQ(configNow(), Config().trunk(3, 0, 100).trunk(32, 0, 4095).sent());
}

// Required: list-full-drops-and-commits
TEST_P(TrunkListTest, Add_BeyondTheLastEntry_IsDroppedSilently) {
  Config expected;
  for (std::uint32_t i = 0; i < kCapacity; ++i) {
    EXPECT_EQ(add(1, static_cast<std::uint16_t>(i + 1)), 0U);
    expected.trunk(1, i, static_cast<std::uint16_t>(i + 1));
  }
  EXPECT_EQ(add(1, 1000), 0U);
  EXPECT_EQ(configNow(), expected.sent());
  del(1, 512);
  add(1, 1000);
  EXPECT_EQ(configNow(), expected.trunk(1, 511, 1000).sent()) << "the last entry is used too";
}

TEST_P(TrunkListTest, Add_VidZero_TakesAnEntryWithThePortAlone) {
  add(1, 0);
  add(1, 0);
  add(1, 100);
  const std::string config = configNow();
  EXPECT_THAT(config, HasSubstr(" port[0].trunkList[0].port=1 port[0].trunkList[1].port=1 "
                                "port[0].trunkList[1].vid=100"));
  del(1, 0);
  EXPECT_EQ(configNow(), Config().trunk(1, 1, 100).sent());
}

INSTANTIATE_TEST_SUITE_P(
    Pairs, TrunkListTest,
    testing::Values(TrunkPair{"Trunk", BCM6838X_AddVlanTrunk, BCM6838X_DelVlanTrunk},
                    TrunkPair{"ZteTrunk", BCM6838X_AddZteVlanTrunk, BCM6838X_DelZteVlanTrunk},
                    TrunkPair{"Mixed", BCM6838X_AddVlanTrunk, BCM6838X_DelZteVlanTrunk}),
    [](const testing::TestParamInfo<TrunkPair>& test) { return test.param.name; });

class TranslationListTest : public VlanPortTest {
 protected:
  static std::string logged(const std::string& operation, const std::string& vids) {
    return kPlace + operation + "VlanTranslation(<line>) port=1, vid(" + vids + ")\r\n";
  }
};

TEST_F(TranslationListTest, AddAndDelete_LogAndSendNothing) {
  EXPECT_EQ(AddTranslation(1, 10, 20, 3, 4), 0U);
  EXPECT_THAT(left(), ElementsAre(logged("Add", "10->20")));
  forget();
  EXPECT_EQ(DelTranslation(1, 10, 20, 3, 4), 0U);
  EXPECT_THAT(left(), ElementsAre(logged("Del", "10->20")));
}

TEST_F(TranslationListTest, Add_StoresAllFieldsInTheFirstFreeEntry) {
  AddTranslation(1, 10, 20, 3, 4);
  AddTranslation(1, 0x1234, 0x5678, 0x9ABC, 0xDEF0);
  EXPECT_EQ(configNow(), Config()
                             .translation(1, 0, 10, 20, 3, 4)
                             .translation(1, 1, 0x1234, 0x5678, 0x9ABC, 0xDEF0)
                             .sent());
}

TEST_F(TranslationListTest, Add_PresentPair_ChangesNothing) {
  AddTranslation(1, 10, 20, 3, 4);
  EXPECT_EQ(AddTranslation(1, 10, 20, 3, 4), 0U);
  EXPECT_EQ(configNow(), Config().translation(1, 0, 10, 20, 3, 4).sent());
}

// Required: translation-compares-all-fields
TEST_F(TranslationListTest, Add_AnyFieldDiffers_IsAnotherEntry) {
  AddTranslation(1, 10, 20, 3, 4);
  AddTranslation(1, 11, 20, 3, 4);
  AddTranslation(1, 10, 21, 3, 4);
  AddTranslation(1, 10, 20, 2, 4);
  AddTranslation(1, 10, 20, 3, 5);
  AddTranslation(2, 10, 20, 3, 4);
  EXPECT_EQ(configNow(), Config()
                             .translation(1, 0, 10, 20, 3, 4)
                             .translation(1, 1, 11, 20, 3, 4)
                             .translation(1, 2, 10, 21, 3, 4)
                             .translation(1, 3, 10, 20, 2, 4)
                             .translation(1, 4, 10, 20, 3, 5)
                             .translation(2, 0, 10, 20, 3, 4)
                             .sent());
}

// Required: translation-compares-all-fields
TEST_F(TranslationListTest, Delete_AnyFieldDiffers_ChangesNothing) {
  AddTranslation(1, 10, 20, 3, 4);
  EXPECT_EQ(DelTranslation(1, 11, 20, 3, 4), 0U);
  EXPECT_EQ(DelTranslation(1, 10, 21, 3, 4), 0U);
  EXPECT_EQ(DelTranslation(1, 10, 20, 2, 4), 0U);
  EXPECT_EQ(DelTranslation(1, 10, 20, 3, 5), 0U);
  EXPECT_EQ(DelTranslation(2, 10, 20, 3, 4), 0U);
  EXPECT_EQ(configNow(), Config().translation(1, 0, 10, 20, 3, 4).sent());
}

// Required: list-keeps-its-holes
TEST_F(TranslationListTest, Delete_FreesTheEntryAndTheNextAddTakesIt) {
  AddTranslation(1, 10, 20);
  AddTranslation(1, 11, 21);
  AddTranslation(1, 12, 22);
  DelTranslation(1, 11, 21);
  EXPECT_EQ(configNow(),
            Config().translation(1, 0, 10, 20, 0, 0).translation(1, 2, 12, 22, 0, 0).sent());
  AddTranslation(1, 13, 23);
  EXPECT_EQ(configNow(), Config()
                             .translation(1, 0, 10, 20, 0, 0)
                             .translation(1, 1, 13, 23, 0, 0)
                             .translation(1, 2, 12, 22, 0, 0)
                             .sent());
}

// Required: list-reserved-bytes-zero
TEST_F(TranslationListTest, Add_ReservedByteOfTheRequest_IsNotStored) {
  const PortVlanTransEntry request = {1, 0xAA, 4, 10, 3, 20};
  BCM6838X_AddVlanTranslation(&request);
  EXPECT_EQ(configNow(), Config().translation(1, 0, 10, 20, 3, 4).sent());
}

TEST_F(TranslationListTest, Add_BeyondTheLastEntry_IsDroppedSilently) {
  Config expected;
  for (std::uint32_t i = 0; i < kCapacity; ++i) {
    const auto vid = static_cast<std::uint16_t>(i + 1);
    EXPECT_EQ(AddTranslation(1, vid, 20), 0U);
    expected.translation(1, i, vid, 20, 0, 0);
  }
  EXPECT_EQ(AddTranslation(1, 1000, 20), 0U);
  EXPECT_EQ(configNow(), expected.sent());
}

TEST_F(TranslationListTest, NullAndPortOutOfRange_AreRefused) {
  EXPECT_EQ(BCM6838X_AddVlanTranslation(nullptr), 2U);
  EXPECT_EQ(BCM6838X_DelVlanTranslation(nullptr), 2U);
  const std::string place = "log 4 hal/switch/bcm6838x/src/bcm6838x_vlan_list.cpp BCM6838X_";
  EXPECT_THAT(left(), ElementsAre(place + "AddVlanTranslation(<line>), null pointer\r\n",
                                  place + "DelVlanTranslation(<line>), null pointer\r\n"));
  int rounds = 0;
  for (const std::uint8_t port : Ports({0, 33, 255})) {
    EXPECT_EQ(AddTranslation(port, 10, 20), 1U);
    EXPECT_EQ(left().back(), Refused("BCM6838X_AddVlanTranslation", port));
    EXPECT_EQ(DelTranslation(port, 10, 20), 1U);
    EXPECT_EQ(left().back(), Refused("BCM6838X_DelVlanTranslation", port));
    ++rounds;
  }
  EXPECT_EQ(rounds, 3);
  EXPECT_EQ(configNow(), Config().sent());
}

/// What reaches the chip, and when: the lists of a port in trunk mode with VLANs 100 and 200.
class ListEffectTest : public VlanPortTest {
 protected:
  void SetUp() override {
    VlanPortTest::SetUp();
    BCM6838X_SetPortPvid(1, 10);
    AddTrunk(1, 100);
    AddTrunk(1, 200);
    BCM6838X_SetVlanTrunk(1);
    forget();
  }

  [[nodiscard]] static auto hasFlowsOf(std::uint32_t vid) {
    return Contains(HasSubstr("outerVid=" + std::to_string(vid) + " "));
  }
};

TEST_F(ListEffectTest, Add_ReachesTheChipWithTheNextApply) {
  AddTrunk(1, 300);
  EXPECT_THAT(ChipContent(unit), Not(hasFlowsOf(300)));
  BCM6838X_ApplyVlan(1);
  EXPECT_THAT(ChipContent(unit), hasFlowsOf(300));
}

TEST_F(ListEffectTest, Add_IsCommittedAndTheNextClearFindsNoRuleOfIt) {
  AddTrunk(1, 300);
  forget();
  BCM6838X_ClearVlanRule(1);
  EXPECT_EQ(CountOf(commands(), "FLOW_DEL"), 8 + 1 + 8 + 1 + 1 + 1)
      << "eight flows a VLAN and its downstream flow, the untagged flow and its downstream flow";
}

TEST_F(ListEffectTest, Delete_IsRemovedFromTheChipByTheNextApply) {
  DelTrunk(1, 100);
  EXPECT_THAT(ChipContent(unit), hasFlowsOf(100));
  BCM6838X_ApplyVlan(1);
  EXPECT_THAT(ChipContent(unit), Not(hasFlowsOf(100)));
  EXPECT_THAT(ChipContent(unit), hasFlowsOf(200));
}

TEST_F(ListEffectTest, Delete_IsRemovedFromTheChipByTheNextChangeOfMode) {
  DelTrunk(1, 100);
  BCM6838X_SetVlanTag(1);
  EXPECT_THAT(ChipContent(unit), Not(hasFlowsOf(100)));
}

/// Something that commits, on another port.
struct Commit {
  const char* name;
  void (*run)();
};

void PrintTo(const Commit& commit, std::ostream* out) {
  *out << commit.name;
}

class CommitTest : public ListEffectTest, public testing::WithParamInterface<Commit> {};

// Required: commit-copies-all-ports
TEST_P(CommitTest, OfAnotherPort_LosesADeletedEntryWhoseRulesThenStay) {
  DelTrunk(1, 100);
  GetParam().run();
  BCM6838X_ApplyVlan(1);
  EXPECT_THAT(ChipContent(unit), hasFlowsOf(100));
}

INSTANTIATE_TEST_SUITE_P(
    Operations, CommitTest,
    testing::Values(Commit{"AddVlanTrunk", [] { AddTrunk(2, 300); }},
                    Commit{"AddZteVlanTrunk", [] { AddZteTrunk(2, 300); }},
                    Commit{"AddVlanTranslation", [] { AddTranslation(2, 10, 20); }},
                    Commit{"AddVlanStacking", [] { AddStacking(StackRange(2, 10, 10)); }},
                    Commit{"DelVlanStacking", [] { DelStacking(StackRange(2, 10, 11)); }},
                    Commit{"SetPortPvid", [] { BCM6838X_SetPortPvid(2, 50); }},
                    Commit{"SetPortPriority", [] { BCM6838X_SetPortPriority(2, 5); }},
                    Commit{"SetVlanTag", [] { BCM6838X_SetVlanTag(2); }},
                    Commit{"ApplyVlan", [] { BCM6838X_ApplyVlan(2); }}),
    [](const testing::TestParamInfo<Commit>& test) { return test.param.name; });

TEST_F(ListEffectTest, AddOnTheSamePort_LosesADeletedEntryWhoseRulesThenStay) {
  DelTrunk(1, 100);
  AddTrunk(1, 300);
  BCM6838X_ApplyVlan(1);
  EXPECT_THAT(ChipContent(unit), hasFlowsOf(100));
}

class NoCommitTest : public ListEffectTest, public testing::WithParamInterface<Commit> {
 protected:
  void SetUp() override {
    ListEffectTest::SetUp();
    AddTrunk(2, 300);
    AddTranslation(2, 10, 20);
    BCM6838X_SetPortPvid(2, 50);
    BCM6838X_SetPortPriority(2, 5);
    BCM6838X_SetVlanTag(2);
  }
};

// Required: list-delete-no-commit
TEST_P(NoCommitTest, LeavesADeletedEntryToTheNextApply) {
  DelTrunk(1, 100);
  GetParam().run();
  BCM6838X_ApplyVlan(1);
  EXPECT_THAT(ChipContent(unit), Not(hasFlowsOf(100)));
}

INSTANTIATE_TEST_SUITE_P(
    Operations, NoCommitTest,
    testing::Values(Commit{"AddPresentTrunk", [] { AddTrunk(2, 300); }},
                    Commit{"AddPresentZteTrunk", [] { AddZteTrunk(2, 300); }},
                    Commit{"AddPresentTranslation", [] { AddTranslation(2, 10, 20); }},
                    Commit{"DelVlanTrunk", [] { DelTrunk(2, 300); }},
                    Commit{"DelZteVlanTrunk", [] { DelZteTrunk(2, 300); }},
                    Commit{"DelVlanTranslation", [] { DelTranslation(2, 10, 20); }},
                    Commit{"RefusedStacking", [] { AddStacking(StackRange(2, 10, 10, 0)); }},
                    Commit{"SamePvid", [] { BCM6838X_SetPortPvid(2, 50); }},
                    Commit{"SamePriority", [] { BCM6838X_SetPortPriority(2, 5); }},
                    Commit{"SameMode", [] { BCM6838X_SetVlanTag(2); }},
                    Commit{"SameCtcMode", [] { BCM6838X_SetPortCtcMode(2, 1); }},
                    Commit{"UnknownCtcMode", [] { BCM6838X_SetPortCtcMode(2, 7); }},
                    Commit{"ClearVlanRule", [] { BCM6838X_ClearVlanRule(2); }},
                    Commit{"RebuildVlanRule", [] { BCM6838X_RebuildVlanRule(2); }},
                    Commit{"RefusedPort", [] { BCM6838X_SetVlanTag(33); }}),
    [](const testing::TestParamInfo<Commit>& test) { return test.param.name; });

}  // namespace
}  // namespace hal_test
