/// @file
/// Tests of the device's ioctl: requests, write-back, trace, faults, threads.
#include "device/device.h"

#include <array>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "device_fixture.h"

namespace virtual_onu {
namespace {

class DeviceIoctl : public DeviceTest {};

TEST_F(DeviceIoctl, AnotherRequest_IsNoTty) {
  BrmgrRequest request = {};
  for (const unsigned long number : {0UL, 0x5401UL, BRMGR_IOCTL_REQUEST + 1UL}) {
    errno = 0;
    EXPECT_EQ(device_.ioctl(number, &request), -1);
    EXPECT_EQ(errno, ENOTTY);
  }
  EXPECT_TRUE(commands().empty());
  const std::vector<CallEvent> calls = EventsOf<CallEvent>(trace_.events());
  ASSERT_EQ(calls.size(), 3U);
  EXPECT_EQ(calls[1].call, "ioctl(BrmgrDev, 21505)");
  EXPECT_EQ(calls[1].result, -1);
}

// Required: request-number-has-32-bits
TEST_F(DeviceIoctl, ARequestNumberWithSignExtension_IsTaken) {
  BrmgrRequest request = {};
  request.cmd = 119;
  const auto number = static_cast<unsigned long>(static_cast<std::int32_t>(BRMGR_IOCTL_REQUEST));
  EXPECT_EQ(device_.ioctl(number, &request), 0);
  EXPECT_EQ(lastCommand().code, 119U);
}

TEST_F(DeviceIoctl, NoArgument_IsAFault) {
  errno = 0;
  EXPECT_EQ(device_.ioctl(BRMGR_IOCTL_REQUEST, nullptr), -1);
  EXPECT_EQ(errno, EFAULT);
  EXPECT_TRUE(commands().empty());
}

TEST_F(DeviceIoctl, ALengthWithoutARecord_IsAFault) {
  EXPECT_EQ(request(BRMGR_CMD_FEATURE, nullptr, 4, BRMGR_FLAG_INPUT), EFAULT);
  EXPECT_EQ(lastCommand().reason, "no record, but a length of 4");
  EXPECT_EQ(lastCommand().length, 4U);
  EXPECT_TRUE(lastCommand().before.empty());
  EXPECT_TRUE(lastCommand().after.empty());
  EXPECT_FALSE(device_.feature());
}

TEST_F(DeviceIoctl, ARecordBeyondTheLongest_IsRefusedUnread) {
  std::uint8_t byte = 0;
  for (const std::uint32_t length :
       {std::uint32_t{1024 * 1024 + 1}, std::numeric_limits<std::uint32_t>::max()}) {
    EXPECT_EQ(request(BRMGR_CMD_VLAN_REBUILD, &byte, length, BRMGR_FLAG_INPUT), EINVAL);
    EXPECT_EQ(lastCommand().reason, "record longer than 1048576 bytes");
    EXPECT_EQ(lastCommand().length, length);
    EXPECT_TRUE(lastCommand().before.empty());
  }
}

TEST_F(DeviceIoctl, TheLongestRecord_IsTaken) {
  Bytes record(std::size_t{1024} * 1024, 0x5A);
  EXPECT_EQ(request(BRMGR_CMD_VLAN_REBUILD, record.data(), 1024 * 1024, BRMGR_FLAG_INPUT), 0);
  EXPECT_EQ(lastCommand().before, record);
}

TEST_F(DeviceIoctl, ACommandWithoutARecord_IsAccepted) {
  EXPECT_EQ(request(BRMGR_CMD_LASER_ON, nullptr, 0, BRMGR_FLAG_READ_BACK), 0);
  EXPECT_EQ(lastCommand().reason, "");
  EXPECT_TRUE(lastCommand().before.empty());
}

TEST_F(DeviceIoctl, ACodeWithoutAHandler_IsAcceptedAndTracedRaw) {
  for (const std::uint32_t code : {1U, 182U, 183U, 0xFFFFFFFFU}) {
    std::array<std::uint8_t, 5> record = {1, 2, 3, 4, 5};
    EXPECT_EQ(request(code, record.data(), 5, BRMGR_FLAG_READ_BACK), 0);
    EXPECT_EQ(record, (std::array<std::uint8_t, 5>{1, 2, 3, 4, 5}));
    EXPECT_EQ(lastCommand().code, code);
    EXPECT_EQ(lastCommand().before, (Bytes{1, 2, 3, 4, 5}));
    EXPECT_EQ(lastCommand().after, (Bytes{1, 2, 3, 4, 5}));
  }
}

TEST_F(DeviceIoctl, Trace_HoldsTheRecordBeforeAndAfter) {
  IngressFlowRule flow = FlowOf(kUs, addClass(kUs));
  const Bytes before = BytesOf(flow);
  ASSERT_EQ(send(BRMGR_CMD_FLOW_ADD, flow), 0);
  const CommandEvent event = lastCommand();
  EXPECT_EQ(event.code, 100U);
  EXPECT_EQ(event.length, 164U);
  EXPECT_EQ(event.flag, 1U);
  EXPECT_EQ(event.result, 0);
  EXPECT_EQ(event.reason, "");
  EXPECT_EQ(event.before, before);
  EXPECT_NE(event.after, before);
  EXPECT_EQ(event.after, BytesOf(flow));
  EXPECT_EQ(commands().size(), 2U);
}

// Required: only-flag-1-writes-back
TEST_F(DeviceIoctl, OnlyFlagOneWritesBack) {
  addClass(kUs);
  for (const std::uint32_t flag : {0U, 2U, 0xFFFFFFFFU}) {
    IngressClassCfg cfg = {};
    cfg.dir = kUs;
    const Bytes before = BytesOf(cfg);
    EXPECT_EQ(send(BRMGR_CMD_IC_CREATE, cfg, flag), 0);
    EXPECT_EQ(BytesOf(cfg), before);
    EXPECT_EQ(lastCommand().after, before);
    EXPECT_EQ(lastCommand().flag, flag);
  }
  EXPECT_EQ(device_.tables().upstream.classes.size(), 4U);
}

TEST_F(DeviceIoctl, NeitherRequestNorRecordNeedsAlignment) {
  addClass(kUs);
  IngressFlowRule flow = FlowOf(kUs, 0);
  std::array<std::uint8_t, sizeof(flow) + 1> record = {};
  std::memcpy(&record[1], &flow, sizeof(flow));
  const BrmgrRequest request = {BRMGR_CMD_FLOW_ADD, sizeof(flow), BRMGR_FLAG_READ_BACK, &record[1]};
  std::array<std::uint8_t, sizeof(request) + 1> argument = {};
  std::memcpy(&argument[1], &request, sizeof(request));
  EXPECT_EQ(device_.ioctl(BRMGR_IOCTL_REQUEST, &argument[1]), 0);
  std::memcpy(&flow, &record[1], sizeof(flow));
  EXPECT_EQ(flow.flowIndex, 0U);
}

TEST_F(DeviceIoctl, Fault_RefusesBeforeTheDriverLooks) {
  device_.faults().refuseNth(1);
  IngressClassCfg cfg = {};
  cfg.dir = kUs;
  cfg.icIndex = 1;
  const Bytes before = BytesOf(cfg);
  EXPECT_EQ(send(BRMGR_CMD_IC_CREATE, cfg), EIO);
  EXPECT_EQ(BytesOf(cfg), before);
  EXPECT_TRUE(device_.tables().upstream.classes.empty());
  EXPECT_EQ(lastCommand().result, -1);
  EXPECT_EQ(lastCommand().reason, "refused by a fault rule");
  EXPECT_EQ(lastCommand().before, before);
  EXPECT_EQ(lastCommand().after, before);
  EXPECT_EQ(send(BRMGR_CMD_IC_CREATE, cfg), 0);
}

// Required: faults-count-every-command
TEST_F(DeviceIoctl, Fault_ComesBeforeEveryOtherRefusal) {
  device_.faults().refuseFrom(1, BRMGR_CMD_FEATURE);
  std::array<std::uint8_t, 4> record = {};
  EXPECT_EQ(request(BRMGR_CMD_FEATURE, record.data(), 3, 0), EIO);
  EXPECT_EQ(request(BRMGR_CMD_FEATURE, nullptr, 4, 0), EIO);
  EXPECT_EQ(request(BRMGR_CMD_FEATURE, record.data(), 0xFFFFFFFFU, 0), EIO);
  EXPECT_EQ(request(BRMGR_CMD_IC_DEL, record.data(), 4, 0), EINVAL);
  for (const CommandEvent& event : commands()) {
    EXPECT_LE(event.before.size(), 4U);
  }
}

// Required: faults-count-every-command
TEST_F(DeviceIoctl, Fault_CountsRefusedCommands) {
  device_.faults().refuseNth(2);
  EXPECT_EQ(request(BRMGR_CMD_FEATURE, nullptr, 4, 0), EFAULT);
  EXPECT_EQ(request(BRMGR_CMD_LASER_OFF, nullptr, 0, 0), EIO);
}

TEST_F(DeviceIoctl, AnAnswerInTheDriversPlace_IsWhatTheIoctlReturns) {
  BrmgrRequest request = {BRMGR_CMD_LASER_OFF, 0, 0, nullptr};
  int checked = 0;
  for (const int result : {0, 5, -22, std::numeric_limits<int>::max()}) {
    device_.onRequest([result](const BrmgrRequest&) { return result; });
    EXPECT_EQ(device_.ioctl(BRMGR_IOCTL_REQUEST, &request), result);
    EXPECT_EQ(lastCommand().result, result);
    ++checked;
  }
  EXPECT_EQ(checked, 4);
}

TEST_F(DeviceIoctl, AnAnswerInTheDriversPlace_MayWriteIntoTheRecordAndIsTraced) {
  device_.faults().refuseNth(2);
  device_.onRequest([](const BrmgrRequest& request) {
    static_cast<IngressClassCfg*>(request.buf)->icIndex = 77;
    return -1;
  });
  IngressClassCfg cfg = {};
  cfg.dir = kUs;
  const Bytes before = BytesOf(cfg);
  BrmgrRequest request = {BRMGR_CMD_IC_CREATE, sizeof(cfg), BRMGR_FLAG_READ_BACK, &cfg};
  EXPECT_EQ(device_.ioctl(BRMGR_IOCTL_REQUEST, &request), -1);
  EXPECT_EQ(cfg.icIndex, 77U);
  EXPECT_EQ(lastCommand().before, before);
  EXPECT_EQ(lastCommand().after, BytesOf(cfg));
  EXPECT_TRUE(device_.tables().upstream.classes.empty()) << "the driver does not see it";
  device_.onRequest({});
  EXPECT_EQ(send(BRMGR_CMD_IC_CREATE, cfg), 0) << "nor do the fault rules";
  EXPECT_EQ(send(BRMGR_CMD_IC_CREATE, cfg), EIO);
}

TEST_F(DeviceIoctl, NoAnswerInTheDriversPlace_LeavesTheRequestToTheDriver) {
  std::vector<std::uint32_t> asked;
  device_.onRequest([&asked](const BrmgrRequest& request) -> std::optional<int> {
    asked.push_back(request.cmd);
    return std::nullopt;
  });
  EXPECT_EQ(addClass(kUs), 0U);
  EXPECT_EQ(request(BRMGR_CMD_FEATURE, nullptr, 4, BRMGR_FLAG_INPUT), EFAULT);
  EXPECT_EQ(asked, (std::vector<std::uint32_t>{BRMGR_CMD_IC_CREATE, BRMGR_CMD_FEATURE}));
}

TEST_F(DeviceIoctl, Success_LeavesErrnoAlone) {
  BrmgrRequest request = {BRMGR_CMD_LASER_OFF, 0, 0, nullptr};
  errno = EBADMSG;
  EXPECT_EQ(device_.ioctl(BRMGR_IOCTL_REQUEST, &request), 0);
  EXPECT_EQ(errno, EBADMSG);
}

TEST_F(DeviceIoctl, WithoutATrace_WorksTheSame) {
  trace_.setRecording(false);
  EXPECT_EQ(addClass(kUs), 0U);
  EXPECT_EQ(addClass(kUs), 1U);
  EXPECT_TRUE(commands().empty());
}

TEST(DeviceLimits, Default_HoldWhatTheChipHolds) {
  const Clock clock;
  Trace trace(clock);
  const Device device(trace, {});
  EXPECT_EQ(device.limits().classes, 64U);
  EXPECT_EQ(device.limits().flowsPerClass, 2048U);
  EXPECT_EQ(device.limits().vlanActions, 512U);
}

TEST(DeviceThreads, CommandsFromManyThreads_GetAnIndexEach) {
  constexpr std::size_t kThreads = 4;
  constexpr std::size_t kEach = 100;
  const Clock clock;
  Trace trace(clock);
  Device device(trace, {});
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < kThreads; ++i) {
    threads.emplace_back([&device] {
      for (std::size_t j = 0; j < kEach; ++j) {
        VlanActionRule action = {};
        BrmgrRequest request = {BRMGR_CMD_VLAN_ACTION_ADD, sizeof(action), BRMGR_FLAG_READ_BACK,
                                &action};
        device.ioctl(BRMGR_IOCTL_REQUEST, &request);
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(device.tables().downstream.actions.size(), kThreads * kEach);
  // One at a time: the trace has them in the order in which the indexes were given.
  std::uint32_t next = 0;
  for (const CommandEvent& event : EventsOf<CommandEvent>(trace.events())) {
    VlanActionRule action = {};
    ASSERT_EQ(event.after.size(), sizeof(action));
    std::memcpy(&action, event.after.data(), sizeof(action));
    EXPECT_EQ(action.vlanActionIndex, next++);
  }
  EXPECT_EQ(next, kThreads * kEach);
}

}  // namespace
}  // namespace virtual_onu
