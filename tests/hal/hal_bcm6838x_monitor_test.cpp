/// @file
/// Tests of the kernel event task: its start and its end, the reset button, link changes. Its
/// socket and the walk over datagrams are in hal_bcm6838x_netlink_test.cpp.
#include <cstddef>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <sys/select.h>
#include <unistd.h>
#include <vector>

#include <hal_bcm6838x.h>

#include "hal/packet/packet_bytes.h"
#include "link_report.h"
#include "monitor/netlink_message.h"
#include "monitor_fixture.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using virtual_onu::ButtonMessage;
using virtual_onu::LinkMessage;
using virtual_onu::NetlinkMessage;

TEST_F(MonitorTest, KernelEvent_WithoutASocket_Ends) {
  unit.platform().config().monitorSocketFails = true;
  BCM6838X_kernelEvent();
  unit.platform().config().monitorSocketFails = false;
  unit.platform().config().monitorBindFails = true;
  BCM6838X_kernelEvent();
  unit.platform().config().monitorBindFails = false;
  unit.platform().config().monitorRegisterResult = 5;
  BCM6838X_kernelEvent();
  EXPECT_THAT(console(), MatchesRegex("Could not open .*\nkernelMonitorFd = .*\nCould not bind .*\n"
                                      "kernelMonitorFd = .*\nfailed to register .*\n"));
  EXPECT_FALSE(unit.monitor().send(ButtonMessage(true))) << "nobody listens";
}

// Required: monitor-descriptor-0-ends
TEST_F(MonitorTest, KernelEvent_DescriptorZero_Ends) {
  const int before = dup(STDIN_FILENO);
  ASSERT_EQ(close(STDIN_FILENO), 0);
  BCM6838X_kernelEvent();
  EXPECT_EQ(console(), "kernelMonitorFd = 0\nregistered fd 0 with kernel monitor\n");
  if (before >= 0) {
    EXPECT_EQ(dup2(before, STDIN_FILENO), STDIN_FILENO);
    close(before);
  }
}

TEST_F(MonitorTest, KernelEvent_DescriptorTooLargeForSelect_Ends) {
  constexpr rlim_t kNeeded = FD_SETSIZE + 16;
  rlimit limit = {};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
  if (limit.rlim_max < kNeeded) {
    console();
    GTEST_SKIP() << "no more than " << limit.rlim_max << " descriptors are allowed";
  }
  limit.rlim_cur = kNeeded;
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
  int last = dup(STDIN_FILENO);
  while (last >= 0 && last < FD_SETSIZE - 1) {
    last = dup(STDIN_FILENO);
  }
  ASSERT_EQ(last, FD_SETSIZE - 1);
  BCM6838X_kernelEvent();
  for (int fd = FD_SETSIZE - 1; fd > FD_SETSIZE / 2; --fd) {
    close(fd);
  }
  EXPECT_THAT(console(),
              testing::EndsWith("Descriptor of the kernel monitor is too large for select\n"));
}

TEST_F(MonitorTest, Start_OfTheLibrary_StartsTheTask) {
  ASSERT_EQ(BCM6838X_Init(), 0U);
  forget();
  say(LinkMessage("eth1", 1000, 1));
  EXPECT_EQ(left(), UpReport(2, 0, 3, 1000000000));
  EXPECT_EQ(said(), "");
}

// Required: odd-duplex-is-down
TEST_F(MonitorTest, Link_SpeedsAndDuplexes) {
  struct Row {
    std::uint32_t speed;
    std::uint32_t duplex;
    std::uint32_t state;
    std::uint32_t rate;
  };
  start();
  std::size_t checked = 0;
  for (const Row row :
       {Row{1000, 1, 0, 1000000000}, Row{1000, 0, 1, 1000000000}, Row{100, 1, 2, 100000000},
        Row{100, 0, 3, 100000000}, Row{10, 1, 4, 10000000}, Row{10, 0, 5, 10000000},
        Row{2500, 1, 7, 0}, Row{1, 0, 7, 0}, Row{11, 1, 7, 0}, Row{0xFFFFFFFF, 9, 7, 0},
        Row{0xE8030000, 1, 7, 0}}) {
    forget();
    say(LinkMessage("eth0", row.speed, row.duplex));
    EXPECT_EQ(left(), UpReport(1, row.state, 2, row.rate)) << row.speed << " " << row.duplex;
    ++checked;
  }
  EXPECT_EQ(checked, 11U);
  for (const Row row : {Row{0, 0, 0, 0}, Row{0, 1, 0, 0}, Row{0, 2, 0, 0}, Row{1000, 2, 0, 0},
                        Row{100, 0xFFFFFFFF, 0, 0}, Row{10, 0x01000000, 0, 0}}) {
    forget();
    say(LinkMessage("eth0", row.speed, row.duplex));
    EXPECT_EQ(left(), DownReport(1)) << row.speed << " " << row.duplex;
  }
  EXPECT_EQ(said(), "");
}

// Required: unknown-interface-is-port-0
TEST_F(MonitorTest, Link_InterfacesInAnyCase) {
  struct Row {
    std::string name;
    std::uint32_t port;
  };
  start();
  std::size_t checked = 0;
  for (const Row& row : std::vector<Row>{{"eth0", 1},
                                         {"eth1", 2},
                                         {"eth2", 3},
                                         {"eth3", 4},
                                         {"ETH2", 3},
                                         {"eTh3", 4},
                                         {"Eth0", 1},
                                         {"eth4", 0},
                                         {"eth", 0},
                                         {"", 0},
                                         {"eth00", 0},
                                         {"eth0.1", 0},
                                         {"xeth0", 0},
                                         {"eth0eth0eth0eth0", 0},
                                         {"wan0", 0}}) {
    forget();
    say(LinkMessage(row.name, 100, 1));
    EXPECT_EQ(left(), UpReport(row.port, 2, row.port == 0 ? 0 : row.port + 1, 100000000))
        << row.name;
    ++checked;
  }
  EXPECT_EQ(checked, 15U);
  EXPECT_EQ(said(), "");
}

TEST_F(MonitorTest, Button_ShortPress_RestartsTheUnit) {
  start();
  sayAt(1000, ButtonMessage(true));
  EXPECT_THAT(left(), IsEmpty());
  sayAt(5999, ButtonMessage(false));
  EXPECT_THAT(left(), ElementsAre(kReboot));
}

TEST_F(MonitorTest, Button_LongPress_ResetsTheConfiguration) {
  start();
  sayAt(1000, ButtonMessage(true));
  sayAt(6000, ButtonMessage(false));
  EXPECT_THAT(left(), ElementsAre(kReset, kSettle, kReboot));
}

TEST_F(MonitorTest, Button_Held_ResetsOnThePressMessageAfterFiveSeconds) {
  start();
  sayAt(1000, ButtonMessage(true));
  sayAt(3000, ButtonMessage(true));
  sayAt(5999, ButtonMessage(true));
  EXPECT_THAT(left(), IsEmpty());
  sayAt(6000, ButtonMessage(true));
  EXPECT_THAT(left(), ElementsAre(kReset, kSettle, kReboot));
}

// Required: release-measured-from-0
TEST_F(MonitorTest, Button_ReleaseWithoutAPress_IsMeasuredFromTimeZero) {
  start();
  sayAt(4999, ButtonMessage(false));
  EXPECT_THAT(left(), ElementsAre(kReboot));
  forget();
  sayAt(5000, ButtonMessage(false));
  EXPECT_THAT(left(), ElementsAre(kReset, kSettle, kReboot));
}

TEST_F(MonitorTest, Button_PressAtTimeZero_IsNoPress) {
  start();
  sayAt(0, ButtonMessage(true));
  sayAt(5000, ButtonMessage(true));
  EXPECT_THAT(left(), IsEmpty()) << "the second is the first";
  sayAt(9999, ButtonMessage(false));
  EXPECT_THAT(left(), ElementsAre(kReboot));
}

// Required: press-never-forgotten
TEST_F(MonitorTest, Button_ThePressIsNeverForgotten) {
  start();
  sayAt(1000, ButtonMessage(true));
  sayAt(1100, ButtonMessage(false));
  sayAt(9000, ButtonMessage(true));
  EXPECT_THAT(left(), ElementsAre(kReboot, kReset, kSettle, kReboot));
}

TEST_F(MonitorTest, Button_TheTimerMayWrap) {
  start();
  sayAt(0xFFFFFC18, ButtonMessage(true));
  sayAt(0xFFFFFC18ULL + 4999, ButtonMessage(false));
  EXPECT_THAT(left(), ElementsAre(kReboot));
  forget();
  sayAt(0xFFFFFC18ULL + 5000, ButtonMessage(false));
  EXPECT_THAT(left(), ElementsAre(kReset, kSettle, kReboot));
}

TEST_F(MonitorTest, Button_OnlyOneMeansPressed) {
  start();
  sayAt(1000, ButtonMessage(true));
  for (const std::uint32_t word : {0U, 2U, 0x01000000U, 0x00010000U, 0xFFFFFFFFU}) {
    forget();
    say(NetlinkMessage(0x3001, NativeWord(word)));
    EXPECT_THAT(left(), ElementsAre(kReboot)) << word;
  }
  forget();
  say(NetlinkMessage(0x3001, Joined({NativeWord(1), NativeWord(0)})));
  EXPECT_THAT(left(), IsEmpty()) << "what follows the first word does not count";
}

// Required: factory-mode-announces-alone
TEST_F(MonitorTest, Button_FactoryMode_IsOnlyAnnounced) {
  const std::string first =
      "shell /usr/local/bin/msgall.sh \"RST button press 250 milliseconds, restart system now\"";
  const std::string second =
      "shell /usr/local/bin/msgall.sh \"[RST PRESS]Reboot System now ......\"";
  unit.platform().config().factoryMode = 1;
  start();
  sayAt(1000, ButtonMessage(true));
  EXPECT_THAT(left(), ElementsAre(first, second));
  forget();
  unit.platform().config().factoryMode = 0xFFFFFFFF;
  sayAt(7000, ButtonMessage(false));
  EXPECT_THAT(left(), ElementsAre(first, second));
  forget();
  unit.platform().config().factoryMode = 0;
  sayAt(7100, ButtonMessage(true));
  EXPECT_THAT(left(), IsEmpty()) << "the press in factory mode was not noted";
  EXPECT_EQ(said(), "");
}

}  // namespace
}  // namespace hal_test
