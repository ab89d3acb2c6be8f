/// @file
/// The test framework's registry: which cases are to run, and running one of them.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace test_runner {

/// What the framework's flags choose.
struct Selection {
  std::vector<std::string> cases;  ///< SUITE.CASE, in the order of the registry
  std::size_t disabled = 0;        ///< cases that the filter matches and that do not run
};

Selection SelectCases();

/// What the process of a case says about it. Plain data, because two processes share it.
struct CaseReport {
  enum class End : unsigned char { kNone, kPassed, kFailed, kSkipped };

  End end = End::kNone;               ///< kNone until the case has run to its end
  std::array<char, 256> reason = {};  ///< why it was skipped, ended by a zero
};

/// Runs one case in this process, with its suite's and the program's set-up.
/// @param[in] name SUITE.CASE
/// @param[out] report how it ended
/// @return the exit status for the process
int RunCase(const std::string& name, CaseReport& report);

}  // namespace test_runner
