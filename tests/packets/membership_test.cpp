/// @file
/// Tests of the reading of membership messages.
#include "clients/membership.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "support/sample_frames.h"

namespace virtual_onu {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const Bytes kGroup4 = Hex("ef010101");
const Bytes kGroup6 = Hex("ff020000000000000000000000010003");

/// An IGMP message of at most 99 bytes in a frame without IP options.
Bytes Igmp(const std::string& message) {
  const Bytes bytes = Hex(message);
  Bytes frame =
      Hex("01005e010101 020000000001 0800 4500 0000 0001 0000 01 02 0000 c0000201 ef010101");
  frame.at(17) = static_cast<std::uint8_t>(20 + bytes.size());
  frame.insert(frame.end(), bytes.begin(), bytes.end());
  return frame;
}

/// The sample report with another message.
Bytes Mld(const std::string& message) {
  const Bytes bytes = Hex(message);
  Bytes frame = Hex(kMldReport);
  frame.resize(14 + 40 + 8);
  frame.at(14 + 5) = static_cast<std::uint8_t>(8 + bytes.size());
  frame.insert(frame.end(), bytes.begin(), bytes.end());
  return frame;
}

MembershipChange Joins(Bytes group) {
  return {std::move(group), true};
}

MembershipChange Leaves(Bytes group) {
  return {std::move(group), false};
}

TEST(Membership, SingleMessages_NameTheirGroup) {
  EXPECT_THAT(MembershipChanges(Hex(kIgmpReport)), ElementsAre(Joins(kGroup4)));
  EXPECT_THAT(MembershipChanges(Igmp("1200 0000 ef010101")), ElementsAre(Joins(kGroup4)));
  EXPECT_THAT(MembershipChanges(Igmp("1700 0000 ef010101")), ElementsAre(Leaves(kGroup4)));
  EXPECT_THAT(MembershipChanges(Igmp("1100 0000 ef010101")), IsEmpty()) << "a query";
  EXPECT_THAT(MembershipChanges(Hex(kMldReport)), ElementsAre(Joins(kGroup6)));
  const std::string group = "ff020000000000000000000000010003";
  EXPECT_THAT(MembershipChanges(Mld("8400 0000 0000 0000" + group)), ElementsAre(Leaves(kGroup6)));
  EXPECT_THAT(MembershipChanges(Mld("8200 0000 0000 0000" + group)), IsEmpty()) << "a query";
}

struct RecordRow {
  std::string type;
  bool withSource;
  std::vector<MembershipChange> changes;
};

TEST(Membership, Records_JoinAndLeaveByTypeAndSources) {
  const std::vector<RecordRow> rows = {
      {"00", false, {}},
      {"01", false, {Leaves(kGroup4)}},
      {"01", true, {Joins(kGroup4)}},
      {"02", false, {Joins(kGroup4)}},
      {"02", true, {Joins(kGroup4)}},
      {"03", false, {Leaves(kGroup4)}},
      {"03", true, {Joins(kGroup4)}},
      {"04", false, {Joins(kGroup4)}},
      {"05", true, {Joins(kGroup4)}},
      {"05", false, {}},
      {"06", true, {}},
      {"07", true, {}},
  };
  for (const RecordRow& row : rows) {
    const std::string sources = row.withSource ? "0001 ef010101 c0000207" : "0000 ef010101";
    EXPECT_EQ(MembershipChanges(Igmp("2200 0000 0000 0001" + row.type + "00" + sources)),
              row.changes)
        << row.type << (row.withSource ? " with a source" : "");
  }
}

TEST(Membership, Records_AreReadOneBehindTheOther) {
  const std::string first = "0401 0001 ef010101 c0000207 aabbccdd";  // a source, auxiliary data
  const std::string second = "0300 0000 ef010102";
  EXPECT_THAT(MembershipChanges(Igmp("2200 0000 0000 0002" + first + second)),
              ElementsAre(Joins(kGroup4), Leaves(Hex("ef010102"))));
  EXPECT_THAT(MembershipChanges(Igmp("2200 0000 0000 0001" + first + second)),
              ElementsAre(Joins(kGroup4)));
  const std::string record6 = "0400 0000 ff020000000000000000000000010003";
  EXPECT_THAT(MembershipChanges(Mld("8f00 0000 0000 0001" + record6)), ElementsAre(Joins(kGroup6)));
}

TEST(Membership, DamagedMessages_EndWhereTheBytesEnd) {
  const std::string first = "0400 0000 ef010101";
  for (const char* rest : {"", "04", "0400 0000 ef0101", "0400 0001 ef010102 c00002",
                           "0401 0000 ef010102 aabb", "0400 ffff ef010102 c0000207"}) {
    EXPECT_THAT(MembershipChanges(Igmp("2200 0000 0000 ffff" + first + rest)),
                ElementsAre(Joins(kGroup4)))
        << rest;
  }
  for (const char* message : {"", "22", "2200 0000 0000 00", "1600 0000 ef0101", "16"}) {
    EXPECT_THAT(MembershipChanges(Igmp(message)), IsEmpty()) << message;
  }
  EXPECT_THAT(MembershipChanges(Mld("8300 0000 0000 0000 ff02")), IsEmpty());
  EXPECT_THAT(MembershipChanges(Hex(kUdp4)), IsEmpty());
  EXPECT_THAT(MembershipChanges(Hex(kUntagged)), IsEmpty());
  EXPECT_THAT(MembershipChanges({}), IsEmpty());
}

TEST(Membership, GroupMac_HoldsTheLowBitsOfTheGroup) {
  EXPECT_EQ(GroupMac(Hex("ef818283")), Hex("01005e018283"));
  EXPECT_EQ(GroupMac(kGroup6), Hex("333300010003"));
}

}  // namespace
}  // namespace virtual_onu
