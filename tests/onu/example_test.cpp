/// @file
/// Runs every example of the help, and the example scripts with their expected output.
#include <algorithm>
#include <cctype>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "commands/command_table.h"
#include "run_program.h"
#include "scratch.h"

namespace onu {
namespace {

using test::Finished;

struct Example {
  std::string name;  ///< of the entry, with a number
  std::string script;
};

void PrintTo(const Example& example, std::ostream* out) {
  *out << example.script;
}

/// The text as a part of a case's name.
std::string AsName(std::string text) {
  std::ranges::replace_if(
      text, [](unsigned char character) { return std::isalnum(character) == 0; }, '_');
  return text;
}

void AppendExamples(const Entry& entry, std::vector<Example>& examples) {
  for (std::size_t i = 0; i < entry.examples.size(); ++i) {
    const std::string name = AsName(std::string(entry.name));
    examples.push_back({name + "_" + std::to_string(i + 1), std::string(entry.examples[i])});
  }
}

std::vector<Example> AllExamples() {
  std::vector<Example> examples;
  for (const Command* command : AllCommands().all()) {
    AppendExamples(*command, examples);
  }
  return examples;
}

/// Documents that a script prints beside one a line: a watch prints one a second.
std::ptrdiff_t WatchedSeconds(const std::string& script) {
  constexpr std::string_view kOption = "--count ";
  const std::size_t at = script.find(kOption);
  return at == std::string::npos ? 0 : std::stol(script.substr(at + kOption.size()));
}

class HelpExample : public testing::TestWithParam<Example> {};

TEST_P(HelpExample, Runs) {
  const test::Scratch scratch;
  std::filesystem::create_directory_symlink(test::Sources() / "tests", scratch.path() / "tests");
  ASSERT_EQ(
      test::RunProgramIn(scratch.path(), {"-c", "Init", "-c", "journal save saved.json"}).status,
      0);
  const Finished text = test::RunProgramIn(scratch.path(), {"run", "-"}, GetParam().script);
  EXPECT_EQ(text.status, 0);
  EXPECT_EQ(text.errors, "");
  const Finished json =
      test::RunProgramIn(scratch.path(), {"--json", "run", "-"}, GetParam().script);
  EXPECT_EQ(json.status, 0);
  EXPECT_EQ(json.errors, "");
  EXPECT_EQ(std::ranges::count(json.out, '\n'),
            std::ranges::count(GetParam().script, '\n') + 1 + WatchedSeconds(GetParam().script))
      << "one document a line";
}

INSTANTIATE_TEST_SUITE_P(Table, HelpExample, testing::ValuesIn(AllExamples()),
                         [](const auto& test) { return test.param.name; });

const std::filesystem::path kExampleScripts = "tools/onu/examples";

/// The example scripts, without the ending of their names.
std::vector<std::string> ScriptNames() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(test::Sources() / kExampleScripts)) {
    if (entry.path().extension() == ".onu") {
      names.push_back(entry.path().stem());
    }
  }
  std::ranges::sort(names);
  return names;
}

class ExampleScript : public testing::TestWithParam<std::string> {};

/// What the examples read, in a directory in which they may write.
void LinkSources(const test::Scratch& scratch) {
  for (const char* const folder : {"tests", "tools"}) {
    std::filesystem::create_directory_symlink(test::Sources() / folder, scratch.path() / folder);
  }
}

TEST_P(ExampleScript, PrintsWhatIsExpected) {
  const test::Scratch scratch;
  LinkSources(scratch);
  const std::filesystem::path script = kExampleScripts / GetParam();
  const Finished finished = test::RunProgramIn(scratch.path(), {"run", script.string() + ".onu"});
  EXPECT_EQ(finished.status, 0);
  EXPECT_EQ(finished.errors, "");
  EXPECT_EQ(finished.out, test::ReadFile(test::Sources() / (script.string() + ".expected")));
}

INSTANTIATE_TEST_SUITE_P(Scripts, ExampleScript, testing::ValuesIn(ScriptNames()),
                         [](const auto& test) { return AsName(test.param); });

/// Tags, addresses and protocol of each frame, as another program reads them.
std::string ReadByTshark(const std::filesystem::path& capture) {
  test::Surroundings surroundings;
  surroundings.directory = capture.parent_path();
  surroundings.program = "tshark";
  const Finished finished =
      test::RunProgram({"-r", capture.filename(), "-T", "fields", "-e", "vlan.id", "-e",
                        "vlan.priority", "-e", "eth.src", "-e", "_ws.col.Protocol"},
                       surroundings);
  EXPECT_EQ(finished.status, 0) << finished.errors;
  return finished.out;
}

TEST(TriplePlay, Captures_AreReadByTsharkAsExpected) {
  const test::Scratch scratch;
  LinkSources(scratch);
  const std::filesystem::path script = kExampleScripts / "triple-play";
  ASSERT_EQ(test::RunProgramIn(scratch.path(), {"run", script.string() + ".onu"}).status, 0);
  std::string read;
  for (int port = 1; port <= 4; ++port) {
    const std::string name = "port" + std::to_string(port);
    const std::filesystem::path captures = scratch.path() / "build/triple-play";
    read += name + " up\n" + ReadByTshark(captures / (name + "-up") / "wan.pcap");
    read += name + " down\n" +
            ReadByTshark(captures / (name + "-down") / ("uni" + std::to_string(port) + ".pcap"));
  }
  EXPECT_EQ(read, test::ReadFile(test::Sources() / (script.string() + ".tshark")));
}

TEST(Documentation, ReferencePage_IsCurrent) {
  const Finished finished = test::RunProgramHere({"help", "--markdown"});
  EXPECT_EQ(finished.status, 0);
  EXPECT_EQ(finished.out, test::ReadFile(test::Sources() / "docs/onu.md"))
      << "make it anew: onu help --markdown > docs/onu.md";
}

}  // namespace
}  // namespace onu
