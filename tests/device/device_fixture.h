/// @file
/// A device of its own for each test, and short ways to send it commands.
#pragma once

#include <cerrno>
#include <cstdint>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

#include <brmgr_cmd.h>
#include <brmgr_record.h>

#include "base/clock.h"
#include "base/trace.h"
#include "device/device.h"

namespace virtual_onu {

class DeviceTest : public testing::Test {
 protected:
  static constexpr ChipLimits kLimits = {
      .classes = 4, .flowsPerClass = 3, .vlanActions = 2, .macEntries = 3, .mcastGroups = 3};

  /// Sends a request; returns 0, or the errno value of the refusal.
  int request(std::uint32_t code, void* buffer, std::uint32_t length, std::uint32_t flag) {
    BrmgrRequest request = {code, length, flag, buffer};
    errno = 0;
    const int result = device_.ioctl(BRMGR_IOCTL_REQUEST, &request);
    const int error = errno;
    EXPECT_EQ(result, error == 0 ? 0 : -1);
    return error;
  }

  /// Sends a whole record, by default with read-back.
  template <typename Record>
  int send(std::uint32_t code, Record& record, std::uint32_t flag = BRMGR_FLAG_READ_BACK) {
    return request(code, &record, sizeof(record), flag);
  }

  /// Creates a class and returns its index.
  std::uint32_t addClass(std::uint32_t dir, std::uint32_t wished = 0) {
    IngressClassCfg cfg = {};
    cfg.type = 2;
    cfg.fieldMask = BRMGR_KEY_OUTER_VID;
    cfg.dir = dir;
    cfg.icIndex = wished;
    EXPECT_EQ(send(BRMGR_CMD_IC_CREATE, cfg), 0);
    return cfg.icIndex;
  }

  static IngressFlowRule FlowOf(std::uint32_t dir, std::uint32_t icIndex) {
    IngressFlowRule flow = {};
    flow.outerVid = 100;
    flow.forward = BRMGR_FORWARD_PASS;
    flow.dir = dir;
    flow.icIndex = icIndex;
    flow.flowIndex = BRMGR_INDEX_NONE;
    flow.vlanActionIndex = BRMGR_INDEX_NONE;
    flow.policer = BRMGR_INDEX_NONE;
    return flow;
  }

  /// Adds a flow and returns its index.
  std::uint32_t addFlow(std::uint32_t dir, std::uint32_t icIndex) {
    IngressFlowRule flow = FlowOf(dir, icIndex);
    EXPECT_EQ(send(BRMGR_CMD_FLOW_ADD, flow), 0);
    return flow.flowIndex;
  }

  /// Creates an action that pops the outer tag and returns its index.
  std::uint32_t addAction(std::uint32_t dir) {
    VlanActionRule action = {};
    action.cmd = BRMGR_TAG_POP;
    action.dir = dir;
    action.vlanActionIndex = BRMGR_INDEX_NONE;
    EXPECT_EQ(send(BRMGR_CMD_VLAN_ACTION_ADD, action), 0);
    return action.vlanActionIndex;
  }

  [[nodiscard]] std::vector<CommandEvent> commands() const {
    return EventsOf<CommandEvent>(trace_.events());
  }

  [[nodiscard]] CommandEvent lastCommand() const {
    const std::vector<CommandEvent> all = commands();
    EXPECT_FALSE(all.empty());
    return all.empty() ? CommandEvent{} : all.back();
  }

  static constexpr std::uint32_t kDs = BRMGR_DIR_DOWNSTREAM;
  static constexpr std::uint32_t kUs = BRMGR_DIR_UPSTREAM;

  Clock clock_;
  Trace trace_{clock_};
  Device device_{trace_, kLimits};
};

/// The bytes of a record as they lie in memory.
template <typename Record>
Bytes BytesOf(const Record& record) {
  const auto* const first = reinterpret_cast<const std::uint8_t*>(&record);
  return {first, first + sizeof(record)};
}

}  // namespace virtual_onu
