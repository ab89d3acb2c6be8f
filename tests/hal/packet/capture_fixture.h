/// @file
/// What the tests of the capture path share: a started unit whose ports have a PVID, and events put
/// in front of the library.
#pragma once

#include <cstdint>
#include <gtest/gtest.h>

#include <hal_bcm6838x.h>

#include "packet_bytes.h"
#include "support/library_tables.h"
#include "support/library_test.h"

namespace hal_test::capture_path {

class CaptureTest : public LibraryTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    for (PortVlanInfo& config : g_PortVlanInfo) {
      config.pvid = 100;
      config.priority = 3;
    }
    forget();
  }

  /// Puts an event in front of the library and captures it.
  std::uint32_t capture(const EventDraft& event) {
    EXPECT_TRUE(unit.device().sendEvent(event.bytes()));
    return BCM6838X_CapturePacket();
  }
};

}  // namespace hal_test::capture_path
