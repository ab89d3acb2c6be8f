/// @file
/// Tests of the protocol predicates, branch by branch and at the ends of frames.
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

const std::string kLog = "log 4 hal/switch/bcm6838x/src/hal_bcm6838x_protocol.cpp ";

class ProtocolTest : public LibraryTest {};

std::uint32_t IsMld(const Bytes& frame) {
  const GuardedBytes guarded(frame);
  return BCM6838X_IsMldPacket(guarded.data(), static_cast<std::uint32_t>(frame.size()));
}

/// The frame needs only the bytes that the predicate may look at.
std::uint32_t IsDhcp(const Bytes& frame) {
  const GuardedBytes guarded(frame);
  return BCM6838X_IsDHCPProtocol(guarded.data());
}

std::uint32_t IsPppoe(const Bytes& frame) {
  const GuardedBytes guarded(frame);
  return BCM6838X_IsPPPoEProtocol(guarded.data());
}

/// A frame whose IPv6 headers are `headers` behind the fixed one, then an ICMPv6 message of 24
/// bytes.
Bytes Ipv6Frame(std::uint8_t nextHeader, const Bytes& headers, std::uint8_t icmpType,
                std::vector<TagBytes> tags = {}) {
  Bytes payload(40);
  payload[0] = 0x60;
  payload[6] = nextHeader;
  Bytes message(24);
  message[0] = icmpType;
  FrameDraft draft = {.tags = std::move(tags), .type = 0x86DD};
  draft.payload = Joined({payload, headers, message});
  draft.size = 0;
  return draft.bytes();
}

/// An extension header of 8 bytes and `units` more of 8.
Bytes Extension(std::uint8_t nextHeader, std::uint8_t units = 0) {
  Bytes header(8 + std::size_t{8} * units);
  header[0] = nextHeader;
  header[1] = units;
  return header;
}

TEST_F(ProtocolTest, IsMldPacket_TakesFourTypes) {
  std::uint32_t taken = 0;
  for (std::uint32_t type = 0; type < 256; ++type) {
    const bool mld = type == 130 || type == 131 || type == 132 || type == 143;
    EXPECT_EQ(IsMld(MldFrame(static_cast<std::uint8_t>(type))), mld ? 1U : 0U) << type;
    taken += mld ? 1 : 0;
  }
  EXPECT_EQ(taken, 4U);
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(ProtocolTest, IsMldPacket_WithoutExtension) {
  EXPECT_EQ(IsMld(Joined({Ipv6Frame(58, {}, 131), Bytes(4)})), 1U);
}

// Required: mld-extensions-in-units-of-8
TEST_F(ProtocolTest, IsMldPacket_FollowsSixExtensionsAndNoOther) {
  std::uint32_t followed = 0;
  for (std::uint32_t type = 0; type < 256; ++type) {
    const bool follows =
        type == 0 || type == 41 || type == 43 || type == 44 || type == 50 || type == 51;
    const Bytes frame = Ipv6Frame(static_cast<std::uint8_t>(type), Extension(58), 131);
    // ICMPv6 itself finds the extension's first byte in place of its type, which is 58.
    EXPECT_EQ(IsMld(frame), follows ? 1U : 0U) << type;
    followed += follows ? 1 : 0;
  }
  EXPECT_EQ(followed, 6U);
}

// Required: mld-extensions-in-units-of-8
TEST_F(ProtocolTest, IsMldPacket_StepsByTheSecondByteInUnitsOfEight) {
  for (const int units : {0, 1, 2, 31, 150}) {
    const Bytes header = Extension(58, static_cast<std::uint8_t>(units));
    EXPECT_EQ(IsMld(Ipv6Frame(0, header, 143)), 1U) << units;
    EXPECT_EQ(IsMld(Ipv6Frame(51, header, 143)), 1U) << "authentication counts alike " << units;
    EXPECT_EQ(IsMld(Ipv6Frame(44, header, 143)), 1U) << "a fragment header counts alike " << units;
  }
  const Bytes chain = Joined({Extension(43), Extension(44, 1), Extension(50), Extension(51, 2),
                              Extension(41), Extension(0), Extension(58)});
  EXPECT_EQ(IsMld(Ipv6Frame(0, chain, 132)), 1U);
  EXPECT_EQ(IsMld(Ipv6Frame(0, chain, 133)), 0U);
}

TEST_F(ProtocolTest, IsMldPacket_Tags) {
  struct Row {
    std::vector<TagBytes> tags;
    std::uint32_t answer;
  };
  const std::vector<Row> rows = {
      {{}, 1},
      {{{0x8100, 5}}, 1},
      {{{0x8100, 5}, {0x8100, 6}}, 1},
      {{{0x8100, 5}, {0x8100, 6}, {0x8100, 7}}, 0},
      {{{0x88A8, 5}}, 0},
      {{{0x88A8, 5}, {0x8100, 6}}, 0},
      {{{0x8800, 5}}, 0},
      {{{0x8875, 5}}, 0},
      {{{0x8873, 5}}, 0},
      {{{0x9100, 5}}, 0},
      {{{0x8100, 5}, {0x88A8, 6}}, 0},
  };
  std::size_t checked = 0;
  for (const Row& row : rows) {
    EXPECT_EQ(IsMld(Ipv6Frame(0, Extension(58), 131, row.tags)), row.answer) << checked;
    ++checked;
  }
  EXPECT_EQ(checked, 11U);
}

TEST_F(ProtocolTest, IsMldPacket_ChipTag_TenBytesAreSkippedOnce) {
  const Bytes plain = Ipv6Frame(0, Extension(58), 131);
  const Bytes chipTag = {0x88, 0x74, 1, 2, 3, 4, 5, 6, 7, 8};
  const auto inserted = [](const Bytes& frame, const Bytes& more) {
    return Joined(
        {Bytes(frame.begin(), frame.begin() + 12), more, Bytes(frame.begin() + 12, frame.end())});
  };
  EXPECT_EQ(IsMld(inserted(plain, chipTag)), 1U);
  EXPECT_EQ(IsMld(inserted(Ipv6Frame(0, Extension(58), 131, {{0x8100, 1}}), chipTag)), 1U);
  EXPECT_EQ(IsMld(inserted(Ipv6Frame(0, Extension(58), 131, {{0x8100, 1}, {0x8100, 2}}), chipTag)),
            1U);
  EXPECT_EQ(IsMld(inserted(inserted(plain, chipTag), chipTag)), 0U);
  EXPECT_EQ(IsMld(inserted(plain, Bytes(chipTag.begin(), chipTag.begin() + 8))), 0U);
  EXPECT_EQ(IsMld(inserted(plain, {0x74, 0x88, 1, 2, 3, 4, 5, 6, 7, 8})), 0U);
}

TEST_F(ProtocolTest, IsMldPacket_OtherTypes_AreNot) {
  for (const std::uint16_t type : {std::uint16_t{0x0800}, std::uint16_t{0x86DC},
                                   std::uint16_t{0x87DD}, std::uint16_t{0xDD86}}) {
    EXPECT_EQ(IsMld(FrameDraft{.type = type, .payload = MldPayload(131), .size = 86}.bytes()), 0U);
  }
}

// Required: mld-margin-of-25
TEST_F(ProtocolTest, IsMldPacket_ThePositionMustLieBelowTheRestLess25) {
  // With the message right behind the IPv6 header the position is 40, and the rest counts from the
  // type field: 66 bytes of rest are 78 of the frame. With one header of 8 bytes it is 8 more.
  const Bytes plain = Joined({Ipv6Frame(58, {}, 131), Bytes(20)});
  const Bytes extended = MldFrame();
  const Bytes tagged = Ipv6Frame(0, Extension(58), 131, {{0x8100, 1}, {0x8100, 2}});
  for (std::size_t length = 0; length <= plain.size(); ++length) {
    EXPECT_EQ(IsMld(Bytes(plain.begin(), plain.begin() + static_cast<long>(length))),
              length >= 78 ? 1U : 0U)
        << length;
  }
  for (std::size_t length = 0; length <= extended.size(); ++length) {
    EXPECT_EQ(IsMld(Bytes(extended.begin(), extended.begin() + static_cast<long>(length))),
              length >= 86 ? 1U : 0U)
        << length;
  }
  for (std::size_t length = 0; length <= tagged.size(); ++length) {
    EXPECT_EQ(IsMld(Bytes(tagged.begin(), tagged.begin() + static_cast<long>(length))),
              length >= 94 ? 1U : 0U)
        << length;
  }
}

TEST_F(ProtocolTest, IsMldPacket_AnExtensionBeyondTheEnd_EndsTheWalk) {
  // Zeros: each hop-by-hop header leads to the next, up to the end of the frame.
  EXPECT_EQ(IsMld(Ipv6Frame(0, Bytes(400), 131)), 0U);
  EXPECT_EQ(IsMld(Ipv6Frame(0, Extension(58, 255), 131)), 1U);
  Bytes beyond = Ipv6Frame(0, Extension(58), 131);
  beyond[55] = 255;
  EXPECT_EQ(IsMld(beyond), 0U);
}

TEST_F(ProtocolTest, IsMldPacket_OnlyTheLow16BitsOfTheLengthCount) {
  const GuardedBytes guarded(MldFrame());
  EXPECT_EQ(BCM6838X_IsMldPacket(guarded.data(), 0xABCD0000U + 86), 1U);
  EXPECT_EQ(BCM6838X_IsMldPacket(guarded.data(), 0x10000), 0U);
}

// Required: dhcp-towards-servers-alone
TEST_F(ProtocolTest, IsDHCPProtocol_Ipv4) {
  EXPECT_EQ(IsDhcp(DhcpFrame().bytes()), 1U);
  EXPECT_EQ(IsDhcp(FrameDraft{.payload = Ipv4Payload(17, 68)}.bytes()), 0U);
  EXPECT_EQ(IsDhcp(FrameDraft{.payload = Ipv4Payload(17, 0x4300)}.bytes()), 0U);
  EXPECT_EQ(IsDhcp(FrameDraft{.payload = Ipv4Payload(17, 0x0143)}.bytes()), 0U);
  EXPECT_EQ(IsDhcp(FrameDraft{.payload = Ipv4Payload(17, 547)}.bytes()), 0U);
  EXPECT_EQ(IsDhcp(FrameDraft{.payload = Ipv4Payload(6, 67)}.bytes()), 0U);
}

// Required: dhcp-header-of-20-bytes
TEST_F(ProtocolTest, IsDHCPProtocol_Ipv4WithOptions_ReadsTheSamePlace) {
  Bytes payload = Ipv4Payload(17, 67);
  payload[0] = 0x46;
  EXPECT_EQ(IsDhcp(FrameDraft{.payload = payload}.bytes()), 1U) << "the bytes are in the options";
  // A header of 24 bytes whose ports lie behind the options.
  Bytes options = Ipv4Payload(17, 0);
  options[0] = 0x46;
  const Bytes ports = {0x12, 0x34, 0x00, 0x43};
  EXPECT_EQ(IsDhcp(FrameDraft{.payload = Joined({options, ports})}.bytes()), 0U);
}

// Required: dhcp-towards-servers-alone
TEST_F(ProtocolTest, IsDHCPProtocol_Ipv6) {
  EXPECT_EQ(IsDhcp(FrameDraft{.type = 0x86DD, .payload = Ipv6Payload(17, 547)}.bytes()), 1U);
  EXPECT_EQ(IsDhcp(FrameDraft{.type = 0x86DD, .payload = Ipv6Payload(17, 546)}.bytes()), 0U);
  EXPECT_EQ(IsDhcp(FrameDraft{.type = 0x86DD, .payload = Ipv6Payload(17, 67)}.bytes()), 0U);
  EXPECT_EQ(IsDhcp(FrameDraft{.type = 0x86DD, .payload = Ipv6Payload(58, 547)}.bytes()), 0U);
}

TEST_F(ProtocolTest, DhcpAndPppoe_AnyNumberOfCustomerTagsIsSkipped) {
  for (std::size_t count = 0; count <= 40; ++count) {
    FrameDraft dhcp = DhcpFrame();
    dhcp.tags.assign(count, CustomerTag(0x0123));
    dhcp.size = 300;
    FrameDraft pppoe = PppoeFrame();
    pppoe.tags = dhcp.tags;
    pppoe.size = 300;
    EXPECT_EQ(IsDhcp(dhcp.bytes()), 1U) << count;
    EXPECT_EQ(IsPppoe(pppoe.bytes()), 1U) << count;
    EXPECT_EQ(IsDhcp(pppoe.bytes()), 0U) << count;
    EXPECT_EQ(IsPppoe(dhcp.bytes()), 0U) << count;
  }
}

TEST_F(ProtocolTest, DhcpAndPppoe_OtherTagsEndTheWalk) {
  for (const int type : {0x8101, 0x81FF, 0x88A8, 0x9100, 0x0081}) {
    FrameDraft dhcp = DhcpFrame();
    dhcp.tags = {CustomerTag(1), {static_cast<std::uint16_t>(type), 1}};
    FrameDraft pppoe = PppoeFrame();
    pppoe.tags = dhcp.tags;
    EXPECT_EQ(IsDhcp(dhcp.bytes()), 0U) << type;
    EXPECT_EQ(IsPppoe(pppoe.bytes()), 0U) << type;
  }
}

TEST_F(ProtocolTest, IsPPPoEProtocol_DiscoveryAndSession) {
  std::uint32_t taken = 0;
  for (std::uint32_t type = 0; type <= 0xFFFF; ++type) {
    const Bytes frame = {0,
                         0,
                         0,
                         0,
                         0,
                         0,
                         0,
                         0,
                         0,
                         0,
                         0,
                         0,
                         static_cast<std::uint8_t>(type >> 8),
                         static_cast<std::uint8_t>(type),
                         0,
                         0,
                         0,
                         0};
    Bytes padded = frame;
    padded.resize(64);
    taken += BCM6838X_IsPPPoEProtocol(padded.data());
  }
  EXPECT_EQ(taken, 2U);
  EXPECT_EQ(IsPppoe(FrameDraft{.type = 0x8863}.bytes()), 1U);
  EXPECT_EQ(IsPppoe(FrameDraft{.type = 0x8864}.bytes()), 1U);
}

TEST_F(ProtocolTest, DhcpAndPppoe_NeedNoMoreBytesThanTheirFields) {
  EXPECT_EQ(IsDhcp(FrameDraft{.payload = Ipv4Payload(17, 67), .size = 0}.bytes()), 1U);
  EXPECT_EQ(IsDhcp(FrameDraft{.type = 0x86DD, .payload = Ipv6Payload(17, 547), .size = 0}.bytes()),
            1U);
  EXPECT_EQ(IsDhcp(FrameDraft{.type = 0x0806, .size = 0}.bytes()), 0U);
  EXPECT_EQ(IsPppoe(FrameDraft{.type = 0x8864, .size = 0}.bytes()), 1U);
}

TEST_F(ProtocolTest, DhcpAndPppoe_NothingButTags_EndAt2048Bytes) {
  Bytes tags(2048);
  for (std::size_t i = 12; i + 1 < tags.size(); i += 4) {
    tags[i] = 0x81;
  }
  EXPECT_EQ(IsDhcp(tags), 0U);
  EXPECT_EQ(IsPppoe(tags), 0U);
}

TEST_F(ProtocolTest, NullPointer_IsLoggedAndIsNoFrame) {
  EXPECT_EQ(BCM6838X_IsMldPacket(nullptr, 86), 0U);
  EXPECT_EQ(BCM6838X_IsDHCPProtocol(nullptr), 0U);
  EXPECT_EQ(BCM6838X_IsPPPoEProtocol(nullptr), 0U);
  EXPECT_THAT(left(), ElementsAre(kLog + "BCM6838X_IsMldPacket(<line>), null pointer\r\n",
                                  kLog + "BCM6838X_IsDHCPProtocol(<line>), null pointer\r\n",
                                  kLog + "BCM6838X_IsPPPoEProtocol(<line>), null pointer\r\n"));
}

}  // namespace
}  // namespace hal_test
