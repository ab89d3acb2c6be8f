/// @file
/// Waiting for the end of a child without a thread.
#pragma once

#include <chrono>
#include <csignal>

namespace test_runner {

/// While it lives, this process hears of a child's end in await() and nowhere else, so that nothing
/// else is interrupted.
class ChildSignal {
 public:
  ChildSignal();
  ~ChildSignal() { restore(); }
  ChildSignal(const ChildSignal&) = delete;
  ChildSignal& operator=(const ChildSignal&) = delete;

  /// Returns when a child has ended since the last call, at the latest after that time.
  void await(std::chrono::milliseconds longest) const;

  /// Sets the signal as it was before; for a new process, which shall not notice.
  void restore() const;

 private:
  sigset_t mask_ = {};
  struct sigaction action_ = {};
};

}  // namespace test_runner
