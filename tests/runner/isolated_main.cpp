/// @file
/// The entry point of every test program. The process is prepared once, then each case runs in a
/// fork of it, because the state of the code under test is process-wide: no case sees what another
/// left.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <iostream>
#include <stdexcept>
#include <string>

#include "runner/cases.h"
#include "runner/options.h"
#include "runner/pool.h"
#include "runner/reporter.h"

namespace test_runner {

namespace {

constexpr int kWrongUse = 2;

/// Flags of the framework that make no sense for cases in processes of their own.
void RefuseFlags() {
  struct Flag {
    const char* name;
    bool set;
  };
  const std::array flags = {
      Flag{"output", !GTEST_FLAG_GET(output).empty()},
      Flag{"shuffle", GTEST_FLAG_GET(shuffle)},
      Flag{"repeat below 1", GTEST_FLAG_GET(repeat) < 1},
  };
  const auto* const found = std::ranges::find_if(flags, &Flag::set);
  if (found != flags.end()) {
    throw std::invalid_argument(std::string("--gtest_") + found->name + " needs --no-fork");
  }
}

/// Runs the cases as the framework does.
bool RunHere(const std::string& program) {
  const bool passed = RUN_ALL_TESTS() == EXIT_SUCCESS;
  const auto count = [](int number) { return static_cast<std::size_t>(number); };
  const testing::UnitTest& tests = *testing::UnitTest::GetInstance();
  std::cout << CountsLine(program, {.passed = count(tests.successful_test_count()),
                                    .failed = count(tests.failed_test_count()),
                                    .skipped = count(tests.skipped_test_count())})
            << '\n';
  return passed;
}

void WriteTimes(const std::string& path, const std::string& times) {
  std::ofstream file(path);
  file << times << std::flush;
  if (!file) {
    throw std::runtime_error("cannot write " + path);
  }
}

bool RunForked(const std::string& program, const Selection& selection, const Options& options) {
  Reporter reporter(program, options.verbose);
  Pool pool(options.jobs, options.timeout, [&reporter](const Outcome& outcome) {
    reporter.add(outcome);
    return outcome.verdict != Verdict::kFailed || !GTEST_FLAG_GET(fail_fast);
  });
  for (int round = 0; round < GTEST_FLAG_GET(repeat); ++round) {
    pool.run(selection.cases);
  }
  if (!options.times.empty()) {
    WriteTimes(options.times, reporter.times());
  }
  return reporter.finish(selection.disabled);
}

int Run(const std::string& program, const Options& options) {
  if (options.help) {
    std::cout << Help(program);
    return EXIT_SUCCESS;
  }
  if (GTEST_FLAG_GET(list_tests)) {
    return RUN_ALL_TESTS();
  }
  if (options.fork) {
    RefuseFlags();
  }
  const Selection selection = SelectCases();
  if (selection.cases.empty()) {
    throw std::invalid_argument("no case matches \"" + GTEST_FLAG_GET(filter) + "\"");
  }
  const bool passed = options.fork ? RunForked(program, selection, options) : RunHere(program);
  return passed ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

}  // namespace test_runner

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  const std::string program = std::filesystem::path(argv[0]).filename();
  try {
    return test_runner::Run(program, test_runner::ParseOptions(argc, argv));
  } catch (const std::invalid_argument& error) {
    std::cerr << program << ": " << error.what() << '\n';
    return test_runner::kWrongUse;
  } catch (const std::exception& error) {
    std::cerr << program << ": " << error.what() << '\n';
    return EXIT_FAILURE;
  }
}
