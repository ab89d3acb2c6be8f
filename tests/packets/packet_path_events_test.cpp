/// @file
/// Trapped frames as events: which frames become one, with which header and bytes, and what keeps
/// one from reaching the library.
#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include <brmgr_cmd.h>
#include <hal_bcm6838x.h>

#include "frame/frame.h"
#include "hal/packet/packet_bytes.h"
#include "packet_fixture.h"
#include "support/sample_frames.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using virtual_onu::Describe;
using virtual_onu::Disposition;
using virtual_onu::Hex;

/// The addresses that the platform gives to the unit, and a payload.
const std::string kFirstMac = "02005e100001 020000000001 0800 cafe";
const std::string kSecondMac = "02005e100002 020000000001 0800 cafe";
const std::string kOtherGroup = "0180c2000023 020000000001 88b5 cafe";
const std::string kDhcp6 =
    "333300010002 020000000001 86dd 6000 0000 0009 11 01 fe800000000000000000000000000001 "
    "ff020000000000000000000000010002 0222 0223 0009 0000 01";
const std::string kDhcpReply =
    "ffffffffffff 020000000002 0800 4500 001e 0001 0000 40 11 0000 c0000201 c0000202 0043 0044 "
    "000a "
    "0000 6869";
const std::string kPppoeSession = "020000000002 020000000001 8864 11 00 0001 0004 c021 0000";

/// A tag of VID 100 in a frame without one.
Bytes Tagged(Bytes frame) {
  virtual_onu::PushTag(frame, {0x8100, 0, false, 100});
  return frame;
}

class EventTest : public PacketTest {
 protected:
  void expectNoEvent(PortId port, const Bytes& frame) {
    const Verdict verdict = unit.receive(port, frame);
    EXPECT_NE(Describe(verdict.outcome).disposition, Disposition::Trap)
        << virtual_onu::ToHex(frame);
    EXPECT_EQ(pending(), 0U);
  }
};

struct EventRow {
  PortId port;
  Bytes frame;
  Outcome outcome;
  std::uint32_t type;
  std::uint32_t flow;
  std::size_t offset;  ///< of the frame in the data field
};

TEST_F(EventTest, TrappedFrames_BecomeTheEventsOfTheirProtocols) {
  BCM6838X_SetDhcpTrapEnable(1);
  BCM6838X_SetPPPoETrapEnable(1);
  const auto byFlow = Outcome::FlowTrap;
  const auto byDriver = Outcome::ProtocolTrap;
  const std::vector<EventRow> rows = {
      {Uni(1), Hex(virtual_onu::kIgmpReport), byDriver, 1, 0, 0},
      {Uni(4), Tagged(Hex(virtual_onu::kIgmpReport)), byDriver, 1, 0, 0},
      {Uni(2), Hex(virtual_onu::kMldReport), byDriver, 1, 0, 0},
      {kWan, Hex(virtual_onu::kIgmpReport), byDriver, 5, 0, 0},
      {kWan, Tagged(Hex(virtual_onu::kMldReport)), byDriver, 5, 0, 0},
      {Uni(3), Hex(virtual_onu::kBpdu), byFlow, 3, 2, 2},
      {Uni(1), Hex(kOtherGroup), byFlow, 3, 3, 2},
      {Uni(1), Hex(kFirstMac), byFlow, 0, 0, 0},
      {Uni(4), Hex(kSecondMac), byFlow, 0, 1, 0},
      {kWan, Hex(kFirstMac), byFlow, 0, 0, 0},
      {kWan, Hex(kSecondMac), byFlow, 0, 1, 0},
      {Uni(2), Hex(virtual_onu::kUdp4), byDriver, 6, 0, 2},
      {Uni(1), Tagged(Hex(virtual_onu::kUdp4)), byDriver, 6, 0, 2},
      {Uni(1), Hex(kDhcp6), byDriver, 6, 0, 2},
      {Uni(2), Hex(virtual_onu::kPadi), byDriver, 7, 0, 2},
  };
  for (const EventRow& row : rows) {
    forget();
    const Verdict verdict = unit.receive(row.port, row.frame);
    EXPECT_EQ(verdict.outcome, row.outcome);
    EXPECT_EQ(verdict.eventType, row.type);
    EXPECT_EQ(verdict.eventLoss, std::nullopt);
    EXPECT_THAT(verdict.deliveries, IsEmpty());
    EXPECT_EQ(eventLines().size(), 1U);
    ASSERT_EQ(pending(), 1U) << virtual_onu::ToHex(row.frame);
    const EventParts event = readEvent();
    EXPECT_THAT(event.header, ElementsAre(row.type, row.frame.size(), 0U, row.port.uni, row.flow));
    Bytes data(2048);
    std::ranges::copy(row.frame, data.begin() + static_cast<std::ptrdiff_t>(row.offset));
    EXPECT_EQ(event.data, data);
  }
}

TEST_F(EventTest, Events_AreTracedWithTypePortAndLength) {
  unit.receive(Uni(3), Hex(virtual_onu::kBpdu));
  unit.receive(kWan, Hex(virtual_onu::kMldReport));
  EXPECT_THAT(left(), ElementsAre("call event(BPDU, port 3, length 52)",
                                  "call event(MCAST_OUT, port 0, length 86)"));
}

TEST_F(EventTest, RelayProtocols_AreTrappedAtThePortsWhoseTrapIsOnOnly) {
  expectNoEvent(Uni(1), Hex(virtual_onu::kUdp4));
  expectNoEvent(Uni(1), Hex(virtual_onu::kPadi));
  command(BRMGR_CMD_DHCP_TRAP, Joined({NativeWord(0), NativeWord(7)}));
  command(BRMGR_CMD_PPPOE_TRAP, Joined({NativeWord(3), NativeWord(1)}));
  expectNoEvent(Uni(2), Hex(virtual_onu::kUdp4));
  expectNoEvent(Uni(1), Hex(virtual_onu::kPadi));
  EXPECT_EQ(unit.receive(Uni(1), Hex(virtual_onu::kUdp4)).eventType, 6U);
  EXPECT_EQ(unit.receive(Uni(4), Hex(virtual_onu::kPadi)).eventType, 7U);
  drain();
  BCM6838X_SetDhcpTrapEnable(0);
  BCM6838X_SetPPPoETrapEnable(0);
  expectNoEvent(Uni(1), Hex(virtual_onu::kUdp4));
  expectNoEvent(Uni(4), Hex(virtual_onu::kPadi));
}

TEST_F(EventTest, ATrapOfAPortThatTheChipDoesNotHave_IsRefused) {
  for (const std::uint32_t code : {BRMGR_CMD_DHCP_TRAP, BRMGR_CMD_PPPOE_TRAP}) {
    EXPECT_EQ(command(code, Joined({NativeWord(3), NativeWord(1)})), 0);
    EXPECT_EQ(command(code, Joined({NativeWord(4), NativeWord(1)})), -1);
    EXPECT_EQ(command(code, Joined({NativeWord(0xFFFFFFFF), NativeWord(1)})), -1);
    EXPECT_EQ(command(code, NativeWord(0)), -1);
  }
}

TEST_F(EventTest, RelayProtocols_AreTrappedTowardsTheServerAndFromPortsOnly) {
  BCM6838X_SetDhcpTrapEnable(1);
  BCM6838X_SetPPPoETrapEnable(1);
  expectNoEvent(kWan, Hex(virtual_onu::kUdp4));
  expectNoEvent(kWan, Hex(virtual_onu::kPadi));
  expectNoEvent(kWan, Hex(kDhcpReply));
  expectNoEvent(Uni(1), Hex(kDhcpReply));
  expectNoEvent(Uni(1), Hex(kPppoeSession));
  expectNoEvent(Uni(1), Hex(virtual_onu::kUdp4Fragment));
}

TEST_F(EventTest, MulticastControl_IsTrappedWhileTheCaptureFeatureIsOn) {
  for (const std::uint32_t off : {0U, 2U}) {
    command(BRMGR_CMD_FEATURE, NativeWord(off));
    expectNoEvent(Uni(1), Hex(virtual_onu::kIgmpReport));
    expectNoEvent(kWan, Hex(virtual_onu::kMldReport));
  }
  command(BRMGR_CMD_FEATURE, NativeWord(1));
  EXPECT_EQ(unit.receive(Uni(1), Hex(virtual_onu::kIgmpReport)).eventType, 1U);
}

TEST_F(EventTest, OfIcmpv6_TheMessagesOfMldAreTrapped) {
  std::size_t trapped = 0;
  for (unsigned type = 0; type < 256; ++type) {
    Bytes frame = Hex(virtual_onu::kMldReport);
    frame.at(14 + 40 + 8) = static_cast<std::uint8_t>(type);
    const bool isMld = type == 130 || type == 131 || type == 132 || type == 143;
    EXPECT_EQ(unit.receive(Uni(1), frame).eventType.has_value(), isMld) << type;
    trapped += pending();
    drain();
  }
  EXPECT_EQ(trapped, 4U);
}

TEST_F(EventTest, FramesOfAPortThatIsDown_AreNotTrapped) {
  unit.phy(1).setPartner({.present = false});
  const Verdict verdict = unit.receive(Uni(1), Hex(virtual_onu::kIgmpReport));
  EXPECT_EQ(verdict.outcome, Outcome::PortLinkDown);
  EXPECT_EQ(pending(), 0U);
  EXPECT_THAT(left(), IsEmpty());
}

struct LengthRow {
  std::string frame;
  std::size_t longest;
};

TEST_F(EventTest, FramesLongerThanAnEvent_AreDroppedCountedAndTraced) {
  BCM6838X_SetDhcpTrapEnable(1);
  BCM6838X_SetPPPoETrapEnable(1);
  const std::vector<LengthRow> rows = {{virtual_onu::kIgmpReport, 2048},
                                       {kFirstMac, 2048},
                                       {virtual_onu::kBpdu, 2046},
                                       {virtual_onu::kUdp4, 2046},
                                       {virtual_onu::kPadi, 2046}};
  std::uint64_t lost = 0;
  for (const LengthRow& row : rows) {
    Bytes frame = Padded(Hex(row.frame), row.longest);
    frame.back() = 0xA5;
    EXPECT_EQ(unit.receive(Uni(1), frame).eventLoss, std::nullopt);
    ASSERT_EQ(pending(), 1U);
    const EventParts event = readEvent();
    EXPECT_EQ(event.header.at(1), row.longest);
    EXPECT_EQ(event.data.back(), 0xA5);
    forget();
    frame.push_back(0);
    EXPECT_EQ(unit.receive(Uni(1), frame).eventLoss, Outcome::EventTooLong);
    EXPECT_EQ(pending(), 0U);
    EXPECT_EQ(counted(Uni(1), Outcome::EventTooLong), ++lost);
    ASSERT_EQ(eventLines().size(), 1U);
    EXPECT_TRUE(eventLines().front().ends_with(": event_too_long")) << eventLines().front();
  }
  EXPECT_EQ(lost, 5U);
}

TEST_F(EventTest, AFullQueue_DropsTheEventAndTakesTheNextOnceOneIsRead) {
  const Bytes frame = Hex(virtual_onu::kBpdu);
  for (std::size_t i = 1; i <= 32; ++i) {
    EXPECT_EQ(unit.receive(Uni(1), frame).eventLoss, std::nullopt);
    EXPECT_EQ(pending(), i);
  }
  forget();
  for (std::uint64_t i = 1; i <= 3; ++i) {
    const Verdict verdict = unit.receive(Uni(2), frame);
    EXPECT_EQ(verdict.outcome, Outcome::FlowTrap);
    EXPECT_EQ(verdict.eventLoss, Outcome::EventQueueFull);
    EXPECT_EQ(counted(Uni(2), Outcome::EventQueueFull), i);
  }
  EXPECT_THAT(left(), ElementsAre("call event(BPDU, port 2, length 52): event_queue_full",
                                  "call event(BPDU, port 2, length 52): event_queue_full",
                                  "call event(BPDU, port 2, length 52): event_queue_full"));
  EXPECT_EQ(pending(), 32U);
  readEvent();
  EXPECT_EQ(unit.receive(Uni(2), frame).eventLoss, std::nullopt);
  EXPECT_EQ(pending(), 32U);
}

class ClosedEventTest : public PacketTest {
 protected:
  void SetUp() override {}
};

TEST_F(ClosedEventTest, WithoutAnOpenDevice_TheEventIsDroppedCountedAndTraced) {
  command(BRMGR_CMD_FEATURE, NativeWord(1));
  forget();
  EXPECT_EQ(unit.receive(Uni(1), Hex(virtual_onu::kIgmpReport)).eventLoss, Outcome::EventNoReader);
  EXPECT_EQ(counted(Uni(1), Outcome::EventNoReader), 1U);
  EXPECT_EQ(counted(Uni(1), Outcome::ProtocolTrap), 1U);
  EXPECT_THAT(left(), ElementsAre("call event(MCAST_IN, port 1, length 46): event_no_reader"));
}

}  // namespace
}  // namespace hal_test
