/// @file
/// A shell of its own for each test, with the device and the interfaces that its lines reach.
#pragma once

#include <cstdint>
#include <gtest/gtest.h>
#include <string>

#include <brmgr_cmd.h>
#include <brmgr_record.h>

#include "base/clock.h"
#include "base/trace.h"
#include "device/device.h"
#include "phy/interfaces.h"
#include "shell/shell.h"

namespace virtual_onu {

class ShellTest : public testing::Test {
 protected:
  static constexpr std::uint32_t kPorts = 4;

  /// Runs a line that must be done.
  void run(const std::string& line) {
    const ShellEvent event = shell_.run(line);
    EXPECT_EQ(event.line, line);
    EXPECT_EQ(event.result, 0) << line;
    EXPECT_EQ(event.reason, "") << line;
  }

  /// Runs a line that must be refused and returns the reason.
  std::string refusal(const std::string& line) {
    const ShellEvent event = shell_.run(line);
    EXPECT_EQ(event.line, line);
    EXPECT_NE(event.result, 0) << line;
    return event.reason;
  }

  [[nodiscard]] const PathObjects& objects() const { return shell_.objects(); }

  Clock clock_;
  Trace trace_{clock_};
  Device device_{trace_, {.uniPorts = kPorts}};
  Interfaces interfaces_{trace_, kPorts};
  std::uint32_t portRevert_ = 0;
  Shell shell_{{device_, interfaces_, portRevert_}};
};

}  // namespace virtual_onu
