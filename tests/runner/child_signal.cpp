/// @file
/// SIGCHLD, blocked but for the time of a ppoll().
#include "runner/child_signal.h"

#include <ctime>
#include <poll.h>

namespace test_runner {

ChildSignal::ChildSignal() {
  struct sigaction heard = {};
  heard.sa_handler = [](int) {};
  sigaction(SIGCHLD, &heard, &action_);
  sigset_t blocked = {};
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGCHLD);
  sigprocmask(SIG_BLOCK, &blocked, &mask_);
}

void ChildSignal::await(std::chrono::milliseconds longest) const {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(longest);
  const timespec time = {static_cast<std::time_t>(seconds.count()),
                         static_cast<long>(std::chrono::nanoseconds(longest - seconds).count())};
  sigset_t open = mask_;
  sigdelset(&open, SIGCHLD);
  ppoll(nullptr, 0, &time, &open);
}

void ChildSignal::restore() const {
  sigaction(SIGCHLD, &action_, nullptr);
  sigprocmask(SIG_SETMASK, &mask_, nullptr);
}

}  // namespace test_runner
