/// @file
/// Start, wait, collect.
#include "runner/pool.h"

#include <algorithm>
#include <utility>

namespace test_runner {

Pool::Pool(std::size_t size, std::chrono::milliseconds timeout,
           std::function<bool(const Outcome&)> done)
    : size_(size), timeout_(timeout), done_(std::move(done)) {}

void Pool::run(const std::vector<std::string>& cases) {
  auto next = cases.begin();
  const auto more = [&] { return go_ && next != cases.end(); };
  while (more() || !running_.empty()) {
    while (more() && running_.size() < size_) {
      start(*next++);
    }
    wait();
    stopOverdue();
    collect();
  }
}

void Pool::start(const std::string& name) {
  running_.emplace_back(name, [this] {
    signal_.restore();
    std::ranges::for_each(running_, &CaseProcess::forget);
  });
}

/// For the end of a process, or until the oldest one, which is the first, is overdue.
void Pool::wait() const {
  const auto left = timeout_ - running_.front().age();
  signal_.await(std::clamp(left, std::chrono::milliseconds(1), timeout_));
}

void Pool::stopOverdue() {
  for (CaseProcess& process : running_) {
    if (process.age() >= timeout_) {
      process.stop();
    }
  }
}

void Pool::collect() {
  std::erase_if(running_, [this](CaseProcess& process) {
    const bool ended = process.ended();
    if (ended) {
      go_ = done_(process.finish()) && go_;
    }
    return ended;
  });
}

}  // namespace test_runner
