/// @file
/// The fixture of the library's tests: a unit of its own for each test.
#pragma once

#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/brief.h"
#include "support/left.h"
#include "unit/unit.h"

namespace hal_test {

/// The library's state is process-wide, so a process runs one test case only; the test programs'
/// entry point sees to that.
class LibraryTest : public ::testing::Test {
 protected:
  explicit LibraryTest(virtual_onu::UnitConfig config = {});

  /// What left the library since the start or since the last forget().
  [[nodiscard]] std::vector<std::string> left() const { return Left(unit, from_); }
  [[nodiscard]] std::vector<std::string> leftBriefly() const { return LeftBriefly(unit, from_); }
  [[nodiscard]] std::vector<std::string> commands() const { return OfKind(left(), "command"); }
  [[nodiscard]] std::vector<std::string> logLines() const { return OfKind(left(), "log"); }

  /// Leaves what came so far out of the coming expectations.
  void forget() { from_ = unit.trace().next(); }

  virtual_onu::Unit unit;

 private:
  std::uint64_t from_ = 0;
};

}  // namespace hal_test
