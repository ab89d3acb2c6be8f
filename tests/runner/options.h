/// @file
/// What the command line of a test program says beyond the test framework's own flags.
#pragma once

#include <chrono>
#include <string>

namespace test_runner {

struct Options {
  unsigned int jobs = 1;              ///< how many cases run at once
  std::chrono::seconds timeout{120};  ///< for each case
  std::string times;                  ///< file for the time of each case; none when empty
  bool verbose = false;               ///< show the output of cases that passed as well
  bool fork = true;                   ///< a process for each case
  bool help = false;
};

/// Reads what the test framework left of the command line.
/// @param[in] argc, argv as main() has them, without the framework's flags
/// @return the options; `jobs` is the number of processors unless given
/// @throw std::invalid_argument what is not known, or not a number where one is expected
Options ParseOptions(int argc, char** argv);

/// The text for --help.
std::string Help(const std::string& program);

}  // namespace test_runner
