/// @file
/// Frames on their way from a port through event and library to the protocol clients, and what
/// serving clients make of them.
#include "clients/protocol_clients.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <bcm6838x_port.h>
#include <bcm6838x_vlan_port.h>
#include <brmgr_cmd.h>
#include <hal_bcm6838x.h>

#include "clients/client_recorder.h"
#include "device/event_record.h"
#include "hal/packet/packet_bytes.h"
#include "packet_fixture.h"
#include "support/sample_frames.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using virtual_onu::Client;
using virtual_onu::ClientCall;
using virtual_onu::Hex;
using virtual_onu::RecordedCall;

const Bytes kIgmp = Hex(virtual_onu::kIgmpReport);
const Bytes kBpdu = Hex(virtual_onu::kBpdu);
const Bytes kDhcp = Hex(virtual_onu::kUdp4);
const Bytes kPadi = Hex(virtual_onu::kPadi);

Bytes SiteReport() {
  Bytes frame = Hex(virtual_onu::kMldReport);
  frame.at(14 + 40 + 8 + 8 + 1) = 0x15;
  return frame;
}

/// The tag that port 1 puts in front: priority 3, VID 100.
Bytes Tagged(Bytes frame) {
  const Bytes tag = {0x81, 0x00, 0x60, 0x64};
  frame.insert(frame.begin() + 12, tag.begin(), tag.end());
  return frame;
}

/// Port 1 tags with VLAN 100, port 2 is transparent.
class ClientTest : public PacketTest {
 protected:
  void SetUp() override {
    PacketTest::SetUp();
    BCM6838X_SetPortPvid(1, 100);
    BCM6838X_SetPortPriority(1, 3);
    BCM6838X_SetVlanTag(1);
    BCM6838X_SetVlanTransparent(2);
    for (const std::uint32_t port : {1U, 2U}) {
      ASSERT_EQ(BCM6838X_SetPortAdminState(port, 1), 0);
    }
    forget();
  }

  /// Takes a frame in and lets the library take its event; there must be one.
  std::uint32_t pass(PortId port, const Bytes& frame) {
    unit.receive(port, frame);
    EXPECT_EQ(pending(), 1U);
    return pending() == 0 ? 99 : BCM6838X_CapturePacket();
  }

  void record(virtual_onu::ClientRecorder& recorder) {
    unit.onClientCall([&recorder](const ClientCall& call) { return recorder.take(call); });
  }

  [[nodiscard]] std::vector<std::pair<PortId, Bytes>> sent() const {
    std::vector<std::pair<PortId, Bytes>> frames;
    for (const Transmission& one : unit.transmissions()) {
      EXPECT_EQ(one.outcome, Outcome::Transmitted);
      frames.emplace_back(one.port, one.frame);
    }
    return frames;
  }
};

struct PathRow {
  PortId port;
  Bytes frame;
  RecordedCall call;
};

TEST_F(ClientTest, TrappedFrames_ReachTheirClientsUnderThePortsRule) {
  BCM6838X_SetDhcpTrapEnable(1);
  BCM6838X_SetPPPoETrapEnable(1);
  virtual_onu::ClientRecorder recorder;
  record(recorder);
  const Bytes mld = SiteReport();
  const std::vector<PathRow> rows = {
      {Uni(1), kIgmp, {Client::Igmp, Tagged(kIgmp), 100, 1}},
      {Uni(2), kIgmp, {Client::Igmp, kIgmp, 0, 2}},
      {Uni(1), mld, {Client::Mld, Tagged(mld), 100, 1}},
      {Uni(2), mld, {Client::Mld, mld, 0, 2}},
      {Uni(1), kBpdu, {Client::Stp, kBpdu, 0, 1}},
      {Uni(2), Padded(kBpdu, 100), {Client::Stp, Padded(kBpdu, 100), 0, 2}},
      {Uni(2), Padded(kBpdu, 150), {Client::Stp, Padded(kBpdu, 100), 0, 2}},
      {Uni(1), kDhcp, {Client::Dhcp, Tagged(kDhcp), 100, 1}},
      {Uni(2), kDhcp, {Client::Dhcp, kDhcp, 0, 2}},
      {Uni(1), kPadi, {Client::Pppoe, Tagged(kPadi), 100, 1}},
      {Uni(2), kPadi, {Client::Pppoe, kPadi, 0, 2}},
      {Uni(2), Padded(kDhcp, 1700), {Client::Dhcp, Padded(kDhcp, 1700), 0, 2}},
      {Uni(2), Padded(kIgmp, 2048), {Client::Igmp, Padded(kIgmp, 2048), 0, 2}},
  };
  for (const PathRow& row : rows) {
    EXPECT_EQ(pass(row.port, row.frame), 0U);
    EXPECT_THAT(recorder.collect(), ElementsAre(row.call));
  }
  EXPECT_THAT(unit.transmissions(), IsEmpty());
}

TEST_F(ClientTest, FramesThatTheLibraryRefuses_ReachNobody) {
  BCM6838X_SetDhcpTrapEnable(1);
  virtual_onu::ClientRecorder recorder;
  record(recorder);
  EXPECT_EQ(pass(Uni(1), Tagged(kIgmp)), 1U) << "a tag at a port that tags";
  EXPECT_EQ(pass(Uni(1), Tagged(kDhcp)), 0U);
  EXPECT_EQ(pass(Uni(2), Padded(kDhcp, 1701)), 0U) << "too long for a relay";
  EXPECT_EQ(pass(Uni(2), Tagged(Tagged(Tagged(kIgmp)))), 1U);
  EXPECT_EQ(pass(Uni(1), Hex("02005e100001 020000000001 0800 cafe")), 0U) << "the unit's address";
  EXPECT_THAT(recorder.collect(), IsEmpty());
  EXPECT_THAT(unit.transmissions(), IsEmpty());
}

TEST_F(ClientTest, TheResultOfTheTaker_IsTheClients) {
  BCM6838X_SetDhcpTrapEnable(1);
  virtual_onu::ClientRecorder recorder(5);
  record(recorder);
  const BrmgrEvent event = virtual_onu::MakeEvent(6, 2, 0, kDhcp);
  EXPECT_EQ(BCM6838X_DhcpRelayHandle(&event), 5U);
  unit.onClientCall({});
  unit.platform().config().clientResult = 7;
  EXPECT_EQ(BCM6838X_DhcpRelayHandle(&event), 7U);
  EXPECT_THAT(recorder.collect(), SizeIs(1));
}

TEST_F(ClientTest, WithTheRelayOff_TrappedFramesGoOnToTheNetworkWithTheirTag) {
  // The driver traps, and the library's relay is off: only the driver was told.
  EXPECT_EQ(command(BRMGR_CMD_DHCP_TRAP, Joined({NativeWord(0), NativeWord(1)})), 0);
  EXPECT_EQ(command(BRMGR_CMD_PPPOE_TRAP, Joined({NativeWord(0), NativeWord(1)})), 0);
  EXPECT_EQ(pass(Uni(1), kDhcp), 0U);
  EXPECT_EQ(pass(Uni(1), kPadi), 0U);
  EXPECT_THAT(sent(), ElementsAre(std::pair(kWan, Tagged(kDhcp)), std::pair(kWan, Tagged(kPadi))));
}

TEST_F(ClientTest, MulticastControlOfTheNetwork_GoesToEachPortUnderItsRule) {
  BCM6838X_SetVlanTransparent(3);
  EXPECT_EQ(pass(kWan, Tagged(kIgmp)), 0U);
  const std::vector<Transmission> all = unit.transmissions();
  ASSERT_EQ(all.size(), 3U);
  EXPECT_EQ(all[0].port, Uni(1));
  EXPECT_EQ(all[0].frame, kIgmp);
  EXPECT_EQ(all[1].port, Uni(2));
  EXPECT_EQ(all[1].frame, Tagged(kIgmp));
  EXPECT_EQ(all[2].port, Uni(3));
  EXPECT_EQ(all[2].frame, Tagged(kIgmp));
}

TEST_F(ClientTest, EventsOfHostileLengths_ReachNobody) {
  BCM6838X_SetDhcpTrapEnable(1);
  BCM6838X_SetPPPoETrapEnable(1);
  virtual_onu::ClientRecorder recorder;
  record(recorder);
  std::size_t read = 0;
  for (const std::uint32_t type : {1U, 5U, 6U, 7U}) {
    for (const std::uint32_t length : {2049U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
      BrmgrEvent event = virtual_onu::MakeEvent(type, 2, 0, type == 7 ? kPadi : kDhcp);
      event.length = length;
      const auto* const first = reinterpret_cast<const std::uint8_t*>(&event);
      ASSERT_TRUE(unit.device().sendEvent({first, sizeof(event)}));
      BCM6838X_CapturePacket();
      ++read;
    }
  }
  EXPECT_EQ(read, 16U);
  EXPECT_EQ(pending(), 0U);
  EXPECT_THAT(recorder.collect(), IsEmpty());
  EXPECT_THAT(unit.transmissions(), IsEmpty());
}

TEST_F(ClientTest, AShortEvent_IsNoEvent) {
  ASSERT_TRUE(unit.device().sendEvent(Bytes(2067)));
  EXPECT_EQ(BCM6838X_CapturePacket(), 1U);
}

class ServedClientTest : public ClientTest {
 protected:
  void SetUp() override {
    ClientTest::SetUp();
    unit.onClientCall(virtual_onu::ServeClient);
  }

  [[nodiscard]] std::size_t groups() { return unit.device().mcastGroups().size(); }
};

TEST_F(ServedClientTest, AReport_OpensOneChannelAndGoesOn) {
  EXPECT_EQ(pass(Uni(1), kIgmp), 0U);
  ASSERT_EQ(groups(), 1U);
  const McastGroupEntry& entry = unit.device().mcastGroups().begin()->second;
  EXPECT_EQ(Bytes(std::begin(entry.groupMac), std::end(entry.groupMac)), Hex("01005e010101"));
  EXPECT_EQ(pass(Uni(1), kIgmp), 0U);
  EXPECT_EQ(groups(), 1U);
  EXPECT_THAT(sent(), ElementsAre(std::pair(kWan, Tagged(kIgmp)), std::pair(kWan, Tagged(kIgmp))));
}

TEST_F(ServedClientTest, EachPort_HasAChannelOfItsOwnUntilItLeaves) {
  Bytes leave = kIgmp;
  leave.at(14 + 24) = 0x17;
  pass(Uni(1), kIgmp);
  pass(Uni(2), kIgmp);
  EXPECT_EQ(groups(), 2U);
  pass(Uni(1), leave);
  EXPECT_EQ(groups(), 1U);
  pass(Uni(1), leave);
  EXPECT_EQ(groups(), 1U);
  pass(Uni(2), leave);
  EXPECT_EQ(groups(), 0U);
  pass(Uni(2), kIgmp);
  EXPECT_EQ(groups(), 1U);
  EXPECT_EQ(sent().size(), 6U);
}

TEST_F(ServedClientTest, OfMld_GroupsBeyondTheLinkGetAChannel) {
  pass(Uni(2), Hex(virtual_onu::kMldReport));
  EXPECT_EQ(groups(), 0U);
  pass(Uni(2), SiteReport());
  ASSERT_EQ(groups(), 1U);
  EXPECT_EQ(sent().size(), 2U);
  EXPECT_EQ(sent().back(), std::pair(kWan, SiteReport()));
}

TEST_F(ServedClientTest, BpdusAndRelayedFrames_GoOnToTheNetwork) {
  BCM6838X_SetDhcpTrapEnable(1);
  BCM6838X_SetPPPoETrapEnable(1);
  Bytes termination = kPadi;
  termination.at(15) = 0xA7;
  pass(Uni(1), kBpdu);
  pass(Uni(1), kDhcp);
  pass(Uni(1), kPadi);
  pass(Uni(2), termination);
  EXPECT_THAT(sent(), ElementsAre(std::pair(kWan, kBpdu), std::pair(kWan, Tagged(kDhcp)),
                                  std::pair(kWan, Tagged(kPadi)), std::pair(kWan, termination)));
}

}  // namespace
}  // namespace hal_test
