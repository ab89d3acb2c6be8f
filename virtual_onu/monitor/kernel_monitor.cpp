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
    if (channel.isOpen()) {
      close(channel.reader);
    }
    close(channel.kernel);
  }
}

bool KernelMonitor::Channel::isOpen() const {
  return InodeOf(reader) == inode;
}

bool KernelMonitor::Channel::isServed() const {
  return isOpen() && thread != std::thread::id() && thread != std::this_thread::get_id();
}

KernelMonitor::Channel* KernelMonitor::find(int fd) {
  const auto found = std::ranges::find_if(
      channels_, [fd](const Channel& channel) { return channel.reader == fd && channel.isOpen(); });
  return found == channels_.end() ? nullptr : &*found;
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

bool KernelMonitor::owns(int fd) {
  const std::lock_guard lock(mutex_);
  return find(fd) != nullptr;
}

int KernelMonitor::bind(int fd, const MonitorFaults& faults, const sockaddr* address,
                        socklen_t length) {
  const std::lock_guard lock(mutex_);
  const int result = faults.bindFails ? -1 : 0;
  trace_.add(CallEvent{"bind(" + Describe(address, length) + ")", result});
  if (result != 0) {
    errno = EADDRINUSE;
    return result;
  }
  ++progress_.bound;
  if (Channel* const channel = find(fd)) {
    channel->bound = progress_.bound;
  }
  changed_.notify_all();
  return result;
}

std::size_t KernelMonitor::sendLocked(ByteView datagram) {
  std::size_t takers = 0;
  for (Channel& channel : channels_) {
    if (channel.isOpen() && ::send(channel.kernel, datagram.data(), datagram.size(),
                                   MSG_DONTWAIT | MSG_NOSIGNAL) >= 0) {
      ++channel.sent;
      ++takers;
    }
  }
  return takers;
}

bool KernelMonitor::send(ByteView datagram) {
  const std::lock_guard lock(mutex_);
  return sendLocked(datagram) != 0;
}

bool KernelMonitor::flush() {
  std::unique_lock lock(mutex_);
  // A datagram without bytes: the library passes it over.
  return sendLocked({}) != 0 && changed_.wait_for(lock, kPatience, [this] {
    return std::ranges::all_of(channels_, &Channel::carriedOut);
  });
}

bool KernelMonitor::tell(ByteView datagram) {
  std::unique_lock lock(mutex_);
  const bool served = std::ranges::any_of(channels_, &Channel::isServed);
  if (sendLocked(datagram) == 0 || !served) {
    return false;
  }
  sendLocked({});
  return changed_.wait_for(lock, kPatience, [this] {
    return std::ranges::all_of(channels_, [](const Channel& channel) {
      return !channel.isServed() || channel.carriedOut();
    });
  });
}

KernelMonitor::Progress KernelMonitor::progress() const {
  const std::lock_guard lock(mutex_);
  return progress_;
}

void KernelMonitor::taskEnded() {
  const std::lock_guard lock(mutex_);
  ++progress_.ended;
  changed_.notify_all();
}

void KernelMonitor::settle(const Progress& before) {
  std::unique_lock lock(mutex_);
  const auto ended = [&] { return progress_.ended != before.ended; };
  changed_.wait_for(lock, kPatience, [&] { return ended() || progress_.bound != before.bound; });
  if (ended() || sendLocked({}) == 0) {
    return;
  }
  changed_.wait_for(lock, kPatience, [&] {
    return ended() || std::ranges::all_of(channels_, [&](const Channel& channel) {
             return channel.bound <= before.bound || channel.carriedOut();
           });
  });
}

void KernelMonitor::end() {
  const std::lock_guard lock(mutex_);
  ended_ = true;
  sendLocked({});
}

void KernelMonitor::loseReceived(std::uint32_t datagrams) {
  const std::lock_guard lock(mutex_);
  toLose_ = datagrams;
}

ssize_t KernelMonitor::received(int fd, ssize_t size) {
  bool leave = false;
  bool lost = false;
  {
    const std::lock_guard lock(mutex_);
    Channel* const channel = find(fd);
    if (channel == nullptr) {
      return size;
    }
    lost = size >= 0 && toLose_ > 0;
    toLose_ -= lost ? 1 : 0;
    channel->received += size >= 0 ? 1 : 0;
    leave = ended_ && channel->carriedOut();
    channel->thread = leave ? std::thread::id() : std::this_thread::get_id();
  }
  changed_.notify_all();
  if (leave) {
    pthread_exit(nullptr);
  }
  if (lost) {
    errno = ENOBUFS;
    return -1;
  }
  return size;
}

}  // namespace virtual_onu
