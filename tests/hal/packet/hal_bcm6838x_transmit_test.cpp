/// @file
/// Tests of the four transmit commands and of the sorting of frames onto them.
#include <array>
#include <cstdint>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <hal_bcm6838x.h>

#include "packet_bytes.h"
#include "support/library_test.h"
#include "support/wire_record.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kLog = "log 1 hal/switch/bcm6838x/src/hal_bcm6838x_transmit.cpp ";

/// The record that a relay transmit passes: port, length, the frame's bytes.
std::string SentRelay(const std::string& command, std::uint32_t port, const Bytes& frame) {
  return Sent(command, 0,
              WireRecord(8 + frame.size())
                  .u32(0, port)
                  .u32(4, static_cast<std::uint32_t>(frame.size()))
                  .bytes(8, frame));
}

/// The record of the general transmit: its header, the frame, two bytes more.
std::string SentPacket(const std::array<std::uint32_t, 4>& header, const Bytes& frame,
                       const Bytes& behind = {0, 0}) {
  return Sent("SEND_PKT", 0,
              WireRecord(18 + frame.size())
                  .u32(0, header[0])
                  .u32(4, header[1])
                  .u32(8, header[2])
                  .u32(12, header[3])
                  .bytes(16, frame)
                  .bytes(16 + frame.size(), behind));
}

class TransmitTest : public LibraryTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    forget();
  }

  /// Sends a frame that ends where unreadable memory begins.
  static void send(const Bytes& frame, std::uint32_t port) {
    const GuardedBytes guarded(frame);
    EXPECT_EQ(
        BCM6838X_SendPacket(guarded.data(), static_cast<std::uint32_t>(frame.size()), 77, 78, port),
        0U);
  }
};

struct RelayCommand {
  std::uint32_t (*send)(const RelayPkt* record);
  std::string operation;
  std::string command;
  std::uint32_t longest;
};

const std::vector<RelayCommand> kRelayCommands = {
    {BCM6838X_SendBpduPkt, "BCM6838X_SendBpduPkt", "SEND_BPDU", 100},
    {BCM6838X_SendDhcpPkt, "BCM6838X_SendDhcpPkt", "SEND_DHCP", 1700},
    {BCM6838X_SendPPPoEPkt, "BCM6838X_SendPPPoEPkt", "SEND_PPPOE", 1700},
};

RelayPkt MakeRelay(std::uint32_t port, std::uint32_t length) {
  RelayPkt record;
  std::memset(&record, 0x5A, sizeof(record));
  record.desPort = port;
  record.length = length;
  return record;
}

TEST_F(TransmitTest, Relays_PassTheHeaderAndTheFrameAlone) {
  std::size_t checked = 0;
  for (const RelayCommand& row : kRelayCommands) {
    for (const std::uint32_t length : {0U, 1U, 64U, row.longest}) {
      forget();
      const RelayPkt record = MakeRelay(0x01020304, length);
      EXPECT_EQ(row.send(&record), 0U);
      EXPECT_THAT(left(), ElementsAre(SentRelay(row.command, 0x01020304, Bytes(length, 0x5A))));
      ++checked;
    }
  }
  EXPECT_EQ(checked, 12U);
}

TEST_F(TransmitTest, Relays_ReadNothingBehindTheFrame) {
  for (const RelayCommand& row : kRelayCommands) {
    const RelayPkt record = MakeRelay(2, 60);
    Bytes bytes(8 + 60);
    std::memcpy(bytes.data(), &record, bytes.size());
    const GuardedBytes guarded(bytes);
    EXPECT_EQ(row.send(static_cast<const RelayPkt*>(static_cast<const void*>(guarded.data()))), 0U)
        << row.operation;
  }
}

TEST_F(TransmitTest, Relays_TooLong_AreRefusedWithTheirLogLine) {
  std::size_t checked = 0;
  for (const RelayCommand& row : kRelayCommands) {
    for (const std::uint32_t length : {row.longest + 1, 2000U, 0xFFFFFFF8U, 0xFFFFFFFFU}) {
      forget();
      const RelayPkt record = MakeRelay(4000000000, length);
      EXPECT_EQ(row.send(&record), 2U);
      EXPECT_THAT(left(), ElementsAre(kLog + row.operation + "( desPort=4000000000,  length=" +
                                      std::to_string(length) + ") params error.\r\n"));
      ++checked;
    }
  }
  EXPECT_EQ(checked, 12U);
}

// Required: null-transmit-silent
TEST_F(TransmitTest, NullRecords_AreRefusedSilently) {
  for (const RelayCommand& row : kRelayCommands) {
    EXPECT_EQ(row.send(nullptr), 2U) << row.operation;
  }
  EXPECT_EQ(BCM6838X_RdpaSendIgmpPkt(nullptr), 2U);
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(TransmitTest, TransmitsReturnTheCommandsResult) {
  const RelayPkt record = MakeRelay(1, 60);
  RdpaPkt packet = {};
  packet.size = 60;
  unit.device().faults().refuseFrom(1);
  for (const RelayCommand& row : kRelayCommands) {
    EXPECT_EQ(row.send(&record), 8U) << row.operation;
  }
  EXPECT_EQ(BCM6838X_RdpaSendIgmpPkt(&packet), 8U);
  EXPECT_EQ(commands().size(), 4U);
  EXPECT_EQ(logLines().size(), 4U);
}

class ClosedTransmitTest : public LibraryTest {};

TEST_F(ClosedTransmitTest, TransmitsReturnTenWithoutADevice) {
  const RelayPkt record = MakeRelay(1, 60);
  RdpaPkt packet = {};
  for (const RelayCommand& row : kRelayCommands) {
    EXPECT_EQ(row.send(&record), 10U) << row.operation;
  }
  EXPECT_EQ(BCM6838X_RdpaSendIgmpPkt(&packet), 10U);
  EXPECT_EQ(BCM6838X_SendPacket(record.data, 60, 0, 0, 1), 0U);
  EXPECT_THAT(left(), IsEmpty());
}

// Required: send-passes-two-bytes-more
TEST_F(TransmitTest, RdpaSendIgmpPkt_PassesTwoBytesMoreThanTheFrame) {
  std::size_t checked = 0;
  for (const std::uint32_t size : {0U, 1U, 64U, 2045U, 2046U}) {
    forget();
    RdpaPkt packet;
    std::memset(&packet, 0x5A, sizeof(packet));
    packet.size = size;
    packet.desPort = 0x01020304;
    packet.srcPort = 0x05060708;
    packet.gemFlowId = 0x090A0B0C;
    EXPECT_EQ(BCM6838X_RdpaSendIgmpPkt(&packet), 0U);
    EXPECT_THAT(left(), ElementsAre(SentPacket({size, 0x01020304, 0x05060708, 0x090A0B0C},
                                               Bytes(size, 0x5A), {0x5A, 0x5A})));
    ++checked;
  }
  EXPECT_EQ(checked, 5U);
}

TEST_F(TransmitTest, RdpaSendIgmpPkt_TooLong_IsRefusedWithTheLimit) {
  for (const std::uint32_t size : {2047U, 2048U, 0xFFFFFFFFU}) {
    forget();
    RdpaPkt packet = {};
    packet.size = size;
    packet.desPort = 3000000000;
    packet.srcPort = 2;
    packet.gemFlowId = 0xFFFFFFFF;
    EXPECT_EQ(BCM6838X_RdpaSendIgmpPkt(&packet), 2U);
    EXPECT_THAT(left(), ElementsAre(kLog + "BCM6838X_RdpaSendIgmpPkt(size=" + std::to_string(size) +
                                    ">2046, desPort=3000000000, srcPort=2, "
                                    "gemFlowId=4294967295) params error.\r\n"));
  }
}

TEST_F(TransmitTest, SendPacket_Bpdu_PassesUpToAHundredBytes) {
  const Bytes group = {0x01, 0x80, 0xC2, 0x00, 0x00, 0x00};
  std::size_t checked = 0;
  for (const std::size_t length : {6U, 14U, 64U, 99U, 100U}) {
    forget();
    Bytes frame = FrameDraft{.destination = group, .type = 0x0026}.bytes();
    frame.resize(length, 0x77);
    send(frame, 2);
    EXPECT_THAT(left(), ElementsAre(SentRelay("SEND_BPDU", 2, frame)));
    ++checked;
  }
  EXPECT_EQ(checked, 5U);
}

// Required: bpdu-cut-at-100
TEST_F(TransmitTest, SendPacket_LongBpdu_IsRefusedWithItsLogLine) {
  const Bytes group = {0x01, 0x80, 0xC2, 0x00, 0x00, 0x00};
  for (const std::size_t length : {101U, 1518U, 65535U}) {
    forget();
    send(FrameDraft{.destination = group, .size = length}.bytes(), 2);
    EXPECT_THAT(left(), ElementsAre(kLog + "BCM6838X_SendBpduPkt( desPort=2,  length=" +
                                    std::to_string(length) + ") params error.\r\n"));
  }
}

TEST_F(TransmitTest, SendPacket_TheBridgeGroupComesBeforeTheProtocols) {
  FrameDraft dhcp = DhcpFrame();
  dhcp.destination = {0x01, 0x80, 0xC2, 0x00, 0x00, 0x00};
  send(dhcp.bytes(), 1);
  EXPECT_THAT(left(), ElementsAre(SentRelay("SEND_BPDU", 1, dhcp.bytes())));
  forget();
  FrameDraft second = {.destination = {0x01, 0x80, 0xC2, 0x00, 0x00, 0x23}};
  send(second.bytes(), 1);
  EXPECT_THAT(left(), ElementsAre(SentPacket({64, 1, 0, 1}, second.bytes())));
}

TEST_F(TransmitTest, SendPacket_DhcpAndPppoe_UpTo1700Bytes) {
  struct Row {
    FrameDraft draft;
    std::string command;
    std::string operation;
  };
  const std::vector<Row> rows = {
      {DhcpFrame(), "SEND_DHCP", "BCM6838X_SendDhcpPkt"},
      {{.type = 0x86DD, .payload = Ipv6Payload(17, 547)}, "SEND_DHCP", "BCM6838X_SendDhcpPkt"},
      {{.tags = {{0x8100, 7}}, .payload = Ipv4Payload(17, 67)},
       "SEND_DHCP",
       "BCM6838X_SendDhcpPkt"},
      {PppoeFrame(), "SEND_PPPOE", "BCM6838X_SendPPPoEPkt"},
      {{.type = 0x8864}, "SEND_PPPOE", "BCM6838X_SendPPPoEPkt"},
      {{.tags = {{0x8100, 7}, {0x8100, 8}}, .type = 0x8863}, "SEND_PPPOE", "BCM6838X_SendPPPoEPkt"},
  };
  std::size_t checked = 0;
  for (Row row : rows) {
    for (const std::size_t size : {64U, 1699U, 1700U}) {
      forget();
      row.draft.size = size;
      send(row.draft.bytes(), 0x105);
      EXPECT_THAT(left(), ElementsAre(SentRelay(row.command, 5, row.draft.bytes())));
    }
    for (const std::size_t size : {1701U, 2048U, 65535U}) {
      forget();
      row.draft.size = size;
      send(row.draft.bytes(), 5);
      EXPECT_THAT(left(), ElementsAre(kLog + row.operation + "( desPort=5,  length=" +
                                      std::to_string(size) + ") params error.\r\n"));
    }
    ++checked;
  }
  EXPECT_EQ(checked, 6U);
}

// Required: dhcp-towards-servers-alone
TEST_F(TransmitTest, SendPacket_TowardsADhcpClient_IsAnyOtherFrame) {
  const Bytes frame = FrameDraft{.payload = Ipv4Payload(17, 68)}.bytes();
  send(frame, 1);
  EXPECT_THAT(left(), ElementsAre(SentPacket({64, 1, 0, 1}, frame)));
}

// Required: sent-frames-name-flow-1
TEST_F(TransmitTest, SendPacket_OtherFrames_UpTo2046Bytes) {
  std::size_t checked = 0;
  for (const std::size_t size : {0U, 1U, 5U, 6U, 13U, 64U, 2045U, 2046U}) {
    forget();
    Bytes frame = IgmpFrame().bytes();
    frame.resize(size, 0x33);
    send(frame, 3);
    EXPECT_THAT(left(),
                ElementsAre(SentPacket({static_cast<std::uint32_t>(size), 3, 0, 1}, frame)));
    ++checked;
  }
  EXPECT_EQ(checked, 8U);
  for (const std::size_t size : {2047U, 2048U, 2049U, 65535U}) {
    forget();
    send(FrameDraft{.type = 0x0806, .size = size}.bytes(), 3);
    EXPECT_THAT(left(), ElementsAre(kLog + "BCM6838X_RdpaSendIgmpPkt(size=" + std::to_string(size) +
                                    ">2046, desPort=3, srcPort=0, gemFlowId=1) params error.\r\n"));
  }
}

// Required: unknown-port-is-sent-to-0
TEST_F(TransmitTest, SendPacket_PortTheUnitDoesNotHave_BecomesNone) {
  unit.platform().config().ethPorts = 8;
  struct Row {
    std::uint32_t port;
    std::uint32_t sent;
  };
  const Bytes frame = IgmpFrame().bytes();
  for (const Row row :
       std::vector<Row>{{0, 0}, {1, 1}, {8, 8}, {9, 0}, {255, 0}, {0x108, 8}, {0x100, 0}}) {
    forget();
    send(frame, row.port);
    EXPECT_THAT(left(), ElementsAre(SentPacket({64, row.sent, 0, 1}, frame))) << row.port;
  }
  forget();
  send(PppoeFrame().bytes(), 9);
  EXPECT_THAT(left(), ElementsAre(SentRelay("SEND_PPPOE", 9, PppoeFrame().bytes())))
      << "the relays pass the port on as it is";
}

TEST_F(TransmitTest, SendPacket_OnlyTheLow16BitsOfTheLengthCount) {
  const Bytes frame = IgmpFrame().bytes();
  const GuardedBytes guarded(frame);
  EXPECT_EQ(BCM6838X_SendPacket(guarded.data(), 0x00050000 + 64, 0, 0, 1), 0U);
  EXPECT_THAT(left(), ElementsAre(SentPacket({64, 1, 0, 1}, frame)));
}

TEST_F(TransmitTest, SendPacket_FieldsBehindTheEnd_DoNotCount) {
  // Each of these would be another frame if bytes behind its end were read.
  Bytes dhcp = DhcpFrame().bytes();
  dhcp.resize(37);
  send(dhcp, 1);
  EXPECT_THAT(left(), ElementsAre(SentPacket({37, 1, 0, 1}, dhcp)));
  forget();
  dhcp = DhcpFrame().bytes();
  dhcp.resize(38);
  send(dhcp, 1);
  EXPECT_THAT(left(), ElementsAre(SentRelay("SEND_DHCP", 1, dhcp)));
  forget();
  Bytes pppoe = PppoeFrame().bytes();
  pppoe.resize(13);
  send(pppoe, 1);
  EXPECT_THAT(left(), ElementsAre(SentPacket({13, 1, 0, 1}, pppoe)));
  forget();
  pppoe = PppoeFrame().bytes();
  pppoe.resize(14);
  send(pppoe, 1);
  EXPECT_THAT(left(), ElementsAre(SentRelay("SEND_PPPOE", 1, pppoe)));
  forget();
  const Bytes group = {0x01, 0x80, 0xC2, 0x00, 0x00};
  send(group, 1);
  EXPECT_THAT(left(), ElementsAre(SentPacket({5, 1, 0, 1}, group)));
}

// Required: send-always-succeeds
TEST_F(TransmitTest, SendPacket_HidesRefusals) {
  unit.device().faults().refuseFrom(1);
  send(FrameDraft{.destination = {0x01, 0x80, 0xC2, 0x00, 0x00, 0x00}}.bytes(), 1);
  send(DhcpFrame().bytes(), 1);
  send(PppoeFrame().bytes(), 1);
  send(IgmpFrame().bytes(), 1);
  EXPECT_EQ(commands().size(), 4U);
  EXPECT_EQ(logLines().size(), 4U);
}

TEST_F(TransmitTest, SendPacket_NullPointer_IsLogged) {
  EXPECT_EQ(BCM6838X_SendPacket(nullptr, 64, 0, 0, 1), 0U);
  EXPECT_THAT(left(), ElementsAre("log 4 hal/switch/bcm6838x/src/hal_bcm6838x_transmit.cpp "
                                  "BCM6838X_SendPacket(<line>), null pointer\r\n"));
}

}  // namespace
}  // namespace hal_test
