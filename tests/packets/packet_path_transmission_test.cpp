/// @file
/// Frames that the library's transmit commands send: the port that each leaves by, what keeps it
/// from leaving, and who is told.
#include <algorithm>
#include <atomic>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <bcm6838x_port.h>
#include <brmgr_cmd.h>
#include <hal_bcm6838x.h>

#include "hal/packet/packet_bytes.h"
#include "packet_fixture.h"
#include "support/sample_frames.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using virtual_onu::Hex;

const Bytes kPlain = Hex(virtual_onu::kUntagged);
const Bytes kDhcpRequest = Hex(virtual_onu::kUdp4);
const Bytes kDhcpReply =
    Hex("020000000001 020000000002 0800 4500 001e 0001 0000 40 11 0000 c0000202 c0000201 0043 0044 "
        "000a 0000 6869");

/// A PPPoE discovery packet of a code between two stations.
Bytes Pppoe(std::uint8_t code, const std::string& type = "8863") {
  Bytes frame = Hex("020000000002 020000000001 " + type + " 11 00 0000 0004 0101 0000");
  frame.at(15) = code;
  return frame;
}

Bytes RelayRecord(std::uint32_t port, const Bytes& frame) {
  return Joined({NativeWord(port), NativeWord(static_cast<std::uint32_t>(frame.size())), frame});
}

Bytes PacketRecord(std::uint32_t port, const Bytes& frame) {
  return Joined({NativeWord(static_cast<std::uint32_t>(frame.size())), NativeWord(port),
                 NativeWord(0), NativeWord(1), frame, Bytes(2)});
}

Bytes RecordOf(std::uint32_t code, std::uint32_t port, const Bytes& frame) {
  return code == BRMGR_CMD_SEND_PKT ? PacketRecord(port, frame) : RelayRecord(port, frame);
}

const std::vector<std::uint32_t> kCommands = {BRMGR_CMD_SEND_BPDU, BRMGR_CMD_SEND_DHCP,
                                              BRMGR_CMD_SEND_PPPOE, BRMGR_CMD_SEND_PKT};

class TransmissionTest : public PacketTest {
 protected:
  void SetUp() override {
    PacketTest::SetUp();
    unit.onTransmit([this](PortId port, ByteView frame) {
      taken.emplace_back(port, Bytes(frame.begin(), frame.end()));
    });
  }

  Transmission sendOne(std::uint32_t code, std::uint32_t port, const Bytes& frame) {
    EXPECT_EQ(command(code, RecordOf(code, port, frame)), 0);
    const std::vector<Transmission> all = unit.transmissions();
    EXPECT_FALSE(all.empty());
    return all.empty() ? Transmission{} : all.back();
  }

  [[nodiscard]] std::string lastReason() const {
    const auto events = virtual_onu::EventsOf<virtual_onu::CommandEvent>(unit.trace().events());
    return events.empty() ? "no command" : events.back().reason;
  }

  std::vector<std::pair<PortId, Bytes>> taken;
};

TEST_F(TransmissionTest, EachCommand_SendsByThePortThatItNames) {
  std::size_t sent = 0;
  for (const std::uint32_t code : kCommands) {
    for (std::uint32_t port = 0; port <= 5; ++port) {
      taken.clear();
      const PortId expected = port == 0 || port == 5 ? kWan : Uni(port);
      const Transmission transmission = sendOne(code, port, kPlain);
      EXPECT_EQ(transmission.number, ++sent);
      EXPECT_EQ(transmission.command, code);
      EXPECT_EQ(transmission.port, expected);
      EXPECT_EQ(transmission.outcome, Outcome::Transmitted);
      EXPECT_EQ(transmission.frame, kPlain);
      EXPECT_THAT(taken, ElementsAre(std::pair(expected, kPlain)));
      EXPECT_EQ(lastReason(), "");
    }
  }
  EXPECT_EQ(sent, 24U);
  EXPECT_EQ(counted(kWan, Outcome::Transmitted), 8U);
  EXPECT_EQ(counted(Uni(3), Outcome::Transmitted), 4U);
  EXPECT_EQ(unit.dataPath().counters().portCount(Uni(3)).framesOut, 4U);
  EXPECT_EQ(unit.dataPath().counters().portCount(Uni(3)).octetsOut, 4 * kPlain.size());
  EXPECT_EQ(unit.dataPath().counters().portCount(Uni(3)).framesIn, 0U);
}

struct SideRow {
  std::uint32_t code;
  Bytes frame;
  PortId port;
};

TEST_F(TransmissionTest, RelayedFrames_GoToTheSideThatTheirProtocolSpeaksTo) {
  const std::vector<SideRow> rows = {
      {BRMGR_CMD_SEND_DHCP, kDhcpRequest, kWan},
      {BRMGR_CMD_SEND_DHCP, kDhcpReply, Uni(2)},
      {BRMGR_CMD_SEND_PPPOE, Pppoe(0x09), kWan},
      {BRMGR_CMD_SEND_PPPOE, Pppoe(0x19), kWan},
      {BRMGR_CMD_SEND_PPPOE, Pppoe(0x07), Uni(2)},
      {BRMGR_CMD_SEND_PPPOE, Pppoe(0x65), Uni(2)},
      {BRMGR_CMD_SEND_PPPOE, Pppoe(0xA7), Uni(2)},
      {BRMGR_CMD_SEND_PPPOE, Pppoe(0x09, "8864"), Uni(2)},
      {BRMGR_CMD_SEND_BPDU, kDhcpRequest, Uni(2)},
      {BRMGR_CMD_SEND_PKT, kDhcpRequest, Uni(2)},
      {BRMGR_CMD_SEND_PKT, Pppoe(0x09), Uni(2)},
  };
  for (const SideRow& row : rows) {
    EXPECT_EQ(sendOne(row.code, 2, row.frame).port, row.port) << virtual_onu::ToHex(row.frame);
  }
  EXPECT_EQ(taken.size(), 11U);
}

TEST_F(TransmissionTest, ATermination_GoesAwayFromTheStationThatWasTrapped) {
  const Bytes termination = Pppoe(0xA7);
  BCM6838X_SetPPPoETrapEnable(1);
  ASSERT_EQ(unit.receive(Uni(2), termination).eventType, 7U);
  EXPECT_EQ(sendOne(BRMGR_CMD_SEND_PPPOE, 2, termination).port, kWan);
  EXPECT_EQ(sendOne(BRMGR_CMD_SEND_PPPOE, 1, termination).port, Uni(1));
  Bytes answer = termination;
  answer.at(11) = 0x02;
  EXPECT_EQ(sendOne(BRMGR_CMD_SEND_PPPOE, 2, answer).port, Uni(2));
}

TEST_F(TransmissionTest, AClosedPort_SendsNothingAndTheTraceSaysWhy) {
  BCM6838X_SetPortAdminState(1, 0);
  unit.phy(2).setPartner({.present = false});
  struct Row {
    std::uint32_t port;
    Bytes frame;
    Outcome outcome;
    std::string reason;
  };
  const std::vector<Row> rows = {
      {1, kPlain, Outcome::EgressAdminDown, "not sent at uni1: egress_admin_down"},
      {2, kPlain, Outcome::EgressLinkDown, "not sent at uni2: egress_link_down"},
      {6, kPlain, Outcome::UnknownPort, "not sent at uni6: unknown_port"},
      {0xFFFFFFFF, kPlain, Outcome::UnknownPort, "not sent at uni4294967295: unknown_port"},
      {3, Bytes(13), Outcome::RuntFrame, "not sent at uni3: runt_frame"},
      {3, {}, Outcome::RuntFrame, "not sent at uni3: runt_frame"},
  };
  std::size_t checked = 0;
  for (const Row& row : rows) {
    for (const std::uint32_t code : kCommands) {
      EXPECT_EQ(sendOne(code, row.port, row.frame).outcome, row.outcome);
      EXPECT_EQ(lastReason(), row.reason);
      ++checked;
    }
  }
  EXPECT_EQ(checked, 24U);
  EXPECT_THAT(taken, IsEmpty());
  EXPECT_EQ(counted(Uni(1), Outcome::EgressAdminDown), 4U);
  EXPECT_EQ(counted(Uni(2), Outcome::EgressLinkDown), 4U);
  BCM6838X_SetPortAdminState(1, 1);
  EXPECT_EQ(sendOne(BRMGR_CMD_SEND_PKT, 1, kPlain).outcome, Outcome::Transmitted);
  EXPECT_EQ(taken.size(), 1U);
}

TEST_F(TransmissionTest, ARecordThatDoesNotHoldItsFrame_IsRefusedAndSendsNothing) {
  std::size_t checked = 0;
  for (const std::uint32_t code : kCommands) {
    const std::size_t header = code == BRMGR_CMD_SEND_PKT ? 16 : 8;
    const std::size_t lengthOffset = code == BRMGR_CMD_SEND_PKT ? 0 : 4;
    Bytes record = RecordOf(code, 1, kPlain);
    record.resize(header + kPlain.size());
    EXPECT_EQ(command(code, record), 0);
    taken.clear();
    forget();
    EXPECT_EQ(command(code, Bytes(record.begin(), record.end() - 1)), -1);
    EXPECT_EQ(lastReason(), "frame of 16 bytes in a record with 15");
    EXPECT_EQ(command(code, Bytes(header - 1)), -1);
    EXPECT_EQ(lastReason(), "short record");
    EXPECT_EQ(command(code, {}), -1);
    const Bytes huge = NativeWord(0xFFFFFFFF);
    std::ranges::copy(huge, record.begin() + static_cast<std::ptrdiff_t>(lengthOffset));
    EXPECT_EQ(command(code, record), -1);
    EXPECT_EQ(lastReason(), "frame of 4294967295 bytes in a record with 16");
    EXPECT_THAT(taken, IsEmpty());
    ++checked;
  }
  EXPECT_EQ(checked, 4U);
}

TEST_F(TransmissionTest, ARefusedCommand_SendsNothing) {
  unit.device().faults().refuseFrom(1);
  EXPECT_EQ(command(BRMGR_CMD_SEND_PKT, PacketRecord(1, kPlain)), -1);
  EXPECT_THAT(unit.transmissions(), IsEmpty());
  EXPECT_THAT(taken, IsEmpty());
}

TEST_F(TransmissionTest, SentFrames_AreMirrored) {
  PortMirrorRecord mirror = {};
  mirror.destinationPort = 5;
  mirror.enable = 1;
  const auto* const first = reinterpret_cast<const std::uint8_t*>(&mirror);
  ASSERT_EQ(command(BRMGR_CMD_PORT_MIRROR, Bytes(first, first + sizeof(mirror))), 0);
  const Transmission sent = sendOne(BRMGR_CMD_SEND_PKT, 1, kPlain);
  ASSERT_EQ(sent.copies.size(), 1U);
  EXPECT_EQ(sent.copies.front().of, Uni(1));
  EXPECT_EQ(sent.copies.front().outcome, Outcome::Mirrored);
  EXPECT_THAT(taken, ElementsAre(std::pair(Uni(1), kPlain), std::pair(Uni(4), kPlain)));
  EXPECT_EQ(counted(Uni(4), Outcome::Mirrored), 1U);
}

TEST_F(TransmissionTest, TheNewestThousand_AreKept) {
  for (int i = 0; i < 1003; ++i) {
    command(BRMGR_CMD_SEND_PKT, PacketRecord(1, kPlain));
  }
  const std::vector<Transmission> all = unit.transmissions();
  ASSERT_EQ(all.size(), 1000U);
  EXPECT_EQ(all.front().number, 4U);
  EXPECT_EQ(all.back().number, 1003U);
  EXPECT_EQ(unit.transmissions(1002).size(), 2U);
}

TEST_F(TransmissionTest, ATaker_MayReceiveAndSend) {
  Verdict back;
  unit.onTransmit([this, &back](PortId port, ByteView frame) {
    if (port == kWan) {
      back = unit.receive(Uni(2), frame);
      command(BRMGR_CMD_SEND_PKT, PacketRecord(3, kPlain));
    }
  });
  command(BRMGR_CMD_SEND_PKT, PacketRecord(0, Hex(virtual_onu::kIgmpReport)));
  EXPECT_EQ(back.eventType, 1U);
  EXPECT_EQ(pending(), 1U);
  ASSERT_EQ(unit.transmissions().size(), 2U);
  EXPECT_EQ(unit.transmissions().back().port, Uni(3));
  unit.onTransmit({});
  EXPECT_EQ(sendOne(BRMGR_CMD_SEND_PKT, 1, kPlain).outcome, Outcome::Transmitted);
}

TEST_F(TransmissionTest, ManyThreads_LoseNothing) {
  constexpr int kRounds = 200;
  std::atomic<int> frames = 0;
  unit.onTransmit([&frames](PortId, ByteView) { ++frames; });
  const auto receive = [this](PortId port, const std::string& frame) {
    for (int i = 0; i < kRounds; ++i) {
      unit.receive(port, Hex(frame));
    }
  };
  std::thread subscriber(receive, Uni(1), virtual_onu::kBpdu);
  std::thread network(receive, kWan, virtual_onu::kUntagged);
  std::thread configuration([this] {
    for (std::uint32_t i = 0; i < kRounds; ++i) {
      command(BRMGR_CMD_DHCP_TRAP, Joined({NativeWord(i % 4), NativeWord(i % 2)}));
    }
  });
  for (int i = 0; i < kRounds; ++i) {
    command(BRMGR_CMD_SEND_PKT, PacketRecord(1, kPlain));
  }
  subscriber.join();
  network.join();
  configuration.join();
  EXPECT_EQ(frames, kRounds);
  EXPECT_EQ(counted(Uni(1), Outcome::Transmitted), 200U);
  EXPECT_EQ(counted(Uni(1), Outcome::FlowTrap), 200U);
  EXPECT_EQ(counted(Uni(1), Outcome::EventQueueFull) + pending(), 200U);
}

}  // namespace
}  // namespace hal_test
