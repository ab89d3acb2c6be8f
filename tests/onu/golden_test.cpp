/// @file
/// Compares the JSON of whole scripts with files, and the tables of some of them, byte for byte.
/// tests/onu/golden/regenerate writes the files anew; look at what changed before committing it.
#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "report/json.h"
#include "run_program.h"

namespace onu {
namespace {

const std::filesystem::path kGolden = "tests/onu/golden";

/// The names of the files with that extension in the golden directory, without it.
std::vector<std::string> NamesOf(const std::string& extension) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(test::Sources() / kGolden)) {
    if (entry.path().extension() == extension) {
      names.push_back(entry.path().stem());
    }
  }
  std::ranges::sort(names);
  return names;
}

/// Holds what the program prints against a file.
void ExpectFile(const Words& arguments, const std::string& file) {
  const test::Finished finished = test::RunProgramHere(arguments);
  EXPECT_EQ(finished.status, 0);
  EXPECT_EQ(finished.errors, "");
  EXPECT_EQ(finished.out, test::ReadFile(test::Sources() / kGolden / file));
}

std::string ScriptOf(const std::string& name) {
  return kGolden / (name + ".onu");
}

class Golden : public testing::TestWithParam<std::string> {};

TEST_P(Golden, IsWhatTheScriptPrints) {
  ExpectFile({"--json", "run", ScriptOf(GetParam())}, GetParam() + ".json");
}

INSTANTIATE_TEST_SUITE_P(Scripts, Golden, testing::ValuesIn(NamesOf(".onu")),
                         [](const auto& test) { return test.param; });

class GoldenTables : public testing::TestWithParam<std::string> {};

TEST_P(GoldenTables, AreWhatTheScriptPrints) {
  ExpectFile({"run", ScriptOf(GetParam())}, GetParam() + ".txt");
}

INSTANTIATE_TEST_SUITE_P(Scripts, GoldenTables, testing::ValuesIn(NamesOf(".txt")),
                         [](const auto& test) { return test.param; });

}  // namespace
}  // namespace onu
