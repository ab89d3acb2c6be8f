/// @file
/// Tests of the device's descriptors and of the events read from them.
#include <array>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include "device_fixture.h"

namespace virtual_onu {
namespace {

constexpr std::size_t kEventSize = 2068;

class Events : public DeviceTest {
 protected:
  static Bytes EventOf(std::uint8_t fill) {
    Bytes event(kEventSize, fill);
    return event;
  }

  /// Reads as the library does: one event into a buffer of its size.
  static Bytes ReadEvent(int fd) {
    Bytes buffer(kEventSize, 0);
    const ssize_t size = read(fd, buffer.data(), buffer.size());
    buffer.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    return buffer;
  }

  static bool HasEvent(int fd) {
    pollfd poll_fd = {.fd = fd, .events = POLLIN, .revents = 0};
    return poll(&poll_fd, 1, 0) == 1;
  }

  static bool IsOpen(int fd) { return fcntl(fd, F_GETFD) != -1; }
};

TEST_F(Events, Open_GivesADescriptorThatTheDeviceOwns) {
  EXPECT_FALSE(device_.owns(3));
  const int fd = device_.open();
  ASSERT_GT(fd, 2);
  EXPECT_TRUE(device_.owns(fd));
  EXPECT_FALSE(device_.owns(fd + 1));
  EXPECT_FALSE(device_.owns(-1));
  EXPECT_EQ(fcntl(fd, F_GETFD), FD_CLOEXEC);
}

TEST_F(Events, Open_WithStandardInputClosed_StaysAboveIt) {
  const int saved = dup(STDIN_FILENO);
  close(STDIN_FILENO);
  const int fd = device_.open();
  const bool taken = IsOpen(STDIN_FILENO);
  if (saved != -1) {
    dup2(saved, STDIN_FILENO);
    close(saved);
  }
  EXPECT_GT(fd, 2);
  EXPECT_FALSE(taken);
}

TEST_F(Events, Open_WithoutFreeDescriptors_Fails) {
  rlimit limit = {};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
  const int next = dup(STDOUT_FILENO);
  ASSERT_GT(next, 2);
  close(next);
  // Room for none, for one, and for the pair but not for moving it.
  for (const int room : {0, 1, 2}) {
    const rlimit low = {.rlim_cur = static_cast<rlim_t>(next + room), .rlim_max = limit.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &low), 0);
    errno = 0;
    EXPECT_EQ(device_.open(), -1);
    EXPECT_EQ(errno, EMFILE);
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
    EXPECT_FALSE(IsOpen(next));
    EXPECT_FALSE(IsOpen(next + 1));
  }
  EXPECT_FALSE(device_.owns(-1));
  EXPECT_FALSE(device_.sendEvent(EventOf(1)));
}

TEST_F(Events, Read_ReturnsAWholeEvent) {
  const int fd = device_.open();
  EXPECT_TRUE(device_.sendEvent(EventOf(0x5A)));
  EXPECT_EQ(ReadEvent(fd), EventOf(0x5A));
  EXPECT_FALSE(HasEvent(fd));
}

TEST_F(Events, Read_KeepsEventsApartAndInOrder) {
  const int fd = device_.open();
  EXPECT_TRUE(device_.sendEvent(EventOf(1)));
  EXPECT_TRUE(device_.sendEvent(Bytes(7, 2)));
  EXPECT_TRUE(device_.sendEvent(EventOf(3)));
  EXPECT_EQ(ReadEvent(fd), EventOf(1));
  EXPECT_EQ(ReadEvent(fd), Bytes(7, 2));
  EXPECT_EQ(ReadEvent(fd), EventOf(3));
}

TEST_F(Events, Read_WaitsForAnEvent) {
  const int fd = device_.open();
  EXPECT_FALSE(HasEvent(fd));
  EXPECT_EQ(fcntl(fd, F_GETFL) & O_NONBLOCK, 0);
  Bytes read;
  std::thread reader([&read, fd] { read = ReadEvent(fd); });
  EXPECT_TRUE(device_.sendEvent(EventOf(9)));
  reader.join();
  EXPECT_EQ(read, EventOf(9));
}

TEST_F(Events, SendEvent_ReachesEveryOpenDescriptor) {
  const int first = device_.open();
  const int second = device_.open();
  ASSERT_NE(first, second);
  EXPECT_TRUE(device_.owns(first));
  EXPECT_TRUE(device_.owns(second));
  EXPECT_TRUE(device_.sendEvent(EventOf(4)));
  EXPECT_EQ(ReadEvent(first), EventOf(4));
  EXPECT_EQ(ReadEvent(second), EventOf(4));
}

TEST_F(Events, SendEvent_WithoutAReader_IsFalse) {
  EXPECT_FALSE(device_.sendEvent(EventOf(1)));
}

TEST_F(Events, SendEvent_WithoutBytes_IsFalse) {
  const int fd = device_.open();
  EXPECT_FALSE(device_.sendEvent({}));
  EXPECT_FALSE(HasEvent(fd));
}

TEST_F(Events, SendEvent_ToAReaderFarBehind_IsFalseAndDoesNotWait) {
  constexpr int kMore = 10'000;
  const int slow = device_.open();
  int sent = 0;
  while (sent < kMore && device_.sendEvent(EventOf(1))) {
    ++sent;
  }
  EXPECT_GT(sent, 1);
  ASSERT_LT(sent, kMore);
  const int quick = device_.open();
  EXPECT_TRUE(device_.sendEvent(EventOf(2)));
  EXPECT_EQ(ReadEvent(quick), EventOf(2));
  for (int i = 0; i < sent; ++i) {
    EXPECT_EQ(ReadEvent(slow), EventOf(1));
  }
  EXPECT_FALSE(HasEvent(slow));
}

TEST_F(Events, TheEndOfTheDevice_ClosesItsDescriptors) {
  auto device = std::make_unique<Device>(trace_, kLimits);
  const int fd = device->open();
  const int copy = dup(fd);
  device.reset();
  EXPECT_FALSE(IsOpen(fd));
  EXPECT_EQ(ReadEvent(copy), Bytes());
  close(copy);
}

}  // namespace
}  // namespace virtual_onu
