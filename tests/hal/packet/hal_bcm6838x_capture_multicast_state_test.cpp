/// @file
/// Tests of the capture path of multicast: from the ports to the IGMP and MLD clients, and from the
/// unit to the ports.
#include <algorithm>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <initializer_list>
#include <string>
#include <vector>

#include <bcm6838x_vlan_port.h>

#include "capture_fixture.h"
#include "packet_bytes.h"
#include "support/library_tables.h"
#include "support/wire_record.h"

namespace hal_test::capture_path {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr TagBytes kOwnTag = {0x8100, 0x6064};

std::string Dispatched(const std::string& client, const Bytes& frame, std::uint32_t vid,
                       std::uint32_t port) {
  return "call " + client + "_DispatchPacket(" + virtual_onu::ToHex(frame) + ", vid " +
         std::to_string(vid) + ", port " + std::to_string(port) + ")";
}

/// @param[in] tail  the two bytes behind the frame: what stood there before a tag was removed
std::string SentPacket(std::uint32_t desPort, std::uint32_t srcPort, const Bytes& frame,
                       std::uint16_t tail = 0) {
  return Sent("SEND_PKT", 0,
              WireRecord(18 + frame.size())
                  .u32(0, static_cast<std::uint32_t>(frame.size()))
                  .u32(4, desPort)
                  .u32(8, srcPort)
                  .bytes(16, frame)
                  .u16(16 + frame.size(), tail));
}

TEST_F(CaptureTest, MulticastIn_Igmp_ReachesItsClient) {
  const Bytes frame = IgmpFrame().bytes();
  EXPECT_EQ(capture({.port = 3, .frame = frame}), 0U);
  EXPECT_THAT(left(), ElementsAre(Dispatched("IGMP", frame, 0, 3)));
}

TEST_F(CaptureTest, MulticastIn_Mld_ReachesItsClient) {
  for (const std::uint8_t type : std::initializer_list<std::uint8_t>{130, 131, 132, 143}) {
    forget();
    EXPECT_EQ(capture({.port = 3, .frame = MldFrame(type)}), 0U);
    EXPECT_THAT(left(), ElementsAre(Dispatched("MLD", MldFrame(type), 0, 3)));
  }
}

TEST_F(CaptureTest, MulticastIn_OtherFrames_ReachNobody) {
  FrameDraft unicast = IgmpFrame();
  unicast.destination = {0x01, 0x00, 0x5F, 1, 2, 3};
  FrameDraft second = IgmpFrame();
  second.destination = {0x01, 0x01, 0x5E, 1, 2, 3};
  FrameDraft first = IgmpFrame();
  first.destination = {0x03, 0x00, 0x5E, 1, 2, 3};
  FrameDraft udp = IgmpFrame();
  udp.payload = Ipv4Payload(17);
  FrameDraft arp = IgmpFrame();
  arp.type = 0x0806;
  std::size_t checked = 0;
  for (const FrameDraft& draft : {unicast, second, first, udp, arp, DhcpFrame(), PppoeFrame()}) {
    EXPECT_EQ(capture({.frame = draft.bytes()}), 0U) << checked;
    ++checked;
  }
  EXPECT_EQ(capture({.frame = MldFrame(133)}), 0U);
  EXPECT_EQ(checked, 7U);
  EXPECT_THAT(left(), IsEmpty());
}

// Required: client-told-inner-vid
TEST_F(CaptureTest, MulticastIn_TheWalkTakesTheInnerVid) {
  struct Row {
    std::vector<TagBytes> tags;
    std::uint32_t vid;
  };
  const std::vector<Row> rows = {
      {{}, 0},
      {{{0x8100, 0xE005}}, 5},
      {{{0x8100, 0xFFFF}}, 4095},
      {{{0x8100, 5}, {0x8100, 0x2006}}, 6},
      {{{0x9100, 7}}, 0},
      {{{0x9100, 7}, {0x8100, 5}}, 5},
      {{{0x9200, 7}}, 0},
      {{{0x9200, 7}, {0x8100, 5}, {0x8100, 6}}, 6},
      {{{0x9200, 7}, {0x9100, 8}}, 0},
      {{{0x9200, 7}, {0x9100, 8}, {0x8100, 5}, {0x8100, 6}}, 6},
  };
  std::size_t checked = 0;
  for (const Row& row : rows) {
    forget();
    FrameDraft draft = IgmpFrame();
    draft.tags = row.tags;
    EXPECT_EQ(capture({.port = 2, .frame = draft.bytes()}), 0U);
    EXPECT_THAT(left(), ElementsAre(Dispatched("IGMP", draft.bytes(), row.vid, 2))) << checked;
    ++checked;
  }
  EXPECT_EQ(checked, 10U);
}

// Required: outermost-tags-in-order
TEST_F(CaptureTest, MulticastIn_TagsInAnotherOrder_EndTheWalk) {
  const std::vector<std::vector<TagBytes>> orders = {
      {{0x9201, 7}},
      {{0x9201, 7}, {0x8100, 5}},
      {{0x92FF, 7}},
      {{0x9200, 7}, {0x9200, 7}},
      {{0x9100, 7}, {0x9200, 7}},
      {{0x9100, 7}, {0x9100, 7}},
      {{0x8100, 7}, {0x9100, 7}},
      {{0x88A8, 7}},
      {{0x9101, 7}},
      {{0x88A8, 7}, {0x8100, 5}},
  };
  std::size_t checked = 0;
  for (const std::vector<TagBytes>& tags : orders) {
    FrameDraft draft = IgmpFrame();
    draft.tags = tags;
    EXPECT_EQ(capture({.frame = draft.bytes()}), 0U);
    EXPECT_THAT(left(), IsEmpty()) << checked;
    ++checked;
  }
  EXPECT_EQ(checked, 10U);
}

// Required: third-customer-tag-drops
TEST_F(CaptureTest, MulticastIn_AThirdCustomerTag_DropsTheEvent) {
  std::size_t checked = 0;
  for (const std::vector<TagBytes>& front :
       {std::vector<TagBytes>{}, std::vector<TagBytes>{{0x9200, 1}},
        std::vector<TagBytes>{{0x9100, 1}}, std::vector<TagBytes>{{0x9200, 1}, {0x9100, 1}}}) {
    for (const std::size_t count : {3U, 4U, 12U}) {
      FrameDraft draft = IgmpFrame();
      draft.tags = front;
      draft.tags.insert(draft.tags.end(), count, CustomerTag(5));
      EXPECT_EQ(capture({.frame = draft.bytes()}), 1U);
      ++checked;
    }
  }
  EXPECT_EQ(checked, 12U);
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(CaptureTest, MulticastIn_MldBehindTags_TellsTheInnerVid) {
  FrameDraft draft = {.destination = {0x33, 0x33, 0, 0, 0, 1},
                      .tags = {{0x8100, 5}, {0x8100, 6}},
                      .type = 0x86DD,
                      .payload = MldPayload(143),
                      .size = 94};
  EXPECT_EQ(capture({.port = 4, .frame = draft.bytes()}), 0U);
  EXPECT_THAT(left(), ElementsAre(Dispatched("MLD", draft.bytes(), 6, 4)));
}

TEST_F(CaptureTest, MulticastIn_MldBehindTheChipsTag_HasNoVid) {
  // The walk knows neither this tag nor what lies behind it; the predicate does.
  Bytes frame = MldFrame();
  const Bytes tags = {0x88, 0x74, 1, 2, 3, 4, 5, 6, 7, 8, 0x81, 0x00, 0x00, 0x05};
  frame.insert(frame.begin() + 12, tags.begin(), tags.end());
  EXPECT_EQ(capture({.port = 4, .frame = frame}), 0U);
  EXPECT_THAT(left(), ElementsAre(Dispatched("MLD", frame, 0, 4)));
}

TEST_F(CaptureTest, MulticastIn_MldToAnyAddress_ReachesItsClient) {
  for (const Bytes& address : {Bytes{0x01, 0x00, 0x5E, 1, 2, 3}, Bytes{0x02, 0, 0, 0, 0, 1}}) {
    forget();
    Bytes frame = MldFrame();
    std::ranges::copy(address, frame.begin());
    EXPECT_EQ(capture({.port = 3, .frame = frame}), 0U);
    EXPECT_THAT(left(), ElementsAre(Dispatched("MLD", frame, 0, 3)));
  }
}

TEST_F(CaptureTest, MulticastIn_MldBehindOutermostTags_ReachesNobody) {
  for (const std::uint16_t type : {std::uint16_t{0x9100}, std::uint16_t{0x9200}}) {
    const FrameDraft draft = {
        .tags = {{type, 7}}, .type = 0x86DD, .payload = MldPayload(131), .size = 90};
    EXPECT_EQ(capture({.frame = draft.bytes()}), 0U) << type;
  }
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(CaptureTest, MulticastIn_ThePortsRuleComesFirst) {
  g_PortVlanInfo[1].vlanMode = BCM6838X_VLAN_MODE_TAG;
  FrameDraft tagged = IgmpFrame();
  Bytes expected = tagged.bytes();
  const Bytes tag = {0x81, 0x00, 0x60, 0x64};
  expected.insert(expected.begin() + 12, tag.begin(), tag.end());
  EXPECT_EQ(capture({.port = 2, .frame = tagged.bytes()}), 0U);
  EXPECT_THAT(left(), ElementsAre(Dispatched("IGMP", expected, 100, 2)));
  forget();
  tagged.tags = {kOwnTag};
  EXPECT_EQ(capture({.port = 2, .frame = tagged.bytes()}), 1U) << "arrives tagged in tag mode";
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(CaptureTest, MulticastIn_WithoutAPort_NoRuleApplies) {
  for (PortVlanInfo& config : g_PortVlanInfo) {
    config.vlanMode = BCM6838X_VLAN_MODE_NONE;
  }
  const Bytes frame = IgmpFrame().bytes();
  EXPECT_EQ(capture({.port = 0, .frame = frame}), 0U);
  EXPECT_THAT(left(), ElementsAre(Dispatched("IGMP", frame, 0, 0)));
  forget();
  EXPECT_EQ(capture({.port = 1, .frame = frame}), 1U);
  EXPECT_THAT(left(), ElementsAre(StartsWith("log 1 ")));
}

TEST_F(CaptureTest, MulticastIn_PortsThatTheUnitDoesNotHave_AreDropped) {
  for (const std::uint32_t port : {5U, 33U, 255U}) {
    EXPECT_EQ(capture({.port = port, .frame = IgmpFrame().bytes()}), 1U) << port;
  }
  EXPECT_THAT(left(), IsEmpty());
  EXPECT_EQ(capture({.port = 0x100, .frame = IgmpFrame().bytes()}), 1U);
  EXPECT_EQ(left().size(), 1U) << "a port whose low byte is 0 has no record";
}

TEST_F(CaptureTest, MulticastIn_BytesBehindTheLength_DoNotCount) {
  // The protocol field lies at byte 23, the second byte of the type field at 13.
  const Bytes frame = IgmpFrame().bytes();
  for (const std::uint32_t length : {0U, 2U, 5U, 13U, 14U, 22U, 23U}) {
    EXPECT_EQ(capture({.frame = frame, .length = length}), 0U) << length;
  }
  EXPECT_THAT(left(), IsEmpty());
  EXPECT_EQ(capture({.frame = frame, .length = 24}), 0U);
  EXPECT_THAT(left(),
              ElementsAre(Dispatched("IGMP", Bytes(frame.begin(), frame.begin() + 24), 0, 1)));
}

TEST_F(CaptureTest, MulticastIn_ATagAcrossTheEnd_HasNoVid) {
  FrameDraft draft = IgmpFrame();
  draft.tags = {{0x8100, 5}, {0x8100, 6}, {0x8100, 7}};
  // The third tag's type field ends at byte 22: below that there are two tags at most.
  for (const std::uint32_t length : {12U, 14U, 15U, 16U, 18U, 20U, 21U}) {
    EXPECT_EQ(capture({.frame = draft.bytes(), .length = length}), 0U) << length;
  }
  EXPECT_EQ(capture({.frame = draft.bytes(), .length = 22}), 1U);
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(CaptureTest, MulticastIn_TheLongestFrame_ReachesItsClient) {
  FrameDraft draft = IgmpFrame();
  draft.size = 2048;
  EXPECT_EQ(capture({.frame = draft.bytes()}), 0U);
  EXPECT_THAT(left(), ElementsAre(Dispatched("IGMP", draft.bytes(), 0, 1)));
}

TEST_F(CaptureTest, MulticastIn_AFrameWithoutRoomForItsTag_IsDropped) {
  g_PortVlanInfo[0].vlanMode = BCM6838X_VLAN_MODE_TAG;
  FrameDraft draft = IgmpFrame();
  draft.size = 2044;
  EXPECT_EQ(capture({.frame = draft.bytes()}), 0U);
  EXPECT_THAT(left(), ElementsAre(StartsWith("call IGMP_DispatchPacket(")));
  for (const std::size_t size : {2045U, 2048U}) {
    forget();
    draft.size = size;
    EXPECT_EQ(capture({.frame = draft.bytes()}), 1U);
    EXPECT_THAT(left(), ElementsAre(StartsWith("log 4 ")));
  }
}

// Required: multicast-out-by-source-rule
TEST_F(CaptureTest, MulticastOut_OfAPort_IsSentWithItsUpstreamRule) {
  g_PortVlanInfo[1].vlanMode = BCM6838X_VLAN_MODE_TAG;
  Bytes expected = IgmpFrame().bytes();
  const Bytes tag = {0x81, 0x00, 0x60, 0x64};
  expected.insert(expected.begin() + 12, tag.begin(), tag.end());
  EXPECT_EQ(capture({.type = 5, .port = 2, .gemFlowId = 9, .frame = IgmpFrame().bytes()}), 0U);
  EXPECT_THAT(left(), ElementsAre(SentPacket(0, 2, expected))) << "the flow is not passed on";
  forget();
  FrameDraft tagged = IgmpFrame();
  tagged.tags = {kOwnTag};
  EXPECT_EQ(capture({.type = 5, .port = 2, .frame = tagged.bytes()}), 0U);
  EXPECT_EQ(capture({.type = 5, .port = 5, .frame = tagged.bytes()}), 0U);
  EXPECT_THAT(left(), IsEmpty()) << "dropped";
}

TEST_F(CaptureTest, MulticastOut_OfNoPort_IsSentToEachByItsDownstreamRule) {
  g_PortVlanInfo[0].vlanMode = BCM6838X_VLAN_MODE_TAG;
  g_PortVlanInfo[1].vlanMode = BCM6838X_VLAN_MODE_ZTE_TRUNK;
  g_PortVlanInfo[1].trunkList[9].vid = 7;
  g_PortVlanInfo[2].vlanMode = BCM6838X_VLAN_MODE_TRANSLATION;
  g_PortVlanInfo[2].pvid = 5;
  g_PortVlanInfo[2].translationList[3] = {3, 0, 2, 40, 1, 100};
  FrameDraft draft = IgmpFrame();
  draft.tags = {kOwnTag};
  const Bytes frame = draft.bytes();
  Bytes untagged = frame;
  untagged.erase(untagged.begin() + 12, untagged.begin() + 16);
  Bytes translated = frame;
  translated[14] = 0x40;
  translated[15] = 40;
  EXPECT_EQ(capture({.type = 5, .port = 0, .gemFlowId = 9, .frame = frame}), 0U);
  EXPECT_THAT(left(), ElementsAre(SentPacket(1, 0, untagged, 0x3C3D), SentPacket(3, 0, translated),
                                  SentPacket(4, 0, frame)))
      << "port 2 drops it; each port gets the frame as it came";
}

TEST_F(CaptureTest, MulticastOut_OfNoPort_GoesToTheUnitsPortsAlone) {
  for (const std::uint32_t ports : {0U, 1U, 8U, 32U}) {
    forget();
    unit.platform().config().ethPorts = ports;
    EXPECT_EQ(capture({.type = 5, .port = 0, .frame = IgmpFrame().bytes()}), 0U);
    ASSERT_EQ(left().size(), ports);
  }
  EXPECT_EQ(left().back(), SentPacket(32, 0, IgmpFrame().bytes()));
}

TEST_F(CaptureTest, MulticastOut_TooLongForTheTransmit_IsRefusedThere) {
  FrameDraft draft = IgmpFrame();
  draft.size = 2046;
  EXPECT_EQ(capture({.type = 5, .port = 1, .frame = draft.bytes()}), 0U);
  EXPECT_THAT(left(), ElementsAre(SentPacket(0, 1, draft.bytes())));
  forget();
  draft.size = 2047;
  EXPECT_EQ(capture({.type = 5, .port = 1, .frame = draft.bytes()}), 0U);
  EXPECT_THAT(left(), ElementsAre(StartsWith(
                          "log 1 hal/switch/bcm6838x/src/hal_bcm6838x_transmit.cpp "
                          "BCM6838X_RdpaSendIgmpPkt(size=2047>2046, desPort=0, srcPort=1, ")));
}

TEST_F(CaptureTest, MulticastOut_DriverRefuses_TheOtherPortsAreServed) {
  for (std::uint32_t nth = 1; nth <= 4; ++nth) {
    forget();
    unit.device().faults().clear();
    unit.device().faults().refuseNth(nth);
    EXPECT_EQ(capture({.type = 5, .port = 0, .frame = IgmpFrame().bytes()}), 0U);
    EXPECT_EQ(commands().size(), 4U);
    EXPECT_EQ(logLines().size(), 1U);
  }
}

}  // namespace
}  // namespace hal_test::capture_path
