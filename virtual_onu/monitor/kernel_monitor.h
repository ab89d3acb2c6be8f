/// @file
/// The kernel's side of the netlink socket on which the library's task waits: the socket itself,
/// what is sent on it, and the end of a task that waits for ever.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <sys/socket.h>
#include <sys/types.h>
#include <vector>

#include "base/bytes.h"
#include "base/trace.h"

namespace virtual_onu {

/// What goes wrong with the next sockets.
struct MonitorFaults {
  bool socketFails = false;
  bool bindFails = false;
};

/// Serves the sockets of netlink protocol 25: each is one end of a pair of datagram sockets, so
/// that select() and recvmsg() are the system's own. May be used from any thread.
class KernelMonitor {
 public:
  static constexpr int kProtocol = 25;

  explicit KernelMonitor(Trace& trace) : trace_(trace) {}
  ~KernelMonitor();
  KernelMonitor(const KernelMonitor&) = delete;
  KernelMonitor& operator=(const KernelMonitor&) = delete;

  /// Opens a socket: its descriptor, or -1 with errno set. Whoever opened it may close it.
  int open(const MonitorFaults& faults);

  /// Tells whether the descriptor is a socket from open() that is still open.
  [[nodiscard]] bool owns(int fd) const;

  /// Serves bind() on an own socket: 0, or -1 with errno set.
  int bind(const MonitorFaults& faults, const sockaddr* address, socklen_t length);

  /// Sends one datagram to every open socket, without waiting; false when nobody took it.
  bool send(ByteView datagram);

  /// Waits until a reader has asked for a datagram behind all that were sent, and so has carried
  /// them out. False when there is no reader, or none that asks within ten seconds.
  bool flush();

  /// Waits until a socket is bound; false when none is within ten seconds.
  bool waitUntilBound();

  /// From now on no socket opens, and a reader that has taken all datagrams leaves its thread in
  /// received().
  void end();

  /// Told of every datagram that an own socket gave to recvmsg(). Does not return, but ends the
  /// thread, when it was the last one after end().
  void received(ssize_t size);

 private:
  struct Channel {
    int reader;   ///< the descriptor given out
    ino_t inode;  ///< of its socket: the number of a closed descriptor is given out again
    int kernel;   ///< the end that the emulation writes to
  };

  /// Whether the reader's end of a channel is still open.
  static bool IsOpen(const Channel& channel);
  std::size_t sendLocked(ByteView datagram);

  Trace& trace_;
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Channel> channels_;
  std::uint64_t sent_ = 0;
  std::uint64_t received_ = 0;
  bool bound_ = false;
  bool ended_ = false;
};

}  // namespace virtual_onu
