/// @file
/// Tests of the divided standard output.
#include "session/console.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

namespace onu {
namespace {

TEST(Console, Take_HandsOverWhatWasPrintedSinceTheLastCall) {
  Console console;
  std::puts("first");
  EXPECT_EQ(console.take(), "first\n");
  EXPECT_EQ(console.take(), "");
  std::fputs("second", stdout);
  ASSERT_EQ(write(STDOUT_FILENO, "third", 5), 5);
  EXPECT_EQ(console.take(), "thirdsecond") << "the stream is flushed when it is asked for";
}

TEST(Console, Take_HandlesMoreThanOneBuffer) {
  Console console;
  const std::string text(100'000, 'x');
  std::fputs(text.c_str(), stdout);
  EXPECT_EQ(console.take(), text);
}

TEST(Console, Terminal_LeadsToWhereStandardOutputLedBefore) {
  Console outer;
  {
    Console inner;
    std::fputs("caught", stdout);
    std::fputs("shown", inner.terminal());
  }
  EXPECT_EQ(outer.take(), "shown");
  std::fputs("restored", stdout);
  EXPECT_EQ(outer.take(), "restored");
}

}  // namespace
}  // namespace onu
