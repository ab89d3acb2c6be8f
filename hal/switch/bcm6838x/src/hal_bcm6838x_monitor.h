/// @file
/// The parts of the kernel event monitor: its socket, the messages that come from it, and what the
/// task does with them.
#ifndef HAL_BCM6838X_MONITOR_H
#define HAL_BCM6838X_MONITOR_H

#include <cstddef>
#include <cstdint>
#include <linux/netlink.h>

namespace hal {

constexpr size_t kMonitorBufferSize = 2048;

extern "C" {
extern int32_t kernelMonitorFd;  ///< the netlink socket; -1 when it is not set up
}

/// What the task keeps between messages.
struct MonitorState {
  uint32_t pressTime;  ///< milliseconds at the first press of the reset button, 0 until then
};

/// A message of the kernel: its header, and as many bytes behind it as the datagram holds of it.
struct KernelMessage {
  nlmsghdr header;
  const uint8_t* payload;
  size_t payloadSize;
};

/// Waits for one datagram on the monitor's socket and carries out its messages. Errors and
/// malformed datagrams are passed over silently.
void ServeDatagram(MonitorState& state);

/// Carries out one message of the kernel; those of other kinds, and those that are too short for
/// their kind, are passed over.
void ServeKernelMessage(const KernelMessage& message, MonitorState& state);

/// Reports a change of an Ethernet interface's link.
void ServeLinkChange(const KernelMessage& message);

}  // namespace hal

#endif
