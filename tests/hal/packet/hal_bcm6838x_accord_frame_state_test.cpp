/// @file
/// Tests of the ports' VLAN rules apart from their tables: which port's rule applies, every length
/// of a frame, and null pointers.
#include <algorithm>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <bcm6838x_vlan_port.h>
#include <hal_bcm6838x.h>

#include "accord_fixture.h"
#include "packet_bytes.h"
#include "support/library_tables.h"

namespace hal_test::accord {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kLog =
    "log 4 hal/switch/bcm6838x/src/hal_bcm6838x_classify.cpp BCM6838X_AccordVlan(<line>), ";

const std::string kTagLog =
    "log 4 hal/switch/bcm6838x/src/hal_bcm6838x_tag.cpp BCM6838X_AddVlanTag(<line>), ";

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
  config_.vlanMode = BCM6838X_VLAN_MODE_TAG;
  EXPECT_EQ(judge(FrameWith({}), 2, 1).frame, FrameWith({kOwnTag}));
  EXPECT_EQ(judge(FrameWith({kOwnTag}), 1, 2).frame, FrameWith({kOwnTag})) << "mode 0 of port 1";
  g_PortVlanInfo[4].vlanMode = BCM6838X_VLAN_MODE_TAG;
  EXPECT_EQ(judge(FrameWith({kOther}), 5, 2).result, 1U);
  EXPECT_EQ(judge(FrameWith({}), 5, 2).result, 0U);
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(AccordTest, Ports_OnlyTheLow8BitsCount) {
  config_.vlanMode = BCM6838X_VLAN_MODE_TAG;
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
  config_.vlanMode = BCM6838X_VLAN_MODE_TAG;
  for (const std::uint32_t size : {12U, 13U, 14U, 60U, 2043U, 2044U}) {
    const GuardedPacket guarded(size);
    EXPECT_EQ(BCM6838X_AccordVlan(guarded.packet->data, guarded.packet, 2, 0), 0U) << size;
    EXPECT_EQ(guarded.packet->size, size + 4);
  }
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(AccordTest, Lengths_AFrameThatCannotGainItsTag_IsDroppedWithALogLine) {
  std::size_t checked = 0;
  for (const std::uint32_t mode : {BCM6838X_VLAN_MODE_TAG, BCM6838X_VLAN_MODE_ZTE_STACKING}) {
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
    config_.vlanMode = BCM6838X_VLAN_MODE_TRANSPARENT;
    const GuardedPacket guarded(size);
    EXPECT_EQ(BCM6838X_AccordVlan(guarded.packet->data, guarded.packet, 2, 0), 0U) << size;
    EXPECT_EQ(guarded.packet->size, size);
  }
  config_.vlanMode = BCM6838X_VLAN_MODE_TAG;
  const GuardedPacket guarded(2048, {kOwnTag});
  EXPECT_EQ(BCM6838X_AccordVlan(guarded.packet->data, guarded.packet, 0, 2), 0U);
  EXPECT_EQ(guarded.packet->size, 2044U);
}

TEST_F(AccordTest, Lengths_MoreThan2048Bytes_AreDroppedWithALogLine) {
  std::size_t checked = 0;
  for (const std::uint32_t mode :
       {BCM6838X_VLAN_MODE_TRANSPARENT, BCM6838X_VLAN_MODE_TAG, BCM6838X_VLAN_MODE_TRANSLATION,
        BCM6838X_VLAN_MODE_TRANSLATION_2, BCM6838X_VLAN_MODE_TRUNK, BCM6838X_VLAN_MODE_ZTE_TRUNK,
        BCM6838X_VLAN_MODE_HYBRID, BCM6838X_VLAN_MODE_ZTE_STACKING,
        BCM6838X_VLAN_MODE_BDCOM_STACKING, BCM6838X_VLAN_MODE_NONE}) {
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
  config_.vlanMode = BCM6838X_VLAN_MODE_TAG;
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
  config_.vlanMode = BCM6838X_VLAN_MODE_TAG;
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
}  // namespace hal_test::accord
