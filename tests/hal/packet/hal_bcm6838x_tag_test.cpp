/// @file
/// Tests of the VLAN tag helpers.
#include <algorithm>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <hal_bcm6838x.h>

#include "packet_bytes.h"
#include "support/library_test.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kLog = "log 4 hal/switch/bcm6838x/src/hal_bcm6838x_tag.cpp ";

/// What GetTag tells of a frame; 777 stands for an output that was not written.
struct TagTold {
  std::uint32_t count;
  std::uint16_t vid;
  std::uint16_t priority;
  bool operator==(const TagTold&) const = default;
};

TagTold GetTag(const Bytes& frame) {
  TagTold told = {0, 777, 777};
  told.count = BCM6838X_GetTag(frame.data(), &told.vid, &told.priority);
  return told;
}

class TagTest : public LibraryTest {
 protected:
  /// A frame with room for a tag behind it.
  static Bytes room(Bytes frame) {
    frame.resize(frame.size() + 4, 0xEE);
    return frame;
  }
};

// Required: single-88a8-is-untagged
TEST_F(TagTest, GetTag_CountsTheTagsAndTellsTheOuterOne) {
  struct Row {
    std::vector<TagBytes> tags;
    TagTold told;
  };
  const TagTold untagged = {0, 777, 777};
  const std::vector<Row> rows = {
      {{}, untagged},
      {{{0x8100, 0x0064}}, {1, 100, 0}},
      {{{0x8100, 0xBFFF}}, {1, 4095, 5}},
      {{{0x8100, 0xF000}}, {1, 0, 7}},
      {{{0x8100, 0x2123}, {0x8100, 0x4456}}, {2, 0x123, 1}},
      {{{0x88A8, 0x2123}, {0x8100, 0x4456}}, {2, 0x123, 1}},
      {{{0x8100, 0x2123}, {0x88A8, 0x4456}}, {1, 0x123, 1}},
      {{{0x88A8, 0x2123}}, untagged},
      {{{0x88A8, 0x2123}, {0x88A8, 0x4456}}, untagged},
      {{{0x9100, 0x2123}, {0x8100, 0x4456}}, untagged},
      {{{0x8101, 0x2123}, {0x8100, 0x4456}}, untagged},
      {{{0x0081, 0x2123}, {0x8100, 0x4456}}, untagged},
  };
  std::size_t checked = 0;
  for (const Row& row : rows) {
    EXPECT_EQ(GetTag(FrameDraft{.tags = row.tags}.bytes()), row.told) << checked;
    ++checked;
  }
  EXPECT_EQ(checked, 12U);
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(TagTest, GetTag_ReadsEighteenBytes) {
  const Bytes frame = FrameDraft{.tags = {{0x8100, 0x2123}}, .size = 18}.bytes();
  ASSERT_EQ(frame.size(), 18U);
  const GuardedBytes guarded(frame);
  std::uint16_t vid = 0;
  std::uint16_t priority = 0;
  EXPECT_EQ(BCM6838X_GetTag(guarded.data(), &vid, &priority), 1U);
}

TEST_F(TagTest, GetTag_NullPointer_IsLoggedAndCountsAsUntagged) {
  const Bytes frame = FrameDraft{.tags = {{0x8100, 1}}}.bytes();
  std::uint16_t value = 7;
  EXPECT_EQ(BCM6838X_GetTag(nullptr, &value, &value), 0U);
  EXPECT_EQ(BCM6838X_GetTag(frame.data(), nullptr, &value), 0U);
  EXPECT_EQ(BCM6838X_GetTag(frame.data(), &value, nullptr), 0U);
  EXPECT_EQ(value, 7);
  const std::string line = kLog + "BCM6838X_GetTag(<line>), null pointer\r\n";
  EXPECT_THAT(left(), ElementsAre(line, line, line));
}

TEST_F(TagTest, AddVlanTag_MovesTheFrameBehindTheAddresses) {
  const FrameDraft draft = {.size = 100};
  Bytes frame = room(draft.bytes());
  std::uint32_t size = 100;
  EXPECT_EQ(BCM6838X_AddVlanTag(frame.data(), &size, 0x123, 5), 0U);
  EXPECT_EQ(size, 104U);
  FrameDraft tagged = {.tags = {{0x8100, 0xA123}}, .size = 18};
  Bytes expected = tagged.bytes();
  const Bytes original = draft.bytes();
  expected.insert(expected.end(), original.begin() + 14, original.end());
  EXPECT_EQ(frame, expected);
}

// Required: written-tags-clear-dei
TEST_F(TagTest, AddVlanTag_KeepsTwelveBitsOfTheVidAndThreeOfThePriority) {
  struct Row {
    std::uint32_t vid;
    std::uint32_t priority;
    std::uint16_t control;
  };
  const std::vector<Row> rows = {{0, 0, 0},           {4095, 7, 0xEFFF},    {0x1123, 0, 0x0123},
                                 {0xFFFF, 8, 0x0FFF}, {0x10100, 9, 0x2100}, {256, 255, 0xE100}};
  for (const Row& row : rows) {
    Bytes frame = room(FrameDraft{}.bytes());
    std::uint32_t size = 64;
    BCM6838X_AddVlanTag(frame.data(), &size, row.vid, row.priority);
    EXPECT_EQ((frame[12] << 8) | frame[13], 0x8100);
    EXPECT_EQ((frame[14] << 8) | frame[15], row.control) << row.vid << " " << row.priority;
  }
}

TEST_F(TagTest, AddVlanTag_LengthsFromTwelveTo2044_AreTaken) {
  for (const std::uint32_t length : {12U, 13U, 60U, 2043U, 2044U}) {
    Bytes frame = FrameDraft{.size = 2044}.bytes();
    frame.resize(length);
    const GuardedBytes guarded(room(frame));
    std::uint32_t size = length;
    EXPECT_EQ(BCM6838X_AddVlanTag(guarded.data(), &size, 1, 0), 0U);
    EXPECT_EQ(size, length + 4);
    EXPECT_TRUE(std::equal(frame.begin() + 12, frame.end(), guarded.data() + 16)) << length;
  }
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(TagTest, AddVlanTag_OtherLengths_AreRefusedWithALogLine) {
  const std::vector<std::uint32_t> lengths = {0, 11, 2045, 2048, 2049, 0x10000, 0xFFFFFFFF};
  const Bytes frame = FrameDraft{}.bytes();
  for (const std::uint32_t length : lengths) {
    forget();
    const GuardedBytes guarded(frame);
    std::uint32_t size = length;
    EXPECT_EQ(BCM6838X_AddVlanTag(guarded.data(), &size, 1, 0), 0U);
    EXPECT_EQ(size, length);
    EXPECT_TRUE(std::equal(frame.begin(), frame.end(), guarded.data()));
    EXPECT_THAT(left(), ElementsAre(kLog + "BCM6838X_AddVlanTag(<line>), frame of " +
                                    std::to_string(length) + " bytes cannot gain a tag\r\n"));
  }
}

TEST_F(TagTest, AddVlanTag_NullPointer_IsLogged) {
  Bytes frame = FrameDraft{}.bytes();
  std::uint32_t size = 64;
  EXPECT_EQ(BCM6838X_AddVlanTag(nullptr, &size, 1, 0), 0U);
  EXPECT_EQ(BCM6838X_AddVlanTag(frame.data(), nullptr, 1, 0), 0U);
  EXPECT_EQ(size, 64U);
  EXPECT_EQ(frame, FrameDraft{}.bytes());
  const std::string line = kLog + "BCM6838X_AddVlanTag(<line>), null pointer\r\n";
  EXPECT_THAT(left(), ElementsAre(line, line));
}

// Required: written-tags-clear-dei
TEST_F(TagTest, TranslateVlanTag_RewritesTheControlWordAlone) {
  Bytes frame = FrameDraft{.tags = {{0x8100, 0xFFFF}, {0x8100, 0x2222}}}.bytes();
  EXPECT_EQ(BCM6838X_TranslateVlanTag(frame.data(), 0x1456, 11), 0U);
  Bytes expected = FrameDraft{.tags = {{0x8100, 0x6456}, {0x8100, 0x2222}}}.bytes();
  EXPECT_EQ(frame, expected);
}

TEST_F(TagTest, TranslateVlanTag_WithoutACustomerTag_ChangesNothing) {
  for (const std::uint16_t type : {std::uint16_t{0x88A8}, std::uint16_t{0x0800},
                                   std::uint16_t{0x8101}, std::uint16_t{0x0100}}) {
    Bytes frame = FrameDraft{.tags = {{type, 0x2123}, {0x8100, 1}}}.bytes();
    const Bytes before = frame;
    EXPECT_EQ(BCM6838X_TranslateVlanTag(frame.data(), 1, 1), 1U) << type;
    EXPECT_EQ(frame, before);
  }
  EXPECT_EQ(BCM6838X_TranslateVlanTag(nullptr, 1, 1), 2U);
  EXPECT_THAT(left(), ElementsAre(kLog + "BCM6838X_TranslateVlanTag(<line>), null pointer\r\n"));
}

TEST_F(TagTest, TranslateVlanTag_NeedsSixteenBytes) {
  Bytes frame = FrameDraft{.tags = {{0x8100, 1}}}.bytes();
  frame.resize(16);
  const GuardedBytes guarded(frame);
  EXPECT_EQ(BCM6838X_TranslateVlanTag(guarded.data(), 2, 1), 0U);
  EXPECT_EQ(guarded.data()[15], 2);
}

TEST_F(TagTest, RemoveVlanTag_MovesTheFrameDown) {
  Bytes frame = FrameDraft{.tags = {{0x8100, 0xA123}, {0x8100, 0x0456}}, .size = 100}.bytes();
  const Bytes before = frame;
  std::uint32_t size = 100;
  EXPECT_EQ(BCM6838X_RemoveVlanTag(frame.data(), &size), 0U);
  EXPECT_EQ(size, 96U);
  Bytes expected(before.begin(), before.begin() + 12);
  expected.insert(expected.end(), before.begin() + 16, before.end());
  frame.resize(96);
  EXPECT_EQ(frame, expected);
}

TEST_F(TagTest, RemoveVlanTag_OfWhatAddVlanTagMade_GivesTheFrameBack) {
  const Bytes original = FrameDraft{.size = 1514}.bytes();
  Bytes frame = room(original);
  std::uint32_t size = 1514;
  BCM6838X_AddVlanTag(frame.data(), &size, 77, 3);
  EXPECT_EQ(BCM6838X_RemoveVlanTag(frame.data(), &size), 0U);
  EXPECT_EQ(size, 1514U);
  frame.resize(size);
  EXPECT_EQ(frame, original);
}

TEST_F(TagTest, RemoveVlanTag_WithoutACustomerTag_ChangesNothing) {
  for (const std::uint16_t type : {std::uint16_t{0x88A8}, std::uint16_t{0x0800}}) {
    Bytes frame = FrameDraft{.tags = {{type, 0x2123}, {0x8100, 1}}}.bytes();
    const Bytes before = frame;
    std::uint32_t size = 64;
    EXPECT_EQ(BCM6838X_RemoveVlanTag(frame.data(), &size), 1U);
    EXPECT_EQ(size, 64U);
    EXPECT_EQ(frame, before);
  }
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(TagTest, RemoveVlanTag_TheTagMustLieInTheFrame) {
  const Bytes frame = FrameDraft{.tags = {{0x8100, 1}}, .size = 16}.bytes();
  for (const std::uint32_t length : {0U, 4U, 12U, 14U, 15U}) {
    const GuardedBytes guarded(ByteView(frame).first(length));
    std::uint32_t size = length;
    EXPECT_EQ(BCM6838X_RemoveVlanTag(guarded.data(), &size), 1U);
    EXPECT_EQ(size, length);
  }
  const GuardedBytes guarded(ByteView(frame).first(16));
  std::uint32_t size = 16;
  EXPECT_EQ(BCM6838X_RemoveVlanTag(guarded.data(), &size), 0U);
  EXPECT_EQ(size, 12U);
}

TEST_F(TagTest, RemoveVlanTag_MoreThan2048Bytes_AreRefusedWithALogLine) {
  Bytes frame = FrameDraft{.tags = {{0x8100, 1}}, .size = 2048}.bytes();
  for (const std::uint32_t length : {2049U, 0xFFFFFFFFU}) {
    forget();
    std::uint32_t size = length;
    EXPECT_EQ(BCM6838X_RemoveVlanTag(frame.data(), &size), 1U);
    EXPECT_EQ(size, length);
    EXPECT_THAT(left(), ElementsAre(kLog + "BCM6838X_RemoveVlanTag(<line>), frame of " +
                                    std::to_string(length) + " bytes is too long\r\n"));
  }
  std::uint32_t size = 2048;
  EXPECT_EQ(BCM6838X_RemoveVlanTag(frame.data(), &size), 0U);
}

TEST_F(TagTest, RemoveVlanTag_NullPointer_IsLogged) {
  Bytes frame = FrameDraft{.tags = {{0x8100, 1}}}.bytes();
  std::uint32_t size = 64;
  EXPECT_EQ(BCM6838X_RemoveVlanTag(nullptr, &size), 2U);
  EXPECT_EQ(BCM6838X_RemoveVlanTag(frame.data(), nullptr), 2U);
  const std::string line = kLog + "BCM6838X_RemoveVlanTag(<line>), null pointer\r\n";
  EXPECT_THAT(left(), ElementsAre(line, line));
}

}  // namespace
}  // namespace hal_test
