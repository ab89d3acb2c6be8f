/// @file
/// Tests of the ports' VLAN rules as they apply to a frame: every row of both tables, every place
/// of a list, every length. Modes and lists are set in the table of the configuration.
#include <algorithm>
#include <cstdint>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include <hal_bcm6838x.h>

#include "packet_bytes.h"
#include "support/library_tables.h"
#include "support/library_test.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Tags = std::vector<TagBytes>;
using MaybeTags = std::optional<Tags>;  ///< nothing: dropped

const std::string kNoMode =
    "log 1 hal/switch/bcm6838x/src/hal_bcm6838x_classify.cpp "
    "CTC mode : PORTCFG_CTCMODE_NONE\r\n";
const std::string kLog =
    "log 4 hal/switch/bcm6838x/src/hal_bcm6838x_classify.cpp BCM6838X_AccordVlan(<line>), ";
const std::string kTagLog =
    "log 4 hal/switch/bcm6838x/src/hal_bcm6838x_tag.cpp BCM6838X_AddVlanTag(<line>), ";

constexpr std::size_t kListEntries = 512;
constexpr std::uint16_t kPvid = 100;
constexpr TagBytes kOwnTag = {0x8100, 0x6000 | kPvid};  ///< PVID and priority 3 of the port

Bytes FrameWith(const Tags& tags) {
  Bytes payload(46);
  for (std::size_t i = 0; i < payload.size(); ++i) {
    payload[i] = static_cast<std::uint8_t>(0xC0 + i);
  }
  return FrameDraft{.tags = tags, .payload = payload, .size = 0}.bytes();
}

/// A list without free entries and with VIDs from 3000 on, beside the entries that a test looks
/// for.
void FillLists(PortVlanInfo& config) {
  for (std::size_t i = 0; i < kListEntries; ++i) {
    const auto vid = static_cast<std::uint16_t>(3000 + i);
    config.trunkList[i] = {1, 0, vid};
    config.translationList[i] = {1, 0, 7, vid, 7, static_cast<std::uint16_t>(vid + 550)};
    config.stackingList[i] = {1, {}, 2, vid, 0, static_cast<std::uint16_t>(vid + 550)};
  }
  config.trunkList[0].vid = 10;
  config.trunkList[255].vid = 15;
  config.trunkList[511].vid = 20;
  config.translationList[0] = {1, 0, 1, 10, 6, 200};
  config.translationList[256] = {1, 0, 4, 10, 4, 200};
  config.translationList[511] = {1, 0, 2, 20, 5, 220};
  config.stackingList[0] = {1, {}, 2, 10, 0, 300};
  config.stackingList[100] = {1, {}, 1, 30, 0, 301};
  config.stackingList[101] = {1, {}, 2, 30, 0, 302};
  config.stackingList[200] = {1, {}, 0, 40, 0, 303};
  config.stackingList[256] = {1, {}, 2, 10, 0, 304};
  config.stackingList[511] = {1, {}, 2, 20, 0, 320};
}

class AccordTest : public LibraryTest {
 protected:
  void SetUp() override {
    config_.pvid = kPvid;
    config_.priority = 3;
    FillLists(config_);
  }

  struct Judged {
    std::uint32_t result;
    Bytes frame;
  };

  /// What becomes of a frame between two ports.
  static Judged judge(const Bytes& frame, std::uint32_t source, std::uint32_t destination) {
    RdpaPkt packet = {};
    std::ranges::copy(frame, packet.data);
    packet.size = static_cast<std::uint32_t>(frame.size());
    packet.desPort = 0x11111111;
    const std::uint32_t result = BCM6838X_AccordVlan(packet.data, &packet, source, destination);
    EXPECT_EQ(packet.desPort, 0x11111111U);
    return {result, Bytes(packet.data, packet.data + packet.size)};
  }

  /// Expects one row of a table: what becomes of the tags in one mode.
  void expect(bool upstream, std::uint32_t mode, const Tags& before, const MaybeTags& after) {
    config_.vlanMode = mode;
    const Judged judged = judge(FrameWith(before), upstream ? 2 : 0, upstream ? 0 : 2);
    std::string row = (upstream ? "upstream mode " : "downstream mode ") + std::to_string(mode);
    for (const TagBytes& tag : before) {
      row += " " + std::to_string(tag.type) + ":" + std::to_string(tag.control);
    }
    EXPECT_EQ(judged.result, after ? 0U : 1U) << row;
    if (after) {
      EXPECT_EQ(judged.frame, FrameWith(*after)) << row;
    }
    ++rows_;
  }

  void up(std::uint32_t mode, const Tags& before, const MaybeTags& after) {
    expect(true, mode, before, after);
  }
  void down(std::uint32_t mode, const Tags& before, const MaybeTags& after) {
    expect(false, mode, before, after);
  }

  PortVlanInfo& config_ = g_PortVlanInfo[1];
  std::size_t rows_ = 0;
};

const MaybeTags kDropped = std::nullopt;
const TagBytes kServiceTag = {0x88A8, 10};
const TagBytes kOther = {0x8100, 0x4005};  ///< VID 5, which is in no list
const TagBytes kFirst = {0x8100, 0xA00A};  ///< VID 10, the first of every list
const TagBytes kLast = {0x8100, 0x0014};   ///< VID 20, the last of every list

TEST_F(AccordTest, Upstream_Transparent) {
  for (const Tags& tags :
       {Tags{}, Tags{kOther}, Tags{kOther, kFirst}, Tags{kServiceTag}, Tags{kServiceTag, kOther}}) {
    up(0, tags, tags);
  }
  EXPECT_EQ(rows_, 5U);
}

TEST_F(AccordTest, Upstream_Tag) {
  up(1, {}, Tags{kOwnTag});
  up(1, {kServiceTag}, Tags{kOwnTag, kServiceTag});
  up(1, {kOther}, kDropped);
  up(1, {kOwnTag}, kDropped);
  up(1, {{0x8100, 0}}, kDropped);
  up(1, {kServiceTag, kOther}, kDropped);
  EXPECT_THAT(left(), IsEmpty()) << "frames are dropped silently";
}

TEST_F(AccordTest, Upstream_TrunkAndHybrid) {
  for (const std::uint32_t mode : {4U, 20U}) {
    up(mode, {}, Tags{kOwnTag});
    up(mode, {kServiceTag}, Tags{kOwnTag, kServiceTag});
    up(mode, {kFirst}, Tags{kFirst});
    up(mode, {kLast}, Tags{kLast});
    up(mode, {{0x8100, 15}}, Tags{{0x8100, 15}});
    up(mode, {kFirst, kOther}, Tags{kFirst, kOther});
    up(mode, {kServiceTag, kOther}, Tags{kServiceTag, kOther});
    up(mode, {kOther}, kDropped);
    up(mode, {kOther, kFirst}, kDropped);
    up(mode, {kOwnTag}, kDropped);
    up(mode, {{0x8100, 0xE000}}, kDropped);
  }
  config_.trunkList[300] = {};
  up(4, {{0x8100, 0xE000}}, Tags{{0x8100, 0xE000}});
  up(4, {}, Tags{kOwnTag});
  EXPECT_EQ(rows_, 24U);
}

TEST_F(AccordTest, Upstream_ZteTrunk) {
  up(19, {}, kDropped);
  up(19, {kServiceTag}, kDropped);
  up(19, {kFirst}, Tags{kFirst});
  up(19, {kLast}, Tags{kLast});
  up(19, {kOther}, kDropped);
  for (const std::size_t place : {std::size_t{0}, std::size_t{511}}) {
    FillLists(config_);
    config_.trunkList[place] = {};
    up(19, {}, Tags{});
    up(19, {kServiceTag}, Tags{kServiceTag});
  }
  EXPECT_EQ(rows_, 9U);
}

TEST_F(AccordTest, Upstream_Translation) {
  for (const std::uint32_t mode : {2U, 3U}) {
    up(mode, {}, Tags{kOwnTag});
    up(mode, {kServiceTag}, Tags{kOwnTag, kServiceTag});
    up(mode, {kFirst}, Tags{{0x8100, 0xC000 | 200}});
    up(mode, {kLast}, Tags{{0x8100, 0xA000 | 220}});
    up(mode, {{0x8100, 0xF00A}}, Tags{{0x8100, 0xC000 | 200}});
    up(mode, {kFirst, kOther}, Tags{{0x8100, 0xC000 | 200}, kOther});
    up(mode, {kServiceTag, kOther}, Tags{kServiceTag, kOther});
    up(mode, {kOther}, kDropped);
    up(mode, {kOther, kFirst}, kDropped);
    up(mode, {{0x8100, 200}}, kDropped);
  }
  EXPECT_EQ(rows_, 20U);
}

TEST_F(AccordTest, Upstream_ZteStacking) {
  up(160, {}, Tags{kOwnTag});
  up(160, {kServiceTag}, Tags{kOwnTag, kServiceTag});
  up(160, {kOther}, Tags{kOwnTag, kOther});
  up(160, {kOwnTag}, Tags{kOwnTag, kOwnTag});
  up(160, {kServiceTag, kOther}, Tags{kOwnTag, kServiceTag, kOther});
  up(160, {kOther, kFirst}, Tags{kOwnTag, kOther, kFirst});
}

TEST_F(AccordTest, Upstream_BdcomStacking) {
  up(253, {}, Tags{kOwnTag});
  up(253, {kServiceTag}, Tags{kOwnTag, kServiceTag});
  up(253, {kFirst}, Tags{{0x8100, 300}, kFirst});
  up(253, {kLast}, Tags{{0x8100, 320}, kLast});
  up(253, {{0x8100, 30}}, Tags{{0x8100, 302}, {0x8100, 30}});
  up(253, {{0x8100, 40}}, kDropped);
  up(253, {kOther}, kDropped);
  up(253, {{0x8100, 300}}, kDropped);
  up(253, {kServiceTag, kOther}, Tags{{0x8100, 300}, kServiceTag, kOther});
  config_.stackingList[0].cvid = 0x1000 | 10;
  config_.stackingList[256].cvid = 0x10000 | 10;
  up(253, {kFirst}, kDropped);
}

TEST_F(AccordTest, OtherModes_DropWithALogLine) {
  for (const std::uint32_t mode : {255U, 5U, 18U, 21U, 252U, 254U, 256U, 0x10000U, 0xFFFFFFFFU}) {
    for (const Tags& tags : {Tags{}, Tags{kFirst}, Tags{kOwnTag}}) {
      forget();
      up(mode, tags, kDropped);
      EXPECT_THAT(left(), ElementsAre(kNoMode));
      forget();
      down(mode, tags, kDropped);
      EXPECT_THAT(left(), ElementsAre(kNoMode));
    }
  }
  EXPECT_EQ(rows_, 54U);
}

TEST_F(AccordTest, Downstream_Transparent) {
  for (const Tags& tags : {Tags{}, Tags{kOther}, Tags{kOwnTag}, Tags{kServiceTag, kOther}}) {
    down(0, tags, tags);
  }
  EXPECT_EQ(rows_, 4U);
}

TEST_F(AccordTest, Downstream_TagAndZteStacking) {
  for (const std::uint32_t mode : {1U, 160U}) {
    down(mode, {kOwnTag}, Tags{});
    down(mode, {{0x8100, 0xF000 | kPvid}}, Tags{});
    down(mode, {kOwnTag, kOther}, Tags{kOther});
    down(mode, {}, kDropped);
    down(mode, {kServiceTag}, kDropped);
    down(mode, {kOther}, kDropped);
    down(mode, {kFirst}, kDropped);
    down(mode, {kOther, kOwnTag}, kDropped);
    // The outer tag's type is not one that can be removed.
    down(mode, {{0x88A8, kPvid}, kOther}, Tags{{0x88A8, kPvid}, kOther});
  }
  EXPECT_EQ(rows_, 18U);
}

TEST_F(AccordTest, Downstream_TrunkAndHybrid) {
  for (const std::uint32_t mode : {4U, 20U}) {
    FillLists(config_);
    down(mode, {kOwnTag}, Tags{});
    down(mode, {kOwnTag, kOther}, Tags{kOther});
    down(mode, {kFirst}, Tags{kFirst});
    down(mode, {kLast}, Tags{kLast});
    down(mode, {kServiceTag, kOther}, Tags{kServiceTag, kOther});
    down(mode, {kOther}, kDropped);
    down(mode, {}, kDropped);
    config_.trunkList[511] = {};
    down(mode, {}, Tags{});
    down(mode, {kServiceTag}, Tags{kServiceTag});
    // The port's own VLAN loses its tag although it is a member too.
    config_.trunkList[7].vid = kPvid;
    down(mode, {kOwnTag}, Tags{});
  }
  EXPECT_EQ(rows_, 20U);
}

TEST_F(AccordTest, Downstream_ZteTrunk) {
  down(19, {kFirst}, Tags{kFirst});
  down(19, {kLast}, Tags{kLast});
  down(19, {kOwnTag}, kDropped);
  down(19, {kOther}, kDropped);
  down(19, {}, kDropped);
  config_.trunkList[0] = {};
  down(19, {}, Tags{});
  config_.trunkList[1].vid = kPvid;
  down(19, {kOwnTag}, Tags{kOwnTag});
}

TEST_F(AccordTest, Downstream_Translation) {
  for (const std::uint32_t mode : {2U, 3U}) {
    FillLists(config_);
    down(mode, {kOwnTag}, Tags{});
    down(mode, {{0x8100, 200}}, Tags{{0x8100, 0x2000 | 10}});
    down(mode, {{0x8100, 0xF000 | 220}}, Tags{{0x8100, 0x4000 | 20}});
    down(mode, {{0x8100, 200}, kOther}, Tags{{0x8100, 0x2000 | 10}, kOther});
    down(mode, {{0x88A8, 200}, kOther}, Tags{{0x88A8, 200}, kOther});
    down(mode, {kFirst}, kDropped);
    down(mode, {kOther}, kDropped);
    down(mode, {}, kDropped);
    down(mode, {kServiceTag}, kDropped);
    config_.translationList[511] = {};
    down(mode, {}, Tags{});
    down(mode, {kServiceTag}, Tags{kServiceTag});
    config_.translationList[9].netVid = kPvid;
    down(mode, {kOwnTag}, Tags{});
  }
  EXPECT_EQ(rows_, 24U);
}

TEST_F(AccordTest, Downstream_BdcomStacking) {
  down(253, {kOwnTag, kFirst}, Tags{kFirst});
  down(253, {{0x8100, 300}, kFirst}, Tags{kFirst});
  down(253, {{0x8100, 0xE000 | 320}}, Tags{});
  down(253, {{0x8100, 301}}, Tags{});
  down(253, {{0x8100, 303}}, Tags{});
  down(253, {{0x88A8, 300}, kFirst}, Tags{{0x88A8, 300}, kFirst});
  down(253, {kFirst}, kDropped);
  down(253, {kOther}, kDropped);
  down(253, {}, kDropped);
  config_.stackingList[0] = {};
  down(253, {}, Tags{});
  down(253, {kServiceTag}, Tags{kServiceTag});
  EXPECT_EQ(rows_, 11U);
}

/// A priority tag, whose VID is that of a free entry.
const TagBytes kPriorityTag = {0x8100, 0xE000};

TEST_F(AccordTest, FreeEntries_MatchPriorityTagsToo) {
  for (const std::uint32_t mode : {2U, 3U}) {
    up(mode, {kPriorityTag}, kDropped);
    down(mode, {kPriorityTag}, kDropped);
  }
  up(253, {kPriorityTag}, kDropped);
  down(253, {kPriorityTag}, kDropped);
  config_.trunkList[511] = {};
  config_.translationList[511] = {};
  config_.stackingList[511] = {};
  up(19, {kPriorityTag}, Tags{kPriorityTag});
  for (const std::uint32_t mode : {4U, 19U, 20U}) {
    down(mode, {kPriorityTag}, Tags{kPriorityTag});
  }
  for (const std::uint32_t mode : {2U, 3U}) {
    up(mode, {kPriorityTag}, Tags{{0x8100, 0}});
    down(mode, {kPriorityTag, kOther}, Tags{{0x8100, 0}, kOther});
  }
  up(253, {kPriorityTag}, kDropped);  // a free entry does not stack
  down(253, {kPriorityTag, kOther}, Tags{kOther});
  EXPECT_EQ(rows_, 16U);
}

TEST_F(AccordTest, Downstream_PvidZero_IsThatOfPriorityTagsAndNotOfUntaggedFrames) {
  config_.pvid = 0;
  for (const std::uint32_t mode : {1U, 160U, 4U, 20U, 2U, 3U, 253U}) {
    down(mode, {kPriorityTag}, Tags{});
    down(mode, {}, kDropped);
    down(mode, {kServiceTag}, kDropped);
  }
  EXPECT_EQ(rows_, 21U);
}

TEST_F(AccordTest, Lists_OfAnUnusedPort_MatchUntaggedFramesAlone) {
  for (std::size_t i = 0; i < kListEntries; ++i) {
    config_.trunkList[i] = {};
    config_.translationList[i] = {};
    config_.stackingList[i] = {};
  }
  up(19, {}, Tags{});
  up(19, {kFirst}, kDropped);
  for (const std::uint32_t mode : {2U, 3U, 4U, 20U, 253U}) {
    up(mode, {}, Tags{kOwnTag});
    up(mode, {kFirst}, kDropped);
  }
  for (const std::uint32_t mode : {2U, 3U, 4U, 19U, 20U, 253U}) {
    down(mode, {}, Tags{});
    down(mode, {kFirst}, kDropped);
  }
  EXPECT_EQ(rows_, 24U);
}

TEST_F(AccordTest, Lists_EveryPlaceIsFound) {
  constexpr std::uint16_t kWanted = 2222;
  const TagBytes wanted = {0x8100, kWanted};
  std::size_t places = 0;
  for (std::size_t i = 0; i < kListEntries; ++i) {
    FillLists(config_);
    config_.trunkList[i] = {0, 0, kWanted};
    config_.translationList[i] = {0, 0, 1, kWanted, 2, kWanted};
    config_.stackingList[i] = {0, {}, 2, kWanted, 0, kWanted};
    up(4, {wanted}, Tags{wanted});
    up(2, {wanted}, Tags{{0x8100, 0x4000 | kWanted}});
    up(253, {wanted}, Tags{wanted, wanted});
    down(19, {wanted}, Tags{wanted});
    down(3, {wanted}, Tags{{0x8100, 0x2000 | kWanted}});
    down(253, {wanted}, Tags{});
    ++places;
  }
  EXPECT_EQ(places, 512U);
  FillLists(config_);
  up(4, {wanted}, kDropped);
  up(2, {wanted}, kDropped);
  up(253, {wanted}, kDropped);
  down(19, {wanted}, kDropped);
  down(3, {wanted}, kDropped);
  down(253, {wanted}, kDropped);
}

TEST_F(AccordTest, Lists_OfOtherPorts_DoNotCount) {
  config_.vlanMode = 4;
  g_PortVlanInfo[0].vlanMode = 4;
  g_PortVlanInfo[0].trunkList[0].vid = 5;
  g_PortVlanInfo[2].vlanMode = 4;
  g_PortVlanInfo[2].trunkList[0].vid = 5;
  const Bytes frame = FrameWith({kOther});
  EXPECT_EQ(judge(frame, 1, 0).result, 0U);
  EXPECT_EQ(judge(frame, 2, 0).result, 1U);
  EXPECT_EQ(judge(frame, 3, 0).result, 0U);
  EXPECT_EQ(judge(frame, 0, 1).result, 0U);
  EXPECT_EQ(judge(frame, 0, 2).result, 1U);
}

TEST_F(AccordTest, Ports_TheUnitDoesNotHave_DropSilently) {
  const Bytes frame = FrameWith({});
  for (const std::uint32_t port : {5U, 32U, 33U, 255U}) {
    EXPECT_EQ(judge(frame, port, 0).result, 1U) << port;
    EXPECT_EQ(judge(frame, 0, port).result, 1U) << port;
  }
  EXPECT_EQ(judge(frame, 4, 0).result, 0U) << "mode 0";
  EXPECT_EQ(judge(frame, 0, 4).result, 0U) << "mode 0";
  unit.platform().config().ethPorts = 0;
  EXPECT_EQ(judge(frame, 1, 0).result, 1U);
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(AccordTest, Ports_BothGiven_TheSourcesRuleApplies) {
  config_.vlanMode = 1;
  EXPECT_EQ(judge(FrameWith({}), 2, 1).frame, FrameWith({kOwnTag}));
  EXPECT_EQ(judge(FrameWith({kOwnTag}), 1, 2).frame, FrameWith({kOwnTag})) << "mode 0 of port 1";
  g_PortVlanInfo[4].vlanMode = 1;
  EXPECT_EQ(judge(FrameWith({kOther}), 5, 2).result, 1U);
  EXPECT_EQ(judge(FrameWith({}), 5, 2).result, 0U);
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(AccordTest, Ports_OnlyTheLow8BitsCount) {
  config_.vlanMode = 1;
  EXPECT_EQ(judge(FrameWith({}), 0x102, 0x300).frame, FrameWith({kOwnTag}));
  EXPECT_EQ(judge(FrameWith({kOwnTag}), 0xFFFFFF00, 0xABCDEF02).frame, FrameWith({}));
}

TEST_F(AccordTest, Ports_WithoutARecord_DropWithALogLine) {
  struct Row {
    std::uint32_t source;
    std::uint32_t destination;
    std::uint32_t port;
  };
  unit.platform().config().ethPorts = 200;
  const std::vector<Row> rows = {{0, 0, 0},     {0x100, 0x200, 0}, {33, 0, 33},   {0, 33, 33},
                                 {200, 0, 200}, {0, 200, 200},     {255, 1, 255}, {33, 1, 33}};
  for (const Row& row : rows) {
    forget();
    EXPECT_EQ(judge(FrameWith({}), row.source, row.destination).result, 1U);
    EXPECT_THAT(left(),
                ElementsAre(kLog + "port " + std::to_string(row.port) + " is out of range\r\n"));
  }
  forget();
  EXPECT_EQ(judge(FrameWith({}), 32, 0).result, 0U);
  EXPECT_EQ(judge(FrameWith({}), 0, 32).result, 0U);
  EXPECT_THAT(left(), IsEmpty());
}

/// A frame of a length in a descriptor that ends where unreadable memory begins.
struct GuardedPacket {
  explicit GuardedPacket(std::uint32_t size, const Tags& tags = {})
      : memory(Bytes(sizeof(RdpaPkt), 0x99)),
        packet(static_cast<RdpaPkt*>(static_cast<void*>(memory.data()))) {
    const Bytes frame = FrameDraft{.tags = tags, .size = sizeof(packet->data)}.bytes();
    std::ranges::copy(frame, packet->data);
    packet->size = size;
  }

  GuardedBytes memory;
  RdpaPkt* packet;
};

TEST_F(AccordTest, Lengths_AFrameGainsItsTagInsideTheDataField) {
  config_.vlanMode = 1;
  for (const std::uint32_t size : {12U, 13U, 14U, 60U, 2043U, 2044U}) {
    const GuardedPacket guarded(size);
    EXPECT_EQ(BCM6838X_AccordVlan(guarded.packet->data, guarded.packet, 2, 0), 0U) << size;
    EXPECT_EQ(guarded.packet->size, size + 4);
  }
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(AccordTest, Lengths_AFrameThatCannotGainItsTag_IsDroppedWithALogLine) {
  std::size_t checked = 0;
  for (const std::uint32_t mode : {1U, 160U}) {
    config_.vlanMode = mode;
    for (const std::uint32_t size : {0U, 11U, 2045U, 2046U, 2048U}) {
      forget();
      const GuardedPacket guarded(size);
      EXPECT_EQ(BCM6838X_AccordVlan(guarded.packet->data, guarded.packet, 2, 0), 1U) << size;
      EXPECT_EQ(guarded.packet->size, size);
      EXPECT_THAT(left(), ElementsAre(kTagLog + "frame of " + std::to_string(size) +
                                      " bytes cannot gain a tag\r\n"));
      ++checked;
    }
  }
  EXPECT_EQ(checked, 10U);
}

TEST_F(AccordTest, Lengths_OtherTreatments_TakeUpTo2048Bytes) {
  for (const std::uint32_t size : {0U, 1U, 2047U, 2048U}) {
    config_.vlanMode = 0;
    const GuardedPacket guarded(size);
    EXPECT_EQ(BCM6838X_AccordVlan(guarded.packet->data, guarded.packet, 2, 0), 0U) << size;
    EXPECT_EQ(guarded.packet->size, size);
  }
  config_.vlanMode = 1;
  const GuardedPacket guarded(2048, {kOwnTag});
  EXPECT_EQ(BCM6838X_AccordVlan(guarded.packet->data, guarded.packet, 0, 2), 0U);
  EXPECT_EQ(guarded.packet->size, 2044U);
}

TEST_F(AccordTest, Lengths_MoreThan2048Bytes_AreDroppedWithALogLine) {
  std::size_t checked = 0;
  for (const std::uint32_t mode : {0U, 1U, 2U, 3U, 4U, 19U, 20U, 160U, 253U, 255U}) {
    config_.vlanMode = mode;
    for (const std::uint32_t size : {2049U, 0x80000000U, 0xFFFFFFFFU}) {
      for (const bool upstream : {true, false}) {
        forget();
        const GuardedPacket guarded(size, {kOwnTag});
        EXPECT_EQ(BCM6838X_AccordVlan(guarded.packet->data, guarded.packet, upstream ? 2 : 0,
                                      upstream ? 0 : 2),
                  1U);
        EXPECT_EQ(guarded.packet->size, size);
        EXPECT_THAT(left(), ElementsAre(kLog + "frame of " + std::to_string(size) +
                                        " bytes is too long\r\n"));
        ++checked;
      }
    }
  }
  EXPECT_EQ(checked, 60U);
}

TEST_F(AccordTest, Lengths_TagsBehindTheEnd_DoNotCount) {
  config_.vlanMode = 1;
  // 16 bytes hold one tag; the type field of a second one ends at 18.
  for (const std::uint32_t size : {12U, 14U, 15U}) {
    const GuardedPacket guarded(size, {kOther});
    EXPECT_EQ(BCM6838X_AccordVlan(guarded.packet->data, guarded.packet, 2, 0), 0U) << size;
    EXPECT_EQ(guarded.packet->size, size + 4) << "untagged";
  }
  const GuardedPacket tagged(16, {kOther});
  EXPECT_EQ(BCM6838X_AccordVlan(tagged.packet->data, tagged.packet, 2, 0), 1U);
  const GuardedPacket single(17, {{0x88A8, 5}, kOther});
  EXPECT_EQ(BCM6838X_AccordVlan(single.packet->data, single.packet, 2, 0), 0U);
  const GuardedPacket both(18, {{0x88A8, 5}, kOther});
  EXPECT_EQ(BCM6838X_AccordVlan(both.packet->data, both.packet, 2, 0), 1U);
}

TEST_F(AccordTest, OnlyTheFirstWordOfTheDescriptorIsUsed) {
  config_.vlanMode = 1;
  Bytes frame = FrameWith({});
  const auto size = static_cast<std::uint32_t>(frame.size());
  frame.resize(frame.size() + 4);
  const GuardedBytes word(NativeWord(size));
  EXPECT_EQ(BCM6838X_AccordVlan(frame.data(),
                                static_cast<RdpaPkt*>(static_cast<void*>(word.data())), 2, 0),
            0U);
  EXPECT_EQ(frame, FrameWith({kOwnTag}));
  EXPECT_EQ(Bytes(word.data(), word.data() + 4), NativeWord(size + 4));
}

TEST_F(AccordTest, NullPointer_IsLogged) {
  RdpaPkt packet = {};
  EXPECT_EQ(BCM6838X_AccordVlan(nullptr, &packet, 1, 0), 2U);
  EXPECT_EQ(BCM6838X_AccordVlan(packet.data, nullptr, 1, 0), 2U);
  EXPECT_THAT(left(), ElementsAre(kLog + "null pointer\r\n", kLog + "null pointer\r\n"));
}

}  // namespace
}  // namespace hal_test
