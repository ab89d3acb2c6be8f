/// @file
/// The bridge-manager device "BrmgrDev" as the library sees it: a descriptor, its ioctl and its
/// events. What a frame does in the chip is the data path's, not this room's.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include <brmgr_record.h>

#include "base/bytes.h"
#include "base/fault_plan.h"
#include "base/trace.h"
#include "device/chip_tables.h"
#include "device/driver_state.h"

namespace virtual_onu {

/// What became of a frame that a command gave to send.
struct SentFrame {
  std::string reason;             ///< why it left nowhere; empty when it left
  std::function<void()> deliver;  ///< called when the device is not held any more; may be empty
};
using FrameSender = std::function<SentFrame(const OutgoingFrame& frame)>;

/// Answers a request in the driver's place: what the ioctl returns, or nothing to leave the request
/// to the driver. It may write into the request's record.
using RequestAnswer = std::function<std::optional<int>(const BrmgrRequest& request)>;

/// Commands and events are carried out, and traced, one at a time; what tables(), portTables(),
/// qosTables(), macTables(), mcastGroups(), counters() and faults() hand out has no lock. Threads:
/// see Unit.
class Device {
 public:
  /// Records longer than this are refused unread; the longest that a command carries has 492032
  /// bytes.
  static constexpr std::size_t kMaxRecordLength = std::size_t{1024} * 1024;

  /// Events that wait for a reader of a descriptor at most; the driver drops what comes beyond.
  static constexpr std::size_t kEventQueue = 32;

  Device(Trace& trace, ChipLimits limits);
  ~Device();
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;

  /// Opens the device: one end of a SOCK_SEQPACKET pair, so that read() blocks and returns whole
  /// records. May be opened more than once. Returns a descriptor above 2, or -1 with errno set. The
  /// descriptor stays the device's, which closes it at its end; nobody else may close it.
  int open();

  /// Tells whether the descriptor came from open().
  [[nodiscard]] bool owns(int fd) const;

  /// Serves an ioctl on an own descriptor: 0, or -1 with errno set. `argument` is the address of a
  /// BrmgrRequest. The record is written back only by a command that succeeds with flag 1. Every
  /// command is traced, refused ones too; an ioctl that carries none is traced as a call.
  ///
  /// ENOTTY: not the device's request. EFAULT: no argument, or a length without a record. EINVAL: a
  /// record that is too long or too short, or a direction, a port or a VID that is none. EIO:
  /// refused by a fault rule. ENOENT: no such object, or none left. ENOSPC: the table is full.
  int ioctl(unsigned long request, void* argument);

  /// Hands an event record to the reader of every open descriptor, without waiting. False when
  /// nobody can take it: no descriptor is open, or every reader is too far behind.
  bool sendEvent(ByteView event);

  /// Whether a descriptor is open, so that there may be a reader.
  [[nodiscard]] bool isOpen() const;

  /// The events that wait for the reader of the descriptor opened last.
  [[nodiscard]] std::size_t pendingEvents() const;

  /// Carries out no command until the lock is gone.
  [[nodiscard]] std::unique_lock<std::mutex> hold() const { return std::unique_lock(mutex_); }

  /// Who takes the frames that commands give to send; nobody at first. Called while the device is
  /// held, so that it sees the tables as the command left them.
  void setSender(FrameSender sender);

  /// Who is asked first about every request, before the fault rules: for what this driver never
  /// does, such as to write into a record and refuse it. An empty function for nobody. Called while
  /// the device is held.
  void onRequest(RequestAnswer answer);

  /// The port counts of BRMGR_CMD_INIT, once they were told.
  [[nodiscard]] std::optional<DrvInitRecord> ports() const;

  /// The value of feature switch 27, once it was told.
  [[nodiscard]] std::optional<std::uint32_t> feature() const;

  /// What the chip's own shell does to a port action; see SetPortAction(). Not traced:
  /// the line of the shell is.
  CommandResult setPortAction(std::uint32_t icIndex, const PortActionKey& key,
                              std::uint32_t vlanActionIndex);

  [[nodiscard]] const ChipTables& tables() const { return state_.tables; }
  [[nodiscard]] const PortTables& portTables() const { return state_.portTables; }
  [[nodiscard]] const QosTables& qosTables() const { return state_.qosTables; }
  [[nodiscard]] const MacTables& macTables() const { return state_.macTables; }
  /// Those that the data path learns into.
  MacTables& macTables() { return state_.macTables; }
  [[nodiscard]] const McastGroups& mcastGroups() const { return state_.mcastGroups; }
  [[nodiscard]] const ChipLimits& limits() const { return state_.limits; }

  /// The counters of a UNI port, counted from 1, as a read returns them, its first word included.
  PortStatsRecord& counters(std::uint32_t uni) { return state_.portTables.counters[uni]; }

  FaultPlan& faults() { return faults_; }

 private:
  struct Channel {
    int reader;  ///< the descriptor given out
    int driver;  ///< the end that the emulation writes events to
  };

  /// Carries out one command and completes its trace event; returns 0 or an errno value.
  int serve(const BrmgrRequest& request, CommandEvent& event);
  /// Sends the frame that a command gave, if it gave one, and tells how to deliver it.
  std::function<void()> sendOutgoing(CommandEvent& event);
  /// Serves a command that an ioctl carries, and returns what the ioctl returns; called while the
  /// device is held.
  int serveTraced(const BrmgrRequest& request, std::function<void()>& deliver);

  Trace& trace_;
  mutable std::mutex mutex_;
  DriverState state_;
  FaultPlan faults_;
  std::vector<Channel> channels_;
  FrameSender sender_;
  RequestAnswer answer_;
};

}  // namespace virtual_onu
