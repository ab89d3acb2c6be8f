/// @file
/// Printing outcomes.
#include "runner/reporter.h"

#include <iostream>

namespace test_runner {

namespace {

void ShowOutput(const std::string& title, const std::string& output) {
  std::cout << "==== " << title << '\n'
            << output << (output.empty() || output.ends_with('\n') ? "" : "\n") << std::flush;
}

}  // namespace

std::string CountsLine(const std::string& program, const Counts& counts) {
  return program + ": " + std::to_string(counts.passed) + " passed, " +
         std::to_string(counts.failed) + " failed, " + std::to_string(counts.skipped) + " skipped";
}

void Reporter::add(const Outcome& outcome) {
  times_ += std::to_string(outcome.took.count()) + " " + program_ + " " + outcome.name + "\n";
  const std::string line = outcome.name + (outcome.reason.empty() ? "" : ": " + outcome.reason);
  switch (outcome.verdict) {
    case Verdict::kPassed:
      ++counts_.passed;
      break;
    case Verdict::kSkipped:
      ++counts_.skipped;
      skipped_.push_back(line);
      break;
    case Verdict::kFailed:
      ++counts_.failed;
      failed_.push_back(line);
      ShowOutput("FAILED " + line, outcome.output);
      return;
  }
  if (verbose_) {
    ShowOutput(line, outcome.output);
  }
}

bool Reporter::finish(std::size_t disabled) {
  for (const std::string& line : skipped_) {
    std::cout << "skipped " << line << '\n';
  }
  if (disabled > 0) {
    std::cout << disabled << " disabled, not run\n";
  }
  for (const std::string& line : failed_) {
    std::cout << "FAILED " << line << '\n';
  }
  std::cout << CountsLine(program_, counts_) << '\n' << std::flush;
  return failed_.empty();
}

}  // namespace test_runner
