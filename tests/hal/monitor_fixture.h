/// @file
/// The fixture of the tests of the kernel event task: the task, started on its own thread, what is
/// said to it and what it prints.
#pragma once

#include <cstdint>
#include <gtest/gtest.h>
#include <string>

#include <hal_bcm6838x.h>
#include <platform_vos.h>

#include "hal/packet/packet_bytes.h"
#include "support/library_test.h"

namespace hal_test {

// What the reset button makes the task call.
inline const std::string kReboot = "call VOS_Reboot(11)";
inline const std::string kReset = "call VOS_ResetDefaultCfg()";
inline const std::string kSettle = "call VOS_TaskDelay(500)";

class MonitorTest : public LibraryTest {
 protected:
  MonitorTest() : LibraryTest(withTasks()) {}

  void SetUp() override { testing::internal::CaptureStdout(); }

  void TearDown() override {
    if (capturing_) {
      unit.endTasks();
      console();
    }
  }

  /// Standard output up to here.
  std::string console() {
    capturing_ = false;
    return testing::internal::GetCapturedStdout();
  }

  /// Starts the task and waits until it waits for a datagram.
  void start() {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    ASSERT_EQ(VOS_TaskSpawn("kernelEvent", 0, 0, 0, 0, BCM6838X_kernelEvent, 0), 0);
    forget();
  }

  /// Sends a datagram and waits until it was carried out.
  void say(const Bytes& datagram) {
    ASSERT_TRUE(unit.monitor().send(datagram));
    ASSERT_TRUE(unit.monitor().flush());
  }

  void sayAt(std::uint64_t milliseconds, const Bytes& datagram) {
    unit.clock().advance(milliseconds - unit.clock().milliseconds());
    say(datagram);
  }

  /// Ends the task; what it wrote on standard output behind the two lines of its start.
  std::string said() {
    unit.endTasks();
    const std::string text = console();
    const std::string::size_type start = text.find(" with kernel monitor\n");
    return start == std::string::npos ? text : text.substr(text.find('\n', start) + 1);
  }

 private:
  static virtual_onu::UnitConfig withTasks() {
    virtual_onu::UnitConfig config;
    config.platform.runTasks = true;
    return config;
  }

  bool capturing_ = true;
};

}  // namespace hal_test
