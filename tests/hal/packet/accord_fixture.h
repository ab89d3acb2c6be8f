/// @file
/// What the tests of the ports' VLAN rules share: a port with a PVID and full lists in the table of
/// the configuration, and what becomes of a frame's tags.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include <hal_bcm6838x.h>

#include "packet_bytes.h"
#include "support/library_tables.h"
#include "support/library_test.h"

namespace hal_test::accord {

using Tags = std::vector<TagBytes>;
using MaybeTags = std::optional<Tags>;  ///< nothing: dropped

inline constexpr std::size_t kListEntries = 512;
inline constexpr std::uint16_t kPvid = 100;
inline constexpr TagBytes kOwnTag = {0x8100, 0x6000 | kPvid};  ///< PVID and priority 3 of the port
inline constexpr TagBytes kOther = {0x8100, 0x4005};           ///< VID 5, which is in no list

inline Bytes FrameWith(const Tags& tags) {
  Bytes payload(46);
  for (std::size_t i = 0; i < payload.size(); ++i) {
    payload[i] = static_cast<std::uint8_t>(0xC0 + i);
  }
  return FrameDraft{.tags = tags, .payload = payload, .size = 0}.bytes();
}

/// A list without free entries and with VIDs from 3000 on, beside the entries that a test looks
/// for.
inline void FillLists(PortVlanInfo& config) {
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

}  // namespace hal_test::accord
