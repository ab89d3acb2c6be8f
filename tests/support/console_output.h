/// @file
/// What the library writes on standard output.
#pragma once

#include <gtest/gtest.h>
#include <string>

#include "support/pattern.h"

namespace hal_test {

/// What an operation wrote on standard output, its line numbers as "<line>".
template <typename Operation>
std::string Console(Operation operation) {
  testing::internal::CaptureStdout();
  operation();
  return Pattern(R"((BCM6838X_[[:alnum:]_]+)\([0-9]+\))")
      .replaceAll(testing::internal::GetCapturedStdout(), "$1(<line>)");
}

}  // namespace hal_test
