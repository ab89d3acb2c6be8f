/// @file
/// Tests of the reports of link changes, and of the EPON laser's switch.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include <brmgr_record.h>
#include <hal_bcm6838x.h>

#include "link_report.h"
#include "support/library_test.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

class LinkTest : public LibraryTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(BCM6838X_InitDrv(), 0U);
    forget();
  }
};

// Required: unknown-speed-reports-rate-0, link-change-told-twice
TEST_F(LinkTest, Report_EveryState) {
  struct Row {
    std::uint32_t state;
    std::uint32_t rate;
  };
  const std::vector<Row> rows = {{0, 1000000000}, {1, 1000000000}, {2, 100000000}, {3, 100000000},
                                 {4, 10000000},   {5, 10000000},   {7, 0},         {8, 0},
                                 {0x106, 0},      {0xFFFFFFFF, 0}};
  std::size_t checked = 0;
  for (const Row& row : rows) {
    forget();
    EXPECT_EQ(BCM6838X_EventUniStateReport(1, row.state), 0U);
    EXPECT_EQ(left(), UpReport(1, row.state, 2, row.rate)) << row.state;
    ++checked;
  }
  EXPECT_EQ(checked, 10U);
}

// Required: link-down-sends-no-rate, link-change-told-twice
TEST_F(LinkTest, Report_LinkDown_SendsNoRate) {
  EXPECT_EQ(BCM6838X_EventUniStateReport(3, 6), 0U);
  EXPECT_EQ(left(), DownReport(3));
}

// Required: unknown-interface-is-port-0
TEST_F(LinkTest, Report_DevicePorts) {
  struct Row {
    std::uint32_t port;
    std::uint32_t devicePort;
  };
  for (const Row row : std::vector<Row>{{0, 0},
                                        {1, 2},
                                        {2, 3},
                                        {3, 4},
                                        {4, 5},
                                        {5, 0},
                                        {0x101, 0},
                                        {0xFFFFFFFF, 0},
                                        {0x02000003, 0}}) {
    forget();
    EXPECT_EQ(BCM6838X_EventUniStateReport(row.port, 2), 0U);
    EXPECT_EQ(left(), UpReport(row.port, 2, row.devicePort, 100000000)) << row.port;
  }
}

TEST_F(LinkTest, Report_DriverRefuses_IsLoggedAndTheNotificationsAreSent) {
  unit.device().faults().refuseNth(1);
  EXPECT_EQ(BCM6838X_EventUniStateReport(2, 0), 0U);
  const std::vector<std::string> clean = UpReport(2, 0, 3, 1000000000);
  EXPECT_THAT(left(), ElementsAre(clean[0], clean[1],
                                  StartsWith("log 1 hal/switch/bcm6838x/src/hal_bcm6838x.cpp "),
                                  "log 1 hal/switch/bcm6838x/src/hal_bcm6838x_link.cpp "
                                  "UNI port[2] MODE change to [0], flow control error, ret=8\r\n",
                                  clean[2], clean[3]));
}

class ClosedLinkTest : public LibraryTest {};

TEST_F(ClosedLinkTest, Report_DeviceNotOpen_IsLoggedAndTheNotificationsAreSent) {
  EXPECT_EQ(BCM6838X_EventUniStateReport(4294967295, 4294967295), 0U);
  const std::vector<std::string> clean = UpReport(4294967295, 4294967295, 0, 0);
  EXPECT_THAT(left(), ElementsAre(clean[0],
                                  "log 1 hal/switch/bcm6838x/src/hal_bcm6838x_link.cpp "
                                  "UNI port[4294967295] MODE change to [4294967295], "
                                  "flow control error, ret=10\r\n",
                                  clean[2], clean[3]));
}

// Required: laser-on-reads-back
TEST_F(LinkTest, Laser_OneIsOnAndAnythingElseIsOff) {
  const std::string on = "command BRMGR_CMD_LASER_ON len 0 flag 1";
  const std::string off = "command BRMGR_CMD_LASER_OFF len 0 flag 0";
  for (const std::uint32_t value : {1U, 0x101U, 0xFFFFFF01U}) {
    forget();
    EXPECT_EQ(BCM6838X_SetEponLaserState(value), 0U);
    EXPECT_THAT(left(), ElementsAre(on)) << value;
  }
  for (const std::uint32_t value : {0U, 2U, 3U, 0x11U, 0xFFU, 0x100U, 0xFFFFFFFFU}) {
    forget();
    EXPECT_EQ(BCM6838X_SetEponLaserState(value), 0U);
    EXPECT_THAT(left(), ElementsAre(off)) << value;
  }
}

// Required: laser-on-reads-back
TEST_F(LinkTest, Laser_HandsNeitherRecordNorLengthToTheDriver) {
  std::vector<BrmgrRequest> requests;
  unit.device().onRequest([&](const BrmgrRequest& request) -> std::optional<int> {
    requests.push_back(request);
    return std::nullopt;
  });
  BCM6838X_SetEponLaserState(1);
  BCM6838X_SetEponLaserState(0);
  ASSERT_EQ(requests.size(), 2U);
  EXPECT_EQ(requests[0].cmd, 119U);
  EXPECT_EQ(requests[1].cmd, 120U);
  for (const BrmgrRequest& request : requests) {
    EXPECT_EQ(request.len, 0U) << request.cmd;
    EXPECT_EQ(request.buf, nullptr) << request.cmd;
  }
}

TEST_F(LinkTest, Laser_DriverRefuses_ReturnsZero) {
  unit.device().faults().refuseFrom(1);
  EXPECT_EQ(BCM6838X_SetEponLaserState(1), 0U);
  EXPECT_EQ(BCM6838X_SetEponLaserState(0), 0U);
  EXPECT_EQ(commands().size(), 2U);
  EXPECT_EQ(logLines().size(), 2U);
}

}  // namespace
}  // namespace hal_test
