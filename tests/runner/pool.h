/// @file
/// Several cases at once, each in its process.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "runner/case_process.h"
#include "runner/child_signal.h"

namespace test_runner {

class Pool {
 public:
  /// @param[in] size how many cases run at once
  /// @param[in] timeout for each case
  /// @param[in] done called with each outcome in turn; starts no further case by returning false
  Pool(std::size_t size, std::chrono::milliseconds timeout,
       std::function<bool(const Outcome&)> done);

  /// Runs the cases, in this order as far as one waits for another; returns when all have ended.
  void run(const std::vector<std::string>& cases);

 private:
  void start(const std::string& name);
  void wait() const;
  void collect();
  void stopOverdue();

  std::size_t size_;
  std::chrono::milliseconds timeout_;
  std::function<bool(const Outcome&)> done_;
  bool go_ = true;
  ChildSignal signal_;
  std::vector<CaseProcess> running_;
};

}  // namespace test_runner
