/// @file
/// The kernel's side of the netlink socket on which the library's task waits: the socket itself,
/// what is sent on it, and the end of a task that waits for ever.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <sys/socket.h>
#include <sys/types.h>
#include <thread>
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
/// that select() and recvmsg() are the system's own. Threads: see Unit.
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
  [[nodiscard]] bool owns(int fd);

  /// Serves bind() on an own socket: 0, or -1 with errno set.
  int bind(int fd, const MonitorFaults& faults, const sockaddr* address, socklen_t length);

  /// Sends one datagram to every open socket, without waiting; false when nobody took it.
  bool send(ByteView datagram);

  /// Waits until a reader has asked for a datagram behind all that were sent, and so has carried
  /// them out. False when there is no socket, or a reader that does not ask within ten seconds.
  bool flush();

  /// Sends a datagram and waits until the readers have carried it out: those that have asked for
  /// one before, and not this thread. False when no reader took it.
  bool tell(ByteView datagram);

  /// How many tasks have ended and how many sockets were bound.
  struct Progress {
    std::uint64_t ended = 0;
    std::uint64_t bound = 0;
  };
  [[nodiscard]] Progress progress() const;

  /// Notes that a task has ended by itself.
  void taskEnded();

  /// Waits until, since then, a task has ended or has bound a socket and asked for a datagram; ten
  /// seconds at most.
  void settle(const Progress& before);

  /// From now on no socket opens, and a reader that has taken all its datagrams leaves its thread
  /// in received().
  void end();

  /// Loses the next datagrams that own sockets give: recvmsg() fails with ENOBUFS, as netlink's
  /// does when messages did not fit, and leaves in its buffer what was lost.
  void loseReceived(std::uint32_t datagrams);

  /// Told of every datagram that an own socket gave to recvmsg(); returns what recvmsg() returns,
  /// with errno set. Does not return, but ends the thread, when it was the last one after end().
  ssize_t received(int fd, ssize_t size);

 private:
  struct Channel {
    int reader;   ///< the descriptor given out
    ino_t inode;  ///< of its socket: the number of a closed descriptor is given out again
    int kernel;   ///< the end that the emulation writes to
    std::uint64_t bound = 0;  ///< the count of bound sockets when it was
    std::uint64_t sent = 0;
    std::uint64_t received = 0;
    std::thread::id thread = {};  ///< that asked last and has not been ended

    /// Whether the reader's end is still open.
    [[nodiscard]] bool isOpen() const;
    [[nodiscard]] bool carriedOut() const { return !isOpen() || received == sent; }
    /// Whether a thread other than this one waits for datagrams, or carries one out.
    [[nodiscard]] bool isServed() const;
  };

  /// The open channel with that descriptor, or null.
  Channel* find(int fd);
  std::size_t sendLocked(ByteView datagram);

  Trace& trace_;
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Channel> channels_;
  Progress progress_;
  std::uint32_t toLose_ = 0;
  bool ended_ = false;
};

}  // namespace virtual_onu
