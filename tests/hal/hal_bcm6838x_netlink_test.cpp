/// @file
/// Tests of the kernel event task's socket: its set-up, the walk over datagrams, and datagrams that
/// cannot be had.
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <initializer_list>
#include <pthread.h>
#include <string>
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
using testing::StartsWith;
using virtual_onu::ButtonMessage;
using virtual_onu::LinkMessage;
using virtual_onu::NetlinkMessage;

/// A netlink header that may lie about its length, and bytes behind it.
Bytes RawMessage(std::uint32_t length, std::uint16_t type, const Bytes& payload = {},
                 std::uint32_t senderPort = 0) {
  return Joined({NativeWord(length), NativeHalf(type), NativeHalf(0), NativeWord(0),
                 NativeWord(senderPort), payload});
}

class NetlinkTest : public MonitorTest {};

TEST_F(NetlinkTest, InitKernelMonitorFd_OpensBindsAndRegisters) {
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

TEST_F(NetlinkTest, InitKernelMonitorFd_NoSocket_ReturnsOne) {
  unit.platform().config().monitorSocketFails = true;
  EXPECT_EQ(InitKernelMonitorFd(), 1);
  EXPECT_EQ(console(), "Could not open netlink socket for kernel monitor\n");
  EXPECT_THAT(left(), ElementsAre("call socket(AF_NETLINK, SOCK_RAW, 25)"));
}

TEST_F(NetlinkTest, InitKernelMonitorFd_BindFails_ClosesTheSocketAndReturnsOne) {
  unit.platform().config().monitorBindFails = true;
  EXPECT_EQ(InitKernelMonitorFd(), 1);
  const std::string text = console();
  EXPECT_THAT(text, MatchesRegex("kernelMonitorFd = [0-9]+\n"
                                 "Could not bind netlink socket for kernel monitor\n"));
  EXPECT_EQ(fcntl(std::stoi(text.substr(std::strlen("kernelMonitorFd = "))), F_GETFD), -1);
  EXPECT_EQ(left().size(), 2U) << "nothing is registered";
}

TEST_F(NetlinkTest, InitKernelMonitorFd_RegistrationFails_ClosesTheSocketAndReturnsItsResult) {
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

// Required: other-senders-only-printed
TEST_F(NetlinkTest, Senders_OtherThanTheKernel_AreOnlyPrinted) {
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

TEST_F(NetlinkTest, Errors_ArePrintedAndEndsOfDumpsAreNot) {
  start();
  say(NetlinkMessage(2, Bytes(20)));
  say(NetlinkMessage(2, Bytes(20), 99));
  say(NetlinkMessage(3, {}));
  say(NetlinkMessage(3, {}, 99));
  EXPECT_THAT(left(), IsEmpty());
  EXPECT_EQ(said(), "read_netlink: Message is an error \nread_netlink: Message is an error \n");
}

TEST_F(NetlinkTest, OtherTypes_DoNothing) {
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

TEST_F(NetlinkTest, Walk_EveryMessageOfADatagram) {
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

TEST_F(NetlinkTest, Walk_LengthsAreRoundedUpToFour) {
  start();
  for (const std::size_t payload : {0U, 1U, 2U, 3U, 4U, 5U}) {
    forget();
    say(Joined({NetlinkMessage(0x77, Bytes(payload, 0xFF)), LinkMessage("eth2", 0, 0)}));
    EXPECT_EQ(left(), DownReport(3)) << payload;
  }
}

TEST_F(NetlinkTest, Walk_LastMessageWithoutItsPadding_IsServed) {
  start();
  Bytes message = NetlinkMessage(0x2000, Joined({Bytes{'e', 't', 'h', '1'}, Bytes(12), Bytes(9)}));
  message.resize(16 + 25);
  say(message);
  EXPECT_EQ(left(), DownReport(2));
}

TEST_F(NetlinkTest, Walk_EndsWhereNoWholeMessageFollows) {
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

TEST_F(NetlinkTest, Walk_DatagramsWithoutAWholeMessage_AreSkipped) {
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

TEST_F(NetlinkTest, Walk_MessagesTooShortForTheirKind_AreSkipped) {
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

TEST_F(NetlinkTest, Walk_LongDatagrams_AreCutAt2048Bytes) {
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

TEST_F(NetlinkTest, Walk_AFullDatagramOfMessages) {
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

TEST_F(NetlinkTest, Receive_Failing_IsPassedOverAndTheNextDatagramIsServed) {
  start();
  int rounds = 0;
  for (; rounds < 3; ++rounds) {
    forget();
    unit.monitor().loseReceived(1);
    say(LinkMessage("eth0", 0, 0));
    EXPECT_THAT(left(), IsEmpty()) << "although the message stands in the buffer";
  }
  say(LinkMessage("eth1", 0, 0));
  EXPECT_EQ(left(), DownReport(2));
  EXPECT_EQ(said(), "");
}

TEST_F(NetlinkTest, Select_Interrupted_GoesOn) {
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
