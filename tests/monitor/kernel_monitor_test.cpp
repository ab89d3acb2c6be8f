/// @file
/// Tests of the kernel's side of the monitor's socket, through the C library's calls that reach it.
#include "monitor/kernel_monitor.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <fcntl.h>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/netlink.h>
#include <netinet/in.h>
#include <string>
#include <sys/select.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <thread>
#include <unistd.h>

#include <platform_vos.h>

#include "support/left.h"
#include "unit/unit.h"

namespace virtual_onu {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

int OpenMonitor() {
  return socket(AF_NETLINK, SOCK_RAW, KernelMonitor::kProtocol);
}

int BindMonitor(int fd, std::uint32_t port) {
  sockaddr_nl address = {};
  address.nl_family = AF_NETLINK;
  address.nl_pid = port;
  return bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address));
}

/// One datagram.
Bytes Receive(int fd) {
  Bytes buffer(2048);
  iovec part = {buffer.data(), buffer.size()};
  msghdr message = {};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  const ssize_t size = recvmsg(fd, &message, 0);
  buffer.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
  return buffer;
}

bool HasDatagram(int fd) {
  fd_set ready;
  FD_ZERO(&ready);
  FD_SET(fd, &ready);
  timeval now = {};
  return select(fd + 1, &ready, nullptr, nullptr, &now) == 1;
}

TEST(KernelMonitor, ASocket_GivesWholeDatagramsInOrder) {
  Unit unit;
  const int fd = OpenMonitor();
  ASSERT_GT(fd, 2);
  EXPECT_TRUE(unit.monitor().owns(fd));
  EXPECT_FALSE(HasDatagram(fd));
  EXPECT_TRUE(unit.monitor().send(Bytes{1, 2, 3}));
  EXPECT_TRUE(unit.monitor().send({}));
  EXPECT_TRUE(unit.monitor().send(Bytes(2000, 7)));
  EXPECT_TRUE(HasDatagram(fd));
  EXPECT_EQ(Receive(fd), (Bytes{1, 2, 3}));
  EXPECT_EQ(Receive(fd), Bytes());
  EXPECT_EQ(Receive(fd), Bytes(2000, 7));
  EXPECT_FALSE(HasDatagram(fd));
}

TEST(KernelMonitor, Calls_AreTraced) {
  Unit unit;
  const int fd = OpenMonitor();
  EXPECT_EQ(BindMonitor(fd, static_cast<std::uint32_t>(getpid())), 0);
  EXPECT_EQ(BindMonitor(fd, 7), 0);
  EXPECT_EQ(bind(fd, nullptr, 3), 0);
  EXPECT_THAT(
      hal_test::Left(unit),
      ElementsAre("call socket(AF_NETLINK, SOCK_RAW, 25)",
                  "call bind(family 16, port own process, groups 0, length 12)",
                  "call bind(family 16, port 7, groups 0, length 12)", "call bind(length 3)"));
}

TEST(KernelMonitor, OtherSockets_AreTheSystems) {
  Unit unit;
  const int fd = socket(AF_INET, SOCK_DGRAM, 0);
  ASSERT_GE(fd, 0);
  EXPECT_FALSE(unit.monitor().owns(fd));
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  EXPECT_EQ(bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
  EXPECT_FALSE(unit.monitor().send(Bytes{1}));
  close(fd);
  EXPECT_THAT(hal_test::Left(unit), IsEmpty());
}

TEST(KernelMonitor, Faults_FailTheCalls) {
  Unit unit;
  const int fd = OpenMonitor();
  unit.platform().config().monitorSocketFails = true;
  unit.platform().config().monitorBindFails = true;
  errno = 0;
  EXPECT_EQ(OpenMonitor(), -1);
  EXPECT_EQ(errno, EPROTONOSUPPORT);
  EXPECT_EQ(BindMonitor(fd, 0), -1);
  EXPECT_EQ(errno, EADDRINUSE);
  EXPECT_FALSE(unit.monitor().owns(-1));
}

TEST(KernelMonitor, ALostDatagram_FailsTheCallAndLeavesItsBytesInTheBuffer) {
  Unit unit;
  const int fd = OpenMonitor();
  unit.monitor().loseReceived(1);
  ASSERT_TRUE(unit.monitor().send(Bytes{1, 2}));
  ASSERT_TRUE(unit.monitor().send(Bytes{3}));
  Bytes buffer(8);
  iovec part = {buffer.data(), buffer.size()};
  msghdr message = {};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  errno = 0;
  EXPECT_EQ(recvmsg(fd, &message, 0), -1);
  EXPECT_EQ(errno, ENOBUFS);
  EXPECT_EQ(buffer, (Bytes{1, 2, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(Receive(fd), Bytes{3}) << "the next one comes";
}

TEST(KernelMonitor, AClosedSocket_IsNobodysEvenWhenItsNumberComesAgain) {
  Unit unit;
  const int fd = OpenMonitor();
  close(fd);
  EXPECT_FALSE(unit.monitor().owns(fd));
  EXPECT_FALSE(unit.monitor().send(Bytes{1}));
  const int other = socket(AF_INET, SOCK_DGRAM, 0);
  ASSERT_EQ(other, fd);
  EXPECT_FALSE(unit.monitor().owns(other));
  close(other);
}

TEST(KernelMonitor, TheEndOfTheUnit_ClosesItsSocketsAndNoOther) {
  int open = -1;
  int other = -1;
  {
    Unit unit;
    const int closed = OpenMonitor();
    open = OpenMonitor();
    close(closed);
    other = socket(AF_INET, SOCK_DGRAM, 0);
    ASSERT_EQ(other, closed);
  }
  EXPECT_EQ(fcntl(open, F_GETFD), -1);
  EXPECT_NE(fcntl(other, F_GETFD), -1);
  close(other);
}

TEST(KernelMonitor, WithoutASocket_NothingIsSent) {
  Unit unit;
  EXPECT_FALSE(unit.monitor().send(Bytes{1}));
  EXPECT_FALSE(unit.monitor().flush());
}

std::vector<Bytes> taken;  // by the task

/// A task that reads for ever.
void ReadForEver() {
  const int fd = OpenMonitor();
  BindMonitor(fd, 0);
  while (true) {
    taken.push_back(Receive(fd));
  }
}

UnitConfig WithTasks() {
  UnitConfig config;
  config.platform.runTasks = true;
  return config;
}

TEST(KernelMonitor, EndTasks_EndsAReaderThatHasTakenEverything) {
  taken.clear();
  Unit unit(WithTasks());
  ASSERT_EQ(VOS_TaskSpawn("reader", 0, 0, 0, 0, ReadForEver, 0), 0);
  EXPECT_TRUE(unit.monitor().send(Bytes{1}));
  EXPECT_TRUE(unit.monitor().send(Bytes{2}));
  unit.endTasks();
  EXPECT_THAT(taken, ElementsAre(Bytes(), Bytes{1}, Bytes{2}));
  EXPECT_FALSE(unit.monitor().tell(Bytes{3})) << "nobody is waited for";
  unit.endTasks();
  EXPECT_EQ(OpenMonitor(), -1) << "no task begins to wait behind the end";
}

TEST(KernelMonitor, TheEndOfTheUnit_EndsItsTasks) {
  taken.clear();
  {
    Unit unit(WithTasks());
    ASSERT_EQ(VOS_TaskSpawn("reader", 0, 0, 0, 0, ReadForEver, 0), 0);
    EXPECT_TRUE(unit.monitor().send(Bytes{3}));
  }
  EXPECT_THAT(taken, ElementsAre(Bytes(), Bytes{3}));
}

TEST(KernelMonitor, Spawn_ReturnsWhenTheTaskWaitsForADatagram) {
  Unit unit(WithTasks());
  ASSERT_EQ(VOS_TaskSpawn("reader", 0, 0, 0, 0, ReadForEver, 0), 0);
  EXPECT_THAT(hal_test::Left(unit),
              ElementsAre("call VOS_TaskSpawn(\"reader\", 0, 0, 0, 0, entry, 0)",
                          "call socket(AF_NETLINK, SOCK_RAW, 25)",
                          "call bind(family 16, port 0, groups 0, length 12)"));
}

std::atomic<bool> finished = false;

/// A task that ends behind its first datagram, its socket closed.
void ReadOnce() {
  const int fd = OpenMonitor();
  BindMonitor(fd, 0);
  Receive(fd);
  close(fd);
  finished = true;
}

pid_t spawner = 0;
std::atomic<bool> returned = false;

/// Whether the thread that spawns is asleep, by the letter behind its name in the kernel's list.
bool SpawnerSleeps() {
  std::ifstream status("/proc/self/task/" + std::to_string(spawner) + "/stat");
  std::string line;
  std::getline(status, line);
  return line.find(") S") != std::string::npos;
}

/// A task that has no socket, and is not done before its spawner waits, or has come back without.
void End() {
  const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!SpawnerSleeps() && !returned && std::chrono::steady_clock::now() < limit) {
    std::this_thread::yield();
  }
  finished = true;
}

TEST(KernelMonitor, Spawn_OfATaskWithoutASocket_ReturnsWhenItHasEnded) {
  Unit unit(WithTasks());
  finished = false;
  spawner = gettid();
  ASSERT_EQ(VOS_TaskSpawn("short", 0, 0, 0, 0, End, 0), 0);
  EXPECT_TRUE(finished);
  returned = true;
  EXPECT_FALSE(unit.monitor().tell(Bytes{1})) << "nobody listens, and nobody is waited for";
}

TEST(KernelMonitor, ATaskThatEndedBehindADatagram_ListensNoMore) {
  Unit unit(WithTasks());
  finished = false;
  ASSERT_EQ(VOS_TaskSpawn("short", 0, 0, 0, 0, ReadOnce, 0), 0);
  unit.endTasks();
  EXPECT_TRUE(finished);
  EXPECT_FALSE(unit.monitor().tell(Bytes{1}));
}

TEST(KernelMonitor, Tell_ReturnsWhenTheDatagramWasCarriedOut) {
  taken.clear();
  Unit unit(WithTasks());
  ASSERT_EQ(VOS_TaskSpawn("reader", 0, 0, 0, 0, ReadForEver, 0), 0);
  EXPECT_TRUE(unit.monitor().tell(Bytes{1}));
  EXPECT_THAT(taken, testing::Contains(Bytes{1}));
}

TEST(KernelMonitor, Tell_DoesNotWaitForASocketThatNobodyReads) {
  taken.clear();
  Unit unit(WithTasks());
  const int fd = OpenMonitor();
  EXPECT_FALSE(unit.monitor().tell(Bytes{1}));
  EXPECT_EQ(Receive(fd), Bytes{1}) << "it is sent all the same";
  close(fd);
  const int second = OpenMonitor();
  ASSERT_EQ(VOS_TaskSpawn("reader", 0, 0, 0, 0, ReadForEver, 0), 0);
  EXPECT_TRUE(unit.monitor().tell(Bytes{2}));
  EXPECT_TRUE(HasDatagram(second));
}

TEST(KernelMonitor, Tell_OnTheReadersOwnThread_DoesNotWait) {
  Unit unit;
  const int fd = OpenMonitor();
  ASSERT_TRUE(unit.monitor().send(Bytes{1}));
  EXPECT_EQ(Receive(fd), Bytes{1});
  EXPECT_FALSE(unit.monitor().tell(Bytes{2}));
  EXPECT_EQ(Receive(fd), Bytes{2});
}

TEST(KernelMonitor, AClosedSocket_HoldsUpNoFlush) {
  Unit unit(WithTasks());
  const int closed = OpenMonitor();
  ASSERT_TRUE(unit.monitor().send(Bytes{1}));
  close(closed);
  ASSERT_EQ(VOS_TaskSpawn("reader", 0, 0, 0, 0, ReadForEver, 0), 0);
  EXPECT_TRUE(unit.monitor().flush());
}

}  // namespace
}  // namespace virtual_onu
