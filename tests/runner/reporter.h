/// @file
/// What a test program prints about its cases.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "runner/case_process.h"

namespace test_runner {

/// How many cases ended how.
struct Counts {
  std::size_t passed = 0;
  std::size_t failed = 0;
  std::size_t skipped = 0;
};

/// The line that closes a run, which scripts add up.
std::string CountsLine(const std::string& program, const Counts& counts);

class Reporter {
 public:
  /// @param[in] verbose shows the output of every case
  Reporter(std::string program, bool verbose) : program_(std::move(program)), verbose_(verbose) {}

  /// Shows the output of a case that failed.
  void add(const Outcome& outcome);

  /// Lists what did not pass, and counts. Returns whether nothing failed.
  /// @param[in] disabled how many cases are disabled
  bool finish(std::size_t disabled);

  /// A line "MILLISECONDS PROGRAM CASE" for each case.
  [[nodiscard]] const std::string& times() const { return times_; }

 private:
  std::string program_;
  bool verbose_;
  Counts counts_;
  std::string times_;
  std::vector<std::string> skipped_;
  std::vector<std::string> failed_;
};

}  // namespace test_runner
