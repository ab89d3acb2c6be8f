/// @file
/// The fixture's guard against two tests in one process.
#include "support/library_test.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace hal_test {

namespace {

void RefuseASecondTest() {
  static bool used = false;
  if (used) {
    static_cast<void>(std::fputs(
        "the library's state is process-wide: with --no-fork, run one test only\n", stderr));
    std::exit(2);
  }
  used = true;
}

}  // namespace

LibraryTest::LibraryTest(virtual_onu::UnitConfig config) : unit(std::move(config)) {
  RefuseASecondTest();
}

}  // namespace hal_test
