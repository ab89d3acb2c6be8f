/// @file
/// Makes the unit's time follow real time.
#pragma once

#include <chrono>

#include "base/clock.h"

namespace virtual_onu {

/// For one thread.
class RealTime {
 public:
  using Now = std::chrono::steady_clock::time_point;

  RealTime(Clock& clock, Now start) : clock_(clock), told_(start) {}

  /// Moves the unit's time by the whole milliseconds that passed since it was moved last.
  void follow(Now now) {
    const auto passed = std::chrono::duration_cast<std::chrono::milliseconds>(now - told_);
    if (passed.count() > 0) {
      clock_.advance(static_cast<std::uint64_t>(passed.count()));
      told_ += passed;
    }
  }

 private:
  Clock& clock_;
  Now told_;
};

}  // namespace virtual_onu
