/// @file
/// Selecting by the framework's own filter, running by a filter that matches one case.
#include "runner/cases.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string_view>

namespace test_runner {

namespace {

using testing::TestInfo;

std::string FullName(const TestInfo& test) {
  return std::string(test.test_suite_name()) + "." + test.name();
}

template <typename Visit>
void ForEachTest(const Visit& visit) {
  const testing::UnitTest& program = *testing::UnitTest::GetInstance();
  for (int i = 0; i < program.total_test_suite_count(); ++i) {
    const testing::TestSuite& suite = *program.GetTestSuite(i);
    for (int j = 0; j < suite.total_test_count(); ++j) {
      visit(*suite.GetTestInfo(j));
    }
  }
}

/// The filter for that name. What means something else in a filter becomes "any character".
std::string FilterFor(std::string name) {
  std::ranges::replace_if(
      name, [](char c) { return std::string_view(":-*").find(c) != std::string_view::npos; }, '?');
  return name;
}

/// Watches how many cases run to their end, and why one is skipped.
class Watch : public testing::EmptyTestEventListener {
 public:
  explicit Watch(CaseReport& report) : report_(report) {}

  void OnTestPartResult(const testing::TestPartResult& result) override {
    if (result.skipped() && !reason_) {
      const std::string_view message = result.message();
      const std::string_view line = message.substr(0, message.find('\n'));
      line.copy(report_.reason.data(), report_.reason.size() - 1);
      reason_ = true;
    }
  }

  void OnTestEnd(const TestInfo& test) override {
    ++ended_;
    skipped_ = test.result()->Skipped();
  }

  [[nodiscard]] CaseReport::End end(bool failed) const {
    if (failed) {
      return CaseReport::End::kFailed;
    }
    if (ended_ == 1) {
      return skipped_ ? CaseReport::End::kSkipped : CaseReport::End::kPassed;
    }
    // The program's set-up can skip all cases before they start.
    return ended_ == 0 && reason_ ? CaseReport::End::kSkipped : CaseReport::End::kNone;
  }

 private:
  CaseReport& report_;
  bool reason_ = false;
  bool skipped_ = false;
  int ended_ = 0;
};

}  // namespace

Selection SelectCases() {
  // The framework applies its filter when it runs or lists; the list is not wanted.
  testing::internal::CaptureStdout();
  GTEST_FLAG_SET(list_tests, true);
  const int status = RUN_ALL_TESTS();
  GTEST_FLAG_SET(list_tests, false);
  const std::string list = testing::internal::GetCapturedStdout();
  if (status != EXIT_SUCCESS) {
    throw std::runtime_error("cannot list the cases: " + list);
  }

  Selection selection;
  ForEachTest([&selection](const TestInfo& test) {
    if (test.should_run()) {
      selection.cases.push_back(FullName(test));
    } else if (test.is_reportable()) {
      ++selection.disabled;
    }
  });
  return selection;
}

int RunCase(const std::string& name, CaseReport& report) {
  auto* const watch = new Watch(report);
  testing::UnitTest::GetInstance()->listeners().Append(watch);
  GTEST_FLAG_SET(filter, FilterFor(name));
  GTEST_FLAG_SET(repeat, 1);
  // The case belongs to this process, whatever share of the cases the program has.
  unsetenv("GTEST_TOTAL_SHARDS");
  unsetenv("GTEST_SHARD_INDEX");
  const int status = RUN_ALL_TESTS();
  report.end = watch->end(status != EXIT_SUCCESS);
  return status;
}

}  // namespace test_runner
