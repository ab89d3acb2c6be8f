/// @file
/// What the library writes on standard output.
#pragma once

#include <gtest/gtest.h>
#include <regex>
#include <string>

namespace hal_test {

/// What an operation wrote on standard output, its line numbers as "<line>".
template <typename Operation>
std::string Console(Operation operation) {
  testing::internal::CaptureStdout();
  operation();
  return std::regex_replace(testing::internal::GetCapturedStdout(),
                            std::regex(R"((BCM6838X_\w+)\(\d+\))"), "$1(<line>)");
}

}  // namespace hal_test
