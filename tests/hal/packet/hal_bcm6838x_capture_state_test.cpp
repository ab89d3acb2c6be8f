/// @file
/// Tests of the capture path: reading of events, and what becomes of each type but multicast. The
/// ports' modes are set in the table of the configuration.
#include <algorithm>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <thread>

#include <bcm6838x_vlan_port.h>
#include <brmgr_cmd.h>
#include <hal_bcm6838x.h>

#include "capture_fixture.h"
#include "packet_bytes.h"
#include "support/library_tables.h"
#include "support/library_test.h"
#include "support/wire_record.h"

namespace hal_test::capture_path {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

const std::string kLog = "log 4 hal/switch/bcm6838x/src/hal_bcm6838x_capture.cpp ";

std::string Bpdu(std::uint32_t port, const Bytes& frame) {
  return "message 41920 5376 " +
         virtual_onu::ToHex(Joined(
             {NativeWord(port), NativeWord(static_cast<std::uint32_t>(frame.size())), frame}));
}

TEST_F(CaptureTest, GetEvent_ReadsOneWholeRecord) {
  const Bytes first = EventDraft{.type = 0x01020304,
                                 .port = 0x0A0B0C0D,
                                 .gemFlowId = 0x05060708,
                                 .frame = FrameDraft{.size = 2048}.bytes(),
                                 .length = 0x11121314}
                          .bytes();
  const Bytes second = EventDraft{.type = 3}.bytes();
  ASSERT_TRUE(unit.device().sendEvent(first));
  ASSERT_TRUE(unit.device().sendEvent(second));
  BrmgrEvent event;
  EXPECT_EQ(BCM6838X_GetEvent(&event), 0U);
  EXPECT_EQ(event.eventType, 0x01020304U);
  EXPECT_EQ(event.length, 0x11121314U);
  EXPECT_EQ(event.reserved8, 0xDEADBEEFU);
  EXPECT_EQ(event.port, 0x0A0B0C0DU);
  EXPECT_EQ(event.gemFlowId, 0x05060708U);
  const Bytes data(std::begin(event.data), std::end(event.data));
  EXPECT_EQ(data, FrameDraft{.size = 2048}.bytes());
  EXPECT_EQ(BCM6838X_GetEvent(&event), 0U);
  EXPECT_EQ(event.eventType, 3U);
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(CaptureTest, GetEvent_AnyOtherSize_FailsAndLeavesTheBufferClearedBehindIt) {
  std::size_t checked = 0;
  for (const std::size_t size : {1U, 20U, 2067U}) {
    ASSERT_TRUE(unit.device().sendEvent(Bytes(size, 0x77)));
    BrmgrEvent event;
    std::fill_n(reinterpret_cast<std::uint8_t*>(&event), sizeof(event), 0x55);
    EXPECT_EQ(BCM6838X_GetEvent(&event), 1U) << size;
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(&event);
    EXPECT_EQ(bytes[size - 1], 0x77);
    EXPECT_TRUE(
        std::all_of(bytes + size, bytes + sizeof(event), [](int byte) { return byte == 0; }));
    ++checked;
  }
  EXPECT_EQ(checked, 3U);
}

TEST_F(CaptureTest, GetEvent_WritesOnlyTheRecord) {
  const GuardedBytes guarded(Bytes(2068, 0x55));
  ASSERT_TRUE(unit.device().sendEvent(Bytes(3000, 0x77)));
  // The rest of a longer record is lost, as read() has it.
  EXPECT_EQ(BCM6838X_GetEvent(static_cast<BrmgrEvent*>(static_cast<void*>(guarded.data()))), 0U);
  EXPECT_EQ(guarded.data()[2067], 0x77);
}

TEST_F(CaptureTest, GetEvent_NullPointer_ReadsNothing) {
  ASSERT_TRUE(unit.device().sendEvent(EventDraft{.type = 9}.bytes()));
  EXPECT_EQ(BCM6838X_GetEvent(nullptr), 2U);
  EXPECT_THAT(left(), IsEmpty());
  BrmgrEvent event;
  EXPECT_EQ(BCM6838X_GetEvent(&event), 0U);
  EXPECT_EQ(event.eventType, 9U);
}

TEST_F(CaptureTest, GetEvent_ReadFails_ClearsTheBuffer) {
  const std::int32_t device = sgHwDevFd;
  sgHwDevFd = -1;
  BrmgrEvent event;
  std::fill_n(reinterpret_cast<std::uint8_t*>(&event), sizeof(event), 0x55);
  EXPECT_EQ(BCM6838X_GetEvent(&event), 1U);
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(&event);
  EXPECT_TRUE(std::all_of(bytes, bytes + sizeof(event), [](int byte) { return byte == 0; }));
  EXPECT_EQ(BCM6838X_CapturePacket(), 1U);
  sgHwDevFd = device;
  EXPECT_THAT(left(), IsEmpty());
}

/// 0 is standard input, on which an ioctl would fail with 8.
// Required: descriptor-0-is-not-open
TEST_F(CaptureTest, Ioctl_DescriptorZero_CountsAsNotOpen) {
  const std::int32_t device = sgHwDevFd;
  sgHwDevFd = 0;
  EXPECT_EQ(BCM6838X_Ioctl(BRMGR_CMD_LASER_OFF, nullptr, 0, BRMGR_FLAG_INPUT), 10U);
  sgHwDevFd = device;
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(CaptureTest, GetEvent_WaitsForTheDriver) {
  std::uint32_t result = 99;
  BrmgrEvent event;
  std::thread reader([&] { result = BCM6838X_GetEvent(&event); });
  ASSERT_TRUE(unit.device().sendEvent(EventDraft{.type = 5}.bytes()));
  reader.join();
  EXPECT_EQ(result, 0U);
  EXPECT_EQ(event.eventType, 5U);
}

// Required: capture-by-feature-exactly-1
TEST_F(CaptureTest, FeatureNotOne_ReadsNothing) {
  ASSERT_TRUE(unit.device().sendEvent(EventDraft{.frame = IgmpFrame().bytes()}.bytes()));
  for (const std::uint32_t value : {0U, 2U, 0xFFFFFFFFU, 0x101U}) {
    unit.platform().config().features[27] = value;
    EXPECT_EQ(BCM6838X_CapturePacket(), 0U) << value;
  }
  EXPECT_THAT(left(), IsEmpty());
  unit.platform().config().features[27] = 1;
  EXPECT_EQ(BCM6838X_CapturePacket(), 0U);
  EXPECT_EQ(left().size(), 1U) << "the event was still there";
}

TEST_F(CaptureTest, OtherTypes_AreIgnored) {
  const Bytes frame = IgmpFrame().bytes();
  for (const std::uint32_t type : {0U, 2U, 4U, 8U, 0x100U, 0x01000000U, 0xFFFFFFFFU}) {
    EXPECT_EQ(capture({.type = type, .frame = frame}), 0U) << type;
    EXPECT_EQ(capture({.type = type, .frame = frame, .length = 0xFFFFFFFE}), 0U) << type;
  }
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(CaptureTest, ResultsOfTheClients_AreNotPassedOn) {
  BCM6838X_SetDhcpTrapEnable(1);
  BCM6838X_SetPPPoETrapEnable(1);
  unit.platform().config().clientResult = 1;
  forget();
  EXPECT_EQ(capture({.frame = IgmpFrame().bytes()}), 0U);
  EXPECT_EQ(capture({.frame = MldFrame()}), 0U);
  EXPECT_EQ(capture({.type = 6, .frame = DhcpFrame().bytes(), .frameOffset = 22}), 0U);
  EXPECT_EQ(capture({.type = 7, .frame = PppoeFrame().bytes(), .frameOffset = 22}), 0U);
  EXPECT_EQ(OfKind(left(), "call").size(), 4U);
}

TEST_F(CaptureTest, LengthsAboveTheDataField_AreRefusedWithALogLine) {
  const Bytes frame = FrameDraft{.size = 2048}.bytes();
  std::size_t checked = 0;
  for (const std::uint32_t length :
       {2049U, 2068U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFF0U, 0xFFFFFFFEU}) {
    const std::string line = kLog + "BCM6838X_CapturePacket(<line>), event with a frame of " +
                             std::to_string(length) + " bytes\r\n";
    struct Row {
      std::uint32_t type;
      std::uint32_t port;
      std::uint32_t result;
    };
    for (const Row row : {Row{1, 0, 1}, Row{1, 2, 1}, Row{5, 0, 0}, Row{5, 2, 0}}) {
      forget();
      EXPECT_EQ(capture({.type = row.type, .port = row.port, .frame = frame, .length = length}),
                row.result);
      EXPECT_THAT(left(), ElementsAre(line));
      ++checked;
    }
  }
  EXPECT_EQ(checked, 24U);
}

// Required: event-frame-at-22
TEST_F(CaptureTest, Bpdu_IsTakenFromOffset22) {
  const Bytes frame =
      FrameDraft{.destination = {0x01, 0x80, 0xC2, 0, 0, 0}, .type = 0x0026}.bytes();
  EXPECT_EQ(capture({.type = 3, .port = 0x01020304, .frame = frame, .frameOffset = 22}), 0U);
  EXPECT_THAT(left(), ElementsAre(Bpdu(0x01020304, frame)));
}

// Required: bpdu-cut-at-100
TEST_F(CaptureTest, Bpdu_UpTo100BytesAreSent) {
  const Bytes frame = FrameDraft{.size = 2046}.bytes();
  struct Row {
    std::uint32_t length;
    std::size_t sent;
  };
  std::size_t checked = 0;
  for (const Row row : {Row{0, 0}, Row{1, 1}, Row{99, 99}, Row{100, 100}, Row{101, 100},
                        Row{150, 100}, Row{2048, 100}, Row{2049, 100}, Row{0xFFFFFFFE, 100}}) {
    forget();
    EXPECT_EQ(
        capture({.type = 3, .port = 2, .frame = frame, .frameOffset = 22, .length = row.length}),
        0U);
    EXPECT_THAT(left(), ElementsAre(Bpdu(
                            2, Bytes(frame.begin(), frame.begin() + static_cast<long>(row.sent)))));
    ++checked;
  }
  EXPECT_EQ(checked, 9U);
}

TEST_F(CaptureTest, Bpdu_NoRuleApplies) {
  g_PortVlanInfo[1].vlanMode = BCM6838X_VLAN_MODE_NONE;
  EXPECT_EQ(capture({.type = 3, .port = 2, .frame = Bytes(60), .frameOffset = 22}), 0U);
  EXPECT_EQ(capture({.type = 3, .port = 77, .frame = Bytes(60), .frameOffset = 22}), 0U);
  EXPECT_THAT(left(), ElementsAre(Bpdu(2, Bytes(60)), Bpdu(77, Bytes(60))));
}

TEST_F(CaptureTest, Relays_GetTheirEvents) {
  EXPECT_EQ(capture({.type = 6, .port = 3, .frame = DhcpFrame().bytes(), .frameOffset = 22}), 0U);
  EXPECT_EQ(capture({.type = 7, .port = 3, .frame = PppoeFrame().bytes(), .frameOffset = 22}), 0U);
  EXPECT_THAT(commands(), ElementsAre(StartsWith("command BRMGR_CMD_SEND_DHCP len 72 "),
                                      StartsWith("command BRMGR_CMD_SEND_PPPOE len 72 ")));
}

// Required: capture-hides-relay-results
TEST_F(CaptureTest, Relays_FailuresAreNotPassedOn) {
  EXPECT_EQ(capture({.type = 6, .frame = PppoeFrame().bytes(), .frameOffset = 22}), 0U);
  EXPECT_EQ(capture({.type = 7, .frame = DhcpFrame().bytes(), .frameOffset = 22}), 0U);
  EXPECT_EQ(capture({.type = 6, .length = 0xFFFFFFFE}), 0U);
  EXPECT_EQ(capture({.type = 7, .length = 1701}), 0U);
  EXPECT_THAT(commands(), IsEmpty());
  EXPECT_EQ(logLines().size(), 4U);
}

}  // namespace
}  // namespace hal_test::capture_path
