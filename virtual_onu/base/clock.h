/// @file
/// The unit's time. It is virtual: it moves only when somebody moves it.
#pragma once

#include <cstdint>
#include <mutex>

namespace virtual_onu {

/// Milliseconds since the unit was switched on. Threads: see Unit.
class Clock {
 public:
  [[nodiscard]] std::uint64_t milliseconds() const {
    const std::lock_guard lock(mutex_);
    return now_;
  }

  void advance(std::uint64_t milliseconds) {
    const std::lock_guard lock(mutex_);
    now_ += milliseconds;
  }

 private:
  // Not an atomic: the target has no 64-bit ones without a further library.
  mutable std::mutex mutex_;
  std::uint64_t now_ = 0;
};

}  // namespace virtual_onu
