/// @file
/// Compares the JSON of whole scripts with files, byte for byte. tests/onu/golden/regenerate writes
/// the files anew; look at what changed before committing it.
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "json_output.h"
#include "run_program.h"

namespace onu {
namespace {

const std::filesystem::path kGolden = "tests/onu/golden";

/// The names of the scripts in the golden directory.
std::vector<std::string> ScriptNames() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(test::Sources() / kGolden)) {
    if (entry.path().extension() == ".onu") {
      names.push_back(entry.path().stem());
    }
  }
  std::ranges::sort(names);
  return names;
}

class Golden : public testing::TestWithParam<std::string> {};

TEST_P(Golden, IsWhatTheScriptPrints) {
  const test::Finished finished =
      test::RunProgramHere({"--json", "run", (kGolden / (GetParam() + ".onu")).string()});
  EXPECT_EQ(finished.status, 0);
  EXPECT_EQ(finished.errors, "");
  EXPECT_EQ(finished.out, test::ReadFile(test::Sources() / kGolden / (GetParam() + ".json")));
}

INSTANTIATE_TEST_SUITE_P(Scripts, Golden, testing::ValuesIn(ScriptNames()),
                         [](const auto& test) { return test.param; });

}  // namespace
}  // namespace onu
