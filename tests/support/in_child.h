/// @file
/// Runs a piece of a test in a process of its own, for loops that need the library fresh each
/// round.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace hal_test {

/// What came of the child process.
struct ChildReport {
  bool finished = false;           ///< it ran to its end and exited with 0
  std::vector<std::string> lines;  ///< what `work` returned; its lines must hold no newline
};

ChildReport InChild(const std::function<std::vector<std::string>()>& work);

}  // namespace hal_test
