/// @file
/// Tests of the kernel event task: set-up of its socket, the walk over datagrams, the reset button,
/// link changes.
#include <csignal>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <initializer_list>
#include <pthread.h>
#include <string>
#include <sys/resource.h>
#include <sys/select.h>
#include <unistd.h>
#include <vector>

#include <hal_bcm6838x.h>
#include <platform_vos.h>

#include "link_report.h"
#include "monitor/netlink_message.h"
#include "packet_bytes.h"
#include "support/library_test.h"

namespace hal_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::StartsWith;
using virtual_onu::ButtonMessage;
using virtual_onu::LinkMessage;
using virtual_onu::NetlinkMessage;

const std::string kReboot = "call VOS_Reboot(11)";
const std::string kReset = "call VOS_ResetDefaultCfg()";
const std::string kSettle = "call VOS_TaskDelay(500)";

virtual_onu::UnitConfig WithTasks() {
  virtual_onu::UnitConfig config;
  config.platform.runTasks = true;
  return config;
}

/// A netlink header that may lie about its length, and bytes behind it.
Bytes RawMessage(std::uint32_t length, std::uint16_t type, const Bytes& payload = {},
                 std::uint32_t senderPort = 0) {
  return Joined({NativeWord(length), NativeHalf(type), NativeHalf(0), NativeWord(0),
                 NativeWord(senderPort), payload});
}

class MonitorTest : public LibraryTest {
 protected:
  MonitorTest() : LibraryTest(WithTasks()) {}

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
  bool capturing_ = true;
};

TEST_F(MonitorTest, InitKernelMonitorFd_OpensBindsAndRegisters) {
  EXPECT_EQ(InitKernelMonitorFd(), 0);
  EXPECT_THAT(left(), ElementsAre("call socket(AF_NETLINK, SOCK_RAW, 25)",
                                  "call bind(family 16, port own process, groups 0, length 12)",
                                  "call devCtl_boardIoctl(3222815249, 0, \"\", offset " +
                                      std::to_string(getpid()) + ", buffer \"\")"));
  const std::string text = console();
  EXPECT_THAT(text,
              MatchesRegex("kernelMonitorFd = [0-9]+\nregistered fd [0-9]+ with kernel monitor\n"));
  const int fd = std::stoi(text.substr(std::strlen("kernelMonitorFd = ")));
  EXPECT_EQ(text, "kernelMonitorFd = " + std::to_string(fd) + "\nregistered fd " +
                      std::to_string(fd) + " with kernel monitor\n");
  EXPECT_NE(fcntl(fd, F_GETFD), -1) << "it stays open";
}

TEST_F(MonitorTest, InitKernelMonitorFd_NoSocket_ReturnsOne) {
  unit.platform().config().monitorSocketFails = true;
  EXPECT_EQ(InitKernelMonitorFd(), 1);
  EXPECT_EQ(console(), "Could not open netlink socket for kernel monitor\n");
  EXPECT_THAT(left(), ElementsAre("call socket(AF_NETLINK, SOCK_RAW, 25)"));
}

TEST_F(MonitorTest, InitKernelMonitorFd_BindFails_ClosesTheSocketAndReturnsOne) {
  unit.platform().config().monitorBindFails = true;
  EXPECT_EQ(InitKernelMonitorFd(), 1);
  const std::string text = console();
  EXPECT_THAT(text, MatchesRegex("kernelMonitorFd = [0-9]+\n"
                                 "Could not bind netlink socket for kernel monitor\n"));
  EXPECT_EQ(fcntl(std::stoi(text.substr(std::strlen("kernelMonitorFd = "))), F_GETFD), -1);
  EXPECT_EQ(left().size(), 2U) << "nothing is registered";
}

TEST_F(MonitorTest, InitKernelMonitorFd_RegistrationFails_ClosesTheSocketAndReturnsItsResult) {
  for (const std::int32_t result : {-3, 1, 77}) {
    unit.platform().config().monitorRegisterResult = result;
    EXPECT_EQ(InitKernelMonitorFd(), result);
  }
  const std::string text = console();
  EXPECT_THAT(text, StartsWith("kernelMonitorFd = "));
  const int fd = std::stoi(text.substr(std::strlen("kernelMonitorFd = ")));
  const std::string number = std::to_string(fd);
  std::string expected;
  for (const std::string result : {"-3", "1", "77"}) {
    expected.append("kernelMonitorFd = ").append(number);
    expected.append("\nfailed to register fd ").append(number);
    expected.append(" with kernel monitor, ret = ").append(result).append("\n");
  }
  EXPECT_EQ(text, expected) << "closed each time, so that the number is given out again";
  EXPECT_EQ(fcntl(fd, F_GETFD), -1);
}

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

TEST_F(MonitorTest, Senders_OtherThanTheKernel_AreOnlyPrinted) {
  start();
  say(NetlinkMessage(0x3001, NativeWord(0), 4711));
  say(RawMessage(40, 0x2000, Bytes(24), 0xFFFFFFFF));
  say(NetlinkMessage(0x1234, {}, 1));
  EXPECT_THAT(left(), IsEmpty());
  EXPECT_EQ(said(),
            "netlink message source(4711)is not kernel \n"
            "netlink message source(-1)is not kernel \n"
            "netlink message source(1)is not kernel \n");
}

TEST_F(MonitorTest, Errors_ArePrintedAndEndsOfDumpsAreNot) {
  start();
  say(NetlinkMessage(2, Bytes(20)));
  say(NetlinkMessage(2, Bytes(20), 99));
  say(NetlinkMessage(3, {}));
  say(NetlinkMessage(3, {}, 99));
  EXPECT_THAT(left(), IsEmpty());
  EXPECT_EQ(said(), "read_netlink: Message is an error \nread_netlink: Message is an error \n");
}

TEST_F(MonitorTest, OtherTypes_DoNothing) {
  start();
  std::size_t checked = 0;
  for (const std::uint16_t type : std::initializer_list<std::uint16_t>{
           0x0000, 0x0001, 0x0004, 0x3000, 0x3002, 0x2001, 0x1FFF, 0x0130, 0x0020, 0xFFFF}) {
    say(NetlinkMessage(type, Bytes(64)));
    ++checked;
  }
  EXPECT_EQ(checked, 10U);
  EXPECT_THAT(left(), IsEmpty());
  EXPECT_EQ(said(), "");
}

TEST_F(MonitorTest, Walk_EveryMessageOfADatagram) {
  start();
  say(Joined({LinkMessage("eth0", 0, 0), NetlinkMessage(3, {}), NetlinkMessage(2, {}),
              NetlinkMessage(0x77, Bytes(3)), NetlinkMessage(0x2000, Bytes(24), 5),
              LinkMessage("eth3", 0, 0)}));
  std::vector<std::string> expected = DownReport(1);
  for (const std::string& line : DownReport(4)) {
    expected.push_back(line);
  }
  EXPECT_EQ(left(), expected);
  EXPECT_EQ(said(),
            "read_netlink: Message is an error \nnetlink message source(5)is not kernel \n");
}

TEST_F(MonitorTest, Walk_LengthsAreRoundedUpToFour) {
  start();
  for (const std::size_t payload : {0U, 1U, 2U, 3U, 4U, 5U}) {
    forget();
    say(Joined({NetlinkMessage(0x77, Bytes(payload, 0xFF)), LinkMessage("eth2", 0, 0)}));
    EXPECT_EQ(left(), DownReport(3)) << payload;
  }
}

TEST_F(MonitorTest, Walk_LastMessageWithoutItsPadding_IsServed) {
  start();
  Bytes message = NetlinkMessage(0x2000, Joined({Bytes{'e', 't', 'h', '1'}, Bytes(12), Bytes(9)}));
  message.resize(16 + 25);
  say(message);
  EXPECT_EQ(left(), DownReport(2));
}

TEST_F(MonitorTest, Walk_EndsWhereNoWholeMessageFollows) {
  start();
  const Bytes link = LinkMessage("eth0", 0, 0);
  const std::vector<Bytes> tails = {Bytes(1),
                                    Bytes(15, 0xFF),
                                    RawMessage(0, 0x3001, NativeWord(0)),
                                    RawMessage(15, 0x3001, NativeWord(0)),
                                    RawMessage(21, 0x3001, NativeWord(0)),
                                    RawMessage(0xFFFFFFFF, 0x3001, NativeWord(0)),
                                    RawMessage(0x7FFFFFFF, 0x3001, NativeWord(0)),
                                    RawMessage(0x80000000, 0x3001, NativeWord(0))};
  std::size_t checked = 0;
  for (const Bytes& tail : tails) {
    forget();
    say(Joined({link, tail}));
    EXPECT_EQ(left(), DownReport(1)) << checked;
    ++checked;
  }
  EXPECT_EQ(checked, 8U);
  EXPECT_EQ(said(), "");
}

TEST_F(MonitorTest, Walk_DatagramsWithoutAWholeMessage_AreSkipped) {
  start();
  const Bytes button = ButtonMessage(false);
  for (std::size_t size = 0; size < 20; ++size) {
    say(Bytes(button.begin(), button.begin() + static_cast<long>(size)));
  }
  const std::vector<Bytes> datagrams = {RawMessage(0, 0x3001, NativeWord(0)),
                                        RawMessage(15, 0x3001, NativeWord(0)),
                                        RawMessage(21, 0x3001, NativeWord(0)),
                                        RawMessage(0xFFFFFFFF, 0x3001, NativeWord(0)),
                                        RawMessage(0xFFFFFFFD, 0x3001, NativeWord(0)),
                                        Bytes(2048, 0xFF),
                                        Bytes(2048)};
  for (const Bytes& datagram : datagrams) {
    say(datagram);
  }
  EXPECT_THAT(left(), IsEmpty());
  say(button);
  EXPECT_THAT(left(), ElementsAre(kReboot)) << "the task still listens";
  EXPECT_EQ(said(), "");
}

TEST_F(MonitorTest, Walk_MessagesTooShortForTheirKind_AreSkipped) {
  start();
  // A whole message comes first, so that its bytes would be found behind a shorter one.
  say(LinkMessage("eth0", 0, 0));
  forget();
  for (std::uint32_t payload = 0; payload < 24; ++payload) {
    Bytes message = RawMessage(16 + payload, 0x2000, Bytes(payload));
    say(message);
  }
  sayAt(100, ButtonMessage(true));
  for (std::uint32_t payload = 0; payload < 4; ++payload) {
    say(RawMessage(16 + payload, 0x3001, Bytes(payload)));
  }
  EXPECT_THAT(left(), IsEmpty());
  // In one datagram the bytes of the next message follow.
  say(Joined({RawMessage(16, 0x3001), NetlinkMessage(0x77, Bytes(24)), RawMessage(16, 0x2000),
              NetlinkMessage(0x77, Bytes(24))}));
  EXPECT_THAT(left(), IsEmpty());
}

TEST_F(MonitorTest, Walk_LongDatagrams_AreCutAt2048Bytes) {
  start();
  const Bytes filler = NetlinkMessage(0x77, Bytes(2048 - 16 - 40));
  say(Joined({filler, LinkMessage("eth0", 0, 0), LinkMessage("eth1", 0, 0)}));
  EXPECT_EQ(left(), DownReport(1)) << "what ends at 2048 is whole, what follows is lost";
  forget();
  const Bytes longer = NetlinkMessage(0x77, Bytes(2048 - 16 - 36));
  say(Joined({longer, LinkMessage("eth0", 0, 0)}));
  say(NetlinkMessage(0x3001, Bytes(2048 - 16 + 4)));
  EXPECT_THAT(left(), IsEmpty());
  say(NetlinkMessage(0x2000, Bytes(2048 - 16)));
  EXPECT_EQ(left(), DownReport(0));
  EXPECT_EQ(said(), "");
}

TEST_F(MonitorTest, Walk_AFullDatagramOfMessages) {
  start();
  Bytes datagram;
  for (int i = 0; i < 128; ++i) {
    datagram = Joined({datagram, NetlinkMessage(2, {})});
  }
  ASSERT_EQ(datagram.size(), 2048U);
  say(datagram);
  std::string expected;
  for (int i = 0; i < 128; ++i) {
    expected += "read_netlink: Message is an error \n";
  }
  EXPECT_EQ(said(), expected);
}

TEST_F(MonitorTest, Select_Interrupted_GoesOn) {
  start();
  struct sigaction ignore = {};
  ignore.sa_handler = [](int) {};
  ASSERT_EQ(sigaction(SIGUSR1, &ignore, nullptr), 0);
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGUSR1);
  // So that only the task can take it.
  ASSERT_EQ(pthread_sigmask(SIG_BLOCK, &signals, nullptr), 0);
  for (int i = 0; i < 20; ++i) {
    ASSERT_EQ(kill(getpid(), SIGUSR1), 0);
    forget();
    say(LinkMessage("eth0", 0, 0));
    EXPECT_EQ(left(), DownReport(1));
  }
  EXPECT_EQ(said(), "");
}

}  // namespace
}  // namespace hal_test
