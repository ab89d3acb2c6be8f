/// @file
/// Tests of the command channel: the order of its checks, what reaches the driver, and what a
/// refusal leaves behind.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <initializer_list>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include <brmgr_cmd.h>
#include <brmgr_record.h>
#include <hal_bcm6838x.h>

#include "support/library_test.h"
#include "support/wire_record.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using virtual_onu::CommandEvent;

constexpr std::uint32_t kLastCode = 182;

class ClosedChannelTest : public LibraryTest {};

// Required: closed-device-before-code
TEST_F(ClosedChannelTest, Ioctl_DeviceNotOpen_ReturnsTenForEveryCodeAndSendsNothing) {
  // Codes out of range included: whether the device is open is checked first.
  const std::vector<std::uint32_t> codes = {0, 25, 98, kLastCode, 183, 0x80000000U, 0xFFFFFFFFU};
  for (const std::uint32_t code : codes) {
    EXPECT_EQ(BCM6838X_Ioctl(code, nullptr, 0, BRMGR_FLAG_INPUT), 10U) << code;
  }
  EXPECT_THAT(left(), IsEmpty());
}

class ChannelTest : public LibraryTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    forget();
  }
};

TEST_F(ChannelTest, Ioctl_HandsRecordLengthAndFlagToTheDriver) {
  IngressFlowDel record = {1, 0x01020304, 5};
  unit.device().faults().refuseNth(1);
  EXPECT_EQ(BCM6838X_Ioctl(BRMGR_CMD_FLOW_DEL, &record, sizeof(record), BRMGR_FLAG_READ_BACK), 8U);
  EXPECT_THAT(commands(), ElementsAre(Sent("FLOW_DEL", 1,
                                           WireRecord(12).u32(0, 1).u32(4, 0x01020304).u32(8, 5))));
}

TEST_F(ChannelTest, Ioctl_HandsTheAddressOfTheRecordToTheDriver) {
  IngressFlowDel record = {1, 2, 3};
  std::vector<const void*> addresses;
  unit.device().onRequest([&](const BrmgrRequest& request) -> std::optional<int> {
    addresses.push_back(request.buf);
    return std::nullopt;
  });
  BCM6838X_Ioctl(BRMGR_CMD_FLOW_DEL, &record, sizeof(record), BRMGR_FLAG_INPUT);
  EXPECT_THAT(addresses, ElementsAre(&record));
}

/// Read and write, 4 bytes, type 'E', number 1, in the encoding of MIPS.
// Required: ioctl-number-says-4-bytes
TEST_F(ChannelTest, Ioctl_RequestNumber_SaysFourBytes) {
  constexpr std::uint32_t kReadAndWrite = 6U << 29U;
  EXPECT_EQ(BRMGR_IOCTL_REQUEST, kReadAndWrite | 4U << 16U | 'E' << 8U | 1U);
}

TEST_F(ChannelTest, Ioctl_CommandWithoutRecord_PassesNoBufferAndNoLength) {
  EXPECT_EQ(BCM6838X_Ioctl(BRMGR_CMD_LASER_ON, nullptr, 0, BRMGR_FLAG_READ_BACK), 0U);
  EXPECT_EQ(BCM6838X_Ioctl(BRMGR_CMD_LASER_OFF, nullptr, 0, BRMGR_FLAG_INPUT), 0U);
  EXPECT_THAT(left(), ElementsAre("command BRMGR_CMD_LASER_ON len 0 flag 1",
                                  "command BRMGR_CMD_LASER_OFF len 0 flag 0"));
}

TEST_F(ChannelTest, Ioctl_HighestCode_ReachesTheDriver) {
  EXPECT_EQ(BCM6838X_Ioctl(kLastCode, nullptr, 0, BRMGR_FLAG_INPUT), 0U);
  EXPECT_THAT(left(), ElementsAre("command command 182 len 0 flag 0"));
}

TEST_F(ChannelTest, Ioctl_CodeOutOfRange_ReturnsTwoSilently) {
  for (const std::uint32_t code : {183U, 184U, 0x80000000U, 0xFFFFFFFFU}) {
    EXPECT_EQ(BCM6838X_Ioctl(code, nullptr, 0, BRMGR_FLAG_INPUT), 2U) << code;
  }
  EXPECT_THAT(left(), IsEmpty());
}

// Required: refusal-logs-the-return-value
TEST_F(ChannelTest, Ioctl_DriverRefuses_ReturnsEightWithOneLogLine) {
  unit.device().faults().refuseNth(1);
  EXPECT_EQ(BCM6838X_Ioctl(119, nullptr, 0, BRMGR_FLAG_READ_BACK), 8U);
  // The ioctl's own return value, -1, shown as the target's 32-bit unsigned word.
  EXPECT_THAT(logLines(), ElementsAre("log 1 hal/switch/bcm6838x/src/hal_bcm6838x.cpp "
                                      "BCM6838X_Ioctl :<line>, cmd:119 err:4294967295\r\n"));
}

// Required: refusal-logs-the-return-value
TEST_F(ChannelTest, Ioctl_AnyResultButZero_IsARefusalLoggedWithThatResult) {
  struct Row {
    int result;
    std::string logged;
  };
  int checked = 0;
  for (const Row& row : std::vector<Row>{{-1, "4294967295"},
                                         {1, "1"},
                                         {5, "5"},
                                         {-22, "4294967274"},
                                         {0x100, "256"},
                                         {std::numeric_limits<int>::max(), "2147483647"},
                                         {std::numeric_limits<int>::min(), "2147483648"}}) {
    unit.device().onRequest([&row](const BrmgrRequest&) { return row.result; });
    forget();
    EXPECT_EQ(BCM6838X_Ioctl(BRMGR_CMD_LASER_OFF, nullptr, 0, BRMGR_FLAG_INPUT), 8U) << row.result;
    EXPECT_THAT(logLines(), ElementsAre("log 1 hal/switch/bcm6838x/src/hal_bcm6838x.cpp "
                                        "BCM6838X_Ioctl :<line>, cmd:120 err:" +
                                        row.logged + "\r\n"));
    ++checked;
  }
  EXPECT_EQ(checked, 7);
}

TEST_F(ChannelTest, Ioctl_DriverRefuses_IsNotRetriedAndTheNextCommandGoesThrough) {
  unit.device().faults().refuseNth(1);
  EXPECT_EQ(BCM6838X_Ioctl(BRMGR_CMD_LASER_ON, nullptr, 0, BRMGR_FLAG_READ_BACK), 8U);
  EXPECT_EQ(commands().size(), 1U);
  EXPECT_EQ(BCM6838X_Ioctl(BRMGR_CMD_LASER_ON, nullptr, 0, BRMGR_FLAG_READ_BACK), 0U);
  EXPECT_EQ(commands().size(), 2U);
  EXPECT_EQ(logLines().size(), 1U);
}

TEST_F(ChannelTest, Ioctl_ReadBack_LeavesTheDriversIndexInTheRecord) {
  IngressClassCfg first = {};
  first.type = 2;
  first.dir = BRMGR_DIR_UPSTREAM;
  IngressClassCfg second = first;
  EXPECT_EQ(BCM6838X_Ioctl(BRMGR_CMD_IC_CREATE, &first, sizeof(first), BRMGR_FLAG_READ_BACK), 0U);
  EXPECT_EQ(first.icIndex, 0U);
  EXPECT_EQ(BCM6838X_Ioctl(BRMGR_CMD_IC_CREATE, &second, sizeof(second), BRMGR_FLAG_READ_BACK), 0U);
  EXPECT_EQ(second.icIndex, 1U);
}

TEST_F(ChannelTest, Ioctl_EveryNamedCode_ReachesTheDriverUnderItsNumber) {
  std::vector<std::uint32_t> sent;
#define SEND_AND_NOTE(code, name, ...)             \
  BCM6838X_Ioctl(BRMGR_CMD_##name, nullptr, 0, 0); \
  sent.push_back(BRMGR_CMD_##name);
  BRMGR_COMMAND_LIST(SEND_AND_NOTE)
#undef SEND_AND_NOTE
  std::vector<std::uint32_t> arrived;
  for (const CommandEvent& event : virtual_onu::EventsOf<CommandEvent>(unit.trace().events())) {
    arrived.push_back(event.code);
  }
  arrived.erase(arrived.begin());  // the start-up's own
  ASSERT_EQ(sent.size(), 47U);
  EXPECT_EQ(arrived, sent);
}

}  // namespace
}  // namespace hal_test
