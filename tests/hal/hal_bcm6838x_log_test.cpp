/// @file
/// Tests of the handle under which the library logs: every line of every area bears the one that
/// the platform gave out.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <vector>

#include <bcm6838x_igmp.h>
#include <bcm6838x_mac.h>
#include <bcm6838x_port.h>
#include <bcm6838x_qos.h>
#include <bcm6838x_vlan.h>
#include <hal_bcm6838x.h>

#include "support/console_output.h"
#include "support/library_test.h"

namespace hal_test {
namespace {

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;
using virtual_onu::CallEvent;
using virtual_onu::LogEvent;

constexpr std::uint32_t kHandleBeforeTheStart = 32;
constexpr std::size_t kAreas = 6;

/// Makes each area log one line.
void LogInEveryArea() {
  BCM6838X_EventUniStateReport(1, 6);
  BCM6838X_AddLanVlan(1, 100);
  BCM6838X_DelIgmpVlan(1, 100);
  BCM6838X_SetPortMacLearn(1, 1);
  const QosUsPolicerCfg none = {1, 0, 0, 0};
  BCM6838X_SetQosUsPolicer(&none);
  BCM6838X_SetMacClear(1);
}

class LogHandleTest : public LibraryTest {
 protected:
  [[nodiscard]] std::vector<LogEvent> logged() const {
    return virtual_onu::EventsOf<LogEvent>(unit.trace().events());
  }

  /// The handles of all lines up to now.
  [[nodiscard]] std::vector<std::uint32_t> handles() const {
    std::vector<std::uint32_t> handles;
    std::ranges::transform(logged(), std::back_inserter(handles), &LogEvent::id);
    return handles;
  }

  /// The sources that have logged, without their folder.
  [[nodiscard]] std::vector<std::string> sources() const {
    std::vector<std::string> sources;
    std::ranges::transform(logged(), std::back_inserter(sources), [](const LogEvent& line) {
      return line.file.substr(line.file.rfind('/') + 1);
    });
    return sources;
  }

  /// What the platform gave out.
  [[nodiscard]] std::uint32_t created() const {
    const auto calls = virtual_onu::EventsOf<CallEvent>(unit.trace().events());
    const auto call = std::ranges::find_if(
        calls, [](const CallEvent& each) { return each.call.starts_with("LOG_Create("); });
    return call == calls.end() ? 0 : static_cast<std::uint32_t>(call->result);
  }
};

// Required: log-handle-32-is-none
TEST_F(LogHandleTest, BeforeTheStart_IsThirtyTwo) {
  LogInEveryArea();
  EXPECT_THAT(sources(), ElementsAre("hal_bcm6838x_link.cpp", "bcm6838x_vlan_object.cpp",
                                     "bcm6838x_igmp_vlan.cpp", "bcm6838x_port.cpp",
                                     "bcm6838x_qos_policer.cpp", "bcm6838x_mac.cpp"));
  EXPECT_THAT(handles(), Each(kHandleBeforeTheStart));
}

TEST_F(LogHandleTest, AfterTheStart_IsWhatThePlatformGaveOut) {
  unit.device().faults().refuseNth(1);  // for a line of the start itself
  ASSERT_EQ(BCM6838X_Init(), 0U);
  EXPECT_THAT(sources(), ElementsAre("hal_bcm6838x.cpp"));
  LogInEveryArea();
  EXPECT_NE(created(), 0U);
  EXPECT_NE(created(), kHandleBeforeTheStart);
  EXPECT_THAT(handles(), AllOf(SizeIs(1 + kAreas), Each(created())));
}

TEST_F(LogHandleTest, NoneGivenOut_StaysThirtyTwo) {
  unit.platform().config().logCreateFails = true;
  Console([] { EXPECT_EQ(BCM6838X_Init(), 1U); });
  LogInEveryArea();
  EXPECT_THAT(handles(), AllOf(SizeIs(kAreas), Each(kHandleBeforeTheStart)));
}

}  // namespace
}  // namespace hal_test
