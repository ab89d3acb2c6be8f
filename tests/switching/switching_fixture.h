/// @file
/// A started unit with three open ports, and frames in words.
#pragma once

#include <cstdint>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

#include <bcm6838x_port.h>
#include <hal_bcm6838x.h>

#include "frame/words.h"
#include "support/library_test.h"

namespace hal_test {

inline constexpr virtual_onu::PortId kWan = virtual_onu::PortId::Wan();
inline constexpr std::uint32_t kOpenPorts = 3;

constexpr virtual_onu::PortId Uni(std::uint32_t number) {
  return virtual_onu::PortId::Uni(number);
}

/// The frame that the words describe.
inline virtual_onu::Bytes FrameOf(const std::string& text) {
  std::istringstream stream(text);
  const std::vector<std::string> words(std::istream_iterator<std::string>(stream), {});
  const virtual_onu::FrameOrError frame = virtual_onu::BuildFrame(words);
  EXPECT_TRUE(std::holds_alternative<virtual_onu::Bytes>(frame)) << text;
  return std::get<virtual_onu::Bytes>(frame);
}

class SwitchingTest : public LibraryTest {
 protected:
  SwitchingTest() {
    EXPECT_EQ(BCM6838X_Init(), 0U);
    for (std::uint32_t port = 1; port <= kOpenPorts; ++port) {
      BCM6838X_SetPortAdminState(port, 1);
    }
  }

  virtual_onu::Verdict offer(virtual_onu::PortId port, const std::string& words) {
    return unit.dataPath().offer(port, FrameOf(words));
  }

  /// The names of the ports by which a frame leaves, "uni1 uni3".
  std::string leavesBy(virtual_onu::PortId port, const std::string& words) {
    std::string names;
    for (const virtual_onu::PortId to : offer(port, words).egress()) {
      names += (names.empty() ? "" : " ") + to.name();
    }
    return names;
  }
};

}  // namespace hal_test
