/// @file
/// Reading the options by a table.
#include "runner/options.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>
#include <string_view>
#include <unistd.h>

namespace test_runner {

namespace {

/// A number from 1 to 100000.
unsigned int Number(std::string_view option, std::string_view text) {
  constexpr unsigned int kLargest = 100'000;
  unsigned int number = 0;
  const auto [end, error] = std::from_chars(text.begin(), text.end(), number);
  if (error != std::errc() || end != text.end() || number == 0 || number > kLargest) {
    throw std::invalid_argument("option \"" + std::string(option) +
                                "\": expected a number from 1 to 100000, got \"" +
                                std::string(text) + "\"");
  }
  return number;
}

/// An option; one whose name ends with "=" takes a value.
struct Option {
  std::string_view name;
  void (*set)(Options& options, std::string_view value);
};

constexpr std::array kOptions = {
    Option{"--jobs=",
           [](Options& to, std::string_view value) { to.jobs = Number("--jobs", value); }},
    Option{"--timeout=",
           [](Options& to, std::string_view value) {
             to.timeout = std::chrono::seconds(Number("--timeout", value));
           }},
    Option{"--times=", [](Options& to, std::string_view value) { to.times = value; }},
    Option{"--verbose", [](Options& to, std::string_view) { to.verbose = true; }},
    Option{"--no-fork", [](Options& to, std::string_view) { to.fork = false; }},
    Option{"--help", [](Options& to, std::string_view) { to.help = true; }},
};

void Read(std::string_view argument, Options& options) {
  const auto* const found = std::ranges::find_if(kOptions, [argument](const Option& option) {
    return option.name.ends_with('=') ? argument.starts_with(option.name) : argument == option.name;
  });
  if (found == kOptions.end()) {
    throw std::invalid_argument("unknown argument \"" + std::string(argument) +
                                "\": --help lists what there is");
  }
  found->set(options, argument.substr(found->name.size()));
}

}  // namespace

Options ParseOptions(int argc, char** argv) {
  Options options;
  options.jobs = static_cast<unsigned int>(std::max(1L, sysconf(_SC_NPROCESSORS_ONLN)));
  for (int i = 1; i < argc; ++i) {
    Read(argv[i], options);
  }
  return options;
}

std::string Help(const std::string& program) {
  return "\nusage: " + program + R"( [OPTION...]
Runs each case in a process of its own and prints what did not pass.

  --jobs=N           cases at once, by default the number of processors
  --timeout=SECONDS  for each case, by default 120
  --times=FILE       write a line "MILLISECONDS PROGRAM CASE" for each case
  --verbose          show the output of cases that passed as well
  --no-fork          run the cases in this very process, one after the other; the options above do
                     nothing then. For a debugger:
                       gdb --args )" +
         program + R"( --no-fork --gtest_filter=SUITE.CASE

Of the flags above, --gtest_filter, --gtest_also_run_disabled_tests, --gtest_list_tests, --gtest_repeat
and --gtest_fail_fast mean what they say; --gtest_output and --gtest_shuffle need --no-fork.

Exit status: 0 all cases passed or were skipped, 1 some failed, 2 wrong use.
)";
}

}  // namespace test_runner
