/// @file
/// Tests of the command that lists the log lines.
#include <gtest/gtest.h>

#include "run_lines.h"

namespace onu {
namespace {

using test::RunLinesAsJson;

TEST(Show, Log_CanBeCutToALevel) {
  const auto count = [](const std::string& line) {
    return RunLinesAsJson({"fault from 1", "InitDrv", "SFInit", line}).lastDocument()["log"].size();
  };
  EXPECT_EQ(count("show log"), 2U);
  EXPECT_EQ(count("show log level 1"), 2U);
  EXPECT_EQ(count("show log level 4"), 0U);
}

}  // namespace
}  // namespace onu
