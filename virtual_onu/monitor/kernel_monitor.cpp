/// @file
/// Sockets and datagrams of the kernel's side.
#include "monitor/kernel_monitor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <linux/netlink.h>
#include <pthread.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace virtual_onu {

namespace {

constexpr std::chrono::seconds kPatience{10};

/// The inode of a socket, which no other open socket has; 0 when the descriptor is not open.
ino_t InodeOf(int fd) {
  struct stat status = {};
  return fstat(fd, &status) == 0 ? status.st_ino : 0;
}

std::string Describe(const sockaddr* address, socklen_t length) {
  sockaddr_nl netlink = {};
  if (address == nullptr || length < sizeof(netlink)) {
    return "length " + std::to_string(length);
  }
  std::memcpy(&netlink, address, sizeof(netlink));
  const std::string port = netlink.nl_pid == static_cast<std::uint32_t>(getpid())
                               ? "own process"
                               : std::to_string(netlink.nl_pid);
  return "family " + std::to_string(netlink.nl_family) + ", port " + port + ", groups " +
         std::to_string(netlink.nl_groups) + ", length " + std::to_string(length);
}

}  // namespace

KernelMonitor::~KernelMonitor() {
  for (const Channel& channel : channels_) {
    if (IsOpen(channel)) {
      close(channel.reader);
    }
    close(channel.kernel);
  }
}

bool KernelMonitor::IsOpen(const Channel& channel) {
  return InodeOf(channel.reader) == channel.inode;
}

int KernelMonitor::open(const MonitorFaults& faults) {
  const std::lock_guard lock(mutex_);
  std::array<int, 2> pair = {-1, -1};
  const bool opened = !faults.socketFails && !ended_ &&
                      socketpair(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0, pair.data()) == 0;
  trace_.add(CallEvent{"socket(AF_NETLINK, SOCK_RAW, 25)", opened ? 0 : -1});
  if (!opened) {
    errno = EPROTONOSUPPORT;
    return -1;
  }
  channels_.push_back({.reader = pair[0], .inode = InodeOf(pair[0]), .kernel = pair[1]});
  return pair[0];
}

bool KernelMonitor::owns(int fd) const {
  const std::lock_guard lock(mutex_);
  return std::ranges::any_of(
      channels_, [fd](const Channel& channel) { return channel.reader == fd && IsOpen(channel); });
}

int KernelMonitor::bind(const MonitorFaults& faults, const sockaddr* address, socklen_t length) {
  const std::lock_guard lock(mutex_);
  const int result = faults.bindFails ? -1 : 0;
  trace_.add(CallEvent{"bind(" + Describe(address, length) + ")", result});
  if (result != 0) {
    errno = EADDRINUSE;
    return result;
  }
  bound_ = true;
  changed_.notify_all();
  return result;
}

std::size_t KernelMonitor::sendLocked(ByteView datagram) {
  return static_cast<std::size_t>(std::ranges::count_if(channels_, [&](const Channel& channel) {
    return IsOpen(channel) && ::send(channel.kernel, datagram.data(), datagram.size(),
                                     MSG_DONTWAIT | MSG_NOSIGNAL) >= 0;
  }));
}

bool KernelMonitor::send(ByteView datagram) {
  const std::lock_guard lock(mutex_);
  const std::size_t takers = sendLocked(datagram);
  sent_ += takers;
  return takers != 0;
}

bool KernelMonitor::flush() {
  // A datagram without bytes: the library passes it over.
  if (!send({})) {
    return false;
  }
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, kPatience, [this] { return received_ == sent_; });
}

bool KernelMonitor::waitUntilBound() {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, kPatience, [this] { return bound_; });
}

void KernelMonitor::end() {
  const std::lock_guard lock(mutex_);
  ended_ = true;
  sent_ += sendLocked({});
}

void KernelMonitor::received(ssize_t size) {
  bool leave = false;
  {
    const std::lock_guard lock(mutex_);
    if (size >= 0) {
      ++received_;
    }
    leave = ended_ && received_ == sent_;
  }
  changed_.notify_all();
  if (leave) {
    pthread_exit(nullptr);
  }
}

}  // namespace virtual_onu
