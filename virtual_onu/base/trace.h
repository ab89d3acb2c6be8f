/// @file
/// The trace: everything that leaves the library for the unit, in the order in which it came.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "base/bytes.h"
#include "base/clock.h"
#include "base/packed_bytes.h"

namespace virtual_onu {

/// One command record sent to the device.
struct CommandEvent {
  std::uint32_t code = 0;
  std::uint32_t length = 0;  ///< as the request gave it
  std::uint32_t flag = 0;
  Bytes before;    ///< the record as sent, in the processor's byte order
  Bytes after;     ///< the record as left by the driver
  int result = 0;  ///< what the ioctl returned
  /// Why the driver refused, or why the frame that it was to send left nowhere; empty otherwise.
  std::string reason;
};

/// One log line.
struct LogEvent {
  std::uint32_t id = 0;
  std::uint32_t level = 0;
  std::string file;
  std::uint32_t line = 0;
  std::string text;
};

/// One shell line given to VOS_System.
struct ShellEvent {
  std::string line;
  std::int32_t result = 0;
  std::string reason;  ///< why the line was refused; empty when it was not
};

/// One message given to VOS_MsgSend.
struct MessageEvent {
  std::uint32_t module = 0;
  std::uint32_t code = 0;
  Bytes message;
};

/// Any other call of the platform that does something or is asked once, as "NAME(ARGUMENTS)".
struct CallEvent {
  std::string call;
  std::int64_t result = 0;
};

using TraceDetail = std::variant<CommandEvent, LogEvent, ShellEvent, MessageEvent, CallEvent>;

struct TraceEvent {
  std::uint64_t sequence = 0;      ///< counts from 1 and is never reused
  std::uint64_t milliseconds = 0;  ///< the unit's time
  TraceDetail detail;
};

/// An event as it is kept: a configuration of all ports has half a million bytes, and hardly any of
/// them is set.
class PackedEvent {
 public:
  explicit PackedEvent(TraceEvent event);

  [[nodiscard]] TraceEvent unpack() const;
  [[nodiscard]] std::uint64_t sequence() const { return event_.sequence; }

 private:
  TraceEvent event_;  ///< a command without its records
  PackedBytes before_;
  std::optional<PackedBytes> after_;  ///< nothing when the driver left the record as it was
};

/// Keeps the newest events up to a capacity. Threads: see Unit.
class Trace {
 public:
  static constexpr std::size_t kDefaultCapacity = 100'000;

  explicit Trace(const Clock& clock, std::size_t capacity = kDefaultCapacity);

  void add(TraceDetail detail);
  void clear();

  /// Switches recording; off, add() costs next to nothing (benchmarks).
  void setRecording(bool on);

  /// Calls `listener` with every event recorded from now on, on the thread that caused it.
  void setListener(std::function<void(const TraceEvent&)> listener);

  /// A copy of the events from sequence number `from` on.
  [[nodiscard]] std::vector<TraceEvent> events(std::uint64_t from = 0) const;

  /// The unit's time, which the next event will carry.
  [[nodiscard]] std::uint64_t now() const { return clock_.milliseconds(); }

  /// The sequence number that the next event will get.
  [[nodiscard]] std::uint64_t next() const;

 private:
  const Clock& clock_;
  const std::size_t capacity_;
  mutable std::mutex mutex_;
  std::deque<PackedEvent> events_;
  std::function<void(const TraceEvent&)> listener_;
  std::uint64_t next_ = 1;
  bool recording_ = true;
};

/// The events of one kind, in order.
template <typename Kind>
std::vector<Kind> EventsOf(const std::vector<TraceEvent>& events) {
  std::vector<Kind> found;
  for (const TraceEvent& event : events) {
    if (const auto* detail = std::get_if<Kind>(&event.detail)) {
      found.push_back(*detail);
    }
  }
  return found;
}

}  // namespace virtual_onu
