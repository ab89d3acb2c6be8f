/// @file
/// The netlink socket of the kernel event monitor: its set-up, and the walk over the messages of a
/// datagram. What the messages mean is in hal_bcm6838x_event.cpp.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <linux/netlink.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <unistd.h>

#include <hal_bcm6838x.h>
#include <platform_chip.h>

#include "hal_bcm6838x_monitor.h"

using namespace hal;

int32_t hal::kernelMonitorFd = -1;

namespace {

constexpr int kMonitorProtocol = 25;

void CloseMonitor() {
  close(kernelMonitorFd);
  kernelMonitorFd = -1;
}

bool BindMonitor() {
  sockaddr_nl address = {};
  address.nl_family = AF_NETLINK;
  address.nl_pid = static_cast<uint32_t>(getpid());
  return bind(kernelMonitorFd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
}

/// Tells the board driver who monitors the kernel.
int32_t RegisterMonitor() {
  constexpr uint32_t kRegisterRequest = 0xC0184211;
  char empty[] = "";
  const int32_t result =
      devCtl_boardIoctl(kRegisterRequest, 0, empty, 0, static_cast<uint32_t>(getpid()), empty);
  if (result == 0) {
    printf("registered fd %d with kernel monitor\n", kernelMonitorFd);
    return result;
  }
  printf("failed to register fd %d with kernel monitor, ret = %d\n", kernelMonitorFd, result);
  CloseMonitor();
  return result;
}

/// One datagram of the monitor's socket; 0 when none could be had.
size_t ReceiveDatagram(uint8_t (&buffer)[kMonitorBufferSize]) {
  fd_set ready;
  FD_ZERO(&ready);
  FD_SET(kernelMonitorFd, &ready);
  if (select(kernelMonitorFd + 1, &ready, nullptr, nullptr, nullptr) < 1) {
    return 0;
  }
  sockaddr_nl source = {};
  iovec part = {buffer, sizeof(buffer)};
  msghdr message = {};
  message.msg_name = &source;
  message.msg_namelen = sizeof(source);
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  const ssize_t received = recvmsg(kernelMonitorFd, &message, 0);
  return received < 0 ? 0 : static_cast<size_t>(received);
}

/// Reads the header of the next message; false when there is no whole message.
bool NextMessage(const uint8_t* at, size_t rest, KernelMessage& message) {
  if (rest < sizeof(nlmsghdr)) {
    return false;
  }
  memcpy(&message.header, at, sizeof(message.header));
  if (message.header.nlmsg_len < sizeof(nlmsghdr) || message.header.nlmsg_len > rest) {
    return false;
  }
  message.payload = at + sizeof(nlmsghdr);
  message.payloadSize = message.header.nlmsg_len - sizeof(nlmsghdr);
  return true;
}

void ServeMessage(const KernelMessage& message, MonitorState& state) {
  if (message.header.nlmsg_type == NLMSG_DONE) {
    return;
  }
  if (message.header.nlmsg_type == NLMSG_ERROR) {
    puts("read_netlink: Message is an error ");
    return;
  }
  // Required: other-senders-only-printed
  if (message.header.nlmsg_pid != 0) {
    printf("netlink message source(%d)is not kernel \n",
           static_cast<int>(message.header.nlmsg_pid));
    return;
  }
  ServeKernelMessage(message, state);
}

}  // namespace

int32_t InitKernelMonitorFd(void) {
  kernelMonitorFd = socket(AF_NETLINK, SOCK_RAW, kMonitorProtocol);
  if (kernelMonitorFd < 0) {
    puts("Could not open netlink socket for kernel monitor");
    return BCM6838X_FAILED;
  }
  printf("kernelMonitorFd = %d\n", kernelMonitorFd);
  if (!BindMonitor()) {
    puts("Could not bind netlink socket for kernel monitor");
    CloseMonitor();
    return BCM6838X_FAILED;
  }
  return RegisterMonitor();
}

void hal::ServeDatagram(MonitorState& state) {
  uint8_t buffer[kMonitorBufferSize];
  size_t rest = ReceiveDatagram(buffer);
  const uint8_t* at = buffer;
  KernelMessage message = {};
  while (NextMessage(at, rest, message)) {
    ServeMessage(message, state);
    const size_t step = NLMSG_ALIGN(message.header.nlmsg_len);
    if (step >= rest) {
      return;
    }
    at += step;
    rest -= step;
  }
}
